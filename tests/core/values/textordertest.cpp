#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "core/services.h"
#include "core/values.h"

namespace vx3::core {
namespace {

const VX3TextServices& text = *TextServices();

int SignOf(int32_t number)
{
    return (number > 0) - (number < 0);
}

std::vector<VX3Unit> KeyOf(const Text& value)
{
    const int32_t needed = text.orderKey(value.Get(), nullptr, 0);
    EXPECT_LE(needed, 2 * text.length(value.Get()) + 1);
    std::vector<VX3Unit> key(static_cast<size_t>(needed));
    EXPECT_EQ(text.orderKey(value.Get(), key.data(), needed), needed);
    return key;
}

// Short texts over few units meet each other in every way; the longer ones are whole names.
Text RandomText(std::mt19937& random)
{
    static const std::u16string_view pieces[] = { u"a", u"A",      u"b",      u"0",      u"00",     u"1",          u"9",      u"10",   u"/",
                                                  u":", u"\u00C4", u"\u00E4", u"\u0416", u"\xDC80", u"\U0001F600", u"\u0660", u"x2048" };
    std::u16string units;
    for (size_t left = random() % 6; left > 0; --left)
        units += pieces[random() % std::size(pieces)];
    return Text(units);
}

TEST(TextOrder, KeysStandInTheOrderOfOrder)
{
    std::mt19937 random(20240607);
    int equalKeys = 0;
    for (int i = 0; i < 200000; ++i) {
        const Text a = RandomText(random);
        const Text b = RandomText(random);
        const auto keyA = KeyOf(a);
        const auto keyB = KeyOf(b);
        const int order = SignOf(text.order(a.Get(), b.Get()));
        ASSERT_EQ(order, -SignOf(text.order(b.Get(), a.Get())));
        ASSERT_EQ(order == 0, a.Units() == b.Units()) << "total: only equal texts are equal";
        if (keyA == keyB) {
            ASSERT_EQ(order, SignOf(text.compare(a.Get(), b.Get()))) << a.Utf8() << " | " << b.Utf8();
            ++equalKeys;
        } else {
            ASSERT_EQ(order, keyA < keyB ? -1 : 1) << a.Utf8() << " | " << b.Utf8();
        }
    }
    EXPECT_GT(equalKeys, 1000);
}

TEST(TextOrder, CaseIsLastAndDigitsAreCharacters)
{
    const std::vector<std::u16string> expected = {
        u"",   u"!",   u"00", u"01",  u"0a",  u"1",  u"1 B", u"10", u"1a",       u"2",       u":",      u"A",      u"a",
        u"a-", u"a01", u"a1", u"a10", u"A1b", u"a2", u"a:",  u"B",  u"Track 10", u"track 2", u"\u00C4", u"\u00E4",
    };
    std::vector<Text> values(expected.begin(), expected.end());
    std::mt19937 random(1);
    for (int round = 0; round < 20; ++round) {
        std::shuffle(values.begin(), values.end(), random);
        std::sort(values.begin(), values.end(), [](const Text& a, const Text& b) { return text.order(a.Get(), b.Get()) < 0; });
        std::vector<std::u16string> sorted;
        for (const Text& value : values)
            sorted.push_back(value.Units());
        ASSERT_EQ(sorted, expected);
    }
}

TEST(TextOrder, AShortBufferGetsTheBeginningOfTheKey)
{
    const Text value(u"a12b");
    const auto whole = KeyOf(value);
    std::vector<VX3Unit> part(3, 0xFFFF);
    EXPECT_EQ(text.orderKey(value.Get(), part.data(), 2), static_cast<int32_t>(whole.size()));
    EXPECT_EQ(part, (std::vector<VX3Unit>{ whole[0], whole[1], 0xFFFF }));
}

TEST(TextOrder, LowerCaseFacts)
{
    const struct {
        char16_t upper;
        char16_t lower;
    } rows[] = {
        { u'A', u'a' },           { u'Z', u'z' },           { u'@', u'@' },           { u'[', u'[' },           { u'\u00C4', u'\u00E4' },
        { u'\u00D7', u'\u00D7' }, { u'\u00DF', u'\u00DF' }, { u'\u0130', u'i' },      { u'\u0178', u'\u00FF' }, { u'\u01C5', u'\u01C6' },
        { u'\u03A3', u'\u03C3' }, { u'\u03C2', u'\u03C2' }, { u'\u0410', u'\u0430' }, { u'\u10A0', u'\u2D00' }, { u'\u1E9E', u'\u00DF' },
        { u'\u2126', u'\u03C9' }, { u'\u212A', u'k' },      { u'\uFF21', u'\uFF41' }, { u'\xD801', u'\xD801' }, { u'\xDC00', u'\xDC00' },
        { u'\uFFFF', u'\uFFFF' },
    };
    for (const auto& row : rows) {
        // At every place of a long run, since steps and rest are done differently.
        for (size_t place = 0; place < 37; ++place) {
            std::u16string units(37, u'Q');
            units[place] = row.upper;
            Text value(units);
            ASSERT_TRUE(text.toLower(value.Get(), value.Get()));
            std::u16string expected(37, u'q');
            expected[place] = row.lower;
            ASSERT_EQ(value.Units(), expected) << std::hex << static_cast<unsigned>(row.upper);
        }
    }
}

TEST(TextOrder, LowerCaseOfAllUnitsIsStableAndInPlace)
{
    std::vector<VX3Unit> all(0x10000);
    for (size_t i = 0; i < all.size(); ++i)
        all[i] = static_cast<VX3Unit>(i);
    std::vector<VX3Unit> once(all.size());
    text.lowerUnits(all.data(), once.data(), static_cast<int32_t>(all.size()));
    std::vector<VX3Unit> twice = once;
    text.lowerUnits(twice.data(), twice.data(), static_cast<int32_t>(twice.size()));
    EXPECT_EQ(once, twice) << "what is in lower case stays";
    int changed = 0;
    for (size_t i = 0; i < all.size(); ++i)
        changed += once[i] != all[i] ? 1 : 0;
    EXPECT_GT(changed, 1100);
    EXPECT_LT(changed, 1300);
}

TEST(TextOrder, LoweringACopyLeavesTheOriginal)
{
    const Text upper(u"MIXED Case");
    Text copy(upper);
    ASSERT_TRUE(text.toLower(copy.Get(), copy.Get()));
    EXPECT_EQ(copy.Utf8(), "mixed case");
    EXPECT_EQ(upper.Utf8(), "MIXED Case");
    EXPECT_EQ(text.compareFolding(copy.Get(), upper.Get()), 0);
    EXPECT_GT(text.compare(copy.Get(), upper.Get()), 0);
}

} // namespace
} // namespace vx3::core
