// Decoded previews in memory, so that a list does not decode at every painting.
//
// Each library has one; all share one limit and one order of use. A bitmap that somebody
// uses stays, whatever is stored meanwhile. Any thread.
#pragma once

#include <atomic>

#include "services/hostbitmap.h"
#include "services/hostlock.h"

namespace browser {

class DatabaseBitmapCache
{
public:
    struct Entry;

    DatabaseBitmapCache() = default;
    ~DatabaseBitmapCache() { Clear(); }
    DatabaseBitmapCache(const DatabaseBitmapCache&) = delete;
    DatabaseBitmapCache& operator=(const DatabaseBitmapCache&) = delete;

    enum class Pin { No, Yes };

    bool Store(int32_t itemId, int32_t previewNumber, const VX3Bitmap* bitmap); // a copy
    // The bitmap itself, which is freed whatever the outcome; pinned, it is in use until Release.
    VX3Bitmap* StoreShared(int32_t itemId, int32_t previewNumber, HostBitmap bitmap, Pin pin);
    HostBitmap Get(int32_t itemId, int32_t previewNumber);       // a copy, or none
    VX3Bitmap* GetShared(int32_t itemId, int32_t previewNumber); // in use until Release; none if absent
    bool Release(int32_t itemId, int32_t previewNumber);         // false if there is no such entry
    bool Forget(int32_t itemId, int32_t previewNumber);          // hidden at once, freed with its last use
    void Clear();                                                // in use or not

    static int32_t Count(); // of all libraries

private:
    Entry* Find(int32_t itemId, int32_t previewNumber) const;
    Entry* FindPinned(int32_t itemId, int32_t previewNumber) const;
    Entry* Use(int32_t itemId, int32_t previewNumber);
    void Link(Entry& entry);
    static void Unlink(Entry& entry);
    static Entry* MakeRoom();

    // Changed with the lock of the order of use held as well, which is enough for taking
    // one out that nobody uses.
    ReadWriteLock cacheLock;
    Entry* newest = nullptr; // of this library
    Entry* last = nullptr;
};

} // namespace browser
