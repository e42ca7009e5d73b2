// The arithmetic of the icon grid, without a window.

#include "ui/gridlayout.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace browser;

namespace {

constexpr int32_t fontHeight = 13;

GridLayout LayoutOf(double zoom, Size area, int32_t count)
{
    GridLayout layout;
    layout.Measure(area, count ? IconMetrics(zoom).EntrySize(true, fontHeight) : Size(), count);
    return layout;
}

TEST(IconMetrics, ZoomGivesTheSideOfTheBox)
{
    const std::pair<double, int32_t> cases[] = { { 0.25, 64 }, { 0.2539, 64 }, { 0.254, 65 }, { 0.999, 255 }, { 1, 256 },
                                                 { 0.05, 32 }, { 0, 32 },      { -1, 32 },    { NAN, 32 },    { 1e300, 256 } };
    for (auto [zoom, side] : cases)
        EXPECT_EQ(IconMetrics(zoom).BoxSide(), side) << zoom;
}

TEST(GridLayout, MeasuringGivesCellsAndTheLeastSize)
{
    const struct {
        Size area;
        Size largest;
        int32_t count;
        int32_t columns, rows;
        Size least;
    } cases[] = {
        { { 198, 9 }, { 64, 77 }, 7, 3, 3, { 66, 237 } }, { { 197, 9 }, { 64, 77 }, 7, 2, 4, { 66, 316 } },
        { { 198, 9 }, { 64, 77 }, 6, 3, 2, { 66, 158 } }, { { 10, 9 }, { 64, 77 }, 3, 1, 3, { 66, 237 } }, // narrower than a cell
        { { 198, 9 }, { 0, 0 }, 0, 99, 0, { 2, 0 } },                                                      // an empty folder
    };
    for (const auto& one : cases) {
        GridLayout layout;
        EXPECT_EQ(layout.Measure(one.area, one.largest, one.count), one.least);
        EXPECT_EQ(std::pair(layout.columns, layout.rows), std::pair(one.columns, one.rows)) << one.area.width;
    }
    Size largest = { 64, 64 };
    largest.Widen({ 32, 77 });
    EXPECT_EQ(largest, (Size{ 64, 77 }));
}

TEST(GridLayout, AreaWithoutWidthKeepsTheCells)
{
    GridLayout layout = LayoutOf(0.25, { 200, 100 }, 7);
    EXPECT_EQ(layout.Measure({ 0, 50 }, { 10, 10 }, 1), (Size{ 1, 1 }));
    EXPECT_EQ(layout.itemWidth, 66);
    EXPECT_EQ(layout.columns, 3);
    EXPECT_EQ(layout.areaHeight, 50);
}

// 3 columns of 66 and a strip of 2 pixels, 3 rows of 79, 7 entries.
TEST(GridLayout, EachPixelBelongsToTheEntryWhoseCellHoldsIt)
{
    constexpr int32_t count = 7;
    const GridLayout layout = LayoutOf(0.25, { 200, 237 }, count);
    int32_t hits = 0;
    for (int32_t y = -80; y < 240; y++)
        for (int32_t x = -70; x < 202; x++) {
            GridCell cell;
            const int32_t index = layout.IndexAt({ x, y }, count);
            if (index == noEntry)
                continue;
            hits++;
            ASSERT_TRUE(layout.GetCell(index, cell));
            ASSERT_TRUE(cell.Area().Meets(Rectangle::Of({ x, y }))) << x << ' ' << y;
        }
    EXPECT_EQ(hits, count * 66 * 79);
    EXPECT_EQ(layout.IndexAt({ 198, 0 }, count), noEntry) << "the strip would else be entry 3";
    EXPECT_EQ(layout.IndexAt({ 0, 158 }, 6), noEntry) << "an entry that has gone";
    EXPECT_EQ(GridLayout().IndexAt({ 0, 0 }, count), noEntry);
}

TEST(GridLayout, CellIsLeftAsItWasWithoutAnEntry)
{
    const GridCell before = { 1, 2, 3, 4, 5, 6 };
    GridCell cell = before;
    EXPECT_FALSE(LayoutOf(0.25, { 200, 100 }, 7).GetCell(noEntry, cell));
    EXPECT_FALSE(GridLayout().GetCell(0, cell));
    EXPECT_EQ(cell, before);
    EXPECT_TRUE(LayoutOf(0.25, { 200, 100 }, 7).GetCell(5, cell));
    EXPECT_EQ(cell, (GridCell{ 132, 79, 66, 79, 1, 2 }));
    EXPECT_EQ(cell.Background(), (Rectangle{ 133, 80, 196, 156 }));
}

TEST(GridLayout, RowsBetweenTwoHeights)
{
    const GridLayout layout = LayoutOf(0.25, { 200, 237 }, 7);
    const struct {
        int32_t top, bottom;
        IndexRange rows, inList;
    } cases[] = {
        { 0, 0, { 0, 2 }, { 0, 2 } },
        { 78, 79, { 0, 5 }, { 0, 5 } },
        { 79, 236, { 3, 8 }, { 3, 6 } },
        { -300, 10, { -9, 2 }, { 0, 2 } },
    };
    for (const auto& one : cases) {
        EXPECT_EQ(layout.RowsBetween(one.top, one.bottom), one.rows) << one.top;
        EXPECT_EQ(one.rows.Within(7), one.inList) << one.top;
    }
    EXPECT_EQ(GridLayout().RowsBetween(0, 500), IndexRange());
    const IndexRange beyond = layout.RowsBetween(400, 500).Within(7);
    EXPECT_LT(beyond.last, beyond.first);
}

TEST(GridLayout, PositionSurvivesZoomAndWidth)
{
    const GridLayout small = LayoutOf(0.25, { 198, 500 }, 100); // 3 columns of 79
    const ScrollPlace place = small.ScrollToEntry(2 * 79 + 70);
    EXPECT_EQ(place, (ScrollPlace{ 6, 0, 70 }));
    EXPECT_EQ(small.EntryToScroll(place), 2 * 79 + 70);
    const struct {
        double zoom;
        int32_t width, y;
    } cases[] = {
        { 0.5, 390, 2 * 143 + 70 }, // larger cells, as many columns
        { 0.125, 102, 2 * 47 },     // the rest is more than a cell
        { 0.25, 132, 3 * 79 + 70 }, // 2 columns
        { 0.25, 264, 118 + 70 },    // 4: not the top of a row, but 79 * 6 / 4
    };
    for (const auto& one : cases)
        EXPECT_EQ(LayoutOf(one.zoom, { one.width, 500 }, 100).EntryToScroll(place), one.y) << one.zoom << ' ' << one.width;
    EXPECT_EQ(small.EntryToScroll({ 6, 0, -1 }), 2 * 79);
    EXPECT_EQ(GridLayout().EntryToScroll(place), 0);
    EXPECT_EQ(GridLayout().ScrollToEntry(70), ScrollPlace());
    EXPECT_EQ(LayoutOf(0, { 1, 1 }, 1).EntryToScroll({ 40'000'000, 0, 0 }), 1'880'000'000);
    EXPECT_EQ(LayoutOf(1, { 2580, 1 }, 1).EntryToScroll({ 50'000'000, 0, 0 }), 1'355'000'000) << "the product is beyond 32 bits";
}

TEST(GridLayout, RevealAreaStaysInTheGrid)
{
    const GridLayout layout = LayoutOf(0.25, { 200, 237 }, 7);
    const std::pair<int32_t, Rectangle> cases[] = {
        { 0, { 0, 0, 76, 89 } }, { 4, { 56, 69, 142, 168 } }, { 5, { 122, 69, 198, 168 } }, { 6, { 0, 148, 76, 237 } }
    };
    for (const auto& [index, area] : cases) {
        GridCell cell;
        ASSERT_TRUE(layout.GetCell(index, cell));
        EXPECT_EQ(layout.RevealArea(cell), area) << index;
    }
}

TEST(IconMetrics, PictureFitsAndSmallIconsStaySmall)
{
    const struct {
        Size bitmap;
        bool mayStaySmall;
        Size drawn;
    } cases[] = {
        { { 120, 60 }, false, { 60, 30 } }, { { 60, 120 }, false, { 30, 60 } }, { { 61, 61 }, true, { 60, 60 } },
        { { 32, 16 }, true, { 32, 16 } },   { { 32, 16 }, false, { 60, 30 } },  { { 32, 60 }, true, { 32, 60 } },
        { { 60, 32 }, true, { 60, 32 } },   { { 7, 3 }, false, { 60, 25 } },    { { 1000, 1 }, false, { 60, 0 } },
        { { 0, 0 }, false, { 0, 0 } },      { { 0, 5 }, true, { 0, 0 } },
    };
    for (const auto& one : cases)
        EXPECT_EQ(IconMetrics(0.25).FitPicture(one.bitmap, one.mayStaySmall), one.drawn) << one.bitmap.width;
}

TEST(IconMetrics, SamplesRunFromTheFirstToTheLastPixel)
{
    const IconMetrics metrics(0.25);
    const Point cell = { 66, 79 };
    for (Size bitmap : { Size{ 600, 300 }, Size{ 37, 41 }, Size{ 5, 9 } })
        for (bool mayStaySmall : { true, false }) {
            const Size drawn = metrics.FitPicture(bitmap, mayStaySmall);
            const Rectangle place = metrics.DrawnPicture(cell, drawn);
            EXPECT_TRUE(metrics.PictureBox(cell).Meets(place));
            EXPECT_EQ(metrics.SampleAt(cell, drawn, bitmap, { place.x1, place.y1 }), Point());
            const Point end = metrics.SampleAt(cell, drawn, bitmap, { place.x2, place.y2 });
            EXPECT_EQ(end, (Point{ bitmap.width * (drawn.width - 1) / drawn.width, bitmap.height * (drawn.height - 1) / drawn.height }));
        }
    EXPECT_TRUE(metrics.DrawnPicture(cell, {}).IsEmpty());
    EXPECT_EQ(metrics.SampleAt(cell, {}, {}, cell), Point());
}

// Box 3..62, band 60..73: where both are, the box wins, and the caption cannot be hit.
TEST(IconMetrics, PartOfACellThatIsTouched)
{
    const std::pair<Point, CellPart> cases[] = {
        { { 3, 3 }, CellPart::PictureBox }, { { 2, 3 }, CellPart::None },         { { 62, 62 }, CellPart::PictureBox },
        { { 63, 62 }, CellPart::None },     { { 30, 61 }, CellPart::PictureBox }, { { 30, 63 }, CellPart::Caption },
        { { 2, 60 }, CellPart::Caption },   { { 1, 60 }, CellPart::Caption },     { { 0, 60 }, CellPart::None },
        { { 2, 59 }, CellPart::None },      { { 60, 73 }, CellPart::Caption },    { { 61, 73 }, CellPart::None },
        { { 60, 74 }, CellPart::None },
    };
    for (auto [point, part] : cases)
        EXPECT_EQ(IconMetrics(0.25).PartAt({ 66, 79 }, fontHeight, Rectangle::Of({ 66 + point.x, 79 + point.y })), part)
            << point.x << ' ' << point.y;
}

TEST(IconMetrics, CaptionHasThreeHeights)
{
    const IconMetrics metrics(0.25);
    const Point cell = { 66, 79 };
    EXPECT_EQ(metrics.CaptionOrigin(cell, 60), (Point{ 68, 142 }));
    EXPECT_EQ(metrics.CaptionOrigin(cell, 21), (Point{ 87, 142 }));
    EXPECT_EQ(metrics.CaptionOrigin(cell, 65), (Point{ 66, 142 })) << "towards zero";
    EXPECT_EQ(metrics.CaptionBand(cell, fontHeight), (Rectangle{ 67, 139, 126, 152 }));
    EXPECT_EQ(metrics.CaptionEdit(cell, fontHeight), (Rectangle{ 67, 144, 131, 157 }));
    EXPECT_EQ(IconMetrics(0).CaptionLimit(), 28);
}

} // namespace
