// Which files a folder pane shows, by six switches of the user.
//
// A value. The test itself is a function over the switches as bits, so that a list of
// entries can tell whether it would come out the same.
#pragma once

#include "ui/contententrylist.h"

namespace browser {

struct FolderFilter {
    bool showUnknown = true;
    bool showKnown = true; // of a known type that is none of those below
    bool showNative = true;
    bool showOther3d = true;
    bool showMovies = true;
    bool showImages = true;

    static FolderFilter FromPreferences();
    EntryFilter ToEntryFilter() const;
    bool operator==(const FolderFilter&) const = default;
};

} // namespace browser
