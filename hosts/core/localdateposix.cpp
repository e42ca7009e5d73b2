#include "localdate.h"

#include <ctime>

namespace vx3::core
{

namespace
{

constexpr int64_t secondsPerDay = 86400;
constexpr int64_t earliest = -62135596800;  // the start of the year 1
constexpr int64_t latest = 2005949145599;   // the end of the year 65535
constexpr int64_t settledSince = 631152000; // 1990: since then no place shifts twice a day
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
// leap day is the last of its year.
VX3FileDate CivilDate(int64_t localSeconds)
{
    constexpr int64_t daysToMarchOfYear0 = 719468;
    constexpr int64_t daysPerEra = 146097; // 400 years
    int64_t days = FloorDivide(localSeconds, secondsPerDay);
    int64_t inDay = localSeconds - days * secondsPerDay;
    days += daysToMarchOfYear0;
    int64_t era = FloorDivide(days, daysPerEra);
    int64_t dayOfEra = days - era * daysPerEra;
    int64_t yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    int64_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    int64_t monthFromMarch = (5 * dayOfYear + 2) / 153;
    int64_t month = monthFromMarch < 10 ? monthFromMarch + 3 : monthFromMarch - 9;
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
    int64_t number = seconds / secondsPerDay;
    Day& slot = days[number % slots];
    if (slot.number != number) {
        int64_t shift = ShiftAt(number * secondsPerDay);
        if (ShiftAt((number + 1) * secondsPerDay) != shift)
            return LocalDate(seconds);
        slot = { number, shift };
    }
    return CivilDate(seconds + slot.shift);
}

} // namespace vx3::core
