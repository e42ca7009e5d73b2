// The texts of the boundary as the hosts' windows keep them, and back.
#pragma once

#include <string>
#include <string_view>

#include "vx3/types.h"

namespace vx3::gui {

std::u16string UnitsOf(const VX3String* text); // none is an empty text
VX3Bool SetUnits(VX3String* text, std::u16string_view units);

} // namespace vx3::gui
