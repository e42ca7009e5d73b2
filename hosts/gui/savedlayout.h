// What is kept of open windows from one run to the next: where each stood, how large it was,
// and what its module wants back. Main thread only.
//
// Saved is a container with one nested container for each window, under the keys from 0 on, and
// in it the keys below.
#pragma once

#include "gui/deskstate.h"

namespace vx3::gui {

enum SavedKey : int32_t { SavedId = 1, SavedSubId, SavedX, SavedY, SavedWidth, SavedHeight, SavedContents, SavedKind };

// What its module calls this kind of window; empty if it does not.
std::u16string NameOfKind(DeskState& desk, Dialog& window);

void SaveWindows(DeskState& desk, VX3Container& layout); // calls modules

// Opens a window as it was saved, by the ids and the kind. False if nothing was, or if it does not
// want to.
bool RestoreWindow(DeskState& desk, Dialog& window, int32_t id, int32_t subId);

} // namespace vx3::gui
