#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string>
#include <thread>
#include <vector>

#include "core/livecounts.h"
#include "core/services.h"

namespace vx3::core {
namespace {

const VX3MemoryServices& memory = *MemoryServices();

TEST(Memory, BlocksAreAlignedClearedOnDemandAndHaveSizeZero)
{
    for (size_t size : { size_t(0), size_t(1), size_t(15), size_t(16), size_t(4097) }) {
        void* block = memory.alloc(size, 1, "aligned.cpp", 1);
        ASSERT_TRUE(block);
        EXPECT_EQ(reinterpret_cast<uintptr_t>(block) % 16, 0u);
        EXPECT_EQ(std::string(static_cast<char*>(block), size), std::string(size, '\0'));
        memory.free(block);
    }
    memory.free(nullptr);
}

TEST(Memory, SizesThatWouldWrapGiveNone)
{
    // Volatile, or the compiler sees the size and warns.
    volatile size_t huge = SIZE_MAX;
    EXPECT_EQ(memory.alloc(huge, 1, "huge.cpp", 0), nullptr);
    EXPECT_EQ(memory.alloc(huge - 8, 1, "huge.cpp", 1), nullptr);
    EXPECT_EQ(DescribeLiveMemory().find("huge.cpp"), std::string::npos);
}

TEST(Memory, ReportNamesEachPlaceThatHoldsBlocks)
{
    void* a = memory.alloc(100, 7, "report.cpp", 0);
    void* b = memory.alloc(50, 7, "report.cpp", 0);
    void* c = memory.alloc(1, 8, "report.cpp", 0);
    const std::string report = DescribeLiveMemory();
    EXPECT_NE(report.find("report.cpp:7: 2 blocks, 150 bytes\n"), std::string::npos) << report;
    EXPECT_NE(report.find("report.cpp:8: 1 blocks, 1 bytes\n"), std::string::npos) << report;
    EXPECT_LT(report.find("report.cpp:7"), report.find("report.cpp:8")) << "the largest stands first";
    for (void* block : { a, b, c })
        memory.free(block);
    EXPECT_EQ(DescribeLiveMemory().find("report.cpp"), std::string::npos);
}

// A module that was unloaded takes its literals along; another one may lie there next.
TEST(Memory, NameOutlivesTheLiteralAndAnAddressMayBeUsedAgain)
{
    char literal[] = "first.cpp";
    void* first = memory.alloc(10, 3, literal, 0);
    std::strcpy(literal, "other.cpp");
    void* other = memory.alloc(20, 3, literal, 0);
    std::strcpy(literal, "#########");
    const std::string report = DescribeLiveMemory();
    EXPECT_NE(report.find("first.cpp:3: 1 blocks, 10 bytes"), std::string::npos) << report;
    EXPECT_NE(report.find("other.cpp:3: 1 blocks, 20 bytes"), std::string::npos) << report;
    memory.free(first);
    memory.free(other);
}

TEST(Memory, SameNameAtTwoAddressesIsOnePlace)
{
    const char one[] = "shared.h";
    const char two[] = "shared.h";
    void* a = memory.alloc(1, 5, one, 0);
    void* b = memory.alloc(2, 5, two, 0);
    EXPECT_NE(DescribeLiveMemory().find("shared.h:5: 2 blocks, 3 bytes"), std::string::npos);
    memory.free(a);
    memory.free(b);
}

TEST(Memory, MorePlacesThanTheTableHoldsAreStillCounted)
{
    constexpr int32_t places = 40000;
    const LiveObjects before = ReadLiveObjects();
    std::vector<void*> blocks;
    for (int32_t line = 1; line <= places; ++line)
        blocks.push_back(memory.alloc(2, line, "many.cpp", 0));
    const LiveObjects live = ReadLiveObjects();
    EXPECT_EQ(live.memoryBlocks - before.memoryBlocks, places);
    EXPECT_EQ(live.memoryBytes - before.memoryBytes, 2 * places);
    for (void* block : blocks)
        memory.free(block);
    EXPECT_EQ(ReadLiveObjects().memoryBlocks, before.memoryBlocks);
}

TEST(Memory, ThreadsThatMeetAtNewPlacesLoseNoCount)
{
    const LiveObjects before = ReadLiveObjects();
    auto work = [] {
        for (int32_t round = 0; round < 2000; ++round)
            memory.free(memory.alloc(8, round, "threads.cpp", 0));
    };
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back(work);
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(ReadLiveObjects().memoryBlocks, before.memoryBlocks);
    EXPECT_EQ(ReadLiveObjects().memoryBytes, before.memoryBytes);
}

} // namespace
} // namespace vx3::core
