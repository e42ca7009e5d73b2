#include <ctime>
#include <random>

#include <gtest/gtest.h>

#include "core/localdate.h"

namespace vx3::core {

namespace {

class TimeZone
{
public:
    explicit TimeZone(const char* name)
    {
        setenv("TZ", name, 1);
        tzset();
    }
    ~TimeZone()
    {
        unsetenv("TZ");
        tzset();
    }
};

void ExpectSystemsDate(LocalDates& dates, time_t moment)
{
    struct tm local = {};
    localtime_r(&moment, &local);
    VX3FileDate date = dates.Convert(moment);
    bool isSame = date.year == local.tm_year + 1900 && date.month == local.tm_mon + 1 && date.day == local.tm_mday
        && date.hour == local.tm_hour && date.minute == local.tm_min && date.second == local.tm_sec;
    ASSERT_TRUE(isSame) << moment << " in " << local.tm_zone;
}

TEST(LocalDates, AgreeWithTheSystemAtAnyMoment)
{
    for (const char* zone : { "Europe/Berlin", "Australia/Lord_Howe", "Asia/Kathmandu", "America/St_Johns", "Asia/Gaza", "UTC" }) {
        TimeZone scope(zone);
        LocalDates dates;
        std::mt19937_64 random(7);
        std::uniform_int_distribution<time_t> anywhere(-5'000'000'000, 60'000'000'000);
        for (int i = 0; i < 100000; ++i)
            ExpectSystemsDate(dates, anywhere(random));
    }
}

TEST(LocalDates, FollowTheChangeOfSummerTimeToTheSecond)
{
    TimeZone scope("Europe/Berlin");
    LocalDates dates;
    for (time_t change : { 1711846800, 1729990800, 1743296400 })
        for (time_t moment = change - 90000; moment<change + 90000; moment += moment> change - 5 && moment < change + 5 ? 1 : 97)
            ExpectSystemsDate(dates, moment);
}

TEST(LocalDates, AMomentOutsideTheYearsHasNoDate)
{
    LocalDates dates;
    EXPECT_EQ(dates.Convert(INT64_MAX).year, 0);
    EXPECT_EQ(dates.Convert(INT64_MIN).year, 0);
}

} // namespace

} // namespace vx3::core
