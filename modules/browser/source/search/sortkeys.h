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
    uint16_t nameWords = 0;
    bool canHoldChildren = false;
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

    size_t Count() const { return nodes.Count(); }
    // Once each: the n-th of the order.
    NodeRef TakeNode(size_t n) { return std::move(nodes[order[n].at]); }

private:
    // Numbers lie closer together than keys do, so the sort moves these.
    struct Item {
        uint64_t value; // what is compared at this step
        uint32_t at;    // in `nodes` and `keys`
        uint32_t word;  // the one of the name that is compared next
    };

    [[nodiscard]] bool TakeOne(uint32_t at);
    [[nodiscard]] bool TakeName(BrowserContentNode& node, SortKey& key);
    [[nodiscard]] bool TakeType(BrowserContentNode& node, SortKey& key);
    [[nodiscard]] bool RankTypes();

    void SortFrom(Item* from, Item* to, int32_t step);
    bool LoadValues(Item* from, Item* to, int32_t step);
    void SortTies(Item* from, Item* to);
    int32_t Compare(uint32_t a, uint32_t b) const;
    int32_t CompareNames(uint32_t a, uint32_t b) const;
    BrowserContentNode& NodeAt(uint32_t at) const { return *ContentOf(nodes[at]); }

    const SortPlan plan;
    Array<NodeRef> nodes; // as they stand in the tree
    Array<SortKey> keys;  // one for each
    Array<Item> order;
    Array<Item> spare;     // for merging, as long as the longest row of ties
    Array<uint64_t> words; // of all name keys, behind each other
    Array<String> types;   // each type text once
    bool isComplete = true;
};

} // namespace browser
