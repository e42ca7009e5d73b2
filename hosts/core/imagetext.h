// Texts in images of containers: UTF-8 in which a surrogate that stands alone takes three
// bytes. One text has exactly one such form.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "textbuffer.h"

namespace vx3::core {

void AppendImageText(UnitSpan text, std::vector<uint8_t>& bytes);

// The number of units, -1 if no writer can have made the bytes.
int64_t CountImageText(std::span<const uint8_t> bytes);

// Of bytes that can be counted. False without memory.
bool ReadImageText(std::span<const uint8_t> bytes, VX3String& text);

} // namespace vx3::core
