// Dates of content: six fields, compared in their stored order.
#pragma once

#include "services/host.h"

namespace browser {

using FileDate = VX3FileDate;

// The first difference of the fields, a minus b: older first.
inline int32_t CompareDates(const FileDate& a, const FileDate& b)
{
    const int32_t differences[] = { a.year - b.year, a.month - b.month,   a.day - b.day,
                                    a.hour - b.hour, a.minute - b.minute, a.second - b.second };
    for (int32_t difference : differences)
        if (difference)
            return difference;
    return 0;
}

inline FileDate CurrentDate()
{
    FileDate date = {};
    host->run->currentDate(&date);
    return date;
}

} // namespace browser
