// Watches on folders of the tree. They are the core host's, which tells of them when it
// delivers; here is only what each of them looks at. Main thread.
#pragma once

#include "vx3/folder.h"

namespace vx3::testing {

VX3FolderWatch* MemoryWatch(const VX3Path* folder, void (*changed)(void* user), void* user);
void MemoryUnwatch(VX3FolderWatch* watch);

} // namespace vx3::testing
