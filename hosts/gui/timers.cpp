#include "gui/timers.h"

#include <algorithm>

namespace vx3::gui {

void Timers::Set(VX3Dialog dialog, int64_t interval, int64_t now)
{
    auto found = timers.find(dialog);
    if (interval > 0) {
        Timer& timer = timers[dialog];
        timer.interval = interval;
        timer.due = now + interval;
    } else if (found != timers.end()) {
        found->second.interval = 0;
        if (!found->second.isRunning)
            timers.erase(found);
    }
}

std::vector<VX3Dialog> Timers::Due(int64_t now) const
{
    std::vector<VX3Dialog> due;
    for (const auto& [dialog, timer] : timers)
        if (timer.interval > 0 && timer.due <= now)
            due.push_back(dialog);
    std::stable_sort(due.begin(), due.end(), [this](VX3Dialog a, VX3Dialog b) { return timers.at(a).due < timers.at(b).due; });
    return due;
}

bool Timers::Begin(VX3Dialog dialog, int64_t now)
{
    auto found = timers.find(dialog);
    if (found == timers.end() || found->second.interval == 0 || found->second.isRunning || found->second.due > now)
        return false;
    Timer& timer = found->second;
    timer.isRunning = true;
    // What was missed is not made up for.
    timer.due += (1 + (now - timer.due) / timer.interval) * timer.interval;
    return true;
}

void Timers::End(VX3Dialog dialog, int64_t now)
{
    auto found = timers.find(dialog);
    if (found == timers.end())
        return;
    Timer& timer = found->second;
    timer.isRunning = false;
    if (timer.interval == 0)
        timers.erase(found);
    else if (timer.due <= now)
        timer.due += (1 + (now - timer.due) / timer.interval) * timer.interval;
}

int64_t Timers::Next(const Filter& isWanted) const
{
    int64_t next = -1;
    for (const auto& [dialog, timer] : timers)
        if (timer.interval > 0 && !timer.isRunning && (next < 0 || timer.due < next) && isWanted(dialog))
            next = timer.due;
    return next;
}

} // namespace vx3::gui
