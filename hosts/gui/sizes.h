// New layouts, and who hears of what they changed: areas and dialogs whose sizes settled, and
// those that are seen through a scroll group that shows another part. Main thread only.
#pragma once

#include "gui/deskstate.h"

namespace vx3::gui {

// Lays a window out and has its dialogs hear of it, once it is open.
void Relayout(DeskState& desk, Dialog& window);
// The same while it opens: its modules hear of the sizes at the end of the opening.
void TellFirstSizes(DeskState& desk, Dialog& window);

// The size that a window opens with, where its module leaves that to the layout.
Size OpeningSize(DeskState& desk, Dialog& window);

// Shows another part of a scroll group, as far as there is something to see. False if it
// is the same.
bool ScrollTo(DeskState& desk, Gadget& scroll, Point scrolled);

Place VisiblePart(const Gadget& scroll); // in its child's coordinates

} // namespace vx3::gui
