// The bitmap section of the host's table.
#include <cstring>
#include <new>
#include <utility>

#include "bitmappixels.h"
#include "codec.h"
#include "livecounts.h"
#include "services.h"
#include "values.h"

namespace vx3::core {

namespace {

constexpr int32_t colourDepth = 24; // bits of a pixel
constexpr int32_t alphaDepth = 32;

VX3Bitmap* MakeBitmap(Pixels pixels)
{
    auto* bitmap = new (std::nothrow) VX3Bitmap(std::move(pixels));
    if (bitmap)
        liveCounters.bitmaps.Add();
    return bitmap;
}

VX3Bitmap* Create(int32_t width, int32_t height, int32_t depth)
{
    Pixels pixels;
    if (depth != colourDepth || !pixels.Allocate(width, height))
        return nullptr;
    pixels.MakeOpaque();
    return MakeBitmap(std::move(pixels));
}

void Free(VX3Bitmap* bitmap)
{
    if (!bitmap)
        return;
    liveCounters.bitmaps.Subtract();
    delete bitmap;
}

VX3Bitmap* Clone(const VX3Bitmap* bitmap)
{
    Pixels pixels;
    if (!bitmap || !pixels.CopyFrom(bitmap->pixels))
        return nullptr;
    return MakeBitmap(std::move(pixels));
}

int32_t Width(const VX3Bitmap* bitmap)
{
    return bitmap ? bitmap->pixels.Width() : 0;
}

int32_t Height(const VX3Bitmap* bitmap)
{
    return bitmap ? bitmap->pixels.Height() : 0;
}

VX3Bool HasAlpha(const VX3Bitmap* bitmap)
{
    return bitmap && bitmap->pixels.hasAlpha;
}

int32_t Depth(const VX3Bitmap* bitmap)
{
    return HasAlpha(bitmap) ? alphaDepth : colourDepth;
}

VX3Bool AddAlpha(VX3Bitmap* bitmap)
{
    if (!bitmap)
        return 0;
    if (!std::exchange(bitmap->pixels.hasAlpha, true)) // the bytes are there and opaque
        bitmap->MarkWritten();
    return 1;
}

bool HoldsRun(const VX3Bitmap* bitmap, int32_t x, int32_t y, int32_t count)
{
    return bitmap && x >= 0 && y >= 0 && count >= 0 && y < bitmap->pixels.Height() && int64_t(x) + count <= bitmap->pixels.Width();
}

VX3Bool ReadPixels(const VX3Bitmap* bitmap, int32_t x, int32_t y, int32_t count, uint8_t* rgba)
{
    if (!HoldsRun(bitmap, x, y, count) || !rgba)
        return 0;
    std::memcpy(rgba, bitmap->pixels.Row(y) + size_t(x) * bytesPerPixel, size_t(count) * bytesPerPixel);
    return 1;
}

VX3Bool WritePixels(VX3Bitmap* bitmap, int32_t x, int32_t y, int32_t count, const uint8_t* rgba)
{
    if (!HoldsRun(bitmap, x, y, count) || !rgba)
        return 0;
    uint8_t* out = bitmap->pixels.Row(y) + size_t(x) * bytesPerPixel;
    std::memcpy(out, rgba, size_t(count) * bytesPerPixel);
    for (int32_t pixel = 0; !bitmap->pixels.hasAlpha && pixel < count; ++pixel)
        out[size_t(pixel) * bytesPerPixel + 3] = opaque;
    bitmap->MarkWritten();
    return 1;
}

VX3Bool Scale(const VX3Bitmap* source, int32_t left, int32_t top, int32_t right, int32_t bottom, VX3Bitmap* target, int32_t targetLeft,
              int32_t targetTop, int32_t targetRight, int32_t targetBottom)
{
    PixelRect from = { left, top, right, bottom };
    PixelRect to = { targetLeft, targetTop, targetRight, targetBottom };
    if (!source || !target || source == target || !from.IsInside(source->pixels) || to.left > to.right || to.top > to.bottom)
        return 0;
    if (!ScalePixels(source->pixels, from, target->pixels, to))
        return 0;
    target->MarkWritten();
    return 1;
}

VX3Bitmap* Cut(const VX3Bitmap* bitmap, int32_t x, int32_t y, int32_t width, int32_t height)
{
    if (!bitmap || width < 1 || height < 1 || x < 0 || y < 0)
        return nullptr;
    const Pixels& whole = bitmap->pixels;
    if (int64_t(x) + width > whole.Width() || int64_t(y) + height > whole.Height())
        return nullptr;
    Pixels part;
    if (!part.Allocate(width, height))
        return nullptr;
    part.hasAlpha = whole.hasAlpha;
    for (int32_t row = 0; row < height; ++row)
        std::memcpy(part.Row(row), whole.Row(y + row) + size_t(x) * bytesPerPixel, part.RowBytes());
    return MakeBitmap(std::move(part));
}

// Codecs throw nothing but a lack of memory.
int32_t Load(VX3Bitmap* bitmap, const VX3Path* path, int32_t frame)
try {
    if (!bitmap || !path || frame < 0)
        return VX3_IMAGE_NOT_FOUND;
    Pixels pixels;
    int32_t result = LoadPicture(*path, frame, pixels);
    if (result != VX3_IMAGE_OK)
        return result;
    bitmap->pixels = std::move(pixels);
    bitmap->MarkWritten();
    return result;
} catch (const std::bad_alloc&) {
    return VX3_IMAGE_NO_MEMORY;
}

int32_t Save(const VX3Bitmap* bitmap, const VX3Path* path, int32_t format, const VX3Container* settings, VX3Bool saveAlpha)
try {
    if (!bitmap || !path)
        return VX3_IMAGE_NOT_WRITTEN;
    SaveOptions options;
    options.withAlpha = saveAlpha && bitmap->pixels.hasAlpha;
    if (settings)
        options.quality = ContainerServices()->getInt32(settings, VX3_SAVE_QUALITY, options.quality);
    return SavePicture(bitmap->pixels, *path, format, options);
} catch (const std::bad_alloc&) {
    return VX3_IMAGE_NO_MEMORY;
}

VX3Bool Inspect(const VX3Path* path, VX3ImageInfo* info)
try {
    PictureHead head;
    if (!path || !info || !InspectPicture(*path, head))
        return 0;
    Text format(head.format);
    if (!TextServices()->copy(&info->format, format.Get()))
        return 0;
    info->width = head.width;
    info->height = head.height;
    info->depth = head.depth;
    info->hasAlpha = head.hasAlpha;
    return 1;
} catch (const std::bad_alloc&) {
    return 0;
}

// Without a screen there is no viewer.
VX3Bool Show(const VX3Path*)
{
    return 0;
}

constexpr VX3BitmapServices services = { Create,     Free,        Clone, Width, Height, Depth, HasAlpha, AddAlpha,
                                         ReadPixels, WritePixels, Scale, Cut,   Load,   Save,  Inspect,  Show };

} // namespace

const VX3BitmapServices* BitmapServices()
{
    return &services;
}

} // namespace vx3::core
