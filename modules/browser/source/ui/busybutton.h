// The button that turns while something works in the background, and stops it.
#pragma once

#include "services/gedialog.h"

namespace browser {

class BackgroundWork;

class BusyButton
{
public:
    static constexpr int32_t tickMilliseconds = 1000;

    explicit BusyButton(DialogBase& owner)
        : dialog(owner)
    {
    }

    void Reset(); // when the dialog opens: nothing works
    void Tick(BackgroundWork* work);
    void Press(BackgroundWork* work);

private:
    void ShowFrame(int32_t frame);

    DialogBase& dialog;
    bool wasActive = false;
    int32_t nextFrame = 0; // goes on where it was, each time something works
};

} // namespace browser
