// Items by their paths: found over all libraries, made, moved, deleted.
//
// A search locks a node of the index and then the library of what it found, one behind the
// other; what it found is looked at again under the second lock. So there are never two
// libraries locked, whoever owns an item.

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
    int32_t id = 0;
};

// A library takes its items out of the index before it waits for those who count on it, so
// one that is counted while its item is in a node is still there afterwards.
FoundItem LookInto(BrowserHashNode& node, const String& path)
{
    const ReadGuard guard(node.nodeLock, LockRank::HashNode);
    ItemRecord* record = node.FindEntryLocked(path, exactly);
    if (!record)
        return {};
    record->owner->CountHandle(1);
    return { LibraryRef(record->owner), record, record->id };
}

// False if the item was deleted or moved meanwhile; the record may be gone then.
bool TakeUse(BrowserHashNode& node, const FoundItem& found)
{
    const ReadGuard guard(found.library->Lock(), rank);
    if (found.library->State().items.Find(found.id) != found.record || found.record->node != &node
        || found.record->state != ItemState::Live)
        return false;
    node.AddUses(*found.record, 1);
    return true;
}

FoundItem UseItem(const String& path, uint32_t hash)
{
    while (BrowserHashNode* node = FindNode(hash)) {
        FoundItem found = LookInto(*node, path);
        if (!found.record || TakeUse(*node, found))
            return found;
    }
    return {};
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
    BrowserHashNode* node = FindNode(hash);
    if (!node)
        return false;
    const ReadGuard guard(node->nodeLock, LockRank::HashNode);
    return node->FindEntryLocked(path, exactly) != nullptr;
}

void DiscardItem(LibraryState& library, ItemRecord& record)
{
    UnindexItem(record);
    library.items.Remove(record);
    library.itemCount--;
}

// With the lock of its library held: it may be changed, and nobody was faster.
bool IsStillAt(const FoundItem& found, const String& path)
{
    return !found.library->State().readOnly && found.record->state == ItemState::Live && found.record->node
        && found.record->HasPath(path, exactly);
}

// --- Moving: all memory is taken before anything changes ---

bool MakePlace(const ItemRecord& record, const String& path, uint32_t hash, BaseContainer& place)
{
    const BaseContainer* old = record.values.GetContainer(ItemPath);
    return old && place.Set(*old) && place.SetText(PathText, path) && place.SetInt32(PathHashValue, static_cast<int32_t>(hash));
}

// Of another item; the record itself is no conflict, so that only the case may change.
bool IsTaken(const BrowserHashNode& node, const String& path, const ItemRecord& moved)
{
    const ItemRecord* other = node.FindEntryLocked(path, exactly);
    return other && other != &moved;
}

bool RenameInNode(ItemRecord& record, const String& path, BaseContainer& place)
{
    const WriteGuard guard(record.node->nodeLock, LockRank::HashNode);
    if (IsTaken(*record.node, path, record))
        return false;
    record.values.FindContainer(ItemPath)->Swap(place);
    return true;
}

// For a moment both nodes list the record. Its users go with it.
bool MoveToNode(ItemRecord& record, const String& path, uint32_t hash, BaseContainer& place)
{
    BrowserHashNode& source = *record.node;
    BrowserHashNode* target = IndexItem(record, hash);
    if (!target)
        return false;
    int32_t uses = 0;
    {
        const WriteGuard sourceGuard(source.nodeLock, LockRank::HashNode);
        const WriteGuard targetGuard(target->nodeLock, LockRank::HashNodeSecond);
        if (IsTaken(*target, path, record)) {
            (void)target->TakeEntryLocked(record);
            record.node = &source;
            return false;
        }
        record.values.FindContainer(ItemPath)->Swap(place);
        uses = source.TakeEntryLocked(record);
        record.node = target;
    }
    target->AddUses(record, uses - 1); // it came with one
    return true;
}

bool MoveRecord(ItemRecord& record, const String& path)
{
    const LockGuard moving(ItemMoveLock(), LockRank::ItemMove);
    const uint32_t hash = PathHash(path);
    BaseContainer place;
    if (!MakePlace(record, path, hash, place))
        return false;
    return record.node->hash == hash ? RenameInNode(record, path, place) : MoveToNode(record, path, hash, place);
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
        ItemRecord* record = CreateItem(path, hash);
        if (!record)
            return nullptr;
        if (auto* handle = Make<BrowserDatabaseItem>()(*this, *record))
            return handle;
        DiscardItem(state, *record);
        return nullptr;
    }
}

// With one use, for the handle.
ItemRecord* BrowserDatabase::CreateItem(const String& path, uint32_t hash)
{
    ItemRecord* record = state.nextItemId < firstItemId ? nullptr : state.items.Add(state.nextItemId, this);
    if (!record)
        return nullptr;
    if (!record->values.SetId(record->id) || !record->SetPath(path, hash) || !IndexItem(*record, hash)) {
        state.items.Remove(*record);
        return nullptr;
    }
    state.nextItemId = static_cast<int32_t>(static_cast<uint32_t>(record->id) + 1);
    state.itemCount++;
    NoteChanged(*record);
    return record;
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
        const WriteGuard nodeGuard(found.record->node->nodeLock, LockRank::HashNode);
        found.record->state = ItemState::DeletePending;
    }
    owner.state.itemCount--;
    owner.NoteChanged(*found.record);
    return true;
}

} // namespace browser
