#include "ui/entrymerge.h"

#include <algorithm>

namespace browser {

namespace {

constexpr int32_t fewEntries = 8;      // are walked rather than indexed
constexpr int32_t fewComparisons = 64; // are made rather than saved by an index

} // namespace

EntryMerge::EntryMerge(const EntrySelection& oldEntries, Entries& newEntries, EntryOrder nodeOrder)
    : selection(oldEntries)
    , old(oldEntries.All())
    , fresh(newEntries)
    , order(nodeOrder)
    , oldCount(oldEntries.Count())
    , newCount(static_cast<int32_t>(newEntries.Count()))
{
}

uint32_t EntryMerge::Run()
{
    while (oldNext < oldCount && newNext < newCount)
        MergeNext();
    while (newNext < newCount)
        PassNewcomer();
    CountLost();
    return changes;
}

void EntryMerge::MergeNext()
{
    if (OldAt(oldNext).node == NewAt(newNext).node)
        return TakeSame();
    const int32_t sign = CompareNext();
    if (sign < 0)
        PassOld();
    else if (sign > 0)
        PassNewcomer();
    else
        MergeTies();
}

void EntryMerge::TakeSame()
{
    Take(oldNext++, NewAt(newNext++));
}

// Gone, or moved to a place behind.
void EntryMerge::PassOld()
{
    changes += OldAt(oldNext++).IsSelected();
}

// New, or moved. Kept: what moved keeps its marks only if it lies among the selected
// ones, and a selected one is counted as a change although it is still selected.
void EntryMerge::PassNewcomer()
{
    ContentViewEntry& newcomer = NewAt(newNext++);
    if (keptSelected == selection.SelectedCount())
        return;
    const int32_t from = std::max(selection.FirstSelected(), 0);
    const int32_t at = FindOld(newcomer.node.Get(), from, std::min(selection.LastSelected(), oldCount - 1));
    if (at == EntrySelection::none)
        return;
    Take(at, newcomer);
    changes += newcomer.IsSelected();
}

// Several nodes that the comparison cannot tell apart. Kept: marks go from node to node
// and never to a namesake, and one selected node makes a change even if it is still there.
void EntryMerge::MergeTies()
{
    const int32_t oldEnd = EndOfTies(old, oldNext);
    const int32_t newEnd = EndOfTies(fresh, newNext);
    for (; newNext < newEnd; newNext++) {
        const int32_t at = FindOld(NewAt(newNext).node.Get(), oldNext, oldEnd - 1);
        if (at != EntrySelection::none)
            Take(at, NewAt(newNext));
    }
    bool hadSelected = false;
    for (; oldNext < oldEnd; oldNext++)
        hadSelected = hadSelected || OldAt(oldNext).IsSelected();
    changes += hadSelected;
}

// Selected old entries behind the end of the new ones, but for those that were found in
// front of it.
void EntryMerge::CountLost()
{
    int32_t behind = 0;
    for (int32_t i = oldNext; i <= std::min(selection.LastSelected(), oldCount - 1); i++)
        behind += OldAt(i).IsSelected();
    if (!behind)
        return;
    changes += static_cast<uint32_t>(behind);
    for (const ContentViewEntry& entry : fresh)
        if (entry.IsSelected() && FindOld(entry.node.Get(), oldNext, oldCount - 1) != EntrySelection::none)
            changes--;
}

void EntryMerge::Take(int32_t from, ContentViewEntry& to)
{
    to.flags = OldAt(from).flags;
    keptSelected += to.IsSelected();
}

// The new entries have been sorted by the same order a moment ago: where the old node
// stands among them tells as much as a comparison, which has to fetch two nodes and
// their names from all over memory.
int32_t EntryMerge::CompareNext()
{
    const bool isWorthIt = !order.groupEnds.empty() && comparisons++ >= fewComparisons;
    if (isWorthIt && (freshIndex.IsMade() || freshIndex.Make(fresh))) {
        if (placedOld != oldNext)
            place = freshIndex.FindFirst(fresh, OldAt(oldNext).node.Get(), 0, newCount - 1);
        placedOld = oldNext;
        if (place != EntrySelection::none && IsInOneGroup(place, newNext))
            return place < newNext ? -1 : 1;
    }
    Foresee(old, static_cast<size_t>(oldNext) + stepsAhead);
    Foresee(fresh, static_cast<size_t>(newNext) + stepsAhead);
    return Compare(OldAt(oldNext), NewAt(newNext));
}

bool EntryMerge::IsInOneGroup(int32_t a, int32_t b) const
{
    for (int32_t end : order.groupEnds)
        if (a < end || b < end)
            return a < end && b < end;
    return false;
}

int32_t EntryMerge::EndOfTies(const Entries& entries, int32_t start) const
{
    const auto count = static_cast<int32_t>(entries.Count());
    int32_t end = start + 1;
    while (end < count && Compare(entries[static_cast<size_t>(end)], entries[static_cast<size_t>(start)]) == 0)
        end++;
    return end;
}

// Without memory for the index the entries are walked: slow, with the same answer.
int32_t EntryMerge::FindOld(const RTreeNode* node, int32_t from, int32_t to)
{
    if (to - from >= fewEntries && (index.IsMade() || index.Make(old)))
        return index.FindFirst(old, node, from, to);
    for (int32_t i = from; i <= to; i++)
        if (OldAt(i).node.Get() == node)
            return i;
    return EntrySelection::none;
}

int32_t EntryMerge::Compare(const ContentViewEntry& a, const ContentViewEntry& b) const
{
    return order.compare(order.context, a.node.Get(), b.node.Get());
}

} // namespace browser
