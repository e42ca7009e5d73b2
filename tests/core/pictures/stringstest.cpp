// The texts of the module as the host reads them, and the numbers that its preference page names.
#include <gtest/gtest.h>

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <vector>

#include "core/corehost.h"
#include "core/description.h"
#include "core/values.h"

namespace vx3::core {

namespace {

namespace files = std::filesystem;

files::path ModuleFolder()
{
    return files::path(SOURCE_FOLDER) / "modules" / "browser";
}

// The module's resources in a language, loaded by a host of its own.
class LoadedTexts
{
public:
    explicit LoadedTexts(const std::string& language)
        : profile(testing::TempDir() + "strings" + std::to_string(getpid()))
        , host(SettingsOf(profile, language))
        , services(host.Table()->resource)
        , resources(services->load(Path((ModuleFolder() / "browser.so").string()).Get()))
    {
        EXPECT_NE(resources, nullptr) << language;
    }
    ~LoadedTexts()
    {
        services->free(resources);
        files::remove_all(profile);
    }

    // Empty if there is none.
    std::string Find(int32_t number) const
    {
        Text text;
        return services->text(resources, number, text.Get()) ? text.Utf8() : "";
    }

private:
    static HostSettings SettingsOf(const std::string& profile, const std::string& language)
    {
        HostSettings settings = SettingsBelow(profile);
        settings.language = language;
        return settings;
    }

    std::string profile;
    CoreHost host;
    const VX3ResourceServices* services;
    VX3Resources* resources;
};

std::string Unescape(std::string text)
{
    for (size_t at = text.find('\\'); at != std::string::npos; at = text.find('\\', at + 1))
        text.replace(at, 2, text[at + 1] == 'n' ? "\n" : "\\");
    return text;
}

} // namespace

// The rules of the files themselves are those of checks/strings.py.
TEST(Strings, TheHostReadsEveryTextOfEveryLanguage)
{
    std::map<std::string, int> counts;
    for (const auto& entry : files::directory_iterator(ModuleFolder() / "res" / "strings")) {
        if (entry.path().extension() != ".txt")
            continue;
        LoadedTexts texts(entry.path().stem().string());
        std::ifstream file(entry.path());
        for (std::string line; std::getline(file, line);) {
            if (line.empty() || line.starts_with('#'))
                continue;
            std::string written = line.substr(std::min(line.find(" = "), line.size() - 3) + 3);
            EXPECT_EQ(texts.Find(std::atoi(line.c_str())), Unescape(written)) << line;
            ++counts[entry.path().stem().string()];
        }
    }
    EXPECT_GE(counts.size(), 2u);
    EXPECT_GT(counts["us"], 200);
    for (const auto& [language, count] : counts)
        EXPECT_EQ(count, counts["us"]) << language;
}

// Every element of the preference page has its texts, and numbers that make sense.
TEST(Strings, ThePreferencePageHasItsTexts)
{
    LoadedTexts texts("us");
    const Description page = LoadDescription((ModuleFolder() / "browser.so").string(), "Prefsbrowser");
    EXPECT_EQ(page.problems, std::vector<std::string>());
    std::vector<int32_t> ids;
    for (const DescribedElement& element : page.elements) {
        ids.push_back(element.id);
        EXPECT_NE(texts.Find(element.text), "") << element.id;
        EXPECT_EQ((element.maximum - element.minimum) % element.step, 0) << element.id << ": the last step leads past the end";
        for (int32_t choice : element.choices)
            EXPECT_NE(texts.Find(choice), "") << element.id;
    }
    EXPECT_EQ(ids, (std::vector<int32_t>{ 1002, 1003, 1004, 1005, 1009, 1011, 1012, 1007, 1008, 1000 }));
}

} // namespace vx3::core
