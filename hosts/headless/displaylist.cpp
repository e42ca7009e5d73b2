#include "headless/displaylist.h"

#include <cstdio>

#include "core/services.h"
#include "core/values.h"

namespace vx3::headless {

namespace {

std::string Hex(gui::Colour colour)
{
    char text[8];
    std::snprintf(text, sizeof text, "#%02x%02x%02x", colour.red, colour.green, colour.blue);
    return text;
}

std::string Pair(int first, int second, char separator = ' ')
{
    return std::to_string(first) + separator + std::to_string(second);
}

std::string Words(const gui::Place& place)
{
    return Pair(place.x, place.y) + " " + Pair(place.width, place.height);
}

} // namespace

void DisplayList::SetClip(const gui::Place& clip)
{
    lines.push_back("clip " + Words(clip));
}

void DisplayList::ClearClip()
{
    lines.push_back("no clip");
}

void DisplayList::Fill(const gui::Place& place)
{
    lines.push_back("fill " + Words(place) + " " + Hex(pen));
}

void DisplayList::Line(gui::Point from, gui::Point to)
{
    lines.push_back("line " + Pair(from.x, from.y) + " " + Pair(to.x, to.y) + " " + Hex(pen));
}

void DisplayList::DrawBitmap(const VX3Bitmap* bitmap, const gui::Place& target, const gui::Place& source, bool usesAlpha)
{
    const gui::Place whole = { 0, 0, core::BitmapServices()->width(bitmap), core::BitmapServices()->height(bitmap) };
    std::string line = "bitmap " + Pair(whole.width, whole.height, 'x') + " at " + Pair(target.x, target.y) + " size "
        + Pair(target.width, target.height, 'x');
    if (source != whole)
        line += " from " + Words(source);
    lines.push_back(line + (usesAlpha ? "" : " opaque"));
}

void DisplayList::DrawText(std::u16string_view text, gui::Point corner)
{
    lines.push_back("text " + QuotedText(text) + " at " + Pair(corner.x, corner.y) + " " + Hex(textColour));
}

std::string QuotedText(std::u16string_view text)
{
    std::string quoted = "\"";
    for (char c : core::Text(text).Utf8()) {
        if (c == '"' || c == '\\')
            quoted += '\\';
        if (c == '\n')
            quoted += "\\n";
        else
            quoted += c;
    }
    return quoted + "\"";
}

} // namespace vx3::headless
