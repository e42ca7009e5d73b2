// The module's fixed pictures by number: folders, file types, the busy animation.
//
// A picture is loaded when it is first asked for and stays until FreeIconCache, with
// its scaled forms. Without a lock: main thread only.
#pragma once

#include "model/contentcodes.h"
#include "model/preview.h"

namespace browser {

// At start and at the end of the module. Without memory there are no icons.
[[nodiscard]] bool InitIconCache(const FilePath& modulePath);
void FreeIconCache();

int32_t IconCount();
const char* IconFileName(int32_t number); // none beyond the count

// Borrowed from the cache. A size below 1 gives the picture as drawn; so does a size
// beyond the largest scaled one, and callers scale again when they draw. None if there
// is no such picture.
VX3Bitmap* GetIconBitmap(int32_t number, int32_t size);
Preview* GetIcon(Icon number, int32_t size); // the caller owns the object and not its bitmap

HostBitmap LoadBitmap(const FilePath& path);
FilePath GetIconPath(const char* fileName); // empty without a cache

} // namespace browser
