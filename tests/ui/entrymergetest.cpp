// Marks of old entries on new ones.

#include <algorithm>
#include <random>

#include "entryfixture.h"

#include "ui/entrymerge.h"

using namespace browser;
using namespace vx3::tests;
using vx3::testing::FailClass;
using vx3::testing::Failing;

namespace {

int32_t CompareKeys(const void*, RTreeNode* a, RTreeNode* b)
{
    if (!a || !b)
        return 0;
    const int keyA = static_cast<LetterNode*>(a)->key, keyB = static_cast<LetterNode*>(b)->key;
    return (keyA > keyB) - (keyA < keyB);
}

constexpr EntryOrder byKey = { CompareKeys };

// The same merge with a search wherever one is meant, and a mark for each old entry that
// was found.
class SlowMerge
{
public:
    SlowMerge(const EntrySelection& oldEntries, Entries& newEntries)
        : selection(oldEntries)
        , old(oldEntries.All())
        , fresh(newEntries)
        , isFound(old.Count())
    {
    }

    uint32_t Run()
    {
        while (i < old.Count() && j < fresh.Count()) {
            const int32_t compared = CompareKeys(nullptr, old[i].node.Get(), fresh[j].node.Get());
            if (old[i].node == fresh[j].node)
                Take(i++, j++);
            else if (compared < 0)
                changes += old[i++].IsSelected();
            else if (compared > 0)
                SearchSelected();
            else
                MergeRuns();
        }
        while (j < fresh.Count())
            SearchSelected();
        for (; i < old.Count(); i++)
            changes += old[i].IsSelected() && !isFound[i];
        return changes;
    }

private:
    void Take(size_t from, size_t to)
    {
        fresh[to].flags = old[from].flags;
        kept += old[from].IsSelected();
        isFound[from] = true;
    }

    void SearchSelected()
    {
        const size_t at = j++;
        if (kept == selection.SelectedCount())
            return;
        for (int32_t k = std::max(selection.FirstSelected(), 0); k <= selection.LastSelected(); k++) {
            const auto from = static_cast<size_t>(k);
            if (old[from].node == fresh[at].node) {
                Take(from, at);
                changes += old[from].IsSelected();
            }
        }
    }

    static size_t EndOfRun(const Entries& entries, size_t start)
    {
        size_t end = start + 1;
        while (end < entries.Count() && CompareKeys(nullptr, entries[end].node.Get(), entries[start].node.Get()) == 0)
            end++;
        return end;
    }

    void MergeRuns()
    {
        const size_t oldEnd = EndOfRun(old, i), newEnd = EndOfRun(fresh, j);
        bool hadSelected = false;
        for (; i < oldEnd; i++) {
            hadSelected |= old[i].IsSelected();
            for (size_t k = j; k < newEnd; k++)
                if (old[i].node == fresh[k].node)
                    Take(i, k);
        }
        changes += hadSelected;
        j = newEnd;
    }

    const EntrySelection& selection;
    const Entries& old;
    Entries& fresh;
    std::vector<bool> isFound;
    size_t i = 0, j = 0;
    int32_t kept = 0;
    uint32_t changes = 0;
};

class Merge : public EntryTest
{
};

TEST_F(Merge, MarksFollowTheirNodes)
{
    const struct {
        const char* what;
        const char* old;
        const char* fresh;
        const char* end;
        uint32_t changes;
    } rows[] = {
        { "nothing changed", "aBcD", "abcd", "aBcD", 0 },
        { "nothing was selected", "abcd", "bxd", "bxd", 0 },
        { "newcomers between", "BD", "abcde", "aBcDe", 0 },
        { "an unselected one is gone", "aBc", "bc", "Bc", 0 },
        { "a selected one is gone", "aBCd", "acd", "aCd", 1 },
        { "the last one was selected and is gone", "abC", "ab", "ab", 1 },
        { "all are gone", "AbC", "", "", 2 },
        { "all are new", "", "abc", "abc", 0 },
        { "moved forward, and met on the way", "abcD", "dabc", "Dabc", 0 },
        { "moved to the end", "Abcd", "bcda", "bcdA", 2 },
        { "folders stand first, and out of the order of names", "AbXy", "xyab", "XyAb", 2 },
        { "moved forward and the rest is gone", "abCD", "d", "D", 1 },
        { "closed meanwhile, nothing is known of it", "..c", "abc", "abc", 0 },
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        EntrySelection selection;
        Entries fresh;
        Fill(selection, row.old);
        Fill(fresh, row.fresh);
        EXPECT_EQ(EntryMerge(selection, fresh, byKey).Run(), row.changes);
        EXPECT_EQ(TextOf(fresh), row.end);
        EXPECT_EQ(TextOf(selection.All()), row.old);
    }
}

TEST_F(Merge, AmongEqualNamesMarksGoByNode)
{
    for (char letter : { 'b', 'c', 'd', 'x' })
        KeyOf(letter) = KeyOf('b');
    const struct {
        const char* old;
        const char* fresh;
        const char* end;
        uint32_t changes;
    } rows[] = {
        { "aBcde", "acbde", "acBde", 1 },                             // still selected, and counted all the same
        { "abcde", "adcbe", "adcbe", 0 }, { "aBe", "axe", "axe", 1 }, // a namesake inherits nothing
        { "aBCDe", "adxe", "aDxe", 1 },                               // two are lost, one run is one change
        { "aBcE", "axcbe", "axcBE", 1 },
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.old);
        EntrySelection selection;
        Entries fresh;
        Fill(selection, row.old);
        Fill(fresh, row.fresh);
        EXPECT_EQ(EntryMerge(selection, fresh, byKey).Run(), row.changes);
        EXPECT_EQ(TextOf(fresh), row.end);
    }
}

TEST_F(Merge, OnlyWhatIsNearTheSelectionKeepsItsVisibleMark)
{
    EntrySelection selection;
    Entries fresh;
    Fill(selection, "abCdEf");
    selection.SetVisibleRange(0, 5);
    Fill(fresh, "fdabce");
    EXPECT_EQ(EntryMerge(selection, fresh, byKey).Run(), 4U);
    std::string visible;
    for (const ContentViewEntry& entry : fresh)
        visible += entry.IsVisible() ? 'v' : '-';
    EXPECT_EQ(TextOf(fresh), "fdabCE");
    EXPECT_EQ(visible, "vv--vv");
}

struct Row {
    std::vector<NodeRef> nodes;
    std::mt19937 random{ 11 };

    int Below(int bound) { return static_cast<int>(random() % static_cast<unsigned>(bound)); }

    // Some of the nodes, in the order of their keys but for some disorder.
    void Pick(Entries& entries, int disorder, bool marked)
    {
        std::vector<NodeRef> picked;
        const int share = 1 + Below(4), selected = Below(5);
        for (const NodeRef& node : nodes)
            if (Below(4) < share)
                picked.push_back(node);
        std::shuffle(picked.begin(), picked.end(), random);
        std::stable_sort(picked.begin(), picked.end(), [](auto& a, auto& b) { return CompareKeys(nullptr, a.Get(), b.Get()) < 0; });
        for (int n = Below(disorder + 1); n > 0 && !picked.empty(); n--)
            std::swap(picked[static_cast<size_t>(Below(static_cast<int>(picked.size())))],
                      picked[static_cast<size_t>(Below(static_cast<int>(picked.size())))]);
        for (NodeRef& node : picked) {
            const bool isParked = marked && disorder > 3 && Below(20) == 0;
            const uint32_t flags = marked ? (Below(4) < selected ? EntryFlag::selected : 0) | (Below(2) ? EntryFlag::visible : 0) : 0;
            EXPECT_TRUE(entries.Append({ isParked ? NodeRef() : std::move(node), flags }));
        }
    }
};

TEST_F(Merge, AgreesWithTheSlowMergeOnRandomLists)
{
    Row row;
    uint32_t changes = 0;
    for (int round = 0; round < 2000; round++) {
        row.nodes.clear();
        const int count = row.Below(round % 20 ? 14 : 60), keys = 1 + row.Below(30);
        for (int n = 0; n < count; n++)
            row.nodes.push_back(NodeRef(Make<LetterNode>()(row.Below(keys))));
        EntrySelection selection;
        Entries old, fresh, slow;
        row.Pick(old, round % 6, true);
        selection.Install(old, 0);
        if (round % 3 == 0) // the sort's key has changed
            for (NodeRef& node : row.nodes)
                static_cast<LetterNode*>(node.Get())->key = row.Below(keys);
        row.Pick(fresh, round % 5, false);
        for (const ContentViewEntry& entry : fresh)
            ASSERT_TRUE(slow.Append(entry));
        if (round % 4 == 1)
            testHost.Faults().Fail(FailClass::Memory, 1, Failing::FromThereOn);
        const uint32_t counted = EntryMerge(selection, fresh, byKey).Run();
        testHost.Faults().Clear();
        ASSERT_EQ(counted, SlowMerge(selection, slow).Run()) << round;
        changes += counted;
        for (size_t i = 0; i < fresh.Count(); i++)
            ASSERT_EQ(fresh[i].flags, slow[i].flags) << round << " at " << i;
    }
    EXPECT_GT(changes, 1000U);
}

// The new entries are sorted, in two groups; the old ones as they were before some were
// renamed. Then most comparisons are saved, and the outcome is the same.
TEST_F(Merge, PlacesOfSortedEntriesTellWhatComparisonsTell)
{
    constexpr int count = 400;
    static int64_t compared = 0;
    auto compare = [](const void*, RTreeNode* a, RTreeNode* b) { return compared++, CompareKeys(nullptr, a, b); };
    Row row;
    int64_t byComparisons = 0, byPlaces = 0;
    uint32_t changes = 0;
    auto keyOf = [&row](int n) -> int& { return static_cast<LetterNode*>(row.nodes[static_cast<size_t>(n)].Get())->key; };
    for (int round = 0; round < 200; round++) {
        row.nodes.clear();
        for (int n = 0; n < count; n++)
            row.nodes.push_back(NodeRef(Make<LetterNode>()(n * 7 % count)));
        EntrySelection selection;
        Entries old, fresh, slow;
        row.Pick(old, round % 6, true);
        selection.Install(old, 0);
        for (int n = row.Below(5); n > 0; n--)
            std::swap(keyOf(row.Below(count)), keyOf(row.Below(count)));
        row.Pick(fresh, 0, false);
        auto isFolder = [](const ContentViewEntry& entry) { return static_cast<LetterNode*>(entry.node.Get())->key % 5 == 0; };
        const auto folderEnd = std::stable_partition(fresh.begin(), fresh.end(), isFolder);
        const int32_t ends[] = { static_cast<int32_t>(folderEnd - fresh.begin()), static_cast<int32_t>(fresh.Count()) };
        for (const ContentViewEntry& entry : fresh)
            ASSERT_TRUE(slow.Append(entry));
        if (round % 8 == 1)
            testHost.Faults().Fail(FailClass::Memory, 1, Failing::FromThereOn);
        compared = 0;
        const uint32_t counted = EntryMerge(selection, fresh, { compare, nullptr, ends }).Run();
        testHost.Faults().Clear();
        byPlaces += std::exchange(compared, 0);
        ASSERT_EQ(counted, EntryMerge(selection, slow, { compare }).Run()) << round;
        byComparisons += compared;
        for (size_t i = 0; i < fresh.Count(); i++)
            ASSERT_EQ(fresh[i].flags, slow[i].flags) << round << " at " << i;
        changes += counted;
    }
    EXPECT_GT(changes, 1000U);
    EXPECT_LT(byPlaces, byComparisons * 3 / 4);
}

TEST_F(Merge, AnIndexIsMadeOnceAndOnlyIfSomethingMustBeSearched)
{
    constexpr int count = 20000;
    std::vector<NodeRef> nodes;
    for (int n = 0; n < count; n++)
        nodes.push_back(NodeRef(Make<LetterNode>()(n)));
    const struct {
        bool everySecondIsNew;
        bool isTied;
        int64_t allocations;
    } rows[] = { { false, false, 0 }, { true, false, 1 }, { false, true, 1 }, { true, true, 1 } };
    for (const auto& row : rows) {
        Entries old, fresh;
        for (int n = 0; n < count; n++) {
            auto& node = nodes[static_cast<size_t>(n)];
            static_cast<LetterNode*>(node.Get())->key = row.isTied ? 0 : n;
            const bool isNew = row.everySecondIsNew && n % 2 == 0;
            ASSERT_TRUE(isNew || old.Append({ node, EntryFlag::selected }));
            const int place = row.isTied ? count - 1 - n : n;
            ASSERT_TRUE(fresh.Append({ nodes[static_cast<size_t>(place)], 0 }));
        }
        EntrySelection selection;
        selection.Install(old, 0);
        const int64_t before = testHost.Faults().CallsOf(FailClass::Memory);
        EXPECT_EQ(EntryMerge(selection, fresh, byKey).Run(), row.isTied ? 1U : 0U);
        EXPECT_EQ(testHost.Faults().CallsOf(FailClass::Memory) - before, row.allocations);
        const auto selected = std::count_if(fresh.begin(), fresh.end(), [](const ContentViewEntry& entry) { return entry.IsSelected(); });
        EXPECT_EQ(selected, selection.SelectedCount());
    }
}

} // namespace
