// The module between its entry and its end: what action 2, 3 and 6 do.
//
// All of it runs on the host's main thread, one call at a time.
#pragma once

#include <cstdint>

#include "services/filepath.h"

namespace browser {

// The module's own path; none without memory. Set by action 1, freed by action 3.
extern FilePath* modulePath;

bool PluginStart();
void PluginEnd();
bool PluginMessage(intptr_t id, void* data);

} // namespace browser
