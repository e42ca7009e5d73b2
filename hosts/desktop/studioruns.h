// The ways in which the program runs: with its main window, for one picture, or by a script.
#pragma once

#include "studiosession.h"

namespace vx3::desktop {

int RunStudio(const StudioOptions& options);
int RunShot(const StudioOptions& options);
int RunScriptFile(const StudioOptions& options);

// A line on the standard error output, with the program's name in front.
void Complain(const std::string& sentence);

} // namespace vx3::desktop
