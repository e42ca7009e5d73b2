// What is kept of open windows from one run to the next: where each stood, how large it was,
// and what its module wants back. Main thread only.
//
// Saved is a container with one nested container for each window, under the keys from 0 on, and
// in it the keys below.
#pragma once

#include "gui/deskstate.h"

namespace vx3::gui {

enum SavedKey : int32_t { SavedId = 1, SavedSubId, SavedX, SavedY, SavedWidth, SavedHeight, SavedContents };

void SaveWindows(DeskState& desk, VX3Container& layout); // calls modules

// Opens a window as it was saved. False if nothing was, or if it does not want to.
bool RestoreWindow(DeskState& desk, Dialog& window, int32_t id, int32_t subId);

} // namespace vx3::gui
