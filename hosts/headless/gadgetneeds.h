// How large single gadgets are in a host without a screen.
#pragma once

#include "gui/gadget.h"

namespace vx3::headless {

// What the contents of a gadget need.
gui::Size NeedOfContents(const gui::Gadget& gadget);

constexpr int textMargin = 4; // between a text and the frame of its gadget
constexpr int checkSize = 13; // of the box of a check box
constexpr int arrowWidth = 16;

} // namespace vx3::headless
