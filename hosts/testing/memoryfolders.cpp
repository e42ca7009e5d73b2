// The folder section on the tree: questions, walks and volumes. Operations on whole
// entries stand in memoryoperations.cpp.
#include "core/services.h"
#include "core/values.h"
#include "memoryoperations.h"
#include "memorystate.h"
#include "memorywatches.h"

namespace vx3::testing {

namespace {

// The entries of the moment at which the walk began, as a disk would give them at best.
struct OpenWalk {
    EntryRef folder;
    std::vector<EntryRef> entries;
    std::size_t next = 0;
    uint32_t options = 0;
    bool isSound = true;
};

struct OpenVolumes {
    std::vector<MemoryVolume> volumes;
    std::size_t next = 0;
};

OpenWalk& Of(VX3FolderWalk* walk)
{
    return *reinterpret_cast<OpenWalk*>(walk);
}

OpenVolumes& Of(VX3VolumeWalk* walk)
{
    return *reinterpret_cast<OpenVolumes*>(walk);
}

bool IsHidden(const TreeEntry& entry)
{
    return entry.isHidden || entry.name.starts_with('.');
}

uint32_t FlagsOf(const TreeEntry& entry)
{
    uint32_t flags = 0;
    flags |= entry.kind == EntryKind::Folder ? VX3_ENTRY_FOLDER : 0;
    flags |= entry.kind == EntryKind::Special ? VX3_ENTRY_SPECIAL : 0;
    flags |= entry.isBundle ? VX3_ENTRY_BUNDLE : 0;
    flags |= entry.isReadOnly ? VX3_ENTRY_READONLY : 0;
    return flags;
}

// Where a link leads; the link itself if nowhere or back to a folder that it lies in.
EntryRef TargetOf(const EntryRef& entry, uint32_t& linkFlags)
{
    linkFlags = 0;
    if (entry->kind != EntryKind::Link)
        return entry;
    linkFlags = VX3_ENTRY_LINK;
    const EntryRef target = TheMemory().tree.Find(MemoryTree::PathOf(*entry), LastLink::Follow);
    if (target && !MemoryTree::IsInside(*entry, *target))
        return target;
    linkFlags |= VX3_ENTRY_BROKEN;
    return entry;
}

void Describe(const EntryRef& listed, VX3FolderEntry& entry)
{
    uint32_t linkFlags = 0;
    const EntryRef target = TargetOf(listed, linkFlags);
    entry.flags = FlagsOf(*target) | linkFlags | (IsHidden(*listed) ? VX3_ENTRY_HIDDEN : 0);
    entry.size = target->kind == EntryKind::File ? static_cast<int64_t>(target->bytes.size()) : 0;
    entry.created = target->created;
    entry.modified = target->modified;
    entry.reserved = 0;
}

EntryRef EntryAt(const VX3Path* path, LastLink lastLink)
{
    return TheMemory().tree.Find(core::NativeBytes(*path), lastLink);
}

VX3Bool Exists(const VX3Path* path)
{
    MemoryState& memory = TheMemory();
    memory.Note(Asked::Exists);
    std::lock_guard guard(memory.lock);
    return EntryAt(path, LastLink::Keep) != nullptr;
}

VX3Bool Inspect(const VX3Path* path, VX3FolderEntry* entry)
{
    MemoryState& memory = TheMemory();
    memory.Note(Asked::Inspect);
    std::lock_guard guard(memory.lock);
    const EntryRef found = EntryAt(path, LastLink::Keep);
    if (found)
        Describe(found, *entry);
    return found != nullptr;
}

VX3Bool Date(const VX3Path* path, int32_t kind, VX3FileDate* date)
{
    MemoryState& memory = TheMemory();
    memory.Note(Asked::Date);
    *date = {};
    std::lock_guard guard(memory.lock);
    EntryRef found = EntryAt(path, LastLink::Follow);
    if (!found)
        found = EntryAt(path, LastLink::Keep);
    const bool isKnown = kind == VX3_DATE_CREATED || kind == VX3_DATE_MODIFIED;
    if (!found || !isKnown)
        return 0;
    *date = kind == VX3_DATE_CREATED ? found->created : found->modified;
    return 1;
}

// A path that does not exist counts as its directory.
const TreeEntry* VolumeOf(const VX3Path* path)
{
    std::string last;
    EntryRef entry = EntryAt(path, LastLink::Keep);
    if (!entry)
        entry = TheMemory().tree.FolderFor(core::NativeBytes(*path), last);
    return entry ? MemoryTree::VolumeOf(*entry) : nullptr;
}

VX3Bool SameVolume(const VX3Path* a, const VX3Path* b)
{
    MemoryState& memory = TheMemory();
    memory.Note(Asked::SameVolume);
    std::lock_guard guard(memory.lock);
    const TreeEntry* first = VolumeOf(a);
    return first && first == VolumeOf(b);
}

VX3Bool ProbeVolume(const VX3Path* path)
{
    MemoryState& memory = TheMemory();
    memory.Note(Asked::Probe);
    std::lock_guard guard(memory.lock);
    const EntryRef entry = EntryAt(path, LastLink::Follow);
    if (!entry)
        return 0;
    const std::string mount = MemoryTree::PathOf(*MemoryTree::VolumeOf(*entry));
    for (const MemoryVolume& volume : memory.volumes) {
        if (volume.path == mount)
            return !volume.failsProbe;
    }
    return 1;
}

VX3FolderWalk* StartWalk(const VX3Path* path, uint32_t options)
{
    MemoryState& memory = TheMemory();
    memory.Note(Asked::Walk);
    std::lock_guard guard(memory.lock);
    const EntryRef folder = EntryAt(path, LastLink::Follow);
    if (!folder || folder->kind != EntryKind::Folder || folder->isUnreadable)
        return nullptr;
    return reinterpret_cast<VX3FolderWalk*>(new OpenWalk{ folder, folder->children, 0, options, true });
}

// Leaves out what is gone meanwhile or was not asked for.
bool IsTold(const OpenWalk& walk, const EntryRef& listed, const VX3FolderEntry& entry)
{
    if (listed->parent != walk.folder.get())
        return false;
    if ((entry.flags & VX3_ENTRY_HIDDEN) && !(walk.options & VX3_WALK_HIDDEN))
        return false;
    return !(entry.flags & VX3_ENTRY_READONLY) || (walk.options & VX3_WALK_READONLY);
}

VX3Bool NextEntry(VX3FolderWalk* handle, VX3FolderEntry* entry)
{
    MemoryState& memory = TheMemory();
    OpenWalk& walk = Of(handle);
    memory.Note(Asked::Entry);
    std::lock_guard guard(memory.lock);
    while (walk.isSound && walk.next < walk.entries.size()) {
        if (walk.folder->listingFailsAt == static_cast<int64_t>(walk.next)) {
            walk.isSound = false;
            break;
        }
        const EntryRef& listed = walk.entries[walk.next++];
        VX3FolderEntry described = {};
        Describe(listed, described);
        if (!IsTold(walk, listed, described))
            continue;
        described.name = entry->name; // its storage stays the caller's
        *entry = described;
        walk.isSound = core::SetNativeName(entry->name, listed->name);
        return walk.isSound;
    }
    return 0;
}

VX3Bool WalkIsSound(VX3FolderWalk* walk)
{
    return Of(walk).isSound;
}

void EndWalk(VX3FolderWalk* walk)
{
    delete &Of(walk);
}

VX3VolumeWalk* StartVolumes()
{
    MemoryState& memory = TheMemory();
    memory.Note(Asked::Volumes);
    std::lock_guard guard(memory.lock);
    return reinterpret_cast<VX3VolumeWalk*>(new OpenVolumes{ memory.volumes, 0 });
}

VX3Bool NextVolume(VX3VolumeWalk* handle, VX3Volume* volume)
{
    OpenVolumes& walk = Of(handle);
    if (walk.next >= walk.volumes.size())
        return 0;
    const MemoryVolume& listed = walk.volumes[walk.next++];
    core::SetNativePath(volume->path, listed.path);
    core::SetNativeName(volume->name, listed.path);
    core::SetNativeName(volume->label, listed.label);
    volume->attributes = listed.attributes;
    volume->reserved = 0;
    return 1;
}

void EndVolumes(VX3VolumeWalk* walk)
{
    delete &Of(walk);
}

} // namespace

const VX3FolderServices memoryFolderServices = { Exists,       Inspect,      Date,         MemoryCreateFolder, MemoryRename, MemoryMove,
                                                 MemoryCopy,   MemoryRemove, SameVolume,   ProbeVolume,        StartWalk,    NextEntry,
                                                 WalkIsSound,  EndWalk,      StartVolumes, NextVolume,         EndVolumes,   MemoryWatch,
                                                 MemoryUnwatch };

} // namespace vx3::testing
