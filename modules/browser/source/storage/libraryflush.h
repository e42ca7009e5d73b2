// Writing what has changed: old chunks are marked dead first, new ones go to the end of the
// log, so that a crash loses at most what was being replaced.
#pragma once

#include "storage/librarystate.h"

namespace browser {

// All that is in memory and not in the file, into the file that is open for update. What
// could not be written stays marked as changed.
[[nodiscard]] bool WriteChanges(LibraryState& library);

} // namespace browser
