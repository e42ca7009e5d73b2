#include "scriptedclock.h"

#include <chrono>
#include <mutex>

namespace vx3::testing {

namespace {

using namespace std::chrono;
using CivilTime = local_time<milliseconds>;

const CivilTime start = CivilTime(local_days(year(2020) / March / 1)) + 12h;

struct State {
    std::mutex lock;
    uint32_t clock = 0;      // under lock
    CivilTime civil = start; // under lock
    VX3RunServices run = {};
    VX3Host table = {};
};

State& TheState()
{
    static State state;
    return state;
}

uint32_t Clock()
{
    State& state = TheState();
    std::lock_guard guard(state.lock);
    return state.clock;
}

void CurrentDate(VX3FileDate* date)
{
    *date = ScriptedClock::Date();
}

} // namespace

ScriptedClock::ScriptedClock(const VX3Host* base)
{
    State& state = TheState();
    state.table = *base;
    state.run = *base->run;
    state.run.clock = Clock;
    state.run.currentDate = CurrentDate;
    state.table.run = &state.run;
    std::lock_guard guard(state.lock);
    state.clock = 0;
    state.civil = start;
}

const VX3Host* ScriptedClock::Table() const
{
    return &TheState().table;
}

void ScriptedClock::Advance(int64_t amount)
{
    State& state = TheState();
    std::lock_guard guard(state.lock);
    state.clock += static_cast<uint32_t>(amount); // wraps around as the real one does
    state.civil += milliseconds(amount);
}

void ScriptedClock::SetMilliseconds(uint32_t amount)
{
    State& state = TheState();
    std::lock_guard guard(state.lock);
    state.clock = amount;
}

void ScriptedClock::SetDate(const VX3FileDate& date)
{
    State& state = TheState();
    const local_days day(year(date.year) / month(date.month) / date.day);
    std::lock_guard guard(state.lock);
    state.civil = CivilTime(day) + hours(date.hour) + minutes(date.minute) + seconds(date.second);
}

VX3FileDate ScriptedClock::Date()
{
    State& state = TheState();
    std::lock_guard guard(state.lock);
    const local_days days = floor<std::chrono::days>(state.civil);
    const year_month_day date(days);
    const hh_mm_ss time(floor<seconds>(state.civil - days));
    return { static_cast<uint16_t>(static_cast<int>(date.year())),
             static_cast<uint16_t>(static_cast<unsigned>(date.month())),
             static_cast<uint16_t>(static_cast<unsigned>(date.day())),
             static_cast<uint16_t>(time.hours().count()),
             static_cast<uint16_t>(time.minutes().count()),
             static_cast<uint16_t>(time.seconds().count()) };
}

} // namespace vx3::testing
