#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "core/livecounts.h"
#include "core/services.h"
#include "core/values.h"
#include "samplecontainer.h"

namespace vx3::core {
namespace {

const VX3ContainerServices& container = *ContainerServices();

std::vector<int32_t> KeysOf(const Container& value)
{
    std::vector<int32_t> keys(static_cast<size_t>(container.count(value.Get())));
    for (size_t place = 0; place < keys.size(); ++place)
        EXPECT_TRUE(container.entryAt(value.Get(), static_cast<int32_t>(place), &keys[place], nullptr));
    return keys;
}

TEST(Container, AGetterAnswersItsDefaultForAnotherType)
{
    Container value;
    ASSERT_TRUE(container.setInt32(value.Get(), 1, 5));
    ASSERT_TRUE(container.setBool(value.Get(), 2, 77));
    EXPECT_EQ(container.getInt32(value.Get(), 1, -1), 5);
    EXPECT_EQ(container.getInt64(value.Get(), 1, -1), -1);
    EXPECT_EQ(container.getBool(value.Get(), 1, 1), 1);
    EXPECT_EQ(container.getBool(value.Get(), 2, 0), 1);
    EXPECT_EQ(container.getInt32(value.Get(), 2, -1), -1);
    EXPECT_EQ(container.getInt32(value.Get(), 3, -1), -1);
    EXPECT_EQ(container.getContainer(value.Get(), 1), nullptr);
    EXPECT_EQ(container.getBytes(value.Get(), 1, nullptr), nullptr);
    Text kept("kept");
    EXPECT_FALSE(container.getText(value.Get(), 1, kept.Get()));
    EXPECT_EQ(kept.Utf8(), "kept");
    ASSERT_TRUE(container.setText(value.Get(), 1, kept.Get())) << "replaces, also with another type";
    EXPECT_EQ(container.typeOf(value.Get(), 1), VX3_VALUE_TEXT);
    EXPECT_EQ(container.count(value.Get()), 2);
    ASSERT_TRUE(container.setBytes(value.Get(), 4, nullptr, 0));
    int64_t length = -1;
    EXPECT_NE(container.getBytes(value.Get(), 4, &length), nullptr) << "no bytes are not none";
    EXPECT_EQ(length, 0);
}

// Against a plain list of pairs, through the sizes where the index comes and grows.
TEST(Container, EntriesStandInTheOrderOfTheirFirstSetting)
{
    std::mt19937 random(7);
    Container value;
    std::vector<std::pair<int32_t, int32_t>> model;
    for (int step = 0; step < 20000; ++step) {
        const auto key = static_cast<int32_t>(static_cast<uint32_t>(random() % 300) * 0x01010000u);
        auto place = std::find_if(model.begin(), model.end(), [&](const auto& pair) { return pair.first == key; });
        if (random() % 5 != 0) {
            ASSERT_TRUE(container.setInt32(value.Get(), key, step));
            if (place == model.end())
                model.emplace_back(key, step);
            else
                place->second = step;
        } else {
            ASSERT_EQ(container.remove(value.Get(), key) != 0, place != model.end());
            if (place != model.end())
                model.erase(place);
        }
        if (step % 4000 == 3999) {
            container.clear(value.Get());
            model.clear();
        }
        ASSERT_EQ(container.count(value.Get()), static_cast<int32_t>(model.size()));
        if (step % 97 == 0) {
            std::vector<int32_t> keys;
            for (const auto& pair : model) {
                keys.push_back(pair.first);
                ASSERT_EQ(container.getInt32(value.Get(), pair.first, -1), pair.second);
            }
            ASSERT_EQ(KeysOf(value), keys);
        }
    }
}

TEST(Container, ANestedContainerKeepsItsAddressWhileOthersComeAndGo)
{
    Container value;
    ASSERT_TRUE(container.setContainer(value.Get(), 1, nullptr));
    VX3Container* nested = container.getContainer(value.Get(), 1);
    ASSERT_TRUE(nested);
    for (int32_t key = 2; key < 500; ++key)
        ASSERT_TRUE(container.setInt32(value.Get(), key, key));
    for (int32_t key = 2; key < 400; ++key)
        ASSERT_TRUE(container.remove(value.Get(), key));
    ASSERT_TRUE(container.setInt32(nested, 9, 99));
    EXPECT_EQ(container.getContainer(value.Get(), 1), nested);
    EXPECT_EQ(container.getInt32(container.getContainer(value.Get(), 1), 9, 0), 99);
}

TEST(Container, ValuesTakenOutOfTheContainerItself)
{
    Container value = SampleContainer();
    const Container before(value);
    int64_t length = 0;
    const void* bytes = container.getBytes(value.Get(), SampleKey::Bytes, &length);
    ASSERT_TRUE(container.setBytes(value.Get(), SampleKey::Bytes, static_cast<const char*>(bytes) + 1, length - 1));
    const void* shorter = container.getBytes(value.Get(), SampleKey::Bytes, &length);
    EXPECT_EQ(std::memcmp(shorter, "ytes", 4), 0);
    VX3Container* nested = container.getContainer(value.Get(), SampleKey::Nested);
    ASSERT_TRUE(container.setContainer(value.Get(), SampleKey::Nested, value.Get())) << "into itself";
    nested = container.getContainer(value.Get(), SampleKey::Nested);
    EXPECT_EQ(container.count(nested), container.count(before.Get()));
    ASSERT_TRUE(container.setContainer(value.Get(), SampleKey::Nested, container.getContainer(nested, SampleKey::Nested)));
    ASSERT_TRUE(container.copy(value.Get(), container.getContainer(value.Get(), SampleKey::Nested)));
    EXPECT_TRUE(container.equals(value.Get(), container.getContainer(before.Get(), SampleKey::Nested)));
}

TEST(Container, CopiesAreDeepAndEqualUntilAnyValueDiffers)
{
    const LiveObjects live = ReadLiveObjects();
    {
        const Container original = SampleContainer();
        const Container same(original);
        EXPECT_TRUE(container.equals(original.Get(), same.Get()));
        int compared = 0;
        for (int32_t key : KeysOf(original)) {
            Container other(original);
            ASSERT_TRUE(container.setInt64(other.Get(), key, 123456));
            EXPECT_FALSE(container.equals(original.Get(), other.Get())) << key;
            ++compared;
        }
        EXPECT_GE(compared, 8);
        Container other(original);
        ASSERT_TRUE(container.setId(other.Get(), 1));
        EXPECT_FALSE(container.equals(original.Get(), other.Get()));
        other = original;
        ASSERT_TRUE(container.setInt32(container.getContainer(other.Get(), SampleKey::Nested), 1, 2));
        EXPECT_FALSE(container.equals(original.Get(), other.Get()));
        EXPECT_TRUE(container.equals(original.Get(), same.Get()));
        other = original;
        ASSERT_TRUE(container.remove(other.Get(), SampleKey::Int32));
        ASSERT_TRUE(container.setInt32(other.Get(), SampleKey::Int32, -2));
        EXPECT_FALSE(container.equals(original.Get(), other.Get())) << "another order";
        container.clear(other.Get());
        EXPECT_EQ(container.getId(other.Get()), container.getId(original.Get()));
    }
    EXPECT_EQ(ReadLiveObjects().containers, live.containers);
    EXPECT_EQ(ReadLiveObjects().texts, live.texts);
}

TEST(Container, EmptyOnesAreEqualHoweverTheyCameAbout)
{
    Container used;
    ASSERT_TRUE(container.setInt32(used.Get(), 1, 1));
    ASSERT_TRUE(container.remove(used.Get(), 1));
    EXPECT_TRUE(container.equals(used.Get(), Container().Get()));
    EXPECT_TRUE(container.equals(Container().Get(), used.Get()));
    Container numbers;
    ASSERT_TRUE(container.setFloat(numbers.Get(), 1, std::numeric_limits<double>::quiet_NaN()));
    EXPECT_TRUE(container.equals(numbers.Get(), Container(numbers).Get())) << "a copy is equal whatever it holds";
    EXPECT_FALSE(container.setBytes(used.Get(), 1, "x", -1));
    EXPECT_FALSE(container.entryAt(used.Get(), 0, nullptr, nullptr));
    EXPECT_FALSE(container.entryAt(numbers.Get(), -1, nullptr, nullptr));
}

} // namespace
} // namespace vx3::core
