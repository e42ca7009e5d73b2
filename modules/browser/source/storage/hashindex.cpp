#include "storage/hashindex.h"

#include <algorithm>

#include "model/crc32.h"

namespace browser {

namespace {

constexpr size_t firstSlots = 256;

// Which nodes there are: an open table by hash, at most half full.
struct HashIndexRoot {
    ReadWriteLock lock;
    BrowserHashNode** slots = nullptr;
    size_t slotCount = 0; // a power of two, or 0
    size_t nodeCount = 0;
};

HashIndexRoot root;
HostLock moveLock;

// Hashes are well spread already.
BrowserHashNode** SlotOf(uint32_t hash)
{
    const size_t mask = root.slotCount - 1;
    size_t slot = hash & mask;
    while (root.slots[slot] && root.slots[slot]->hash != hash)
        slot = (slot + 1) & mask;
    return root.slots + slot;
}

bool ReserveSlot()
{
    if (root.nodeCount * 2 < root.slotCount)
        return true;
    const size_t oldCount = root.slotCount, wanted = oldCount ? oldCount * 2 : firstSlots;
    auto* larger = static_cast<BrowserHashNode**>(HostAlloc(wanted * sizeof(BrowserHashNode*), SourcePlace::Here(), Clear::Yes));
    if (!larger)
        return false;
    BrowserHashNode** old = std::exchange(root.slots, larger);
    root.slotCount = wanted;
    for (size_t i = 0; i < oldCount; i++)
        if (old[i])
            *SlotOf(old[i]->hash) = old[i];
    HostFree(old);
    return true;
}

BrowserHashNode* DemandNode(uint32_t hash)
{
    const WriteGuard guard(root.lock, LockRank::HashIndex);
    if (!ReserveSlot())
        return nullptr;
    BrowserHashNode** slot = SlotOf(hash);
    if (!*slot) {
        *slot = Make<BrowserHashNode>()(hash);
        root.nodeCount += *slot != nullptr;
    }
    return *slot;
}

} // namespace

// --- A node ---

HashEntry* BrowserHashNode::EntryOf(const ItemRecord& record)
{
    HashEntry* end = Entries() + entryCount;
    HashEntry* found = std::find_if(Entries(), end, [&record](const HashEntry& entry) { return entry.record == &record; });
    return found == end ? nullptr : found;
}

bool BrowserHashNode::AddEntry(ItemRecord& record, int32_t uses)
{
    const WriteGuard guard(nodeLock, LockRank::HashNode);
    return AddEntryLocked(record, uses);
}

bool BrowserHashNode::AddEntryLocked(ItemRecord& record, int32_t uses)
{
    if (entryCount == capacity) {
        const int32_t wanted = capacity * 2;
        auto* larger = static_cast<HashEntry*>(HostAlloc(static_cast<size_t>(wanted) * sizeof(HashEntry), SourcePlace::Here()));
        if (!larger)
            return false;
        for (int32_t i = 0; i < wanted; i++) {
            auto* entry = ::new (static_cast<void*>(larger + i)) HashEntry;
            if (i < entryCount) {
                entry->record = Entries()[i].record;
                entry->uses = Entries()[i].uses.load(std::memory_order_relaxed);
            }
        }
        HostFree(std::exchange(more, larger));
        capacity = wanted;
    }
    HashEntry& entry = Entries()[entryCount++];
    entry.record = &record;
    entry.uses.store(uses, std::memory_order_relaxed);
    record.node = this;
    return true;
}

ItemRecord* BrowserHashNode::FindEntry(const String& path, bool exactly)
{
    const ReadGuard guard(nodeLock, LockRank::HashNode);
    ItemRecord* found = FindEntryLocked(path, exactly);
    if (found)
        EntryOf(*found)->uses.fetch_add(1, std::memory_order_relaxed);
    return found;
}

ItemRecord* BrowserHashNode::FindEntryLocked(const String& path, bool exactly) const
{
    for (const HashEntry* entry = Entries(); entry < Entries() + entryCount; entry++)
        if (entry->record->state == ItemState::Live && entry->record->HasPath(path, exactly))
            return entry->record;
    return nullptr;
}

void BrowserHashNode::RemoveEntry(HashEntry& entry)
{
    entry.record->node = nullptr;
    HashEntry* end = Entries() + --entryCount;
    for (HashEntry* place = &entry; place < end; place++) {
        place->record = place[1].record;
        place->uses.store(place[1].uses.load(std::memory_order_relaxed), std::memory_order_relaxed);
    }
}

bool BrowserHashNode::ReleaseEntry(ItemRecord& record)
{
    const WriteGuard guard(nodeLock, LockRank::HashNode);
    HashEntry* entry = EntryOf(record);
    if (!entry || entry->uses.fetch_sub(1, std::memory_order_acq_rel) != 1 || record.state != ItemState::DeletePending)
        return false;
    RemoveEntry(*entry);
    record.state = ItemState::Deleted;
    return true;
}

void BrowserHashNode::AddUses(const ItemRecord& record, int32_t uses)
{
    const ReadGuard guard(nodeLock, LockRank::HashNode);
    if (HashEntry* entry = EntryOf(record))
        entry->uses.fetch_add(uses, std::memory_order_acq_rel);
}

int32_t BrowserHashNode::TakeEntry(ItemRecord& record)
{
    const WriteGuard guard(nodeLock, LockRank::HashNode);
    return TakeEntryLocked(record);
}

int32_t BrowserHashNode::TakeEntryLocked(ItemRecord& record)
{
    HashEntry* entry = EntryOf(record);
    if (!entry)
        return -1;
    const int32_t uses = entry->uses.load(std::memory_order_acquire);
    RemoveEntry(*entry);
    return uses;
}

void BrowserHashNode::PutBefore(ItemRecord& record, bool (*isReadOnly)(const ItemRecord&))
{
    if (isReadOnly(record))
        return;
    const WriteGuard guard(nodeLock, LockRank::HashNode);
    HashEntry* own = entryCount > 1 ? EntryOf(record) : nullptr;
    const String path = own ? record.GetPath() : String();
    for (HashEntry* other = Entries(); own && other < own; other++)
        if (isReadOnly(*other->record) && other->record->HasPath(path, true)) {
            std::swap(own->record, other->record);
            const int32_t uses = own->uses.load(std::memory_order_relaxed);
            own->uses.store(other->uses.load(std::memory_order_relaxed), std::memory_order_relaxed);
            other->uses.store(uses, std::memory_order_relaxed);
            return;
        }
}

int32_t BrowserHashNode::CountEntries()
{
    const ReadGuard guard(nodeLock, LockRank::HashNode);
    return entryCount;
}

// --- The index ---

uint32_t PathHash(const String& path)
{
    return FinishCrc(ContinueCrcFolding(crcStart, path.View()));
}

BrowserHashNode* FindNode(uint32_t hash)
{
    const ReadGuard guard(root.lock, LockRank::HashIndex);
    return root.slotCount ? *SlotOf(hash) : nullptr;
}

BrowserHashNode* IndexItem(ItemRecord& record, uint32_t hash)
{
    BrowserHashNode* node = DemandNode(hash);
    return node && node->AddEntry(record) ? node : nullptr;
}

void UnindexItem(ItemRecord& record)
{
    if (record.node)
        (void)record.node->TakeEntry(record);
}

void DestroyIndex()
{
    const WriteGuard guard(root.lock, LockRank::HashIndex);
    for (size_t i = 0; i < root.slotCount; i++)
        delete root.slots[i];
    HostFree(std::exchange(root.slots, nullptr));
    root.slotCount = root.nodeCount = 0;
}

HostLock& ItemMoveLock()
{
    return moveLock;
}

} // namespace browser
