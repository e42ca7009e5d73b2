#include "localdate.h"

#include <ctime>

namespace vx3::core {

namespace {

constexpr int64_t secondsPerDay = 86400;
constexpr int64_t earliest = -62135596800; // the start of the year 1
constexpr int64_t latest = 2005949145599;  // the end of the year 65535
// Where a shift is the same at both ends of a span it is so in between: summer times were
// taken back after a week at the soonest.
constexpr int64_t secondsPerSpan = 4 * secondsPerDay;
constexpr int64_t settledSince = 631152000; // 1990
constexpr int64_t farthestShift = 2 * secondsPerDay;

bool HasDate(int64_t seconds)
{
    return seconds >= earliest + farthestShift && seconds <= latest - farthestShift;
}

int64_t FloorDivide(int64_t value, int64_t by)
{
    return value / by - (value % by < 0);
}

// Seconds to add to universal time at this moment.
int64_t ShiftAt(int64_t seconds)
{
    auto moment = static_cast<time_t>(seconds);
    struct tm local = {};
    return localtime_r(&moment, &local) ? local.tm_gmtoff : 0;
}

// Civil date from days since 1970, counted in years that begin in March so that the
// leap day is the last of its year. Short numbers, since a listing does this twice an entry.
VX3FileDate CivilDate(int64_t localSeconds)
{
    constexpr int64_t daysToMarchOfYear0 = 719468;
    constexpr uint32_t daysPerEra = 146097; // 400 years
    const int64_t fullDays = FloorDivide(localSeconds, secondsPerDay);
    const auto inDay = static_cast<uint32_t>(localSeconds - fullDays * secondsPerDay);
    const auto days = static_cast<uint32_t>(fullDays + daysToMarchOfYear0); // HasDate keeps it above 0
    const uint32_t era = days / daysPerEra;
    const uint32_t dayOfEra = days % daysPerEra;
    const uint32_t yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    const uint32_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const uint32_t monthFromMarch = (5 * dayOfYear + 2) / 153;
    const uint32_t month = monthFromMarch < 10 ? monthFromMarch + 3 : monthFromMarch - 9;
    VX3FileDate date = {};
    date.year = static_cast<uint16_t>(yearOfEra + era * 400 + (month <= 2));
    date.month = static_cast<uint16_t>(month);
    date.day = static_cast<uint16_t>(dayOfYear - (153 * monthFromMarch + 2) / 5 + 1);
    date.hour = static_cast<uint16_t>(inDay / 3600);
    date.minute = static_cast<uint16_t>(inDay / 60 % 60);
    date.second = static_cast<uint16_t>(inDay % 60);
    return date;
}

} // namespace

VX3FileDate LocalDate(int64_t seconds)
{
    return HasDate(seconds) ? CivilDate(seconds + ShiftAt(seconds)) : VX3FileDate{};
}

VX3FileDate LocalDates::Convert(int64_t seconds)
{
    if (seconds < settledSince || !HasDate(seconds))
        return LocalDate(seconds);
    auto number = static_cast<int32_t>(seconds / secondsPerSpan);
    Span& slot = spans[number % slots];
    if (slot.number != number) {
        auto shift = static_cast<int32_t>(ShiftAt(number * secondsPerSpan));
        if (ShiftAt((number + 1) * secondsPerSpan) != shift)
            return LocalDate(seconds);
        slot = { number, shift };
    }
    return CivilDate(seconds + slot.shift);
}

} // namespace vx3::core
