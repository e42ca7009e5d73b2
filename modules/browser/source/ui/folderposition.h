// How far each folder was scrolled when it was last left, for all windows.
//
// Kept for the run, by the address of the folder; of very many folders those that were
// left last. Main thread only.
#pragma once

#include "model/browserurl.h"

namespace browser {

// The first entry that is seen and the pixels of it that are not, in what was seen then.
struct FolderPosition {
    int32_t index = 0;
    int32_t rest = 0;
    int32_t width = 0;
    int32_t height = 0;

    bool operator==(const FolderPosition&) const = default;
};

void StoreFolderPosition(BrowserURL& folder, const FolderPosition& position);
// False, and `position` as it was, if none is kept.
bool FindFolderPosition(BrowserURL& folder, FolderPosition& position);
void ForgetFolderPositions(); // at the end of the module

} // namespace browser
