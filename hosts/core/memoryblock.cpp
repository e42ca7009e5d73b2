#include "memoryblock.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "livecounts.h"
#include "memory.h"

namespace vx3::core {
namespace {

constexpr int64_t firstCapacity = 256;
constexpr const char* place = "memory path";

} // namespace

MemoryBlock* MemoryBlock::Make()
{
    auto* block = new (std::nothrow) MemoryBlock;
    if (!block)
        return nullptr;
    block->writable = true;
    liveCounters.paths.Add();
    return block;
}

MemoryBlock* MemoryBlock::Borrow(const void* bytes, int64_t length)
{
    if (length < 0 || (!bytes && length > 0))
        return nullptr;
    MemoryBlock* block = Make();
    if (!block)
        return nullptr;
    // Never written through: Write and Resize refuse.
    block->data = const_cast<uint8_t*>(static_cast<const uint8_t*>(bytes));
    block->length = length;
    block->writable = false;
    return block;
}

void MemoryBlock::Retain()
{
    references.fetch_add(1, std::memory_order_relaxed);
}

void MemoryBlock::Release()
{
    if (references.fetch_sub(1, std::memory_order_acq_rel) != 1)
        return;
    if (writable)
        FreeBlock(data);
    liveCounters.paths.Subtract();
    delete this;
}

int64_t MemoryBlock::Read(int64_t offset, void* bytes, int64_t count)
{
    std::lock_guard lock(guard);
    if (offset < 0 || count <= 0 || offset >= length)
        return 0;
    const int64_t taken = std::min(count, length - offset);
    std::memcpy(bytes, data + offset, static_cast<size_t>(taken));
    return taken;
}

bool MemoryBlock::Write(int64_t offset, const void* bytes, int64_t count)
{
    std::lock_guard lock(guard);
    if (!writable || offset < 0 || count < 0 || offset > INT64_MAX - count)
        return false;
    if (count == 0)
        return true;
    const int64_t end = offset + count;
    if (end > length && !ResizeLocked(end))
        return false;
    std::memcpy(data + offset, bytes, static_cast<size_t>(count));
    return true;
}

bool MemoryBlock::Resize(int64_t newLength)
{
    std::lock_guard lock(guard);
    return writable && newLength >= 0 && ResizeLocked(newLength);
}

int64_t MemoryBlock::Length()
{
    std::lock_guard lock(guard);
    return length;
}

bool MemoryBlock::Take(void*& bytes, int64_t& count)
{
    std::lock_guard lock(guard);
    if (!writable || !data)
        return false;
    bytes = data;
    count = length;
    data = nullptr;
    length = 0;
    capacity = 0;
    return true;
}

bool MemoryBlock::Reserve(int64_t needed)
{
    if (needed <= capacity)
        return true;
    const int64_t grown = capacity > INT64_MAX / 2 ? needed : std::max({ needed, capacity + capacity / 2, firstCapacity });
    void* larger = ResizeBlock(data, static_cast<size_t>(grown), place);
    if (!larger)
        return false;
    data = static_cast<uint8_t*>(larger);
    capacity = grown;
    return true;
}

bool MemoryBlock::ResizeLocked(int64_t newLength)
{
    if (!Reserve(newLength))
        return false;
    if (newLength > length)
        std::memset(data + length, 0, static_cast<size_t>(newLength - length));
    length = newLength;
    return true;
}

} // namespace vx3::core
