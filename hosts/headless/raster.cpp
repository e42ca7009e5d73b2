#include "headless/raster.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "core/bitmappixels.h"
#include "core/services.h"
#include "core/values.h"

namespace vx3::headless {

namespace {

constexpr int32_t colourDepth = 24;

uint8_t Mixed(int below, int above, int share)
{
    return static_cast<uint8_t>((below * (255 - share) + above * share + 127) / 255);
}

void MixPixel(uint8_t* pixel, gui::Colour colour, int share)
{
    pixel[0] = Mixed(pixel[0], colour.red, share);
    pixel[1] = Mixed(pixel[1], colour.green, share);
    pixel[2] = Mixed(pixel[2], colour.blue, share);
}

uint8_t* PixelAt(VX3Bitmap* bitmap, int x, int y)
{
    return bitmap->pixels.Row(y) + static_cast<size_t>(x) * core::bytesPerPixel;
}

// A part of a picture in another size; none if it does not lie in it. Without an alpha channel
// of its own the colours under transparent pixels count like any other.
VX3Bitmap* Scaled(const VX3Bitmap* source, const gui::Place& part, gui::Size size, bool usesAlpha)
{
    const VX3BitmapServices* bitmaps = core::BitmapServices();
    VX3Bitmap* scaled = bitmaps->create(size.width, size.height, colourDepth);
    if (scaled && usesAlpha && bitmaps->hasAlpha(source))
        bitmaps->addAlpha(scaled);
    const bool isDone = scaled
        && bitmaps->scale(source, part.x, part.y, part.x + part.width - 1, part.y + part.height - 1, scaled, 0, 0, size.width - 1,
                          size.height - 1);
    if (isDone)
        return scaled;
    bitmaps->free(scaled);
    return nullptr;
}

} // namespace

Raster::Raster(gui::Size size)
    : bitmap(core::BitmapServices()->create(size.width, size.height, colourDepth))
{
}

Raster::~Raster()
{
    core::BitmapServices()->free(bitmap);
}

gui::Place Raster::Bounds() const
{
    const VX3BitmapServices* bitmaps = core::BitmapServices();
    return { 0, 0, bitmaps->width(bitmap), bitmaps->height(bitmap) };
}

gui::Colour Raster::At(gui::Point point) const
{
    if (!Bounds().Has(point))
        return {};
    const uint8_t* pixel = PixelAt(bitmap, point.x, point.y);
    return { pixel[0], pixel[1], pixel[2] };
}

void Raster::Fill(const gui::Place& place, gui::Colour colour)
{
    const gui::Place seen = place.Cut(Bounds());
    for (int y = seen.y; y < seen.y + seen.height; ++y)
        for (int x = seen.x; x < seen.x + seen.width; ++x)
            MixPixel(PixelAt(bitmap, x, y), colour, core::opaque);
}

void Raster::Frame(const gui::Place& place, gui::Colour colour)
{
    Fill({ place.x, place.y, place.width, 1 }, colour);
    Fill({ place.x, place.y + place.height - 1, place.width, 1 }, colour);
    Fill({ place.x, place.y, 1, place.height }, colour);
    Fill({ place.x + place.width - 1, place.y, 1, place.height }, colour);
}

void Raster::Line(gui::Point from, gui::Point to, const gui::Place& clip, gui::Colour colour)
{
    const gui::Place seen = clip.Cut(Bounds());
    const gui::Point way = to - from;
    const int steps = std::max(std::abs(way.x), std::abs(way.y));
    for (int step = 0; step <= steps; ++step) {
        const double share = steps ? static_cast<double>(step) / steps : 0;
        const gui::Point at = { from.x + static_cast<int>(std::lround(way.x * share)),
                                from.y + static_cast<int>(std::lround(way.y * share)) };
        if (seen.Has(at))
            MixPixel(PixelAt(bitmap, at.x, at.y), colour, core::opaque);
    }
}

void Raster::Blend(const Coverage& coverage, gui::Point corner, const gui::Place& clip, gui::Colour colour)
{
    const gui::Place seen = gui::Place{ corner.x, corner.y, coverage.width, coverage.height }.Cut(clip).Cut(Bounds());
    for (int y = seen.y; y < seen.y + seen.height; ++y) {
        const uint8_t* row = coverage.bytes + static_cast<ptrdiff_t>(y - corner.y) * coverage.stride - corner.x;
        for (int x = seen.x; x < seen.x + seen.width; ++x)
            MixPixel(PixelAt(bitmap, x, y), colour, row[x]);
    }
}

void Raster::Draw(const VX3Bitmap* picture, const gui::Place& target, const gui::Place& source, const gui::Place& clip, bool usesAlpha)
{
    const gui::Place seen = target.Cut(clip).Cut(Bounds());
    VX3Bitmap* scaled = seen.IsEmpty() || source.IsEmpty() ? nullptr : Scaled(picture, source, target.Extent(), usesAlpha);
    if (!scaled)
        return;
    for (int y = seen.y; y < seen.y + seen.height; ++y) {
        for (int x = seen.x; x < seen.x + seen.width; ++x) {
            const uint8_t* pixel = PixelAt(scaled, x - target.x, y - target.y);
            MixPixel(PixelAt(bitmap, x, y), { pixel[0], pixel[1], pixel[2] }, pixel[3]);
        }
    }
    core::BitmapServices()->free(scaled);
}

bool Raster::Save(const std::string& file) const
{
    return core::BitmapServices()->save(bitmap, core::Path(file).Get(), VX3_FORMAT_PNG, nullptr, 0) == VX3_IMAGE_OK;
}

} // namespace vx3::headless
