// The commands that the host puts into its menus and onto its keys: one opens a window, the
// others work on the window that is in front.
#pragma once

namespace browser {

// At start. False if the host did not take all of them.
bool RegisterCommands();

} // namespace browser
