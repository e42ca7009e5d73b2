#include "services/hostbitmap.h"

namespace browser {

HostBitmap HostBitmap::Scaled(const VX3Bitmap* source, int32_t size)
{
    const VX3BitmapServices& bitmaps = *host->bitmap;
    HostBitmap target = Create(size, size);
    if (!target || (bitmaps.hasAlpha(source) && !bitmaps.addAlpha(target.Get())))
        return {};
    const int32_t right = bitmaps.width(source) - 1;
    const int32_t bottom = bitmaps.height(source) - 1;
    if (!bitmaps.scale(source, 0, 0, right, bottom, target.Get(), 0, 0, size - 1, size - 1))
        return {};
    return target;
}

} // namespace browser
