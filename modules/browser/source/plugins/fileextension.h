// The extension of a URL in lower case, without memory of the host: it is compared for
// every file of every listing.
#pragma once

#include "model/browserurl.h"

namespace browser {

class LowerExtension
{
public:
    explicit LowerExtension(BrowserURL& url);

    bool operator==(const char* literal) const; // exact, ASCII

private:
    static constexpr size_t capacity = 15; // a longer extension counts as none

    VX3Unit units[capacity];
    size_t length = 0;
};

} // namespace browser
