// Where something is drawn: what a toolkit offers to one drawing of an area, in the
// coordinates of that area.
#pragma once

#include <string_view>

#include "gui/geometry.h"

namespace vx3::gui {

struct Colour {
    uint8_t red = 0;
    uint8_t green = 0;
    uint8_t blue = 0;

    bool operator==(const Colour&) const = default;
};

class Canvas
{
public:
    virtual ~Canvas() = default;

    virtual void SetClip(const Place& clip) = 0;
    virtual void ClearClip() = 0;
    virtual void SetPen(Colour pen) = 0;
    virtual void SetTextColour(Colour text) = 0;
    virtual void Fill(const Place& place) = 0;
    virtual void Line(Point from, Point to) = 0; // both ends included
    virtual void DrawBitmap(const VX3Bitmap* bitmap, const Place& target, const Place& source, bool usesAlpha) = 0;
    virtual void DrawText(std::u16string_view text, Point corner) = 0;
    virtual int Dots() const { return 100; } // of the screen, for 100 pixels
};

} // namespace vx3::gui
