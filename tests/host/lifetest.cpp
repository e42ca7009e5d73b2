// The life of the module from action 1 to action 3, as the entry protocol tells it.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "core/registry.h"
#include "core/values.h"
#include "testing/testhost.h"
#include "vx3/browser.h"

using namespace vx3::testing;

namespace {

TestHostOptions WithSettings(std::function<void(vx3::core::HostSettings&)> adjust)
{
    TestHostOptions options;
    options.calling = Calling::InModules;
    options.adjust = std::move(adjust);
    return options;
}

// A host whose only module is the browser.
struct Life {
    explicit Life(std::function<void(vx3::core::HostSettings&)> adjust = nullptr)
        : host(WithSettings(std::move(adjust)))
        , module(host.Checked())
    {
        EXPECT_TRUE(module.Load(BROWSER_MODULE)) << module.Error();
    }
    const VX3Browser* Table()
    {
        return static_cast<const VX3Browser*>(
            host.PlainTable()->registry->find(VX3_BROWSER_TABLE, VX3_BROWSER_VERSION, sizeof(VX3Browser)));
    }
    void ExpectNothingLeft()
    {
        module.Unload();
        EXPECT_EQ(host.ExpectClean(), "");
        EXPECT_FALSE(MappingExists("browser.so"));
    }

    TestHost host;
    TestModule module;
};

// Lists the roots and the folder of the test, as a host does.
void Browse(Life& life)
{
    const VX3Browser* browser = life.Table();
    if (!browser)
        return;
    vx3::core::Path folder(life.host.Folder());
    VX3Url url = {};
    VX3Node* node = nullptr;
    browser->urls->setFile(&url, folder.Get());
    browser->tree->findNodeByUrl(&url, VX3_FIND_DEEPEST, nullptr, &node);
    browser->urls->destruct(&url);
    if (!node)
        return;
    VX3Node* first = nullptr;
    int32_t count = 0;
    browser->nodes->getFirstChild(node, &first);
    VX3Node** sorted = browser->tools->sortedChildren(VX3_SORT_TYPE, first, &count);
    for (int32_t i = 0; i < count; i++)
        browser->icons->releasePreview(browser->nodes->getPreview(sorted[i], 0, 32));
    browser->tools->freeNodes(sorted);
    browser->references->release(node);
}

// One item of the user's library, through the table.
struct StoredItem {
    StoredItem(const VX3Browser& published, const char* address)
        : browser(published)
    {
        browser.urls->setText(&url, vx3::core::Text(address).Get());
    }
    ~StoredItem() { browser.urls->destruct(&url); }

    bool Store(int32_t library, std::string_view data)
    {
        vx3::core::Text name("Oak");
        return browser.items->store(library, &url, 1018107, name.Get(), data.data(), static_cast<int64_t>(data.size()));
    }
    std::string Read(const VX3Host& host, int32_t library)
    {
        int32_t type = 0;
        void* bytes = nullptr;
        int64_t length = 0;
        if (!browser.items->read(library, &url, &type, nullptr, &bytes, &length))
            return "none";
        const std::string text(static_cast<const char*>(bytes), static_cast<size_t>(length));
        host.memory->free(bytes);
        return std::to_string(type) + " " + text;
    }

    const VX3Browser& browser;
    VX3Url url = {};
};

TEST(Life, WhatIsStoredIsThereInTheNextOne)
{
    constexpr int32_t userLibrary = 1;
    Life life;
    ASSERT_TRUE(life.module.Start());
    {
        StoredItem oak(*life.Table(), "preset://user.libvx/Wood/Oak");
        EXPECT_EQ(life.Table()->libraries->libraryId(&oak.url), userLibrary) << "before there is a file";
        EXPECT_FALSE(life.Table()->items->exists(&oak.url));
        EXPECT_TRUE(oak.Store(userLibrary, "the first"));
        EXPECT_TRUE(oak.Store(userLibrary, "the second, and longer"));
        EXPECT_TRUE(life.Table()->items->exists(&oak.url));
        EXPECT_EQ(oak.Read(*life.host.Table(), userLibrary), "1018107 the second, and longer");
        EXPECT_EQ(oak.Read(*life.host.Table(), 0), "none");
        EXPECT_FALSE(oak.Store(99, "nowhere"));
        EXPECT_FALSE(life.Table()->libraries->unregisterLibrary(0));
    }
    life.module.End();
    life.ExpectNothingLeft();
    EXPECT_TRUE(life.module.Load(BROWSER_MODULE));
    ASSERT_TRUE(life.module.Start());
    {
        StoredItem elm(*life.Table(), "preset://user.libvx/Wood/Elm"), oak(*life.Table(), "preset://user.libvx/Wood/Oak");
        EXPECT_TRUE(elm.Store(userLibrary, "another")) << "opens the library";
        EXPECT_EQ(oak.Read(*life.host.Table(), userLibrary), "1018107 the second, and longer");
    }
    life.module.End();
    life.ExpectNothingLeft();
}

uintmax_t SizeOfUserLibrary(Life& life)
{
    for (const auto& entry : std::filesystem::recursive_directory_iterator(life.host.Folder()))
        if (entry.path().filename() == "User.libvx")
            return entry.file_size();
    return 0;
}

TEST(Life, TheCommandForItWritesTheLibrariesAnew)
{
    constexpr int32_t userLibrary = 1;
    Life life([](vx3::core::HostSettings& settings) { settings.runMode = 0; });
    ASSERT_TRUE(life.module.Start());
    {
        StoredItem oak(*life.Table(), "preset://user.libvx/Wood/Oak");
        for (char letter : { 'a', 'b', 'c' })
            EXPECT_TRUE(oak.Store(userLibrary, std::string(100, letter)));
        const auto& commands = vx3::core::RegisteredCommands();
        const auto clean = std::find_if(commands.begin(), commands.end(), [](const auto& command) { return command.id == 1018433; });
        ASSERT_NE(clean, commands.end());
        const uintmax_t before = SizeOfUserLibrary(life);
        EXPECT_TRUE(clean->Execute());
        EXPECT_LT(SizeOfUserLibrary(life), before);
        EXPECT_EQ(oak.Read(*life.host.Table(), userLibrary), "1018107 " + std::string(100, 'c'));
    }
    life.module.End();
    life.ExpectNothingLeft();
}

TEST(Life, EachActionAnswersAsTold)
{
    Life life;
    uint32_t build = 0;
    EXPECT_EQ(life.module.Call(VX3_ACTION_VERSION), 5);
    EXPECT_EQ(life.module.Call(VX3_ACTION_NONE), -1);
    EXPECT_EQ(life.module.Call(0), -1);
    EXPECT_EQ(life.module.Call(7), -1);
    ASSERT_TRUE(life.module.Start());
    EXPECT_EQ(life.module.Send(VX3_MESSAGE_BUILD, &build), 1);
    EXPECT_EQ(build, 18250u);
    EXPECT_EQ(life.module.Send(4711), -1);
    EXPECT_EQ(life.module.Call(VX3_ACTION_START), 1) << "a second start changes nothing";
    EXPECT_EQ(life.module.LoadAction(), 1);
    EXPECT_EQ(life.module.Call(VX3_ACTION_END), 1) << "the inner end of two loads";
    EXPECT_NE(life.Table(), nullptr);
    life.module.End();
    EXPECT_EQ(life.Table(), nullptr);
    life.ExpectNothingLeft();
}

TEST(Life, AHostThatIsTooOldIsRefused)
{
    Life life;
    VX3Host old = *life.host.Table();
    old.version = VX3_HOST_VERSION - 1;
    {
        vx3::core::Path path(BROWSER_MODULE);
        EXPECT_EQ(life.module.Call(VX3_ACTION_LOAD, &old, nullptr, path.Get()), -3);
    }
    EXPECT_EQ(life.module.Call(VX3_ACTION_END), 1);
    EXPECT_EQ(life.module.Call(VX3_ACTION_LOAD, const_cast<VX3Host*>(life.host.Table()), nullptr, nullptr), -3);
    EXPECT_EQ(life.module.Call(VX3_ACTION_START), 0);
    EXPECT_EQ(life.module.Call(VX3_ACTION_END), 1);
    EXPECT_EQ(life.module.Call(VX3_ACTION_END), 1) << "one too many";
    life.ExpectNothingLeft();
}

TEST(Life, AnExcludedModuleTakesNoPart)
{
    Life life([](vx3::core::HostSettings& settings) { settings.moduleExcluded = true; });
    uint32_t build = 5;
    ASSERT_EQ(life.module.LoadAction(), 1);
    EXPECT_EQ(life.module.Send(VX3_MESSAGE_BUILD, &build), -1);
    EXPECT_EQ(build, 5u);
    EXPECT_EQ(life.module.Call(VX3_ACTION_START), 0);
    EXPECT_EQ(life.Table(), nullptr);
    life.module.End();
    life.ExpectNothingLeft();
}

// Every run mode comes up and goes down, with the message of the end and without it.
TEST(Life, RunModesAndEnds)
{
    for (int32_t mode : { 0, int32_t(VX3_RUN_COMMAND_LINE), int32_t(VX3_RUN_SERVER), int32_t(VX3_RUN_CLIENT) }) {
        Life announced([mode](vx3::core::HostSettings& settings) { settings.runMode = mode; });
        ASSERT_TRUE(announced.module.Start()) << mode;
        Browse(announced);
        EXPECT_EQ(announced.module.Send(VX3_MESSAGE_ENDING), 1);
        VX3Node* root = nullptr;
        announced.Table()->tree->getRootByIndex(2, &root);
        EXPECT_EQ(root, nullptr) << "the roots are gone";
        EXPECT_EQ(announced.module.Send(VX3_MESSAGE_VOLUME), 1) << "and nothing is done any more";
        announced.module.End();
        announced.ExpectNothingLeft();
    }
    Life silent;
    ASSERT_EQ(silent.module.LoadAction(), 1);
    ASSERT_EQ(silent.module.Call(VX3_ACTION_START), 1);
    EXPECT_EQ(silent.module.Send(VX3_MESSAGE_ALL_LOADED), 1);
    Browse(silent);
    silent.module.End();
    silent.ExpectNothingLeft();
}

TEST(Life, MissingResourcesAreSaidAndHarmless)
{
    Life life;
    life.host.Faults().Fail(FailClass::LoadResource, 1);
    ASSERT_EQ(life.module.LoadAction(), 1);
    VX3ResourceRequest request = { 77 };
    EXPECT_EQ(life.module.Send(VX3_MESSAGE_RESOURCES, &request), -1);
    EXPECT_EQ(request.pending, 77u);
    life.host.Faults().Clear();
    EXPECT_EQ(life.module.Call(VX3_ACTION_START), 1);
    Browse(life);
    life.module.End();
    life.ExpectNothingLeft();
}

TEST(Life, MissingIconsAreSaidAndHarmless)
{
    Life life;
    life.host.Faults().Fail(FailClass::LoadBitmap, 1, Failing::FromThereOn);
    ASSERT_TRUE(life.module.Start());
    EXPECT_EQ(life.host.CollectConsole(), std::vector<std::string>(8, "RegisterIcon failed"));
    Browse(life);
    life.module.End();
    life.ExpectNothingLeft();
}

// The thread that loads libraries cannot start: that is said, and the module goes on.
TEST(Life, AThreadThatDoesNotStartIsReported)
{
    Life life([](vx3::core::HostSettings& settings) { settings.runMode = 0; });
    life.host.Faults().Fail(FailClass::ThreadStart, 1, Failing::FromThereOn);
    ASSERT_TRUE(life.module.Start());
    EXPECT_EQ(life.host.Checked().TakeViolations().size(), 1u) << "one critical stop";
    Browse(life);
    life.module.End();
    life.ExpectNothingLeft();
}

// A volume that comes is listed, one that goes leaves the tree with its nodes.
TEST(Life, VolumesAreAnnounced)
{
    Life life;
    ASSERT_TRUE(life.module.Start());
    {
        vx3::core::Text path(life.host.Folder()), none;
        VX3VolumeChange change = { *path.Get(), 1 };
        EXPECT_EQ(life.module.Send(VX3_MESSAGE_VOLUME, &change), 1);
        Browse(life);
        change.removed = 0;
        EXPECT_EQ(life.module.Send(VX3_MESSAGE_VOLUME, &change), 1);
        EXPECT_EQ(life.module.Send(VX3_MESSAGE_VOLUME, nullptr), 1);
        vx3::core::Path folder(life.host.Folder());
        VX3Url url = {};
        VX3Node* node = nullptr;
        life.Table()->urls->setFile(&url, folder.Get());
        life.Table()->tree->findNodeByUrl(&url, VX3_FIND_PLAIN, nullptr, &node);
        life.Table()->urls->destruct(&url);
        EXPECT_NE(node, nullptr) << "a folder that is no volume is still there";
        life.Table()->references->release(node);
    }
    life.module.End();
    life.ExpectNothingLeft();
}

// Two lives in one process with one call after the other failing: no crash, nothing left
// behind, no call outside its time.
class FailingLife : public ::testing::TestWithParam<std::tuple<FailClass, Failing>>
{
protected:
    FailingLife() { std::filesystem::current_path(folder); }
    ~FailingLife() override
    {
        std::filesystem::current_path(before);
        std::filesystem::remove_all(folder);
    }

private:
    const std::filesystem::path before = std::filesystem::current_path();
    const std::filesystem::path folder = MakeTemporaryFolder();
};

TEST_P(FailingLife, LeavesNothingBehind)
{
    auto [kind, failing] = GetParam();
    Life life;
    int64_t failures = 1, runs = 0;
    for (; failures; runs++) {
        life.host.Faults().Fail(kind, runs + 1, failing);
        for (int again = 0; again < 2; again++) {
            (void)life.module.Start();
            Browse(life);
            life.module.End();
        }
        failures = life.host.Faults().FailuresOf(kind);
        life.host.Faults().Clear();
        ASSERT_EQ(life.host.ExpectClean(), "") << "failure " << runs + 1;
    }
    RecordProperty("runs", std::to_string(runs));
    EXPECT_GT(runs, kind == FailClass::Memory ? 200 : 1);
    life.ExpectNothingLeft();
    // A path that could not be copied is empty, and a name put behind it would be made here.
    EXPECT_TRUE(std::filesystem::is_empty(std::filesystem::current_path()));
}

INSTANTIATE_TEST_SUITE_P(EveryCall, FailingLife,
                         ::testing::Combine(::testing::Values(FailClass::Memory, FailClass::LoadBitmap, FailClass::CreateFolder,
                                                              FailClass::StartWalk, FailClass::NextEntry, FailClass::Register,
                                                              FailClass::Semaphore, FailClass::Inspect, FailClass::Publish,
                                                              FailClass::LoadResource),
                                            ::testing::Values(Failing::Once, Failing::FromThereOn)));

} // namespace
