// Plays recorded steps into a folder through the functions of a table.
#pragma once

#include <string_view>

#include "writejournal.h"

namespace vx3::testing {

// The first `units` units of a step.
bool ReplayStep(const VX3Host* table, std::string_view folder, const JournalStep& step, int64_t units);

} // namespace vx3::testing
