#include "core/services.h"
#include "gui/gadget.h"

namespace vx3::gui {

Picture::Picture(const VX3Bitmap* copied)
{
    const VX3BitmapServices& bitmaps = *core::BitmapServices();
    if (VX3Bitmap* copy = copied ? bitmaps.clone(copied) : nullptr)
        bitmap = std::shared_ptr<VX3Bitmap>(copy, bitmaps.free);
}

} // namespace vx3::gui
