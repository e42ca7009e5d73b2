// What is selected in a list, and what the list remembers by place.

#include <random>

#include "entryfixture.h"

using namespace browser;
using namespace vx3::tests;
using vx3::testing::FailClass;
using vx3::testing::Failing;

namespace {

constexpr int32_t least = -0x7FFFFFFF - 1;

class Selection : public EntryTest
{
protected:
    std::string SelectedLetters(const EntrySelection& selection)
    {
        Array<NodeRef> nodes;
        EXPECT_TRUE(selection.CollectSelected(nodes));
        Entries entries;
        for (NodeRef& node : nodes)
            EXPECT_TRUE(entries.Append({ std::move(node), 0 }));
        return TextOf(entries);
    }

    std::string VisibleOf(const EntrySelection& selection)
    {
        std::string text;
        for (const ContentViewEntry& entry : selection.All())
            text += entry.IsVisible() ? 'v' : '-';
        return text + " " + std::to_string(selection.FirstVisible()) + " " + std::to_string(selection.LastVisible());
    }
};

TEST_F(Selection, EveryOperationKeepsBoundsAnchorFocusAndCount)
{
    const struct {
        const char* what;
        const char* start;
        void (*act)(EntrySelection&);
        const char* end;
        uint32_t changes;
    } rows[] = {
        { "first one", "abcd", [](EntrySelection& s) { s.SetSelected(2, true); }, "abCd anchor 2 focus 2 bounds 2 2", 1 },
        { "again moves the focus only", "AbCd", [](EntrySelection& s) { s.SetSelected(2, true); }, "AbCd anchor 0 focus 2 bounds 0 2", 0 },
        { "one in front", "abCd", [](EntrySelection& s) { s.Toggle(0); }, "AbCd anchor 2 focus 0 bounds 0 2", 1 },
        { "lowest goes", "AbCD", [](EntrySelection& s) { s.Toggle(0); }, "abCD anchor 0 focus 0 bounds 2 3", 1 },
        { "highest goes", "AbcD", [](EntrySelection& s) { s.SetSelected(3, false); }, "Abcd anchor 0 focus 0 bounds 0 0", 1 },
        { "inner one goes", "ABC", [](EntrySelection& s) { s.SetSelected(1, false); }, "AbC anchor 0 focus 0 bounds 0 2", 1 },
        { "the last one goes, the focus stays", "abC", [](EntrySelection& s) { s.Toggle(2); }, "abc anchor -1 focus 2 bounds -1 -1", 1 },
        { "nothing to deselect", "aB", [](EntrySelection& s) { s.SetSelected(0, false); }, "aB anchor 1 focus 1 bounds 1 1", 0 },
        { "all", "aBc", [](EntrySelection& s) { s.SetRange(true, 0, EntrySelection::toEnd); }, "ABC anchor 1 focus 2 bounds 0 2", 2 },
        { "none", "ABC", [](EntrySelection& s) { s.Clear(); }, "abc anchor -1 focus 0 bounds -1 -1", 3 },
        { "range is clamped", "abc", [](EntrySelection& s) { s.SetRange(true, least, 1); }, "ABc anchor 0 focus 1 bounds 0 1", 2 },
        { "range in front of the list", "abc", [](EntrySelection& s) { s.SetRange(true, -1, -1); }, "abc anchor -1 focus -1 bounds -1 -1",
          0 },
        { "range behind the list", "abc", [](EntrySelection& s) { s.SetRange(true, 3, EntrySelection::toEnd); },
          "abc anchor -1 focus -1 bounds -1 -1", 0 },
        { "outside", "aBc", [](EntrySelection& s) { s.Toggle(3), s.Toggle(-1), s.SetSelected(least, true); },
          "aBc anchor 1 focus 1 bounds 1 1", 0 },
        { "empty list", "", [](EntrySelection& s) { s.SetRange(true, 0, EntrySelection::toEnd), s.Toggle(0); },
          " anchor -1 focus -1 bounds -1 -1", 0 },
        { "inversion, highest is the anchor", "abcd", [](EntrySelection& s) { s.ToggleHits([](int32_t i) { return i != 3; }); },
          "ABCd anchor 2 focus 0 bounds 0 2", 3 },
        { "inversion of some", "aBCd", [](EntrySelection& s) { s.ToggleHits([](int32_t i) { return i < 2; }); },
          "AbCd anchor 1 focus 0 bounds 0 2", 2 },
        { "run up from the anchor", "abCdE", [](EntrySelection& s) { s.SelectFromAnchor(3); }, "abCDe anchor 2 focus 3 bounds 2 3", 2 },
        { "run down from the anchor", "aBcDe", [](EntrySelection& s) { s.SelectFromAnchor(0); }, "ABcde anchor 1 focus 1 bounds 0 1", 2 },
        { "run on empty space", "aBcDe", [](EntrySelection& s) { s.SelectFromAnchor(-1); }, "aBcDe anchor 1 focus 1 bounds 1 3", 0 },
        { "run with nothing selected", "abc", [](EntrySelection& s) { s.SelectFromAnchor(2); }, "abc anchor -1 focus -1 bounds -1 -1", 0 },
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        EntrySelection selection;
        Fill(selection, row.start);
        const uint32_t before = selection.ChangeCount();
        row.act(selection);
        EXPECT_EQ(Describe(selection), row.end);
        EXPECT_EQ(selection.ChangeCount() - before, row.changes);
    }
}

TEST_F(Selection, BlocksAreRectanglesThatGrowAndShrinkRoundTheAnchor)
{
    const struct {
        const char* start;
        int32_t first, last, stride, width;
        const char* end;
    } rows[] = {
        { "abcdefghi", 1, 5, 3, 2, "aBCdEFghi anchor 1 focus 5 bounds 1 5" },
        { "aBcdefghi", 0, 4, 3, 2, "ABcDEfghi anchor 1 focus 4 bounds 0 4" },
        { "aBcdefghi", 4, 0, 3, 2, "ABcDEfghi anchor 1 focus 4 bounds 0 4" },                        // bounds may stand either way
        { "Abcdefghi", 4, 5, 3, 2, "abcdEFghi anchor 4 focus 5 bounds 4 5" },                        // the anchor lies outside
        { "abcdefgh", 5, 8, 3, 3, "abcdeFGH anchor 5 focus 7 bounds 5 7" },                          // the last row is cut
        { "abcde", least, 0x7FFFFFFF, 0x7FFFFFFF, 0x7FFFFFFF, "ABCDE anchor 0 focus 4 bounds 0 4" }, // no sum runs over
        { "aBCd", 0, 3, 3, 0, "abcd anchor -1 focus 1 bounds -1 -1" },                               // a run that wraps has no width
        { "aBCd", 0, 3, 3, -2, "abcd anchor -1 focus 1 bounds -1 -1" },
        { "aBCd", 0, 3, 0, 1, "abcd anchor -1 focus 1 bounds -1 -1" },
        { "", -1, -1, 1, 1, " anchor -1 focus -1 bounds -1 -1" },
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.end);
        EntrySelection selection;
        Fill(selection, row.start);
        selection.SetSelectedBlock(row.first, row.last, row.stride, row.width);
        EXPECT_EQ(Describe(selection), row.end);
    }
}

TEST_F(Selection, BoundsAreTrueAfterAnyOperations)
{
    std::mt19937 random(7);
    EntrySelection selection;
    Fill(selection, "abcdefghijkl");
    for (int32_t round = 0; round < 3000; round++) {
        auto number = [&] { return static_cast<int32_t>(random() % 14) - 1; };
        switch (random() % 4) {
        case 0: selection.SetRange(random() % 2, number(), number()); break;
        case 1: selection.SetSelectedBlock(number(), number(), 1 + number() / 3, number()); break;
        case 2: selection.SelectFromAnchor(number()); break;
        default: selection.Toggle(number());
        }
        const std::string text = TextOf(selection.All());
        auto isSelected = [](char letter) { return std::isupper(letter) != 0; };
        auto lowest = std::find_if(text.begin(), text.end(), isSelected);
        auto highest = std::find_if(text.rbegin(), text.rend(), isSelected);
        ASSERT_EQ(selection.FirstSelected(), lowest == text.end() ? -1 : lowest - text.begin()) << text;
        ASSERT_EQ(selection.LastSelected(), text.rend() - highest - 1) << text;
        ASSERT_EQ(selection.SelectedCount(), std::count_if(text.begin(), text.end(), isSelected)) << text;
        ASSERT_EQ(selection.Anchor() == -1, selection.SelectedCount() == 0) << text;
    }
}

TEST_F(Selection, NodesAreFoundWithAndWithoutMemoryForAnIndex)
{
    for (bool failing : { false, true }) {
        EntrySelection selection;
        Fill(selection, "ab.cab");
        if (failing)
            testHost.Faults().Fail(FailClass::Memory, 1, Failing::FromThereOn);
        EXPECT_EQ(selection.FindNode(Node('b')), 1);
        EXPECT_EQ(selection.FindNode(Node('c')), 3);
        EXPECT_EQ(selection.FindNode(Node('d')), -1);
        EXPECT_EQ(selection.FindNode(NodeRef()), -1);
        EXPECT_TRUE(selection.SetNodeSelected(Node('a'), true)); // the last of two
        EXPECT_FALSE(selection.SetNodeSelected(Node('d'), true));
        EXPECT_FALSE(selection.SetNodeSelected(NodeRef(), true));
        testHost.Faults().Clear();
        EXPECT_EQ(TextOf(selection.All()), "ab.cAb");
        Fill(selection, "ca");
        EXPECT_EQ(selection.FindNode(Node('a')), 1) << "the index is of an older array";
    }
}

TEST_F(Selection, SelectedNodesComeInOrderOrNotAtAll)
{
    EntrySelection selection;
    Fill(selection, "aBcDefghIJKLMNOPQ");
    EXPECT_EQ(SelectedLetters(selection), "bdijklmnopq");
    auto collect = [&](int64_t) {
        Array<NodeRef> nodes;
        const bool collected = selection.CollectSelected(nodes);
        EXPECT_EQ(collected, testHost.Faults().FailuresOf(FailClass::Memory) == 0);
    };
    EXPECT_EQ(FailEachInTurn(testHost.Faults(), FailClass::Memory, Failing::Once, collect), 1);
    selection.Clear();
    EXPECT_EQ(SelectedLetters(selection), "");
}

TEST_F(Selection, ADropTargetIsShownAsSelectedAndLosesThatAgain)
{
    const int window = 0, other = 0;
    EntrySelection selection;
    Fill(selection, "aBc");
    bool changed = true;
    EXPECT_FALSE(selection.IsDropActive());
    auto drop = [&](int32_t index, const void* owner, bool result, bool change, const char* text) {
        EXPECT_EQ(selection.SetDropIndex(index, owner, changed), result) << text;
        EXPECT_EQ(changed, change) << text;
        EXPECT_EQ(TextOf(selection.All()), text);
    };
    drop(EntrySelection::dropNothing, &other, true, false, "aBc");
    EXPECT_EQ(selection.DropOwner(), nullptr);
    drop(0, &window, true, true, "ABc");
    drop(1, &window, true, true, "aBc"); // selected before the drag
    EXPECT_EQ(selection.Focus(), 0) << "what was selected is not selected again";
    drop(1, &other, true, false, "aBc");
    EXPECT_EQ(selection.DropOwner(), &window);
    drop(2, &other, true, true, "abC"); // and now not any more
    drop(7, &other, false, true, "abc");
    EXPECT_EQ(selection.DropIndex(), 2);
    drop(EntrySelection::dropPane, &other, true, true, "abc");
    EXPECT_TRUE(selection.IsDropActive());
    drop(EntrySelection::dropNothing, nullptr, true, true, "abc");
    EXPECT_FALSE(selection.IsDropActive());
}

TEST_F(Selection, TheVisibleRangeLeavesItsLastMark)
{
    EntrySelection selection;
    Fill(selection, "abcdef");
    const uint32_t changes = selection.ChangeCount();
    const struct {
        int32_t first, last;
        const char* end;
    } rows[] = {
        { 0, 2, "vvv--- 0 2" }, { 3, 9, "--vvvv 3 5" }, { -1, -1, "--v--v 0 -1" }, { 4, 4, "--v-vv 4 4" }, { 8, 12, "--v-vv 8 5" },
    };
    for (const auto& row : rows) {
        selection.SetVisibleRange(row.first, row.last);
        EXPECT_EQ(VisibleOf(selection), row.end);
    }
    EXPECT_EQ(selection.ChangeCount(), changes) << "what is seen is no news";
    Entries same;
    for (const ContentViewEntry& entry : selection.All())
        ASSERT_TRUE(same.Append(entry));
    selection.Install(same, 0);
    EXPECT_EQ(VisibleOf(selection), "--v-vv 2 5") << "from the marks, also those that were left";
}

TEST_F(Selection, AnchorAndFocusStayWithTheirNodes)
{
    const struct {
        const char* start;
        const char* next;
        const char* end;
    } rows[] = {
        { "abcD", "dxABC", "dxABC anchor 0 focus 4 bounds 2 4" }, // anchor d, focus c
        { "abcD", "aBx", "aBx anchor 1 focus 1 bounds 1 1" },     // both gone
        { "abcD", "xyz", "xyz anchor -1 focus -1 bounds -1 -1" }, { "abcD", "", " anchor -1 focus -1 bounds -1 -1" },
        { "abc.", "C...", "C... anchor 0 focus 0 bounds 0 0" },
    };
    for (const auto& row : rows) {
        EntrySelection selection;
        Fill(selection, row.start);
        selection.SetSelected(2, true);
        Entries next;
        Fill(next, row.next);
        const uint32_t generation = selection.Generation(), changes = selection.ChangeCount();
        selection.Install(next, 0);
        EXPECT_EQ(Describe(selection), row.end);
        EXPECT_EQ(TextOf(next).size(), 4U) << "the old entries go to the caller";
        EXPECT_EQ(selection.Generation() - generation, 1U);
        EXPECT_EQ(selection.ChangeCount(), changes) << "an exchange alone is no news";
    }
}

// A folder may change under a drag: the mark goes with the entry that has it, and what is
// selected at the end of the drag is what the user had selected.
TEST_F(Selection, ADropTargetStaysWithItsNode)
{
    const struct {
        const char* what;
        const char* start;
        int32_t target;
        const char* next; // with the mark where a merge carries it
        int32_t then;
        const char* end;
    } rows[] = {
        { "an entry comes in front", "abC", 1, "xaBC", 2, "xabC" },
        { "it moves up", "abC", 1, "BaC", 0, "baC" },
        { "it goes, and another one stands there", "abC", 1, "aCd", EntrySelection::dropPane, "aCd" },
        { "all go", "abC", 1, "", EntrySelection::dropPane, "" },
        { "it is the pane", "abC", EntrySelection::dropPane, "xabC", EntrySelection::dropPane, "xabC" },
        { "there is no drag", "abC", EntrySelection::dropNothing, "xabC", EntrySelection::dropNothing, "xabC" },
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        EntrySelection selection;
        Fill(selection, row.start);
        bool changed = false;
        EXPECT_TRUE(selection.SetDropIndex(row.target, this, changed));
        Entries next;
        Fill(next, row.next);
        selection.Install(next, 0);
        EXPECT_EQ(selection.DropIndex(), row.then);
        EXPECT_EQ(selection.DropOwner(), row.target == EntrySelection::dropNothing ? nullptr : this);
        EXPECT_TRUE(selection.SetDropIndex(EntrySelection::dropNothing, nullptr, changed));
        EXPECT_EQ(TextOf(selection.All()), row.end);
    }
}

// The anchor was deselected before, and the only selected entry is gone now.
TEST_F(Selection, AnAnchorWithoutASelectionGoesWithTheNextBlock)
{
    EntrySelection selection;
    Fill(selection, "abcd");
    selection.SetRange(true, 0, 1);
    selection.Toggle(0);
    Entries next;
    Fill(next, "cad");
    selection.Install(next, 1);
    EXPECT_EQ(Describe(selection), "cad anchor 1 focus -1 bounds -1 -1");
    selection.SelectFromAnchor(2);
    EXPECT_EQ(TextOf(selection.All()), "cad");
    selection.SetSelectedBlock(0, 2, 1, 0);
    EXPECT_EQ(Describe(selection), "cad anchor -1 focus -1 bounds -1 -1");
}

TEST_F(Selection, AnInstallTellsWhatTheMergeCountedAndAFailureEmptiesTheList)
{
    EntrySelection selection;
    Fill(selection, "aBc");
    Entries next;
    Fill(next, "ac");
    uint32_t changes = selection.ChangeCount();
    selection.Install(next, 2);
    EXPECT_EQ(selection.ChangeCount() - changes, 3U);
    changes = selection.ChangeCount();
    selection.InstallNothing(next);
    EXPECT_EQ(selection.ChangeCount() - changes, 1U);
    EXPECT_EQ(TextOf(next), "ac");
    EXPECT_EQ(Describe(selection), " anchor -1 focus -1 bounds -1 -1");
}

} // namespace
