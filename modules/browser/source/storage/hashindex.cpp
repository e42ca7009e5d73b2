#include "storage/hashindex.h"

#include <algorithm>

#include "model/crc32.h"

namespace browser {

namespace {

constexpr size_t firstSlots = 256;

constexpr size_t blockNodes = 256; // that are made at once
constexpr size_t firstBlocks = 16;

// Where a node is, with its hash, so that looking for one touches no other.
struct NodeSlot {
    uint32_t hash = 0;
    uint32_t number = 0; // from 1 on; 0 is free
};

// Which nodes there are: an open table by hash, at most half full, and the nodes themselves in
// blocks, in the order in which they were made.
struct HashIndexRoot {
    ReadWriteLock lock;
    NodeSlot* slots = nullptr;
    size_t slotCount = 0; // a power of two, or 0
    uint32_t nodeCount = 0;
    BrowserHashNode** blocks = nullptr;
    size_t blockCount = 0;
    size_t blockCapacity = 0;
};

HashIndexRoot root;
HostLock moveLock;

BrowserHashNode* NodeOf(uint32_t number)
{
    return root.blocks[(number - 1) / blockNodes] + (number - 1) % blockNodes;
}

// Hashes are well spread already.
NodeSlot& SlotOf(uint32_t hash)
{
    const size_t mask = root.slotCount - 1;
    size_t slot = hash & mask;
    while (root.slots[slot].number && root.slots[slot].hash != hash)
        slot = (slot + 1) & mask;
    return root.slots[slot];
}

bool ReserveSlot()
{
    if (root.nodeCount * size_t(2) < root.slotCount)
        return true;
    const size_t oldCount = root.slotCount, wanted = oldCount ? oldCount * 2 : firstSlots;
    auto* larger = static_cast<NodeSlot*>(HostAlloc(wanted * sizeof(NodeSlot), SourcePlace::Here(), Clear::Yes));
    if (!larger)
        return false;
    NodeSlot* old = std::exchange(root.slots, larger);
    root.slotCount = wanted;
    for (size_t i = 0; i < oldCount; i++)
        if (old[i].number)
            SlotOf(old[i].hash) = old[i];
    HostFree(old);
    return true;
}

bool ReserveBlock()
{
    if (root.blockCount < root.blockCapacity)
        return true;
    const size_t wanted = root.blockCapacity ? root.blockCapacity * 2 : firstBlocks;
    auto* larger = static_cast<BrowserHashNode**>(HostAlloc(wanted * sizeof(BrowserHashNode*), SourcePlace::Here()));
    if (!larger)
        return false;
    std::copy_n(root.blocks, root.blockCount, larger);
    HostFree(std::exchange(root.blocks, larger));
    root.blockCapacity = wanted;
    return true;
}

bool ReserveNode()
{
    if (root.nodeCount < root.blockCount * blockNodes)
        return true;
    auto* block =
        ReserveBlock() ? static_cast<BrowserHashNode*>(HostAlloc(blockNodes * sizeof(BrowserHashNode), SourcePlace::Here())) : nullptr;
    if (block)
        root.blocks[root.blockCount++] = block;
    return block;
}

} // namespace

// --- A node ---

// Where it was last seen, or in front of that, since entries only move up.
HashEntry* BrowserHashNode::EntryOf(const ItemRecord& record)
{
    HashEntry* entries = Entries();
    const auto isWanted = [&record](const HashEntry& entry) { return entry.record == &record; };
    const uint32_t last = std::min(record.entryPlace, static_cast<uint32_t>(entryCount ? entryCount - 1 : 0));
    for (uint32_t place = entryCount ? last + 1 : 0; place > 0; place--)
        if (isWanted(entries[place - 1]))
            return entries + place - 1;
    HashEntry* end = entries + entryCount;
    HashEntry* found = std::find_if(entries + std::min<uint32_t>(last + 1, static_cast<uint32_t>(entryCount)), end, isWanted);
    return found == end ? nullptr : found;
}

bool BrowserHashNode::AddEntry(ItemRecord& record, int32_t uses)
{
    const WriteGuard guard(nodeLock, LockRank::HashNode);
    return AddEntryLocked(record, uses);
}

bool BrowserHashNode::Grow()
{
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
    return true;
}

bool BrowserHashNode::AddEntryLocked(ItemRecord& record, int32_t uses)
{
    if (entryCount == capacity && !Grow())
        return false;
    hasSeveralOwners = entryCount > 0 && (hasSeveralOwners || Entries()[0].record->owner != record.owner);
    record.entryPlace = static_cast<uint32_t>(entryCount);
    HashEntry& entry = Entries()[entryCount++];
    entry.record = &record;
    entry.uses.store(uses, std::memory_order_relaxed);
    record.node.store(this, std::memory_order_release);
    return true;
}

HashEntry* BrowserHashNode::FindEntryLocked(const String& path, bool exactly)
{
    for (HashEntry* entry = Entries(); entry < Entries() + entryCount; entry++)
        if (entry->record->state == ItemState::Live && entry->record->HasPath(path, exactly))
            return entry;
    return nullptr;
}

void BrowserHashNode::RemoveEntry(HashEntry& entry)
{
    entry.record->node.store(nullptr, std::memory_order_release);
    HashEntry* end = Entries() + --entryCount;
    for (HashEntry* place = &entry; place < end; place++) {
        place->record = place[1].record;
        place->uses.store(place[1].uses.load(std::memory_order_relaxed), std::memory_order_relaxed);
    }
}

GivenBack BrowserHashNode::GiveBackUse(const ItemRecord& record)
{
    const ReadGuard guard(nodeLock, LockRank::HashNode);
    if (record.node.load(std::memory_order_acquire) != this)
        return GivenBack::Moved;
    if (record.state == ItemState::DeletePending)
        return GivenBack::Waits;
    if (HashEntry* entry = EntryOf(record))
        entry->uses.fetch_sub(1, std::memory_order_acq_rel);
    return GivenBack::Yes;
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

bool BrowserHashNode::TakeOverLocked(ItemRecord& record, BrowserHashNode& source)
{
    if (entryCount == capacity && !Grow())
        return false;
    const int32_t uses = source.TakeEntryLocked(record);
    return AddEntryLocked(record, uses);
}

// All of one library are as writable as each other.
void BrowserHashNode::PutBefore(ItemRecord& record, bool (*isReadOnly)(const ItemRecord&))
{
    if (isReadOnly(record))
        return;
    const WriteGuard guard(nodeLock, LockRank::HashNode);
    HashEntry* own = hasSeveralOwners ? EntryOf(record) : nullptr;
    for (HashEntry* other = Entries(); own && other < own; other++)
        if (isReadOnly(*other->record) && other->record->HasPath(record.path, true)) {
            std::swap(own->record, other->record);
            std::swap(own->record->entryPlace, other->record->entryPlace);
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

HashSearch::HashSearch(uint32_t hash) CB_UNCHECKED // the destructor gives it back
{
    root.lock.LockShared(LockRank::HashIndex);
    const uint32_t number = root.slotCount ? SlotOf(hash).number : 0;
    node = number ? NodeOf(number) : nullptr;
}

HashSearch::~HashSearch() CB_UNCHECKED
{
    root.lock.UnlockShared();
}

BrowserHashNode* DemandNode(uint32_t hash)
{
    const WriteGuard guard(root.lock, LockRank::HashIndex);
    if (!ReserveSlot() || !ReserveNode())
        return nullptr;
    NodeSlot& slot = SlotOf(hash);
    if (slot.number)
        return NodeOf(slot.number);
    slot = { hash, ++root.nodeCount };
    return ::new (static_cast<void*>(NodeOf(slot.number))) BrowserHashNode(hash);
}

BrowserHashNode* IndexItem(ItemRecord& record, uint32_t hash)
{
    BrowserHashNode* node = DemandNode(hash);
    return node && node->AddEntry(record) ? node : nullptr;
}

int32_t TakeFromIndex(ItemRecord& record)
{
    BrowserHashNode* node = record.node.load(std::memory_order_acquire);
    return node ? node->TakeEntry(record) : 0;
}

void DestroyIndex()
{
    const WriteGuard guard(root.lock, LockRank::HashIndex);
    for (uint32_t number = 1; number <= root.nodeCount; number++)
        NodeOf(number)->~BrowserHashNode();
    for (size_t i = 0; i < root.blockCount; i++)
        HostFree(root.blocks[i]);
    HostFree(std::exchange(root.blocks, nullptr));
    HostFree(std::exchange(root.slots, nullptr));
    root.slotCount = root.nodeCount = 0;
    root.blockCount = root.blockCapacity = 0;
}

HostLock& ItemMoveLock()
{
    return moveLock;
}

} // namespace browser
