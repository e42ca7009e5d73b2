// The file of a library for those who write: made, opened, closed.
//
// The host sees to it that nobody else writes it meanwhile. What a closing loses is taken
// back in memory, so that the next write stores it again.
#pragma once

#include "storage/librarystate.h"

namespace browser {

// Makes a file with nothing in it but its first and its closing chunk.
[[nodiscard]] bool CreateEmptyFile(LibraryState& library);

// Opens the file of writers, for one user more; the first one opens it. Makes the file if
// there is none, and once a copy of one that was damaged. False, told on the console where
// somebody else has changed the file: then nothing may be written.
[[nodiscard]] bool OpenForUpdate(LibraryState& library);
// The end of OpenForUpdate; the last one closes. False if anything written was lost.
bool CloseAfterUpdate(LibraryState& library);
// The same behind a payload whose record is still to be written: what was written is on the
// disk, and the file stays open for that.
bool RestAfterPayload(LibraryState& library);

} // namespace browser
