#include "headless/headlesstoolkit.h"

#include <algorithm>

#include "core/hoststate.h"
#include "headless/areapainter.h"
#include "headless/gadgetneeds.h"
#include "headless/natives.h"
#include "headless/palette.h"
#include "headless/seen.h"

namespace vx3::headless {

void HeadlessToolkit::SetDesk(gui::Desk* owner)
{
    desk = owner;
    windows.SetDesk(owner);
}

// The main loop.

void HeadlessToolkit::Turn()
{
    isWoken = false;
    desk->Deliver();
    windows.ShowAdded();
    const std::vector<gui::Dialog*> drawn = windows.BackToFront(); // a copy: it may change meanwhile
    for (const gui::Dialog* window : drawn)
        if (windows.Has(*window))
            PaintDirty(*desk, *window);
}

// A timer that does not run because it is running already stays due: time goes on all the same.
void HeadlessToolkit::Advance(int milliseconds)
{
    const int64_t target = now + std::max(0, milliseconds);
    Turn();
    for (int64_t least = now; wakeAt >= 0 && wakeAt <= target && least <= target; least = now + 1) {
        now = std::max({ now, wakeAt, least });
        desk->RunTimers();
        Turn();
    }
    now = std::max(now, target);
}

void HeadlessToolkit::WakeUp()
{
    isWoken = true;
}

FixedFont& HeadlessToolkit::Font()
{
    if (!font) {
        font = std::make_unique<FixedFont>();
        if (!font->HasGlyphs())
            core::WriteConsoleLine("DejaVu Sans Mono was not found: texts in pictures are boxes");
    }
    return *font;
}

// Windows. Their pictures are made from the tree of gadgets when someone asks for one.

void HeadlessToolkit::OpenWindow(gui::Dialog& window)
{
    windows.Add(window);
}

void HeadlessToolkit::CloseWindow(gui::Dialog& window)
{
    CancelNested(window);
    if (popup.window == &window)
        popup = {};
    windows.Remove(window);
}

void HeadlessToolkit::RaiseWindow(gui::Dialog& window)
{
    windows.Raise(window);
}

void HeadlessToolkit::ResizeWindow(gui::Dialog& window, gui::Size inside)
{
    const gui::Size size = inside.Widened(window.leastSize);
    if (size != window.size)
        desk->UserResized(window, size);
}

void HeadlessToolkit::ShowLeastSize(gui::Dialog& window)
{
    ResizeWindow(window, window.size);
}

gui::Point HeadlessToolkit::InsideCorner(gui::Dialog& window)
{
    return InsideCornerOf(window);
}

gui::Dialog* HeadlessToolkit::WindowAt(gui::Point screen)
{
    return windows.At(screen);
}

// Gadgets.

void HeadlessToolkit::MakeGadget(gui::Gadget& gadget)
{
    gadget.native = std::make_unique<GadgetNative>();
}

void HeadlessToolkit::DropGadget(gui::Gadget& gadget)
{
    windows.Forget(gadget);
    if (track && &track->gadget == &gadget)
        track->state = PointerTrack::State::Cancelled;
}

gui::Size HeadlessToolkit::NeedOf(const gui::Gadget& gadget)
{
    return NeedOfContents(gadget);
}

gui::Metrics HeadlessToolkit::GetMetrics()
{
    return {};
}

void HeadlessToolkit::PlaceGadget(gui::Gadget& gadget, bool isVisible)
{
    GadgetNative& native = NativeOf(gadget);
    native.isVisible = isVisible;
    if (!isVisible)
        native.painted = {}; // all of it is new when it comes back
}

void HeadlessToolkit::ShowGadget(gui::Gadget& gadget, gui::Change change)
{
    if (change == gui::Change::Everything && DrawsItself(gadget))
        MarkDirty(gadget, SeenPart(gadget));
}

void HeadlessToolkit::SelectText(gui::Gadget& gadget, int from, int count)
{
    NativeOf(gadget).editor.Select(gadget.text, from, count);
}

void HeadlessToolkit::FocusGadget(gui::Gadget& gadget)
{
    if (windows.IsActive(gadget.dialog->Window()))
        EndPopupEdit(false); // it loses the focus
    if (!gadget.isGone)
        windows.GiveFocus(gadget);
}

// Drawing and text.

void HeadlessToolkit::Redraw(gui::Gadget& gadget, const gui::Place& part)
{
    MarkDirty(gadget, part);
}

int HeadlessToolkit::TextWidth(std::u16string_view text)
{
    return WidthOfText(text);
}

int HeadlessToolkit::FontHeight()
{
    return cellHeight;
}

gui::Colour HeadlessToolkit::ColourOf(int32_t number)
{
    return PaletteColour(number);
}

} // namespace vx3::headless
