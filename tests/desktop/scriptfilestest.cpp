// Every script of the gallery, with the same print as in a host without a screen.
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "qtfixture.h"

namespace {

using vx3::tests::QtTest;

std::string ReadFile(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    std::ostringstream bytes;
    bytes << file.rdbuf();
    return bytes.str();
}

std::vector<std::string> Scripts()
{
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(std::filesystem::path(SCRIPT_FOLDER) / "gallery"))
        if (entry.path().extension() == ".script")
            names.push_back(entry.path().stem().string());
    std::sort(names.begin(), names.end());
    return names;
}

class QtScriptFileTest : public QtTest, public ::testing::WithParamInterface<std::string>
{
};

TEST_P(QtScriptFileTest, PrintsWhatItPrintsWithoutAScreen)
{
    const std::filesystem::path base = std::filesystem::path(SCRIPT_FOLDER) / "gallery" / GetParam();
    EXPECT_EQ(Play(ReadFile(base.string() + ".script")), ReadFile(base.string() + ".txt"));
}

std::string TestName(const ::testing::TestParamInfo<std::string>& info)
{
    std::string name = info.param;
    std::replace_if(
        name.begin(), name.end(), [](unsigned char c) { return !std::isalnum(c); }, '_');
    return name;
}

INSTANTIATE_TEST_SUITE_P(Gallery, QtScriptFileTest, ::testing::ValuesIn(Scripts()), TestName);

} // namespace
