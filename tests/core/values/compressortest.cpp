#include <gtest/gtest.h>

#include <random>
#include <string>
#include <thread>
#include <vector>

#include "core/livecounts.h"
#include "core/services.h"

namespace vx3::core {
namespace {

const VX3CompressorServices& services = *CompressorServices();

class Compressor : public testing::Test
{
protected:
    void SetUp() override { compressor = services.create(VX3_COMPRESSOR_DEFLATE); }
    void TearDown() override
    {
        services.free(compressor);
        EXPECT_EQ(ReadLiveObjects().memoryBlocks, before.memoryBlocks) << "a refused call keeps nothing";
        EXPECT_EQ(ReadLiveObjects().compressors, before.compressors);
    }

    std::string Pack(const std::string& bytes, int32_t level) const
    {
        void* packed = nullptr;
        int64_t length = 0;
        EXPECT_TRUE(services.compress(compressor, bytes.data(), static_cast<int64_t>(bytes.size()), level, &packed, &length));
        return Take(packed, length);
    }

    bool Unpack(const std::string& packed, int64_t limit, std::string& bytes) const
    {
        void* block = nullptr;
        int64_t length = 0;
        if (!services.decompress(compressor, packed.data(), static_cast<int64_t>(packed.size()), limit, &block, &length)) {
            EXPECT_EQ(block, nullptr);
            return false;
        }
        bytes = Take(block, length);
        return true;
    }

    static std::string Take(void* block, int64_t length)
    {
        const std::string bytes(static_cast<char*>(block), static_cast<size_t>(length));
        MemoryServices()->free(block);
        return bytes;
    }

    const LiveObjects before = ReadLiveObjects();
    VX3Compressor* compressor = nullptr;
};

std::string Noise(size_t size)
{
    std::mt19937 random(3);
    std::string noise(size, '\0');
    for (char& byte : noise)
        byte = static_cast<char>(random());
    return noise;
}

TEST_F(Compressor, RoundTripsAtEveryLevelWithTheExactLimit)
{
    std::string words;
    for (int i = 0; words.size() < 100000; ++i)
        words += "word " + std::to_string(i % 1000) + " ";
    for (const std::string& bytes : { std::string(), std::string("a"), words, Noise(70000), std::string(5000000, '\0') }) {
        const auto size = static_cast<int64_t>(bytes.size());
        for (int32_t level : { 1, 6, 9 }) {
            const std::string packed = Pack(bytes, level);
            for (int64_t limit : { size, size + 1, int64_t(1) << 40 }) {
                std::string back = "x";
                ASSERT_TRUE(Unpack(packed, limit, back)) << size << " at " << level;
                ASSERT_EQ(back, bytes);
            }
            std::string back;
            EXPECT_FALSE(Unpack(packed, size - 1, back)) << "one byte too many comes out";
        }
    }
    EXPECT_LT(Pack(words, 9).size(), words.size() / 4);
}

TEST_F(Compressor, DamageCutsAndTrailingBytesAreRefused)
{
    const std::string bytes = "some text that is packed, some text that is packed";
    const std::string packed = Pack(bytes, 6);
    constexpr int64_t limit = 1000;
    std::string back;
    size_t cuts = 0;
    for (size_t length = 0; length < packed.size(); ++length, ++cuts)
        EXPECT_FALSE(Unpack(packed.substr(0, length), limit, back)) << length;
    EXPECT_EQ(cuts, packed.size());
    EXPECT_FALSE(Unpack(packed + '\0', limit, back));
    EXPECT_FALSE(Unpack(packed + packed, limit, back));
    size_t refused = 0;
    for (size_t place = 0; place < packed.size(); ++place) {
        std::string damaged = packed;
        damaged[place] = static_cast<char>(damaged[place] ^ 0x10);
        if (!Unpack(damaged, limit, back)) {
            ++refused;
            continue;
        }
        EXPECT_EQ(back, bytes) << "byte " << place << " holds something else than padding";
    }
    EXPECT_GE(refused, packed.size() - 1) << "only the padding in front of the checksum is free";
}

TEST_F(Compressor, ArgumentsThatMakeNoSense)
{
    void* block = nullptr;
    int64_t length = 0;
    EXPECT_EQ(services.create(1), nullptr);
    for (int32_t level : { -1, 0, 10 })
        EXPECT_FALSE(services.compress(compressor, "a", 1, level, &block, &length));
    EXPECT_FALSE(services.compress(compressor, nullptr, 1, 6, &block, &length));
    EXPECT_FALSE(services.compress(compressor, "a", -1, 6, &block, &length));
    EXPECT_FALSE(services.decompress(compressor, "a", 1, -1, &block, &length));
    services.free(nullptr);
}

TEST_F(Compressor, OneContextServesManyThreads)
{
    const std::string bytes = Noise(20000) + std::string(20000, 'z');
    auto work = [&] {
        for (int32_t round = 0; round < 20; ++round) {
            std::string back;
            ASSERT_TRUE(Unpack(Pack(bytes, 1 + round % 9), static_cast<int64_t>(bytes.size()), back));
            ASSERT_EQ(back, bytes);
        }
    };
    std::vector<std::thread> threads;
    for (int i = 0; i < 3; ++i)
        threads.emplace_back(work);
    for (std::thread& thread : threads)
        thread.join();
}

} // namespace
} // namespace vx3::core
