// The texts of the module: the same numbers in every language, in order, none empty.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace vx3::core {

namespace {

namespace files = std::filesystem;
using Texts = std::map<int, std::string>;

files::path ResourceFolder()
{
    files::path project = files::path(__FILE__).parent_path() / ".." / ".." / "..";
    return project / "modules" / "browser" / "res";
}

// An escape that nobody reads, a missing blank or a number out of order is a failure of the test.
Texts ReadTexts(const std::string& language)
{
    Texts texts;
    std::ifstream file(ResourceFolder() / "strings" / (language + ".txt"));
    EXPECT_TRUE(file.is_open()) << language;
    int last = -1;
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with('#'))
            continue;
        size_t blank = line.find(' ');
        EXPECT_TRUE(blank != std::string::npos && blank > 0 && line.find_first_not_of("0123456789") == blank) << line;
        int number = std::atoi(line.c_str());
        EXPECT_GT(number, last) << line;
        last = number;
        texts[number] = line.substr(blank + 1);
        for (size_t at = line.find('\\'); at != std::string::npos; at = line.find('\\', at + 2))
            EXPECT_TRUE(at + 1 < line.size() && (line[at + 1] == 'n' || line[at + 1] == '\\')) << line;
    }
    return texts;
}

bool IsUtf8(const std::string& text)
{
    for (size_t at = 0; at < text.size(); ++at) {
        auto byte = uint8_t(text[at]);
        int more = byte < 0x80 ? 0 : byte >= 0xf0 ? 3 : byte >= 0xe0 ? 2 : byte >= 0xc2 ? 1 : -1;
        if (more < 0)
            return false;
        for (; more > 0; --more)
            if (++at >= text.size() || (uint8_t(text[at]) & 0xc0) != 0x80)
                return false;
    }
    return true;
}

} // namespace

TEST(Strings, EveryLanguageHasTheSameNumbersAndNoEmptyText)
{
    Texts english = ReadTexts("us");
    Texts german = ReadTexts("de");
    EXPECT_EQ(english[0], "English");
    EXPECT_EQ(german[0], "Deutsch");
    EXPECT_GT(english.size(), 200u);
    for (const Texts* texts : { &english, &german })
        for (const auto& [number, text] : *texts) {
            EXPECT_NE(text.find_first_not_of(' '), std::string::npos) << number;
            EXPECT_TRUE(text.find_first_not_of(' ') == 0 && text.back() != ' ') << number << ": blanks at an end";
            EXPECT_TRUE(IsUtf8(text)) << number;
        }
    for (const auto& [number, text] : english) {
        EXPECT_EQ(german.count(number), 1u) << number << " " << text;
        EXPECT_EQ(text.find("..."), std::string::npos) << number << ": three points are no ellipsis";
    }
    EXPECT_EQ(german.size(), english.size());
}

// Every element of the preference page has its texts, and numbers that make sense.
TEST(Strings, ThePreferencePageHasItsTexts)
{
    Texts texts = ReadTexts("us");
    std::ifstream file(ResourceFolder() / "descriptions" / "Prefsbrowser.txt");
    std::vector<int> elements;
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with('#'))
            continue;
        std::istringstream words(line);
        int element = 0, text = 0;
        std::string type;
        ASSERT_TRUE(words >> element >> type >> text) << line;
        elements.push_back(element);
        EXPECT_EQ(texts.count(text), 1u) << line;
        std::vector<int> more{ std::istream_iterator<int>(words), {} };
        if (type == "number") {
            EXPECT_TRUE(more.size() == 3 && more[0] < more[1] && more[2] > 0 && (more[1] - more[0]) % more[2] == 0) << line;
        } else if (type == "choice") {
            for (int choice : more)
                EXPECT_EQ(texts.count(choice), 1u) << line;
        } else {
            EXPECT_TRUE((type == "switch" || type == "url") && more.empty()) << line;
        }
    }
    EXPECT_EQ(elements, (std::vector<int>{ 1002, 1003, 1004, 1005, 1009, 1011, 1012, 1007, 1008, 1000 }));
}

} // namespace vx3::core
