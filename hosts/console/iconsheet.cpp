// A contact sheet of all icons, for looking at them side by side.
#include <array>
#include <memory>
#include <vector>

#include "core/values.h"
#include "verbs.h"

namespace vx3::console {

namespace {

constexpr std::array<int32_t, 4> sizes = { 16, 32, 64, 128 };
constexpr int32_t gap = 8;
constexpr int32_t labelWidth = 28;
constexpr int32_t largest = sizes.back();
constexpr int32_t groundWidth = gap + (16 + gap) + (32 + gap) + (64 + gap) + (128 + gap);
constexpr int32_t cellWidth = labelWidth + 2 * groundWidth + gap;
constexpr int32_t cellHeight = largest + 2 * gap;
constexpr int32_t columns = 3;
constexpr int32_t opaque = 255;

struct Colour {
    uint8_t red;
    uint8_t green;
    uint8_t blue;
};

constexpr Colour paper = { 255, 255, 255 };
constexpr Colour ink = { 40, 40, 40 };
constexpr Colour grounds[] = { { 238, 238, 238 }, { 48, 48, 48 } };

// Digits of 3 x 5 dots, a row of three bits after the other, drawn twice as large.
constexpr uint16_t digitDots[10] = { 075557, 026227, 071747, 071717, 055711, 074717, 074757, 071222, 075757, 075717 };
constexpr int32_t dot = 2;
constexpr int32_t digitColumns = 3;
constexpr int32_t digitRows = 5;

class Canvas
{
public:
    Canvas(int32_t newWidth, int32_t newHeight)
        : width(newWidth)
        , height(newHeight)
        , pixels(static_cast<size_t>(newWidth) * static_cast<size_t>(newHeight) * 4, opaque)
    {
    }

    int32_t Width() const { return width; }
    int32_t Height() const { return height; }
    uint8_t* Pixel(int32_t x, int32_t y)
    {
        return &pixels[(static_cast<size_t>(y) * static_cast<size_t>(width) + static_cast<size_t>(x)) * 4];
    }

    void Blend(int32_t x, int32_t y, const uint8_t* rgba)
    {
        uint8_t* target = Pixel(x, y);
        for (int channel = 0; channel < 3; ++channel)
            target[channel] = static_cast<uint8_t>((rgba[channel] * rgba[3] + target[channel] * (opaque - rgba[3]) + opaque / 2) / opaque);
    }

    void Fill(int32_t left, int32_t top, int32_t fillWidth, int32_t fillHeight, const Colour& colour)
    {
        const uint8_t rgba[] = { colour.red, colour.green, colour.blue, opaque };
        for (int32_t y = top; y < top + fillHeight; ++y)
            for (int32_t x = left; x < left + fillWidth; ++x)
                Blend(x, y, rgba);
    }

private:
    int32_t width;
    int32_t height;
    std::vector<uint8_t> pixels;
};

void DrawNumber(Canvas& canvas, int32_t left, int32_t top, int32_t number)
{
    for (char c : std::to_string(number)) {
        uint16_t dots = digitDots[c - '0'];
        for (int32_t index = 0; index < digitColumns * digitRows; ++index)
            if (dots >> (digitColumns * digitRows - 1 - index) & 1)
                canvas.Fill(left + index % digitColumns * dot, top + index / digitColumns * dot, dot, dot, ink);
        left += (digitColumns + 1) * dot;
    }
}

// Draws a bitmap into the middle of a square. An icon of one size only is left out where it is too large.
void DrawBitmap(Canvas& canvas, const VX3BitmapServices& bitmaps, const VX3Bitmap* bitmap, int32_t left, int32_t top, int32_t side)
{
    int32_t width = bitmaps.width(bitmap);
    int32_t height = bitmaps.height(bitmap);
    if (width > side || height > side)
        return;
    std::vector<uint8_t> row(static_cast<size_t>(width) * 4);
    for (int32_t y = 0; y < height; ++y) {
        if (!bitmaps.readPixels(bitmap, 0, y, width, row.data()))
            return;
        for (int32_t x = 0; x < width; ++x)
            canvas.Blend(left + (side - width) / 2 + x, top + (side - height) / 2 + y, &row[static_cast<size_t>(x) * 4]);
    }
}

void DrawIcon(Canvas& canvas, const Session& session, int32_t number, int32_t left, int32_t top)
{
    DrawNumber(canvas, left + gap / 2, top + cellHeight / 2 - digitRows, number);
    left += labelWidth;
    for (const Colour& ground : grounds) {
        canvas.Fill(left, top, groundWidth, cellHeight, ground);
        int32_t x = left + gap;
        for (int32_t size : sizes) {
            if (const VX3Bitmap* bitmap = session.Browser().icons->iconBitmap(number, size))
                DrawBitmap(canvas, *session.Host().bitmap, bitmap, x, top + cellHeight - gap - size, size);
            x += size + gap;
        }
        left += groundWidth;
    }
}

Failure Save(Canvas& canvas, const VX3BitmapServices& bitmaps, const std::string& file)
{
    std::unique_ptr<VX3Bitmap, void (*)(VX3Bitmap*)> bitmap(bitmaps.create(canvas.Width(), canvas.Height(), 24), bitmaps.free);
    if (!bitmap)
        return { Exit::Refused, "there is no memory for the sheet" };
    for (int32_t y = 0; y < canvas.Height(); ++y)
        bitmaps.writePixels(bitmap.get(), 0, y, canvas.Width(), canvas.Pixel(0, y));
    if (bitmaps.save(bitmap.get(), core::Path(file).Get(), VX3_FORMAT_PNG, nullptr, 0) != VX3_IMAGE_OK)
        return { Exit::Refused, Quoted(file) + " cannot be written" };
    return {};
}

} // namespace

Failure SaveIconSheet(const Session& session, const std::string& file)
{
    int32_t count = session.Browser().icons->iconCount();
    int32_t rows = (count + columns - 1) / columns;
    Canvas canvas(columns * cellWidth, rows * cellHeight);
    canvas.Fill(0, 0, canvas.Width(), canvas.Height(), paper);
    for (int32_t number = 0; number < count; ++number)
        DrawIcon(canvas, session, number, number / rows * cellWidth, number % rows * cellHeight);
    return Save(canvas, *session.Host().bitmap, file);
}

} // namespace vx3::console
