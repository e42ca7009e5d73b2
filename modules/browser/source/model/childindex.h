// The children of one node by the hash of their URL: a table beside the links, so that
// finding one child among 100,000 costs what it costs among ten.
//
// Owned by the parent and touched under its lock only. Not counted: a child is taken
// out before it is unlinked. A table that could not grow says so and is given up.
#pragma once

#include <cstddef>
#include <cstdint>

#include "services/allocation.h"

namespace browser {

class RTreeNode;

class ChildIndex
{
public:
    ~ChildIndex();
    [[nodiscard]] bool Add(uint32_t hash, uint32_t length, RTreeNode* child);
    void Take(uint32_t hash, uint32_t length, const RTreeNode* child);
    [[nodiscard]] bool Prepare(size_t children); // room for so many

    // False if no child has a URL of this length.
    bool MayHaveLength(uint32_t length) const { return lengths[length % lengthMarks] != 0; }

    // Up to `room` children of this hash, in no order; returns how many there are.
    size_t Find(uint32_t hash, RTreeNode** found, size_t room) const;

    // Children without a key cannot be found here.
    uint32_t unkeyed = 0;

private:
    struct Slot {
        uint32_t hash;
        RTreeNode* child; // none: free; `taken`: was in use
    };

    static constexpr uint32_t lengthMarks = 64; // lengths that differ by so many share a mark

    static RTreeNode* Taken();
    bool Grow(size_t wanted);
    void Place(uint32_t hash, RTreeNode* child);

    Slot* slots = nullptr;
    size_t capacity = 0; // a power of two
    size_t used = 0;     // children and taken slots
    size_t live = 0;     // children
    uint32_t lengths[lengthMarks] = {};
};

} // namespace browser
