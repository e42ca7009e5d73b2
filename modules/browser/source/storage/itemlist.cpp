#include "storage/itemlist.h"

#include <algorithm>

namespace browser {

namespace {

constexpr size_t firstSlots = 16;
constexpr size_t sparse = 64; // empty places that are never swept away

size_t SpreadOf(int32_t id)
{
    constexpr uint64_t factor = 0x9E3779B97F4A7C15; // 2^64 by the golden ratio
    return static_cast<size_t>(uint64_t(uint32_t(id)) * factor >> 32);
}

} // namespace

// Where a record with the id stands, or the free slot that it would take.
ItemRecord** ItemList::SlotOf(int32_t id) const
{
    size_t slot = SpreadOf(id) & (slotCount - 1);
    while (slots[slot] && slots[slot]->id != id)
        slot = (slot + 1) & (slotCount - 1);
    return slots + slot;
}

ItemRecord* ItemList::Find(int32_t id) const
{
    return slotCount ? *SlotOf(id) : nullptr;
}

// At most half of the slots are taken.
bool ItemList::ReserveSlot()
{
    if (liveCount * 2 < slotCount)
        return true;
    const size_t wanted = slotCount ? slotCount * 2 : firstSlots;
    auto* larger = static_cast<ItemRecord**>(HostAlloc(wanted * sizeof(ItemRecord*), SourcePlace::Here(), browser::Clear::Yes));
    if (!larger)
        return false;
    HostFree(std::exchange(slots, larger));
    slotCount = wanted;
    for (ItemRecord* record : records)
        if (record)
            *SlotOf(record->id) = record;
    return true;
}

ItemRecord* ItemList::Add(int32_t id, BrowserDatabase* owner)
{
    if (ItemRecord* old = Find(id))
        return Replace(*old);
    auto* record = ReserveSlot() ? Make<ItemRecord>()(id, owner) : nullptr;
    if (!record || !records.Append(record)) {
        Destroy(record);
        return nullptr;
    }
    record->place = static_cast<uint32_t>(records.Count() - 1);
    *SlotOf(id) = record;
    liveCount++;
    return record;
}

ItemRecord* ItemList::Replace(ItemRecord& old)
{
    auto* record = Make<ItemRecord>()(old.id, old.owner);
    if (!record)
        return nullptr;
    record->place = old.place;
    records[old.place] = record;
    *SlotOf(old.id) = record;
    ForgetChange(old);
    Destroy(&old);
    return record;
}

void ItemList::Remove(ItemRecord& record)
{
    FreeSlot(static_cast<size_t>(SlotOf(record.id) - slots));
    records[record.place] = nullptr;
    ForgetChange(record);
    Destroy(&record);
    liveCount--;
    SweepIfSparse();
}

// Those behind it that stand here only since the slot was taken move up.
void ItemList::FreeSlot(size_t slot)
{
    const size_t mask = slotCount - 1;
    for (size_t next = (slot + 1) & mask; slots[next]; next = (next + 1) & mask) {
        const size_t wanted = SpreadOf(slots[next]->id) & mask;
        if (((next - wanted) & mask) < ((next - slot) & mask))
            continue;
        slots[slot] = slots[next];
        slot = next;
    }
    slots[slot] = nullptr;
}

void ItemList::SweepIfSparse()
{
    if (records.Count() < 2 * liveCount + sparse)
        return;
    uint32_t place = 0;
    for (ItemRecord* record : records)
        if (record) {
            record->place = place;
            records[place++] = record;
        }
    while (records.Count() > place)
        records.RemoveAt(records.Count() - 1);
}

void ItemList::Clear()
{
    for (ItemRecord* record : records)
        Destroy(record);
    records.Clear();
    changed.Clear();
    HostFree(std::exchange(slots, nullptr));
    slotCount = liveCount = 0;
    allChanged = false;
}

// Without memory for it, everything is looked at when storing.
void ItemList::NoteChanged(ItemRecord& record)
{
    if (!record.isNoted)
        record.isNoted = changed.Append(&record);
    allChanged = allChanged || !record.isNoted;
}

// Usually it is the last one: changes are stored before a record goes.
void ItemList::ForgetChange(const ItemRecord& record)
{
    for (size_t i = record.isNoted ? changed.Count() : 0; i > 0; i--)
        if (changed[i - 1] == &record)
            return changed.RemoveAt(i - 1);
}

bool ItemList::TakeChanged(Array<ItemRecord*>& taken, bool all)
{
    if (!all && !allChanged) {
        taken.Swap(changed);
        std::sort(taken.begin(), taken.end(), [](const ItemRecord* a, const ItemRecord* b) { return a->place < b->place; });
    } else {
        if (!taken.Reserve(liveCount))
            return false;
        for (ItemRecord* record : records)
            if (record)
                (void)taken.Append(record);
    }
    changed.Clear();
    allChanged = false;
    for (ItemRecord* record : taken)
        record->isNoted = false;
    return true;
}

} // namespace browser
