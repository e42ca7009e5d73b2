// Folders of the module, type codes, languages.

#include "support/modulefixture.h"

#include <filesystem>

#include "model/browserfolders.h"
#include "model/browserutils.h"

using namespace browser;
using namespace vx3::tests;
namespace fs = std::filesystem;

namespace {

class Utils : public ModuleTest
{
protected:
    explicit Utils(vx3::testing::TestHostOptions options = {})
        : ModuleTest(std::move(options))
    {
        ForgetFolders();
        RememberRestriction();
    }
    ~Utils() override
    {
        ForgetFolders();
        ForgetLanguages();
    }
    const vx3::core::HostSettings& Settings() { return testHost.Core().Settings(); }
};

vx3::testing::TestHostOptions Restricted()
{
    vx3::testing::TestHostOptions options;
    options.adjust = [](vx3::core::HostSettings& settings) { settings.restricted = true; };
    return options;
}

class RestrictedUtils : public Utils
{
protected:
    RestrictedUtils()
        : Utils(Restricted())
    {
    }
};

TEST_F(Utils, MakesTheCacheAndDeletesTheTemporaryFolderAlone)
{
    FilePath cache, temp;
    GetCacheFolder(CreateFolders::Yes, cache);
    GetTempFolder(temp);
    EXPECT_EQ(NativeOf(cache), Settings().preferencesFolder + "/cache");
    EXPECT_TRUE(fs::is_directory(NativeOf(cache) + "/image"));
    ASSERT_TRUE(fs::is_directory(NativeOf(temp)));
    fs::create_directories(NativeOf(temp) + "/deep/er");
    DeleteTempFolder();
    EXPECT_FALSE(fs::exists(NativeOf(temp)));
    EXPECT_TRUE(fs::exists(NativeOf(cache) + "/image"));
}

TEST_F(RestrictedUtils, LeaveTheSystemsTemporaryFolderAlone)
{
    FilePath temp;
    fs::create_directories(Settings().temporaryFolder);
    GetTempFolder(temp);
    EXPECT_EQ(NativeOf(temp), Settings().temporaryFolder);
    DeleteTempFolder();
    EXPECT_TRUE(fs::exists(Settings().temporaryFolder));
}

TEST_F(Utils, FindsTheLibraryFolders)
{
    FilePath user, system;
    GetUserLibraryFolder(user);
    EXPECT_EQ(NativeOf(user), Settings().userLibraryFolder + "/browser");
    EXPECT_TRUE(fs::is_directory(NativeOf(user)));
    EXPECT_FALSE(GetSystemLibraryFolder(&system)) << "there is no application library";
    EXPECT_TRUE(testHost.CollectConsole().empty());
    fs::create_directories(Settings().applicationLibraryFolder);
    EXPECT_FALSE(GetSystemLibraryFolder(&system));
    EXPECT_EQ(testHost.CollectConsole(), std::vector<std::string>{ "CB: system library/browser directory does not exist" });
    fs::create_directories(Settings().applicationLibraryFolder + "/browser");
    EXPECT_TRUE(GetSystemLibraryFolder(&system));
    EXPECT_EQ(NativeOf(system), Settings().applicationLibraryFolder + "/browser");
}

TEST_F(Utils, AMissingUserLibraryIsSaid)
{
    testHost.Faults().Fail(vx3::testing::FailClass::CreateFolder, 1, vx3::testing::Failing::FromThereOn);
    FilePath user;
    GetUserLibraryFolder(user);
    testHost.Faults().Clear();
    EXPECT_EQ(testHost.CollectConsole(), std::vector<std::string>{ "CB: Creating user library/browser directory failed" });
}

TEST_F(Utils, TypeCodesHoldFourCharacters)
{
    EXPECT_EQ(TypeCodeFromText(TextOf("TIF")), 0x74696600);
    EXPECT_EQ(TypeCodeFromText(TextOf("jpeg")), 0x6A706567);
    EXPECT_EQ(TypeCodeFromText(TextOf("targa")), 0);
    EXPECT_EQ(TypeCodeFromText(TextOf("")), 0);
    EXPECT_EQ(TypeCodeFromText(TextOf("a\xC3\xA4")), 0x61000000);
    String text;
    TextFromTypeCode(0x74696600, text);
    EXPECT_EQ(Utf8(text), "tif");
}

} // namespace
