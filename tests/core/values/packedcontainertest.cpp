// A container that was read answers from its image until it is changed: nobody may see that.
#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "core/containerimage.h"
#include "core/livecounts.h"
#include "core/textvalue.h"
#include "samplecontainer.h"

namespace vx3::core {
namespace {

const VX3ContainerServices& container = *ContainerServices();

Container ReadAgain(const Container& value)
{
    std::vector<uint8_t> image;
    EXPECT_TRUE(EncodeContainer(*value.Get(), image));
    Container read;
    EXPECT_TRUE(DecodeContainer(image, *read.Get()));
    return read;
}

TEST(PackedContainer, AnswersAsTheOneThatWasWritten)
{
    Container sample = SampleContainer(false);
    const Container read = ReadAgain(sample);
    EXPECT_EQ(container.getId(read.Get()), 1000);
    EXPECT_EQ(container.getInt32(read.Get(), SampleKey::Int32, 0), -2);
    EXPECT_EQ(container.getInt32(read.Get(), SampleKey::Int64, 5), 5) << "another type";
    EXPECT_EQ(container.getInt64(read.Get(), SampleKey::Int64, 0), int64_t(1) << 40);
    EXPECT_EQ(container.getFloat(read.Get(), SampleKey::Float, 0), 0.5);
    EXPECT_TRUE(container.getBool(read.Get(), SampleKey::Bool, 0));
    Text text, expected;
    ASSERT_TRUE(container.getText(read.Get(), SampleKey::Text, text.Get()));
    ASSERT_TRUE(container.getText(sample.Get(), SampleKey::Text, expected.Get()));
    EXPECT_TRUE(SpansEqual(SpanOf(*text.Get()), SpanOf(*expected.Get())));
    int32_t key = 0, type = 0;
    for (int32_t place = 0; place < container.count(sample.Get()); ++place) {
        ASSERT_TRUE(container.entryAt(read.Get(), place, &key, &type));
        int32_t expectedKey = 0, expectedType = 0;
        container.entryAt(sample.Get(), place, &expectedKey, &expectedType);
        EXPECT_EQ(key, expectedKey);
        EXPECT_EQ(type, expectedType);
    }
    EXPECT_FALSE(container.entryAt(read.Get(), container.count(sample.Get()), &key, &type));
    const VX3Container* nested = container.getContainer(read.Get(), SampleKey::Nested);
    ASSERT_TRUE(nested);
    EXPECT_EQ(container.getId(nested), -7);
    EXPECT_EQ(container.getContainer(read.Get(), SampleKey::Nested), nested);
    EXPECT_EQ(container.typeOf(read.Get(), 77), VX3_VALUE_NONE);
}

TEST(PackedContainer, WhatWasHandedOutStaysWhenItIsChanged)
{
    Container read = ReadAgain(SampleContainer(false));
    int64_t length = 0;
    const void* bytes = container.getBytes(read.Get(), SampleKey::Bytes, &length);
    VX3Container* nested = container.getContainer(read.Get(), SampleKey::Nested);
    container.setInt32(nested, 1, 99);
    EXPECT_TRUE(container.setInt32(read.Get(), 1234, 1));
    EXPECT_EQ(container.getContainer(read.Get(), SampleKey::Nested), nested);
    EXPECT_EQ(container.getInt32(nested, 1, 0), 99);
    ASSERT_EQ(length, 5);
    EXPECT_EQ(std::memcmp(bytes, "bytes", 5), 0);
}

TEST(PackedContainer, AChangeOfANestedOneIsInCopiesAndImages)
{
    for (bool isPlainAround : { false, true }) {
        Container read = ReadAgain(SampleContainer(false)), expected = SampleContainer(false);
        for (Container* each : { &read, &expected })
            container.setId(container.getContainer(each->Get(), SampleKey::EmptyNested), 5);
        if (isPlainAround)
            container.setInt32(read.Get(), SampleKey::Int32, -2);
        const Container copy = read;
        EXPECT_TRUE(container.equals(copy.Get(), expected.Get()));
        EXPECT_TRUE(container.equals(ReadAgain(read).Get(), expected.Get()));
        container.clear(container.getContainer(read.Get(), SampleKey::Nested));
        EXPECT_FALSE(container.equals(read.Get(), expected.Get()));
        EXPECT_FALSE(container.equals(Container(read).Get(), expected.Get()));
        EXPECT_FALSE(container.equals(ReadAgain(read).Get(), expected.Get()));
    }
}

// --- At random, beside one that was never written ---

class RandomChanges
{
public:
    explicit RandomChanges(uint32_t seed)
        : random(seed)
    {
    }

    size_t Number(size_t end) { return random() % end; }

    // The same change of two containers, some levels deep.
    void Change(VX3Container* a, VX3Container* b)
    {
        const auto key = static_cast<int32_t>(Number(40));
        VX3Container *nestedA = container.getContainer(a, key), *nestedB = container.getContainer(b, key);
        ASSERT_EQ(nestedA != nullptr, nestedB != nullptr);
        if (nestedA && Number(3) > 0)
            return Change(nestedA, nestedB);
        const size_t kind = Number(10);
        const auto value = static_cast<int64_t>(random()) * (Number(2) ? 1 : -1);
        for (VX3Container* each : { a, b })
            Apply(each, key, kind, value);
    }

private:
    static void Apply(VX3Container* each, int32_t key, size_t kind, int64_t value)
    {
        const std::string text = std::to_string(value) + "\u00E9";
        switch (kind) {
        case 0: container.setInt32(each, key, static_cast<int32_t>(value)); break;
        case 1: container.setInt64(each, key, value * INT32_MAX); break;
        case 2: container.setFloat(each, key, static_cast<double>(value)); break;
        case 3: container.setText(each, key, Text(text).Get()); break;
        case 4: container.setBytes(each, key, text.data(), static_cast<int64_t>(text.size())); break;
        case 5: container.setId(each, static_cast<int32_t>(value)); break;
        case 6: container.remove(each, key); break;
        case 7: container.setBool(each, key, 1); break;
        case 8: container.clear(each); break;
        default: container.setContainer(each, key, nullptr); break;
        }
    }

    std::mt19937 random;
};

TEST(PackedContainer, ChangedAtRandomItIsAsOneThatWasNeverWritten)
{
    const LiveObjects live = ReadLiveObjects();
    size_t changes = 0;
    for (uint32_t seed = 0; seed < 200; ++seed) {
        RandomChanges random(seed);
        Container plain, read;
        for (int round = 0; round < 60; ++round, ++changes) {
            ASSERT_NO_FATAL_FAILURE(random.Change(read.Get(), plain.Get()));
            ASSERT_TRUE(container.equals(read.Get(), plain.Get())) << seed << ", " << round;
            if (random.Number(4) == 0)
                read = ReadAgain(read);
            if (random.Number(8) == 0)
                read = Container(read);
        }
        ASSERT_TRUE(container.equals(plain.Get(), ReadAgain(read).Get()));
    }
    EXPECT_EQ(changes, 12000u);
    EXPECT_EQ(ReadLiveObjects().containers, live.containers);
    EXPECT_EQ(ReadLiveObjects().texts, live.texts);
}

TEST(PackedContainer, ManyThreadsAskForTheSameNestedOnes)
{
    constexpr int threadCount = 4, rounds = 300;
    Container sample = SampleContainer(false);
    for (int key = 20; key < 30; ++key)
        container.setContainer(sample.Get(), key, SampleContainer(false).Get());
    for (int round = 0; round < rounds; ++round) {
        const Container read = ReadAgain(sample);
        std::vector<VX3Container*> found[threadCount];
        std::vector<std::thread> threads;
        for (auto& own : found)
            threads.emplace_back([&read, &own] {
                for (int key = 20; key < 30; ++key) {
                    own.push_back(container.getContainer(read.Get(), key));
                    EXPECT_EQ(container.getInt32(own.back(), SampleKey::Int32, 0), -2);
                }
            });
        for (std::thread& thread : threads)
            thread.join();
        for (const auto& own : found)
            ASSERT_EQ(own, found[0]);
    }
}

} // namespace
} // namespace vx3::core
