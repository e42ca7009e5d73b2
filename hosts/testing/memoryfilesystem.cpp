#include "memoryfilesystem.h"

#include <algorithm>

#include "memorystate.h"

namespace vx3::testing {

struct MemoryImage {
    MemoryTree tree;
    std::vector<MemoryVolume> volumes;
};

namespace {

// Everything below runs under the lock of the state.
EntryRef FolderAt(std::string_view path)
{
    MemoryState& memory = TheMemory();
    EntryRef at = memory.tree.Root();
    while (!path.empty()) {
        const std::size_t slash = path.find('/');
        const std::string_view part = path.substr(0, slash);
        path = slash == std::string_view::npos ? std::string_view() : path.substr(slash + 1);
        if (part.empty())
            continue;
        EntryRef child = memory.tree.ChildOf(*at, part);
        if (!child) {
            child = std::make_shared<TreeEntry>();
            child->name = part;
            child->kind = EntryKind::Folder;
            child->created = child->modified = memory.Now();
            memory.tree.Insert(at, child);
            memory.TellChange(at.get());
        }
        at = child;
    }
    return at;
}

EntryRef Put(std::string_view path, EntryKind kind, std::string_view bytes, const VX3FileDate& date)
{
    MemoryState& memory = TheMemory();
    const std::size_t slash = path.rfind('/');
    const EntryRef folder = FolderAt(path.substr(0, slash));
    auto entry = std::make_shared<TreeEntry>();
    entry->name = path.substr(slash + 1);
    if (const EntryRef old = memory.tree.ChildOf(*folder, entry->name)) {
        memory.TellEnd(*old);
        memory.tree.TakeOut(old);
    }
    entry->kind = kind;
    entry->bytes = bytes;
    entry->created = entry->modified = date.year != 0 ? date : memory.Now();
    memory.tree.Insert(folder, entry);
    memory.TellChange(folder.get());
    return entry;
}

void Describe(const TreeEntry& folder, const std::string& prefix, std::vector<std::string>& lines)
{
    for (const EntryRef& child : folder.children) {
        const std::string name = prefix + child->name;
        switch (child->kind) {
        case EntryKind::Folder:
            lines.push_back(name + "/");
            Describe(*child, name + "/", lines);
            break;
        case EntryKind::File: lines.push_back(name + "=" + child->bytes); break;
        case EntryKind::Link: lines.push_back(name + "->" + child->bytes); break;
        case EntryKind::Special: lines.push_back(name + "|"); break;
        }
    }
}

// Changes one entry that must be there.
template <class Change>
void Alter(std::string_view path, Change change)
{
    std::lock_guard guard(TheMemory().lock);
    const EntryRef entry = TheMemory().tree.Find(path, LastLink::Keep);
    if (!entry)
        return;
    change(*entry);
    TheMemory().TellChange(entry.get());
    TheMemory().TellChange(entry->parent);
}

} // namespace

MemoryState& TheMemory()
{
    static MemoryState memory;
    return memory;
}

bool MemoryState::UseBytes(int64_t bytes)
{
    if (freeBytes == withoutEnd)
        return true;
    if (bytes > freeBytes)
        return false;
    freeBytes -= bytes;
    return true;
}

VX3FileDate MemoryState::Now() const
{
    VX3FileDate date = {};
    base.run->currentDate(&date);
    return date;
}

MemoryFileSystem::MemoryFileSystem(const VX3Host* base)
{
    MemoryState& memory = TheMemory();
    std::lock_guard guard(memory.lock);
    memory.base = *base;
    memory.table = *base;
    memory.table.file = &memoryFileServices;
    memory.table.folder = &memoryFolderServices;
    memory.tree = MemoryTree();
    memory.tree.Root()->created = memory.tree.Root()->modified = memory.Now();
    memory.volumes = { { "/", "", 0, false } };
    memory.freeBytes = withoutEnd;
    memory.watches.clear();
    ResetCounts();
}

MemoryFileSystem::~MemoryFileSystem()
{
    std::lock_guard guard(TheMemory().lock);
    TheMemory().tree = MemoryTree();
}

const VX3Host* MemoryFileSystem::Table() const
{
    return &TheMemory().table;
}

void MemoryFileSystem::AddFolder(std::string_view path)
{
    std::lock_guard guard(TheMemory().lock);
    FolderAt(path);
}

void MemoryFileSystem::AddFile(std::string_view path, std::string_view bytes, const VX3FileDate& date)
{
    std::lock_guard guard(TheMemory().lock);
    Put(path, EntryKind::File, bytes, date);
}

void MemoryFileSystem::AddLink(std::string_view path, std::string_view target)
{
    std::lock_guard guard(TheMemory().lock);
    Put(path, EntryKind::Link, target, {});
}

void MemoryFileSystem::AddSpecial(std::string_view path)
{
    std::lock_guard guard(TheMemory().lock);
    Put(path, EntryKind::Special, {}, {});
}

void MemoryFileSystem::AddVolume(std::string_view path, std::string_view label, uint32_t attributes)
{
    std::lock_guard guard(TheMemory().lock);
    FolderAt(path)->isMountPoint = true;
    auto& volumes = TheMemory().volumes;
    std::erase_if(volumes, [&](const MemoryVolume& volume) { return volume.path == path; });
    volumes.push_back({ std::string(path), std::string(label), attributes, false });
}

void MemoryFileSystem::Remove(std::string_view path)
{
    std::lock_guard guard(TheMemory().lock);
    auto& memory = TheMemory();
    if (const EntryRef entry = memory.tree.Find(path, LastLink::Keep)) {
        memory.TellEnd(*entry);
        memory.TellChange(entry->parent);
        memory.tree.TakeOut(entry);
    }
    std::erase_if(memory.volumes, [&](const MemoryVolume& volume) { return volume.path == path; });
}

void MemoryFileSystem::SetDates(std::string_view path, const VX3FileDate& created, const VX3FileDate& modified)
{
    Alter(path, [&](TreeEntry& entry) {
        entry.created = created;
        entry.modified = modified;
    });
}

void MemoryFileSystem::SetReadOnly(std::string_view path, bool value)
{
    Alter(path, [&](TreeEntry& entry) { entry.isReadOnly = value; });
}

void MemoryFileSystem::SetHidden(std::string_view path, bool value)
{
    Alter(path, [&](TreeEntry& entry) { entry.isHidden = value; });
}

void MemoryFileSystem::SetBundle(std::string_view path, bool value)
{
    Alter(path, [&](TreeEntry& entry) { entry.isBundle = value; });
}

void MemoryFileSystem::SetUnreadable(std::string_view path, bool value)
{
    Alter(path, [&](TreeEntry& entry) { entry.isUnreadable = value; });
}

void MemoryFileSystem::SetListingOrder(std::string_view folder, const std::initializer_list<std::string_view>& names)
{
    const auto placeOf = [&](const EntryRef& entry) { return std::find(names.begin(), names.end(), entry->name); };
    Alter(folder, [&](TreeEntry& entry) {
        std::stable_sort(entry.children.begin(), entry.children.end(),
                         [&](const EntryRef& a, const EntryRef& b) { return placeOf(a) < placeOf(b); });
    });
}

void MemoryFileSystem::BreakListing(std::string_view folder, int64_t entries)
{
    Alter(folder, [&](TreeEntry& entry) { entry.listingFailsAt = entries; });
}

void MemoryFileSystem::FailProbe(std::string_view path, bool value)
{
    std::lock_guard guard(TheMemory().lock);
    for (MemoryVolume& volume : TheMemory().volumes) {
        if (volume.path == path)
            volume.failsProbe = value;
    }
}

void MemoryFileSystem::SetFreeBytes(int64_t bytes)
{
    std::lock_guard guard(TheMemory().lock);
    TheMemory().freeBytes = bytes;
}

void MemoryFileSystem::SetCaseSensitive(bool value)
{
    std::lock_guard guard(TheMemory().lock);
    TheMemory().tree.isCaseSensitive = value;
}

bool MemoryFileSystem::Exists(std::string_view path) const
{
    std::lock_guard guard(TheMemory().lock);
    return TheMemory().tree.Find(path, LastLink::Keep) != nullptr;
}

std::string MemoryFileSystem::BytesOf(std::string_view path) const
{
    std::lock_guard guard(TheMemory().lock);
    const EntryRef entry = TheMemory().tree.Find(path, LastLink::Follow);
    return entry && entry->kind == EntryKind::File ? entry->bytes : std::string();
}

std::string MemoryFileSystem::Listing(std::string_view folder) const
{
    std::lock_guard guard(TheMemory().lock);
    std::vector<std::string> lines;
    if (const EntryRef entry = TheMemory().tree.Find(folder, LastLink::Follow))
        Describe(*entry, "", lines);
    std::sort(lines.begin(), lines.end());
    std::string text;
    for (const std::string& line : lines)
        text += line + "\n";
    return text;
}

std::shared_ptr<const MemoryImage> MemoryFileSystem::Keep() const
{
    std::lock_guard guard(TheMemory().lock);
    return std::make_shared<MemoryImage>(MemoryImage{ TheMemory().tree.Clone(), TheMemory().volumes });
}

void MemoryFileSystem::Restore(const std::shared_ptr<const MemoryImage>& image)
{
    std::lock_guard guard(TheMemory().lock);
    TheMemory().TellEnd(*TheMemory().tree.Root());
    TheMemory().tree = image->tree.Clone();
    TheMemory().volumes = image->volumes;
}

int64_t MemoryFileSystem::CountOf(Asked what) const
{
    return TheMemory().counts[static_cast<std::size_t>(what)].load();
}

void MemoryFileSystem::ResetCounts()
{
    for (auto& count : TheMemory().counts)
        count.store(0);
}

} // namespace vx3::testing
