// Folders that are watched for changes.
//
// folderwatch.cpp keeps the watches and tells of them, whoever has seen the change: the
// system here (folderwatchposix.cpp), or a file system that a test keeps in memory. All is
// for the main thread, but for marking.
#pragma once

#include <atomic>
#include <string>

#include "vx3/folder.h"

struct VX3FolderWatch {
    void (*changed)(void* user);
    void* user;
    std::atomic<bool> hasChanged{ false };
};

namespace vx3::core {

VX3FolderWatch* MakeWatch(void (*changed)(void* user), void* user); // throws without memory
void FreeWatch(VX3FolderWatch* watch);                              // none is allowed

// Any thread, as long as it sees to it that the watch is still there.
void MarkChanged(VX3FolderWatch& watch);

// Tells each watch that has changed, once. A callback may make and free watches, and may
// deliver again, which goes on with those that wait. What changes meanwhile comes with
// the next call, so that one call always ends.
void DeliverFolderChanges();

// Frees all that are left, at the end of a host.
void DropWatches();

// The system. A watch that it has taken is to be given up before it is freed. Throws
// without memory.
[[nodiscard]] bool WatchFolder(const std::string& folder, VX3FolderWatch& watch);
void GiveUpFolder(const VX3FolderWatch& watch);
void ReadFolderChanges(); // marks what has changed, and does not wait for more
void GiveUpAllFolders();

// Can be read whenever the system has changes to tell; -1 where it tells of none. It
// stays the same until all folders are given up.
int FolderChangeDescriptor();

} // namespace vx3::core
