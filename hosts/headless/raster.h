// A picture that windows are drawn into. Places outside of it are left out. Main thread
// only, like all that draws.
#pragma once

#include <string>

#include "gui/canvas.h"
#include "gui/geometry.h"
#include "vx3/bitmap.h"

namespace vx3::headless {

// How much of each pixel a shape covers, 0 to 255; a row takes `stride` bytes.
struct Coverage {
    const uint8_t* bytes = nullptr;
    int width = 0;
    int height = 0;
    int stride = 0;
};

class Raster
{
public:
    explicit Raster(gui::Size size); // black; empty without memory
    ~Raster();
    Raster(const Raster&) = delete;
    Raster& operator=(const Raster&) = delete;

    gui::Place Bounds() const;
    gui::Colour At(gui::Point point) const; // black outside
    void Fill(const gui::Place& place, gui::Colour colour);
    void Frame(const gui::Place& place, gui::Colour colour);
    void Line(gui::Point from, gui::Point to, const gui::Place& clip, gui::Colour colour);
    void Blend(const Coverage& coverage, gui::Point corner, const gui::Place& clip, gui::Colour colour);
    // Scales a part of a bitmap; without `usesAlpha` its alpha is not looked at.
    void Draw(const VX3Bitmap* bitmap, const gui::Place& target, const gui::Place& source, const gui::Place& clip, bool usesAlpha);
    bool Save(const std::string& file) const; // as PNG; the path is native bytes

private:
    VX3Bitmap* bitmap;
};

} // namespace vx3::headless
