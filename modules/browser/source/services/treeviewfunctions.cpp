#include "services/treeviewfunctions.h"

namespace browser {

namespace {

TreeViewFunctions& Of(void* object)
{
    return *static_cast<TreeViewFunctions*>(object);
}

} // namespace

const VX3TreeTable TreeViewFunctions::table = {
    .firstRoot = [](void* object) { return Of(object).GetFirstRoot(); },
    .firstChild = [](void* object, void* row) { return Of(object).GetFirstChild(row); },
    .next = [](void* object, void* row) { return Of(object).GetNext(row); },
    .previous = [](void* object, void* row) { return Of(object).GetPrevious(row); },
    .columnWidth = [](void* object, void* row, int32_t column) { return Of(object).GetColumnWidth(row, column); },
    .rowHeight = [](void* object, void* row) { return Of(object).GetRowHeight(row); },
    .drawCell =
        [](void* object, void* row, int32_t column, VX3Canvas canvas, const VX3Rectangle* cell) {
            Of(object).DrawCell(row, column, Canvas(canvas), { cell->x1, cell->y1, cell->x2, cell->y2 });
        },
    .hasExpander = [](void* object, void* row) -> VX3Bool { return Of(object).HasExpander(row); },
    .isSelected = [](void* object, void* row) -> VX3Bool { return Of(object).IsSelected(row); },
    .isOpen = [](void* object, void* row) -> VX3Bool { return Of(object).IsOpen(row); },
    .name = [](void* object, void* row, VX3String* text) { Of(object).GetName(row, String::Of(text)); },
    .id = [](void* object, void* row) { return Of(object).GetId(row); },
    .dragType = [](void* object, void* row) { return Of(object).GetDragType(row); },
    .open = [](void* object, void* row, VX3Bool open) { Of(object).Open(row, open != 0); },
    .select = [](void* object, void* row, int32_t mode) { Of(object).Select(row, mode); },
    .acceptDrag = [](void* object, void* row,
                     const VX3Container* message) { return Of(object).AcceptDrag(row, *BaseContainer::Of(message)); },
    .drop = [](void* object, void* row, const VX3Container* message) { Of(object).Drop(row, *BaseContainer::Of(message)); },
    .contextMenu = [](void* object, void* row, VX3Container* menu) { Of(object).BuildContextMenu(row, *BaseContainer::Of(menu)); },
    .menuCommand = [](void* object, void* row, int32_t command) -> VX3Bool { return Of(object).MenuCommand(row, command); },
    .makeDrag = [](void* object, void* row) { return Of(object).MakeDrag(row); },
    .freeDrag = [](void* object, void* row, void* data) { Of(object).FreeDrag(row, data); },
    .doubleClick = [](void* object, void* row) -> VX3Bool { return Of(object).DoubleClick(row); },
    .deleteKey = [](void* object) -> VX3Bool { return Of(object).DeleteKey(); },
};

bool TreeViewFunctions::AttachTo(DialogBase& owner, int32_t place)
{
    dialog = owner.Handle();
    gadget = place;
    return dialog && host->gui->tree->attach(dialog, gadget, this, &table);
}

bool TreeViewFunctions::Refresh()
{
    return dialog && host->gui->tree->refresh(dialog, gadget);
}

bool TreeViewFunctions::Redraw()
{
    return dialog && host->gui->tree->redraw(dialog, gadget);
}

bool TreeViewFunctions::ShowRow(Row row)
{
    return dialog && host->gui->tree->showRow(dialog, gadget, row);
}

bool TreeViewFunctions::SetFocusRow(Row row)
{
    return dialog && host->gui->tree->setFocusRow(dialog, gadget, row);
}

bool TreeViewFunctions::GetRowPlace(Row row, Rectangle& place, int32_t& indent) const
{
    VX3Rectangle found = {};
    if (!dialog || !host->gui->tree->getRowPlace(dialog, gadget, row, &found, &indent))
        return false;
    place = { found.x1, found.y1, found.x2, found.y2 };
    return true;
}

} // namespace browser
