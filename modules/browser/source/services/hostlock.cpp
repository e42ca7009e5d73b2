#include "services/hostlock.h"

namespace browser {

namespace {

uintptr_t AddressOf(const HostLock& lock)
{
    return reinterpret_cast<uintptr_t>(&lock);
}

} // namespace

LockPair::LockPair(HostLock& a, HostLock& b)
    : first(AddressOf(b) < AddressOf(a) ? &b : &a)
    , second(&a == &b          ? nullptr
                 : first == &a ? &b
                               : &a)
{
    first->Lock(LockRank::Content);
    if (second)
        second->Lock(LockRank::ContentSecond);
}

LockPair::~LockPair()
{
    if (second)
        second->Unlock();
    first->Unlock();
}

} // namespace browser
