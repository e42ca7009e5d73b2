// What gadgets look like in pictures of windows.
#pragma once

#include <optional>

#include "gui/gadget.h"
#include "headless/fixedfont.h"

namespace vx3::headless {

// Draws a gadget that stands in `place`, as much as lies in `clip`; not what it has inside.
void DrawGadget(Raster& raster, FixedFont& font, const gui::Gadget& gadget, const gui::Place& place, const gui::Place& clip);

// The page whose tab is at a point of a group of tabs; none beside them.
std::optional<size_t> TabAt(const gui::Gadget& tabs, gui::Point at);

} // namespace vx3::headless
