// What was marked in the old entries of a folder, carried over to the new ones.
//
// Both arrays are sorted, but not by quite the same order as the comparison: folders may
// stand first in them, and keys may have changed since. So the merge trusts nothing but
// nodes: it walks both arrays by the comparison, and a node that is not where the
// comparison expects it is looked for among the selected ones.
//
// The old entries are only read, under the list's lock for reading; the new ones belong
// to the caller alone.
#pragma once

#include <span>

#include "ui/entryselection.h"

namespace browser {

// Negative, 0 or positive, as the first node stands in front of the second.
struct EntryOrder {
    int32_t (*compare)(const void* context, RTreeNode* a, RTreeNode* b);
    const void* context = nullptr;
    // How far the new entries are in this order: groups of them, as containers and files,
    // each of them sorted. A group ends in front of each of these places, which rise.
    // None: nothing is known.
    std::span<const int32_t> groupEnds = {};
};

class EntryMerge
{
public:
    EntryMerge(const EntrySelection& oldEntries, Entries& newEntries, EntryOrder nodeOrder);

    // To be called once. Tells what Install wants to know: 0 if all that was selected is
    // selected, and none of it had to be looked for.
    uint32_t Run();

private:
    void MergeNext();
    void TakeSame();
    void PassOld();
    void PassNewcomer();
    void MergeTies();
    void CountLost();
    void Take(int32_t from, ContentViewEntry& to);

    int32_t CompareNext();
    bool IsInOneGroup(int32_t a, int32_t b) const;
    int32_t EndOfTies(const Entries& entries, int32_t start) const;
    int32_t FindOld(const RTreeNode* node, int32_t from, int32_t to);
    int32_t Compare(const ContentViewEntry& a, const ContentViewEntry& b) const;
    const ContentViewEntry& OldAt(int32_t at) const { return old[static_cast<size_t>(at)]; }
    ContentViewEntry& NewAt(int32_t at) { return fresh[static_cast<size_t>(at)]; }

    const EntrySelection& selection;
    const Entries& old;
    Entries& fresh;
    const EntryOrder order;
    const int32_t oldCount;
    const int32_t newCount;

    int32_t oldNext = 0;
    int32_t newNext = 0;
    int32_t keptSelected = 0;
    uint32_t changes = 0;
    EntryIndex index; // of the old entries, made when it is first needed
    EntryIndex freshIndex;
    int32_t comparisons = 0;                  // of an old entry with a new one
    int32_t placedOld = EntrySelection::none; // the old entry that was last looked for among the new ones
    int32_t place = EntrySelection::none;     // where it is
};

} // namespace browser
