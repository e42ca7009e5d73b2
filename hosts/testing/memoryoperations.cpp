#include "memoryoperations.h"

#include <algorithm>

#include "core/fileoperations.h"
#include "core/values.h"
#include "memorystate.h"

namespace vx3::testing {

namespace {

constexpr int64_t chunkSize = 1024 * 1024; // bytes between two calls of the progress

// A place where an entry may be put.
struct Place {
    EntryRef folder; // none: not allowed
    std::string name;
};

// The folder and name of a path that is free, or that is `same` in another spelling.
// Under the lock.
Place FreePlace(const VX3Path* path, const EntryRef& same)
{
    const MemoryTree& tree = TheMemory().tree;
    Place place;
    place.folder = tree.FolderFor(core::NativeBytes(*path), place.name);
    if (!place.folder || place.name.empty() || place.folder->isReadOnly)
        return {};
    const EntryRef taken = tree.ChildOf(*place.folder, place.name);
    if (taken && (taken != same || taken->name == place.name))
        return {};
    return place;
}

// Takes an entry from its place, or none if that is refused. Under the lock.
EntryRef MovableEntry(const VX3Path* path)
{
    EntryRef entry = TheMemory().tree.Find(core::NativeBytes(*path), LastLink::Keep);
    const bool isFixed = !entry || !entry->parent || entry->isMountPoint || entry->parent->isReadOnly;
    return isFixed ? nullptr : entry;
}

VX3Bool Relocate(const VX3Path* from, const VX3Path* to)
{
    MemoryState& memory = TheMemory();
    std::lock_guard guard(memory.lock);
    const EntryRef entry = MovableEntry(from);
    const Place place = entry ? FreePlace(to, entry) : Place();
    if (!place.folder || MemoryTree::IsInside(*place.folder, *entry))
        return 0;
    if (MemoryTree::VolumeOf(*entry) != MemoryTree::VolumeOf(*place.folder))
        return 0;
    memory.Touch(*entry->parent);
    memory.TellChange(entry.get());
    memory.tree.TakeOut(entry);
    entry->name = place.name;
    memory.tree.Insert(place.folder, entry);
    memory.Touch(*place.folder);
    return 1;
}

// The bytes of a copy one chunk at a time; false: cancelled or the disk is full.
bool CopyBytes(int64_t size, core::OperationProgress& progress, int64_t& used)
{
    for (int64_t left = size; left > 0;) {
        const int64_t chunk = std::min(left, chunkSize);
        {
            std::lock_guard guard(TheMemory().lock);
            if (!TheMemory().UseBytes(chunk))
                return false;
        }
        used += chunk;
        left -= chunk;
        if (!progress.AddBytes(chunk))
            return false;
    }
    return true;
}

// Goes over a copy that is not in the tree yet as if it were made now.
// As on a disk, a pipe is found before anything is copied.
bool HoldsNothingSpecial(const TreeEntry& entry)
{
    return entry.kind != EntryKind::Special
        && std::all_of(entry.children.begin(), entry.children.end(), [](const EntryRef& child) { return HoldsNothingSpecial(*child); });
}

bool CopyElements(TreeEntry& copy, core::OperationProgress& progress, int64_t& used)
{
    const bool cannotBeRead = copy.isUnreadable || copy.kind == EntryKind::Special;
    const int64_t size = copy.kind == EntryKind::File ? static_cast<int64_t>(copy.bytes.size()) : 0;
    if (!progress.BeginElement(0) || cannotBeRead || !CopyBytes(size, progress, used))
        return false;
    copy.created = TheMemory().Now();
    if (copy.kind == EntryKind::Folder)
        copy.isMountPoint = false;
    return std::all_of(copy.children.begin(), copy.children.end(),
                       [&](const EntryRef& child) { return CopyElements(*child, progress, used); });
}

EntryRef CopyAside(const VX3Path* from, const VX3Path* to)
{
    MemoryState& memory = TheMemory();
    std::lock_guard guard(memory.lock);
    const EntryRef original = memory.tree.Find(core::NativeBytes(*from), LastLink::Keep);
    const Place place = original ? FreePlace(to, nullptr) : Place();
    if (!place.folder || MemoryTree::IsInside(*place.folder, *original))
        return nullptr;
    return memory.tree.CopyOf(*original);
}

// The name may have been taken while the copy was made.
bool PutCopy(const EntryRef& copy, const VX3Path* to)
{
    MemoryState& memory = TheMemory();
    std::lock_guard guard(memory.lock);
    const Place place = FreePlace(to, nullptr);
    if (!place.folder)
        return false;
    copy->name = place.name;
    memory.tree.Insert(place.folder, copy);
    memory.Touch(*place.folder);
    return true;
}

void GiveBackBytes(int64_t used)
{
    std::lock_guard guard(TheMemory().lock);
    TheMemory().UseBytes(-used);
}

bool TakeOut(const EntryRef& entry)
{
    MemoryState& memory = TheMemory();
    std::lock_guard guard(memory.lock);
    if (!entry->parent || entry->isMountPoint || entry->parent->isReadOnly || !entry->children.empty())
        return false;
    memory.UseBytes(-static_cast<int64_t>(entry->bytes.size()));
    memory.Touch(*entry->parent);
    memory.TellEnd(*entry);
    memory.tree.TakeOut(entry);
    return true;
}

std::vector<EntryRef> ChildrenOf(const EntryRef& entry)
{
    std::lock_guard guard(TheMemory().lock);
    return entry->children;
}

// What lies below goes first; the lock is not held while the progress is told.
bool RemoveElements(const EntryRef& entry, core::OperationProgress& progress)
{
    const int64_t size = entry->kind == EntryKind::File ? static_cast<int64_t>(entry->bytes.size()) : 0;
    const bool cannotBeEntered = entry->isMountPoint || (entry->kind == EntryKind::Folder && entry->isUnreadable);
    if (!progress.BeginElement(size) || cannotBeEntered)
        return false;
    for (const EntryRef& child : ChildrenOf(entry)) {
        if (!RemoveElements(child, progress))
            return false;
    }
    return TakeOut(entry);
}

} // namespace

VX3Bool MemoryCreateFolder(const VX3Path* path)
{
    MemoryState& memory = TheMemory();
    memory.Note(Asked::CreateFolder);
    std::lock_guard guard(memory.lock);
    const Place place = FreePlace(path, nullptr);
    if (!place.folder)
        return 0;
    auto folder = std::make_shared<TreeEntry>();
    folder->name = place.name;
    folder->kind = EntryKind::Folder;
    folder->created = folder->modified = memory.Now();
    memory.tree.Insert(place.folder, folder);
    memory.Touch(*place.folder);
    return 1;
}

VX3Bool MemoryRename(const VX3Path* from, const VX3Path* to)
{
    TheMemory().Note(Asked::Rename);
    return Relocate(from, to);
}

VX3Bool MemoryMove(const VX3Path* from, const VX3Path* to)
{
    TheMemory().Note(Asked::Move);
    return Relocate(from, to);
}

VX3Bool MemoryCopy(const VX3Path* from, const VX3Path* to, uint32_t, int64_t, VX3ProgressFunction function, void* user, VX3Bool* cancelled)
{
    TheMemory().Note(Asked::Copy);
    core::OperationProgress progress(function, user);
    const EntryRef copy = CopyAside(from, to);
    int64_t used = 0;
    const bool isDone = copy && HoldsNothingSpecial(*copy) && CopyElements(*copy, progress, used) && PutCopy(copy, to);
    if (!isDone)
        GiveBackBytes(used);
    if (cancelled)
        *cancelled = progress.IsCancelled();
    return isDone;
}

VX3Bool MemoryRemove(const VX3Path* path, uint32_t, int64_t, VX3ProgressFunction function, void* user, VX3Bool* cancelled)
{
    MemoryState& memory = TheMemory();
    memory.Note(Asked::Remove);
    core::OperationProgress progress(function, user);
    EntryRef entry;
    {
        std::lock_guard guard(memory.lock);
        entry = MovableEntry(path);
    }
    const bool isDone = entry && RemoveElements(entry, progress);
    if (cancelled)
        *cancelled = progress.IsCancelled();
    return isDone;
}

} // namespace vx3::testing
