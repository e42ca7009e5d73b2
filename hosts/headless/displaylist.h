// A drawing as lines of text, in the order of its calls:
//
//     fill X Y W H #rrggbb         line X1 Y1 X2 Y2 #rrggbb
//     text "…" at X Y #rrggbb      bitmap WxH at X Y size WxH [from X Y W H] [opaque]
//     clip X Y W H                 no clip
//
// Both ends of a line belong to it. The part of a bitmap is told unless it is all of it.
#pragma once

#include <string>
#include <vector>

#include "gui/canvas.h"

namespace vx3::headless {

class DisplayList : public gui::Canvas
{
public:
    const std::vector<std::string>& Lines() const { return lines; }

    void SetClip(const gui::Place& clip) override;
    void ClearClip() override;
    void SetPen(gui::Colour colour) override { pen = colour; }
    void SetTextColour(gui::Colour colour) override { textColour = colour; }
    void Fill(const gui::Place& place) override;
    void Line(gui::Point from, gui::Point to) override;
    void DrawBitmap(const VX3Bitmap* bitmap, const gui::Place& target, const gui::Place& source, bool usesAlpha) override;
    void DrawText(std::u16string_view text, gui::Point corner) override;

private:
    std::vector<std::string> lines;
    gui::Colour pen;
    gui::Colour textColour;
};

// In double quotes, on one line.
std::string QuotedText(std::u16string_view text);

} // namespace vx3::headless
