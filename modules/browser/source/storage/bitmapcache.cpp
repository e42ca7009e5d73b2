#include "storage/bitmapcache.h"

#include "services/allocation.h"

namespace browser {

struct DatabaseBitmapCache::Entry {
    Entry* previous = nullptr; // of its library, newer ones
    Entry* next = nullptr;
    Entry* newer = nullptr; // of all
    Entry* older = nullptr;
    int32_t itemId = 0;
    int32_t previewNumber = 0;
    HostBitmap bitmap;
    DatabaseBitmapCache* owner = nullptr;
    std::atomic<int32_t> pinCount = 0; // goes up under the lock of the order only
    bool isPurged = false;
    Entry* replaced = nullptr; // had the same key and may still be in use; goes with this one
};

namespace {

using Entry = DatabaseBitmapCache::Entry;

constexpr int32_t mostEntries = 128;
constexpr LockRank cacheRank = LockRank::BitmapCache;

// The order of use of all libraries' pictures.
struct UseOrder {
    HostLock lock;
    Entry* oldest = nullptr;
    Entry* newest = nullptr;
    int32_t count = 0;
};

UseOrder order;

void Append(Entry& entry)
{
    entry.newer = nullptr;
    entry.older = order.newest;
    (order.newest ? order.newest->newer : order.oldest) = &entry;
    order.newest = &entry;
    order.count++;
}

void TakeOut(Entry& entry)
{
    (entry.older ? entry.older->newer : order.oldest) = entry.newer;
    (entry.newer ? entry.newer->older : order.newest) = entry.older;
    order.count--;
}

bool HasKey(const Entry& entry, int32_t itemId, int32_t previewNumber)
{
    return entry.itemId == itemId && entry.previewNumber == previewNumber;
}

// The entries that were taken out, from one to its `next`, and what each has replaced.
void FreeAll(Entry* entry)
{
    while (entry) {
        Entry* next = entry->next;
        while (entry) {
            Entry* replaced = entry->replaced;
            Destroy(entry);
            entry = replaced;
        }
        entry = next;
    }
}

Entry* MakeEntry(int32_t itemId, int32_t previewNumber, HostBitmap bitmap)
{
    Entry* entry = bitmap ? Make<Entry>()() : nullptr;
    if (!entry)
        return nullptr;
    entry->itemId = itemId;
    entry->previewNumber = previewNumber;
    entry->bitmap = std::move(bitmap);
    return entry;
}

} // namespace

// --- The lists, with the lock of the order held ---

DatabaseBitmapCache::Entry* DatabaseBitmapCache::Find(int32_t itemId, int32_t previewNumber) const
{
    for (Entry* entry = newest; entry; entry = entry->next)
        if (!entry->isPurged && HasKey(*entry, itemId, previewNumber))
            return entry;
    return nullptr;
}

DatabaseBitmapCache::Entry* DatabaseBitmapCache::FindPinned(int32_t itemId, int32_t previewNumber) const
{
    for (Entry* entry = newest; entry; entry = entry->next)
        if (entry->pinCount > 0 && HasKey(*entry, itemId, previewNumber))
            return entry;
    return nullptr;
}

// Whoever gives a picture back tells its key, and not which of several with that key it is.
// So all users of a key count on its newest picture, and older ones go together with it.
void DatabaseBitmapCache::Link(Entry& entry)
{
    if (Entry* used = FindPinned(entry.itemId, entry.previewNumber)) {
        Unlink(*used);
        entry.pinCount += used->pinCount;
        entry.replaced = used;
    }
    entry.owner = this;
    entry.next = newest;
    (newest ? newest->previous : last) = &entry;
    newest = &entry;
    Append(entry);
}

void DatabaseBitmapCache::Unlink(Entry& entry)
{
    DatabaseBitmapCache& cache = *entry.owner;
    (entry.previous ? entry.previous->next : cache.newest) = entry.next;
    (entry.next ? entry.next->previous : cache.last) = entry.previous;
    entry.previous = entry.next = nullptr;
    TakeOut(entry);
}

// Takes out the oldest ones that nobody uses, until there is room for one more. Without any
// the cache grows beyond its limit.
DatabaseBitmapCache::Entry* DatabaseBitmapCache::MakeRoom()
{
    Entry* victims = nullptr;
    Entry* entry = order.oldest;
    while (entry && order.count >= mostEntries) {
        Entry* newer = entry->newer;
        if (entry->pinCount == 0) {
            Unlink(*entry);
            entry->next = victims;
            victims = entry;
        }
        entry = newer;
    }
    return victims;
}

// --- Storing ---

bool DatabaseBitmapCache::Store(int32_t itemId, int32_t previewNumber, const VX3Bitmap* bitmap)
{
    return StoreShared(itemId, previewNumber, HostBitmap(host->bitmap->clone(bitmap)), Pin::No) != nullptr;
}

VX3Bitmap* DatabaseBitmapCache::StoreShared(int32_t itemId, int32_t previewNumber, HostBitmap bitmap, Pin pin)
{
    Entry* victims = nullptr;
    VX3Bitmap* stored = bitmap.Get();
    Entry* entry = MakeEntry(itemId, previewNumber, std::move(bitmap));
    if (!entry)
        return nullptr;
    entry->pinCount = pin == Pin::Yes;
    {
        const WriteGuard guard(cacheLock, cacheRank);
        const LockGuard orderGuard(order.lock, LockRank::BitmapOrder);
        victims = MakeRoom();
        Link(*entry);
    }
    FreeAll(victims);
    return stored;
}

// --- Looking ---

// The entry is the newest one then, and stays until its use ends.
DatabaseBitmapCache::Entry* DatabaseBitmapCache::Use(int32_t itemId, int32_t previewNumber)
{
    const LockGuard guard(order.lock, LockRank::BitmapOrder);
    Entry* entry = Find(itemId, previewNumber);
    if (!entry)
        return nullptr;
    if (entry != order.newest) {
        TakeOut(*entry);
        Append(*entry);
    }
    entry->pinCount++;
    return entry;
}

// Copied with the lock of the order given back: nobody takes out what is in use, and the
// shared lock keeps those away who would have to free it afterwards.
HostBitmap DatabaseBitmapCache::Get(int32_t itemId, int32_t previewNumber)
{
    const ReadGuard guard(cacheLock, cacheRank);
    Entry* entry = Use(itemId, previewNumber);
    if (!entry)
        return {};
    HostBitmap copy(host->bitmap->clone(entry->bitmap.Get()));
    entry->pinCount--;
    return copy;
}

VX3Bitmap* DatabaseBitmapCache::GetShared(int32_t itemId, int32_t previewNumber)
{
    const ReadGuard guard(cacheLock, cacheRank);
    Entry* entry = Use(itemId, previewNumber);
    return entry ? entry->bitmap.Get() : nullptr;
}

// --- Giving back ---

bool DatabaseBitmapCache::Release(int32_t itemId, int32_t previewNumber)
{
    Entry* dropped = nullptr;
    {
        const WriteGuard guard(cacheLock, cacheRank);
        const LockGuard orderGuard(order.lock, LockRank::BitmapOrder);
        Entry* entry = FindPinned(itemId, previewNumber);
        if (!entry)
            return false;
        if (--entry->pinCount > 0)
            return true;
        dropped = std::exchange(entry->replaced, nullptr);
        if (entry->isPurged) {
            Unlink(*entry);
            entry->next = dropped;
            dropped = entry;
        }
    }
    FreeAll(dropped);
    return true;
}

bool DatabaseBitmapCache::Forget(int32_t itemId, int32_t previewNumber)
{
    Entry* dropped = nullptr;
    bool isFound = false;
    {
        const WriteGuard guard(cacheLock, cacheRank);
        const LockGuard orderGuard(order.lock, LockRank::BitmapOrder);
        while (Entry* entry = Find(itemId, previewNumber)) {
            isFound = entry->isPurged = true;
            if (entry->pinCount > 0)
                continue;
            Unlink(*entry);
            entry->next = dropped;
            dropped = entry;
        }
    }
    FreeAll(dropped);
    return isFound;
}

void DatabaseBitmapCache::Clear()
{
    Entry* dropped = nullptr;
    {
        const WriteGuard guard(cacheLock, cacheRank);
        const LockGuard orderGuard(order.lock, LockRank::BitmapOrder);
        while (Entry* entry = newest) {
            Unlink(*entry);
            entry->next = dropped;
            dropped = entry;
        }
    }
    FreeAll(dropped);
}

int32_t DatabaseBitmapCache::Count()
{
    const LockGuard guard(order.lock, LockRank::BitmapOrder);
    return order.count;
}

} // namespace browser
