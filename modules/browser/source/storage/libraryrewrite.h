// Writing a library anew without what is dead in it, into a file beside it that takes its
// place at the end.
#pragma once

#include "storage/librarystate.h"

namespace browser {

// The old file stays beside the new one as `.bak`. Without success the library is as it was,
// in memory and on disk.
[[nodiscard]] bool RewriteLibrary(LibraryState& library);

} // namespace browser
