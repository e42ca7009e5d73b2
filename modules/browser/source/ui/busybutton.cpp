#include "ui/busybutton.h"

#include "ui/iconservice.h"
#include "ui/panegadgets.h"
#include "ui/panewindow.h"

namespace browser {

namespace {

constexpr int32_t firstFrame = static_cast<int32_t>(Icon::FirstProgressor);
constexpr int32_t frameCount = 8;
constexpr int32_t stopIcon = firstFrame + frameCount;
constexpr int32_t asDrawn = 0;
constexpr int32_t timeToStop = 1000; // milliseconds

} // namespace

void BusyButton::Reset()
{
    wasActive = false;
    (void)dialog.SetBitmap(PaneGadget::busy, nullptr);
    (void)dialog.Enable(PaneGadget::busy, false);
}

void BusyButton::Tick(BackgroundWork* work)
{
    const bool isActive = work && work->IsRunning();
    if (isActive && wasActive) {
        ShowFrame(nextFrame % frameCount);
        nextFrame = (nextFrame + 1) % frameCount;
    } else if (isActive) {
        ShowFrame(0);
        (void)dialog.Enable(PaneGadget::busy, true);
    } else if (wasActive) {
        Reset();
    }
    wasActive = isActive;
}

void BusyButton::ShowFrame(int32_t frame)
{
    (void)dialog.SetBitmap(PaneGadget::busy, GetIconBitmap(firstFrame + frame, asDrawn), GetIconBitmap(stopIcon, asDrawn));
}

// The work gets its time to stop here, so that the next tick finds it at rest.
void BusyButton::Press(BackgroundWork* work)
{
    if (!work)
        return;
    (void)dialog.Enable(PaneGadget::busy, false);
    (void)dialog.LayoutChanged(PaneGadget::status);
    work->Stop();
    host->thread->sleep(timeToStop);
}

} // namespace browser
