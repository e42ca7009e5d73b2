// Drawing of a tree: the rows' cells by the module, everything around them by the host.
#pragma once

#include "gui/treestate.h"

namespace vx3::gui {

// Draws the part `dirty` of the view.
void PaintTree(Gadget& gadget, Canvas& canvas, const Place& dirty);

} // namespace vx3::gui
