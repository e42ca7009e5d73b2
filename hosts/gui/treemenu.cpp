#include "core/values.h"
#include "gui/containervalue.h"
#include "gui/treeinput.h"

namespace vx3::gui {

namespace {

constexpr int mostOpened = 1000; // by one command: a tree may be as large as a disk

struct MenuRow {
    int32_t id;
    const char* text;
};

// The host's own; a module may take them out.
constexpr MenuRow ownRows[] = { { VX3_TREE_MENU_OPEN_ALL, "Expand All" }, { VX3_TREE_MENU_CLOSE_ALL, "Collapse All" } };

void OpenAllBelow(TreeCall& call, int64_t id)
{
    int opened = 0;
    for (size_t offset = 0; opened < mostOpened; ++offset) {
        const auto top = FindRowById(*call.tree, id);
        const std::vector<TreeRow>& rows = call.tree->rows;
        const size_t index = top.value_or(rows.size()) + offset;
        if (index >= rows.size() || (offset > 0 && rows[index].depth <= rows[*top].depth))
            return;
        if (!rows[index].hasExpander || rows[index].isOpen)
            continue;
        ++opened;
        if (!OpenTreeRow(call, rows[index].id, true))
            return;
    }
}

// From the innermost out, so that nothing is open below when it is opened again.
void CloseAll(TreeCall& call)
{
    std::vector<int64_t> open;
    for (const TreeRow& row : RowsOf(*call.tree))
        if (row.isOpen && row.hasExpander)
            open.push_back(row.id);
    for (size_t i = open.size(); i-- > 0;)
        if (!OpenTreeRow(call, open[i], false))
            return;
}

int32_t ChooseFromMenu(TreeCall& call, void* row)
{
    ContainerValue menu;
    for (const MenuRow& own : ownRows)
        core::ContainerServices()->setText(menu.Get(), own.id, core::Text(std::string_view(own.text)).Get());
    if (call.tree->table->contextMenu) {
        const AskScope scope;
        call.tree->table->contextMenu(call.tree->object, row, menu.Get());
    }
    if (call.IsGone() || core::ContainerServices()->count(menu.Get()) == 0)
        return 0;
    return call.tree->host->Popup(call.gadget, *menu.Get(), -1, -1);
}

} // namespace

void RunTreeMenu(TreeCall& call, int64_t id)
{
    const auto index = FindRowById(*call.tree, id);
    const int32_t command = index ? ChooseFromMenu(call, call.tree->rows[*index].row) : 0;
    if (!command || call.IsGone())
        return;
    const auto later = FindRowById(*call.tree, id);
    if (!later)
        return;
    const VX3TreeTable& table = *call.tree->table;
    if ((table.menuCommand && table.menuCommand(call.tree->object, call.tree->rows[*later].row, command)) || call.IsGone())
        return;
    if (command == VX3_TREE_MENU_OPEN_ALL)
        OpenAllBelow(call, id);
    else if (command == VX3_TREE_MENU_CLOSE_ALL)
        CloseAll(call);
}

} // namespace vx3::gui
