// Old libraries, brought to the current form in memory when they have been loaded.
#pragma once

#include "storage/librarystate.h"

namespace browser {

void UpgradeLibrary(LibraryState& library);

} // namespace browser
