// The places in source code that ask for memory, and what each of them holds.
#pragma once

#include <atomic>
#include <cstdint>
#include <vector>

namespace vx3::core {

// Lives as long as the process.
struct MemorySite {
    const char* key = nullptr;  // address of the literal at first sight; never read through
    const char* name = nullptr; // own copy of the literal
    int32_t line = 0;
    std::atomic<int64_t> blocks{ 0 };
    std::atomic<int64_t> bytes{ 0 };

    void Add(int64_t size);
    void Subtract(int64_t size);
};

// Finds or makes the site; without memory or room for another one it is a site that
// stands for all further places. Takes no lock.
MemorySite* FindMemorySite(const char* file, int32_t line);

// The sites that hold blocks now.
std::vector<const MemorySite*> LiveMemorySites();

} // namespace vx3::core
