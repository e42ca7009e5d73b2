// What scripts ask of a content browser that has published its table, the same in every host.
#pragma once

#include "gui/script.h"
#include "vx3/browser.h"

namespace vx3::gui {

// `browser` must live as long as the program is used. `folder` is that of the scenario; what
// is dumped calls it /FOLDER, so that it may lie anywhere.
ScriptProgram ProgramOf(const VX3Browser& browser, std::string folder);

// Does something of any window still wait, as far as the browser knows?
bool IsBrowserWorking(const VX3Browser& browser);

} // namespace vx3::gui
