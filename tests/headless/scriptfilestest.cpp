// Every script of the gallery, compared with what it printed when it was looked at.
//
// To accept what is printed now, run with VX3_ACCEPT=1 and read the difference.
#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "headless/galleryfixture.h"

namespace {

using vx3::tests::GalleryTest;

std::string ReadFile(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    std::ostringstream bytes;
    bytes << file.rdbuf();
    return bytes.str();
}

// Those for every host, and those about what only this one has.
std::vector<std::string> Scripts()
{
    std::vector<std::string> names;
    for (const char* folder : { "gallery", "headless" })
        for (const auto& entry : std::filesystem::directory_iterator(std::filesystem::path(SCRIPT_FOLDER) / folder))
            if (entry.path().extension() == ".script")
                names.push_back(std::string(folder) + "/" + entry.path().stem().string());
    std::sort(names.begin(), names.end());
    return names;
}

class ScriptFileTest : public GalleryTest, public ::testing::WithParamInterface<std::string>
{
};

TEST_P(ScriptFileTest, PrintsWhatItAlwaysDid)
{
    const std::filesystem::path base = std::filesystem::path(SCRIPT_FOLDER) / GetParam();
    const std::string printed = Play(ReadFile(base.string() + ".script"));
    if (std::getenv("VX3_ACCEPT"))
        std::ofstream(base.string() + ".txt", std::ios::binary) << printed;
    EXPECT_EQ(printed, ReadFile(base.string() + ".txt"));
}

std::string TestName(const ::testing::TestParamInfo<std::string>& info)
{
    std::string name = info.param;
    std::replace_if(
        name.begin(), name.end(), [](unsigned char c) { return !std::isalnum(c); }, '_');
    return name;
}

INSTANTIATE_TEST_SUITE_P(Gallery, ScriptFileTest, ::testing::ValuesIn(Scripts()), TestName);

} // namespace
