#include "qtclock.h"

#include <QMetaObject>

namespace vx3::desktop {

QtClock::QtClock(std::function<void()> ownDue, std::function<void()> ownWoken)
    : due(std::move(ownDue))
    , woken(std::move(ownWoken))
{
    elapsed.start();
    timer.setSingleShot(true);
    timer.setTimerType(Qt::PreciseTimer);
    QObject::connect(&timer, &QTimer::timeout, this, [this] {
        wakeAt = -1;
        due();
    });
}

int64_t QtClock::Now() const
{
    return isScripted ? scriptedNow : elapsed.elapsed() + shift;
}

void QtClock::WakeAt(int64_t wanted)
{
    wakeAt = wanted;
    Arm();
}

void QtClock::Arm()
{
    timer.stop();
    if (wakeAt >= 0 && !isScripted)
        timer.start(static_cast<int>(std::clamp<int64_t>(wakeAt - Now(), 0, 24 * 3600 * 1000)));
}

// The first of several calls posts; what comes until that is handled is handled with it.
void QtClock::WakeUp()
{
    if (isWoken.exchange(true))
        return;
    QMetaObject::invokeMethod(
        this,
        [this] {
            isWoken = false;
            woken();
        },
        Qt::QueuedConnection);
}

void QtClock::BeginScript()
{
    scriptedNow = Now();
    isScripted = true;
    Arm();
}

void QtClock::EndScript()
{
    shift += scriptedNow - (elapsed.elapsed() + shift);
    isScripted = false;
    Arm();
}

// A timer that does not run because it is running already stays due: time goes on all the same.
void QtClock::Advance(int milliseconds, const std::function<void()>& turn)
{
    const int64_t end = scriptedNow + milliseconds;
    for (int64_t least = scriptedNow; wakeAt >= 0 && wakeAt <= end && least <= end; least = scriptedNow + 1) {
        scriptedNow = std::max({ scriptedNow, wakeAt, least });
        due();
        turn();
    }
    scriptedNow = std::max(scriptedNow, end);
}

} // namespace vx3::desktop
