// Bitmaps and their scaling.
#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <set>
#include <utility>

#include "core/bitmappixels.h"
#include "core/livecounts.h"
#include "samples.h"

namespace vx3::core {

namespace {

const VX3BitmapServices& bitmaps = *BitmapServices();

void Fill(const Bitmap& bitmap, const Colour& colour)
{
    for (int32_t y = 0; y < bitmaps.height(bitmap.get()); ++y)
        for (int32_t x = 0; x < bitmaps.width(bitmap.get()); ++x)
            SetPixel(bitmap, x, y, colour);
}

bool ScaleWhole(const Bitmap& source, const Bitmap& target)
{
    return bitmaps.scale(source.get(), 0, 0, bitmaps.width(source.get()) - 1, bitmaps.height(source.get()) - 1, target.get(), 0, 0,
                         bitmaps.width(target.get()) - 1, bitmaps.height(target.get()) - 1);
}

} // namespace

TEST(Bitmap, IsMadeWithinItsBoundsAndCounted)
{
    int64_t before = liveCounters.bitmaps.Get();
    {
        Bitmap bitmap = MakeBitmap(3, 2);
        ASSERT_TRUE(bitmap);
        EXPECT_EQ(PixelAt(bitmap, 2, 1), (Colour{ 0, 0, 0, 255 }));
        EXPECT_EQ(bitmaps.depth(bitmap.get()), 24);
        EXPECT_EQ(liveCounters.bitmaps.Get(), before + 1);
        EXPECT_TRUE(MakeBitmap(32768, 1));
    }
    EXPECT_EQ(liveCounters.bitmaps.Get(), before);
    for (auto [width, height] : { std::pair{ 0, 1 }, { 1, -1 }, { 32769, 1 }, { 1, 32769 }, { 32768, 32768 } })
        EXPECT_FALSE(MakeBitmap(width, height)) << width << " x " << height;
    EXPECT_EQ(bitmaps.create(4, 4, 32), nullptr);
    bitmaps.free(nullptr);
}

TEST(Bitmap, PixelsAreReadAndWrittenInsideOnly)
{
    Bitmap bitmap = MakeBitmap(4, 3);
    const uint8_t two[8] = { 1, 2, 3, 4, 5, 6, 7, 8 };
    uint8_t back[8] = {};
    EXPECT_TRUE(bitmaps.writePixels(bitmap.get(), 2, 2, 2, two));
    ASSERT_TRUE(bitmaps.readPixels(bitmap.get(), 2, 2, 2, back));
    EXPECT_EQ(back[4], 5);
    EXPECT_EQ(back[7], 255); // no alpha: what was given is dropped
    for (auto [x, y, count] : { std::tuple{ 3, 0, 2 }, { -1, 0, 1 }, { 0, 3, 1 }, { 0, -1, 1 }, { 0, 0, -1 }, { 2, 0, INT32_MAX } }) {
        EXPECT_FALSE(bitmaps.writePixels(bitmap.get(), x, y, count, two));
        EXPECT_FALSE(bitmaps.readPixels(bitmap.get(), x, y, count, back));
    }
    Bitmap copy(bitmaps.clone(bitmap.get()));
    bitmaps.addAlpha(copy.get());
    SetPixel(copy, 0, 0, { 9, 9, 9, 9 });
    EXPECT_EQ(PixelAt(copy, 0, 0)[3], 9);
    EXPECT_EQ(PixelAt(copy, 1, 0)[3], 255);
    EXPECT_EQ(PixelAt(bitmap, 0, 0)[0], 0);
}

TEST(Bitmap, EveryWriteGivesItAnotherMark)
{
    Bitmap bitmap = MakeBitmap(24, 16);
    Bitmap other = MakeBitmap(24, 16, true);
    const uint8_t pixel[4] = { 1, 2, 3, 4 };
    const Bytes file = ReadSample(Samples().front().name);
    const Bytes noFile = { 'n', 'o' };
    BitmapMark before = MarkOf(*bitmap);
    auto takeChange = [&] { return std::exchange(before, MarkOf(*bitmap)) != before; };
    EXPECT_NE(before.serial, 0u);
    const std::pair<const char*, std::function<bool()>> writes[] = {
        { "pixels", [&] { return bitmaps.writePixels(bitmap.get(), 0, 0, 1, pixel); } },
        { "scaled", [&] { return ScaleWhole(other, bitmap); } },
        { "alpha", [&] { return bitmaps.addAlpha(bitmap.get()); } },
        { "loaded", [&] { return Decode(file, bitmap) == VX3_IMAGE_OK; } },
    };
    for (const auto& [name, write] : writes) {
        EXPECT_TRUE(write()) << name;
        EXPECT_TRUE(takeChange()) << name;
    }
    uint8_t back[4];
    bitmaps.readPixels(bitmap.get(), 0, 0, 1, back);
    EXPECT_TRUE(ScaleWhole(bitmap, other));
    EXPECT_FALSE(bitmaps.writePixels(bitmap.get(), -1, 0, 1, pixel));
    EXPECT_NE(Decode(noFile, bitmap), VX3_IMAGE_OK);
    EXPECT_FALSE(takeChange()) << "read only, or as it was";
    EXPECT_NE(MarkOf(*Bitmap(bitmaps.clone(bitmap.get()))).serial, before.serial);
}

// One after the other, which may get the same memory.
TEST(Bitmap, NoTwoHaveOneSerial)
{
    std::set<uint64_t> serials;
    constexpr size_t count = 1000;
    for (size_t i = 0; i < count; ++i)
        serials.insert(MarkOf(*MakeBitmap(1, 1)).serial);
    EXPECT_EQ(serials.size(), count);
}

TEST(Bitmap, AViewShowsThePixels)
{
    Bitmap bitmap = MakeBitmap(5, 3, true);
    SetPixel(bitmap, 4, 2, { 1, 2, 3, 4 });
    const BitmapView view = ViewOf(*bitmap);
    EXPECT_EQ(view.width, 5);
    EXPECT_EQ(view.height, 3);
    EXPECT_TRUE(view.hasAlpha);
    const uint8_t* pixel = view.bytes + 2 * view.rowBytes + 4 * bytesPerPixel;
    EXPECT_EQ((Colour{ pixel[0], pixel[1], pixel[2], pixel[3] }), (Colour{ 1, 2, 3, 4 }));
    EXPECT_FALSE(ViewOf(*MakeBitmap(1, 1)).hasAlpha);
}

TEST(Bitmap, ACutIsTheRectangleOrNothing)
{
    Bitmap bitmap = MakeBitmap(10, 8, true);
    SetPixel(bitmap, 9, 7, { 1, 2, 3, 4 });
    Bitmap corner(bitmaps.cut(bitmap.get(), 8, 5, 2, 3));
    ASSERT_TRUE(corner);
    EXPECT_EQ(PixelAt(corner, 1, 2), (Colour{ 1, 2, 3, 4 }));
    EXPECT_EQ(PixelAt(corner, 0, 2), (Colour{ 0, 0, 0, 255 }));
    for (auto [x, y, width, height] : { std::tuple{ 9, 0, 2, 1 }, { -1, 0, 2, 2 }, { 0, 0, 0, 1 }, { 1, 1, INT32_MAX, 1 } })
        EXPECT_FALSE(Bitmap(bitmaps.cut(bitmap.get(), x, y, width, height)));
}

TEST(Scale, AConstantColourStaysConstant)
{
    const Colour colours[] = { { 255, 255, 255, 255 }, { 1, 2, 3, 255 }, { 77, 130, 211, 9 } };
    for (const Colour& colour : colours)
        for (auto [width, height] : { std::pair{ 1, 1 }, { 7, 200 }, { 99, 5 }, { 37, 41 }, { 500, 3 } }) {
            Bitmap source = MakeBitmap(37, 53, true);
            Fill(source, colour);
            Bitmap target = MakeBitmap(width, height, true);
            ASSERT_TRUE(ScaleWhole(source, target));
            for (int32_t y = 0; y < height; ++y)
                for (int32_t x = 0; x < width; ++x)
                    ASSERT_EQ(PixelAt(target, x, y), colour) << width << " x " << height << " at " << x << ", " << y;
        }
}

// Fine stripes become their average when they shrink: nothing is left out.
TEST(Scale, ShrinkingAveragesTheArea)
{
    Bitmap source = MakeBitmap(300, 60);
    for (int32_t y = 0; y < 60; ++y)
        for (int32_t x = 0; x < 300; x += 3)
            SetPixel(source, x, y, { 255, 255, 255, 255 });
    Bitmap target = MakeBitmap(50, 10);
    ASSERT_TRUE(ScaleWhole(source, target));
    for (int32_t x = 0; x < 50; ++x)
        ASSERT_EQ(PixelAt(target, x, 5)[1], 85) << x;
}

TEST(Scale, GrowingIsSmoothAndKeepsItsEnds)
{
    Bitmap source = MakeBitmap(2, 1);
    SetPixel(source, 1, 0, { 255, 255, 255, 255 });
    Bitmap target = MakeBitmap(64, 1);
    ASSERT_TRUE(ScaleWhole(source, target));
    EXPECT_EQ(PixelAt(target, 0, 0)[0], 0);
    EXPECT_EQ(PixelAt(target, 63, 0)[0], 255);
    for (int32_t x = 1; x < 64; ++x) {
        int step = PixelAt(target, x, 0)[0] - PixelAt(target, x - 1, 0)[0];
        ASSERT_TRUE(step >= 0 && step <= 9) << x;
    }
}

// The black under transparent pixels must not darken the edge of a white disc.
TEST(Scale, TransparentPixelsLeaveNoDarkFringe)
{
    Bitmap source = MakeBitmap(64, 64, true);
    for (int32_t y = 0; y < 64; ++y)
        for (int32_t x = 0; x < 64; ++x)
            SetPixel(source, x, y, (x - 32) * (x - 32) + (y - 32) * (y - 32) < 700 ? Colour{ 255, 255, 255, 255 } : Colour{ 0, 0, 0, 0 });
    int edges = 0;
    for (int32_t side : { 13, 200 }) {
        Bitmap target = MakeBitmap(side, side, true);
        ASSERT_TRUE(ScaleWhole(source, target));
        for (int32_t y = 0; y < side; ++y)
            for (int32_t x = 0; x < side; ++x) {
                Colour pixel = PixelAt(target, x, y);
                edges += pixel[3] > 0 && pixel[3] < 255;
                if (pixel[3] > 0) {
                    ASSERT_GE(pixel[0], 254) << side << " at " << x << ", " << y;
                }
            }
    }
    EXPECT_GT(edges, 100);
}

TEST(Scale, CornersBelongToTheirRectangles)
{
    Bitmap source = MakeBitmap(4, 4);
    Fill(source, { 200, 0, 0, 255 });
    SetPixel(source, 3, 3, { 0, 200, 0, 255 });
    Bitmap target = MakeBitmap(6, 6);
    // One pixel into a rectangle of 2 x 3, and nothing beside it.
    ASSERT_TRUE(bitmaps.scale(source.get(), 3, 3, 3, 3, target.get(), 1, 2, 2, 4));
    for (int32_t y = 0; y < 6; ++y)
        for (int32_t x = 0; x < 6; ++x) {
            bool inside = x >= 1 && x <= 2 && y >= 2 && y <= 4;
            EXPECT_EQ(PixelAt(target, x, y), (inside ? Colour{ 0, 200, 0, 255 } : Colour{ 0, 0, 0, 255 })) << x << ", " << y;
        }
}

// What lies outside the target is left out, and what is inside is as in a larger target.
TEST(Scale, TheTargetClips)
{
    Bitmap source = MakeBitmap(16, 16);
    for (int32_t y = 0; y < 16; ++y)
        for (int32_t x = 0; x < 16; ++x)
            SetPixel(source, x, y, { uint8_t(x * 16), uint8_t(y * 16), 0, 255 });
    for (int32_t side : { 9, 16, 50 }) {
        Bitmap whole = MakeBitmap(side, side);
        Bitmap part = MakeBitmap(4, 4);
        ASSERT_TRUE(ScaleWhole(source, whole));
        ASSERT_TRUE(bitmaps.scale(source.get(), 0, 0, 15, 15, part.get(), -2, -3, side - 3, side - 4));
        for (int32_t y = 0; y < 4; ++y)
            for (int32_t x = 0; x < 4; ++x)
                EXPECT_EQ(PixelAt(part, x, y), PixelAt(whole, x + 2, y + 3)) << side;
    }
    Bitmap small = MakeBitmap(2, 2);
    EXPECT_TRUE(bitmaps.scale(source.get(), 0, 0, 15, 15, small.get(), 5, 5, 9, 9));
    EXPECT_TRUE(bitmaps.scale(source.get(), 0, 0, 15, 15, small.get(), -1000000000, -1000000000, 1000000000, 1000000000));
}

TEST(Scale, RefusesWhatIsNoRectangleAndItself)
{
    Bitmap source = MakeBitmap(4, 4);
    Bitmap target = MakeBitmap(4, 4);
    EXPECT_FALSE(bitmaps.scale(source.get(), 0, 0, 4, 3, target.get(), 0, 0, 3, 3));
    EXPECT_FALSE(bitmaps.scale(source.get(), -1, 0, 3, 3, target.get(), 0, 0, 3, 3));
    EXPECT_FALSE(bitmaps.scale(source.get(), 2, 0, 1, 3, target.get(), 0, 0, 3, 3));
    EXPECT_FALSE(bitmaps.scale(source.get(), 0, 0, 3, 3, target.get(), 3, 0, 2, 3));
    EXPECT_FALSE(bitmaps.scale(source.get(), 0, 0, 3, 3, source.get(), 0, 0, 1, 1));
}

TEST(Scale, AlphaGoesWhereBothHaveIt)
{
    Bitmap source = MakeBitmap(4, 4, true);
    Fill(source, { 10, 20, 30, 40 });
    Bitmap withAlpha = MakeBitmap(2, 2, true), without = MakeBitmap(2, 2), sameSize = MakeBitmap(4, 4);
    ASSERT_TRUE(ScaleWhole(source, withAlpha) && ScaleWhole(source, without) && ScaleWhole(source, sameSize));
    EXPECT_EQ(PixelAt(withAlpha, 1, 1), (Colour{ 10, 20, 30, 40 }));
    EXPECT_EQ(PixelAt(without, 1, 1), (Colour{ 10, 20, 30, 255 }));
    EXPECT_EQ(PixelAt(sameSize, 1, 1), (Colour{ 10, 20, 30, 255 }));
}

} // namespace vx3::core
