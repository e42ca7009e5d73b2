// Time for the desk: that of the machine, or one that a script turns by hand.
#pragma once

#include <atomic>
#include <functional>

#include <QElapsedTimer>
#include <QTimer>

namespace vx3::desktop {

// Calls `due` on the main thread at the time asked for, and `woken` soon after WakeUp. Main
// thread only, but for WakeUp.
class QtClock final : public QObject
{
public:
    QtClock(std::function<void()> ownDue, std::function<void()> ownWoken);

    int64_t Now() const;
    void WakeAt(int64_t wanted); // negative: not at all
    void WakeUp();               // any thread

    void BeginScript(); // the time stands still from now on
    void EndScript();
    // Turns the time forward; `due` is called at each moment that is asked for on the way, and
    // `turn` behind it.
    void Advance(int milliseconds, const std::function<void()>& turn);

private:
    void Arm();

    std::function<void()> due;
    std::function<void()> woken;
    QElapsedTimer elapsed;
    QTimer timer;
    int64_t wakeAt = -1;
    bool isScripted = false;
    int64_t scriptedNow = 0;
    int64_t shift = 0; // of the machine's time, which goes on where a script left it
    std::atomic<bool> isWoken{ false };
};

} // namespace vx3::desktop
