// Colours by the numbers of the boundary.
#pragma once

#include "gui/toolkit.h"

namespace vx3::gui {

// As the user's palette has it; black for a number that is none.
inline Colour ColourOfNumber(Toolkit& toolkit, int32_t number)
{
    const bool isInPalette = number >= VX3_COLOUR_TEXT && number <= VX3_COLOUR_SPECIAL_TEXT;
    return number == VX3_COLOUR_BACKGROUND || isInPalette ? toolkit.ColourOf(number) : Colour{};
}

} // namespace vx3::gui
