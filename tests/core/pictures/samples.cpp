#include "samples.h"

#include <filesystem>
#include <fstream>
#include <iterator>

namespace vx3::core {

const std::vector<Sample>& Samples()
{
    static const std::vector<Sample> samples = {
        { "straight.png", "PNG", 32, true },
        { "palette.png", "PNG", 4, true },
        { "deep.png", "PNG", 64, true },
        { "grey.png", "PNG", 8, false, Shown::Greys },
        { "interlaced.png", "PNG", 24, false },
        { "straight.tif", "TIFF", 32, true },
        { "multiplied.tif", "TIFF", 32, true, Shown::Colours, false, 2 },
        { "deep.tif", "TIFF", 64, true },
        { "planes.tif", "TIFF", 32, true },
        { "tiles.tif", "TIFF", 32, true },
        { "palette.tif", "TIFF", 8, false },
        { "bilevel.tif", "TIFF", 1, false, Shown::TwoTones },
        { "pages.tif", "TIFF", 8, false, Shown::Greys },
        { "plain.bmp", "BMP", 24, false },
        { "palette.bmp", "BMP", 8, false },
        { "straight.bmp", "BMP", 32, true },
        { "plain.tga", "TGA", 24, false },
        { "grey.tga", "TGA", 8, false, Shown::Greys },
        { "packed.tga", "TGA", 32, true },
        { "unused.tga", "TGA", 32, false },
        { "planes.sgi", "SGI", 32, true },
        { "planes.psd", "PSD", 32, true },
        { "blocks.jpg", "JPEG", 24, false, Shown::Colours, true, 6 },
        { "grey.jpg", "JPEG", 8, false, Shown::Greys, true, 2 },
        { "inks.jpg", "JPEG", 32, false, Shown::Colours, true, 8 },
        { "blocks.jp2", "JPEG 2000", 24, false, Shown::Colours, true, 8 },
    };
    return samples;
}

std::string SamplePath(const std::string& name)
{
    return (std::filesystem::path(SOURCE_FOLDER) / "tests" / "data" / "pictures" / name).string();
}

Bytes ReadSample(const std::string& name)
{
    std::ifstream file(SamplePath(name), std::ios::binary);
    return Bytes(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

Colour ExpectedColour(const Sample& sample, int32_t x, int32_t y, int shift)
{
    constexpr Colour colours[] = { { 255, 0, 0, 255 },    { 0, 255, 0, 128 }, { 0, 0, 255, 255 },
                                   { 255, 255, 255, 64 }, { 0, 0, 0, 255 },   { 200, 100, 50, 255 } };
    constexpr uint8_t greys[] = { 0, 50, 100, 150, 200, 255 };
    int32_t block = sample.inBlocks ? 8 : 1;
    int entry = (x / block + 2 * (y / block) + shift) % 6;
    uint8_t grey = sample.shown == Shown::TwoTones ? (entry & 1) * 255 : greys[entry];
    Colour colour = sample.shown == Shown::Colours ? colours[entry] : Colour{ grey, grey, grey, 255 };
    if (!sample.hasAlpha)
        colour[3] = 255;
    return colour;
}

Bitmap MakeBitmap(int32_t width, int32_t height, bool withAlpha)
{
    Bitmap bitmap(BitmapServices()->create(width, height, 24));
    if (withAlpha)
        BitmapServices()->addAlpha(bitmap.get());
    return bitmap;
}

Colour PixelAt(const Bitmap& bitmap, int32_t x, int32_t y)
{
    Colour colour = {};
    BitmapServices()->readPixels(bitmap.get(), x, y, 1, colour.data());
    return colour;
}

void SetPixel(const Bitmap& bitmap, int32_t x, int32_t y, const Colour& colour)
{
    BitmapServices()->writePixels(bitmap.get(), x, y, 1, colour.data());
}

bool AreEqual(const Bitmap& a, const Bitmap& b)
{
    const VX3BitmapServices& services = *BitmapServices();
    int32_t width = services.width(a.get());
    if (width != services.width(b.get()) || services.height(a.get()) != services.height(b.get())
        || services.hasAlpha(a.get()) != services.hasAlpha(b.get()))
        return false;
    Bytes rowOfA(size_t(width) * 4), rowOfB(rowOfA.size());
    for (int32_t y = 0; y < services.height(a.get()); ++y) {
        services.readPixels(a.get(), 0, y, width, rowOfA.data());
        services.readPixels(b.get(), 0, y, width, rowOfB.data());
        if (rowOfA != rowOfB)
            return false;
    }
    return true;
}

Path PathOf(const Bytes& bytes)
{
    Path path;
    PathServices()->setMemoryReading(path.Get(), bytes.data(), int64_t(bytes.size()));
    return path;
}

int32_t Decode(const Bytes& bytes, const Bitmap& bitmap, int32_t frame)
{
    Path path = PathOf(bytes);
    return BitmapServices()->load(bitmap.get(), path.Get(), frame);
}

} // namespace vx3::core
