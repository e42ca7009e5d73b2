// Watched folders on a real disk, and what callbacks may do.
#include <functional>
#include <memory>
#include <vector>

#include <poll.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/time.h>

#include "core/corehost.h"
#include "core/localpath.h"
#include "ownmounts.h"
#include "scarcememory.h"
#include "scratch.h"

namespace vx3::core {

namespace {

// A watch with its own count and what it is to do when it is told.
class Watch
{
public:
    explicit Watch(const std::string& folder) { Start(folder); }
    ~Watch() { End(); }
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;

    bool IsOn() const { return watch != nullptr; }
    void Start(const std::string& folder) { watch = FolderServices()->watch(Path(folder).Get(), Hear, this); }
    void End() { FolderServices()->unwatch(std::exchange(watch, nullptr)); }
    void Forget() { watch = nullptr; } // the host has dropped it
    int TakeCount() { return std::exchange(count, 0); }

    std::function<void()> onChange;

private:
    static void Hear(void* user)
    {
        auto* self = static_cast<Watch*>(user);
        ++self->count;
        if (auto react = self->onChange) // a copy: it may replace itself
            react();
    }

    VX3FolderWatch* watch = nullptr;
    int count = 0;
};

class FolderWatchTest : public testing::Test
{
protected:
    FolderWatchTest()
        : host(std::make_unique<CoreHost>(SettingsBelow(scratch.Root())))
        , folder(scratch.Folder("watched"))
    {
    }
    ~FolderWatchTest() override { EXPECT_EQ(host->CountLiveObjects().watches, 0); }

    void Change(const std::string& tail = "watched") { scratch.File(tail + "/file " + std::to_string(++files)); }
    bool CanBeRead() const
    {
        struct pollfd question = { host->WaitDescriptor(), POLLIN, 0 };
        return poll(&question, 1, 0) == 1;
    }

    Scratch scratch;
    std::unique_ptr<CoreHost> host;
    std::string folder;
    int files = 0;
};

TEST_F(FolderWatchTest, SeveralChangesAreToldOnceAtTheNextDelivery)
{
    Watch watch(folder);
    ASSERT_TRUE(watch.IsOn());
    EXPECT_EQ(host->CountLiveObjects().watches, 1);
    EXPECT_FALSE(CanBeRead());
    Change();
    Change();
    EXPECT_TRUE(CanBeRead());
    EXPECT_EQ(watch.TakeCount(), 0) << "never from inside another call";
    host->DeliverMessages();
    EXPECT_EQ(watch.TakeCount(), 1);
    EXPECT_FALSE(CanBeRead());
    host->DeliverMessages();
    EXPECT_EQ(watch.TakeCount(), 0);
}

TEST_F(FolderWatchTest, AStatusThatNoCallOfTheHostChangesIsTold)
{
    const std::string file = scratch.File("watched/file");
    const struct timeval longAgo[2] = {};
    Watch watch(folder);
    const std::pair<const char*, std::function<void()>> changes[] = {
        { "mode of an entry", [&] { chmod(file.c_str(), 0400); } },
        { "mode of the folder", [&] { chmod(folder.c_str(), 0755); } },
        { "dates", [&] { utimes(file.c_str(), longAgo); } },
        { "name beside", [&] { files::create_hard_link(file, scratch / "watched/second"); } },
    };
    for (const auto& [what, change] : changes) {
        change();
        host->DeliverMessages();
        EXPECT_EQ(watch.TakeCount(), 1) << what;
    }
}

TEST_F(FolderWatchTest, WatchesOnOneFolderLiveAndEndForThemselves)
{
    files::create_directory_symlink(folder, scratch / "link");
    Watch first(folder);
    Watch second(scratch / "link");
    Watch third(scratch / "watched/../link/.");
    for (int living = 3; living > 0; --living) {
        Change();
        host->DeliverMessages();
        EXPECT_EQ(first.TakeCount(), living > 2);
        EXPECT_EQ(second.TakeCount(), living > 1);
        EXPECT_EQ(third.TakeCount(), 1);
        (living > 2 ? first : living > 1 ? second : third).End();
    }
    host->DeliverMessages();
    Change();
    EXPECT_FALSE(CanBeRead()) << "nobody watches any more";
}

TEST_F(FolderWatchTest, AChangeThatNobodyHasHeardOfGoesWithItsWatch)
{
    Watch watch(folder);
    Change();
    watch.End();
    watch.Start(folder);
    host->DeliverMessages();
    EXPECT_EQ(watch.TakeCount(), 0);
}

TEST_F(FolderWatchTest, WhatCannotBeWatched)
{
    scratch.File("file");
    scratch.Folder("locked");
    chmod((scratch / "locked").c_str(), 0);
    files::create_symlink("loop", scratch / "loop");
    files::create_symlink("/proc/self", scratch / "process");
    std::vector<std::string> refused = { scratch / "absent",
                                         scratch / "file",
                                         scratch / "file/below",
                                         scratch / "loop",
                                         "/proc", // no disk of this machine, as a server is none
                                         scratch / "process",
                                         "relative",
                                         "" };
    if (!IsRoot())
        refused.push_back(scratch / "locked");
    for (const std::string& path : refused)
        EXPECT_FALSE(Watch(path).IsOn()) << path;
    EXPECT_TRUE(Watch("/").IsOn());
    FolderServices()->unwatch(nullptr);
}

TEST_F(FolderWatchTest, ACallbackMayEndAndBeginWatches)
{
    Watch ending(folder);
    Watch victim(folder);
    Watch late(folder);
    Watch born(scratch / "absent");
    ending.onChange = [&] {
        ending.End();
        victim.End();
        born.Start(folder);
    };
    Change();
    host->DeliverMessages();
    EXPECT_EQ(ending.TakeCount(), 1);
    EXPECT_EQ(victim.TakeCount(), 0) << "its turn had not come yet";
    EXPECT_EQ(late.TakeCount(), 1);
    EXPECT_EQ(born.TakeCount(), 0);
    Change();
    host->DeliverMessages();
    EXPECT_EQ(ending.TakeCount() + victim.TakeCount(), 0);
    EXPECT_EQ(late.TakeCount() + born.TakeCount(), 2);
}

// As a message box does that a callback opens.
TEST_F(FolderWatchTest, ADeliveryInsideACallbackGoesOnWithTheOthers)
{
    Watch nesting(folder);
    Watch second(folder);
    Watch third(folder);
    int secondsInside = 0;
    nesting.onChange = [&] {
        nesting.onChange = {};
        Change();
        host->DeliverMessages();
        secondsInside = second.TakeCount() + third.TakeCount();
    };
    Change();
    host->DeliverMessages();
    EXPECT_EQ(secondsInside, 2);
    EXPECT_EQ(nesting.TakeCount(), 2) << "the change inside is one more";
    EXPECT_EQ(second.TakeCount() + third.TakeCount(), 0) << "told inside already";
}

TEST_F(FolderWatchTest, AnEndlessChangeDoesNotHoldADelivery)
{
    Watch watch(folder);
    watch.onChange = [&] { Change(); };
    Change();
    for (int call = 1; call <= 3; ++call) {
        host->DeliverMessages();
        EXPECT_EQ(watch.TakeCount(), 1);
    }
}

TEST_F(FolderWatchTest, WhereTheSystemLosesCountAllAreTold)
{
    int most = 0;
    std::ifstream("/proc/sys/fs/inotify/max_queued_events") >> most;
    constexpr int bearable = 100000;
    if (most < 1 || most > bearable)
        GTEST_SKIP() << "the queue is too long to fill";
    Watch busy(folder);
    Watch quiet(scratch.Folder("quiet"));
    const std::string names[] = { scratch.File("watched/a"), scratch / "watched/b" };
    for (int i = 0; i <= most / 2; ++i) // each renaming is two entries of the queue
        ASSERT_EQ(rename(names[i % 2].c_str(), names[1 - i % 2].c_str()), 0);
    for (int call = 0; call < 1000 && CanBeRead(); ++call)
        host->DeliverMessages();
    EXPECT_FALSE(CanBeRead());
    EXPECT_GE(busy.TakeCount(), 1);
    EXPECT_EQ(quiet.TakeCount(), 1);
}

TEST_F(FolderWatchTest, WithoutMemoryThereIsNoWatchAndNothingIsLeft)
{
    int failures = 0;
    for (bool isShort = true; isShort && failures < 1000; failures += isShort) {
        VX3FolderWatch* watch = nullptr;
        Path path(folder);
        {
            ScarceMemory memory(failures);
            watch = FolderServices()->watch(
                path.Get(), [](void*) {}, nullptr);
            isShort = memory.HasFailed();
        }
        EXPECT_EQ(watch == nullptr, isShort) << failures;
        EXPECT_EQ(host->CountLiveObjects().watches, watch != nullptr);
        FolderServices()->unwatch(watch);
    }
    EXPECT_GT(failures, 4);
}

TEST_F(FolderWatchTest, TheEndOfAHostDropsWhatIsLeft)
{
    Watch left(folder);
    ASSERT_EQ(host->CountLiveObjects().watches, 1);
    host.reset();
    host = std::make_unique<CoreHost>(SettingsBelow(scratch.Root()));
    Change();
    host->DeliverMessages();
    EXPECT_EQ(left.TakeCount(), 0);
    EXPECT_EQ(host->CountLiveObjects().watches, 0);
    left.Forget();
}

TEST(FolderWatch, TheEndOfAMountIsTold)
{
    Scratch scratch;
    std::string folder = files::canonical(scratch.Folder("mounted")).string();
    auto trouble = RunWithOwnMounts([&]() -> std::string {
        CoreHost host(SettingsBelow(scratch.Root()));
        if (!MountMemory(folder))
            return "no mount";
        Watch watch(folder);
        host.DeliverMessages();
        if (!watch.IsOn() || watch.TakeCount() != 0)
            return "not watched";
        umount(folder.c_str());
        host.DeliverMessages();
        return watch.TakeCount() == 1 ? "" : "not told";
    });
    if (!trouble)
        GTEST_SKIP() << "no right to mount";
    EXPECT_EQ(*trouble, "");
}

TEST(LocalPath, LeadsOverLinksAndRefusesOtherKindsOfMounts)
{
    Scratch scratch;
    const std::string root = files::canonical(scratch.Root()).string();
    scratch.Folder("a/b");
    files::create_symlink("b", scratch / "a/short");
    files::create_symlink("a/short/../b//.", scratch / "long");
    files::create_symlink(root + "/long", scratch / "whole");
    files::create_symlink("../../../../../../../../../proc", scratch / "out");
    const std::pair<std::string, std::string> expected[] = {
        { root, root },
        { root + "/whole", root + "/a/b" },
        { root + "/a/../long/", root + "/a/b" },
        { root + "/out/../" + root + "/a", "" }, // the way leads over it
        { root + "/out", "" },
        { root + "/absent", "" },
        { "/..", "/" },
        { "a", "" },
    };
    for (const auto& [path, place] : expected)
        EXPECT_EQ(FindLocalPath(path), place) << path;
}

} // namespace

} // namespace vx3::core
