// The folders that somebody looks at, told by the host when they change.
//
// One set for the module, counted: two windows on one folder watch it once. A host that
// cannot watch, or a folder that cannot be watched, is no failure: then a folder is read
// again when somebody goes there. Main thread only.
#pragma once

#include "nodes/directorynode.h"

namespace browser {

// From here on changes are told; a folder that was not watched before is listed anew when its
// children are asked for next. None is allowed. If it is true, one Unwatch of the same node
// ends it; false only without memory.
[[nodiscard]] bool WatchNode(const ContentRef& node);
void UnwatchNode(const ContentRef& node);
void ForgetWatches(); // at the end of the module

// A folder that has gone from the disk leaves the tree: what is above it is listed.
void RemoveIfGone(DirectoryNode& folder);

} // namespace browser
