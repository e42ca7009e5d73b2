// A sort gives the order that comparing nodes one by one gives.

#include "support/nodefixture.h"

#include <algorithm>
#include <random>

#include "search/sortby.h"

using namespace browser;
using namespace vx3::tests;

namespace {

// Names that part late, early, at the ends of words of eight letters, by case alone, by
// being the start of another, and beyond the letters of one byte.
Strings HardNames()
{
    Strings names = { "a",        "A.png",        "a.png",        "abcdefg",      "abcdefgh",         "abcdefghi", "abcdefgH", "ABCDEFGH",
                      "a9",       "a10",          "a1",           "\xC3\xA9",     "\xC3\x89",         "e",         "f",        "z",
                      "\xDF\xBF", "\xE0\xA0\x80", "\xE2\x82\xAC", "\xEF\xBF\xBD", "\xF0\x9F\x8E\xA8", "\x7F",      "~" };
    for (const char* tail : { "", "x", "X", "xy", "\xC3\xBC", "\xE6\x9C\xA8" }) {
        names.push_back("the same start of many letters " + std::string(tail));
        names.push_back(std::string(200, 'n') + tail);
    }
    return names;
}

class Sorting : public NodeTest
{
protected:
    // Fills a folder: names from `alphabet` beside the hard ones, few sizes and dates, folders among files.
    void FillFolder(int seed, int count, const std::string& alphabet)
    {
        std::mt19937 dice(static_cast<uint32_t>(seed));
        Strings names = HardNames();
        for (int i = 0; i < count; i++) {
            std::string name;
            for (size_t left = 1 + dice() % 20; left; left--)
                name += alphabet[dice() % alphabet.size()];
            names.push_back(name);
        }
        std::shuffle(names.begin(), names.end(), dice);
        for (const std::string& name : names) {
            const std::string path = "/p/" + name + (dice() % 3 ? "" : ".tif");
            if (dice() % 8 == 0)
                Disk().AddFolder(path);
            else
                Disk().AddFile(path, std::string(dice() % 3, 'x'),
                               Day(static_cast<uint16_t>(dice() % 2), static_cast<uint16_t>(dice() % 3)));
        }
        top = Top("/p");
    }
    ~Sorting() override { top = DirectoryRef(); }

    void ExpectInOrder(SortMode mode)
    {
        NodeRef first;
        Array<NodeRef> sorted;
        top->GetFirstChild(first);
        ASSERT_TRUE(MakeSortedChildren(mode, first, sorted));
        ASSERT_EQ(sorted.Count(), Names(*top).size());
        for (size_t i = 1; i < sorted.Count(); i++) {
            BrowserContentNode* a = ContentOf(sorted[i - 1]);
            BrowserContentNode* b = ContentOf(sorted[i]);
            const bool folders[] = { a->CanHoldChildren(), b->CanHoldChildren() };
            const bool foldersFirst = mode != SortMode::Size;
            ASSERT_TRUE(!foldersFirst || folders[0] || !folders[1]) << "folders come first";
            if (foldersFirst && folders[0] != folders[1])
                continue;
            ASSERT_LT(CompareNodes(mode, a, b), 0) << Utf8(a->GetNameRef()) << " and " << Utf8(b->GetNameRef());
        }
    }

    DirectoryRef top;
};

TEST_F(Sorting, GivesTheOrderOfComparisons)
{
    FillFolder(1, 400, "aAbB01 .");
    for (SortMode mode : { SortMode::Name, SortMode::Modified, SortMode::Created, SortMode::Size, SortMode::Type })
        ExpectInOrder(mode);
}

TEST_F(Sorting, NamesOfOneLetterTieToTheirEnds)
{
    FillFolder(2, 60, "n");
    ExpectInOrder(SortMode::Name);
}

TEST_F(Sorting, SpellingsOfOneNameAreInOrder)
{
    for (const std::string name : { "sevenab", "eightabc", "nineabcde" }) {
        const std::string folder = "/p of " + name;
        for (size_t capitals = 0; capitals < 12; capitals++) {
            std::string spelling = name;
            for (size_t i = 0; i < 4; i++)
                if (capitals >> i & 1)
                    spelling[i] = static_cast<char>(spelling[i] - 'a' + 'A');
            Disk().AddFile(folder + "/" + spelling, "", Day(1));
        }
        top = Top(folder);
        ExpectInOrder(SortMode::Name);
    }
}

TEST_F(Sorting, TimesOfOneDayGoBeforeNames)
{
    for (uint16_t i = 0; i < 5; i++)
        Disk().AddFile("/p/" + std::string(1, static_cast<char>('e' - i)), "", Day(i % 2, i));
    top = Top("/p");
    ExpectInOrder(SortMode::Modified);
}

// Names that tie as letters are told apart with memory of their own: a sort is right, or
// says that it is none.
TEST_F(Sorting, WithoutMemoryThereIsNoOrderRatherThanAWrongOne)
{
    for (const char* name : { "name", "Name", "nAme", "naMe", "namE", "NAme", "NaMe", "NamE", "nAMe", "nAmE" })
        Disk().AddFile("/p/" + std::string(name), "", Day(1));
    top = Top("/p");
    NodeRef first;
    top->GetFirstChild(first);
    Array<NodeRef> right;
    ASSERT_TRUE(MakeSortedChildren(SortMode::Name, first, right));
    int64_t failed = 0;
    for (int64_t nth = 1, failures = 1; failures; nth++) {
        Array<NodeRef> sorted;
        const uint64_t before = ContentVersion();
        testHost.Faults().Fail(vx3::testing::FailClass::Memory, nth);
        const bool isSorted = MakeSortedChildren(SortMode::Name, first, sorted);
        failures = testHost.Faults().FailuresOf(vx3::testing::FailClass::Memory);
        testHost.Faults().Clear();
        failed += !isSorted;
        if (!isSorted || ContentVersion() != before) // it says that it is to be asked again
            continue;
        ASSERT_EQ(sorted.Count(), right.Count());
        for (size_t i = 0; i < right.Count(); i++)
            EXPECT_EQ(sorted[i], right[i]) << nth;
    }
    EXPECT_GE(failed, 5);
}

} // namespace
