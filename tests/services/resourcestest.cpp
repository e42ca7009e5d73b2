// Texts by number, and sentences with values in them.

#include "support/modulefixture.h"

#include <filesystem>
#include <fstream>

#include "services/resources.h"

using namespace browser;
using namespace vx3::tests;
using vx3::testing::FailClass;
using vx3::testing::FailEachInTurn;
using vx3::testing::Failing;

namespace {

class ModuleTexts : public ModuleTest
{
protected:
    ModuleTexts()
    {
        const std::string folder = testHost.Folder() + "/module";
        std::filesystem::create_directories(folder + "/res/strings");
        std::ofstream(folder + "/res/strings/us.txt") << "1 = %1 of %2\n2 = %2 %% 100% (%1)%\n3 = no place\n4 = %1%1%3\n5 =\n";
        EXPECT_TRUE(LoadResources(PathOf(folder + "/browser.so")));
    }
    ~ModuleTexts() override { FreeResources(); }

    static std::string Filled(int32_t number, std::string_view first, std::string_view second)
    {
        const String values[] = { TextOf(first), TextOf(second) };
        return Utf8(ResourceText(number, values));
    }
};

TEST_F(ModuleTexts, ValuesStandWhereTheLanguageWantsThem)
{
    EXPECT_EQ(Filled(1, "3", "10"), "3 of 10");
    EXPECT_EQ(Filled(2, "left", "right"), "right %% 100% (left)%");
    EXPECT_EQ(Filled(3, "a", "b"), "no place");
    EXPECT_EQ(Filled(4, "%2", "b"), "%2%2%3") << "a value is no sentence, and the third value is not there";
    EXPECT_EQ(Filled(1, "", ""), " of ");
    EXPECT_EQ(Filled(5, "a", "b"), "");
    EXPECT_EQ(Filled(6, "a", "b"), "#6");
    EXPECT_EQ(Utf8(ResourceText(1, {})), "%1 of %2");
}

TEST_F(ModuleTexts, ASentenceIsWholeOrEmpty)
{
    const String values[] = { TextOf("3"), TextOf("10") };
    const auto runs = FailEachInTurn(testHost.Faults(), FailClass::Memory, Failing::Once, [&](int64_t nth) {
        const String filled = ResourceText(1, values);
        if (!filled.IsEmpty()) {
            EXPECT_EQ(Utf8(filled), "3 of 10") << nth;
        }
    });
    EXPECT_GT(runs, 3);
}

TEST_F(ModuleTexts, ANumberWithoutATextIsShown)
{
    EXPECT_EQ(Utf8(ResourceText(10246)), "#10246");
    FreeResources();
    EXPECT_EQ(Utf8(ResourceText(10246)), "") << "without resources there is nothing to be missing";
    EXPECT_EQ(Utf8(ResourceText(1, {})), "");
}

} // namespace
