// What the hosts need of a module's resources beside its texts. Main thread.
#pragma once

#include <string>

#include "vx3/resource.h"

namespace vx3::core {

// The folder `res` beside the module, as native bytes; empty for none.
std::string ResourceFolder(const VX3Resources* resources);

} // namespace vx3::core
