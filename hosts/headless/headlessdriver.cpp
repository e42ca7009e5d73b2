#include "headless/headlessdriver.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <thread>
#include <utility>

#include "core/livecounts.h"
#include "gui/gadgettree.h"
#include "gui/layout.h"
#include "gui/menutext.h"
#include "headless/areapainter.h"
#include "headless/displaylist.h"
#include "headless/gadgetuse.h"
#include "headless/seen.h"
#include "headless/threadstate.h"
#include "headless/windowpicture.h"

namespace vx3::headless {

namespace {

constexpr int notch = 120;      // of a wheel
constexpr int notchPixels = 60; // that a scroll group moves for one

// Settling: the clock goes on in steps, for a time in which every timer of a window runs, and
// again as long as something works.
constexpr int settleStep = 50;
constexpr int settleTime = 1000;
constexpr int quietLooks = 4;
constexpr auto patience = std::chrono::seconds(60); // of real time

std::string NameOf(const gui::Gadget& gadget)
{
    return "gadget " + std::to_string(gadget.shape.id);
}

std::string Words(gui::Point point)
{
    return std::to_string(point.x) + " " + std::to_string(point.y);
}

gui::Point ToScreen(const gui::Gadget& gadget, gui::Point at)
{
    return InsideCornerOf(gadget.dialog->Window()) + gui::PlaceInWindow(gadget).Corner() + at;
}

gui::Gadget* ScrollAround(gui::Gadget& gadget)
{
    gui::Gadget* group = gui::AroundOf(gadget);
    while (group && group->shape.kind != VX3_GADGET_SCROLL)
        group = gui::AroundOf(*group);
    return group;
}

} // namespace

// What a user can do.

bool HeadlessDriver::CanUse(gui::Dialog& window)
{
    if (!window.IsOpen() || !toolkit.Windows().Has(window))
        toolkit.User().Refuse("the window is not open");
    else if (toolkit.Windows().BlockerOf(window))
        toolkit.User().Refuse("a modal window holds up the window");
    else
        return true;
    return false;
}

bool HeadlessDriver::CanUse(gui::Gadget& gadget)
{
    if (!gadget.isGone && !CanUse(gadget.dialog->Window()))
        return false; // told already
    if (!SeenPart(gadget).IsEmpty())
        return true;
    toolkit.User().Refuse(NameOf(gadget) + " is not to be seen");
    return false;
}

bool HeadlessDriver::CanPointAt(gui::Gadget& gadget, gui::Point at)
{
    if (!CanUse(gadget))
        return false;
    if (SeenPart(gadget).Has(at))
        return true;
    toolkit.User().Refuse("the point " + Words(at) + " of " + NameOf(gadget) + " is not to be seen");
    return false;
}

// The mouse.

void HeadlessDriver::Mouse(gui::Gadget& gadget, gui::Point at, int32_t channel, uint32_t qualifiers, bool isPressed, bool isDouble)
{
    toolkit.HoldKeys(qualifiers);
    if (!isPressed) {
        Release(gadget, at, channel);
        return toolkit.Turn();
    }
    if (toolkit.IsTracking()) {
        toolkit.Press(ToScreen(gadget, at), channel);
        return toolkit.Turn();
    }
    if (!CanPointAt(gadget, at))
        return;
    toolkit.Press(ToScreen(gadget, at), channel);
    toolkit.EndPopupEdit(false); // it lost the focus
    if (gadget.isGone)
        return toolkit.Turn();
    toolkit.Windows().Activate(gadget.dialog->Window());
    if (!gadget.isGone && gui::CanBeUsed(gadget))
        Press(gadget, { gui::Device::Mouse, channel, 1, at, qualifiers, isDouble, {} });
    toolkit.Turn();
}

void HeadlessDriver::Press(gui::Gadget& gadget, const gui::Input& input)
{
    if (input.channel == VX3_CHANNEL_LEFT) {
        pressed = &gadget;
        PlaceCaret(gadget, input.at);
    }
    if (TakesFocusByMouse(gadget))
        toolkit.FocusGadget(gadget);
    if (!gadget.isGone && DrawsItself(gadget))
        desk.Feed(gadget, input);
    else if (!gadget.isGone && input.channel == VX3_CHANNEL_RIGHT)
        desk.UserAskedForMenu(gadget);
}

void HeadlessDriver::Release(gui::Gadget& gadget, gui::Point at, int32_t channel)
{
    const bool wasTracking = toolkit.IsTracking();
    toolkit.Release(gadget.isGone ? gui::Point{} : ToScreen(gadget, at), channel);
    if (channel != VX3_CHANNEL_LEFT)
        return;
    const bool isClick = std::exchange(pressed, nullptr) == &gadget && !wasTracking;
    if (isClick && !gadget.isGone && gui::CanBeUsed(gadget) && SeenPart(gadget).Has(at))
        Click(desk, gadget, at);
}

void HeadlessDriver::MoveMouse(gui::Gadget& gadget, gui::Point at, uint32_t qualifiers)
{
    toolkit.HoldKeys(qualifiers);
    toolkit.MovePointer(ToScreen(gadget, at));
    toolkit.Turn();
}

void HeadlessDriver::Wheel(gui::Gadget& gadget, gui::Point at, int32_t value, uint32_t qualifiers)
{
    if (!CanPointAt(gadget, at))
        return;
    toolkit.HoldKeys(qualifiers);
    toolkit.MovePointer(ToScreen(gadget, at));
    const gui::Input input = { gui::Device::Mouse, VX3_CHANNEL_WHEEL, value, at, qualifiers, false, {} };
    const bool isConsumed = DrawsItself(gadget) && desk.Feed(gadget, input);
    gui::Gadget* group = isConsumed || gadget.isGone ? nullptr : ScrollAround(gadget);
    if (group)
        desk.UserScrolled(*group, group->scrolled - gui::Point{ 0, value * notchPixels / notch });
    toolkit.Turn();
}

// The keyboard.

void HeadlessDriver::Key(gui::Dialog& window, int32_t code, uint32_t qualifiers, const std::u16string& text)
{
    toolkit.HoldKeys(qualifiers);
    const gui::Input input = { gui::Device::Keyboard, code, 1, {}, qualifiers, false, text };
    if (toolkit.IsTracking()) {
        if (code == VX3_KEY_ESCAPE)
            toolkit.CancelTracking();
    } else if (toolkit.Popup().window) {
        KeyInPopup(input);
    } else if (CanUse(window)) {
        toolkit.Windows().Activate(window);
        KeyInWindow(window, input);
    }
    toolkit.Turn();
}

void HeadlessDriver::KeyInPopup(const gui::Input& input)
{
    PopupEdit& popup = toolkit.Popup();
    switch (popup.editor.Key(popup.text, input.channel, input.qualifiers, input.text, false, false)) {
    case LineEditor::Result::Changed: {
        const std::u16string text = popup.text; // the desk may close it
        return desk.PopupEditChanged(text);
    }
    case LineEditor::Result::Entered: return toolkit.EndPopupEdit(false);
    case LineEditor::Result::Cancelled: return toolkit.EndPopupEdit(true);
    default: return;
    }
}

// Who has the focus gets a key first, then the tabulator, the window, and its close button.
void HeadlessDriver::KeyInWindow(gui::Dialog& window, const gui::Input& input)
{
    if (window.focus && gui::CanBeUsed(*window.focus) && PressKey(desk, *window.focus, input))
        return;
    if (input.channel == VX3_KEY_TAB)
        return FocusNext(window, (input.qualifiers & VX3_QUALIFIER_SHIFT) != 0);
    if (!desk.FeedKey(window, input) && input.channel == VX3_KEY_ESCAPE && window.isModal)
        desk.UserClosed(window);
}

void HeadlessDriver::FocusNext(gui::Dialog& window, bool goesBack)
{
    std::vector<gui::Gadget*> stops;
    ForEachVisible(window, [&stops](gui::Gadget& gadget) {
        if (TakesFocusByTab(gadget))
            stops.push_back(&gadget);
    });
    if (stops.empty())
        return;
    if (goesBack)
        std::reverse(stops.begin(), stops.end());
    auto found = std::find(stops.begin(), stops.end(), window.focus);
    gui::Gadget& next = found == stops.end() || found + 1 == stops.end() ? *stops.front() : **(found + 1);
    EnterByTab(next);
    toolkit.FocusGadget(next);
}

// Gadgets and windows as a whole.

void HeadlessDriver::Push(gui::Gadget& gadget)
{
    const gui::Place part = SeenPart(gadget);
    const gui::Point middle = { part.x + part.width / 2, part.y + part.height / 2 };
    if (!CanPointAt(gadget, middle))
        return;
    if (!gui::CanBeUsed(gadget))
        return toolkit.User().Refuse(NameOf(gadget) + " is disabled");
    Mouse(gadget, middle, VX3_CHANNEL_LEFT, 0, true, false);
    Mouse(gadget, middle, VX3_CHANNEL_LEFT, 0, false, false);
}

void HeadlessDriver::SetValue(gui::Gadget& gadget, double value)
{
    if (!CanUse(gadget))
        return;
    if (!ChooseValue(desk, gadget, value))
        toolkit.User().Refuse(NameOf(gadget) + " cannot be set to " + std::to_string(value));
    toolkit.Turn();
}

void HeadlessDriver::SetText(gui::Gadget& gadget, const std::u16string& text)
{
    if (!CanUse(gadget))
        return;
    if (!EnterText(desk, gadget, text))
        toolkit.User().Refuse(NameOf(gadget) + " does not take the text " + QuotedText(text));
    toolkit.Turn();
}

void HeadlessDriver::ChooseMenu(gui::Dialog& window, int32_t id)
{
    if (!CanUse(window))
        return;
    desk.UpdateMenu(window);
    int32_t chosen = 0;
    if (id != 0 && gui::ChooseFromMenu(window.menu, std::to_string(id), chosen))
        desk.UserChoseMenu(window, chosen);
    else
        toolkit.User().Refuse("the menu bar has no row " + std::to_string(id) + " to choose");
    toolkit.Turn();
}

void HeadlessDriver::Close(gui::Dialog& window)
{
    if (CanUse(window))
        desk.UserClosed(window);
    toolkit.Turn();
}

void HeadlessDriver::Answer(const std::string& answer)
{
    toolkit.User().Queue(answer);
}

void HeadlessDriver::Advance(int milliseconds)
{
    toolkit.Advance(milliseconds);
    toolkit.Turn();
}

// Until nothing waits.

// Threads of modules are looked at several times, since one that is about to work may sleep at
// one moment; without any there is nothing to look at.
bool HeadlessDriver::IsQuiet() const
{
    const bool hasThreads = core::liveCounters.threads.Get() > 0;
    for (int look = 0; look < (hasThreads ? quietLooks : 1); ++look) {
        if (look > 0)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        const bool isWaiting = toolkit.IsWoken() || desk.HasPosted() || (isWorking && isWorking());
        if (isWaiting || (hasThreads && !OtherThreadsSleep()))
            return false;
    }
    return true;
}

void HeadlessDriver::Settle()
{
    const auto end = std::chrono::steady_clock::now() + patience;
    while (std::chrono::steady_clock::now() < end) {
        for (int passed = 0; passed < settleTime; passed += settleStep)
            Advance(settleStep);
        if (IsQuiet())
            return;
        while (!IsQuiet() && std::chrono::steady_clock::now() < end) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
            Advance(settleStep);
        }
    }
    toolkit.User().Fail("the modules did not come to rest");
}

// What can be looked at.

bool HeadlessDriver::Shot(gui::Dialog& window, const std::string& file)
{
    toolkit.Turn();
    std::error_code failed;
    const std::string path = std::filesystem::absolute(file, failed).string();
    return !failed && SaveWindowPicture(desk, toolkit, window, path);
}

std::string HeadlessDriver::DumpDisplayList(gui::Dialog& window)
{
    toolkit.Turn();
    return DescribeDrawings(window);
}

std::string HeadlessDriver::DumpMenu()
{
    return toolkit.User().Shown();
}

} // namespace vx3::headless
