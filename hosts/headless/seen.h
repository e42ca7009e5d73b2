// Which gadgets of a window are seen, and where.
#pragma once

#include <functional>

#include "gui/gadget.h"

namespace vx3::headless {

// All visible gadgets of a window, groups before what is in them.
void ForEachVisible(const gui::Dialog& window, const std::function<void(gui::Gadget&)>& visit);

// What is seen of a gadget, in its own coordinates; empty if nothing is.
gui::Place SeenPart(const gui::Gadget& gadget);

inline bool DrawsItself(const gui::Gadget& gadget)
{
    return gadget.shape.kind == VX3_GADGET_AREA || gadget.shape.kind == VX3_GADGET_TREE;
}

} // namespace vx3::headless
