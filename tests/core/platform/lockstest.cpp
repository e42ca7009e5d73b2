#include <thread>
#include <vector>

#include <gtest/gtest.h>
#include <unistd.h>

#include "core/services.h"

namespace vx3::core {

namespace {

constexpr int threadCount = 8;
constexpr int rounds = 20000;

// A lock that never comes ends the program and not the day.
class LockStress : public testing::Test
{
protected:
    LockStress() { alarm(120); }
    ~LockStress() override { alarm(0); }

    template <class Body>
    static void RunThreads(Body body)
    {
        std::vector<std::thread> threads;
        for (int i = 0; i < threadCount; ++i)
            threads.emplace_back([&body, i] { body(i); });
        for (std::thread& thread : threads)
            thread.join();
    }
    const VX3LockServices& locks = *LockServices();
};

TEST_F(LockStress, OneAtATimeUnderEitherWord)
{
    uint32_t narrow = 0;
    uint64_t wide = 0;
    int64_t underNarrow = 0; // plain: only the lock keeps it right
    int64_t underWide = 0;
    int64_t tried = 0;
    std::atomic<int64_t> triedSum = 0;
    RunThreads([&](int) {
        for (int i = 0; i < rounds; ++i) {
            locks.lock32(&narrow, 1);
            ++underNarrow;
            locks.unlock32(&narrow);
            locks.lock64(&wide, 1);
            ++underWide;
            locks.unlock64(&wide);
            if (locks.try32(&narrow, 1)) {
                ++tried;
                locks.unlock32(&narrow);
                ++triedSum;
            }
        }
    });
    EXPECT_EQ(underNarrow, int64_t(threadCount) * rounds);
    EXPECT_EQ(underWide, int64_t(threadCount) * rounds);
    EXPECT_EQ(tried, triedSum);
    EXPECT_TRUE(narrow == 0 && wide == 0) << "free words are zero";
    EXPECT_TRUE(locks.try64(&wide, 1));
    EXPECT_NE(wide, 0u);
    EXPECT_FALSE(locks.try64(&wide, 1));
    locks.unlock64(&wide);
}

TEST_F(LockStress, ReadersSeeWholeWritesOnly)
{
    uint32_t word = 0;
    int64_t first = 0;
    int64_t second = 0;
    std::atomic<int> torn = 0;
    RunThreads([&](int number) {
        for (int i = 0; i < rounds; ++i) {
            if (number % 4 == 0) {
                locks.lockExclusive(&word, 1);
                ++first;
                ++second;
                locks.unlockExclusive(&word);
            } else {
                locks.lockShared(&word, 1);
                torn += first != second;
                locks.unlockShared(&word);
            }
        }
    });
    EXPECT_EQ(torn, 0);
    EXPECT_EQ(first, int64_t(threadCount) / 4 * rounds);
    EXPECT_EQ(word, 0u);
}

TEST_F(LockStress, AWaitingWriterHoldsNewReadersOff)
{
    uint32_t word = 0;
    std::atomic<int> order = 0;
    int writerPlace = 0;
    int readerPlace = 0;
    locks.lockShared(&word, 1);
    std::atomic_ref<uint32_t> seen(word);
    std::thread writer([&] {
        locks.lockExclusive(&word, 1);
        writerPlace = ++order;
        locks.unlockExclusive(&word);
    });
    while (seen.load() == 1) // until the writer has made itself known
        std::this_thread::yield();
    std::thread reader([&] {
        locks.lockShared(&word, 1);
        readerPlace = ++order;
        locks.unlockShared(&word);
    });
    std::this_thread::sleep_for(std::chrono::milliseconds(20)); // gives a wrong reader its chance
    EXPECT_EQ(order, 0);
    locks.unlockShared(&word);
    writer.join();
    reader.join();
    EXPECT_EQ(writerPlace, 1);
    EXPECT_EQ(readerPlace, 2);
}

TEST_F(LockStress, ASemaphoreLetsAsManyInAsWereGiven)
{
    constexpr int room = 3;
    VX3Semaphore* semaphore = locks.createSemaphore(room);
    std::atomic<int> inside = 0;
    std::atomic<int> most = 0;
    RunThreads([&](int) {
        for (int i = 0; i < rounds / 4; ++i) {
            locks.take(semaphore);
            int now = ++inside;
            for (int known = most; now > known && !most.compare_exchange_weak(known, now);) { }
            --inside;
            locks.give(semaphore);
        }
    });
    EXPECT_LE(most, room);
    locks.freeSemaphore(semaphore);
}

// The usual handing over: whoever takes may free at once.
TEST_F(LockStress, ASemaphoreMayGoAsSoonAsItWasTaken)
{
    for (int i = 0; i < 2000; ++i) {
        VX3Semaphore* semaphore = locks.createSemaphore(0);
        int64_t handed = 0;
        std::thread giver([&] {
            handed = i;
            locks.give(semaphore);
        });
        locks.take(semaphore);
        ASSERT_EQ(handed, i);
        giver.join();
        locks.freeSemaphore(semaphore);
    }
}

} // namespace

} // namespace vx3::core
