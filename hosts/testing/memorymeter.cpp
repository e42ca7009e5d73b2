#include "memorymeter.h"

#include <algorithm>
#include <mutex>
#include <unordered_map>

namespace vx3::testing {

namespace {

struct Meter {
    VX3Host base = {};
    VX3Host table = {};
    VX3MemoryServices memory = {};

    std::mutex lock; // for all below
    std::unordered_map<void*, int64_t> blocks;
    int64_t held = 0;
    int64_t peak = 0;
    int64_t largest = 0;
};

Meter& TheMeter()
{
    static Meter meter;
    return meter;
}

void* Alloc(size_t size, int32_t line, const char* file, VX3Bool clear)
{
    Meter& meter = TheMeter();
    void* block = meter.base.memory->alloc(size, line, file, clear);
    const auto bytes = static_cast<int64_t>(std::min(size, static_cast<size_t>(INT64_MAX)));
    std::lock_guard guard(meter.lock);
    meter.largest = std::max(meter.largest, bytes); // refused ones too
    if (block) {
        meter.blocks[block] = bytes;
        meter.held += bytes;
        meter.peak = std::max(meter.peak, meter.held);
    }
    return block;
}

void Free(void* block)
{
    Meter& meter = TheMeter();
    {
        std::lock_guard guard(meter.lock);
        if (const auto found = meter.blocks.find(block); found != meter.blocks.end()) {
            meter.held -= found->second;
            meter.blocks.erase(found);
        }
    }
    meter.base.memory->free(block);
}

} // namespace

MemoryMeter::MemoryMeter(const VX3Host* base)
{
    Meter& meter = TheMeter();
    meter.base = meter.table = *base;
    meter.memory = *base->memory;
    meter.memory.alloc = Alloc;
    meter.memory.free = Free;
    meter.table.memory = &meter.memory;
    Reset();
}

const VX3Host* MemoryMeter::Table() const
{
    return &TheMeter().table;
}

void MemoryMeter::Reset()
{
    Meter& meter = TheMeter();
    std::lock_guard guard(meter.lock);
    meter.blocks.clear();
    meter.held = meter.peak = meter.largest = 0;
}

int64_t MemoryMeter::Largest() const
{
    std::lock_guard guard(TheMeter().lock);
    return TheMeter().largest;
}

int64_t MemoryMeter::Peak() const
{
    std::lock_guard guard(TheMeter().lock);
    return TheMeter().peak;
}

} // namespace vx3::testing
