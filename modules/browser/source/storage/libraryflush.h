// Writing what has changed: old chunks are marked dead first, new ones go to the end of the
// log, so that a crash loses at most what was being replaced.
#pragma once

#include "storage/librarystate.h"

namespace browser {

// Makes a file with nothing in it but its first and its closing chunk.
[[nodiscard]] bool CreateEmptyFile(LibraryState& library);

// Opens the file of writers, for one user more; the first one opens it. Makes the file if
// there is none, and once a copy of one that was damaged. False, told on the console where
// somebody else has changed the file: then nothing may be written.
[[nodiscard]] bool OpenForUpdate(LibraryState& library);
// The end of OpenForUpdate. False if anything written was lost.
bool CloseAfterUpdate(LibraryState& library);

// All that is in memory and not in the file, into the file that is open for update. What
// could not be written stays marked as changed.
[[nodiscard]] bool WriteChanges(LibraryState& library);

} // namespace browser
