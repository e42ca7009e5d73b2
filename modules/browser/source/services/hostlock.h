// The host's in-place locks as types, with the annotations of Clang's thread safety
// analysis. No lock is taken outside a guard but in the link code of RTreeNode.
#pragma once

#include <atomic>

#include "services/host.h"

#if defined(__clang__)
#define CB_ATTRIBUTE(x) __attribute__((x))
#else
#define CB_ATTRIBUTE(x)
#endif

#define CB_CAPABILITY(name) CB_ATTRIBUTE(capability(name))           // this class is a lock
#define CB_SCOPED CB_ATTRIBUTE(scoped_lockable)                      // this class holds a lock while it lives
#define CB_GUARDED_BY(lock) CB_ATTRIBUTE(guarded_by(lock))           // this field is touched under `lock` only
#define CB_HOLDS(...) CB_ATTRIBUTE(requires_capability(__VA_ARGS__)) // the caller holds these locks
#define CB_NOT_HELD(...) CB_ATTRIBUTE(locks_excluded(__VA_ARGS__))   // the caller does not hold them
#define CB_ACQUIRES(...) CB_ATTRIBUTE(acquire_capability(__VA_ARGS__))
#define CB_TRIES(...) CB_ATTRIBUTE(try_acquire_capability(__VA_ARGS__))
#define CB_RELEASES(...) CB_ATTRIBUTE(release_capability(__VA_ARGS__))
#define CB_ACQUIRES_SHARED(...) CB_ATTRIBUTE(acquire_shared_capability(__VA_ARGS__))
#define CB_RELEASES_SHARED(...) CB_ATTRIBUTE(release_shared_capability(__VA_ARGS__))
#define CB_RELEASES_ANY(...) CB_ATTRIBUTE(release_generic_capability(__VA_ARGS__)) // shared or not, as it was taken
#define CB_UNCHECKED CB_ATTRIBUTE(no_thread_safety_analysis)                       // says in a comment why

namespace browser {

// The order of locks in the module, outermost first; docs/locks.md tells what each
// one guards. Two of one rank are taken by try, or in the order of their addresses.
enum class LockRank : int32_t {
    EntryList = 2, // the entries of a pane, held over calls of their nodes
    Address = 5,   // one rename or move at a time changes addresses
    Content = 10,  // BrowserContentNode::contentLock; a second one has the rank behind
    ContentSecond = 11,
    Event = 20,     // what threads post to a window
    Node = 30,      // a node's own fields that are not links
    Registry = 40,  // the sequence of plugins
    Link = 50,      // RTreeNode::lock
    Windows = 60,   // the slots of the windows: flags are set under it, nothing else
    Library = 70,   // everything in a library; one library at a time
    ItemMove = 72,  // one move between two nodes of the index at a time
    HashIndex = 73, // which nodes there are
    HashNode = 74,  // the entries of one node of the index; a second one has the rank behind
    HashNodeSecond = 75,
    BitmapCache = 80,  // the decoded previews of one library
    BitmapOrder = 82,  // the order of use of all decoded previews
    LibraryTable = 90, // which libraries are open
};

// 64-bit word, as the links of a node have it.
class CB_CAPABILITY("lock") LinkLock
{
public:
    void Lock() CB_ACQUIRES() { host->lock->lock64(&word, static_cast<int32_t>(LockRank::Link)); }
    [[nodiscard]] bool Try() CB_TRIES(true) { return host->lock->try64(&word, static_cast<int32_t>(LockRank::Link)); }
    void Unlock() CB_RELEASES() { host->lock->unlock64(&word); }
    bool IsHeld() const { return std::atomic_ref<uint64_t>(word).load(std::memory_order_relaxed) != 0; }

private:
    mutable uint64_t word = 0;
};

// 32-bit word.
class CB_CAPABILITY("lock") HostLock
{
public:
    void Lock(LockRank rank) CB_ACQUIRES() { host->lock->lock32(&word, static_cast<int32_t>(rank)); }
    [[nodiscard]] bool Try(LockRank rank) CB_TRIES(true) { return host->lock->try32(&word, static_cast<int32_t>(rank)); }
    void Unlock() CB_RELEASES() { host->lock->unlock32(&word); }

private:
    uint32_t word = 0;
};

// 32-bit word: many readers or one writer. A reader that comes again while a writer waits
// would wait for itself.
class CB_CAPABILITY("lock") ReadWriteLock
{
public:
    void LockShared(LockRank rank) const CB_ACQUIRES_SHARED() { host->lock->lockShared(&word, static_cast<int32_t>(rank)); }
    void UnlockShared() const CB_RELEASES_SHARED() { host->lock->unlockShared(&word); }
    void Lock(LockRank rank) CB_ACQUIRES() { host->lock->lockExclusive(&word, static_cast<int32_t>(rank)); }
    void Unlock() CB_RELEASES() { host->lock->unlockExclusive(&word); }

private:
    mutable uint32_t word = 0;
};

class CB_SCOPED LinkGuard
{
public:
    explicit LinkGuard(LinkLock& guarded) CB_ACQUIRES(guarded)
        : lock(guarded)
    {
        lock.Lock();
    }
    ~LinkGuard() CB_RELEASES() { lock.Unlock(); }
    LinkGuard(const LinkGuard&) = delete;
    LinkGuard& operator=(const LinkGuard&) = delete;

private:
    LinkLock& lock;
};

class CB_SCOPED LockGuard
{
public:
    LockGuard(HostLock& guarded, LockRank rank) CB_ACQUIRES(guarded)
        : lock(guarded)
    {
        lock.Lock(rank);
    }
    ~LockGuard() CB_RELEASES() { lock.Unlock(); }
    LockGuard(const LockGuard&) = delete;
    LockGuard& operator=(const LockGuard&) = delete;

private:
    HostLock& lock;
};

class CB_SCOPED ReadGuard
{
public:
    ReadGuard(const ReadWriteLock& guarded, LockRank rank) CB_ACQUIRES_SHARED(guarded)
        : lock(guarded)
    {
        lock.LockShared(rank);
    }
    ~ReadGuard() CB_RELEASES_ANY() { lock.UnlockShared(); }
    ReadGuard(const ReadGuard&) = delete;
    ReadGuard& operator=(const ReadGuard&) = delete;

private:
    const ReadWriteLock& lock;
};

class CB_SCOPED WriteGuard
{
public:
    WriteGuard(ReadWriteLock& guarded, LockRank rank) CB_ACQUIRES(guarded)
        : lock(guarded)
    {
        lock.Lock(rank);
    }
    ~WriteGuard() CB_RELEASES() { lock.Unlock(); }
    WriteGuard(const WriteGuard&) = delete;
    WriteGuard& operator=(const WriteGuard&) = delete;

private:
    ReadWriteLock& lock;
};

// Two locks of one kind, in the order of their addresses; one if both are the same. Held
// from Take on. Which one is first is only known at run time, so it is not analysed.
class LockPair
{
public:
    LockPair() = default;
    ~LockPair() CB_UNCHECKED;
    LockPair(const LockPair&) = delete;
    LockPair& operator=(const LockPair&) = delete;

    void Take(HostLock& a, HostLock& b) CB_UNCHECKED;

private:
    HostLock* first = nullptr;
    HostLock* second = nullptr; // none if both are the same
};

} // namespace browser
