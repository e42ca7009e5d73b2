#include "ui/listkeyboard.h"

#include <algorithm>

namespace browser {

namespace {

// One key press while it is being worked out.
class KeyMove
{
public:
    KeyMove(const GridLayout& ownGrid, int32_t ownCount, const ListSelection& selection, VerticalSpan ownSeen)
        : grid(ownGrid)
        , count(ownCount)
        , columns(std::max(ownGrid.columns, 1))
        , seen(ownSeen)
        , wasEmpty(selection.IsEmpty())
        , anchor(selection.anchor)
        , first(selection.first)
        , last(selection.last)
    {
        answer.action = KeyAction::Nothing;
    }

    void Home();
    void End();
    void GoUp() { answer.action = KeyAction::GoUp; }
    void Open() { answer.action = wasEmpty ? KeyAction::Nothing : KeyAction::OpenFirst; }
    void FocusTree() { answer.action = KeyAction::FocusTree; }
    void PageUp();
    void PageDown();
    void Up();
    void Down();
    void Left();
    void Right();

    // Without shift one entry is selected, with it a block.
    KeyAnswer Finish(bool extends);

private:
    int32_t RowOf(int32_t index) const { return index / columns; }
    int32_t ColumnOf(int32_t index) const { return index % columns; }
    bool CanPage() const { return !wasEmpty && grid.itemWidth > 0 && grid.itemHeight > 0; }
    int32_t RowsInSight() const { return seen.Height() / grid.itemHeight; }
    int32_t HeightOf(int32_t index) const { return static_cast<int32_t>(int64_t(index) * grid.itemHeight / columns); }

    void Aim(int32_t index)
    {
        answer.action = KeyAction::Select;
        answer.target = index;
    }
    void ScrollTo(int32_t top, int32_t bottom)
    {
        answer.scrolls = true;
        answer.seen = { top, bottom };
    }

    const GridLayout& grid;
    const int32_t count;
    const int32_t columns;
    const VerticalSpan seen;
    const bool wasEmpty;
    const int32_t anchor;
    int32_t first;
    int32_t last;
    KeyAnswer answer;
};

void KeyMove::Home()
{
    answer.alone = count > 0 ? 0 : noEntry;
    first = 0;
    ScrollTo(0, seen.Height());
    Aim(0);
}

void KeyMove::End()
{
    last = count - 1;
    answer.alone = last;
    ScrollTo(grid.areaHeight - seen.Height(), grid.areaHeight);
    Aim(last);
}

void KeyMove::PageUp()
{
    answer.action = KeyAction::Scroll;
    ScrollTo(seen.top - seen.Height(), seen.top);
    if (!CanPage())
        return;
    first = std::max(first - columns * RowsInSight(), 0);
    answer.alone = first;
    ScrollTo(HeightOf(first), HeightOf(first) + RowsInSight() * grid.itemHeight);
    Aim(first);
}

// Kept: the row that is paged to ends up below what is seen; it is revealed afterwards.
void KeyMove::PageDown()
{
    answer.action = KeyAction::Scroll;
    ScrollTo(seen.bottom, seen.bottom + seen.Height());
    if (!CanPage())
        return;
    last = std::min(last + columns * RowsInSight(), count - 1);
    answer.alone = last;
    ScrollTo(HeightOf(last) - RowsInSight() * grid.itemHeight, HeightOf(last));
    Aim(last);
}

// Kept: a block that shrinks at its lower end shows its upper one.
void KeyMove::Up()
{
    if (wasEmpty) {
        first = last = count - 1;
        return Aim(first);
    }
    if (RowOf(anchor) < RowOf(last))
        last -= columns;
    else if (RowOf(first) > 0)
        first -= columns;
    else
        return;
    Aim(first);
}

// Kept, here and for left and right: with nothing selected there is no block to extend,
// so that with shift the target is only brought into view.
void KeyMove::Down()
{
    if (wasEmpty)
        return Aim(0);
    if (RowOf(first) < RowOf(anchor)) {
        first += columns;
        return Aim(first);
    }
    if (last + columns >= count)
        return;
    last += columns;
    Aim(last);
}

void KeyMove::Left()
{
    if (wasEmpty)
        return Aim(count - 1);
    if (ColumnOf(anchor) < ColumnOf(last))
        return Aim(--last);
    if (ColumnOf(first) > 0)
        Aim(--first);
}

// In the last row the block may grow beyond the list: its other rows then grow.
void KeyMove::Right()
{
    if (wasEmpty)
        return Aim(0);
    if (ColumnOf(first) < ColumnOf(anchor))
        return Aim(++first);
    if (ColumnOf(last) < columns - 1)
        Aim(++last);
}

KeyAnswer KeyMove::Finish(bool extends)
{
    if (answer.action != KeyAction::Select)
        return answer;
    answer.target = std::min(std::max(answer.target, 0), count - 1);
    answer.clears = !extends;
    answer.first = extends ? first : answer.target;
    answer.last = extends ? last : answer.target;
    answer.stride = columns;
    // Kept: 0 or less where a run of entries ends left of where it begins; then nothing is selected.
    answer.width = ColumnOf(answer.last) - ColumnOf(answer.first) + 1;
    if (answer.target >= 0)
        answer.reveal.top = RowOf(answer.target) * grid.itemHeight;
    answer.reveal.bottom = answer.reveal.top + grid.itemHeight;
    return answer;
}

struct KeyRow {
    ListKey key;
    uint32_t looksAt; // of the qualifiers
    uint32_t wants;
    void (KeyMove::*move)();
};

constexpr KeyRow keyRows[] = {
    { ListKey::Home, Qualifier::none, Qualifier::none, &KeyMove::Home },
    { ListKey::End, Qualifier::none, Qualifier::none, &KeyMove::End },
    { ListKey::Backspace, Qualifier::none, Qualifier::none, &KeyMove::GoUp },
    { ListKey::Enter, Qualifier::none, Qualifier::none, &KeyMove::Open },
    { ListKey::Tab, Qualifier::all, Qualifier::none, &KeyMove::FocusTree },
    { ListKey::PageUp, Qualifier::none, Qualifier::none, &KeyMove::PageUp },
    { ListKey::PageDown, Qualifier::none, Qualifier::none, &KeyMove::PageDown },
    { ListKey::Up, Qualifier::ctrl, Qualifier::ctrl, &KeyMove::GoUp },
    { ListKey::Up, Qualifier::ctrl, Qualifier::none, &KeyMove::Up },
    { ListKey::Down, Qualifier::ctrl, Qualifier::ctrl, &KeyMove::Open },
    { ListKey::Down, Qualifier::ctrl, Qualifier::none, &KeyMove::Down },
    { ListKey::Left, Qualifier::none, Qualifier::none, &KeyMove::Left },
    { ListKey::Right, Qualifier::none, Qualifier::none, &KeyMove::Right },
};

} // namespace

KeyAnswer AnswerListKey(int32_t key, uint32_t qualifiers, const GridLayout& grid, int32_t count, const ListSelection& selection,
                        VerticalSpan seen)
{
    KeyMove move(grid, count, selection, seen);
    for (const KeyRow& row : keyRows)
        if (static_cast<int32_t>(row.key) == key && (qualifiers & row.looksAt) == row.wants) {
            (move.*row.move)();
            return move.Finish((qualifiers & Qualifier::shift) != 0);
        }
    return {};
}

} // namespace browser
