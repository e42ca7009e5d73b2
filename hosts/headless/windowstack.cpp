#include "headless/windowstack.h"

#include <algorithm>
#include <utility>

#include "headless/natives.h"

namespace vx3::headless {

namespace {

constexpr gui::Point firstCorner = { 100, 80 };
constexpr int cascadeStep = 30;
constexpr int cascadeLength = 8;

int BarHeight(const gui::Dialog& window)
{
    return window.menu.empty() ? 0 : menuBarHeight;
}

} // namespace

gui::Point InsideCornerOf(const gui::Dialog& window)
{
    return NativeOf(window).corner + gui::Point{ frameWidth, titleHeight + BarHeight(window) };
}

gui::Place FrameOf(const gui::Dialog& window)
{
    const gui::Point corner = NativeOf(window).corner;
    return { corner.x, corner.y, window.size.width + 2 * frameWidth, window.size.height + titleHeight + BarHeight(window) + frameWidth };
}

void WindowStack::Add(gui::Dialog& window)
{
    auto native = std::make_unique<WindowNative>();
    const int step = cascadeStep * (opened++ % cascadeLength);
    const bool hasPlace = window.opened.x != -1 || window.opened.y != -1;
    native->corner = hasPlace ? gui::Point{ window.opened.x, window.opened.y } : firstCorner + gui::Point{ step, step };
    window.native = std::move(native);
    windows.push_back(&window);
}

void WindowStack::Remove(gui::Dialog& window)
{
    std::erase(windows, &window);
    if (active == &window)
        active = nullptr;
}

void WindowStack::Raise(gui::Dialog& window)
{
    if (!Has(window) || BlockerOf(window))
        return;
    std::erase(windows, &window);
    windows.push_back(&window);
}

void WindowStack::ShowAdded()
{
    for (gui::Dialog* window : windows)
        NativeOf(*window).isShown = true;
    if (!windows.empty() && windows.back() != active)
        Activate(*windows.back());
    else if (active && active->focus && !NativeOf(*active->focus).isVisible)
        desk->FocusMoved(*active, nullptr); // its page went
}

void WindowStack::Activate(gui::Dialog& window)
{
    Raise(window);
    if (active == &window || windows.empty() || windows.back() != &window)
        return;
    gui::Dialog* before = std::exchange(active, &window);
    if (before && before->focus) {
        NativeOf(*before).remembered = before->focus;
        desk->FocusMoved(*before, nullptr);
    }
    if (active != &window) // the module has done something else meanwhile
        return;
    if (gui::Gadget* focus = std::exchange(NativeOf(window).remembered, nullptr))
        desk->FocusMoved(window, focus);
}

void WindowStack::GiveFocus(gui::Gadget& gadget)
{
    gui::Dialog& window = gadget.dialog->Window();
    if (&window != active)
        NativeOf(window).remembered = &gadget;
    else if (window.focus != &gadget)
        desk->FocusMoved(window, &gadget);
}

void WindowStack::Forget(const gui::Gadget& gadget)
{
    for (gui::Dialog* window : windows)
        if (NativeOf(*window).remembered == &gadget)
            NativeOf(*window).remembered = nullptr;
}

bool WindowStack::Has(const gui::Dialog& window) const
{
    return std::find(windows.begin(), windows.end(), &window) != windows.end();
}

gui::Dialog* WindowStack::At(gui::Point screen) const
{
    for (auto window = windows.rbegin(); window != windows.rend(); ++window)
        if (NativeOf(**window).isShown && FrameOf(**window).Has(screen))
            return *window;
    return nullptr;
}

gui::Dialog* WindowStack::BlockerOf(const gui::Dialog& window) const
{
    for (auto other = windows.rbegin(); other != windows.rend() && *other != &window; ++other)
        if ((*other)->isModal)
            return *other;
    return nullptr;
}

} // namespace vx3::headless
