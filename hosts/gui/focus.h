// Which gadget of a window has the focus, and who hears of it: the area, the dialog around
// it and the window, whenever the focus comes in or goes out of them. Main thread only.
#pragma once

#include "gui/deskstate.h"

namespace vx3::gui {

// The focus has moved, as the toolkit says; none: the window lost it. Calls modules, or
// leaves messages to the main loop if a silent call is on the stack.
void SetFocus(DeskState& desk, Dialog& window, Gadget* focus);

// Moves it there, or to the first gadget inside that can have it.
bool RequestFocus(DeskState& desk, Gadget& gadget);
bool HasFocus(const Gadget& gadget); // it, or something inside it

} // namespace vx3::gui
