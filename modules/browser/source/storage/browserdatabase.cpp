#include "storage/browserdatabase.h"

#include "services/resources.h"
#include "storage/libraryfile.h"
#include "storage/libraryflush.h"
#include "storage/libraryload.h"
#include "storage/librarynames.h"
#include "storage/libraryrewrite.h"
#include "storage/librarytable.h"
#include "storage/libraryupgrade.h"

namespace browser {

namespace {

constexpr LockRank rank = LockRank::Library;

// Where payloads go that are not in the file. Made if it is not there.
bool FindImageFolder(const FilePath& file, const String& subFolder, FilePath& folder)
{
    if (!file.GetDirectory(folder) || !(subFolder.IsEmpty() ? folder.Append("image") : folder.Append(subFolder)))
        return false;
    return host->folder->exists(folder.Value()) || host->folder->createFolder(folder.Value());
}

} // namespace

BrowserDatabase::BrowserDatabase(const FilePath& path, const String& subFolder, uint32_t flags)
{
    (void)state.filePath.Set(path);
    state.dataInFile = (flags & LibraryExternal) == 0;
    if (!state.dataInFile && !FindImageFolder(path, subFolder, state.imagePath))
        state.imagePath.Clear();
    state.stamp = StampOf(path);
    state.isDetached = state.stamp.length >= 0;
    if (host->run->edition(VX3_EDITION_LIBRARIES_FIXED, nullptr) && (flags & LibraryMain) == 0)
        state.readOnly = state.protectedLibrary = true;
    state.slot = TakeSlot(*this, flags); // others see it from here on
}

// Nobody finds it or its items any more; then the last handles go, and then the items.
BrowserDatabase::~BrowserDatabase()
{
    const int32_t slot = GetSlot();
    GiveSlot(slot);
    {
        const WriteGuard guard(lock, rank);
        state.slot = noSlot;
        LeaveIndex();
    }
    WaitForHandles();
    state.items.Clear();
    if (slot != noSlot)
        FreeTableIfEmpty();
}

// Handles are short-lived; one that is held by another thread is given back soon.
void BrowserDatabase::WaitForHandles()
{
    while (handles.load(std::memory_order_acquire) > 0)
        host->thread->sleep(1);
}

void BrowserDatabase::NoteChanged(ItemRecord& record)
{
    record.isChanged = true;
    state.dirty = true;
    state.items.NoteChanged(record);
}

// --- The file ---

bool BrowserDatabase::CreateEmptyFile()
{
    const WriteGuard guard(lock, rank);
    return browser::CreateEmptyFile(state);
}

bool BrowserDatabase::Load()
{
    {
        const WriteGuard guard(lock, rank);
        if (!ScanLibrary(state, this))
            return false;
    }
    String suffix;
    const String name = FindFreeName(suffix); // asks the other libraries, so without this one's lock
    if (TakeItems(name, suffix))
        return true;
    DropItems();
    return false;
}

bool BrowserDatabase::TakeItems(const String& name, const String& suffix)
{
    const WriteGuard guard(lock, rank);
    if (!suffix.IsEmpty())
        TakeName(name, suffix);
    if (!EnterItems()) {
        LeaveIndex();
        state.isDetached = true;
        return false;
    }
    if (state.damaged)
        state.dirty = state.rewriteWanted = true;
    UpgradeLibrary(state);
    return true;
}

// An item that cannot be found would be made a second time.
void BrowserDatabase::DropItems()
{
    for (;;) {
        WaitForHandles();
        const WriteGuard guard(lock, rank);
        LeaveIndex(); // somebody may have made one meanwhile
        if (handles.load(std::memory_order_acquire) == 0)
            return state.items.Clear();
    }
}

void BrowserDatabase::LeaveIndex()
{
    for (size_t place = state.items.PlaceCount(); place > 0; place--)
        if (ItemRecord* record = state.items.At(place - 1))
            (void)TakeFromIndex(*record);
}

// Files below version 7 have other hashes.
bool BrowserDatabase::EnterItems()
{
    bool (*isReadOnly)(const ItemRecord&) = [](const ItemRecord& record) { return record.owner->state.readOnly.load(); };
    bool areEntered = true;
    for (size_t place = 0; place < state.items.PlaceCount(); place++) {
        ItemRecord* record = state.items.At(place);
        if (!record || record->state != ItemState::Live)
            continue;
        if (state.version < currentVersion) {
            const String path = record->GetPath();
            areEntered = record->SetPath(path, PathHash(path)) && areEntered;
            NoteChanged(*record);
        }
        BrowserHashNode* node = IndexItem(*record, record->GetPathHash());
        areEntered = areEntered && node;
        if (!node)
            continue;
        node->AddUses(*record, -1);
        node->PutBefore(*record, isReadOnly);
    }
    return areEntered;
}

bool BrowserDatabase::Flush(Force force, AllowRewrite allowRewrite, IgnoreReadOnly ignoreReadOnly)
{
    const WriteGuard guard(lock, rank);
    return FlushLocked(force, allowRewrite, ignoreReadOnly);
}

bool BrowserDatabase::FlushLocked(Force force, AllowRewrite allowRewrite, IgnoreReadOnly ignoreReadOnly)
{
    if (state.readOnly && ignoreReadOnly == IgnoreReadOnly::No)
        return true;
    if (force == Force::No && !state.dirty)
        return true;
    if (!WriteLocked())
        return false;
    return !state.rewriteWanted || allowRewrite == AllowRewrite::No || RewriteLocked();
}

bool BrowserDatabase::WriteLocked()
{
    const bool isDue = std::exchange(state.mustRewrite, false);
    state.hasLostPayload = false;
    if (isDue && !RewriteLibrary(state)) {
        state.mustRewrite = true;
        return false;
    }
    const bool hasLost = isDue && state.hasLostPayload; // told once, with all else written
    if (!OpenForUpdate(state))
        return false;
    const bool isWritten = WriteChanges(state);
    const bool isClosed = CloseAfterUpdate(state);
    state.dirty = state.dirty || !isClosed;
    return isWritten && isClosed && !hasLost;
}

bool BrowserDatabase::RewriteLocked()
{
    state.rewriteWanted = false;
    return RewriteLibrary(state);
}

void BrowserDatabase::FlushDirty()
{
    (void)Flush();
}

bool BrowserDatabase::FreezeReadOnly(bool rewrite)
{
    const WriteGuard guard(lock, rank);
    if (state.readOnly)
        return true;
    state.readOnly = true;
    state.infoDirty = state.dirty = true;
    state.rewriteWanted = state.rewriteWanted || rewrite;
    if (FlushLocked(Force::Yes, AllowRewrite::Yes, IgnoreReadOnly::Yes))
        return true;
    state.readOnly = false; // so that what is not written yet still can be
    return false;
}

void BrowserDatabase::ClearReadOnly()
{
    const WriteGuard guard(lock, rank);
    if (state.protectedLibrary || !state.readOnly)
        return;
    state.readOnly = false;
    state.infoDirty = state.dirty = true;
}

bool BrowserDatabase::Compact()
{
    const WriteGuard guard(lock, rank);
    state.rewriteWanted = true;
    if (state.readOnly)
        return true;
    return WriteLocked() && RewriteLocked();
}

// A library in which nothing was ever kept leaves no file behind.
bool BrowserDatabase::FlushAtEnd(bool compact)
{
    const WriteGuard guard(lock, rank);
    if (state.endOffset == 0 && state.itemCount == 0 && state.stamp.length < 0)
        return true;
    return FlushLocked(Force::No, compact ? AllowRewrite::Yes : AllowRewrite::No, IgnoreReadOnly::No);
}

bool BrowserDatabase::HoldFile()
{
    const WriteGuard guard(lock, rank);
    return !state.readOnly && OpenForUpdate(state);
}

bool BrowserDatabase::ReleaseFile()
{
    const WriteGuard guard(lock, rank);
    const bool isClosed = state.openCount == 0 || CloseAfterUpdate(state);
    state.dirty = state.dirty || !isClosed;
    return isClosed;
}

// --- What it is like ---

String BrowserDatabase::GetLibraryName() const
{
    const ReadGuard guard(lock, rank);
    return state.libraryName;
}

FilePath BrowserDatabase::GetFilePath() const
{
    const ReadGuard guard(lock, rank);
    return state.filePath;
}

int32_t BrowserDatabase::GetSlot() const
{
    const ReadGuard guard(lock, rank);
    return state.slot;
}

int32_t BrowserDatabase::CountItems() const
{
    const ReadGuard guard(lock, rank);
    return state.itemCount;
}

bool BrowserDatabase::IsReadOnly() const
{
    const ReadGuard guard(lock, rank);
    return state.readOnly;
}

bool BrowserDatabase::IsDirty() const
{
    const ReadGuard guard(lock, rank);
    return state.dirty;
}

bool BrowserDatabase::HasFile() const
{
    const ReadGuard guard(lock, rank);
    return state.endOffset != 0;
}

bool BrowserDatabase::IsDamaged() const
{
    const ReadGuard guard(lock, rank);
    return state.damaged;
}

bool BrowserDatabase::NeedsRewrite() const
{
    const ReadGuard guard(lock, rank);
    return state.rewriteWanted;
}

bool BrowserDatabase::IsReferenceCopy() const
{
    const ReadGuard guard(lock, rank);
    return state.referenceCopy;
}

bool BrowserDatabase::TakeDamaged(bool clear)
{
    const WriteGuard guard(lock, rank);
    return clear ? std::exchange(state.damaged, false) : state.damaged;
}

void BrowserDatabase::MarkReadOnly()
{
    state.readOnly = true;
}

void BrowserDatabase::MarkProtected()
{
    const WriteGuard guard(lock, rank);
    state.readOnly = state.protectedLibrary = true;
}

void BrowserDatabase::MarkReferenceCopy()
{
    const WriteGuard guard(lock, rank);
    state.referenceCopy = true;
}

int32_t BrowserDatabase::AttachCount() const
{
    const ReadGuard guard(lock, rank);
    return state.attachCount;
}

void BrowserDatabase::Attach(int32_t difference)
{
    const WriteGuard guard(lock, rank);
    state.attachCount += difference;
}

} // namespace browser
