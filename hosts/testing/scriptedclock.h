// A clock that a test turns by hand, for the milliseconds and the date of a table.
//
// One lives at a time. Any thread may read it; it moves only when a test says so.
#pragma once

#include <cstdint>

#include "vx3/host.h"

namespace vx3::testing {

class ScriptedClock
{
public:
    explicit ScriptedClock(const VX3Host* base); // starts at 0 ms and at noon of 1 March 2020
    ScriptedClock(const ScriptedClock&) = delete;
    ScriptedClock& operator=(const ScriptedClock&) = delete;

    const VX3Host* Table() const;

    void Advance(int64_t milliseconds); // both; dates go on by whole seconds
    void SetMilliseconds(uint32_t milliseconds);
    void SetDate(const VX3FileDate& date);

    static VX3FileDate Date(); // also for what is dated by the same clock
};

} // namespace vx3::testing
