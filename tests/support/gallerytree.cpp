// Budget: Table, one flat table of callbacks
#include "support/gallerytree.h"

namespace vx3::tests {

namespace {

constexpr int32_t rowHeight = 18;
constexpr int32_t columnWidth = 160;
constexpr int32_t ownMenuRow = 1;
constexpr int32_t dragTypeOfRows = VX3_DRAG_BROWSER;

} // namespace

GalleryTree::GalleryTree(const VX3Host& ownHost, GalleryLog& ownLog)
    : host(ownHost)
    , log(ownLog)
{
    for (const char* shelf : { "wood", "stone", "metal" }) {
        Row* row = Add(root, shelf);
        for (const char* box : { "rough", "smooth" })
            Add(*row, std::string(box) + " " + shelf);
    }
    root.children[1]->isOpen = true;
}

GalleryTree::Row* GalleryTree::Add(Row& parent, const std::string& name)
{
    parent.children.push_back(std::make_unique<Row>());
    Row* row = parent.children.back().get();
    row->name = name;
    row->id = ++lastId;
    row->parent = &parent;
    return row;
}

void GalleryTree::Attach(VX3Dialog ownDialog, int32_t ownGadget)
{
    dialog = ownDialog;
    gadget = ownGadget;
    host.gui->tree->attach(dialog, gadget, this, &Table());
}

void* GalleryTree::Neighbour(const Row& row, int step) const
{
    const auto& rows = row.parent->children;
    for (size_t index = 0; index < rows.size(); ++index) {
        const size_t other = index + static_cast<size_t>(step);
        if (rows[index].get() == &row)
            return other < rows.size() ? rows[other].get() : nullptr;
    }
    return nullptr;
}

void GalleryTree::SelectNone(Row& row)
{
    row.isSelected = false;
    for (const auto& child : row.children)
        SelectNone(*child);
}

void GalleryTree::Select(Row& row, int32_t mode)
{
    if (mode == VX3_SELECT_NEW)
        SelectNone(root);
    row.isSelected = mode != VX3_SELECT_REMOVE;
    Log("select " + row.name + " mode " + std::to_string(mode));
    host.gui->tree->redraw(dialog, gadget);
}

VX3Bool GalleryTree::DeleteSelected(Row& row)
{
    const size_t before = row.children.size();
    std::erase_if(row.children, [](const std::unique_ptr<Row>& child) { return child->isSelected; });
    VX3Bool isAny = row.children.size() != before;
    for (const auto& child : row.children)
        isAny |= DeleteSelected(*child);
    return isAny;
}

void GalleryTree::DrawCell(const Row& row, VX3Canvas canvas, const VX3Rectangle& cell) const
{
    const VX3DrawServices& draw = *host.gui->draw;
    const int32_t background = row.isSelected ? VX3_COLOUR_SELECTION : VX3_COLOUR_BACKGROUND;
    draw.setPen(canvas, background);
    draw.fillRectangle(canvas, &cell);
    draw.setTextColours(canvas, row.isSelected ? VX3_COLOUR_SELECTED_TEXT : VX3_COLOUR_TEXT, background);
    HostText name(host, row.name);
    int32_t length = 0;
    const VX3Unit* units = host.text->view(name.Get(), &length);
    draw.drawText(canvas, units, length, cell.x1 + 2, cell.y1 + 2);
}

void GalleryTree::Describe(const Row& row, size_t depth, std::string& text) const
{
    for (const auto& child : row.children) {
        const char* sign = child->children.empty() ? "  " : child->isOpen ? "- " : "+ ";
        text += std::string(2 * depth, ' ') + sign + child->name + (child->isSelected ? " *" : "") + "\n";
        if (child->isOpen)
            Describe(*child, depth + 1, text);
    }
}

std::string GalleryTree::Describe() const
{
    std::string text;
    Describe(root, 0, text);
    return text;
}

const VX3TreeTable& GalleryTree::Table()
{
    static const VX3TreeTable table = [] {
        VX3TreeTable filled = {};
        filled.firstRoot = [](void* object) -> void* {
            const auto& roots = Of(object).root.children;
            return roots.empty() ? nullptr : roots.front().get();
        };
        filled.firstChild = [](void*, void* row) -> void* {
            const auto& children = RowOf(row).children;
            return children.empty() ? nullptr : children.front().get();
        };
        filled.next = [](void* object, void* row) { return Of(object).Neighbour(RowOf(row), 1); };
        filled.previous = [](void* object, void* row) { return Of(object).Neighbour(RowOf(row), -1); };
        filled.columnWidth = [](void*, void*, int32_t) { return columnWidth; };
        filled.rowHeight = [](void*, void*) { return rowHeight; };
        filled.drawCell = [](void* object, void* row, int32_t, VX3Canvas canvas, const VX3Rectangle* cell) {
            Of(object).DrawCell(RowOf(row), canvas, *cell);
        };
        filled.isSelected = [](void*, void* row) -> VX3Bool { return RowOf(row).isSelected; };
        filled.isOpen = [](void*, void* row) -> VX3Bool { return RowOf(row).isOpen; };
        filled.name = [](void* object, void* row, VX3String* text) {
            const VX3Host& host = Of(object).host;
            host.text->copy(text, HostText(host, RowOf(row).name).Get());
        };
        filled.id = [](void*, void* row) { return RowOf(row).id; };
        filled.dragType = [](void*, void*) -> int32_t { return dragTypeOfRows; };
        filled.open = [](void* object, void* row, VX3Bool open) {
            RowOf(row).isOpen = open;
            Of(object).Log((open ? "open " : "close ") + RowOf(row).name);
        };
        filled.select = [](void* object, void* row, int32_t mode) { Of(object).Select(RowOf(row), mode); };
        filled.acceptDrag = [](void*, void* row, const VX3Container*) -> uint32_t {
            return RowOf(row).children.empty() ? VX3_DROP_REFUSED : VX3_DROP_ON_ROW;
        };
        filled.drop = [](void* object, void* row, const VX3Container*) { Of(object).Log("drop on " + RowOf(row).name); };
        filled.contextMenu = [](void* object, void*, VX3Container* menu) {
            const VX3Host& host = Of(object).host;
            host.container->remove(menu, VX3_TREE_MENU_CLOSE_ALL);
            host.container->setText(menu, ownMenuRow, HostText(host, "Count").Get());
        };
        filled.menuCommand = [](void* object, void* row, int32_t command) -> VX3Bool {
            if (command != ownMenuRow)
                return 0;
            Of(object).Log("count of " + RowOf(row).name + ": " + std::to_string(RowOf(row).children.size()));
            return 1;
        };
        filled.makeDrag = [](void*, void* row) { return row; };
        filled.freeDrag = [](void* object, void* row, void*) { Of(object).Log("drag of " + RowOf(row).name + " freed"); };
        filled.doubleClick = [](void* object, void* row) -> VX3Bool {
            Of(object).Log("double click on " + RowOf(row).name);
            return RowOf(row).children.empty(); // the host opens or closes a shelf
        };
        filled.deleteKey = [](void* object) -> VX3Bool {
            GalleryTree& tree = Of(object);
            tree.Log("delete");
            const VX3Bool isAny = tree.DeleteSelected(tree.root);
            tree.host.gui->tree->refresh(tree.dialog, tree.gadget);
            return isAny;
        };
        return filled;
    }();
    return table;
}

} // namespace vx3::tests
