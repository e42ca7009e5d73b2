// The items of a library in the order in which they came into it, found by their ids, and
// those among them that have changed since they were stored.
//
// Guarded by the library's lock. A place that was given up is empty and is swept away when
// most are.
#pragma once

#include "services/array.h"
#include "storage/itemrecord.h"

namespace browser {

class ItemList
{
public:
    ItemList() = default;
    ~ItemList() { Clear(); }
    ItemList(const ItemList&) = delete;
    ItemList& operator=(const ItemList&) = delete;

    // A new, empty record. One with the same id leaves, and the new one takes its place in
    // the order. None without memory; the list is then as it was.
    [[nodiscard]] ItemRecord* Add(int32_t id, BrowserDatabase* owner);
    ItemRecord* Find(int32_t id) const;
    void Remove(ItemRecord& record); // frees it
    void Clear();

    // In order, by place; an empty place gives none.
    size_t PlaceCount() const { return records.Count(); }
    ItemRecord* At(size_t place) const { return records[place]; }

    // It is to be stored.
    void NoteChanged(ItemRecord& record);
    // Takes those that were noted, in order, or all there are. False without memory: they
    // stay noted then.
    [[nodiscard]] bool TakeChanged(Array<ItemRecord*>& taken, bool all);

private:
    ItemRecord* Replace(ItemRecord& old);
    bool ReserveSlot();
    ItemRecord** SlotOf(int32_t id) const;
    void FreeSlot(size_t slot);
    void ForgetChange(const ItemRecord& record);
    void SweepIfSparse();

    Array<ItemRecord*> records; // by place; none at an empty one
    Array<ItemRecord*> changed; // noted ones, in any order
    bool allChanged = false;    // one could not be noted
    size_t liveCount = 0;
    ItemRecord** slots = nullptr; // by id; none is free
    size_t slotCount = 0;         // a power of two, or 0
};

} // namespace browser
