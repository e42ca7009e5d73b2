#include "gui/treeinput.h"

namespace vx3::gui {

namespace {

constexpr int scrollEdge = 16;      // from the upper and the lower border, in pixels
constexpr int64_t scrollPause = 50; // milliseconds between two steps

void ScrollAtEdge(Gadget& gadget, int y)
{
    TreeState& tree = *gadget.tree;
    const int64_t now = tree.host->GetToolkit().Now();
    const int direction = y < scrollEdge ? -1 : y >= gadget.view.height - scrollEdge ? 1 : 0;
    if (direction == 0 || RowsOf(tree).empty() || now - tree.dragScrolledAt < scrollPause)
        return;
    tree.dragScrolledAt = now;
    ScrollTree(gadget, { 0, direction * tree.rows.front().height });
}

void SetDropTarget(Gadget& gadget, std::optional<int64_t> id)
{
    if (gadget.tree->dropTarget == id)
        return;
    gadget.tree->dropTarget = id;
    RedrawTree(gadget);
}

uint32_t AskRow(TreeState& tree, std::optional<size_t> index, const VX3Container& message)
{
    if (!index || !tree.table->acceptDrag)
        return VX3_DROP_REFUSED;
    const AskScope scope;
    return tree.table->acceptDrag(tree.object, tree.rows[*index].row, &message);
}

} // namespace

int32_t MoveDragOverTree(Gadget& gadget, Point at, const VX3Container& message)
{
    if (!gadget.tree)
        return VX3_CURSOR_REFUSED;
    TreeState& tree = *gadget.tree;
    ScrollAtEdge(gadget, at.y);
    const auto index = RowAt(gadget, at.y);
    const std::optional<int64_t> id = index ? std::optional(tree.rows[*index].id) : std::nullopt;
    const uint32_t answer = AskRow(tree, index, message);
    const bool isAccepted = (answer & VX3_DROP_ON_ROW) != 0;
    SetDropTarget(gadget, isAccepted ? id : std::nullopt);
    if (!isAccepted)
        return VX3_CURSOR_REFUSED;
    return answer & VX3_DROP_COPY ? VX3_CURSOR_COPY : VX3_CURSOR_ACCEPT;
}

void LeaveTreeDrag(Gadget& gadget)
{
    if (gadget.tree)
        SetDropTarget(gadget, std::nullopt);
}

bool DropOnTree(Gadget& gadget, Point at, const VX3Container& message)
{
    if (!gadget.tree)
        return false;
    SetDropTarget(gadget, std::nullopt);
    const TreeCall call(gadget);
    const auto index = RowAt(gadget, at.y);
    if (!(AskRow(*call.tree, index, message) & VX3_DROP_ON_ROW) || !call.tree->table->drop)
        return false;
    call.tree->table->drop(call.tree->object, call.tree->rows[*index].row, &message);
    return true;
}

} // namespace vx3::gui
