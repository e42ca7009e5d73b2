// The host as a whole: preferences, messages, registration, resources, settings.
#include <memory>
#include <vector>

#include <sys/mount.h>
#include <sys/stat.h>

#include "core/corehost.h"
#include "core/hoststate.h"
#include "core/message.h"
#include "core/moduleloader.h"
#include "core/mounttable.h"
#include "core/mountwatch.h"
#include "core/registry.h"
#include "core/volumes.h"
#include "ownmounts.h"
#include "scarcememory.h"
#include "scratch.h"

namespace vx3::core {

namespace {

constexpr int32_t someId = 465001634;
constexpr int32_t someKey = 10021;

class HostTest : public testing::Test
{
protected:
    std::unique_ptr<CoreHost> StartHost()
    {
        HostSettings settings = SettingsBelow(scratch.Root());
        settings.onConsole = [this](const std::string& line) { console += line + "\n"; };
        return std::make_unique<CoreHost>(settings);
    }
    static VX3Container* Preferences() { return RegistryServices()->preferences(someId); }
    static int32_t StoredValue() { return ContainerServices()->getInt32(Preferences(), someKey, -1); }

    Scratch scratch;
    std::string console;
};

TEST_F(HostTest, PreferencesSurviveTheEndOfTheRun)
{
    auto host = StartHost();
    EXPECT_EQ(StoredValue(), -1);
    ContainerServices()->setInt32(Preferences(), someKey, 85);
    EXPECT_EQ(ContainerServices()->getId(Preferences()), someId);
    host.reset();
    host = StartHost();
    EXPECT_EQ(StoredValue(), 85);
    EXPECT_EQ(RegistryServices()->preferences(7) == Preferences(), false);
    CurrentHost()->preferences.Park();
    EXPECT_EQ(host->CountLiveObjects().containers, 0);
    EXPECT_EQ(StoredValue(), 85);
    EXPECT_EQ(console, "");
}

TEST_F(HostTest, UnchangedPreferencesAreNotWrittenAgain)
{
    auto host = StartHost();
    ContainerServices()->setInt32(Preferences(), someKey, 1);
    ASSERT_TRUE(host->StorePreferences());
    struct stat before;
    stat((scratch / "config/preferences.vx3").c_str(), &before);
    ASSERT_TRUE(host->StorePreferences());
    host.reset();
    struct stat after;
    stat((scratch / "config/preferences.vx3").c_str(), &after);
    EXPECT_EQ(before.st_ino, after.st_ino); // a rename would have brought another file
    EXPECT_EQ(NamesBelow(scratch / "config").size(), 1u);
}

TEST_F(HostTest, DamagedPreferencesAreSetAsideAndTold)
{
    scratch.Folder("config");
    for (const char* damage : { "", "nonsense that is no container" }) {
        console.clear();
        scratch.File("config/preferences.vx3", damage);
        auto host = StartHost();
        EXPECT_NE(console.find("damaged"), std::string::npos);
        ContainerServices()->setInt32(Preferences(), someKey, 2);
    }
    EXPECT_EQ(Contents(scratch / "config/preferences.vx3.damaged"), "");
    EXPECT_EQ(Contents(scratch / "config/preferences.vx3.damaged-2"), "nonsense that is no container");
    auto host = StartHost();
    EXPECT_EQ(StoredValue(), 2);
}

TEST_F(HostTest, PreferencesThatCannotBeReadStayAsTheyAre)
{
    scratch.Folder("config/preferences.vx3"); // a folder: not to be opened as a file
    auto host = StartHost();
    ContainerServices()->setInt32(Preferences(), someKey, 2);
    EXPECT_FALSE(host->StorePreferences());
    EXPECT_TRUE(files::is_directory(scratch / "config/preferences.vx3"));
    EXPECT_NE(console.find("could not be read"), std::string::npos);
}

TEST_F(HostTest, MessagesComeInOrderWithTheirData)
{
    auto host = StartHost();
    std::vector<std::string> heard;
    SetMessageListener([&](const CoreMessage& message) {
        heard.push_back(std::to_string(message.first) + ":"
                        + std::to_string(message.data ? ContainerServices()->getInt32(message.data, 1, 0) : -1));
        if (message.first == 1)
            MessageServices()->postCore(VX3_MESSAGE_BROWSER, 3, 0, nullptr);
    });
    VX3Container data = {};
    ContainerServices()->setInt32(&data, 1, 42);
    MessageServices()->postCore(VX3_MESSAGE_BROWSER, 1, 0, &data);
    ContainerServices()->setInt32(&data, 1, 43); // the queue has its own copy
    MessageServices()->postCore(VX3_MESSAGE_BROWSER, 2, 0, nullptr);
    ContainerServices()->destruct(&data);
    EXPECT_TRUE(heard.empty());
    host->DeliverMessages();
    EXPECT_EQ(heard, (std::vector<std::string>{ "1:42", "2:-1" }));
    host->DeliverMessages();
    EXPECT_EQ(heard.back(), "3:-1");
    SetMessageListener({});
    EXPECT_EQ(host->CountLiveObjects().containers, 0);
}

TEST_F(HostTest, TheRegistryTakesOutWhatAModuleHasLeft)
{
    auto host = StartHost();
    static const VX3CommandTable table = { nullptr, [](void*) { return VX3Bool(1); }, nullptr, nullptr, nullptr };
    const VX3RegistryServices& registry = *RegistryServices();
    int owner = 0;
    Text name("Browse");
    EXPECT_TRUE(registry.publish(1, 1, 4, &table));
    SetRegistrant(&owner);
    EXPECT_TRUE(registry.registerCommand(5, name.Get(), 0, 0, name.Get(), nullptr, &table));
    EXPECT_TRUE(registry.publish(1017645, 1000, 112, &owner));
    EXPECT_FALSE(registry.publish(1017645, 1000, 112, &table));
    SetRegistrant(nullptr);
    ASSERT_NE(FindCommand(5), nullptr);
    EXPECT_EQ(FindCommand(5)->name, "Browse");
    EXPECT_EQ(FindCommand(5)->State(), uint32_t(VX3_COMMAND_ENABLED));
    EXPECT_EQ(registry.find(1017645, 1000, 112), &owner);
    EXPECT_EQ(registry.find(1017645, 1001, 112), nullptr);
    EXPECT_EQ(registry.find(1017645, 1000, 113), nullptr);
    TakeOut(&owner);
    EXPECT_EQ(FindCommand(5), nullptr);
    EXPECT_EQ(registry.find(1017645, 1000, 112), nullptr);
    EXPECT_EQ(registry.find(1, 1, 4), &table);
}

TEST_F(HostTest, MenusKeepTheirPlaceAmongTheCommandsThatStay)
{
    auto host = StartHost();
    static const VX3CommandTable table = {};
    const VX3RegistryServices& registry = *RegistryServices();
    int first = 0, second = 0;
    auto command = [&](int32_t id) { return registry.registerCommand(id, Text().Get(), 0, 0, Text().Get(), nullptr, &table); };
    SetRegistrant(&first);
    EXPECT_TRUE(command(1) && registry.registerMenu(100, Text("Leaving").Get()) && command(2));
    SetRegistrant(&second);
    EXPECT_TRUE(command(3) && command(VX3_EDIT_COPY) && registry.registerMenu(3, Text("Staying").Get()) && command(5));
    SetRegistrant(nullptr);
    ASSERT_EQ(RegisteredMenus().size(), 2u);
    EXPECT_EQ(RegisteredMenus()[0].position, 1u);
    EXPECT_EQ(RegisteredMenus()[1].position, 4u);
    TakeOut(&first);
    ASSERT_EQ(RegisteredMenus().size(), 1u);
    const RegisteredMenu& menu = RegisteredMenus()[0];
    EXPECT_EQ(menu.id, 3);
    EXPECT_EQ(menu.name, "Staying");
    EXPECT_EQ(menu.owner, &second);
    EXPECT_EQ(menu.position, 2u);
    EXPECT_EQ(RegisteredCommands()[1].id, 300001003);
    TakeOut(&second);
    EXPECT_TRUE(RegisteredMenus().empty());
}

TEST_F(HostTest, TextsComeInTheLanguageOfTheUserOrElseInTheCommonOne)
{
    scratch.Folder("module/res/strings");
    scratch.File("module/res/strings/us.txt",
                 "0 = English\n10407 = damaged: \n10=line\\nbreak \\\\n\n12 no sign\n# 12 = comment\n"
                 "-12 = below\n12147483647 = above\n11\t =\t a = b \\t\n");
    scratch.File("module/res/strings/de.txt",
                 "0 = Deutsch\r\n10407 = besch\xC3\xA4"
                 "digt: \r\n");
    HostSettings settings = SettingsBelow(scratch.Root());
    settings.language = "de";
    CoreHost host(settings);
    const VX3ResourceServices& services = *ResourceServices();
    EXPECT_FALSE(services.load(Path(scratch / "none/browser.so").Get()));
    VX3Resources* resources = services.load(Path(scratch / "module/browser.so").Get());
    ASSERT_NE(resources, nullptr);
    Text text;
    const std::tuple<int32_t, VX3Bool, const char*> expected[] = { { 10407, 1,
                                                                     "besch\xC3\xA4"
                                                                     "digt: " },
                                                                   { 10, 1, "line\nbreak \\n" },
                                                                   { 11, 1, "a = b \\t" },
                                                                   { 12, 0, "#12" },
                                                                   { -12, 0, "#-12" },
                                                                   { INT32_MIN, 0, "#-2147483648" } };
    for (const auto& [number, isThere, words] : expected) {
        EXPECT_EQ(services.text(resources, number, text.Get()), isThere);
        EXPECT_EQ(text.Utf8(), words);
    }
    EXPECT_FALSE(services.text(nullptr, 10407, text.Get()));
    EXPECT_EQ(text.Utf8(), "");
    Text code;
    VX3Bool isCurrent = 0;
    std::string list;
    for (int32_t i = 0; services.language(i, text.Get(), code.Get(), &isCurrent); ++i)
        list += code.Utf8() + "=" + text.Utf8() + (isCurrent ? "*" : "") + " ";
    EXPECT_EQ(list, "us=English de=Deutsch* ");
    services.free(resources);
    EXPECT_EQ(host.CountLiveObjects().resources, 0);
}

TEST_F(HostTest, WhatIsNoModuleSaysSo)
{
    auto host = StartHost();
    ModuleLoader loader;
    EXPECT_FALSE(loader.Load(scratch / "absent.so"));
    EXPECT_NE(loader.Error().find("absent.so"), std::string::npos);
    EXPECT_FALSE(loader.Load(scratch.File("text.so", "no library")));
    EXPECT_FALSE(loader.Start(host->Table()));
    EXPECT_EQ(loader.Call(VX3_ACTION_VERSION), VX3_RESULT_REFUSED);
}

TEST_F(HostTest, ModulesUpAreTheOnlyOnesThatHearThatAllAreLoaded)
{
    auto host = StartHost();
    ModuleLoader first;
    ModuleLoader second;
    ModuleLoader third;
    ASSERT_TRUE(first.Load(TELLING_MODULE)) << first.Error();
    ASSERT_TRUE(second.Load(TELLING_MODULE)) << second.Error();
    ASSERT_TRUE(third.Load(TELLING_MODULE)) << third.Error();
    const std::string begin = "action 1\nmessage 1\naction 2\nmessage 1001084\n";
    first.AllLoaded(); // not begun: says nothing
    EXPECT_TRUE(first.Begin(host->Table()));
    EXPECT_TRUE(second.Begin(host->Table()));
    EXPECT_FALSE(second.Begin(host->Table())) << "begun already";
    EXPECT_EQ(console, begin + begin);
    console.clear();
    first.AllLoaded();
    second.AllLoaded();
    EXPECT_EQ(console, "message 1000\nmessage 1000\n");
    console.clear();
    EXPECT_TRUE(third.Start(host->Table()));
    EXPECT_EQ(console, begin + "message 1000\n");
    console.clear();
    first.End();
    first.AllLoaded();
    EXPECT_EQ(console, "message 200000272\naction 3\n");
}

TEST(Settings, FollowTheUsersFolders)
{
    Scratch scratch;
    scratch.Folder("config");
    scratch.File("config/user-dirs.dirs", "# places\nXDG_DESKTOP_DIR=\"$HOME/My \\\"Desk\\\"\"\n");
    const std::pair<const char*, std::string> environment[] = { { "HOME", scratch.Root() },
                                                                { "XDG_CONFIG_HOME", scratch / "config" },
                                                                { "XDG_DATA_HOME", "relative/is/passed/over" },
                                                                { "LC_ALL", "" },
                                                                { "VX3_SYNC", "off" },
                                                                { "LC_MESSAGES", "de_AT.UTF-8" } };
    std::map<std::string, std::string> old;
    for (const auto& [name, value] : environment) {
        const char* before = std::getenv(name);
        old[name] = before ? before : "";
        setenv(name, value.c_str(), 1);
    }
    HostSettings settings = UserSettings();
    for (const auto& [name, value] : old)
        value.empty() ? unsetenv(name.c_str()) : setenv(name.c_str(), value.c_str(), 1);
    EXPECT_EQ(settings.configFolder, scratch / "config/vx3");
    EXPECT_EQ(settings.userLibraryFolder, scratch / ".local/share/vx3/library");
    EXPECT_EQ(settings.desktopFolder, scratch / "My \"Desk\"");
    EXPECT_EQ(settings.language, "de");
    EXPECT_FALSE(settings.syncFiles);
    EXPECT_TRUE(settings.applicationLibraryFolder.ends_with("/share/vx3/library"));
    EXPECT_TRUE(files::exists(scratch.Root()));
    EXPECT_EQ(NamesBelow(scratch.Root()).size(), 2u) << "asking makes no folders";
}

TEST(Volumes, TheTableOfMountsAsItIsWritten)
{
    const std::string table = "22 1 0:20 / / rw,relatime - overlay overlay rw\n"
                              "23 22 0:21 / /proc rw shared:5 - proc proc rw\n"
                              "24 22 8:17 / /media/My\\040Disk\\134x rw shared:6 master:7 - ext4 /dev/sdb1 rw\n"
                              "25 22 0:40 / /mnt/server rw - nfs4 server:/export rw\n"
                              "26 22 0:41 / /mnt/ssh rw - fuse.sshfs user@host: rw\n"
                              "27 22 0:42 / /run/user/1000/gvfs rw - fuse.gvfsd-fuse gvfsd-fuse rw\n"
                              "28 22 0:43 / /mnt/twice rw - tmpfs tmpfs rw\n"
                              "29 22 8:33 / /mnt/twice rw - vfat /dev/sdc1 rw\n"
                              "a line that is cut\n"
                              "30 22 0:44 / /mnt/pool rw - zfs tank/data rw\n"
                              "31 22 0:45 / /mnt/merged rw - fuse.mergerfs a:b rw\n"
                              "32 22 0:46 / /mnt/vault rw - fuse.gocryptfs /home/user/.vault rw\n"
                              "33 22 0:47 / /run/user/1000/doc rw - fuse.portal portal rw\n"
                              "34 22 0:48 / /var/lib/lxcfs rw - fuse.lxcfs lxcfs rw\n"
                              "35 22 0:49 / /mnt/cloud rw - fuse.rclone cloud: rw\n"
                              "36 22 0:50 / /sys/fs/fuse/connections rw - fusectl fusectl rw\n";
    const std::pair<const char*, uint32_t> expected[] = { { "/", 0 },
                                                          { "/proc", VX3_VOLUME_LEAVE_OUT },
                                                          { "/media/My Disk\\x", 0 },
                                                          { "/mnt/server", VX3_VOLUME_NETWORK },
                                                          { "/mnt/ssh", VX3_VOLUME_NETWORK },
                                                          { "/run/user/1000/gvfs", VX3_VOLUME_LEAVE_OUT },
                                                          { "/mnt/twice", 0 },
                                                          { "/mnt/pool", 0 },
                                                          { "/mnt/merged", 0 },
                                                          { "/mnt/vault", 0 },
                                                          { "/run/user/1000/doc", VX3_VOLUME_LEAVE_OUT },
                                                          { "/var/lib/lxcfs", VX3_VOLUME_LEAVE_OUT },
                                                          { "/mnt/cloud", VX3_VOLUME_NETWORK },
                                                          { "/sys/fs/fuse/connections", VX3_VOLUME_LEAVE_OUT } };
    auto volumes = ReadMountTable(table);
    ASSERT_EQ(volumes.size(), std::size(expected));
    for (size_t i = 0; i < volumes.size(); ++i) {
        EXPECT_EQ(volumes[i].path, expected[i].first);
        EXPECT_EQ(volumes[i].attributes, expected[i].second) << expected[i].first;
    }
    ASSERT_EQ(ReadMountTable("").size(), 1u);
    EXPECT_EQ(ReadMountTable("")[0].path, "/");
}

TEST(Volumes, WhatIsMountedOverIsNotTold)
{
    // Children stand in front of their parents, too.
    const std::string table = "5 9 8:4 / /early rw - ext4 /dev/sda4 rw\n"
                              "9 1 8:1 / / rw - ext4 /dev/sda1 rw\n"
                              "10 9 8:2 / /data rw - ext4 /dev/sda2 rw\n"
                              "11 10 8:3 / /data/inner rw - ext4 /dev/sda3 rw\n"
                              "12 10 8:5 / /data rw - ext4 /dev/sda5 rw\n" // over /data: its inner one is out of reach
                              "13 9 8:6 / /datastore rw - ext4 /dev/sda6 rw\n"
                              "14 9 8:7 / /a/b/c rw - ext4 /dev/sda7 rw\n"
                              "15 14 8:8 / /a/b/c/d rw - ext4 /dev/sda8 rw\n"
                              "16 9 8:9 / /a/b rw - ext4 /dev/sda9 rw\n" // over the folder that holds /a/b/c
                              "17 16 8:10 / /a/b/e rw - ext4 /dev/sda10 rw\n";
    std::vector<std::string> told;
    for (const VolumeFacts& volume : ReadMountTable(table))
        told.push_back(volume.path);
    EXPECT_EQ(told, (std::vector<std::string>{ "/", "/early", "/data", "/datastore", "/a/b", "/a/b/e" }));
}

// Only what cannot hang is asked in the thread of the caller.
TEST(Volumes, WhichAnswerAtOnce)
{
    const std::string table = "1 0 8:1 / / rw - ext4 /dev/sda1 rw\n"
                              "2 1 8:2 / /home rw - btrfs /dev/sda2 rw\n"
                              "3 1 0:30 / /run rw - tmpfs tmpfs rw\n"
                              "4 1 0:40 / /server rw - nfs4 server:/export rw\n"
                              "5 4 8:3 / /server/disk rw - ext4 /dev/sdb1 rw\n"
                              "6 1 0:41 / /ntfs rw - fuseblk /dev/sdc1 rw\n"
                              "7 1 0:42 / /merged rw - fuse.mergerfs a:b rw\n"
                              "8 1 0:43 / /auto rw - autofs systemd-1 rw\n"
                              "9 1 0:44 / /new rw - unheardfs /dev/sdd1 rw\n"
                              "10 2 8:4 / /home/over rw - ext4 /dev/sde1 rw\n"
                              "11 10 0:45 / /home/over rw - cifs //server/share rw\n"
                              "12 1 0:46 / /fuse rw - fuse /dev/fuse rw\n";
    const std::pair<const char*, bool> expected[] = { { "/", true },          { "/home", true },         { "/run", true },
                                                      { "/server", false },   { "/server/disk", false }, // the way there may hang
                                                      { "/ntfs", false },     { "/merged", false },      { "/auto", false },
                                                      { "/new", false },      { "/home/over", false },   { "/fuse", false },
                                                      { "/home/link", false } }; // no mount: a link may lead anywhere
    const std::vector<Mount> mounts = ReadMounts(table);
    for (const auto& [path, isAtOnce] : expected)
        EXPECT_EQ(AnswersAtOnce(mounts, path), isAtOnce) << path;
}

TEST(Volumes, WhichAnswerAtOnceIsAskedAnewWhenTheMountsChange)
{
    Scratch scratch;
    std::string folder = files::canonical(scratch.Folder("mounted")).string();
    auto trouble = RunWithOwnMounts([&]() -> std::string {
        MountWatch watch;
        if (watch.AnswersAtOnce(folder) || !watch.AnswersAtOnce("/"))
            return "wrong before the mount";
        if (!MountMemory(folder))
            return "no mount";
        if (!watch.AnswersAtOnce(folder))
            return "the mount was missed";
        return umount(folder.c_str()) == 0 && !watch.AnswersAtOnce(folder) ? "" : "the end of the mount was missed";
    });
    if (!trouble)
        GTEST_SKIP() << "no right to mount";
    EXPECT_EQ(*trouble, "");
}

// A shorter list would take volumes out of the browser.
TEST(Volumes, WithoutMemoryThereIsNoListAndNoShorterOne)
{
    auto count = [](int successes, bool& isShort) {
        ScarceMemory memory(successes);
        VX3VolumeWalk* walk = FolderServices()->startVolumes();
        VX3Volume volume = {};
        int volumes = walk ? 0 : -1;
        while (walk && FolderServices()->nextVolume(walk, &volume))
            ++volumes;
        FolderServices()->endVolumes(walk);
        PathServices()->destruct(&volume.path);
        TextServices()->destruct(&volume.name);
        TextServices()->destruct(&volume.label);
        isShort = memory.HasFailed();
        return volumes;
    };
    constexpr int plenty = 1 << 30;
    bool isShort = false;
    const int all = count(plenty, isShort);
    int failures = 0;
    for (isShort = true; isShort; failures += isShort) {
        int counted = count(failures, isShort);
        ASSERT_TRUE(counted == all || counted == -1) << counted << " after " << failures << " requests";
    }
    EXPECT_GT(failures, 3 * all);
}

TEST(Volumes, OfThisMachineBeginWithTheRootAndAnswer)
{
    VX3VolumeWalk* walk = FolderServices()->startVolumes();
    VX3Volume volume = {};
    ASSERT_TRUE(FolderServices()->nextVolume(walk, &volume));
    EXPECT_EQ(ToUtf8(volume.name), "/");
    EXPECT_EQ(NativeBytes(volume.path), "/");
    EXPECT_EQ(volume.attributes & VX3_VOLUME_LEAVE_OUT, 0u);
    EXPECT_TRUE(FolderServices()->probeVolume(&volume.path));
    EXPECT_FALSE(FolderServices()->probeVolume(Path("/absent volume").Get()));
    FolderServices()->endVolumes(walk);
    TextServices()->destruct(&volume.name);
    TextServices()->destruct(&volume.label);
    PathServices()->destruct(&volume.path);
}

} // namespace

} // namespace vx3::core
