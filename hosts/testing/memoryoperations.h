// The operations of the folder section that change the tree.
#pragma once

#include "vx3/folder.h"

namespace vx3::testing {

VX3Bool MemoryCreateFolder(const VX3Path* path);
VX3Bool MemoryRename(const VX3Path* from, const VX3Path* to);
VX3Bool MemoryMove(const VX3Path* from, const VX3Path* to);
VX3Bool MemoryCopy(const VX3Path* from, const VX3Path* to, uint32_t bits, int64_t size, VX3ProgressFunction progress, void* user,
                   VX3Bool* cancelled);
VX3Bool MemoryRemove(const VX3Path* path, uint32_t bits, int64_t size, VX3ProgressFunction progress, void* user, VX3Bool* cancelled);

} // namespace vx3::testing
