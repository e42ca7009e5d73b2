// The arithmetic of the icon grid: where a cell lies and what lies in it, which entry is
// at a point, which are to be seen. Values only: knows no entry, no lock and no window.
#pragma once

#include "services/geometry.h"

namespace browser {

constexpr int32_t noEntry = -1;

// Indices with both ends included; may reach beyond the list.
struct IndexRange {
    int32_t first = noEntry;
    int32_t last = noEntry;

    // Empty, with last < first, if nothing of it is in a list of `count`.
    IndexRange Within(int32_t count) const;
    bool operator==(const IndexRange&) const = default;
};

struct GridCell {
    int32_t x = 0;
    int32_t y = 0;
    int32_t width = 0;
    int32_t height = 0;
    int32_t row = 0;
    int32_t column = 0;

    // All of its pixels, and those that an entry fills with its background.
    Rectangle Area() const { return { x, y, x + width - 1, y + height - 1 }; }
    Rectangle Background() const { return { x + 1, y + 1, x + width - 2, y + height - 2 }; }
    bool operator==(const GridCell&) const = default;
};

// A scroll position that means the same after a zoom: an entry and the pixels behind it.
struct ScrollPlace {
    int32_t index = 0;
    int32_t column = 0;
    int32_t offset = 0;

    bool operator==(const ScrollPlace&) const = default;
};

// The part of a cell that a point may touch.
enum class CellPart {
    None,
    PictureBox, // here the drawn picture decides, and the caption is out of reach
    Caption
};

// What the zoom alone decides: the inside of a cell.
class IconMetrics
{
public:
    static constexpr int32_t smallestSide = 32;

    explicit IconMetrics(double zoom);

    int32_t BoxSide() const { return side; }
    int32_t PictureSide() const { return side - 2 * border; }
    int32_t CaptionLimit() const; // pixels that a caption may take
    Size EntrySize(bool hasNode, int32_t fontHeight) const;

    // How large a picture is drawn. One that may stay small is never enlarged.
    Size FitPicture(Size bitmap, bool mayStaySmall) const;
    Rectangle PictureBox(Point cell) const;
    Rectangle DrawnPicture(Point cell, Size drawn) const;
    // Which pixel of the bitmap is drawn at a point of the DrawnPicture.
    Point SampleAt(Point cell, Size drawn, Size bitmap, Point point) const;

    // Kept: three heights for one caption. It is drawn as high as the picture box ends,
    // answers clicks in a band of its own, and is edited lower than both.
    Point CaptionOrigin(Point cell, int32_t textWidth) const;
    Rectangle CaptionBand(Point cell, int32_t fontHeight) const;
    Rectangle CaptionEdit(Point cell, int32_t fontHeight) const;

    CellPart PartAt(Point cell, int32_t fontHeight, const Rectangle& touched) const;

private:
    static constexpr int32_t border = 2;
    static constexpr int32_t shortestCaption = 20;

    int32_t side;
};

// The cells of all entries. The number of entries is asked for with each call, since the
// list may have changed after the last measurement.
class GridLayout
{
public:
    int32_t itemWidth = 0;
    int32_t itemHeight = 0;
    int32_t columns = 0;
    int32_t rows = 0;
    int32_t areaWidth = 0;
    int32_t areaHeight = 0;

    // Takes the size of the area and of the largest entry; gives the least size of the area.
    Size Measure(Size area, Size largest, int32_t count);

    // Whether all entries stand where they stand in the other.
    bool HasCellsOf(const GridLayout& other) const
    {
        return itemWidth == other.itemWidth && itemHeight == other.itemHeight && columns == other.columns;
    }

    // False, and the cell as it was, for a negative index and before a measurement.
    bool GetCell(int32_t index, GridCell& cell) const;
    // The entry whose cell holds the point; none in the strip at the right.
    int32_t IndexAt(Point point, int32_t count) const;
    // The entries of the rows between two heights: those to draw, or those to be seen.
    IndexRange RowsBetween(int32_t top, int32_t bottom) const;

    ScrollPlace ScrollToEntry(int32_t y) const;
    int32_t EntryToScroll(const ScrollPlace& place) const;
    // An entry and a margin, for scrolling to it; x2 and y2 lie behind the last pixel.
    Rectangle RevealArea(const GridCell& cell) const;
};

} // namespace browser
