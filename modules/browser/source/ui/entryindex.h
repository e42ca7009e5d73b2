// From a node to its place in an array of entries, for those who ask for many.
//
// The index knows no array: each call brings the one that the index was made of. A place
// is looked at before it is told, so entries may lose their nodes meanwhile.
#pragma once

#include "ui/contententry.h"

namespace browser {

class EntryIndex
{
public:
    // False without memory: then the entries must be walked.
    [[nodiscard]] bool Make(const Entries& entries);
    void Forget() { slots.Clear(); }
    bool IsMade() const { return !slots.IsEmpty(); }

    // The first place of `node` in `from` … `to`, both included, or -1.
    int32_t FindFirst(const Entries& entries, const RTreeNode* node, int32_t from, int32_t to) const;
    int32_t FindLast(const Entries& entries, const RTreeNode* node) const;

private:
    size_t HomeOf(const RTreeNode* node) const;
    size_t After(size_t slot) const { return (slot + 1) & (slots.Count() - 1); }

    // 0, or a place counted from 1. A node that stands twice is met in the array's order.
    Array<uint32_t> slots;
};

} // namespace browser
