#include "memory.h"

#include <cstdlib>
#include <cstring>

#include "memorysite.h"
#include "services.h"

namespace vx3::core {
namespace {

struct alignas(16) BlockHeader {
    MemorySite* site;
    size_t size; // of what follows
};
static_assert(sizeof(BlockHeader) == 16, "what follows keeps the alignment of malloc");

constexpr size_t maximalBlock = PTRDIFF_MAX - sizeof(BlockHeader);

BlockHeader* HeaderOf(void* block)
{
    return static_cast<BlockHeader*>(block) - 1;
}

void* MakeBlock(size_t size, int32_t line, const char* file, bool clear)
{
    if (size > maximalBlock)
        return nullptr;
    const size_t whole = size + sizeof(BlockHeader);
    auto* header = static_cast<BlockHeader*>(clear ? std::calloc(1, whole) : std::malloc(whole));
    if (!header)
        return nullptr;
    header->site = FindMemorySite(file, line);
    header->size = size;
    header->site->Add(static_cast<int64_t>(size));
    return header + 1;
}

void* Alloc(size_t size, int32_t line, const char* file, VX3Bool clear)
{
    return MakeBlock(size, line, file, clear != 0);
}

constexpr VX3MemoryServices memoryServices = { Alloc, FreeBlock };

} // namespace

void* AllocateBlock(size_t size, const char* place)
{
    return MakeBlock(size, 0, place, false);
}

void* ResizeBlock(void* block, size_t size, const char* place)
{
    if (!block)
        return AllocateBlock(size, place);
    if (size > maximalBlock)
        return nullptr;
    MemorySite* site = HeaderOf(block)->site;
    const size_t oldSize = HeaderOf(block)->size;
    auto* header = static_cast<BlockHeader*>(std::realloc(HeaderOf(block), size + sizeof(BlockHeader)));
    if (!header)
        return nullptr;
    header->size = size;
    site->bytes.fetch_add(static_cast<int64_t>(size) - static_cast<int64_t>(oldSize), std::memory_order_relaxed);
    return header + 1;
}

void FreeBlock(void* block)
{
    if (!block)
        return;
    BlockHeader* header = HeaderOf(block);
    header->site->Subtract(static_cast<int64_t>(header->size));
    std::free(header);
}

MemoryUse CountMemory()
{
    MemoryUse use;
    for (const MemorySite* site : LiveMemorySites()) {
        use.blocks += site->blocks.load(std::memory_order_relaxed);
        use.bytes += site->bytes.load(std::memory_order_relaxed);
    }
    return use;
}

const VX3MemoryServices* MemoryServices()
{
    return &memoryServices;
}

} // namespace vx3::core
