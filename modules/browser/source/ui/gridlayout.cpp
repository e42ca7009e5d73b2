#include "ui/gridlayout.h"

#include <algorithm>

namespace browser {

namespace {

constexpr int32_t sideAtFullZoom = 256;
constexpr int32_t cellInset = 1;  // of the background in its cell
constexpr int32_t cellMargin = 2; // that a cell is larger than its entry
constexpr int32_t pictureInset = 3;
constexpr int32_t revealMargin = 10;
constexpr Size unmeasured = { 1, 1 };

int32_t SideOf(double zoom)
{
    if (!(zoom > 0)) // also what is no number
        return IconMetrics::smallestSide;
    return std::max(static_cast<int32_t>(std::min(zoom, 1.0) * sideAtFullZoom), IconMetrics::smallestSide);
}

} // namespace

IndexRange IndexRange::Within(int32_t count) const
{
    return { std::max(first, 0), std::min(last, count - 1) };
}

IconMetrics::IconMetrics(double zoom)
    : side(SideOf(zoom))
{
}

int32_t IconMetrics::CaptionLimit() const
{
    return std::max(PictureSide(), shortestCaption);
}

Size IconMetrics::EntrySize(bool hasNode, int32_t fontHeight) const
{
    return { side, hasNode ? side + fontHeight : side };
}

Size IconMetrics::FitPicture(Size bitmap, bool mayStaySmall) const
{
    const int32_t room = PictureSide();
    if (bitmap.width <= 0 || bitmap.height <= 0)
        return {};
    if (mayStaySmall && bitmap.width < room && bitmap.height < room)
        return bitmap;
    if (bitmap.height < bitmap.width)
        return { room, static_cast<int32_t>(int64_t(room) * bitmap.height / bitmap.width) };
    return { static_cast<int32_t>(int64_t(room) * bitmap.width / bitmap.height), room };
}

Rectangle IconMetrics::PictureBox(Point cell) const
{
    return DrawnPicture(cell, { PictureSide(), PictureSide() });
}

Rectangle IconMetrics::DrawnPicture(Point cell, Size drawn) const
{
    const int32_t x = cell.x + pictureInset + (PictureSide() - drawn.width) / 2;
    const int32_t y = cell.y + pictureInset + (PictureSide() - drawn.height) / 2;
    return { x, y, x + drawn.width - 1, y + drawn.height - 1 };
}

Point IconMetrics::SampleAt(Point cell, Size drawn, Size bitmap, Point point) const
{
    const Rectangle place = DrawnPicture(cell, drawn);
    if (place.IsEmpty())
        return {};
    return { static_cast<int32_t>(int64_t(bitmap.width) * (point.x - place.x1) / drawn.width),
             static_cast<int32_t>(int64_t(bitmap.height) * (point.y - place.y1) / drawn.height) };
}

Point IconMetrics::CaptionOrigin(Point cell, int32_t textWidth) const
{
    return { cell.x + cellInset + (CaptionLimit() - textWidth + cellMargin) / 2, cell.y + side - 1 };
}

Rectangle IconMetrics::CaptionBand(Point cell, int32_t fontHeight) const
{
    const int32_t y = cell.y + cellInset + std::max(PictureSide(), shortestCaption);
    return { cell.x + cellInset, y - 1, cell.x + side - 2 * border, y + fontHeight - 1 };
}

Rectangle IconMetrics::CaptionEdit(Point cell, int32_t fontHeight) const
{
    const int32_t y = cell.y + cellInset + std::max(side, shortestCaption);
    return { cell.x + cellInset, y, cell.x + side + 1, y + fontHeight };
}

// Kept: the band reaches into the picture box, and there it cannot be hit.
CellPart IconMetrics::PartAt(Point cell, int32_t fontHeight, const Rectangle& touched) const
{
    if (PictureBox(cell).Meets(touched))
        return CellPart::PictureBox;
    return CaptionBand(cell, fontHeight).Meets(touched) ? CellPart::Caption : CellPart::None;
}

Size GridLayout::Measure(Size area, Size largest, int32_t count)
{
    areaWidth = area.width;
    areaHeight = area.height;
    if (areaWidth == 0)
        return unmeasured;
    itemWidth = largest.width + cellMargin;
    itemHeight = largest.height + cellMargin;
    columns = std::max(areaWidth / itemWidth, 1);
    rows = (count + columns - 1) / columns;
    return { itemWidth, itemHeight * rows };
}

bool GridLayout::GetCell(int32_t index, GridCell& cell) const
{
    if (index < 0 || columns <= 0)
        return false;
    const int32_t row = index / columns, column = index - columns * row;
    cell = { column * itemWidth, row * itemHeight, itemWidth, itemHeight, row, column };
    return true;
}

int32_t GridLayout::IndexAt(Point point, int32_t count) const
{
    if (itemWidth <= 0 || itemHeight <= 0 || point.x < 0 || point.y < 0 || point.x / itemWidth >= columns)
        return noEntry;
    const int64_t index = point.x / itemWidth + int64_t(point.y / itemHeight) * columns;
    return index < count ? static_cast<int32_t>(index) : noEntry;
}

IndexRange GridLayout::RowsBetween(int32_t top, int32_t bottom) const
{
    if (itemHeight <= 0)
        return {};
    return { top / itemHeight * columns, columns * (bottom / itemHeight + 1) - 1 };
}

ScrollPlace GridLayout::ScrollToEntry(int32_t y) const
{
    if (itemHeight <= 0)
        return {};
    const int32_t row = y / itemHeight;
    return { columns * row, 0, y - itemHeight * row };
}

// Kept: not rounded to a row, so that an entry in the middle of one is met between two.
int32_t GridLayout::EntryToScroll(const ScrollPlace& place) const
{
    if (columns <= 0)
        return 0;
    const auto y = static_cast<int32_t>(int64_t(itemHeight) * place.index / columns);
    return place.offset >= 0 && place.offset < itemHeight ? y + place.offset : y;
}

Rectangle GridLayout::RevealArea(const GridCell& cell) const
{
    return { std::max(cell.x - revealMargin, 0), std::max(cell.y - revealMargin, 0),
             std::min(cell.x + cell.width + revealMargin, columns * itemWidth),
             std::min(cell.y + cell.height + revealMargin, itemHeight * rows) };
}

} // namespace browser
