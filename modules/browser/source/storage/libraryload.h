// Reading a library file: one pass over its chunks, payloads of data and pictures skipped.
#pragma once

#include "storage/librarystate.h"

namespace browser {

// Fills an empty library with what its file has. False only if the file cannot be opened; all
// that can be read of a damaged one is there, and `damaged` is set.
[[nodiscard]] bool ScanLibrary(LibraryState& library, BrowserDatabase* owner);

} // namespace browser
