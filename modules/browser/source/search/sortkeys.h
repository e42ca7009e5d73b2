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

struct SortKey {
    uint64_t namePiece = 0; // the part of the name's key where names begin to differ
    uint32_t nameAt = 0;    // the name's key: bytes in SortKeys
    uint32_t nameLength = 0;
    int32_t folderRank = 0; // what can hold children has the higher one
    int32_t typeRank = 0;
    int64_t size = 0;
    FileDate date = {};
    String name;
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
    uint32_t At(size_t n) const { return order[n]; }

private:
    [[nodiscard]] bool TakeOne(NodeRef node);
    [[nodiscard]] bool TakeName(SortKey& key);
    [[nodiscard]] bool TakeType(SortKey& key);
    void RankTypes();
    void FindNamePieces();
    int32_t Compare(const SortKey& a, const SortKey& b) const;
    int32_t CompareNames(const SortKey& a, const SortKey& b) const;

    const SortPlan plan;
    Array<SortKey> keys;
    Array<uint32_t> order;
    Array<uint8_t> nameBytes; // big-endian units of all name keys, behind each other
    Array<String> types;      // each type text once
};

} // namespace browser
