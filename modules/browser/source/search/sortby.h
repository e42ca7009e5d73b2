// The order of children.
//
// A sort takes the keys of all nodes once and compares those, so that a change in the
// middle of it can spoil nothing but the order. Any thread may call; no lock is held
// over a sort.
#pragma once

#include "model/browserinterface.h"

namespace browser {

enum class SortMode : int32_t {
    Name = VX3_SORT_NAME,
    Modified = VX3_SORT_MODIFIED,
    Created = VX3_SORT_CREATED,
    Size = VX3_SORT_SIZE,
    Type = VX3_SORT_TYPE,
    None = VX3_SORT_NONE, // as they stand in the tree
};

// Any other number means by name.
SortMode SortModeOf(int32_t number);

// `first` and the siblings that follow, in order: smaller, older and earlier ones first.
// False if there is no memory.
[[nodiscard]] bool MakeSortedChildren(SortMode mode, NodeRef first, Array<NodeRef>& sorted);

// `first` and the siblings that follow, as they stand in the tree at one moment.
[[nodiscard]] bool CollectSiblings(NodeRef first, Array<NodeRef>& siblings);

// Whoever keeps an order asks again where a node cannot tell of its changes, and where
// what it told came out empty: it may have found no memory.
inline void DoubtUnlessNoted(const BrowserContentNode& node)
{
    if (!node.NotesChanges())
        NoteContentChange();
}
inline void DoubtIfEmpty(const String& told)
{
    if (told.IsEmpty())
        NoteContentChange();
}

// The order of the texts of their URLs.
int32_t CompareUrls(BrowserContentNode& a, BrowserContentNode& b);

// Negative, 0 or positive; never sets folders first. 0 if one is none.
int32_t CompareNodes(SortMode mode, BrowserContentNode* a, BrowserContentNode* b);

} // namespace browser
