#include "nodes/directorynode.h"

#include "model/pluginregistry.h"
#include "model/upcalls.h"
#include "nodes/directorylisting.h"
#include "services/resources.h"

namespace browser {

DirectoryNode::DirectoryNode(DirectoryEntry&& entry)
    : BrowserContentNode(NodeClass::Directory, entry.flags)
    , path(std::move(entry.path))
    , name(std::move(entry.name))
    , createdDate(entry.created)
    , modifiedDate(entry.modified)
    , sizeOrGeneration(entry.flags & (Attribute::folder | Attribute::bundle) ? 0 : entry.size)
{
    InitIndexKey(entry.urlHash, entry.urlLength);
}

FilePath DirectoryNode::GetPath()
{
    LockGuard guard(fieldLock, LockRank::Node);
    return path;
}

bool DirectoryNode::HasPath(const FilePath& other)
{
    LockGuard guard(fieldLock, LockRank::Node);
    return path == other;
}

bool DirectoryNode::HasName(const String& other)
{
    LockGuard guard(fieldLock, LockRank::Node);
    return name == other;
}

FilePath DirectoryNode::PathOfChild(const String& childName)
{
    FilePath child = GetPath();
    (void)child.Append(childName);
    return child;
}

String DirectoryNode::GetUrlText()
{
    BrowserURL url(GetPath());
    return url.GetText();
}

void DirectoryNode::GetName(String& out)
{
    LockGuard guard(fieldLock, LockRank::Node);
    out = name;
}

bool DirectoryNode::GetUrl(BrowserURL& out, uint32_t)
{
    out.SetFile(GetPath());
    out.SetHash(IndexHash());
    return true;
}

bool DirectoryNode::GetDate(DateKind kind, FileDate& out)
{
    LockGuard guard(fieldLock, LockRank::Node);
    switch (kind) {
    case DateKind::Created: out = createdDate; return true;
    case DateKind::Modified:
    case DateKind::ModifiedToo: out = modifiedDate; return true;
    }
    return false;
}

uint32_t DirectoryNode::GetAttributes(int64_t* size)
{
    uint32_t attributes = Flags();
    if (size)
        *size = attributes & (Attribute::folder | Attribute::bundle) ? 0 : Generation();
    return attributes;
}

void DirectoryNode::GetTypeName(String& out, TypeDetail detail)
{
    if (BrowserPluginInterface* own = GetPlugin(PLUGIN_QUICK_TEST))
        own->GetTypeName(out, ContentRef(this), nullptr, detail);
    else
        out = ResourceText(Texts::UnknownType);
}

// A result from the URL alone is replaced once, by the first request that reads the
// file; a failed test of the URL leaves no plugin behind, so it is made again.
BrowserPluginInterface* DirectoryNode::GetPlugin(uint32_t request)
{
    if (IsFolder())
        return knownPlugins.folder;
    const bool quick = (request & PLUGIN_QUICK_TEST) != 0;
    BrowserPluginInterface* cached = plugin.load(std::memory_order_acquire);
    if (cached && (quick || !HasFlags(Attribute::quickPlugin)))
        return cached == NoPlugin() ? nullptr : cached;

    BrowserURL url;
    BrowserPluginInterface* found = nullptr;
    GetUrl(url, 0);
    if (FindPluginForUrl(url, quick ? PluginTest::Quick : PluginTest::Deep, &found)) {
        plugin.store(found, std::memory_order_release);
        quick ? SetFlags(Attribute::quickPlugin) : ClearFlags(Attribute::quickPlugin);
        return found;
    }
    if (!quick) {
        plugin.store(NoPlugin(), std::memory_order_release);
        SetFlags(Attribute::noPlugin);
        return nullptr;
    }
    if (cached != NoPlugin())
        return cached;
    SetFlags(Attribute::noPlugin);
    return nullptr;
}

Preview* DirectoryNode::GetPreview(uint32_t request, int32_t size)
{
    const uint32_t attributes = Flags();
    const bool readOnly = (attributes & Attribute::readOnly) != 0;
    if (attributes & Attribute::volume)
        return MakeIcon(Icon::Drives, size);
    if (attributes & Attribute::folder) {
        if (request & PreviewRequest::open)
            return MakeIcon(readOnly ? Icon::FolderOpenLocked : Icon::FolderOpen, size);
        return MakeIcon(readOnly ? Icon::FolderLocked : Icon::Folder, size);
    }
    if (BrowserPluginInterface* own = GetPlugin(PLUGIN_QUICK_TEST)) {
        BrowserURL url;
        GetUrl(url, 0);
        if (Preview* icon = own->GetTypeIcon(url, size))
            return icon;
    }
    return MakeIcon(Icon::Document, size);
}

void DirectoryNode::GetFirstChild(NodeRef& out)
{
    if (HasFlags(Attribute::dirty) && IsFolder())
        ListIfNeeded();
    GetFirstChildLinked(out);
}

void DirectoryNode::GetLastChild(NodeRef& out)
{
    if (HasFlags(Attribute::dirty) && IsFolder())
        ListIfNeeded();
    GetLastChildLinked(out);
}

int64_t DirectoryNode::Populate()
{
    if (IsFolder())
        ListIfNeeded();
    return HasFlags(Attribute::folder | Attribute::bundle) ? Generation() : 0;
}

// Outside any lock, since a volume may take seconds to answer.
bool DirectoryNode::IsVolumeSilent()
{
    if (!HasFlags(Attribute::volume))
        return false;
    if (HasFlags(Attribute::neverProbed))
        return true;
    FilePath volume = GetPath();
    return !host->folder->probeVolume(volume.Value());
}

void DirectoryNode::ListIfNeeded()
{
    if (IsRemoved() || IsVolumeSilent())
        return;
    LockGuard guard(contentLock, LockRank::Content);
    if (IsRemoved())
        return;
    NodeRef child;
    GetFirstChildLinked(child);
    if (!HasFlags(Attribute::volume) || child || HasFlags(Attribute::dirty))
        (void)NoteDate();
    // Another thread may have listed while this one waited for the lock.
    if (Generation() != 0 && !HasFlags(Attribute::dirty))
        return;
    DirectoryListing(*this).Run();
    RaiseGeneration();
}

// Compares the date on disk with the stored one; a change makes the folder dirty.
bool DirectoryNode::NoteDate()
{
    FileDate date = {};
    FilePath folder = GetPath();
    (void)host->folder->date(folder.Value(), VX3_DATE_MODIFIED, &date);
    LockGuard guard(fieldLock, LockRank::Node);
    if (CompareDates(date, modifiedDate) == 0)
        return false;
    modifiedDate = date;
    SetFlags(Attribute::dirty);
    return true;
}

uint32_t FlagsOfNewEntry(uint32_t entryFlags)
{
    uint32_t flags = entryFlags & VX3_ENTRY_FOLDER ? Attribute::folder | Attribute::dirty : 0;
    if (entryFlags & VX3_ENTRY_BUNDLE)
        flags = Attribute::bundle;
    if (entryFlags & VX3_ENTRY_READONLY)
        flags |= Attribute::readOnly;
    return flags;
}

void DirectoryNode::RefreshFrom(const DirectoryEntry& entry)
{
    constexpr uint32_t kind = Attribute::folder | Attribute::bundle;
    if ((Flags() & kind) != (entry.flags & kind))
        return ChangeKind(entry);
    LockGuard guard(fieldLock, LockRank::Node);
    if (entry.flags & kind)
        RefreshFolder(entry);
    else
        RefreshFile(entry);
}

// A known plugin is kept even if the file has changed.
void DirectoryNode::RefreshFile(const DirectoryEntry& entry)
{
    bool changed =
        CompareDates(entry.created, createdDate) != 0 || CompareDates(entry.modified, modifiedDate) != 0 || entry.size != Generation();
    createdDate = entry.created;
    modifiedDate = entry.modified;
    sizeOrGeneration.store(entry.size, std::memory_order_release);
    BrowserPluginInterface* cached = plugin.load(std::memory_order_acquire);
    if (changed && (!cached || cached == NoPlugin()))
        ForgetPlugin();
    ReplaceFlags(entry.flags);
}

void DirectoryNode::RefreshFolder(const DirectoryEntry& entry)
{
    uint32_t newFlags = entry.flags & ~Attribute::dirty;
    createdDate = entry.created;
    // Kept: a folder is compared on its creation date held in the modification field,
    // although a new child stores its modification date there. A folder whose dates
    // differ is thus listed again when next asked, once for each listing of its parent.
    if (CompareDates(entry.created, modifiedDate) != 0) {
        RaiseGeneration();
        modifiedDate = entry.created;
        newFlags |= Attribute::dirty;
    }
    // A folder that was never listed, or was to be listed, stays so.
    if (Generation() == 0 || HasFlags(Attribute::dirty))
        newFlags |= Attribute::dirty;
    ReplaceFlags(newFlags);
}

// A file has become a folder, a folder a file: what was known below it is void.
void DirectoryNode::ChangeKind(const DirectoryEntry& entry)
{
    RemoveChildren();
    LockGuard guard(fieldLock, LockRank::Node);
    createdDate = entry.created;
    modifiedDate = entry.modified;
    sizeOrGeneration.store(entry.flags & (Attribute::folder | Attribute::bundle) ? 0 : entry.size, std::memory_order_release);
    ForgetPlugin();
    ReplaceFlags(entry.flags);
}

// Overwrites the flags but for the one that a removal may set at the same moment.
void DirectoryNode::ReplaceFlags(uint32_t newFlags)
{
    uint32_t old = flags.load(std::memory_order_acquire);
    while (!flags.compare_exchange_weak(old, newFlags | (old & Attribute::removed), std::memory_order_acq_rel))
        continue;
}

void DirectoryNode::SetPath(const FilePath& newPath, const String* newName)
{
    BrowserURL url(newPath);
    uint32_t hash = url.GetHash();
    auto length = static_cast<uint32_t>(url.GetText().Length());
    {
        LockGuard guard(fieldLock, LockRank::Node);
        path = newPath;
        if (newName)
            name = *newName;
    }
    SetIndexKey(hash, length);
}

// The prefix is replaced in the text of the URL; a node that was listed under the new
// prefix already is left alone.
void DirectoryNode::UpdateUrlPrefix(const String& oldPrefix, const String& newPrefix, bool)
{
    String text = GetUrlText();
    int32_t length = oldPrefix.Length();
    bool isBelow =
        host->text->matchesAt(text.Value(), 0, oldPrefix.Value(), false) && (text.Length() == length || text.View()[size_t(length)] == '/');
    if (!isBelow)
        return;
    String moved = newPrefix;
    if (!moved.Append(text.Part(length)))
        return;
    BrowserURL url(moved);
    SetPath(url.GetFileCopy(), nullptr);
}

} // namespace browser
