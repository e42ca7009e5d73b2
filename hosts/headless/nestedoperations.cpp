// Modal windows, rubber bands, drags and menus: the script goes on inside them.
#include <algorithm>
#include <cstdlib>
#include <utility>

#include "gui/layout.h"
#include "gui/menutext.h"
#include "headless/headlesstoolkit.h"
#include "headless/natives.h"

namespace vx3::headless {

namespace {

uint32_t ButtonBit(int32_t channel)
{
    return 1u << channel;
}

const char* NameOfCursor(int32_t shape)
{
    switch (shape) {
    case VX3_CURSOR_NORMAL: return "normal";
    case VX3_CURSOR_BUSY: return "busy";
    case VX3_CURSOR_REFUSED: return "refused";
    case VX3_CURSOR_COPY: return "copy";
    case VX3_CURSOR_ACCEPT: return "accept";
    default: return "unknown";
    }
}

gui::Point ToScreen(const gui::Gadget& gadget, gui::Point inGadget)
{
    return InsideCornerOf(gadget.dialog->Window()) + gui::PlaceInWindow(gadget).Corner() + inGadget;
}

int Distance(gui::Point a, gui::Point b)
{
    return std::abs(a.x - b.x) + std::abs(a.y - b.y);
}

} // namespace

// The pointer.

void HeadlessToolkit::PointTo(gui::Point screen)
{
    pointer = screen;
    const bool isHeld = track && track->state == PointerTrack::State::Held;
    if (isHeld && track->kind == PointerTrack::Kind::Band)
        track->last = screen - ToScreen(track->gadget, {});
}

void HeadlessToolkit::MovePointer(gui::Point screen)
{
    PointTo(screen);
    if (!track || track->state != PointerTrack::State::Held || track->kind != PointerTrack::Kind::Drag)
        return;
    track->hasMoved |= Distance(screen, track->start) >= dragDistance;
    if (track->hasMoved && !desk->MoveDrag(screen, heldKeys))
        CancelTracking();
}

void HeadlessToolkit::Press(gui::Point screen, int32_t channel)
{
    PointTo(screen);
    heldButtons |= ButtonBit(channel);
    CancelTracking();
}

void HeadlessToolkit::Release(gui::Point screen, int32_t channel)
{
    PointTo(screen);
    heldButtons &= ~ButtonBit(channel);
    if (channel == VX3_CHANNEL_LEFT && track && track->state == PointerTrack::State::Held)
        track->state = PointerTrack::State::Released;
}

void HeadlessToolkit::CancelTracking()
{
    if (track)
        track->state = PointerTrack::State::Cancelled;
}

uint32_t HeadlessToolkit::PointerState(gui::Point& screen)
{
    screen = pointer;
    return heldButtons;
}

// That of a drag goes before that of the module.
std::string HeadlessToolkit::DescribeCursor() const
{
    const int32_t shape = dragCursor ? dragCursor : cursor;
    return shape == VX3_CURSOR_NORMAL ? std::string() : std::string("cursor ") + NameOfCursor(shape) + "\n";
}

// Nested operations.

void HeadlessToolkit::RunModal(gui::Dialog& window)
{
    while (windows.Has(window) && !NativeOf(window).hasEndedModal) {
        Turn();
        if (step && step())
            continue;
        user.Fail("the script has ended while a modal window is open");
        break;
    }
}

void HeadlessToolkit::EndModal(gui::Dialog& window)
{
    NativeOf(window).hasEndedModal = true;
}

void HeadlessToolkit::RunTrack(PointerTrack& own, const char* what)
{
    track = &own;
    while (own.state == PointerTrack::State::Held) {
        Turn();
        if (own.state != PointerTrack::State::Held || (step && step()))
            continue;
        user.Fail(std::string("the script has ended while ") + what + " is going on");
        own.state = PointerTrack::State::Cancelled;
    }
    track = nullptr;
}

gui::Band HeadlessToolkit::TrackRubberBand(gui::Gadget& area, gui::Point start)
{
    if (track)
        return {};
    PointerTrack own = { PointerTrack::Kind::Band, area, start, start };
    RunTrack(own, "a rubber band");
    if (own.state == PointerTrack::State::Cancelled)
        return { VX3_BAND_CANCELLED, {} };
    if (own.last == start)
        return { VX3_BAND_UNMOVED, {} };
    return { VX3_BAND_RECTANGLE,
             { std::min(start.x, own.last.x), std::min(start.y, own.last.y), std::max(start.x, own.last.x),
               std::max(start.y, own.last.y) } };
}

void HeadlessToolkit::RunDrag(gui::Gadget& area)
{
    PointerTrack own = { PointerTrack::Kind::Drag, area, pointer, {} };
    if (!track)
        RunTrack(own, "a drag");
    desk->EndDrag(pointer, heldKeys, own.hasMoved && own.state == PointerTrack::State::Released);
    dragCursor = 0;
}

int32_t HeadlessToolkit::RunPopup(gui::Dialog& window, const std::vector<gui::MenuItem>& menu, gui::Point)
{
    std::string answer;
    if (!AskUser(gui::DescribeMenu(menu), answer) || !windows.Has(window))
        return 0;
    int32_t id = 0;
    if (!gui::ChooseFromMenu(menu, answer, id))
        user.Fail("the menu has no row to choose for '" + answer + "'");
    return id;
}

void HeadlessToolkit::CancelNested(gui::Dialog& window)
{
    if (track && &track->gadget.dialog->Window() == &window)
        track->state = PointerTrack::State::Cancelled;
}

// The popup edit.

void HeadlessToolkit::OpenPopupEdit(gui::Dialog& window, const gui::Place& screen, const std::u16string& text)
{
    popup = { &window, screen, text, {} };
    popup.editor.SelectAll(text);
}

void HeadlessToolkit::EndPopupEdit(bool isCancelled)
{
    const std::u16string text = popup.text;
    if (std::exchange(popup, {}).window)
        desk->PopupEditEnded(text, isCancelled);
}

} // namespace vx3::headless
