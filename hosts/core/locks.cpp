// Locks in a word of their owner, on the wait and notify of the standard library.
//
// A plain lock is 0 free, 1 held, 2 held with waiters, so that unlocking wakes only
// if somebody sleeps. A 64-bit word uses its low half. The reader-writer word counts
// readers and waiting writers and has one bit for the writer inside.
#include <atomic>
#include <bit>
#include <new>

#include "livecounts.h"
#include "services.h"

struct VX3Semaphore {
    std::atomic<int32_t> count;
};

namespace vx3::core {

namespace {

using Word = std::atomic_ref<uint32_t>;

constexpr uint32_t free = 0;
constexpr uint32_t held = 1;
constexpr uint32_t heldWithWaiters = 2;
constexpr int spinCount = 40; // about the time of a short critical section

constexpr uint32_t oneReader = 1;
constexpr uint32_t readerMask = 0xFFFF;
constexpr uint32_t oneWaitingWriter = 0x10000;
constexpr uint32_t writerInside = 0x80000000;

void Pause()
{
#if defined(__x86_64__) || defined(__i386__)
    __builtin_ia32_pause();
#endif
}

bool TryTake(Word word)
{
    uint32_t expected = free;
    return word.compare_exchange_strong(expected, held, std::memory_order_acquire, std::memory_order_relaxed);
}

void TakeSlowly(Word word)
{
    for (int i = 0; i < spinCount; ++i) {
        if (word.load(std::memory_order_relaxed) == free && TryTake(word))
            return;
        Pause();
    }
    while (word.exchange(heldWithWaiters, std::memory_order_acquire) != free)
        word.wait(heldWithWaiters, std::memory_order_relaxed);
}

void Lock32(uint32_t* word, int32_t)
{
    if (!TryTake(Word(*word)))
        TakeSlowly(Word(*word));
}

VX3Bool Try32(uint32_t* word, int32_t)
{
    return TryTake(Word(*word));
}

void Unlock32(uint32_t* word)
{
    // Once free, the word may go away with its owner: only its address is used.
    if (Word(*word).exchange(free, std::memory_order_release) == heldWithWaiters)
        Word(*word).notify_one();
}

uint32_t* LowHalf(uint64_t* word)
{
    auto* halves = reinterpret_cast<uint32_t*>(word);
    return std::endian::native == std::endian::little ? halves : halves + 1;
}

void Lock64(uint64_t* word, int32_t rank)
{
    Lock32(LowHalf(word), rank);
}

VX3Bool Try64(uint64_t* word, int32_t rank)
{
    return Try32(LowHalf(word), rank);
}

void Unlock64(uint64_t* word)
{
    Unlock32(LowHalf(word));
}

// Tries to enter as a reader; `seen` is the word that refused.
bool TryShared(Word word, uint32_t& seen)
{
    seen = word.load(std::memory_order_relaxed);
    while (seen < readerMask) // neither a writer inside nor one waiting
        if (word.compare_exchange_weak(seen, seen + oneReader, std::memory_order_acquire, std::memory_order_relaxed))
            return true;
    return false;
}

void LockShared(uint32_t* address, int32_t)
{
    Word word(*address);
    uint32_t seen = 0;
    for (int i = 0; i < spinCount; ++i) {
        if (TryShared(word, seen))
            return;
        Pause();
    }
    while (!TryShared(word, seen))
        word.wait(seen, std::memory_order_relaxed);
}

void UnlockShared(uint32_t* address)
{
    Word word(*address);
    uint32_t before = word.fetch_sub(oneReader, std::memory_order_release);
    if ((before & readerMask) == oneReader && before >= oneWaitingWriter)
        word.notify_all();
}

void LockExclusiveSlowly(Word word)
{
    uint32_t seen = word.fetch_add(oneWaitingWriter, std::memory_order_relaxed) + oneWaitingWriter;
    for (int spins = 0;;) {
        if ((seen & (writerInside | readerMask)) == 0) {
            uint32_t taken = (seen - oneWaitingWriter) | writerInside;
            if (word.compare_exchange_weak(seen, taken, std::memory_order_acquire, std::memory_order_relaxed))
                return;
            continue;
        }
        if (++spins > spinCount)
            word.wait(seen, std::memory_order_relaxed);
        else
            Pause();
        seen = word.load(std::memory_order_relaxed);
    }
}

void LockExclusive(uint32_t* address, int32_t)
{
    Word word(*address);
    uint32_t expected = free;
    if (!word.compare_exchange_strong(expected, writerInside, std::memory_order_acquire, std::memory_order_relaxed))
        LockExclusiveSlowly(word);
}

void UnlockExclusive(uint32_t* address)
{
    // Sleeping readers are not counted, so all are woken; without sleepers it costs a load.
    Word word(*address);
    word.fetch_and(~writerInside, std::memory_order_release);
    word.notify_all();
}

VX3Semaphore* CreateSemaphore(int32_t count)
{
    auto* semaphore = new (std::nothrow) VX3Semaphore{ count };
    if (semaphore)
        liveCounters.semaphores.Add();
    return semaphore;
}

void FreeSemaphore(VX3Semaphore* semaphore)
{
    if (!semaphore)
        return;
    delete semaphore;
    liveCounters.semaphores.Subtract();
}

void Take(VX3Semaphore* semaphore)
{
    int32_t seen = semaphore->count.load(std::memory_order_relaxed);
    for (;;) {
        if (seen > 0) {
            if (semaphore->count.compare_exchange_weak(seen, seen - 1, std::memory_order_acquire, std::memory_order_relaxed))
                return;
            continue;
        }
        semaphore->count.wait(seen, std::memory_order_relaxed);
        seen = semaphore->count.load(std::memory_order_relaxed);
    }
}

void Give(VX3Semaphore* semaphore)
{
    semaphore->count.fetch_add(1, std::memory_order_release);
    semaphore->count.notify_one();
}

} // namespace

const VX3LockServices* LockServices()
{
    static constexpr VX3LockServices services = { Lock32,          Try32,         Unlock32,     Lock64,        Try64,
                                                  Unlock64,        LockShared,    UnlockShared, LockExclusive, UnlockExclusive,
                                                  CreateSemaphore, FreeSemaphore, Take,         Give };
    return &services;
}

} // namespace vx3::core
