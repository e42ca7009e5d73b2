// What was changed is brought to the disk before an answer that says so.
#pragma once

#include <string>

namespace vx3::core {

// Waits for the bytes and the length of an open file. A file system that knows no such
// waiting has nothing to fail at: true.
[[nodiscard]] bool SyncFile(int descriptor);

// Waits for the names in a folder. True as well where it may not be opened.
[[nodiscard]] bool SyncFolder(const std::string& folder);

// After a renaming: both folders, if the host is set to (HostSettings::syncFiles). What
// fails goes to the console, since the renaming itself has happened.
void SyncFoldersOf(const std::string& from, const std::string& to);

} // namespace vx3::core
