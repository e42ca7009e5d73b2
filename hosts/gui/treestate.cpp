#include "gui/treestate.h"

#include <algorithm>
#include <exception>
#include <utility>

#include "core/values.h"
#include "gui/layout.h"
#include "gui/tracks.h"

namespace vx3::gui {

namespace {

constexpr size_t mostRows = 1 << 20; // of a tree without an end, the rest is not shown
constexpr int rowMargin = 3;         // above and below the text of a row without a height of its own
constexpr int mostRowLength = 1 << 20;

int64_t IdOfRow(const TreeState& tree, void* row)
{
    const AskScope scope;
    return tree.table->id ? tree.table->id(tree.object, row) : static_cast<int64_t>(reinterpret_cast<intptr_t>(row));
}

TreeRow AskRow(const TreeState& tree, void* row, int depth, int top)
{
    const VX3TreeTable& table = *tree.table;
    TreeRow asked = { row, IdOfRow(tree, row), depth, top, 0, false, false };
    asked.height = table.rowHeight ? table.rowHeight(tree.object, row) : tree.host->GetToolkit().FontHeight() + 2 * rowMargin;
    asked.height = std::clamp(asked.height, 1, mostRowLength);
    asked.isOpen = table.isOpen && table.isOpen(tree.object, row);
    if (table.hasExpander)
        asked.hasExpander = table.hasExpander(tree.object, row);
    else
        asked.hasExpander = table.firstChild && table.firstChild(tree.object, row);
    return asked;
}

int WidthOfRow(const TreeState& tree, const TreeRow& row)
{
    const int indent = (row.depth + 1) * treeIndent;
    if (tree.table->columnWidth)
        return indent + std::clamp(tree.table->columnWidth(tree.object, row.row, VX3_COLUMN_ICON), 0, mostRowLength);
    return indent + tree.host->GetToolkit().TextWidth(NameOfRow(tree, row.row)) + 2 * rowMargin;
}

// One row after the other, as they stand below each other: into what is open, and back out.
class RowWalk
{
public:
    explicit RowWalk(const TreeState& ownTree)
        : tree(ownTree)
        , row(tree.table->firstRoot ? tree.table->firstRoot(tree.object) : nullptr)
    {
    }

    void* Row() const { return row; }
    int Depth() const { return static_cast<int>(above.size()); }

    void Advance(bool isOpen)
    {
        void* child = isOpen && tree.table->firstChild ? tree.table->firstChild(tree.object, row) : nullptr;
        if (child) {
            above.push_back(row);
            row = child;
            return;
        }
        row = Next(row);
        while (!row && !above.empty()) {
            row = Next(above.back());
            above.pop_back();
        }
    }

private:
    void* Next(void* of) const { return tree.table->next ? tree.table->next(tree.object, of) : nullptr; }

    const TreeState& tree;
    void* row;
    std::vector<void*> above;
};

// As long as the rows are asked for. If that fails they are as stale as before.
class Asking
{
public:
    explicit Asking(TreeState& ownTree)
        : tree(ownTree)
    {
        tree.isAsking = true;
        tree.isStale = false;
    }
    ~Asking()
    {
        tree.isAsking = false;
        tree.isStale |= std::uncaught_exceptions() > exceptions;
    }
    Asking(const Asking&) = delete;
    Asking& operator=(const Asking&) = delete;

private:
    TreeState& tree;
    const int exceptions = std::uncaught_exceptions();
    AskScope scope;
};

// What changes while they are asked for is asked for the next time.
void AskRows(TreeState& tree)
{
    const Asking asking(tree);
    std::vector<TreeRow> rows;
    Size content;
    for (RowWalk walk(tree); walk.Row() && rows.size() < mostRows && content.height < mostLength; walk.Advance(rows.back().isOpen)) {
        rows.push_back(AskRow(tree, walk.Row(), walk.Depth(), content.height));
        const TreeRow& row = rows.back();
        content = { std::max(content.width, WidthOfRow(tree, row)), row.top + row.height };
    }
    tree.rows = std::move(rows);
    tree.content = content;
}

} // namespace

bool AttachTree(Gadget& gadget, TreeHost& host, void* object, const VX3TreeTable* table)
{
    if (gadget.tree && (gadget.tree->isAsking || gadget.tree->dragged))
        return false;
    gadget.tree = std::make_shared<TreeState>();
    gadget.tree->host = &host;
    gadget.tree->object = object;
    gadget.tree->table = table;
    gadget.scrolled = {};
    RedrawTree(gadget);
    host.SettleLater(gadget);
    return true;
}

void FreeTreeDrag(TreeState& tree)
{
    if (!tree.dragged)
        return;
    const TreeState::Dragged freed = *std::exchange(tree.dragged, std::nullopt);
    const auto index = FindRowById(tree, freed.id);
    const AskScope scope;
    if (tree.table->freeDrag)
        tree.table->freeDrag(tree.object, index ? tree.rows[*index].row : nullptr, freed.data);
}

void RefreshTree(Gadget& gadget)
{
    gadget.tree->isStale = true;
    RedrawTree(gadget);
    gadget.tree->host->SettleLater(gadget);
}

void SettleTree(Gadget& gadget)
{
    const Size content = gadget.content;
    const Size view = gadget.view;
    const Point scrolled = gadget.scrolled;
    Toolkit& toolkit = gadget.tree->host->GetToolkit();
    LayOutTree(toolkit, gadget);
    if (content == gadget.content && view == gadget.view && scrolled == gadget.scrolled)
        return;
    toolkit.ShowGadget(gadget, Change::Scrolled);
    RedrawTree(gadget);
}

void LayOutTree(Toolkit& toolkit, Gadget& gadget)
{
    gadget.view = gadget.place.Extent();
    Size need;
    if (gadget.tree) {
        RowsOf(*gadget.tree);
        need = gadget.tree->content;
    }
    const int bar = toolkit.GetMetrics().scrollBar;
    const int bottomBar = need.width > gadget.view.width ? bar : 0;
    if (need.height > gadget.view.height - bottomBar)
        gadget.view.width = std::max(0, gadget.view.width - bar);
    if (need.width > gadget.view.width)
        gadget.view.height = std::max(0, gadget.view.height - bar);
    gadget.content = need.Widened(gadget.view);
    ClampScrolled(gadget);
}

void SetTreeFocus(Gadget& gadget, void* row)
{
    gadget.tree->focus = row ? std::optional(IdOfRow(*gadget.tree, row)) : std::nullopt;
}

void RedrawTree(Gadget& gadget)
{
    gadget.tree->host->GetToolkit().Redraw(gadget, { 0, 0, gadget.place.width, gadget.place.height });
}

const std::vector<TreeRow>& RowsOf(TreeState& tree)
{
    if (tree.isStale && !tree.isAsking)
        AskRows(tree);
    return tree.rows;
}

std::optional<size_t> FindRow(TreeState& tree, const void* row)
{
    const std::vector<TreeRow>& rows = RowsOf(tree);
    const auto found = std::find_if(rows.begin(), rows.end(), [&](const TreeRow& candidate) { return candidate.row == row; });
    return found == rows.end() ? std::nullopt : std::optional<size_t>(found - rows.begin());
}

std::optional<size_t> FindRowById(TreeState& tree, std::optional<int64_t> id)
{
    if (!id)
        return std::nullopt;
    const std::vector<TreeRow>& rows = RowsOf(tree);
    const auto found = std::find_if(rows.begin(), rows.end(), [&](const TreeRow& candidate) { return candidate.id == *id; });
    return found == rows.end() ? std::nullopt : std::optional<size_t>(found - rows.begin());
}

std::optional<size_t> RowAt(Gadget& gadget, int y)
{
    const std::vector<TreeRow>& rows = RowsOf(*gadget.tree);
    const int inContent = y + gadget.scrolled.y;
    if (y < 0 || y >= gadget.view.height || inContent >= gadget.tree->content.height)
        return std::nullopt;
    const auto behind = std::upper_bound(rows.begin(), rows.end(), inContent, [](int at, const TreeRow& row) { return at < row.top; });
    return static_cast<size_t>(behind - rows.begin()) - 1;
}

std::optional<size_t> ParentOf(const TreeState& tree, size_t index)
{
    const std::vector<TreeRow>& rows = tree.rows;
    for (size_t i = index; i-- > 0;)
        if (rows[i].depth < rows[index].depth)
            return i;
    return std::nullopt;
}

Place PlaceOfRow(const Gadget& gadget, const TreeRow& row)
{
    return { 0, row.top - gadget.scrolled.y, gadget.view.width, row.height };
}

std::u16string NameOfRow(const TreeState& tree, void* row)
{
    const AskScope scope;
    core::Text name;
    if (tree.table->name)
        tree.table->name(tree.object, row, name.Get());
    return name.Units();
}

void ShowTreeRow(Gadget& gadget, int64_t id)
{
    SettleTree(gadget);
    const auto index = FindRowById(*gadget.tree, id);
    if (!index)
        return;
    const TreeRow& row = gadget.tree->rows[*index];
    const int above = row.top - gadget.scrolled.y;
    const int below = row.top + row.height - gadget.scrolled.y - gadget.view.height;
    if (above < 0 || below > 0)
        ScrollTree(gadget, { 0, above < 0 || row.height > gadget.view.height ? above : below });
}

void ScrollTree(Gadget& gadget, Point by)
{
    const Point before = gadget.scrolled;
    gadget.scrolled = gadget.scrolled + Point{ std::clamp(by.x, -mostLength, mostLength), std::clamp(by.y, -mostLength, mostLength) };
    ClampScrolled(gadget);
    if (gadget.scrolled == before)
        return;
    gadget.tree->host->GetToolkit().ShowGadget(gadget, Change::Scrolled);
    RedrawTree(gadget);
}

} // namespace vx3::gui
