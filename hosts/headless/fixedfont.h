// The one font of a host without a screen: every UTF-16 unit is a cell of 7 x 13 pixels.
//
// So a text is as wide as it is long, in every run and on every machine. A combining mark
// and the second half of a surrogate pair have a cell like any other unit; it stays
// empty, since the mark is drawn over the cell before it and the pair over its first.
// Text is drawn from left to right in the order of its units.
//
// The glyphs are those of DejaVu Sans Mono, if the machine has it, and boxes otherwise.
// They are read when the first text is drawn. Main thread only.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "gui/geometry.h"
#include "headless/raster.h"

namespace vx3::headless {

constexpr int cellWidth = 7;
constexpr int cellHeight = 13;

inline int WidthOfText(std::u16string_view text)
{
    return static_cast<int>(text.size()) * cellWidth;
}

class FixedFont
{
public:
    FixedFont(); // of the file that FindFontFile gives
    explicit FixedFont(const std::string& file);
    ~FixedFont();
    FixedFont(const FixedFont&) = delete;
    FixedFont& operator=(const FixedFont&) = delete;

    bool HasGlyphs() const;
    void Draw(Raster& raster, const gui::Place& clip, std::u16string_view text, gui::Point corner, gui::Colour colour);

private:
    struct Face;
    std::unique_ptr<Face> face; // none: boxes
};

// Where the font lies on this machine; empty if it is not there.
std::string FindFontFile();

} // namespace vx3::headless
