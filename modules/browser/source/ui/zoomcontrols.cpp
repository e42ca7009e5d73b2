#include "ui/zoomcontrols.h"

#include <cmath>

#include "ui/panegadgets.h"

namespace browser {

namespace {

constexpr double percent = 100;
constexpr double firstStep = 5;
constexpr double stepAfterButton = 1;

} // namespace

void ZoomControls::Fill(double zoom)
{
    (void)dialog.SetIcon(PaneGadget::smallest, VX3_ICON_ZOOM_SMALLEST);
    (void)dialog.SetIcon(PaneGadget::largest, VX3_ICON_ZOOM_LARGEST);
    (void)dialog.SetRange(PaneGadget::zoom, 0, percent, firstStep);
    Show(zoom);
}

void ZoomControls::Show(double zoom)
{
    (void)dialog.SetValue(PaneGadget::zoom, std::round(zoom * percent));
}

bool ZoomControls::Command(int32_t id, double& zoom)
{
    if (id == PaneGadget::zoom) {
        zoom = dialog.GetValue(id) / percent;
        return true;
    }
    if (id != PaneGadget::smallest && id != PaneGadget::largest)
        return false;
    // Kept: whoever has pressed a button moves the slider in fine steps from then on.
    (void)dialog.SetRange(PaneGadget::zoom, 0, percent, stepAfterButton);
    zoom = id == PaneGadget::largest ? 1 : 0;
    Show(zoom);
    return true;
}

} // namespace browser
