// Captions of icons, in a font of known widths.

#include "ui/captiontext.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

using namespace browser;

namespace {

constexpr int32_t letterWidth = 7;

// Combining marks take no room, capital W is wide, a T draws closer to a dot.
int32_t WidthOf(Units run)
{
    int32_t width = 0;
    for (size_t i = 0; i < run.size(); i++) {
        const bool isMark = run[i] >= 0x300 && run[i] < 0x370;
        width += isMark ? 0 : run[i] == 'W' ? 60 : letterWidth;
        if (i > 0 && run[i] == '.' && run[i - 1] == 'T')
            width -= 2 * letterWidth - 1;
    }
    return width;
}

Units UnitsOf(const std::u16string& text)
{
    return { reinterpret_cast<const VX3Unit*>(text.data()), text.size() };
}

std::u16string Caption(const std::u16string& name, int32_t limit)
{
    const auto measure = [](Units run) { return WidthOf(run); };
    const CaptionText caption(UnitsOf(name), limit, measure);
    EXPECT_EQ(caption.Width(), WidthOf(caption.View()));
    return { caption.View().begin(), caption.View().end() };
}

// What the search stands for: every length is tried, the longest first.
std::u16string TriedOneByOne(const std::u16string& name, int32_t limit)
{
    if (WidthOf(UnitsOf(name)) <= limit)
        return name;
    for (size_t kept = name.size(); kept > 0; kept--)
        if (std::u16string text = name.substr(0, kept) + u".."; WidthOf(UnitsOf(text)) <= limit)
            return text;
    return u"..";
}

TEST(CaptionText, NamesThatAreTooLongEndInTwoDots)
{
    const struct {
        std::u16string name;
        int32_t limit;
        std::u16string caption;
    } cases[] = {
        { u"", 60, u"" },
        { u"marble.b", 56, u"marble.b" },
        { u"marble.b", 55, u"marbl.." },
        { u"marble", 21, u"m.." },
        { u"marble", 20, u".." },
        { u"WW", 60, u".." },                              // one very wide character
        { u"marble", 3, u".." },                           // no room for the dots, either
        { u"a\u0301bcd\u0301efghij", 35, u"a\u0301bc.." }, // marks stay with their letters
        { u"ab\U0001F600cdefg", 35, u"ab.." },             // half a pair is not shown
        { u"ab\U0001F600cdefg", 42, u"ab\U0001F600.." },
        { u"ab\xDC80\xDC81zzzz", 35, u"ab\xDC80.." }, // bytes that are no text
    };
    for (const auto& one : cases)
        EXPECT_EQ(Caption(one.name, one.limit), one.caption) << one.limit;
}

TEST(CaptionText, ASearchFindsWhatTryingAllFinds)
{
    std::mt19937 random(5);
    for (int32_t round = 0; round < 3000; round++) {
        std::u16string name;
        for (uint32_t length = random() % 40; length > 0; length--)
            name += u"aTWx"[random() % 16 ? random() % 2 : random() % 4];
        const auto limit = static_cast<int32_t>(20 + random() % 232);
        EXPECT_EQ(Caption(name, limit), TriedOneByOne(name, limit)) << round;
    }
}

TEST(CaptionText, LongNamesAreMeasuredAFewTimes)
{
    int32_t calls = 0;
    auto measure = [&calls](Units run) {
        calls++;
        return WidthOf(run);
    };
    const std::u16string name(100'000, u'x');
    const CaptionText caption(UnitsOf(name), 252, measure);
    EXPECT_EQ(caption.View().size(), 36u);
    EXPECT_LE(calls, 12);
    // Marks without end: no more is kept than there is room for.
    EXPECT_EQ(Caption(u"a" + std::u16string(5000, u'\u0301') + std::u16string(50, u'x'), 60).size(), 1024u);
}

} // namespace
