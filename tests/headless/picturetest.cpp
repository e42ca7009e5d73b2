// Drawing into pictures and as lines: corners, clips, alpha, glyphs, colours.
#include <gtest/gtest.h>

#include <array>
#include <cmath>

#include "core/services.h"
#include "core/values.h"
#include "headless/displaylist.h"
#include "headless/palette.h"
#include "headless/rastercanvas.h"
#include "testing/testhost.h"

namespace {

using namespace vx3::headless;
using vx3::gui::Colour;
using vx3::gui::Place;
using vx3::gui::Point;

constexpr Colour red = { 255, 0, 0 };
constexpr Colour blue = { 0, 0, 255 };
constexpr Colour black = {};

int CountOf(const Raster& raster, Colour colour)
{
    int count = 0;
    for (int y = 0; y < raster.Bounds().height; ++y)
        for (int x = 0; x < raster.Bounds().width; ++x)
            count += raster.At({ x, y }) == colour;
    return count;
}

// One row of two pixels: opaque red, and blue with half an alpha.
VX3Bitmap* TwoPixels()
{
    const VX3BitmapServices* bitmaps = vx3::core::BitmapServices();
    VX3Bitmap* bitmap = bitmaps->create(2, 1, 24);
    bitmaps->addAlpha(bitmap);
    const std::array<uint8_t, 8> row = { 255, 0, 0, 255, 0, 0, 255, 128 };
    bitmaps->writePixels(bitmap, 0, 0, 2, row.data());
    return bitmap;
}

TEST(Raster, WhatLiesOutsideIsLeftOut)
{
    Raster raster({ 4, 4 });
    raster.Fill({ -10, -10, 12, 12 }, red);
    raster.Line({ 3, -5 }, { 3, 50 }, raster.Bounds(), blue);
    EXPECT_EQ(CountOf(raster, red), 4);
    EXPECT_EQ(CountOf(raster, blue), 4);
    EXPECT_EQ(raster.At({ 4, 0 }), black);
}

TEST(Raster, BothEndsOfALineBelongToIt)
{
    Raster raster({ 5, 5 });
    raster.Line({ 1, 1 }, { 3, 3 }, raster.Bounds(), red);
    raster.Line({ 0, 4 }, { 0, 4 }, raster.Bounds(), blue);
    EXPECT_EQ(raster.At({ 1, 1 }), red);
    EXPECT_EQ(raster.At({ 3, 3 }), red);
    EXPECT_EQ(CountOf(raster, red), 3);
    EXPECT_EQ(CountOf(raster, blue), 1);
}

TEST(Raster, AlphaBlendsOnlyWhereItIsAskedFor)
{
    vx3::testing::TestHost host;
    VX3Bitmap* bitmap = TwoPixels();
    for (bool usesAlpha : { true, false }) {
        Raster raster({ 4, 2 });
        raster.Draw(bitmap, { 0, 0, 2, 1 }, { 0, 0, 2, 1 }, raster.Bounds(), usesAlpha);
        EXPECT_EQ(raster.At({ 0, 0 }), red);
        EXPECT_EQ(raster.At({ 1, 0 }).blue, usesAlpha ? 128 : 255);
    }
    vx3::core::BitmapServices()->free(bitmap);
}

TEST(Raster, APartIsScaledIntoItsPlaceAndCut)
{
    vx3::testing::TestHost host;
    VX3Bitmap* bitmap = TwoPixels();
    Raster raster({ 8, 8 });
    raster.Draw(bitmap, { 2, 2, 4, 4 }, { 0, 0, 1, 1 }, { 0, 0, 4, 8 }, true);
    EXPECT_EQ(CountOf(raster, red), 8);                                         // the left half of 4 x 4
    raster.Draw(bitmap, { 0, 0, 4, 4 }, { 1, 0, 5, 5 }, raster.Bounds(), true); // not a part of it
    EXPECT_EQ(CountOf(raster, red), 8);
    vx3::core::BitmapServices()->free(bitmap);
}

TEST(RasterCanvas, AClipCannotReachBeyondTheLimits)
{
    Raster raster({ 10, 10 });
    FixedFont font("");
    RasterCanvas canvas(raster, font, { 2, 2 }, { 2, 2, 5, 5 });
    canvas.SetPen(red);
    canvas.SetClip({ 1, 1, 100, 1 });
    canvas.Fill({ -100, -100, 1000, 1000 });
    EXPECT_EQ(CountOf(raster, red), 4);
    EXPECT_EQ(raster.At({ 3, 3 }), red);
    canvas.ClearClip();
    canvas.Fill({ -100, -100, 1000, 1000 });
    EXPECT_EQ(CountOf(raster, red), 25);
}

// The cells in which something was drawn, from the left.
std::string Cells(FixedFont& font, std::u16string_view text)
{
    Raster raster({ WidthOfText(text), cellHeight });
    font.Draw(raster, raster.Bounds(), text, {}, red);
    std::string cells;
    for (int left = 0; left < raster.Bounds().width; left += cellWidth) {
        int drawn = 0;
        for (int y = 0; y < cellHeight; ++y)
            for (int x = left; x < left + cellWidth; ++x)
                drawn += raster.At({ x, y }) != black;
        cells += drawn ? 'x' : '.';
    }
    return cells;
}

TEST(FixedFont, EveryUnitHasItsCell)
{
    FixedFont boxes("");
    ASSERT_FALSE(boxes.HasGlyphs());
    FixedFont glyphs;
    for (FixedFont* font : { &boxes, &glyphs }) {
        EXPECT_EQ(Cells(*font, u"a b"), "x.x");
        EXPECT_EQ(Cells(*font, u"u\u0308b"), "x.x"); // the mark stands on its letter
        EXPECT_EQ(Cells(*font,
                        u"\xD83D\xDE00"
                        u"b"),
                  "x.x"); // a pair has two cells and fills the first
    }
    EXPECT_EQ(WidthOfText(u"u\u0308b"), 3 * cellWidth);
}

TEST(FixedFont, NothingIsDrawnOutsideTheClip)
{
    FixedFont font;
    Raster raster({ 60, 20 });
    font.Draw(raster, { 10, 4, 8, 6 }, u"MMMMMMMM", { 0, 0 }, red);
    const Place clip = { 10, 4, 8, 6 };
    int outside = 0;
    int inside = 0;
    for (int y = 0; y < raster.Bounds().height; ++y)
        for (int x = 0; x < raster.Bounds().width; ++x)
            (clip.Has({ x, y }) ? inside : outside) += raster.At({ x, y }) != black;
    EXPECT_GT(inside, 0);
    EXPECT_EQ(outside, 0);
}

TEST(DisplayList, TellsEachCallOnALine)
{
    vx3::testing::TestHost host;
    VX3Bitmap* bitmap = TwoPixels();
    DisplayList list;
    list.SetPen(red);
    list.SetTextColour({ 1, 2, 0xFE });
    list.SetClip({ 1, 2, 3, 4 });
    list.Fill({ 1, 1, 64, 32 });
    list.Line({ 0, 1 }, { 2, 3 });
    list.ClearClip();
    list.DrawBitmap(bitmap, { 5, 6, 8, 4 }, { 0, 0, 2, 1 }, true);
    list.DrawBitmap(bitmap, { 5, 6, 8, 4 }, { 1, 0, 1, 1 }, false);
    list.DrawText(u"a \"b\"\\\n\u00e4", { -1, 7 });
    const std::vector<std::string> expected = { "clip 1 2 3 4",
                                                "fill 1 1 64 32 #ff0000",
                                                "line 0 1 2 3 #ff0000",
                                                "no clip",
                                                "bitmap 2x1 at 5 6 size 8x4",
                                                "bitmap 2x1 at 5 6 size 8x4 from 1 0 1 1 opaque",
                                                "text \"a \\\"b\\\"\\\\\\n\xC3\xA4\" at -1 7 #0102fe" };
    EXPECT_EQ(list.Lines(), expected);
    vx3::core::BitmapServices()->free(bitmap);
}

double Luminance(Colour colour)
{
    const auto linear = [](uint8_t value) {
        const double share = value / 255.0;
        return share <= 0.04045 ? share / 12.92 : std::pow((share + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.red) + 0.7152 * linear(colour.green) + 0.0722 * linear(colour.blue);
}

double Contrast(int32_t text, int32_t background)
{
    const double a = Luminance(PaletteColour(text));
    const double b = Luminance(PaletteColour(background));
    return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

TEST(Palette, EveryTextCanBeRead)
{
    constexpr std::array<std::pair<int32_t, int32_t>, 6> pairs = { { { VX3_COLOUR_TEXT, VX3_COLOUR_BACKGROUND },
                                                                     { VX3_COLOUR_SELECTED_TEXT, VX3_COLOUR_SELECTION },
                                                                     { VX3_COLOUR_SELECTED_TEXT_UNFOCUSED, VX3_COLOUR_SELECTION_UNFOCUSED },
                                                                     { VX3_COLOUR_SPECIAL_TEXT, VX3_COLOUR_BACKGROUND },
                                                                     { VX3_COLOUR_SPECIAL_TEXT, VX3_COLOUR_SELECTION },
                                                                     { VX3_COLOUR_SPECIAL_TEXT, VX3_COLOUR_SELECTION_UNFOCUSED } } };
    for (auto [text, background] : pairs)
        EXPECT_GE(Contrast(text, background), 4.5) << text << " on " << background;
    EXPECT_EQ(PaletteColour(4242), black);
}

} // namespace
