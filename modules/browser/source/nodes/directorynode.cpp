#include "nodes/directorynode.h"

#include "model/pluginregistry.h"
#include "model/upcalls.h"
#include "nodes/directorylisting.h"
#include "services/resources.h"

namespace browser {

bool MakeAddress(const FilePath& folder, const String& name, DirectoryAddress& out)
{
    return !folder.IsEmpty() && out.path.SetJoined(folder, name) && out.name.Set(name) && BrowserURL::KeyOfFile(out.path, out.key);
}

bool MakeAddress(const FilePath& path, DirectoryAddress& out)
{
    return !path.IsEmpty() && out.path.Set(path) && path.GetLast(out.name) && BrowserURL::KeyOfFile(path, out.key);
}

DirectoryNode::DirectoryNode(DirectoryEntry&& entry)
    : BrowserContentNode(NodeClass::Directory, entry.flags)
    , path(std::move(entry.address.path))
    , name(std::move(entry.address.name))
    , createdDate(entry.created)
    , modifiedDate(entry.modified)
    , sizeOrGeneration(entry.flags & (Attribute::folder | Attribute::bundle) ? 0 : entry.size)
{
    InitIndexKey(entry.address.key.hash, entry.address.key.length);
}

FilePath DirectoryNode::GetPath()
{
    LockGuard guard(fieldLock, LockRank::Node);
    return path;
}

bool DirectoryNode::ReadPath(FilePath& out)
{
    LockGuard guard(fieldLock, LockRank::Node);
    return out.Set(path) && !out.IsEmpty();
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

void DirectoryNode::GetName(String& out)
{
    LockGuard guard(fieldLock, LockRank::Node);
    out = name;
}

// Path and hash belong together, so they are read in one hold.
bool DirectoryNode::GetUrl(BrowserURL& out, uint32_t)
{
    LockGuard guard(fieldLock, LockRank::Node);
    out.SetFile(path);
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
    uint32_t attributes = Flags() & ~Attribute::addressChanging;
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
        KeepPlugin(found, quick);
        quick ? SetFlags(Attribute::quickPlugin) : ClearFlags(Attribute::quickPlugin);
        return found;
    }
    if (!quick) {
        KeepPlugin(NoPlugin(), quick);
        SetFlags(Attribute::noPlugin);
        return nullptr;
    }
    if (cached != NoPlugin())
        return cached;
    SetFlags(Attribute::noPlugin);
    return nullptr;
}

// What the URL alone says was the answer before it was kept, too.
void DirectoryNode::KeepPlugin(BrowserPluginInterface* found, bool quick)
{
    BrowserPluginInterface* before = plugin.exchange(found, std::memory_order_acq_rel);
    if (before != found && (before || !quick))
        NoteContentChange();
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
    FilePath volume;
    return !ReadPath(volume) || !host->folder->probeVolume(volume.Value());
}

void DirectoryNode::ListIfNeeded()
{
    if (IsRemoved() || IsVolumeSilent())
        return;
    LockGuard guard(contentLock, LockRank::Content);
    if (HasFlags(Attribute::removed | Attribute::addressChanging))
        return;
    NodeRef child;
    GetFirstChildLinked(child);
    if (!HasFlags(Attribute::volume) || child || HasFlags(Attribute::dirty))
        NoteDate();
    // Another thread may have listed while this one waited for the lock.
    if (Generation() != 0 && !HasFlags(Attribute::dirty))
        return;
    DirectoryListing(*this).Run();
    if (IsFolder())
        RaiseGeneration();
}

// Compares the date on disk with the stored one; a change makes the folder dirty.
void DirectoryNode::NoteDate()
{
    FileDate date = {};
    FilePath folder;
    if (!ReadPath(folder))
        return;
    (void)host->folder->date(folder.Value(), VX3_DATE_MODIFIED, &date);
    LockGuard guard(fieldLock, LockRank::Node);
    if (CompareDates(date, modifiedDate) == 0)
        return;
    modifiedDate = date;
    MarkDirty();
    NoteContentChange();
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

bool DirectoryNode::RefreshFrom(const DirectoryEntry& entry)
{
    constexpr uint32_t kind = Attribute::folder | Attribute::bundle;
    if ((Flags() & kind) != (entry.flags & kind))
        return ChangeKind(entry);
    LockGuard guard(fieldLock, LockRank::Node);
    if (entry.flags & kind)
        RefreshFolder(entry);
    else
        RefreshFile(entry);
    return true;
}

// A known plugin is kept even if the file has changed.
void DirectoryNode::RefreshFile(const DirectoryEntry& entry)
{
    const bool changed = CompareDates(entry.modified, modifiedDate) != 0 || entry.size != Generation();
    const bool isOther = changed || CompareDates(entry.created, createdDate) != 0;
    createdDate = entry.created;
    modifiedDate = entry.modified;
    sizeOrGeneration.store(entry.size, std::memory_order_release);
    BrowserPluginInterface* cached = plugin.load(std::memory_order_acquire);
    if (changed && (!cached || cached == NoPlugin()))
        ForgetPlugin();
    ReplaceFlags(entry.flags, 0);
    if (isOther)
        NoteContentChange();
}

void DirectoryNode::RefreshFolder(const DirectoryEntry& entry)
{
    uint32_t newFlags = entry.flags & ~Attribute::dirty;
    const bool isOther = CompareDates(entry.created, createdDate) != 0 || CompareDates(entry.created, modifiedDate) != 0;
    createdDate = entry.created;
    // Kept: a folder is compared on its creation date held in the modification field,
    // although a new child stores its modification date there. A folder whose dates
    // differ is thus listed again when next asked, once for each listing of its parent.
    if (CompareDates(entry.created, modifiedDate) != 0) {
        RaiseGeneration();
        modifiedDate = entry.created;
        newFlags |= Attribute::dirty;
    }
    // A folder that was never listed, or is to be listed, stays so.
    if (Generation() == 0)
        newFlags |= Attribute::dirty;
    ReplaceFlags(newFlags, Attribute::dirty);
    if (isOther)
        NoteContentChange();
}

// A file has become a folder, a folder a file: what was known below it is void. A folder
// that is being listed at this moment is asked again later.
bool DirectoryNode::ChangeKind(const DirectoryEntry& entry)
{
    if (!contentLock.Try(LockRank::ContentSecond))
        return false;
    RemoveChildren();
    {
        LockGuard guard(fieldLock, LockRank::Node);
        createdDate = entry.created;
        modifiedDate = entry.modified;
        sizeOrGeneration.store(entry.flags & (Attribute::folder | Attribute::bundle) ? 0 : entry.size, std::memory_order_release);
        ForgetPlugin();
        ReplaceFlags(entry.flags, 0);
        NoteContentChange();
    }
    contentLock.Unlock();
    return true;
}

// Overwrites the flags but for those that others set at the same moment.
void DirectoryNode::ReplaceFlags(uint32_t newFlags, uint32_t carried)
{
    carried |= Attribute::removed | Attribute::addressChanging;
    uint32_t old = flags.load(std::memory_order_acquire);
    while (!flags.compare_exchange_weak(old, newFlags | (old & carried), std::memory_order_acq_rel))
        continue;
    NoteChangedFlags((old ^ newFlags) & ~carried);
}

void DirectoryNode::SetAddress(DirectoryAddress&& address)
{
    LockGuard guard(fieldLock, LockRank::Node);
    path = std::move(address.path);
    name = std::move(address.name);
    SetIndexKey(address.key.hash, address.key.length);
    NoteContentChange();
}

// A node that cannot keep its address must not go on under an old one, where another
// file may stand now: it leaves the tree, and the next listing makes it anew.
void DirectoryNode::LoseAddress()
{
    NodeRef above;
    GetParent(above);
    if (above)
        ContentOf(above)->MarkDirty();
    Remove();
}

// The prefix is replaced in the text of the URL; a node that was listed under the new
// prefix already is left alone.
void DirectoryNode::UpdateUrlPrefix(const String& oldPrefix, const String& newPrefix, bool)
{
    FilePath oldPath, newPath;
    if (!ReadPath(oldPath))
        return LoseAddress();
    BrowserURL old(oldPath);
    const String& text = old.GetText();
    const int32_t length = oldPrefix.Length();
    if (text.IsEmpty())
        return LoseAddress();
    bool isBelow =
        host->text->matchesAt(text.Value(), 0, oldPrefix.Value(), false) && (text.Length() == length || text.View()[size_t(length)] == '/');
    if (!isBelow)
        return;
    String moved, rest(text.View().subspan(size_t(length)));
    if (!moved.Set(newPrefix) || !moved.Append(rest) || moved.Length() != newPrefix.Length() + text.Length() - length)
        return LoseAddress();
    BrowserURL url(moved);
    DirectoryAddress address;
    if (url.GetText().Length() != moved.Length() || !url.GetFile(newPath) || !MakeAddress(newPath, address))
        return LoseAddress();
    SetAddress(std::move(address));
}

} // namespace browser
