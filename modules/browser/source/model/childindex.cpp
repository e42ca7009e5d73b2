#include "model/childindex.h"

#include <bit>

namespace browser {

namespace {

constexpr size_t smallestTable = 64;

// Up to four fifths of the slots are used: a search meets few others, and a large folder
// does not pay for twice its size.
constexpr bool IsFull(size_t used, size_t capacity)
{
    return used * 5 > capacity * 4;
}

} // namespace

ChildIndex::~ChildIndex()
{
    HostFree(slots);
}

// A slot whose child has gone: searches go on behind it.
RTreeNode* ChildIndex::Taken()
{
    return reinterpret_cast<RTreeNode*>(uintptr_t(1));
}

bool ChildIndex::Prepare(size_t children)
{
    return !IsFull(children, capacity) || Grow(children * 5 / 4 + 1);
}

bool ChildIndex::Grow(size_t wanted)
{
    size_t newCapacity = std::bit_ceil(wanted < smallestTable ? smallestTable : wanted);
    auto* newSlots = static_cast<Slot*>(HostAlloc(newCapacity * sizeof(Slot), SourcePlace::Here(), Clear::Yes));
    if (!newSlots)
        return false;
    Slot* oldSlots = std::exchange(slots, newSlots);
    size_t oldCapacity = std::exchange(capacity, newCapacity);
    used = live;
    for (size_t i = 0; i < oldCapacity; i++)
        if (oldSlots[i].child && oldSlots[i].child != Taken())
            Place(oldSlots[i].hash, oldSlots[i].child);
    HostFree(oldSlots);
    return true;
}

void ChildIndex::Place(uint32_t hash, RTreeNode* child)
{
    size_t at = hash & (capacity - 1);
    while (slots[at].child)
        at = (at + 1) & (capacity - 1);
    slots[at] = { hash, child };
}

bool ChildIndex::Add(uint32_t hash, uint32_t length, RTreeNode* child)
{
    if (!length) {
        unkeyed++;
        return true;
    }
    if (IsFull(used + 1, capacity) && !Grow((live + 1) * 2))
        return false;
    Place(hash, child);
    used++;
    live++;
    lengths[length % lengthMarks]++;
    return true;
}

void ChildIndex::Take(uint32_t hash, uint32_t length, const RTreeNode* child)
{
    if (!length) {
        unkeyed--;
        return;
    }
    for (size_t at = hash & (capacity - 1); slots[at].child; at = (at + 1) & (capacity - 1)) {
        if (slots[at].child != child)
            continue;
        slots[at].child = Taken();
        live--;
        lengths[length % lengthMarks]--;
        return;
    }
}

size_t ChildIndex::Find(uint32_t hash, RTreeNode** found, size_t room) const
{
    size_t count = 0;
    if (!capacity)
        return count;
    for (size_t at = hash & (capacity - 1); slots[at].child; at = (at + 1) & (capacity - 1)) {
        if (slots[at].hash != hash || slots[at].child == Taken())
            continue;
        if (count < room)
            found[count] = slots[at].child;
        count++;
    }
    return count;
}

} // namespace browser
