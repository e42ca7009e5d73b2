// What a host must be able to do so that the gadget tree shows: one object on Qt, one
// without a screen.
//
// The desk (desk.h) calls downward through this interface, and a toolkit tells the desk
// what the user did. The toolkit decides nothing about layout, numbers or order. Main
// thread only, but for WakeUp.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "gui/canvas.h"
#include "gui/gadget.h"

namespace vx3::gui {

// Distances that the layout needs, as the user's style has them.
struct Metrics {
    int spacing = 4;       // between the cells of a group
    int margin = 4;        // between a titled group's frame, or a tab page's, and its contents
    int splitterWidth = 5; // of a border that the user moves
    int scrollBar = 14;    // thickness of a scroll bar
    int groupTitle = 18;   // height of a titled group's title
    int tabBar = 26;       // height of the row of tabs
};

// What changed in a gadget and is to be shown.
enum class Change { Enabled, Text, Tip, Value, Range, Rows, Picture, Selection, Scrolled, Everything };

struct Band {
    int32_t answer = VX3_BAND_NONE;
    VX3Rectangle rectangle = {};
};

struct ChooseRequest {
    int32_t mode = VX3_CHOOSE_FILE;
    std::u16string title;
    std::u16string filter; // "*.png *.jpg"; empty for all
    std::string start;     // native bytes; empty for none
};

class Toolkit
{
public:
    virtual ~Toolkit() = default;

    // Windows. A window is a Dialog without parent; its native is made by OpenWindow.
    virtual void OpenWindow(Dialog& window) = 0; // with its place; shown when the main loop goes on
    virtual void CloseWindow(Dialog& window) = 0;
    virtual void ShowTitle(Dialog& window) = 0;
    virtual void RaiseWindow(Dialog& window) = 0;
    virtual void ResizeWindow(Dialog& window, Size inside) = 0;
    virtual void ShowLeastSize(Dialog& window) = 0;
    virtual void ShowMenu(Dialog& window) = 0;      // the menu bar, from window.menu
    virtual Point InsideCorner(Dialog& window) = 0; // of its inside, on the screen
    virtual Dialog* WindowAt(Point screen) = 0;     // none: no window of ours
    virtual void RunModal(Dialog& window) = 0;      // nested, until EndModal
    virtual void EndModal(Dialog& window) = 0;

    // Gadgets. `native` of the parent is there first and goes last.
    virtual void MakeGadget(Gadget& gadget) = 0;
    virtual void DropGadget(Gadget& gadget) = 0;
    virtual Size NeedOf(const Gadget& gadget) = 0; // what the contents of a single gadget need
    virtual Metrics GetMetrics() = 0;
    virtual void PlaceGadget(Gadget& gadget, bool isVisible) = 0; // at gadget.place, scrolled by the groups around it
    virtual void ShowGadget(Gadget& gadget, Change change) = 0;
    virtual void SelectText(Gadget& gadget, int from, int count) = 0;
    virtual void FocusGadget(Gadget& gadget) = 0; // tells the desk when it has it

    // Drawing and text.
    virtual void Redraw(Gadget& gadget, const Place& part) = 0; // in the gadget's own coordinates
    virtual int TextWidth(std::u16string_view text) = 0;
    virtual int FontHeight() = 0;
    virtual Colour ColourOf(int32_t number) = 0;

    // Time. The desk keeps the timers; the toolkit calls Desk::RunTimers when one is due.
    virtual int64_t Now() = 0;                     // milliseconds
    virtual void WakeAt(int64_t milliseconds) = 0; // the next that is due; negative: none
    virtual void WakeUp() = 0;                     // calls Desk::Deliver soon. Any thread

    // Nested operations.
    virtual Band TrackRubberBand(Gadget& area, Point start) = 0;
    virtual void RunDrag(Gadget& area) = 0; // reports through Desk::MoveDrag and EndDrag; returns behind EndDrag
    virtual void ShowDragCursor(int32_t cursor) = 0;
    virtual int32_t RunPopup(Dialog& window, const std::vector<MenuItem>& menu, Point screen) = 0; // 0: none chosen
    // The window is about to close: its rubber band, drag or popup menu ends as if the user had
    // cancelled it, as soon as the stack is back there.
    virtual void CancelNested(Dialog& window) = 0;
    virtual void OpenPopupEdit(Dialog& window, const Place& screen, const std::u16string& text) = 0;
    virtual void ClosePopupEdit() = 0; // the desk tells the module: nothing is reported

    // Pointer, keys, boxes.
    virtual void SetCursor(int32_t cursor) = 0;
    virtual uint32_t Qualifiers() = 0;
    virtual uint32_t PointerState(Point& screen) = 0;
    virtual void ShowBox(int32_t kind, const std::u16string& text) = 0;
    virtual bool Ask(const std::u16string& text) = 0;
    virtual bool Choose(const ChooseRequest& request, std::string& chosen) = 0;
    virtual bool Reveal(const std::string& path) = 0;
    virtual bool OpenWithSystem(const std::string& path) = 0;
    virtual bool OpenPreferences(int32_t page) = 0;
};

} // namespace vx3::gui
