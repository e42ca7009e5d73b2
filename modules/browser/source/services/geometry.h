// Places and sizes on a screen or in a user area, in pixels. Values only.
#pragma once

#include <algorithm>
#include <cstdint>

namespace browser {

struct Size {
    int32_t width = 0;
    int32_t height = 0;

    // Each side for itself.
    void Widen(Size other)
    {
        width = std::max(width, other.width);
        height = std::max(height, other.height);
    }
    bool operator==(const Size&) const = default;
};

struct Point {
    int32_t x = 0;
    int32_t y = 0;

    bool operator==(const Point&) const = default;
};

// Both corners belong to it, so one with x2 < x1 or y2 < y1 holds no pixel.
struct Rectangle {
    int32_t x1 = 0;
    int32_t y1 = 0;
    int32_t x2 = 0;
    int32_t y2 = 0;

    static Rectangle Of(Point point) { return { point.x, point.y, point.x, point.y }; }
    bool IsEmpty() const { return x2 < x1 || y2 < y1; }
    bool Meets(const Rectangle& other) const
    {
        return !IsEmpty() && !other.IsEmpty() && x1 <= other.x2 && other.x1 <= x2 && y1 <= other.y2 && other.y1 <= y2;
    }
    bool operator==(const Rectangle&) const = default;
};

} // namespace browser
