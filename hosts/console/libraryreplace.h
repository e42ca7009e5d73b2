// Putting a copy of one file in the place of another, so that no moment has neither.
#pragma once

#include <string>

#include "outcome.h"

namespace vx3::console {

// `kept` becomes the name under which the file that was there is kept; empty if there was none.
Failure ReplaceLibrary(const std::string& source, const std::string& target, std::string& kept);

} // namespace vx3::console
