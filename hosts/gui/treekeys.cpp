#include <algorithm>

#include "core/services.h"
#include "gui/treeinput.h"

namespace vx3::gui {

namespace {

constexpr int64_t typingPause = 1000; // milliseconds after which typing begins a new name

bool IsSelected(const TreeState& tree, size_t index)
{
    const AskScope scope;
    return tree.table->isSelected && tree.table->isSelected(tree.object, tree.rows[index].row);
}

// The row that keys start from: the one with the focus, unless the module has selected another
// since then.
std::optional<size_t> CurrentRow(TreeState& tree)
{
    const auto focus = FindRowById(tree, tree.focus);
    if (focus && IsSelected(tree, *focus))
        return focus;
    if (!tree.focus)
        RowsOf(tree);
    for (size_t i = 0; i < tree.rows.size(); ++i)
        if (IsSelected(tree, i))
            return i;
    return focus;
}

void MoveTo(TreeCall& call, size_t index)
{
    const int64_t id = call.tree->rows[index].id;
    if (SelectTreeRow(call, id, VX3_SELECT_NEW))
        ShowTreeRow(call.gadget, id);
}

// By rows, as far as there are any; without a current row to the first.
void MoveBy(TreeCall& call, int rows)
{
    const auto current = CurrentRow(*call.tree);
    const int last = static_cast<int>(call.tree->rows.size()) - 1;
    if (last >= 0)
        MoveTo(call, current ? static_cast<size_t>(std::clamp(static_cast<int>(*current) + rows, 0, last)) : 0);
}

void MoveByPage(TreeCall& call, int direction)
{
    const auto current = CurrentRow(*call.tree);
    const std::vector<TreeRow>& rows = call.tree->rows;
    if (!current)
        return MoveBy(call, 0);
    const int wanted = rows[*current].top + direction * std::max(rows[*current].height, call.gadget.view.height - rows[*current].height);
    const auto behind = std::upper_bound(rows.begin(), rows.end(), wanted, [](int at, const TreeRow& row) { return at < row.top; });
    MoveTo(call, behind == rows.begin() ? 0 : static_cast<size_t>(behind - rows.begin()) - 1);
}

void Up(TreeCall& call)
{
    MoveBy(call, -1);
}

void Down(TreeCall& call)
{
    MoveBy(call, 1);
}

void PageUp(TreeCall& call)
{
    MoveByPage(call, -1);
}

void PageDown(TreeCall& call)
{
    MoveByPage(call, 1);
}

void Home(TreeCall& call)
{
    if (!RowsOf(*call.tree).empty())
        MoveTo(call, 0);
}

void End(TreeCall& call)
{
    if (const size_t count = RowsOf(*call.tree).size())
        MoveTo(call, count - 1);
}

// Closes what is open, and goes up from what is not.
void Left(TreeCall& call)
{
    const auto current = CurrentRow(*call.tree);
    if (!current)
        return MoveBy(call, 0);
    const TreeRow row = call.tree->rows[*current];
    if (row.isOpen && row.hasExpander)
        OpenTreeRow(call, row.id, false);
    else if (const auto parent = ParentOf(*call.tree, *current))
        MoveTo(call, *parent);
}

// Opens what is closed, and goes into what is open.
void Right(TreeCall& call)
{
    const auto current = CurrentRow(*call.tree);
    if (!current)
        return MoveBy(call, 0);
    const std::vector<TreeRow>& rows = call.tree->rows;
    const TreeRow row = rows[*current];
    if (row.hasExpander && !row.isOpen)
        OpenTreeRow(call, row.id, true);
    else if (*current + 1 < rows.size() && rows[*current + 1].depth > row.depth)
        MoveTo(call, *current + 1);
}

void Enter(TreeCall& call)
{
    if (const auto current = CurrentRow(*call.tree))
        ActivateTreeRow(call, call.tree->rows[*current].id);
}

struct KeyRow {
    int32_t key;
    void (*run)(TreeCall& call);
};

constexpr KeyRow keys[] = {
    { VX3_KEY_UP, Up },       { VX3_KEY_DOWN, Down },      { VX3_KEY_LEFT, Left },
    { VX3_KEY_RIGHT, Right }, { VX3_KEY_PAGE_UP, PageUp }, { VX3_KEY_PAGE_DOWN, PageDown },
    { VX3_KEY_HOME, Home },   { VX3_KEY_END, End },        { VX3_KEY_ENTER, Enter },
};

std::u16string Lower(std::u16string text)
{
    auto* units = reinterpret_cast<VX3Unit*>(text.data());
    core::TextServices()->lowerUnits(units, units, static_cast<int32_t>(text.size()));
    return text;
}

// One letter again and again goes through the names that begin with it.
bool IsOneLetter(const std::u16string& typed)
{
    return std::all_of(typed.begin(), typed.end(), [&](char16_t unit) { return unit == typed.front(); });
}

void FindTyped(TreeCall& call)
{
    TreeState& tree = *call.tree;
    const bool goesOn = IsOneLetter(tree.typed);
    const std::u16string wanted = goesOn ? tree.typed.substr(0, 1) : tree.typed;
    const auto current = CurrentRow(tree);
    const size_t count = tree.rows.size();
    const size_t first = current ? *current + (goesOn ? 1 : 0) : 0;
    for (size_t i = 0; i < count; ++i) {
        const size_t index = (first + i) % count;
        if (Lower(NameOfRow(tree, tree.rows[index].row)).starts_with(wanted))
            return MoveTo(call, index);
    }
}

bool Type(TreeCall& call, const std::u16string& text)
{
    TreeState& tree = *call.tree;
    const int64_t now = tree.host->GetToolkit().Now();
    if (now - tree.typedAt > typingPause)
        tree.typed.clear();
    if (text.empty() || text.front() < u' ' || (text.front() == u' ' && tree.typed.empty()))
        return false;
    tree.typedAt = now;
    tree.typed += Lower(text);
    FindTyped(call);
    return true;
}

} // namespace

bool FeedTreeKey(TreeCall& call, const Input& input)
{
    if (input.qualifiers & (VX3_QUALIFIER_CTRL | VX3_QUALIFIER_ALT))
        return false;
    const auto row =
        std::find_if(std::begin(keys), std::end(keys), [&](const KeyRow& candidate) { return candidate.key == input.channel; });
    if (row != std::end(keys)) {
        row->run(call);
        return true;
    }
    if (input.channel == VX3_KEY_DELETE)
        return call.tree->table->deleteKey && call.tree->table->deleteKey(call.tree->object);
    return Type(call, input.text);
}

} // namespace vx3::gui
