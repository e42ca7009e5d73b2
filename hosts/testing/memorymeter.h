// How much memory a module asks for: the largest single request, and the most that it held.
//
// Sees the memory section of the table that it wraps; what the host keeps for values such as
// texts and containers is not counted. One lives at a time. Any thread may call.
#pragma once

#include <cstdint>

#include "vx3/host.h"

namespace vx3::testing {

class MemoryMeter
{
public:
    explicit MemoryMeter(const VX3Host* base);
    MemoryMeter(const MemoryMeter&) = delete;
    MemoryMeter& operator=(const MemoryMeter&) = delete;

    const VX3Host* Table() const;

    void Reset(); // from here on; blocks of before are not counted
    int64_t Largest() const;
    int64_t Peak() const;
};

} // namespace vx3::testing
