// One row of a list of content: what stands in it and how it is marked.
//
// Entries lie in one flat array that is replaced as a whole; a view keeps nothing of its
// own for an entry. Both forms of view draw the same entries.
#pragma once

#include "model/rtreenode.h"
#include "services/array.h"

namespace browser {

namespace EntryFlag {
constexpr uint32_t selected = 1 << 0;
constexpr uint32_t visible = 1 << 1; // lay in the visible part when that was last told
} // namespace EntryFlag

struct ContentViewEntry {
    NodeRef node; // none while the window is closed
    uint32_t flags = 0;

    bool IsSelected() const { return (flags & EntryFlag::selected) != 0; }
    bool IsVisible() const { return (flags & EntryFlag::visible) != 0; }
};

using Entries = Array<ContentViewEntry>;

// The nodes of a sorted list lie all over memory. A loop that touches them fetches the
// head of each some steps before it is there; beyond the end nothing is done.
constexpr size_t stepsAhead = 12;
inline void Foresee(const Entries& entries, size_t at)
{
    constexpr size_t line = 64; // bytes that are fetched at once
    if (at >= entries.Count())
        return;
    const auto* node = reinterpret_cast<const char*>(entries[at].node.Get());
    __builtin_prefetch(node);
    __builtin_prefetch(node + line);
}

} // namespace browser
