// Finds items by their paths over all open libraries.
//
// A node stands for one hash of a path and lists the records that have it: the same path in
// several libraries, and paths that happen to share a hash. Nodes stay until the last library
// closes, so a pointer to one stays good. An entry counts its users: handles, and searches
// under way. Any thread; the lock of a node guards its entries, and is taken with at most one
// library locked.
#pragma once

#include <atomic>

#include "services/array.h"
#include "services/hostlock.h"
#include "storage/itemrecord.h"

namespace browser {

struct HashEntry {
    ItemRecord* record = nullptr;
    std::atomic<int32_t> uses = 0;
};

// What became of a use that was given back.
enum class GivenBack : int32_t {
    Yes,
    Waits, // not yet: a deletion waits for the last use, which ReleaseEntry gives back
    Moved, // the record is not in this node any more
};

class BrowserHashNode
{
public:
    explicit BrowserHashNode(uint32_t nodeHash)
        : hash(nodeHash)
    {
    }
    ~BrowserHashNode() { HostFree(more); }
    BrowserHashNode(const BrowserHashNode&) = delete;
    BrowserHashNode& operator=(const BrowserHashNode&) = delete;

    [[nodiscard]] bool AddEntry(ItemRecord& record, int32_t uses = 1);
    GivenBack GiveBackUse(const ItemRecord& record);
    // Gives a use back. True if it was the last one of a record whose deletion waited for it:
    // that is out of the index and Deleted then, and its library has to be told.
    bool ReleaseEntry(ItemRecord& record);
    void AddUses(const ItemRecord& record, int32_t uses);
    int32_t TakeEntry(ItemRecord& record); // its uses; -1 if it is absent
    // A record of a library that can be written comes before one with the same path of a
    // library that cannot. `isReadOnly` tells of a record's library.
    void PutBefore(ItemRecord& record, bool (*isReadOnly)(const ItemRecord&));
    int32_t CountEntries();

    const uint32_t hash;

    // For a search that counts on what it finds, and for a change of two nodes at once.
    ReadWriteLock nodeLock;
    // The first one with the path; none if there is no such.
    HashEntry* FindEntryLocked(const String& path, bool exactly);
    bool AddEntryLocked(ItemRecord& record, int32_t uses) CB_HOLDS(nodeLock);
    int32_t TakeEntryLocked(ItemRecord& record) CB_HOLDS(nodeLock);
    // The record comes here with its uses; false without memory. Both are locked.
    bool TakeOverLocked(ItemRecord& record, BrowserHashNode& source) CB_UNCHECKED;

private:
    HashEntry* Entries() { return more ? more : &firstEntry; }
    HashEntry* EntryOf(const ItemRecord& record);
    bool Grow();
    void RemoveEntry(HashEntry& entry);

    bool hasSeveralOwners = false;
    int32_t entryCount = 0;
    int32_t capacity = 1;
    HashEntry firstEntry;
    HashEntry* more = nullptr; // in place of `firstEntry`
};

// The hash of a path's text, as it is stored: CRC-32 of the lower-case units, high byte first.
uint32_t PathHash(const String& path);

// The node of a hash, for a search: the index does not go while this lives. None if no record
// has the hash, or ever had.
class HashSearch
{
public:
    explicit HashSearch(uint32_t hash);
    ~HashSearch();
    HashSearch(const HashSearch&) = delete;
    HashSearch& operator=(const HashSearch&) = delete;

    explicit operator bool() const { return node != nullptr; }
    BrowserHashNode* operator->() const { return node; }

private:
    BrowserHashNode* node = nullptr;
};

BrowserHashNode* DemandNode(uint32_t hash); // an empty one if there is none; none without memory
// Enters a record under its hash with one use, and gives its node; none without memory.
BrowserHashNode* IndexItem(ItemRecord& record, uint32_t hash);
// Takes a record out of its node, whoever uses it, and gives its uses; 0 if it is in none.
int32_t TakeFromIndex(ItemRecord& record);
void DestroyIndex(); // with no library open

// One move of an item or a library at a time: it changes two nodes.
HostLock& ItemMoveLock();

} // namespace browser
