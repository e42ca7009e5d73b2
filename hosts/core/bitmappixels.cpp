#include "bitmappixels.h"

#include <cstdlib>
#include <cstring>

namespace vx3::core {

void Pixels::Free::operator()(uint8_t* block) const
{
    std::free(block);
}

bool Pixels::Allocate(int32_t newWidth, int32_t newHeight)
{
    if (newWidth < 1 || newHeight < 1 || newWidth > maximumSide || newHeight > maximumSide)
        return false;
    int64_t count = int64_t(newWidth) * newHeight;
    if (count > maximumPixelCount)
        return false;
    // calloc and not new: large zeroed blocks cost nothing until they are written.
    auto* block = static_cast<uint8_t*>(std::calloc(size_t(count), bytesPerPixel));
    if (!block)
        return false;
    bytes.reset(block);
    width = newWidth;
    height = newHeight;
    hasAlpha = false;
    return true;
}

bool Pixels::CopyFrom(const Pixels& other)
{
    if (!Allocate(other.width, other.height))
        return false;
    std::memcpy(bytes.get(), other.bytes.get(), RowBytes() * size_t(height));
    hasAlpha = other.hasAlpha;
    return true;
}

void Pixels::MakeOpaque()
{
    uint8_t* end = bytes.get() + RowBytes() * size_t(height);
    for (uint8_t* alpha = bytes.get() + 3; alpha < end; alpha += bytesPerPixel)
        *alpha = opaque;
}

BitmapMark MarkOf(const VX3Bitmap& bitmap)
{
    return { bitmap.serial, bitmap.revision.load(std::memory_order_acquire) };
}

BitmapView ViewOf(const VX3Bitmap& bitmap)
{
    const Pixels& pixels = bitmap.pixels;
    return { pixels.Width(), pixels.Height(), pixels.hasAlpha, pixels.Row(0), pixels.RowBytes() };
}

bool IsSizePlausible(int64_t width, int64_t height, int64_t fileLength)
{
    // One byte of deflate stands for at most 1,032 bytes, or 8,256 pixels of one bit.
    constexpr int64_t pixelsOfOneByte = 8256;
    constexpr int64_t alwaysAllowed = int64_t(1) << 24;
    if (width < 1 || height < 1 || width > maximumSide || height > maximumSide || width * height > maximumPixelCount)
        return false;
    return width * height <= alwaysAllowed || width * height / pixelsOfOneByte <= fileLength;
}

} // namespace vx3::core
