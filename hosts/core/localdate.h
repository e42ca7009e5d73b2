// Moments of the file system as civil dates of this place.
#pragma once

#include <cstdint>

#include "vx3/types.h"

namespace vx3::core {

// Seconds since 1970 as local date and time; a moment outside the years 1 to 65535
// has no date. Any thread.
VX3FileDate LocalDate(int64_t seconds);

// The same for many moments. Most spans of some days have one shift from universal
// time, which is asked for once and kept. One thread at a time.
class LocalDates
{
public:
    VX3FileDate Convert(int64_t seconds);

private:
    struct Span {
        int32_t number = -1; // since 1970
        int32_t shift = 0;
    };
    static constexpr int slots = 512;
    Span spans[slots];
};

} // namespace vx3::core
