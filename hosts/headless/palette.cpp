#include "headless/palette.h"

namespace vx3::headless {

namespace {

struct PaletteRow {
    int32_t number;
    gui::Colour colour;
};

constexpr PaletteRow palette[] = {
    { VX3_COLOUR_BACKGROUND, style::field },
    { VX3_COLOUR_TEXT, style::text },
    { VX3_COLOUR_SELECTION, { 0xB9, 0xD5, 0xFB } },
    { VX3_COLOUR_SELECTION_UNFOCUSED, { 0xDD, 0xE2, 0xEA } },
    { VX3_COLOUR_SELECTED_TEXT, { 0x10, 0x22, 0x3C } },
    { VX3_COLOUR_SELECTED_TEXT_UNFOCUSED, style::text },
    { VX3_COLOUR_SPECIAL_TEXT, { 0x9C, 0x38, 0x00 } },
};

} // namespace

gui::Colour PaletteColour(int32_t number)
{
    for (const PaletteRow& row : palette)
        if (row.number == number)
            return row.colour;
    return {};
}

} // namespace vx3::headless
