#include "gui/treeinput.h"

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
    return call.tree->table->isSelected && call.tree->table->isSelected(call.tree->object, row.row);
}

bool IsOnExpander(const TreeCall& call, const TreeRow& row, int x)
{
    const int left = row.depth * treeIndent - call.gadget.scrolled.x;
    return row.hasExpander && x >= left && x < left + treeIndent;
}

// From the press until the button is let go; true if something was dragged.
bool DragRow(TreeCall& call, int64_t id)
{
    const VX3TreeTable& table = *call.tree->table;
    void* object = call.tree->object;
    const auto index = FindRowById(*call.tree, id);
    if (!index || !table.dragType || !table.makeDrag)
        return false;
    void* row = call.tree->rows[*index].row;
    const int32_t type = table.dragType(object, row);
    void* data = type ? table.makeDrag(object, row) : nullptr;
    if (!data)
        return false;
    const bool isDragged = call.tree->host->Drag(call.gadget, type, data);
    const auto later = FindRowById(*call.tree, id);
    if (table.freeDrag)
        table.freeDrag(object, later ? call.tree->rows[*later].row : nullptr, data);
    return isDragged;
}

// All rows between the one with the focus and another, the other one last.
void SelectUpTo(TreeCall& call, int64_t id)
{
    const auto last = FindRowById(*call.tree, id);
    const size_t first = FindRowById(*call.tree, call.tree->focus).value_or(last.value_or(0));
    if (!last)
        return;
    std::vector<int64_t> ids;
    for (size_t i = first;; i < *last ? ++i : --i) {
        ids.push_back(call.tree->rows[i].id);
        if (i == *last)
            break;
    }
    for (size_t i = 0; i < ids.size(); ++i)
        if (!SelectTreeRow(call, ids[i], i == 0 ? VX3_SELECT_NEW : VX3_SELECT_ADD))
            return;
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
    const int distance = -input.value * rowsOfNotch * rows.front().height / wheelNotch;
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
    const auto index = FindRowById(*call.tree, id);
    if (!index)
        return true;
    call.tree->focus = id;
    if (call.tree->table->select)
        call.tree->table->select(call.tree->object, call.tree->rows[*index].row, mode);
    if (!call.IsGone())
        RedrawTree(call.gadget);
    return !call.IsGone();
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
