#include "heldlocks.h"

#include <algorithm>

namespace vx3::testing {

std::string HeldLocks::BeforeLock(const void* word, LockForm form, int32_t rank, bool& goesThrough)
{
    goesThrough = true;
    if (Holds(word)) {
        goesThrough = false;
        locks.push_back({ word, form, rank, true });
        return "this thread holds the lock already";
    }
    // A lock taken by try counts here too: waiting for an outer lock while holding an
    // inner one can stand still for ever, however the inner one was got.
    for (const Held& held : locks) {
        if (held.rank >= rank)
            return "rank " + std::to_string(rank) + " is taken while rank " + std::to_string(held.rank) + " is held";
    }
    return {};
}

void HeldLocks::Taken(const void* word, LockForm form, int32_t rank)
{
    locks.push_back({ word, form, rank, false });
}

std::string HeldLocks::BeforeUnlock(const void* word, LockForm form, bool& goesThrough)
{
    goesThrough = false;
    const auto last = std::find_if(locks.rbegin(), locks.rend(), [&](const Held& held) { return held.word == word; });
    if (last == locks.rend())
        return "this thread does not hold the lock";
    if (last->form != form)
        return "the lock was taken by a call of another form";
    goesThrough = !last->swallowed;
    locks.erase(std::next(last).base());
    return {};
}

bool HeldLocks::Holds(const void* word) const
{
    return std::any_of(locks.begin(), locks.end(), [&](const Held& held) { return held.word == word; });
}

bool HeldLocks::Holds64Bit() const
{
    return std::any_of(locks.begin(), locks.end(), [](const Held& held) { return held.form == LockForm::Word64; });
}

} // namespace vx3::testing
