// The locks that one thread holds, in the order in which it took them.
//
// Belongs to its thread, so it needs no guard. Each operation answers what is wrong
// with it, or an empty sentence.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "callrule.h"

namespace vx3::testing {

class HeldLocks
{
public:
    // Before a lock call that waits. `goesThrough` is unset for a lock that the thread
    // holds already, which would wait for itself; the unlock that belongs to it is
    // swallowed as well.
    std::string BeforeLock(const void* word, LockForm form, int32_t rank, bool& goesThrough);
    void Taken(const void* word, LockForm form, int32_t rank);
    std::string BeforeUnlock(const void* word, LockForm form, bool& goesThrough);

    bool Holds(const void* word) const;
    bool Holds64Bit() const;
    std::size_t Count() const { return locks.size(); }
    void Clear() { locks.clear(); }

private:
    struct Held {
        const void* word;
        LockForm form;
        int32_t rank;
        bool swallowed; // the call did not go through
    };
    std::vector<Held> locks;
};

} // namespace vx3::testing
