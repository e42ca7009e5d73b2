// What a user does in a tree: mouse, wheel and keys, and drags over it. All of it may call
// something nested of the module, which may take the gadget away.
#pragma once

#include "gui/desk.h"
#include "gui/treestate.h"

namespace vx3::gui {

// A gadget and its state, kept over nested calls: afterwards both may have gone, or the
// gadget may show another tree.
class TreeCall
{
public:
    explicit TreeCall(Gadget& ownGadget)
        : gadget(ownGadget)
        , tree(ownGadget.tree)
    {
    }

    bool IsGone() const { return gadget.isGone || gadget.tree != tree; }

    Gadget& gadget;
    const std::shared_ptr<TreeState> tree;
};

// One event in the coordinates of the view. True: consumed. A tree that was never attached
// consumes nothing.
bool FeedTree(Gadget& gadget, const Input& input);

// --- Drags over the tree, with a message as of VX3_GUI_DRAG and the point in the view ---

// A VX3_CURSOR value: what a drop would do. Scrolls near the upper and the lower edge.
int32_t MoveDragOverTree(Gadget& gadget, Point at, const VX3Container& message);
void LeaveTreeDrag(Gadget& gadget);
// Drops on the row if it accepts that. Nested.
bool DropOnTree(Gadget& gadget, Point at, const VX3Container& message);

// --- Inside of the tree: what mouse and keys share ---

// Each finds its row again by id after a nested call; false if the tree has gone.
bool SelectTreeRow(TreeCall& call, int64_t id, int32_t mode);
bool OpenTreeRow(TreeCall& call, int64_t id, bool isOpen);
bool ActivateTreeRow(TreeCall& call, int64_t id); // as a double click
bool FeedTreeKey(TreeCall& call, const Input& input);
void RunTreeMenu(TreeCall& call, int64_t id);

} // namespace vx3::gui
