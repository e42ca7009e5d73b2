// The allocator behind the memory section. Any thread may call.
//
// Each block has 16 bytes in front that name its size and its site, and each site counts
// what it holds, so that the report of what was not given back costs two additions a
// call. A site is a file and a line; it copies the name when it is first seen, since the
// module that the name lies in may be unloaded before the report is written.
#pragma once

#include <cstddef>
#include <cstdint>

namespace vx3::core {

// For blocks that the host hands out and a module frees with the memory section. `place`
// is what the report calls it.
void* AllocateBlock(size_t size, const char* place);
void* ResizeBlock(void* block, size_t size, const char* place); // none: the old block is still there
void FreeBlock(void* block);

struct MemoryUse {
    int64_t blocks = 0;
    int64_t bytes = 0;
};

MemoryUse CountMemory();

} // namespace vx3::core
