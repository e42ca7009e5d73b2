// The host's table as the module sees it: one pointer for the whole module.
#pragma once

#include "vx3/host.h"

namespace browser {

// Set by action 1 of the entry function and cleared by the last action 3, on the main
// thread while no other thread of the module exists; read from all threads.
extern const VX3Host* host;

} // namespace browser
