// The window around a folder pane, as far as the pane and its views know it.
//
// A window derives from it. Main thread only.
#pragma once

#include "model/browserinterface.h"

namespace browser {

// Something that runs beside the window and can be stopped by the user.
class BackgroundWork
{
public:
    virtual bool IsRunning() = 0;
    virtual void Stop() = 0; // asks it to; it may go on for a moment

protected:
    ~BackgroundWork() = default;
};

class PaneWindow
{
public:
    virtual void ShowNode(ContentRef node, ContentRef select) = 0; // goes there; `select`, if given, stands selected
    virtual void OpenInNewWindow(ContentRef node) = 0;
    virtual bool GoBack() = 0;
    virtual bool GoForward() = 0;
    virtual void SelectLater(ContentRef child) = 0; // at the next tick, also if the window is not open yet
    virtual void UpdateSelectionPanes(bool force) = 0;
    virtual bool ActivateGadget(int32_t id) = 0; // false: it is not there, and the focus stays where it is
    virtual bool IsSingleClick() const = 0;
    virtual void ToggleSingleClick() = 0;
    virtual BackgroundWork* GetWork() { return nullptr; }

    // A callback of the pane or of a view begins and ends: see WindowHold.
    virtual void BeginHandling() = 0;
    virtual void EndHandling() = 0;

protected:
    ~PaneWindow() = default;
};

// Held over a callback that may run others: the window is not deleted meanwhile.
class WindowHold
{
public:
    explicit WindowHold(PaneWindow& heldWindow)
        : window(heldWindow)
    {
        window.BeginHandling();
    }
    ~WindowHold() { window.EndHandling(); }
    WindowHold(const WindowHold&) = delete;
    WindowHold& operator=(const WindowHold&) = delete;

private:
    PaneWindow& window;
};

} // namespace browser
