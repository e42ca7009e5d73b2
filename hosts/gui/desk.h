// All dialogs, gadgets and areas of a host, and the section of the table over them.
//
// The functions of the table carry no context, so a process has one desk at a time. Its
// owner makes it with a toolkit, puts Services() into the table that modules get, and ends
// it when they have ended. The first half of the class is the owner's; the second is for
// the toolkit, which tells here what the user did. Main thread only.
//
// Gadgets and dialogs that leave keep their memory until Deliver or RunTimers is called with
// nothing of the desk on the stack. A call for one that has left does nothing.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "gui/toolkit.h"

namespace vx3::gui {

enum class Device { Mouse, Keyboard };

// One event of a user, in the coordinates of the gadget that it happened in.
struct Input {
    Device device = Device::Mouse;
    int32_t channel = VX3_CHANNEL_LEFT; // or a key code
    int32_t value = 1;
    Point at;
    uint32_t qualifiers = 0;
    bool isDouble = false;
    std::u16string text;
};

class Desk
{
public:
    explicit Desk(Toolkit& toolkit);
    ~Desk(); // closes what is open, without asking
    Desk(const Desk&) = delete;
    Desk& operator=(const Desk&) = delete;

    // For the owner.
    static const VX3GuiServices* Services();
    std::vector<Dialog*> Windows() const;                 // open ones, in the order of opening
    Gadget* FindGadget(Dialog& dialog, int32_t id) const; // in it and in the dialogs inside it
    bool AskAndClose(Dialog& window);                     // as the user does; false if it stays
    bool SaveLayout(VX3Container& layout);                // places and contents of all open windows; false: not all
    void SetSavedLayout(const VX3Container& layout);      // for VX3DialogServices::restore
    std::u16string KindName(Dialog& window);              // as its module calls this kind of window; empty if it does not
    void Deliver();                                       // core messages and posted messages, at this moment
    bool HasPosted() const;                               // something waits for Deliver
    void RunTimers();                                     // all that are due at toolkit.Now()
    uint64_t ThreadViolations() const;                    // calls from other threads than the main one
    // What files the drag of a module's own type stands for, native bytes: other programs may take them.
    using FilesOfDrag = std::function<std::vector<std::string>(int32_t type, const void* data)>;
    void SetFilesOfDrag(FilesOfDrag wanted);
    // The longest time that one event of a user, one timer or one drawing took, in milliseconds, and its name.
    double LongestEvent(std::string* what = nullptr) const;
    void ForgetLongestEvent();

    // For the toolkit.
    void Paint(Gadget& gadget, Canvas& canvas, const Place& dirty); // of an area or a tree; in its own coordinates
    bool Feed(Gadget& gadget, const Input& input);                  // mouse and keys of an area or a tree; true: consumed
    bool FeedKey(Dialog& window, const Input& input);               // a key that no gadget wanted
    void UserSetValue(Gadget& gadget, double value, bool isDragged = false);
    void UserSetText(Gadget& gadget, std::u16string text, bool isEntered);
    void UserSetDate(Gadget& gadget, const VX3FileDate& date);
    void UserAskedForMenu(Gadget& gadget);                                 // of a button that has one
    void UserPressed(Gadget& gadget);                                      // a button
    void UserMovedSplitter(Gadget& splitter, size_t border, int position); // in the window's inside
    void UserScrolled(Gadget& scroll, Point scrolled);
    void UpdateMenu(Dialog& window); // before the menu bar is shown: names and states of the commands in it
    void UserChoseMenu(Dialog& window, int32_t id);
    void UserMoved(Dialog& window, Point corner); // of its frame, on the screen
    void UserResized(Dialog& window, Size inside);
    void UserClosed(Dialog& window);                // asks the module first
    void FocusMoved(Dialog& window, Gadget* focus); // none: the window lost it
    // Of RunDrag, from when the pointer has really moved. False: the drag has ended here.
    bool MoveDrag(Point screen, uint32_t qualifiers);
    void EndDrag(Point screen, uint32_t qualifiers, bool isDropped);
    std::vector<std::string> DraggedFiles(); // of the drag that runs, for programs outside
    // A drag from outside: over a window, dropped there, or gone.
    int32_t MoveForeignDrag(Point screen, uint32_t qualifiers, int32_t type, void* data);
    void EndForeignDrag(Point screen, uint32_t qualifiers, int32_t type, void* data, bool isDropped);
    void PopupEditChanged(const std::u16string& text);
    void PopupEditEnded(const std::u16string& text, bool isCancelled);
    void PaletteChanged(); // colours or font: lays out and draws all

    struct State;

private:
    std::unique_ptr<State> state;
};

} // namespace vx3::gui
