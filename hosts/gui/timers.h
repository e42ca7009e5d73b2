// The timers of dialogs, on a clock that the owner has. Keeps handles only: who is called,
// and whether it may be, is the caller's. Main thread only.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <vector>

#include "vx3/guitypes.h"

namespace vx3::gui {

class Timers
{
public:
    using Filter = std::function<bool(VX3Dialog)>;

    void Set(VX3Dialog dialog, int64_t interval, int64_t now); // 0 stops it
    // Those that are due, the earliest first.
    std::vector<VX3Dialog> Due(int64_t now) const;
    // Until End a timer is not begun again, however long it takes. False if it is not due.
    bool Begin(VX3Dialog dialog, int64_t now);
    void End(VX3Dialog dialog, int64_t now);
    int64_t Next(const Filter& isWanted) const; // when; negative: none

private:
    struct Timer {
        int64_t interval = 0;
        int64_t due = 0;
        bool isRunning = false;
    };

    std::map<VX3Dialog, Timer> timers;
};

} // namespace vx3::gui
