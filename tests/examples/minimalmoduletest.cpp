// The smallest module beside the browser in one host.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include <unistd.h>

#include "core/corehost.h"
#include "core/moduleloader.h"
#include "vx3/browser.h"

namespace vx3 {

namespace {

using Lines = std::vector<std::string>;

// A host whose console is a list of lines.
class MinimalModule : public ::testing::Test
{
protected:
    MinimalModule()
    {
        core::HostSettings settings = core::SettingsBelow(profile);
        settings.onConsole = [this](const std::string& line) { lines.push_back(line); };
        host = std::make_unique<core::CoreHost>(settings);
    }
    ~MinimalModule() override
    {
        host.reset();
        std::filesystem::remove_all(profile);
    }

    Lines LinesOfRoots() const
    {
        Lines found;
        for (const std::string& line : lines)
            if (line.find(" holds ") != std::string::npos)
                found.push_back(line);
        return found;
    }

    std::string profile = ::testing::TempDir() + "minimalmodule" + std::to_string(getpid());
    Lines lines;
    std::unique_ptr<core::CoreHost> host;
};

int32_t CountListedVolumes(const VX3Host* table)
{
    int32_t count = 0;
    VX3Volume volume = {};
    VX3VolumeWalk* walk = table->folder->startVolumes();
    while (walk && table->folder->nextVolume(walk, &volume)) {
        count += (volume.attributes & VX3_VOLUME_LEAVE_OUT) == 0;
        table->path->destruct(&volume.path);
        table->text->destruct(&volume.name);
        table->text->destruct(&volume.label);
    }
    table->folder->endVolumes(walk);
    return count;
}

} // namespace

TEST_F(MinimalModule, TellsTheRootsOfTheBrowserBesideIt)
{
    core::ModuleLoader browser;
    core::ModuleLoader module;
    ASSERT_TRUE(browser.Load(BROWSER_MODULE)) << browser.Error();
    ASSERT_TRUE(module.Load(MINIMAL_MODULE)) << module.Error();
    ASSERT_TRUE(browser.Begin(host->Table())) << browser.Error();
    ASSERT_TRUE(module.Begin(host->Table())) << module.Error();
    module.AllLoaded(); // before the browser: whoever is told first finds the table
    browser.AllLoaded();
    const Lines expected = { "file:/ holds " + std::to_string(CountListedVolumes(host->Table())),
                             "network:/ holds 0",
                             "preset:/ holds 1",
                             "catalog:/ holds 0",
                             "favorite:/ holds 0",
                             "recent:/ holds 0",
                             "search:/ holds 0" };
    EXPECT_EQ(LinesOfRoots(), expected);
    // It kept nothing of the browser, so the order of the ends does not matter.
    browser.End();
    module.End();
    core::LiveObjects live = host->CountLiveObjects();
    EXPECT_EQ(live.memoryBlocks, 0) << host->MemoryReport();
    EXPECT_EQ(live.texts + live.paths + live.containers, 0);
}

TEST_F(MinimalModule, SaysSoWhereThereIsNoBrowser)
{
    core::ModuleLoader module;
    ASSERT_TRUE(module.Load(MINIMAL_MODULE)) << module.Error();
    ASSERT_TRUE(module.Start(host->Table())) << module.Error();
    EXPECT_EQ(lines, Lines{ "minimalmodule: there is no content browser" });
}

TEST_F(MinimalModule, AnswersEveryActionAsTheEntryHeaderSays)
{
    core::ModuleLoader module;
    ASSERT_TRUE(module.Load(MINIMAL_MODULE)) << module.Error();
    uint32_t build = 0;
    VX3ResourceRequest request = { 1 };
    EXPECT_EQ(module.Call(VX3_ACTION_VERSION), VX3_ENTRY_VERSION);
    EXPECT_EQ(module.Call(VX3_ACTION_NONE), VX3_RESULT_REFUSED);
    EXPECT_EQ(module.Call(VX3_ACTION_START), 0) << "not loaded";
    EXPECT_EQ(module.Send(VX3_MESSAGE_BUILD, &build), VX3_RESULT_REFUSED) << "not loaded";

    VX3Host old = *host->Table();
    old.version = VX3_HOST_VERSION - 1;
    EXPECT_EQ(module.Call(VX3_ACTION_LOAD, &old), VX3_RESULT_HOST_TOO_OLD);
    EXPECT_EQ(module.Call(VX3_ACTION_END), VX3_RESULT_OK);

    for (int life = 0; life < 2; ++life) {
        EXPECT_EQ(module.Call(VX3_ACTION_LOAD, const_cast<VX3Host*>(host->Table())), VX3_RESULT_OK);
        EXPECT_EQ(module.Send(VX3_MESSAGE_RESOURCES, &request), VX3_RESULT_OK);
        EXPECT_EQ(request.pending, 0u);
        EXPECT_EQ(module.Call(VX3_ACTION_START), VX3_RESULT_OK);
        EXPECT_EQ(module.Send(VX3_MESSAGE_BUILD, &build), VX3_RESULT_OK);
        EXPECT_NE(build, 0u);
        EXPECT_EQ(module.Send(VX3_MESSAGE_ENDING), VX3_RESULT_REFUSED) << "not a message that it takes";
        EXPECT_EQ(module.Call(VX3_ACTION_END), VX3_RESULT_OK);
        EXPECT_EQ(module.Call(VX3_ACTION_START), 0) << "ended";
    }
}

} // namespace vx3
