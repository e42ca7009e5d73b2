#include "gui/drags.h"

#include <utility>

#include "gui/dialoglife.h"
#include "gui/gadgettree.h"
#include "gui/layout.h"
#include "gui/messages.h"
#include "gui/treeinput.h"

namespace vx3::gui {

namespace {

enum class Phase { Move, Drop, End };

// The gadget under a point of the screen, or none.
Gadget* GadgetOnScreen(DeskState& desk, Point screen)
{
    Dialog* window = desk.toolkit.WindowAt(screen);
    if (!window || !IsLive(*window))
        return nullptr;
    return GadgetAt(*window, screen - desk.toolkit.InsideCorner(*window));
}

// The nearest number around a gadget in its dialog; 0 if none has one.
int32_t NumberOf(const Gadget* gadget)
{
    while (gadget && gadget->shape.id == 0)
        gadget = gadget->parent;
    return gadget ? gadget->shape.id : 0;
}

void FillIn(const DragRun& run, DragPoint point, Phase phase, Message& message)
{
    message.SetInt(VX3_DRAG_KEY_TYPE, run.type);
    message.SetPointer(VX3_DRAG_KEY_DATA, run.data);
    message.SetInt(VX3_DRAG_KEY_X, point.screen.x);
    message.SetInt(VX3_DRAG_KEY_Y, point.screen.y);
    message.SetInt(VX3_DRAG_KEY_QUALIFIERS, static_cast<int32_t>(point.qualifiers));
    if (phase == Phase::Drop)
        message.SetBool(VX3_DRAG_KEY_DROP, true);
    if (phase == Phase::End)
        message.SetBool(VX3_DRAG_KEY_END, true);
}

// A message to the target. With a gadget if the point is in it.
void SendTo(DeskState& desk, DragRun& run, Dialog& dialog, const Gadget* gadget, DragPoint point, Phase phase)
{
    Message message(VX3_GUI_DRAG);
    FillIn(run, point, phase, message);
    if (const int32_t number = NumberOf(gadget))
        message.SetInt(VX3_DRAG_KEY_GADGET, number);
    DragRun* outer = std::exchange(desk.asked, &run);
    Send(desk, dialog, message);
    desk.asked = outer;
}

Point InTree(DeskState& desk, const Gadget& tree, Point screen)
{
    return screen - desk.toolkit.InsideCorner(tree.dialog->Window()) - PlaceInWindow(tree).Corner();
}

// The tree answers for its dialog.
void AskTree(DeskState& desk, DragRun& run, Gadget& tree, DragPoint point, Phase phase)
{
    Message message(VX3_GUI_DRAG);
    FillIn(run, point, phase, message);
    const Callback callback(desk, *tree.dialog, "drag", tree.shape.id);
    const Point at = InTree(desk, tree, point.screen);
    if (phase == Phase::Drop)
        DropOnTree(tree, at, *message.Get());
    else
        run.cursor = MoveDragOverTree(tree, at, *message.Get());
}

// Whoever got the last message hears that the pointer has left.
void LeaveTarget(DeskState& desk, DragRun& run, DragPoint point)
{
    Dialog* dialog = FindDialog(desk, std::exchange(run.target, 0));
    Gadget* tree = std::exchange(run.tree, nullptr);
    if (!dialog || !IsLive(*dialog))
        return;
    if (tree)
        LeaveTreeDrag(*tree);
    else
        SendTo(desk, run, *dialog, nullptr, point, Phase::End);
}

// Leaves the target before if the pointer is over another one. None: it is over nothing that
// could be asked, or the drag has ended meanwhile.
Gadget* FindTarget(DeskState& desk, DragRun& run, DragPoint point)
{
    Gadget* gadget = GadgetOnScreen(desk, point.screen);
    const VX3Dialog target = gadget ? gadget->dialog->handle : 0;
    Gadget* tree = gadget && gadget->tree ? gadget : nullptr;
    if (run.target != 0 && (run.target != target || run.tree != tree))
        LeaveTarget(desk, run, point);
    if (!run.isRunning || !gadget || gadget->isGone || !IsLive(*gadget->dialog))
        return nullptr;
    run.target = target;
    run.tree = tree;
    return gadget;
}

void Ask(DeskState& desk, DragRun& run, Gadget& gadget, DragPoint point, Phase phase)
{
    run.cursor = VX3_CURSOR_REFUSED;
    if (run.tree)
        AskTree(desk, run, gadget, point, phase);
    else
        SendTo(desk, run, *gadget.dialog, &gadget, point, phase);
}

// The drag in which another one begins, put aside.
class OuterDrag
{
public:
    explicit OuterDrag(DeskState& ownDesk)
        : desk(ownDesk)
        , outer(std::exchange(ownDesk.drag, {}))
    {
    }
    ~OuterDrag() { desk.drag = outer; }
    OuterDrag(const OuterDrag&) = delete;
    OuterDrag& operator=(const OuterDrag&) = delete;

private:
    DeskState& desk;
    const DragRun outer;
};

bool IsOf(const DragRun& run, const Dialog& dialog, const Gadget* group)
{
    return run.origin == dialog.handle && (!group || (run.source && IsInside(*run.source, *group)));
}

} // namespace

void MoveDragTo(DeskState& desk, DragRun& run, DragPoint point)
{
    run.hasMoved = true;
    if (Gadget* gadget = FindTarget(desk, run, point))
        Ask(desk, run, *gadget, point, Phase::Move);
    else
        run.cursor = VX3_CURSOR_REFUSED;
}

void FinishDrag(DeskState& desk, DragRun& run, DragPoint point, bool isDropped)
{
    if (!run.isRunning)
        return;
    Gadget* gadget = isDropped && run.hasMoved ? FindTarget(desk, run, point) : nullptr;
    run.isRunning = false;
    if (gadget)
        Ask(desk, run, *gadget, point, Phase::Drop);
    else if (run.target != 0)
        LeaveTarget(desk, run, point);
    run.target = 0;
    run.tree = nullptr;
}

void EndDragsOf(DeskState& desk, Dialog& dialog, Gadget* group)
{
    if (IsOf(desk.drag, dialog, group))
        FinishDrag(desk, desk.drag, {}, false);
    std::vector<std::shared_ptr<TreeState>> trees;
    if (group || dialog.root)
        ForEachGadget(group ? *group : *dialog.root, [&](Gadget& gadget) {
            if (gadget.dialog == &dialog && gadget.tree)
                trees.push_back(gadget.tree);
        });
    for (const std::shared_ptr<TreeState>& tree : trees)
        FreeTreeDrag(*tree);
}

bool RunDragOf(DeskState& desk, Gadget& gadget, int32_t type, void* data)
{
    if (IsPointerTaken(desk) || !IsLive(*gadget.dialog) || WantsToLeave(*gadget.dialog))
        return false;
    const OuterDrag outer(desk); // a drop of it may be going on
    desk.drag.isRunning = true;
    desk.drag.source = &gadget;
    desk.drag.type = type;
    desk.drag.data = data;
    desk.drag.origin = gadget.dialog->handle;
    const NestedRun run(desk, *gadget.dialog);
    desk.toolkit.RunDrag(gadget);
    FinishDrag(desk, desk.drag, {}, false); // if the toolkit was stopped in the middle
    return desk.drag.hasMoved;
}

} // namespace vx3::gui
