// The toolkit without a screen: windows that nobody sees, a clock that stands until it is
// moved, a font and a palette that are the same everywhere, and a user who is a script.
//
// What would be the turn of a main loop is Turn: messages, new windows, drawing. Nested
// operations go on by calling the step function, which acts as the user, until they have
// ended; a question is answered from the queue of the scripted user. Both fail the
// script if they are left alone, and end as if the user had cancelled.
//
// Owned by HeadlessGui. Main thread only, but for WakeUp.
#pragma once

#include <atomic>
#include <functional>
#include <memory>

#include "gui/desk.h"
#include "headless/fixedfont.h"
#include "headless/pointertrack.h"
#include "headless/popupedit.h"
#include "headless/scripteduser.h"
#include "headless/windowstack.h"

namespace vx3::headless {

class HeadlessToolkit : public gui::Toolkit
{
public:
    HeadlessToolkit() = default;
    HeadlessToolkit(const HeadlessToolkit&) = delete;
    HeadlessToolkit& operator=(const HeadlessToolkit&) = delete;

    void SetDesk(gui::Desk* owner); // before any other call; none at the end
    // Acts as the user while something nested goes on. False if there is nothing left to do.
    void SetStep(std::function<bool()> function) { step = std::move(function); }
    // Where names that the user gives in a file chooser begin.
    void SetFolder(std::string ownFolder) { folder = std::move(ownFolder); }

    // The main loop.
    void Turn();
    void Advance(int milliseconds); // timers run when they are due
    ScriptedUser& User() { return user; }
    WindowStack& Windows() { return windows; }
    FixedFont& Font();
    std::string DescribeCursor() const; // what the pointer looks like, a line; empty if as usual

    // The user's hand. A point is of the screen.
    void HoldKeys(uint32_t qualifiers) { heldKeys = qualifiers; }
    void MovePointer(gui::Point screen);
    void Press(gui::Point screen, int32_t channel);   // cancels what is tracked
    void Release(gui::Point screen, int32_t channel); // of the left button: ends what is tracked
    bool IsTracking() const { return track != nullptr; }
    bool IsWoken() const { return isWoken; } // since the last turn
    void CancelTracking();
    PopupEdit& Popup() { return popup; }
    void EndPopupEdit(bool isCancelled); // by the user

    // gui::Toolkit. Titles and menu bars are drawn from the tree of gadgets when a picture is
    // asked for: nothing is kept here that would have to follow them.
    void OpenWindow(gui::Dialog& window) override;
    void CloseWindow(gui::Dialog& window) override;
    void ShowTitle(gui::Dialog&) override { }
    void RaiseWindow(gui::Dialog& window) override;
    void ResizeWindow(gui::Dialog& window, gui::Size inside) override;
    void ShowLeastSize(gui::Dialog& window) override;
    void ShowMenu(gui::Dialog&) override { }
    gui::Point InsideCorner(gui::Dialog& window) override;
    gui::Dialog* WindowAt(gui::Point screen) override;
    void RunModal(gui::Dialog& window) override;
    void EndModal(gui::Dialog& window) override;
    void MakeGadget(gui::Gadget& gadget) override;
    void DropGadget(gui::Gadget& gadget) override;
    gui::Size NeedOf(const gui::Gadget& gadget) override;
    gui::Metrics GetMetrics() override;
    void PlaceGadget(gui::Gadget& gadget, bool isVisible) override;
    void ShowGadget(gui::Gadget& gadget, gui::Change change) override;
    void SelectText(gui::Gadget& gadget, int from, int count) override;
    void FocusGadget(gui::Gadget& gadget) override;
    void Redraw(gui::Gadget& gadget, const gui::Place& part) override;
    int TextWidth(std::u16string_view text) override;
    int FontHeight() override;
    gui::Colour ColourOf(int32_t number) override;
    int64_t Now() override { return now; }
    void WakeAt(int64_t milliseconds) override { wakeAt = milliseconds; }
    void WakeUp() override;
    gui::Band TrackRubberBand(gui::Gadget& area, gui::Point start) override;
    void RunDrag(gui::Gadget& area) override;
    void ShowDragCursor(int32_t shape) override { dragCursor = shape; }
    int32_t RunPopup(gui::Dialog& window, const std::vector<gui::MenuItem>& menu, gui::Point screen) override;
    void CancelNested(gui::Dialog& window) override;
    void OpenPopupEdit(gui::Dialog& window, const gui::Place& screen, const std::u16string& text) override;
    void ClosePopupEdit() override { popup = {}; }
    void SetCursor(int32_t shape) override { cursor = shape; }
    uint32_t Qualifiers() override { return heldKeys; }
    uint32_t PointerState(gui::Point& screen) override;
    void ShowBox(int32_t kind, const std::u16string& text) override;
    bool Ask(const std::u16string& text) override;
    bool Choose(const gui::ChooseRequest& request, std::string& chosen) override;
    bool Reveal(const std::string& path) override;
    bool OpenWithSystem(const std::string& path) override;
    bool OpenPreferences(int32_t page) override;

private:
    // How long a user looks at a menu or a box: timers run in it.
    static constexpr int readingTime = 300;

    void PointTo(gui::Point screen);
    void RunTrack(PointerTrack& own, const char* what);
    bool AskUser(const std::string& shown, std::string& answer);

    gui::Desk* desk = nullptr;
    std::function<bool()> step;
    std::string folder;
    WindowStack windows;
    ScriptedUser user;
    std::unique_ptr<FixedFont> font; // from the first text on

    int64_t now = 0;
    int64_t wakeAt = -1;
    std::atomic<bool> isWoken = false;

    gui::Point pointer;
    uint32_t heldButtons = 0; // a bit for each channel
    uint32_t heldKeys = 0;
    int32_t cursor = VX3_CURSOR_NORMAL;
    int32_t dragCursor = 0; // 0: nothing is dragged
    PointerTrack* track = nullptr;
    PopupEdit popup;
};

} // namespace vx3::headless
