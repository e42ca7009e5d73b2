#include "gui/treeinput.h"

#include <algorithm>

#include "gui/guarded.h"
#include "gui/tracks.h"

namespace vx3::gui {

namespace {

constexpr int rowsOfNotch = 3; // scrolled by a notch of the wheel
constexpr int wheelNotch = 120;

Toolkit& ToolkitOf(const TreeCall& call)
{
    return call.tree->host->GetToolkit();
}

bool IsSelected(const TreeCall& call, const TreeRow& row)
{
    const AskScope scope;
    return call.tree->table->isSelected && call.tree->table->isSelected(call.tree->object, row.row);
}

bool IsOnExpander(const TreeCall& call, const TreeRow& row, int x)
{
    const int left = row.depth * treeIndent - call.gadget.scrolled.x;
    return row.hasExpander && x >= left && x < left + treeIndent;
}

// The type of what is dragged then; 0 if nothing can be.
int32_t MakeDrag(TreeState& tree, int64_t id)
{
    const auto index = FindRowById(tree, id);
    if (!index || !tree.table->dragType || !tree.table->makeDrag)
        return 0;
    const AskScope scope;
    void* row = tree.rows[*index].row;
    const int32_t type = tree.table->dragType(tree.object, row);
    void* data = type ? tree.table->makeDrag(tree.object, row) : nullptr;
    if (data)
        tree.dragged = { id, data };
    return data ? type : 0;
}

// From the press until the button is let go; true if something was dragged.
bool DragRow(TreeCall& call, int64_t id)
{
    TreeState& tree = *call.tree;
    const int32_t type = tree.dragged ? 0 : MakeDrag(tree, id);
    if (type == 0)
        return false;
    const bool isDragged = Safely([&] { return tree.host->Drag(call.gadget, type, tree.dragged->data); });
    if (!call.IsGone())
        FreeTreeDrag(tree);
    return isDragged;
}

// Mostly a row is where it was, so that many are found in a moment.
std::optional<size_t> FindRowNear(TreeState& tree, size_t index, int64_t id)
{
    const std::vector<TreeRow>& rows = RowsOf(tree);
    return index < rows.size() && rows[index].id == id ? std::optional(index) : FindRowById(tree, id);
}

// False if the tree has gone.
bool SelectRow(TreeCall& call, std::optional<size_t> index, int32_t mode)
{
    if (!index)
        return true;
    const TreeRow row = call.tree->rows[*index];
    call.tree->focus = row.id;
    if (call.tree->table->select)
        call.tree->table->select(call.tree->object, row.row, mode);
    if (!call.IsGone())
        RedrawTree(call.gadget);
    return !call.IsGone();
}

// All rows between the one with the focus and another, the other one last.
void SelectUpTo(TreeCall& call, int64_t id)
{
    const auto last = FindRowById(*call.tree, id);
    if (!last)
        return;
    const std::vector<TreeRow> rows = call.tree->rows;
    size_t first = *last;
    for (size_t i = 0; i < rows.size(); ++i)
        if (rows[i].id == call.tree->focus)
            first = i;
    for (size_t i = first;; i < *last ? ++i : --i) {
        if (!SelectRow(call, FindRowNear(*call.tree, i, rows[i].id), i == first ? VX3_SELECT_NEW : VX3_SELECT_ADD) || i == *last)
            return;
    }
}

// A press on what is selected leaves that as it is until the button is let go, so that all of
// it can be dragged.
void PressRow(TreeCall& call, const TreeRow& row, uint32_t qualifiers)
{
    const bool wasSelected = IsSelected(call, row);
    if (qualifiers & VX3_QUALIFIER_SHIFT) {
        SelectUpTo(call, row.id);
        return;
    }
    if ((qualifiers & VX3_QUALIFIER_CTRL) && wasSelected) {
        SelectTreeRow(call, row.id, VX3_SELECT_REMOVE);
        return;
    }
    const int32_t mode = qualifiers & VX3_QUALIFIER_CTRL ? VX3_SELECT_ADD : VX3_SELECT_NEW;
    if (!wasSelected && !SelectTreeRow(call, row.id, mode))
        return;
    const bool isDragged = DragRow(call, row.id);
    if (!isDragged && wasSelected && !call.IsGone())
        SelectTreeRow(call, row.id, VX3_SELECT_NEW);
}

bool PressLeft(TreeCall& call, const Input& input)
{
    ToolkitOf(call).FocusGadget(call.gadget);
    if (call.IsGone())
        return true;
    const auto index = RowAt(call.gadget, input.at.y);
    if (!index)
        return true;
    const TreeRow row = call.tree->rows[*index];
    if (IsOnExpander(call, row, input.at.x))
        OpenTreeRow(call, row.id, !row.isOpen);
    else if (input.isDouble)
        ActivateTreeRow(call, row.id);
    else
        PressRow(call, row, input.qualifiers);
    return true;
}

bool PressRight(TreeCall& call, const Input& input)
{
    ToolkitOf(call).FocusGadget(call.gadget);
    if (call.IsGone())
        return true;
    const auto index = RowAt(call.gadget, input.at.y);
    if (!index)
        return false;
    const TreeRow row = call.tree->rows[*index];
    if (IsSelected(call, row) || SelectTreeRow(call, row.id, VX3_SELECT_NEW))
        RunTreeMenu(call, row.id);
    return true;
}

bool TurnWheel(TreeCall& call, const Input& input)
{
    const std::vector<TreeRow>& rows = RowsOf(*call.tree);
    if (rows.empty())
        return true;
    const int64_t wanted = -int64_t(input.value) * rowsOfNotch * rows.front().height / wheelNotch;
    const int distance = static_cast<int>(std::clamp<int64_t>(wanted, -mostLength, mostLength));
    const bool isSideways = (input.qualifiers & VX3_QUALIFIER_SHIFT) != 0;
    ScrollTree(call.gadget, isSideways ? Point{ distance, 0 } : Point{ 0, distance });
    return true;
}

} // namespace

bool FeedTree(Gadget& gadget, const Input& input)
{
    if (!gadget.tree)
        return false;
    TreeCall call(gadget);
    SettleTree(gadget);
    if (input.device == Device::Keyboard)
        return FeedTreeKey(call, input);
    switch (input.channel) {
    case VX3_CHANNEL_LEFT: return PressLeft(call, input);
    case VX3_CHANNEL_RIGHT: return PressRight(call, input);
    case VX3_CHANNEL_WHEEL: return TurnWheel(call, input);
    default: return false;
    }
}

bool SelectTreeRow(TreeCall& call, int64_t id, int32_t mode)
{
    return SelectRow(call, FindRowById(*call.tree, id), mode);
}

bool OpenTreeRow(TreeCall& call, int64_t id, bool isOpen)
{
    const auto index = FindRowById(*call.tree, id);
    if (!index || !call.tree->table->open)
        return true;
    call.tree->table->open(call.tree->object, call.tree->rows[*index].row, isOpen);
    if (call.IsGone())
        return false;
    call.tree->isStale = true;
    SettleTree(call.gadget);
    RedrawTree(call.gadget);
    return true;
}

bool ActivateTreeRow(TreeCall& call, int64_t id)
{
    const auto index = FindRowById(*call.tree, id);
    if (!index)
        return true;
    const TreeRow row = call.tree->rows[*index];
    if (call.tree->table->doubleClick && call.tree->table->doubleClick(call.tree->object, row.row))
        return !call.IsGone();
    return !call.IsGone() && (!row.hasExpander || OpenTreeRow(call, id, !row.isOpen));
}

} // namespace vx3::gui
