// Items by their paths: found over all libraries, made, moved, deleted.
//
// A search locks a node of the index and counts what it found there. What is done with that is
// done behind it, under the lock of its library alone. So there are never two libraries locked,
// whoever owns an item.

#include "storage/browserdatabaseitem.h"
#include "storage/librarytable.h"

namespace browser {

namespace {

constexpr LockRank rank = LockRank::Library;
constexpr bool exactly = false; // paths are the same whatever their case

// A record with one use of its entry, and its library, which stays as long as this.
struct FoundItem {
    LibraryRef library;
    ItemRecord* record = nullptr;
};

// A record with a use stays, and a library takes its items out of the index before it waits for
// those who count on it: so both are counted while the item is seen in its node.
FoundItem UseItem(const String& path, uint32_t hash)
{
    const HashSearch node(hash);
    if (!node)
        return {};
    const ReadGuard guard(node->nodeLock, LockRank::HashNode);
    HashEntry* entry = node->FindEntryLocked(path, exactly);
    if (!entry)
        return {};
    entry->uses.fetch_add(1, std::memory_order_relaxed);
    entry->record->owner->CountHandle(1);
    return { LibraryRef(entry->record->owner), entry->record };
}

BrowserDatabaseItem* MakeHandle(const FoundItem& found)
{
    if (auto* handle = Make<BrowserDatabaseItem>()(*found.library.Get(), *found.record))
        return handle;
    const BrowserDatabaseItem givenBack(*found.library.Get(), *found.record);
    return nullptr;
}

BrowserDatabaseItem* WritableOrNone(BrowserDatabaseItem* item)
{
    if (item && item->IsWritable())
        return item;
    delete item;
    return nullptr;
}

bool IsKnown(const String& path, uint32_t hash)
{
    const HashSearch node(hash);
    if (!node)
        return false;
    const ReadGuard guard(node->nodeLock, LockRank::HashNode);
    return node->FindEntryLocked(path, exactly) != nullptr;
}

// With the lock of its library held, which keeps it in its node.
BrowserHashNode& NodeOf(const ItemRecord& record)
{
    return *record.node.load(std::memory_order_acquire);
}

// With the lock of its library held: it may be changed, and nobody was faster.
bool IsStillAt(const FoundItem& found, const String& path)
{
    return !found.library->State().readOnly && found.record->state == ItemState::Live && found.record->node.load()
        && found.record->HasPath(path, exactly);
}

// --- Moving: all memory is taken before anything changes ---

// Of another item; the record itself is no conflict, so that only the case may change.
bool IsTaken(BrowserHashNode& node, const String& path, const ItemRecord& moved)
{
    const HashEntry* other = node.FindEntryLocked(path, exactly);
    return other && other->record != &moved;
}

bool RenameInNode(ItemRecord& record, const String& path, ItemPlace& place)
{
    BrowserHashNode& node = NodeOf(record);
    const WriteGuard guard(node.nodeLock, LockRank::HashNode);
    if (IsTaken(node, path, record))
        return false;
    place.Take();
    return true;
}

// Its users go with it.
bool MoveToNode(ItemRecord& record, const String& path, BrowserHashNode& target, ItemPlace& place)
{
    BrowserHashNode& source = NodeOf(record);
    const WriteGuard sourceGuard(source.nodeLock, LockRank::HashNode);
    const WriteGuard targetGuard(target.nodeLock, LockRank::HashNodeSecond);
    if (IsTaken(target, path, record) || !target.TakeOverLocked(record, source))
        return false;
    place.Take();
    return true;
}

bool MoveRecord(ItemRecord& record, const String& path)
{
    const LockGuard moving(ItemMoveLock(), LockRank::ItemMove);
    const uint32_t hash = PathHash(path);
    ItemPlace place;
    if (!place.Prepare(record, path, hash))
        return false;
    if (NodeOf(record).hash == hash)
        return RenameInNode(record, path, place);
    BrowserHashNode* target = DemandNode(hash);
    return target && MoveToNode(record, path, *target, place);
}

} // namespace

// --- Finding ---

BrowserDatabaseItem* FindItem(const String& path, uint32_t hash)
{
    const FoundItem found = UseItem(path, hash);
    return found.record ? MakeHandle(found) : nullptr;
}

BrowserDatabaseItem* FindItem(const String& path)
{
    return FindItem(path, PathHash(path));
}

BrowserDatabaseItem* FindWritableItem(const String& path)
{
    return WritableOrNone(FindItem(path));
}

// --- Changing ---

// What is created by another thread meanwhile is found.
BrowserDatabaseItem* BrowserDatabase::OpenItem(const String& path, Force force)
{
    const uint32_t hash = PathHash(path);
    for (;;) {
        const FoundItem found = UseItem(path, hash);
        if (found.record)
            return force == Force::Yes ? MakeHandle(found) : WritableOrNone(MakeHandle(found));
        const WriteGuard guard(lock, rank);
        if (state.readOnly && force == Force::No)
            return nullptr;
        if (IsKnown(path, hash))
            continue;
        return CreateItem(path, hash);
    }
}

// Others find it as soon as it is in the index, so that comes last.
BrowserDatabaseItem* BrowserDatabase::CreateItem(const String& path, uint32_t hash)
{
    void* handle = HostAlloc(sizeof(BrowserDatabaseItem), SourcePlace::Here());
    ItemRecord* record = handle && state.nextItemId >= firstItemId ? state.items.Add(state.nextItemId, this) : nullptr;
    if (!record || !record->values.SetId(record->id) || !record->SetPath(path, hash) || !IndexItem(*record, hash)) {
        if (record)
            state.items.Remove(*record);
        HostFree(handle);
        return nullptr;
    }
    state.nextItemId = static_cast<int32_t>(static_cast<uint32_t>(record->id) + 1);
    state.itemCount++;
    NoteChanged(*record);
    return ::new (handle) BrowserDatabaseItem(*this, *record);
}

bool BrowserDatabase::MoveItem(const String& from, const String& to)
{
    const FoundItem found = UseItem(from, PathHash(from));
    if (!found.record)
        return false;
    BrowserDatabase& owner = *found.library.Get();
    const BrowserDatabaseItem handle(owner, *found.record); // gives the use back behind the lock
    const WriteGuard guard(owner.lock, rank);
    if (!IsStillAt(found, from) || !MoveRecord(*found.record, to))
        return false;
    owner.NoteChanged(*found.record);
    return true;
}

// The last handle takes the item out of the index, and that may be this one.
bool BrowserDatabase::DeleteItem(const String& path)
{
    const FoundItem found = UseItem(path, PathHash(path));
    if (!found.record)
        return false;
    BrowserDatabase& owner = *found.library.Get();
    const BrowserDatabaseItem handle(owner, *found.record);
    const WriteGuard guard(owner.lock, rank);
    if (!IsStillAt(found, path))
        return false;
    {
        const WriteGuard nodeGuard(NodeOf(*found.record).nodeLock, LockRank::HashNode);
        found.record->state = ItemState::DeletePending;
    }
    owner.state.itemCount--;
    owner.NoteChanged(*found.record);
    return true;
}

} // namespace browser
