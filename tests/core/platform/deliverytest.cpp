// What a main loop is woken for, and volumes that come and go.
#include <algorithm>
#include <atomic>
#include <thread>
#include <vector>

#include <sys/mount.h>

#include "core/corehost.h"
#include "core/message.h"
#include "core/moduleloader.h"
#include "core/volumes.h"
#include "core/volumewatch.h"
#include "ownmounts.h"
#include "scratch.h"

namespace vx3::core {

namespace {

constexpr int32_t someMessage = 5;

void Post(int64_t first)
{
    MessageServices()->postCore(someMessage, first, 0, nullptr);
}

class DeliveryTest : public testing::Test
{
protected:
    DeliveryTest()
        : host(SettingsBelow(scratch.Root()))
    {
        SetMessageListener([this](const CoreMessage& message) {
            heard.push_back(message.first);
            if (onMessage)
                onMessage(message.first);
        });
    }
    ~DeliveryTest() override
    {
        SetWakeUp({});
        SetMessageListener({});
    }
    int TakeWakes() { return wakes.exchange(0); }

    Scratch scratch;
    CoreHost host;
    std::atomic<int> wakes{ 0 };
    std::vector<int64_t> heard;
    std::function<void(int64_t)> onMessage;
};

TEST_F(DeliveryTest, ALoopIsWokenOnceUntilItDelivers)
{
    Post(1);
    SetWakeUp([this] { ++wakes; });
    EXPECT_EQ(TakeWakes(), 1) << "something waits already";
    Post(2);
    EXPECT_EQ(TakeWakes(), 0) << "woken before, and not been there yet";
    host.DeliverMessages();
    EXPECT_EQ(heard.size(), 2u);
    host.DeliverMessages();
    EXPECT_EQ(TakeWakes(), 0);
    std::thread(Post, 3).join();
    EXPECT_EQ(TakeWakes(), 1);
    onMessage = [](int64_t first) {
        if (first == 3)
            Post(4); // comes with the next delivery, so that needs its own
    };
    host.DeliverMessages();
    EXPECT_EQ(TakeWakes(), 1);
    SetWakeUp({});
    host.DeliverMessages();
    Post(5);
    EXPECT_EQ(TakeWakes(), 0);
}

// Nothing is posted that no wake-up comes for.
TEST_F(DeliveryTest, NoWakeIsLostAmongThreads)
{
    SetWakeUp([this] { ++wakes; });
    constexpr int posts = 20000;
    std::thread poster([] {
        for (int64_t i = 0; i < posts; ++i)
            Post(i);
    });
    while (heard.size() < posts) {
        while (TakeWakes() == 0) // a lost one would wait here for ever
            std::this_thread::yield();
        host.DeliverMessages();
    }
    poster.join();
    for (int64_t i = 0; i < posts; ++i)
        ASSERT_EQ(heard[size_t(i)], i);
}

// As a box does that a listener opens.
TEST_F(DeliveryTest, ADeliveryInsideAListenerKeepsTheOrder)
{
    onMessage = [this](int64_t first) {
        if (first != 1)
            return;
        Post(4);
        host.DeliverMessages();
        heard.push_back(-1); // the box is closed
    };
    for (int64_t first = 1; first <= 3; ++first)
        Post(first);
    host.DeliverMessages();
    EXPECT_EQ(heard, (std::vector<int64_t>{ 1, 2, 3, 4, -1 }));
}

TEST(VolumeChanges, AreTheDifferencesOfTwoTables)
{
    const std::string root = "1 0 8:1 / / rw - ext4 /dev/sda1 rw\n";
    const std::string disk = "2 1 8:2 / /disk rw - ext4 /dev/sdb1 rw\n";
    const std::string inner = "3 2 8:3 / /disk/inner rw - vfat /dev/sdc1 rw\n";
    const std::string server = "4 1 0:40 / /server rw - nfs4 server:/export rw\n";
    const std::string memory = "5 1 0:41 / /memory rw - tmpfs tmpfs rw\n";
    struct Case {
        std::string before, now, told;
    };
    const Case cases[] = {
        { root + disk, disk + root, "" },
        { root, root + memory, "" }, // no list of volumes shows it
        { root, root + disk + inner + server, "+/disk +/disk/inner +/server " },
        { root + disk + inner + server, root, "-/disk/inner -/server -/disk " },
        { root + disk, root + "7 1 8:9 / /disk rw - ext4 /dev/sdd1 rw\n", "+/disk " },
        { root + disk, root + "8 1 8:2 / /disk ro,noexec - ext4 /dev/sdb1 ro\n", "" },
        { root + disk, root + server, "-/disk +/server " },
    };
    for (const Case& one : cases) {
        std::string told;
        for (const VolumeChange& change : CompareMounts(ReadShownMounts(one.before), ReadShownMounts(one.now)))
            told += (change.isRemoved ? "-" : "+") + change.path + " ";
        EXPECT_EQ(told, one.told);
    }
}

const std::string noDisk = "no disk";

bool IsShown(const std::string& point)
{
    const std::vector<Mount> mounts = ReadShownMounts(ReadMountFile());
    return std::any_of(mounts.begin(), mounts.end(), [&](const Mount& mount) { return mount.point == point; });
}

// A folder of a disk over another one counts as a volume: it has a disk behind it.
std::string CheckThatModulesHearOfMounts(const std::string& source, const std::string& target)
{
    std::string console;
    HostSettings settings = SettingsBelow(target + "/..");
    settings.onConsole = [&](const std::string& line) { console += line + "\n"; };
    CoreHost host(settings);
    ModuleLoader loader;
    if (!loader.Load(TELLING_MODULE) || !loader.Start(host.Table()))
        return "no module";
    std::string told;
    SetVolumeListener([&](const VolumeChange& change) {
        told += (change.isRemoved ? "-" : "+") + change.path + " ";
        loader.Tell(change);
    });
    console.clear();
    host.DeliverMessages();
    if (mount(source.c_str(), target.c_str(), nullptr, MS_BIND, nullptr) != 0)
        return "no mount";
    bool isShown = IsShown(target);
    host.DeliverMessages();
    host.DeliverMessages();
    umount(target.c_str());
    host.DeliverMessages();
    SetVolumeListener({});
    if (!isShown)
        return noDisk;
    const std::string expected = "+" + target + " -" + target + " ";
    if (told != expected)
        return "told: " + told;
    return console == "message 1001190\nmessage 1001190\n" ? "" : "heard: " + console;
}

TEST(VolumeChanges, ReachTheModules)
{
    Scratch scratch;
    const std::string source = files::canonical(scratch.Folder("source")).string();
    const std::string target = files::canonical(scratch.Folder("target")).string();
    auto trouble = RunWithOwnMounts([&] { return CheckThatModulesHearOfMounts(source, target); });
    if (!trouble || *trouble == noDisk)
        GTEST_SKIP() << "no right to mount, or no disk to mount a folder of";
    EXPECT_EQ(*trouble, "");
}

} // namespace

} // namespace vx3::core
