// A walk over a node and everything below it, reported to a progress callback.
#pragma once

#include "model/browserinterface.h"

namespace browser {

enum class ListFolders : bool { No, Yes }; // list each folder on the way, so that all files count

// False if the callback cancelled. Holds no lock between two nodes; the order is that of
// the tree, a folder in front of its children.
[[nodiscard]] bool WalkSubtree(BrowserContentNode& top, ChangeMode mode, Progress progress, ListFolders listFolders);

// Calls UpdateUrlPrefix on a node that has moved and on all below it.
void MoveUrlPrefix(BrowserContentNode& top, const String& oldPrefix, const String& newPrefix);

} // namespace browser
