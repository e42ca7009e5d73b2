// The keys of the icon grid: four columns of 66 by 79, eleven entries in three rows.
//
//     0  1  2  3
//     4  5  6  7
//     8  9 10

#include "ui/listkeyboard.h"

#include <gtest/gtest.h>

#include <array>
#include <string>

using namespace browser;

namespace {

constexpr int32_t count = 11, cellHeight = 79;
constexpr uint32_t plain = 0, shift = Qualifier::shift, ctrl = Qualifier::ctrl, alt = 4;
constexpr VerticalSpan seen = { 10, 180 }; // two whole rows
constexpr ListSelection nothing;

GridLayout Grid()
{
    GridLayout grid;
    grid.Measure({ 270, 400 }, { 64, 77 }, count);
    return grid;
}

KeyAnswer Press(ListKey key, uint32_t qualifiers, const ListSelection& selection, int32_t entries = count)
{
    return AnswerListKey(static_cast<int32_t>(key), qualifiers, Grid(), entries, selection, seen);
}

TEST(ListKeyboard, KeysThatDoNotSelect)
{
    const ListSelection some = { 5, 6, 5 };
    const struct {
        ListKey key;
        uint32_t qualifiers;
        ListSelection selection;
        KeyAction action;
    } cases[] = {
        { ListKey::Backspace, plain, nothing, KeyAction::GoUp },
        { ListKey::Backspace, shift, some, KeyAction::GoUp },
        { ListKey::Up, ctrl, some, KeyAction::GoUp },
        { ListKey::Up, ctrl | shift, nothing, KeyAction::GoUp },
        { ListKey::Enter, plain, some, KeyAction::OpenFirst },
        { ListKey::Enter, plain, nothing, KeyAction::Nothing },
        { ListKey::Down, ctrl, some, KeyAction::OpenFirst },
        { ListKey::Down, ctrl, nothing, KeyAction::Nothing },
        { ListKey::Tab, plain, some, KeyAction::FocusTree },
        { ListKey::Tab, shift, some, KeyAction::NotConsumed },
        { ListKey::Tab, alt, some, KeyAction::NotConsumed },
        { ListKey(0xF188), plain, some, KeyAction::NotConsumed },
        { ListKey('a'), ctrl, some, KeyAction::NotConsumed },
        { ListKey::PageUp, plain, nothing, KeyAction::Scroll },
        { ListKey::PageDown, shift, nothing, KeyAction::Scroll },
    };
    for (const auto& one : cases)
        EXPECT_EQ(Press(one.key, one.qualifiers, one.selection).action, one.action)
            << std::hex << int32_t(one.key) << ' ' << one.qualifiers;
}

// A block is four numbers: first, last, width and the target.
using Block = std::array<int32_t, 4>;
constexpr Block none = { -9, -9, -9, -9 };

Block BlockOf(const KeyAnswer& answer)
{
    if (answer.action != KeyAction::Select)
        return none;
    return { answer.first, answer.last, answer.width, answer.target };
}

struct ArrowCase {
    ListKey key;
    ListSelection selection;
    Block withShift;
    int32_t alone; // what is selected without shift; noEntry if the key does nothing
};

constexpr ArrowCase arrows[] = {
    // From nothing. With shift there is no block but upwards.
    { ListKey::Up, nothing, { 10, 10, 1, 10 }, 10 },
    { ListKey::Down, nothing, { -1, -1, 1, 0 }, 0 },
    { ListKey::Left, nothing, { -1, -1, 1, 10 }, 10 },
    { ListKey::Right, nothing, { -1, -1, 1, 0 }, 0 },
    // One entry grows into a block, each way.
    { ListKey::Up, { 5, 5, 5 }, { 1, 5, 1, 1 }, 1 },
    { ListKey::Down, { 5, 5, 5 }, { 5, 9, 1, 9 }, 9 },
    { ListKey::Left, { 5, 5, 5 }, { 4, 5, 2, 4 }, 4 },
    { ListKey::Right, { 5, 5, 5 }, { 5, 6, 2, 6 }, 6 },
    // A block shrinks towards its anchor; upwards the target is the other end.
    { ListKey::Up, { 1, 9, 1 }, { 1, 5, 1, 1 }, 1 },
    { ListKey::Down, { 1, 9, 9 }, { 5, 9, 1, 5 }, 5 },
    { ListKey::Left, { 4, 6, 4 }, { 4, 5, 2, 5 }, 5 },
    { ListKey::Right, { 4, 6, 6 }, { 5, 6, 2, 5 }, 5 },
    // The edges.
    { ListKey::Up, { 2, 2, 2 }, none, noEntry },
    { ListKey::Down, { 7, 7, 7 }, none, noEntry }, // below it the row has ended
    { ListKey::Down, { 6, 6, 6 }, { 6, 10, 1, 10 }, 10 },
    { ListKey::Left, { 8, 8, 8 }, none, noEntry },
    { ListKey::Right, { 3, 3, 3 }, none, noEntry },
    { ListKey::Right, { 10, 10, 10 }, { 10, 11, 2, 10 }, 10 }, // stays at the end
    { ListKey::Right, { 6, 10, 6 }, { 6, 11, 2, 10 }, 10 },    // the upper row grows
    // A run that wraps ends left of where it begins.
    { ListKey::Up, { 2, 5, 2 }, { 2, 1, 0, 2 }, 2 },
    { ListKey::Down, { 3, 4, 3 }, { 3, 8, -2, 8 }, 8 },
};

TEST(ListKeyboard, ArrowsMoveAndExtend)
{
    for (const ArrowCase& one : arrows) {
        const std::string what = testing::PrintToString(int32_t(one.key)) + " at " + std::to_string(one.selection.first);
        const KeyAnswer extended = Press(one.key, shift, one.selection);
        EXPECT_EQ(BlockOf(extended), one.withShift) << what;
        EXPECT_FALSE(extended.clears);
        const KeyAnswer moved = Press(one.key, plain, one.selection);
        const int32_t to = one.alone;
        EXPECT_EQ(BlockOf(moved), to == noEntry ? none : (Block{ to, to, 1, to })) << what;
        EXPECT_EQ(moved.action, to == noEntry ? KeyAction::Nothing : KeyAction::Select) << what;
        EXPECT_EQ(moved.alone, noEntry) << what;
        if (to == noEntry)
            continue;
        EXPECT_TRUE(moved.clears) << what;
        EXPECT_EQ(moved.stride, 4) << what;
        EXPECT_EQ(moved.reveal, (VerticalSpan{ to / 4 * cellHeight, to / 4 * cellHeight + cellHeight })) << what;
    }
}

TEST(ListKeyboard, JumpsSelectTheirEndAndScroll)
{
    const struct {
        ListKey key;
        ListSelection selection;
        int32_t alone; // cleared and selected first
        Block withShift;
        VerticalSpan scrolled;
    } cases[] = {
        { ListKey::Home, { 5, 6, 5 }, 0, { 0, 6, 3, 0 }, { 0, 170 } },
        { ListKey::Home, nothing, 0, { 0, -1, 0, 0 }, { 0, 170 } },
        { ListKey::End, { 5, 6, 5 }, 10, { 5, 10, 2, 10 }, { 230, 400 } },
        { ListKey::End, { 3, 3, 3 }, 10, { 3, 10, 0, 10 }, { 230, 400 } },
        { ListKey::PageUp, { 9, 10, 9 }, 1, { 1, 10, 2, 1 }, { 19, 177 } },
        { ListKey::PageUp, { 5, 6, 5 }, 0, { 0, 6, 3, 0 }, { 0, 158 } },
        { ListKey::PageDown, { 1, 1, 1 }, 9, { 1, 9, 1, 9 }, { 19, 177 } },
        { ListKey::PageDown, { 5, 6, 5 }, 10, { 5, 10, 2, 10 }, { 39, 197 } },
    };
    for (const auto& one : cases) {
        const KeyAnswer extended = Press(one.key, shift, one.selection), moved = Press(one.key, plain, one.selection);
        const std::string what = testing::PrintToString(int32_t(one.key)) + " at " + std::to_string(one.selection.first);
        EXPECT_EQ(BlockOf(extended), one.withShift) << what;
        EXPECT_EQ(BlockOf(moved), (Block{ one.alone, one.alone, 1, one.alone })) << what;
        for (const KeyAnswer& answer : { extended, moved }) {
            EXPECT_EQ(answer.alone, one.alone) << what;
            EXPECT_TRUE(answer.scrolls) << what;
            EXPECT_EQ(answer.seen, one.scrolled) << what;
        }
    }
}

TEST(ListKeyboard, PagesScrollWithoutASelection)
{
    EXPECT_EQ(Press(ListKey::PageUp, plain, nothing).seen, (VerticalSpan{ -160, 10 }));
    EXPECT_EQ(Press(ListKey::PageDown, plain, nothing).seen, (VerticalSpan{ 180, 350 }));
    const int32_t key = static_cast<int32_t>(ListKey::PageDown);
    EXPECT_EQ(AnswerListKey(key, plain, GridLayout(), count, { 5, 5, 5 }, seen).action, KeyAction::Scroll) << "no cells yet";
}

TEST(ListKeyboard, EmptyListAndNoMeasurementDoNoHarm)
{
    for (int32_t key = int32_t(ListKey::Up); key <= int32_t(ListKey::End); key++)
        for (uint32_t qualifiers : { plain, shift }) {
            const KeyAnswer answer = Press(ListKey(key), qualifiers, nothing, 0);
            EXPECT_EQ(answer.target, noEntry) << key;
            EXPECT_EQ(answer.alone, noEntry) << key;
            EXPECT_EQ(AnswerListKey(key, qualifiers, GridLayout(), count, { 5, 5, 5 }, seen).stride, 1) << key;
        }
}

} // namespace
