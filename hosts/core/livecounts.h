// What modules hold of the host at this moment, as counters that any thread may change.
//
// Each kind of object adds 1 where it is made and takes 1 away where it is freed, with
// relaxed order: the numbers are read when the module is quiet. Blocks of memory are
// not here, since their sites count them already (memory.h).
#pragma once

#include <atomic>
#include <cstdint>
#include <string>

#include "corehost.h"

namespace vx3::core {

// A line of the cache for each counter, so that threads do not slow each other down.
struct alignas(64) LiveCounter {
    std::atomic<int64_t> value{ 0 };

    void Add() { value.fetch_add(1, std::memory_order_relaxed); }
    void Subtract() { value.fetch_sub(1, std::memory_order_relaxed); }
    int64_t Get() const { return value.load(std::memory_order_relaxed); }
};

struct LiveCounters {
    LiveCounter texts;
    LiveCounter paths;
    LiveCounter containers;
    LiveCounter files;
    LiveCounter walks;
    LiveCounter watches;
    LiveCounter bitmaps;
    LiveCounter threads;
    LiveCounter semaphores;
    LiveCounter resources;
    LiveCounter compressors;
};

inline LiveCounters liveCounters;

// All counters at once, with the blocks and bytes of memory.
LiveObjects ReadLiveObjects();

// One line "file:line: blocks, bytes" for each place that holds blocks, the largest
// first; empty if none does.
std::string DescribeLiveMemory();

} // namespace vx3::core
