// The end of a test that has used the host's preferences.
#pragma once

#include "core/hoststate.h"
#include "services/preferences.h"

namespace vx3::tests {

// As at the end of a module: then the host holds no values of it.
inline void EndPreferences()
{
    browser::ForgetPreferences();
    core::CurrentHost()->preferences.Park();
}

} // namespace vx3::tests
