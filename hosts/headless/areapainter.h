// Has areas and trees drawn: what became dirty and can be seen, when the main loop goes on.
// What scrolling or a change of size uncovers is dirty by itself. Main thread only.
#pragma once

#include <string>

#include "gui/desk.h"

namespace vx3::headless {

void MarkDirty(gui::Gadget& gadget, const gui::Place& part);
void PaintDirty(gui::Desk& desk, const gui::Dialog& window);

// The last drawing of each area and tree that can be seen. A line above it tells the size and
// the how manyth drawing it is.
std::string DescribeDrawings(const gui::Dialog& window);

} // namespace vx3::headless
