#include "memorywatches.h"

#include <algorithm>

#include "core/folderwatch.h"
#include "core/values.h"
#include "memorystate.h"

namespace vx3::testing {

namespace {

// As on a disk: what may have to wait for a server is not watched.
bool IsWatchable(const TreeEntry& folder)
{
    if (folder.kind != EntryKind::Folder || folder.isUnreadable)
        return false;
    const std::string mount = MemoryTree::PathOf(*MemoryTree::VolumeOf(folder));
    const auto& volumes = TheMemory().volumes;
    return std::none_of(volumes.begin(), volumes.end(), [&](const MemoryVolume& volume) {
        return volume.path == mount && (volume.failsProbe || (volume.attributes & VX3_VOLUME_NETWORK));
    });
}

} // namespace

VX3FolderWatch* MemoryWatch(const VX3Path* path, void (*changed)(void* user), void* user)
{
    MemoryState& memory = TheMemory();
    memory.Note(Asked::Watch);
    std::lock_guard guard(memory.lock);
    const EntryRef folder = memory.tree.Find(core::NativeBytes(*path), LastLink::Follow);
    if (!folder || !IsWatchable(*folder))
        return nullptr;
    VX3FolderWatch* watch = core::MakeWatch(changed, user);
    memory.watches.push_back({ folder, watch });
    return watch;
}

void MemoryUnwatch(VX3FolderWatch* watch)
{
    {
        std::lock_guard guard(TheMemory().lock);
        std::erase_if(TheMemory().watches, [watch](const WatchedEntry& watched) { return watched.watch == watch; });
    }
    core::FreeWatch(watch);
}

void MemoryState::TellChange(const TreeEntry* entry)
{
    for (const WatchedEntry& watched : watches)
        if (watched.folder.get() == entry)
            core::MarkChanged(*watched.watch);
}

void MemoryState::TellEnd(const TreeEntry& entry)
{
    for (const WatchedEntry& watched : watches)
        if (MemoryTree::IsInside(*watched.folder, entry))
            core::MarkChanged(*watched.watch);
}

} // namespace vx3::testing
