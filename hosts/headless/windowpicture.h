// A whole window as a picture: frame, title, menu bar, gadgets, and what its areas and
// trees draw. Plain, but as a user would know it.
#pragma once

#include <string>

#include "headless/headlesstoolkit.h"

namespace vx3::headless {

// Draws everything anew into a PNG file; false if that cannot be written.
bool SaveWindowPicture(gui::Desk& desk, HeadlessToolkit& toolkit, const gui::Dialog& window, const std::string& file);

} // namespace vx3::headless
