// The inside of the desk: what its files share.
//
// Handles are looked up again after every call that can run a callback. Dialogs, areas and
// gadgets that leave are kept until nothing of the desk is on the stack, so that a callback
// may free whatever it stands in. Main thread only, but for the count of violations.
#pragma once

#include <atomic>
#include <functional>
#include <thread>
#include <unordered_map>

#include "gui/askscope.h"
#include "gui/containervalue.h"
#include "gui/desk.h"
#include "gui/drags.h"
#include "gui/eventwatch.h"
#include "gui/popupedit.h"
#include "gui/postbox.h"
#include "gui/textwidths.h"
#include "gui/timers.h"
#include "gui/treestate.h"

namespace vx3::gui {

struct Desk::State : TreeHost {
    explicit State(Toolkit& ownToolkit)
        : toolkit(ownToolkit)
    {
    }

    Toolkit& toolkit;
    const std::thread::id mainThread = std::this_thread::get_id();
    std::atomic<uint64_t> violations{ 0 };

    std::unordered_map<VX3Dialog, std::unique_ptr<Dialog>> dialogs;
    std::unordered_map<VX3Area, std::unique_ptr<Area>> areas;
    std::vector<Dialog*> windows; // in the order of opening, from the moment that their layout is made

    int depth = 0; // how often the desk is on the stack
    int quiet = 0; // calls on the stack that must not run callbacks: messages wait meanwhile
    std::vector<std::unique_ptr<Gadget>> goneGadgets;
    std::vector<std::unique_ptr<Dialog>> goneDialogs;
    std::vector<std::unique_ptr<Area>> goneAreas;

    Timers timers;
    PostBox posted;
    std::vector<Gadget*> unsettledTrees;
    std::vector<Dialog*> cancellable; // those in which a rubber band, a drag or a popup menu runs
    PopupEdits popupEdits;
    bool hasBand = false; // a rubber band runs
    DragRun drag;         // of an area or a tree
    DragRun foreignDrag;  // from outside
    FilesOfDrag filesOfDrag;
    DragRun* asked = nullptr; // the one whose message is being answered
    EventWatch watch;
    TextWidths widths;
    ContainerValue savedLayout;
    std::vector<VX3Dialog> freeLater; // freed by a callback in which nothing may close
    uint32_t lastMessage = 0;

    // What a tree needs.
    Toolkit& GetToolkit() override { return toolkit; }
    void SettleLater(Gadget& tree) override;
    bool Drag(Gadget& tree, int32_t type, void* data) override;
    int32_t Popup(Gadget& tree, const VX3Container& menu, int32_t x, int32_t y) override;
};

using DeskState = Desk::State;

// There is one pointer: while it draws a rubber band or drags something, it does nothing else.
inline bool IsPointerTaken(const DeskState& desk)
{
    return desk.hasBand || desk.drag.isRunning;
}

// A number for a dialog or an area that was never used before in this process.
uint64_t NewHandle();

// The desk of the process, for a call of a module; none, and counted, on another thread.
DeskState* CurrentDesk();

Dialog* FindDialog(DeskState& desk, VX3Dialog handle);
Area* FindArea(DeskState& desk, VX3Area handle);

// --- On the stack ---

// The desk is on the stack: nothing that left is freed.
class Busy
{
public:
    explicit Busy(DeskState& ownDesk)
        : desk(ownDesk)
    {
        ++desk.depth;
    }
    ~Busy() { --desk.depth; }
    Busy(const Busy&) = delete;
    Busy& operator=(const Busy&) = delete;

private:
    DeskState& desk;
};

// Messages wait for the main loop meanwhile.
class Quiet
{
public:
    explicit Quiet(DeskState& ownDesk)
        : desk(ownDesk)
    {
        ++desk.quiet;
    }
    ~Quiet() { --desk.quiet; }
    Quiet(const Quiet&) = delete;
    Quiet& operator=(const Quiet&) = delete;

private:
    DeskState& desk;
};

// Something of a dialog runs: a callback, or a nested operation. A close that is wanted
// meanwhile is made when the last one has returned.
class Inside
{
public:
    Inside(DeskState& ownDesk, Dialog& dialog);
    ~Inside();
    Inside(const Inside&) = delete;
    Inside& operator=(const Inside&) = delete;

private:
    DeskState& desk;
    Busy busy;
    std::vector<Dialog*> chain; // from the dialog to its window, as it was at first
};

// A callback of a module, which is measured.
class Callback
{
public:
    Callback(DeskState& desk, Dialog& dialog, const char* what, int32_t number = 0)
        : inside(desk, dialog)
        , event(desk.watch, { what, number, dialog.Window().opened.id })
    {
    }

private:
    Inside inside;
    EventWatch::Event event;
};

// The toolkit runs a loop of its own for something that the window's closing cancels.
class NestedRun
{
public:
    NestedRun(DeskState& ownDesk, Dialog& dialog);
    ~NestedRun();
    NestedRun(const NestedRun&) = delete;
    NestedRun& operator=(const NestedRun&) = delete;

private:
    DeskState& desk;
    Inside inside;
    EventWatch::Wait wait;
};

// --- Calls of modules ---

enum class Calls { Silent, Nested };

// One call of a service: on the main thread, with a dialog that exists. A silent one runs
// no callbacks that could be nested before it returns; a nested one is refused while a module
// answers something.
class ServiceCall
{
public:
    explicit ServiceCall(Calls kind = Calls::Silent);
    ~ServiceCall();
    ServiceCall(const ServiceCall&) = delete;
    ServiceCall& operator=(const ServiceCall&) = delete;

    DeskState* desk; // none: the call does nothing and answers 0

private:
    Calls kind;
};

class DialogCall : public ServiceCall
{
public:
    explicit DialogCall(VX3Dialog handle, Calls kind = Calls::Silent);
    explicit operator bool() const { return dialog != nullptr; }
    bool HasGadgets() const { return dialog && dialog->root; } // it is open, or being opened or closed

    Dialog* dialog;
};

// Also with a gadget of that number, and of that kind if one is given.
class GadgetCall : public DialogCall
{
public:
    GadgetCall(VX3Dialog handle, int32_t id, int32_t kind = 0, Calls calls = Calls::Silent);
    explicit operator bool() const { return gadget != nullptr; }

    Gadget* gadget = nullptr;
};

class AreaCall : public ServiceCall
{
public:
    explicit AreaCall(VX3Area handle, Calls kind = Calls::Silent);
    explicit operator bool() const { return area != nullptr; }
    bool IsPlaced() const { return area && area->gadget; }

    Area* area;
};

// Frees the dialogs of freeLater. Calls modules.
void FreeDialogsLater(DeskState& desk);

const VX3DialogServices* DialogServices();
const VX3GadgetServices* GadgetServices();
const VX3AreaServices* AreaServices();
const VX3DrawServices* DrawServices();
const VX3TreeServices* TreeServices();
const VX3MenuServices* MenuServices();
const VX3BoxServices* BoxServices();

} // namespace vx3::gui
