// Marks a window as being inside one of its callbacks, so that nobody deletes it there.
#pragma once

#include "ui/browserdialog.h"

namespace browser {

class BrowserDialog::Handling
{
public:
    explicit Handling(BrowserDialog& marked)
        : window(marked)
    {
        window.handling++;
    }
    ~Handling() { window.handling--; }
    Handling(const Handling&) = delete;
    Handling& operator=(const Handling&) = delete;

private:
    BrowserDialog& window;
};

} // namespace browser
