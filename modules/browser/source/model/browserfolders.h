// Where the module keeps its files: cache, temporary folder, libraries.
#pragma once

#include "services/filepath.h"

namespace browser {

enum class CreateFolders : bool { No, Yes };

void GetCacheFolder(CreateFolders create, FilePath& out);
// Empty if the host gives no folder.
void GetTempFolder(FilePath& out);
// False, and an empty path, if there is no library folder apart from the user's.
bool GetSystemLibraryFolder(FilePath* out);
void GetUserLibraryFolder(FilePath& out);

// True in a run that must leave the user's folders alone; asked of the host once.
bool IsRunRestricted();
// Deletes the temporary folder, if it is the one below the host's cache folder.
void DeleteTempFolder();
// The exchange tools are switched on by a marker file in the host's start-up folder.
bool IsContentToolEnabled();

void ForgetFolders();       // at the end of a life
void RememberRestriction(); // at its start

} // namespace browser
