// The colours of a host without a screen: a light palette, the same in every run.
#pragma once

#include "gui/canvas.h"

namespace vx3::headless {

// A VX3_COLOUR number; black for any other.
gui::Colour PaletteColour(int32_t number);

// What the pictures of gadgets are drawn with.
namespace style {

constexpr gui::Colour window = { 0xED, 0xEF, 0xF3 };
constexpr gui::Colour titleBar = { 0xDA, 0xDF, 0xE8 };
constexpr gui::Colour field = { 0xFF, 0xFF, 0xFF };
constexpr gui::Colour button = { 0xFA, 0xFB, 0xFC };
constexpr gui::Colour frame = { 0xB9, 0xC0, 0xCC };
constexpr gui::Colour shade = { 0xD5, 0xDA, 0xE3 };
constexpr gui::Colour accent = { 0x3D, 0x74, 0xC4 };
constexpr gui::Colour text = { 0x1F, 0x25, 0x33 };
constexpr gui::Colour disabledText = { 0x92, 0x99, 0xA6 };

} // namespace style

} // namespace vx3::headless
