#include "pathvalue.h"
#include "values.h"

namespace vx3::core {
namespace {

constexpr uintptr_t memoryMark = 1; // blocks and buffers lie at even addresses

bool SetMemory(VX3Path& path, MemoryBlock* block)
{
    if (!block)
        return false;
    ReplaceMemory(path, block);
    return true;
}

} // namespace

MemoryBlock* MemoryOf(const VX3Path& path)
{
    const auto word = reinterpret_cast<uintptr_t>(path.opaque[0]);
    return (word & memoryMark) != 0 ? reinterpret_cast<MemoryBlock*>(word - memoryMark) : nullptr;
}

MemoryBlock* BlockOf(const VX3Path& path)
{
    return MemoryOf(path);
}

void ReplaceMemory(VX3Path& path, MemoryBlock* block)
{
    VX3Path old = path;
    path.opaque[0] = reinterpret_cast<void*>(reinterpret_cast<uintptr_t>(block) + memoryMark);
    path.opaque[1] = nullptr;
    DestructPath(old);
}

VX3Bool SetPathMemoryReading(VX3Path* path, const void* bytes, int64_t length)
{
    return SetMemory(*path, MemoryBlock::Borrow(bytes, length));
}

VX3Bool SetPathMemoryWriting(VX3Path* path)
{
    return SetMemory(*path, MemoryBlock::Make());
}

VX3Bool TakePathMemory(VX3Path* path, void** bytes, int64_t* length)
{
    MemoryBlock* block = MemoryOf(*path);
    return block && block->Take(*bytes, *length);
}

} // namespace vx3::core
