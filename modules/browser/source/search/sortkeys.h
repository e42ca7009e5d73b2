// The keys of nodes for one sort: taken once, compared often.
#pragma once

#include "search/sortby.h"

namespace browser {

// Which keys a comparison looks at, in this order.
struct SortPlan {
    bool foldersFirst = false;
    bool byDate = false;
    DateKind dateKind = DateKind::Modified;
    bool bySize = false;
    bool byType = false;
    bool byUrl = false;

    static SortPlan For(SortMode mode, bool foldersFirst);
};

// What comes in front of the name, as two numbers that are compared one after the other,
// and where the name's key stands.
struct SortKey {
    static constexpr int32_t leads = 2;

    uint64_t lead[leads] = {};
    uint32_t nameAt = 0; // words in SortKeys
    uint32_t nameWords = 0;
    bool canHoldChildren = false;
    NodeRef node;
};

class SortKeys
{
public:
    explicit SortKeys(SortPlan ownPlan)
        : plan(ownPlan)
    {
    }

    [[nodiscard]] bool Take(NodeRef first);
    [[nodiscard]] bool Sort();

    Array<SortKey>& Keys() { return keys; }
    // The place of the n-th of the order in Keys().
    uint32_t At(size_t n) const { return order[n].at; }

private:
    // Numbers lie closer together than keys do, so the sort moves these.
    struct Item {
        uint64_t value; // what is compared at this step
        uint32_t at;    // in `keys`
        uint32_t word;  // the one of the name that is compared next
    };

    [[nodiscard]] bool TakeOne(NodeRef node);
    [[nodiscard]] bool TakeName(SortKey& key);
    [[nodiscard]] bool TakeType(SortKey& key);
    [[nodiscard]] bool RankTypes();

    void SortFrom(Item* from, Item* to, int32_t step);
    bool LoadValues(Item* from, Item* to, int32_t step);
    void SortTies(Item* from, Item* to);
    int32_t Compare(const SortKey& a, const SortKey& b) const;
    int32_t CompareNames(const SortKey& a, const SortKey& b) const;

    const SortPlan plan;
    Array<SortKey> keys;
    Array<Item> order;
    Array<Item> spare;     // as long as `order`, for merging
    Array<uint64_t> words; // of all name keys, behind each other
    Array<String> types;   // each type text once
};

} // namespace browser
