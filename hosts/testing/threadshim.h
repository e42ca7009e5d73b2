// Stands between the host's thread and the module's object, to look at the locks of a
// thread when its body returns.
#pragma once

#include "vx3/thread.h"

namespace vx3::testing {

using ThreadCreateFunction = VX3Thread* (*)(void* object, const VX3ThreadTable* table);

VX3Thread* CreateThroughShim(ThreadCreateFunction create, void* object, const VX3ThreadTable* table);

} // namespace vx3::testing
