// Points, sizes and places of the hosts' windows, in logical pixels. A place is a corner
// and a size; the boundary's rectangles hold both their corners.
#pragma once

#include <algorithm>
#include <cstdint>

#include "vx3/guitypes.h"

namespace vx3::gui {

struct Point {
    int x = 0;
    int y = 0;

    Point operator+(Point other) const { return { x + other.x, y + other.y }; }
    Point operator-(Point other) const { return { x - other.x, y - other.y }; }
    bool operator==(const Point&) const = default;
};

struct Size {
    int width = 0;
    int height = 0;

    Size Widened(Size other) const { return { std::max(width, other.width), std::max(height, other.height) }; }
    bool operator==(const Size&) const = default;
};

struct Place {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;

    Point Corner() const { return { x, y }; }
    Size Extent() const { return { width, height }; }
    bool IsEmpty() const { return width <= 0 || height <= 0; }
    bool Has(Point point) const { return point.x >= x && point.y >= y && point.x < x + width && point.y < y + height; }
    Place Moved(Point by) const { return { x + by.x, y + by.y, width, height }; }
    Place Cut(const Place& other) const
    {
        const int left = std::max(x, other.x);
        const int top = std::max(y, other.y);
        return { left, top, std::max(0, std::min(x + width, other.x + other.width) - left),
                 std::max(0, std::min(y + height, other.y + other.height) - top) };
    }
    bool operator==(const Place&) const = default;
};

// Modules may give any number. Nothing is farther away than this, so that corners and lengths can
// be added up.
constexpr int farthest = 1 << 29;
constexpr int mostWindowLength = (1 << 15) - 1; // of the inside of a window

inline int Bounded(int64_t coordinate)
{
    return static_cast<int>(std::clamp<int64_t>(coordinate, -farthest, farthest));
}

inline Place PlaceOf(const VX3Rectangle& rectangle)
{
    const Point from = { Bounded(rectangle.x1), Bounded(rectangle.y1) };
    return { from.x, from.y, Bounded(rectangle.x2) - from.x + 1, Bounded(rectangle.y2) - from.y + 1 };
}

inline VX3Rectangle RectangleOf(const Place& place)
{
    return { place.x, place.y, place.x + place.width - 1, place.y + place.height - 1 };
}

} // namespace vx3::gui
