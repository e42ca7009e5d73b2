#include "ui/entryindex.h"

#include <bit>

namespace browser {

namespace {

constexpr size_t slotsOfEntry = 2;
constexpr uint64_t spread = 0x9E3779B97F4A7C15; // odd, so that no two addresses fall together

} // namespace

bool EntryIndex::Make(const Entries& entries)
{
    slots.Clear();
    if (!slots.Extend(std::bit_ceil(entries.Count() * slotsOfEntry + 1)))
        return false;
    for (uint32_t at = 0; at < entries.Count(); at++) {
        const RTreeNode* node = entries[at].node.Get();
        if (!node)
            continue;
        size_t slot = HomeOf(node);
        while (slots[slot])
            slot = After(slot);
        slots[slot] = at + 1;
    }
    return true;
}

int32_t EntryIndex::FindFirst(const Entries& entries, const RTreeNode* node, int32_t from, int32_t to) const
{
    for (size_t slot = HomeOf(node); slots[slot]; slot = After(slot)) {
        const auto at = static_cast<int32_t>(slots[slot] - 1);
        if (at >= from && at <= to && entries[slots[slot] - 1].node.Get() == node)
            return at;
    }
    return -1;
}

int32_t EntryIndex::FindLast(const Entries& entries, const RTreeNode* node) const
{
    int32_t last = -1;
    for (size_t slot = HomeOf(node); slots[slot]; slot = After(slot))
        if (entries[slots[slot] - 1].node.Get() == node)
            last = static_cast<int32_t>(slots[slot] - 1);
    return last;
}

size_t EntryIndex::HomeOf(const RTreeNode* node) const
{
    const uint64_t mixed = reinterpret_cast<uintptr_t>(node) * spread;
    return (mixed >> 32 ^ mixed) & (slots.Count() - 1);
}

} // namespace browser
