// Descriptions of preference pages: good ones, damaged ones, and their files.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <random>

#include <sys/stat.h>
#include <unistd.h>

#include "core/description.h"

namespace vx3::core {

namespace {

namespace files = std::filesystem;

constexpr std::string_view page = "# A page\r\n"
                                  "1002 switch 11000\n"
                                  "\n"
                                  "  1005\tnumber 11003  -5 3600 2 \r\n"
                                  "1007 choice 11007 11010 11011 11012\n"
                                  "1000 url 11009";

} // namespace

TEST(Description, ElementsComeInTheirOrderWithTheirRanges)
{
    const Description description = ReadDescription(page);
    EXPECT_TRUE(description.problems.empty());
    ASSERT_EQ(description.elements.size(), 4u);
    const auto& [aSwitch, number, choice, url] =
        std::tie(description.elements[0], description.elements[1], description.elements[2], description.elements[3]);
    EXPECT_EQ(aSwitch.kind, ElementKind::Switch);
    EXPECT_EQ(aSwitch.text, 11000);
    EXPECT_EQ(aSwitch.maximum, 1);
    EXPECT_EQ(number.kind, ElementKind::Number);
    EXPECT_EQ((std::vector<int32_t>{ number.id, number.text, number.minimum, number.maximum, number.step }),
              (std::vector<int32_t>{ 1005, 11003, -5, 3600, 2 }));
    EXPECT_EQ(choice.kind, ElementKind::Choice);
    EXPECT_EQ(choice.choices, (std::vector<int32_t>{ 11010, 11011, 11012 }));
    EXPECT_EQ(choice.maximum, 2);
    EXPECT_EQ(url.kind, ElementKind::Url);
    EXPECT_EQ(url.id, 1000);
}

TEST(Description, ADamagedLineIsToldAndTheOthersStay)
{
    const char* damaged[] = { "x switch 1",       "2 switch",         "2 switch one",        "2",
                              "2 lever 1",        "2 Switch 1",       "2 switch 1 2",        "2 number 1 5 6",
                              "2 number 1 5 5 1", "2 number 1 6 5 1", "2 number 1 5 6 0",    "2 number 1 5 6 1 7",
                              "2 choice 1 2",     "2 choice 1 2 3x",  "2 number 1 1 1.5 1",  "99999999999 switch 1",
                              "2 url 1 1",        "1 switch 1",       "2 switch 99999999999" };
    for (const char* line : damaged) {
        const Description description = ReadDescription("1 switch 1\n" + std::string(line) + "\n3 url 1\n");
        EXPECT_EQ(description.elements.size(), 2u) << line;
        ASSERT_EQ(description.problems.size(), 1u) << line;
        EXPECT_EQ(description.problems[0].find("line 2: "), 0u) << line;
    }
}

// Whatever the bytes, an element that is given makes sense.
TEST(Description, ChangedBytesGiveElementsThatMakeSenseOrNone)
{
    std::minstd_rand random(1);
    int whole = 0;
    constexpr int rounds = 20000;
    for (int round = 0; round < rounds; ++round) {
        std::string bytes(page.substr(0, random() % (page.size() + 1)));
        for (unsigned change = random() % 4; change > 0 && !bytes.empty(); --change)
            bytes[random() % bytes.size()] = "0123456789 -#\n\r\t\0switch\xFF"[random() % 24];
        const Description description = ReadDescription(bytes);
        whole += description.elements.size() == 4;
        for (const DescribedElement& element : description.elements) {
            ASSERT_TRUE(element.kind == ElementKind::Url || element.minimum < element.maximum) << bytes;
            ASSERT_GT(element.step, 0) << bytes;
            ASSERT_EQ(element.choices.empty(), element.kind != ElementKind::Choice) << bytes;
        }
    }
    EXPECT_GT(whole, 0);
    EXPECT_LT(whole, rounds);
}

TEST(Description, IsReadFromTheFolderOfItsModuleAndFromNowhereElse)
{
    const std::string folder = testing::TempDir() + "description" + std::to_string(getpid());
    files::create_directories(folder + "/res/descriptions/folder.txt");
    std::ofstream(folder + "/res/descriptions/page.txt") << page;
    std::ofstream(folder + "/res/descriptions/bad.txt") << "1 lever 2\n";
    std::ofstream(folder + "/res/descriptions/long.txt") << std::string(3 << 20, '\n');
    std::ofstream(folder + "/res/outside.txt") << page;
    mkfifo((folder + "/res/descriptions/pipe.txt").c_str(), 0600);
    const std::string binary = folder + "/browser.so";
    EXPECT_EQ(LoadDescription(binary, "page").elements.size(), 4u);
    for (const char* name : { "bad", "long", "folder", "pipe", "absent", "../outside", "" }) {
        const Description description = LoadDescription(binary, name);
        EXPECT_TRUE(description.elements.empty()) << name;
        ASSERT_EQ(description.problems.size(), 1u) << name;
        EXPECT_NE(description.problems[0].find(folder), std::string::npos) << "which file it is";
    }
    files::remove_all(folder);
}

} // namespace vx3::core
