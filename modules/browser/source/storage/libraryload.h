// Reading a library file: one pass over its chunks, payloads of data and pictures skipped.
#pragma once

#include "storage/librarystate.h"

namespace browser {

// Fills an empty library with what its file has. False if the file cannot be opened, or if the disk
// or the memory failed: then nothing is there, and nothing may be written over the file. All
// that can be read of a damaged one is there, and `damaged` is set.
[[nodiscard]] bool ScanLibrary(LibraryState& library, BrowserDatabase* owner);

} // namespace browser
