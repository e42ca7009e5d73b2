// What the sections of MemoryFileSystem work on: one state of the process.
#pragma once

#include <array>
#include <atomic>
#include <mutex>
#include <set>
#include <string>
#include <vector>

#include "memoryfilesystem.h"
#include "memorytree.h"

namespace vx3::testing {

struct MemoryVolume {
    std::string path;
    std::string label;
    uint32_t attributes = 0;
    bool failsProbe = false;
};

struct WatchedEntry {
    EntryRef folder;
    VX3FolderWatch* watch; // the core host's
};

constexpr int64_t withoutEnd = -1;

struct MemoryState {
    VX3Host base = {};
    VX3Host table = {};
    std::array<std::atomic<int64_t>, static_cast<std::size_t>(Asked::Count)> counts = {};

    std::mutex lock; // for all below; never held while a callback of a module runs
    MemoryTree tree;
    std::vector<MemoryVolume> volumes; // the one of `/` first
    int64_t freeBytes = withoutEnd;
    std::vector<WatchedEntry> watches;

    void Note(Asked what) { counts[static_cast<std::size_t>(what)].fetch_add(1); }
    // Takes bytes off the free ones; false if there are too few.
    // A negative number gives them back.
    bool UseBytes(int64_t bytes);
    VX3FileDate Now() const; // the date of the base table
    // Notes that the entries of a folder changed.
    void Touch(TreeEntry& folder)
    {
        folder.modified = Now();
        TellChange(&folder);
    }
    // To whoever watches: what is in a folder changed, or its status; a folder goes, with all below it.
    // `entry` is compared only, and may be none.
    void TellChange(const TreeEntry* entry);
    void TellEnd(const TreeEntry& entry);
};

MemoryState& TheMemory();

extern const VX3FileServices memoryFileServices;
extern const VX3FolderServices memoryFolderServices;

} // namespace vx3::testing
