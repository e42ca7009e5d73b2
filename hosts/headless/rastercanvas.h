// A part of a picture as the canvas of one drawing: `origin` is where its point 0, 0 lies,
// and nothing outside of `limits` is touched.
#pragma once

#include "headless/fixedfont.h"
#include "headless/raster.h"

namespace vx3::headless {

class RasterCanvas : public gui::Canvas
{
public:
    RasterCanvas(Raster& ownRaster, FixedFont& ownFont, gui::Point ownOrigin, const gui::Place& ownLimits)
        : raster(ownRaster)
        , font(ownFont)
        , origin(ownOrigin)
        , limits(ownLimits)
        , clip(ownLimits)
    {
    }

    void SetClip(const gui::Place& wanted) override { clip = wanted.Moved(origin).Cut(limits); }
    void ClearClip() override { clip = limits; }
    void SetPen(gui::Colour colour) override { pen = colour; }
    void SetTextColour(gui::Colour colour) override { textColour = colour; }
    void Fill(const gui::Place& place) override { raster.Fill(place.Moved(origin).Cut(clip), pen); }
    void Line(gui::Point from, gui::Point to) override { raster.Line(from + origin, to + origin, clip, pen); }
    void DrawBitmap(const VX3Bitmap* bitmap, const gui::Place& target, const gui::Place& source, bool usesAlpha) override
    {
        raster.Draw(bitmap, target.Moved(origin), source, clip, usesAlpha);
    }
    void DrawText(std::u16string_view text, gui::Point corner) override { font.Draw(raster, clip, text, corner + origin, textColour); }

private:
    Raster& raster;
    FixedFont& font;
    gui::Point origin;
    gui::Place limits;
    gui::Place clip;
    gui::Colour pen;
    gui::Colour textColour;
};

} // namespace vx3::headless
