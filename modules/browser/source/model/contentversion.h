// One number for all changes of content that an order of children may depend on.
//
// Whoever keeps a sorted or filtered list reads the number, makes the list, and reads the
// number again later: as long as it is the same, the list would come out the same. It is
// raised behind each change of
//   - a link between nodes,
//   - what a node tells of its name, address, dates, size, attributes and type,
//   - the plugins, which decide on types.
// A change anywhere in the tree raises it: a list may be made too often, never too
// seldom. A kind of node whose answers come from elsewhere has to say that it does not
// take part: BrowserContentNode::NotesChanges.
#pragma once

#include <cstdint>

namespace browser {

// Any thread. Who meets a number meets all that was changed before it was raised.
uint64_t ContentVersion();

// Any thread; behind the change, and in front of whatever tells others of it.
void NoteContentChange();

} // namespace browser
