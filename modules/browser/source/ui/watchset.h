// The folders that somebody looks at, told by the host when they change.
//
// One set for the module, counted: two windows on one folder watch it once. A host that
// cannot watch, or a folder that cannot be watched, is no failure: then a folder is read
// again when somebody goes there. Main thread only.
#pragma once

#include "nodes/directorynode.h"

namespace browser {

// None is allowed. Every Watch is ended by one Unwatch of the same node.
void WatchNode(const ContentRef& node);
void UnwatchNode(const ContentRef& node);
void ForgetWatches(); // at the end of the module

// A folder that has gone from the disk leaves the tree: what is above it is listed.
void RemoveIfGone(DirectoryNode& folder);

} // namespace browser
