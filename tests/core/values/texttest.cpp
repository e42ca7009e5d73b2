#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <thread>

#include "core/livecounts.h"
#include "core/services.h"
#include "core/values.h"

namespace vx3::core {
namespace {

const VX3TextServices& text = *TextServices();

Text Bytes(const std::string& bytes, int32_t encoding)
{
    Text made;
    EXPECT_TRUE(text.set(made.Get(), bytes.data(), static_cast<int32_t>(bytes.size()), encoding));
    return made;
}

TEST(Text, BytesBecomeUnitsByTheirEncoding)
{
    const struct {
        std::string bytes;
        int32_t encoding;
        std::u16string units;
    } rows[] = {
        { "", VX3_ENCODING_UTF8, u"" },
        { std::string("a\0b", 3), VX3_ENCODING_PLAIN, std::u16string(u"a\0b", 3) },
        { "\xE9\xFF", VX3_ENCODING_PLAIN, u"\u00E9\u00FF" },
        { "\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80", VX3_ENCODING_UTF8, u"\u00E9\u20AC\U0001F600" },
        { "a\xFFz", VX3_ENCODING_UTF8, u"a\uFFFDz" },
        { "\xC3", VX3_ENCODING_UTF8, u"\uFFFD" },                               // cut
        { "\xC0\x80", VX3_ENCODING_UTF8, u"\uFFFD\uFFFD" },                     // too long a form
        { "\xE0\x9F\xBF", VX3_ENCODING_UTF8, u"\uFFFD\uFFFD\uFFFD" },           // the same, of three
        { "\xED\xA0\x80", VX3_ENCODING_UTF8, u"\uFFFD\uFFFD\uFFFD" },           // a surrogate
        { "\xF4\x90\x80\x80", VX3_ENCODING_UTF8, u"\uFFFD\uFFFD\uFFFD\uFFFD" }, // beyond U+10FFFF
        { "\xF4\x8F\xBF\xBF", VX3_ENCODING_UTF8, u"\U0010FFFF" },
    };
    for (const auto& row : rows)
        EXPECT_EQ(Bytes(row.bytes, row.encoding).Units(), row.units) << testing::PrintToString(row.bytes);
    Text terminated;
    EXPECT_TRUE(text.set(terminated.Get(), "up to zero", -1, VX3_ENCODING_PLAIN));
    EXPECT_EQ(terminated.Utf8(), "up to zero");
}

TEST(Text, Utf8IsCutBetweenCharactersAndTellsTheWholeLength)
{
    const Text value(u"a\u00E9\u20AC\U0001F600\xD800z");
    const std::string whole = "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80\xEF\xBF\xBDz";
    const size_t ends[] = { 0, 1, 3, 6, 10, 13, 14 };
    const auto length = static_cast<int32_t>(whole.size());
    EXPECT_EQ(text.toUtf8(value.Get(), nullptr, 0), length);
    for (int32_t capacity = 1; capacity <= length + 2; ++capacity) {
        std::string out(static_cast<size_t>(capacity), '#');
        EXPECT_EQ(text.toUtf8(value.Get(), out.data(), capacity), length);
        size_t end = 0;
        for (size_t possible : ends)
            end = possible < static_cast<size_t>(capacity) ? possible : end;
        EXPECT_STREQ(out.c_str(), whole.substr(0, end).c_str()) << capacity;
    }
}

TEST(Text, EditsInsideTheTextItself)
{
    const std::u16string base = u"0123456789abcdef";
    for (int32_t position : { -3, 0, 5, 16, 99 }) {
        const auto place = static_cast<size_t>(std::min(std::max(position, 0), 16));
        Text value(base);
        ASSERT_TRUE(text.insert(value.Get(), position, value.Get()));
        EXPECT_EQ(value.Units(), std::u16string(base).insert(place, base));
        ASSERT_TRUE(text.insert(value.Get(), position, value.Get())) << "now there may be room in the buffer";
        EXPECT_EQ(value.Units().size(), 64u);

        Text part(base);
        ASSERT_TRUE(text.part(part.Get(), position, 4, part.Get()));
        EXPECT_EQ(part.Units(), base.substr(place, 4));

        Text erased(base);
        ASSERT_TRUE(text.erase(erased.Get(), position, 3));
        EXPECT_EQ(erased.Units(), std::u16string(base).erase(place, 3));
    }
    for (int32_t start : { 0, 3, 15 }) {
        Text value(base);
        int32_t length = 0;
        const VX3Unit* inside = text.view(value.Get(), &length) + start;
        ASSERT_TRUE(text.setUnits(value.Get(), inside, length - start));
        EXPECT_EQ(value.Units(), base.substr(static_cast<size_t>(start)));
    }
}

TEST(Text, PositionsAndCountsAreMovedIntoTheText)
{
    const Text value(u"abc");
    VX3Unit units[8] = {};
    EXPECT_EQ(text.read(value.Get(), -5, units, 8), 3);
    EXPECT_EQ(text.read(value.Get(), 2, units, 8), 1);
    EXPECT_EQ(units[0], 'c');
    EXPECT_EQ(text.read(value.Get(), 9, units, 8), 0);
    EXPECT_EQ(text.read(value.Get(), 0, units, -1), 0);
    Text part;
    EXPECT_TRUE(text.part(value.Get(), 1, -1, part.Get()));
    EXPECT_EQ(part.Utf8(), "bc");
    EXPECT_TRUE(text.part(value.Get(), 1, std::numeric_limits<int32_t>::max(), part.Get()));
    EXPECT_EQ(part.Utf8(), "bc");
    Text erased(value);
    EXPECT_TRUE(text.erase(erased.Get(), 1, std::numeric_limits<int32_t>::max()));
    EXPECT_EQ(erased.Utf8(), "a");
    const VX3String empty = {};
    int32_t length = 7;
    EXPECT_NE(text.view(&empty, &length), nullptr);
    EXPECT_EQ(length, 0);
}

TEST(Text, ChangesDoNotReachCopies)
{
    Text a(u"one");
    Text b(a);
    ASSERT_TRUE(text.insert(b.Get(), 3, Text(u" two").Get()));
    Text c(b);
    ASSERT_TRUE(text.toLower(Text(u"X").Get(), a.Get()));
    ASSERT_TRUE(text.erase(c.Get(), 0, 4));
    EXPECT_EQ(a.Utf8(), "x");
    EXPECT_EQ(b.Utf8(), "one two");
    EXPECT_EQ(c.Utf8(), "two");
}

TEST(Text, CopiesAreUsedByTwoThreadsAtOnce)
{
    constexpr int rounds = 20000;
    const Text start(u"start");
    auto work = [](Text mine, char16_t letter) {
        for (int i = 0; i < rounds; ++i) {
            Text copy(mine);
            ASSERT_TRUE(text.insert(copy.Get(), 0, Text(std::u16string_view(&letter, 1)).Get()));
            ASSERT_EQ(copy.Units().size(), 6u);
            ASSERT_EQ(copy.Units()[0], letter);
            ASSERT_EQ(mine.Units(), u"start");
        }
    };
    std::thread first(work, start, u'a');
    std::thread second(work, start, u'b');
    first.join();
    second.join();
}

TEST(Text, ASetValueKeepsItsBuffer)
{
    const int64_t before = liveCounters.texts.Get();
    {
        Text value(std::u16string_view(u"a name of some length"));
        int32_t length = 0;
        const VX3Unit* first = text.view(value.Get(), &length);
        ASSERT_TRUE(text.set(value.Get(), "another name", -1, VX3_ENCODING_UTF8));
        EXPECT_EQ(text.view(value.Get(), &length), first);
        EXPECT_EQ(liveCounters.texts.Get(), before + 1);
    }
    EXPECT_EQ(liveCounters.texts.Get(), before);
}

TEST(Text, Search)
{
    const Text value(u"abcabcABC");
    const Text what(u"abc");
    const struct {
        int32_t from;
        int32_t forward;
        int32_t backward;
    } rows[] = { { 0, 0, 0 }, { 1, 3, 0 }, { 3, 3, 3 }, { 4, -1, 3 }, { 99, -1, 3 }, { -1, 0, 3 }, { -2, 0, 0 } };
    for (const auto& row : rows) {
        EXPECT_EQ(text.find(value.Get(), what.Get(), row.from), row.forward) << row.from;
        EXPECT_EQ(text.findBackward(value.Get(), what.Get(), row.from), row.backward) << row.from;
    }
    EXPECT_EQ(text.find(value.Get(), Text().Get(), 0), -1);
    EXPECT_EQ(text.findBackward(what.Get(), value.Get(), -1), -1) << "longer than the text";
    EXPECT_TRUE(text.matchesAt(value.Get(), 6, what.Get(), 1));
    EXPECT_FALSE(text.matchesAt(value.Get(), 6, what.Get(), 0));
    EXPECT_FALSE(text.matchesAt(value.Get(), 7, what.Get(), 1)) << "cut by the end";
    EXPECT_TRUE(text.matchesAt(value.Get(), 99, Text().Get(), 0));
}

TEST(Text, WholeNumbers)
{
    const struct {
        int64_t number;
        int32_t digits;
        const char* written;
    } rows[] = {
        { 0, 0, "0" },
        { 7, 3, "007" },
        { -7, 3, "-007" },
        { 1234, 2, "1234" },
        { INT64_MIN, 0, "-9223372036854775808" },
        { INT64_MAX, 21, "009223372036854775807" },
    };
    for (const auto& row : rows) {
        Text value;
        ASSERT_TRUE(text.setInteger(value.Get(), row.number, row.digits));
        EXPECT_EQ(value.Utf8(), row.written);
        int64_t back = 1;
        EXPECT_TRUE(text.toInteger(value.Get(), &back));
        EXPECT_EQ(back, row.number);
    }
    for (const char* bad : { "", "+", "-", "1 ", " 1", "1.0", "0x1", "+-1", "9223372036854775808", "\xD9\xA1" }) {
        int64_t kept = 42;
        EXPECT_FALSE(text.toInteger(Text(bad).Get(), &kept)) << bad;
        EXPECT_EQ(kept, 42);
    }
    int64_t plus = 0;
    EXPECT_TRUE(text.toInteger(Text("+12").Get(), &plus));
    EXPECT_EQ(plus, 12);
}

TEST(Text, NumbersWithAPoint)
{
    Text value;
    ASSERT_TRUE(text.setFloat(value.Get(), 2.5, 3));
    EXPECT_EQ(value.Utf8(), "2.500");
    ASSERT_TRUE(text.setFloat(value.Get(), 0.1, -1));
    EXPECT_EQ(value.Utf8(), "0.1");
    for (double number : { 0.0, -0.0, 1.0 / 3, 1e300, -5e-324, std::numeric_limits<double>::max() }) {
        ASSERT_TRUE(text.setFloat(value.Get(), number, -1));
        double back = 1;
        ASSERT_TRUE(text.toFloat(value.Get(), &back)) << value.Utf8();
        EXPECT_EQ(back, number);
        ASSERT_TRUE(text.setFloat(value.Get(), number, 2000)) << "as many places as there can be";
        ASSERT_TRUE(text.toFloat(value.Get(), &back)) << value.Utf8();
        EXPECT_EQ(back, number);
    }
    for (const char* bad : { "", ".", "1,5", "1.5 ", "1e999", "--1" }) {
        double kept = 42;
        EXPECT_FALSE(text.toFloat(Text(bad).Get(), &kept)) << bad;
        EXPECT_EQ(kept, 42);
    }
}

} // namespace
} // namespace vx3::core
