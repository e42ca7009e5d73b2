#include "services/hostlock.h"

namespace browser {

namespace {

uintptr_t AddressOf(const HostLock& lock)
{
    return reinterpret_cast<uintptr_t>(&lock);
}

} // namespace

void LockPair::Take(HostLock& a, HostLock& b)
{
    const bool swapped = AddressOf(b) < AddressOf(a);
    first = swapped ? &b : &a;
    second = &a == &b ? nullptr : swapped ? &a : &b;
    first->Lock(LockRank::Content);
    if (second)
        second->Lock(LockRank::ContentSecond);
}

LockPair::~LockPair()
{
    if (second)
        second->Unlock();
    if (first)
        first->Unlock();
}

} // namespace browser
