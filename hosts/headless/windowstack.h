// The open windows of a host without a screen, from the back to the front, and where they
// stand on a screen that nobody sees. The front window is the active one: it has the focus.
// Main thread only.
#pragma once

#include <vector>

#include "gui/desk.h"

namespace vx3::headless {

class WindowStack
{
public:
    void SetDesk(gui::Desk* owner) { desk = owner; }

    void Add(gui::Dialog& window); // in front; shown by ShowAdded
    void Remove(gui::Dialog& window);
    void Raise(gui::Dialog& window); // unless a modal one holds it up
    void ShowAdded();                // shows what was opened, and gives the focus to the window in front
    void Activate(gui::Dialog& window);
    // At once if the window is active, else when it becomes so.
    void GiveFocus(gui::Gadget& gadget);
    bool IsActive(const gui::Dialog& window) const { return active == &window; }
    void Forget(const gui::Gadget& gadget);

    const std::vector<gui::Dialog*>& BackToFront() const { return windows; }
    bool Has(const gui::Dialog& window) const;
    gui::Dialog* At(gui::Point screen) const;
    // The modal window that holds this one up, or none.
    gui::Dialog* BlockerOf(const gui::Dialog& window) const;

private:
    gui::Desk* desk = nullptr;
    std::vector<gui::Dialog*> windows;
    gui::Dialog* active = nullptr;
    int opened = 0; // windows so far; each stands a little off the one before
};

// Of the inside of a window, on the screen.
gui::Point InsideCornerOf(const gui::Dialog& window);
// With its frame, title and menu bar, on the screen.
gui::Place FrameOf(const gui::Dialog& window);

constexpr int frameWidth = 1;
constexpr int titleHeight = 24;
constexpr int menuBarHeight = 22;

} // namespace vx3::headless
