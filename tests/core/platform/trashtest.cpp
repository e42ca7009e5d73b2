#include "core/corehost.h"
#include "ownmounts.h"
#include "scratch.h"

namespace vx3::core {

namespace {

// A host whose trash lies in the scratch folder.
class TrashTest : public testing::Test
{
protected:
    TrashTest()
    {
        setenv("XDG_DATA_HOME", (scratch / "data").c_str(), 1);
        HostSettings settings = SettingsBelow(scratch / "profile");
        settings.deleteIntoTrash = true;
        host = std::make_unique<CoreHost>(settings);
    }
    ~TrashTest() override { unsetenv("XDG_DATA_HOME"); }

    bool Delete(const std::string& path, VX3ProgressFunction progress = nullptr, uint32_t bits = 0)
    {
        return FolderServices()->remove(Path(path).Get(), bits, 0, progress, nullptr, nullptr);
    }
    std::string Trash() const { return scratch / "data/Trash"; }

    Scratch scratch;
    std::unique_ptr<CoreHost> host;
};

TEST_F(TrashTest, WhatIsDeletedCanBePutBack)
{
    std::string folder = scratch.Folder("t\xC3\xA9xtures 100%");
    scratch.File("t\xC3\xA9xtures 100%/wood.tif", "wood");
    ASSERT_TRUE(Delete(folder));
    EXPECT_FALSE(files::exists(folder));
    EXPECT_EQ(Contents(Trash() + "/files/t\xC3\xA9xtures 100%/wood.tif"), "wood");

    std::string info = Contents(Trash() + "/info/t\xC3\xA9xtures 100%.trashinfo");
    std::string real = files::canonical(scratch.Root()).string();
    EXPECT_TRUE(info.starts_with("[Trash Info]\nPath=" + real + "/t%C3%A9xtures%20100%25\nDeletionDate=20")) << info;
    EXPECT_TRUE(FolderServices()->move(Path(Trash() + "/files/t\xC3\xA9xtures 100%").Get(), Path(folder).Get()));
    EXPECT_EQ(Contents(folder + "/wood.tif"), "wood");
}

TEST_F(TrashTest, EqualNamesStandBesideEachOther)
{
    std::string longName(255, 'x');
    for (const std::string& name : { std::string("a.tif"), std::string("a.tif"), std::string("a.tif"), longName, longName })
        ASSERT_TRUE(Delete(scratch.File(name, name))) << name;
    EXPECT_EQ(std::distance(files::directory_iterator(Trash() + "/files"), {}), 5);
    EXPECT_EQ(std::distance(files::directory_iterator(Trash() + "/info"), {}), 5);
    EXPECT_EQ(Contents(Trash() + "/files/a.tif.3"), "a.tif");
}

TEST_F(TrashTest, AnotherVolumeHasItsOwnTrashOrRefuses)
{
    const std::string volume = "/dev/shm";
    const std::string trash = volume + "/.Trash-" + std::to_string(getuid());
    bool isUsable = access(volume.c_str(), W_OK) == 0 && IsMountPoint(volume) && !AreOnOneVolume(volume, scratch.Root());
    if (!isUsable || files::exists(trash) || files::exists(volume + "/.Trash"))
        GTEST_SKIP() << "no second volume to write to";
    const std::string file = volume + "/vx3 trash test";
    std::ofstream(file) << "content";
    std::ofstream(trash) << "no folder";
    EXPECT_FALSE(Delete(file));
    EXPECT_EQ(Contents(file), "content") << "without a trash nothing may be lost";

    files::remove(trash);
    EXPECT_TRUE(Delete(file));
    EXPECT_FALSE(files::exists(file));
    EXPECT_EQ(Contents(trash + "/files/vx3 trash test"), "content");
    EXPECT_TRUE(Contents(trash + "/info/vx3 trash test.trashinfo").starts_with("[Trash Info]\nPath=vx3%20trash%20test\n"));
    RemoveOwnRemains(trash);
    files::remove(file);
}

TEST_F(TrashTest, WhatIsToGoForGoodDoesNotGoThere)
{
    std::string folder = scratch.Folder("folder");
    scratch.File("folder/file");
    EXPECT_TRUE(Delete(folder, nullptr, uint32_t(VX3_ENTRY_FOLDER) | VX3_REMOVE_FOR_GOOD));
    EXPECT_FALSE(files::exists(folder));
    EXPECT_FALSE(files::exists(Trash() + "/files/folder"));
}

TEST_F(TrashTest, DoesNotGoIntoItselfAndWhatLiesInItGoesForGood)
{
    scratch.Folder("tree/inner");
    scratch.File("tree/inner/file");
    scratch.Folder("real");
    files::create_directory_symlink("real", scratch / "data"); // reached another way as well
    ASSERT_TRUE(Delete(scratch / "tree"));
    auto before = NamesBelow(Trash());
    for (const std::string& path : { Trash(), Trash() + "/files", Trash() + "/info", scratch / "real/Trash", scratch / "real" })
        EXPECT_FALSE(Delete(path)) << path;
    EXPECT_EQ(NamesBelow(Trash()), before);

    EXPECT_TRUE(Delete(scratch / "real/Trash/files/tree/inner/file"));
    EXPECT_EQ(NamesBelow(Trash()), (std::set<std::string>{ "files", "files/tree", "files/tree/inner", "info", "info/tree.trashinfo" }));
    EXPECT_TRUE(Delete(Trash() + "/files/tree"));
    EXPECT_EQ(NamesBelow(Trash()), (std::set<std::string>{ "files", "info" }));
}

TEST_F(TrashTest, AFolderWithAMountInItStaysWhereItIs)
{
    std::string folder = scratch.Folder("tree");
    std::string mounted = scratch.Folder("tree/in ner/mounted");
    scratch.Folder("tree2");
    auto trouble = RunWithOwnMounts([&]() -> std::string {
        if (!MountMemory(mounted))
            return "no mount";
        scratch.File("tree/in ner/mounted/file");
        if (Delete(folder) || Delete(scratch / "tree/in ner") || !files::exists(mounted + "/file"))
            return "moved";
        return Delete(scratch / "tree2") ? "" : "a neighbour was refused";
    });
    if (!trouble)
        GTEST_SKIP() << "no right to mount";
    EXPECT_EQ(*trouble, "");
}

TEST_F(TrashTest, ACancelledDeleteLeavesFileAndTrashAlone)
{
    std::string file = scratch.File("kept");
    EXPECT_FALSE(Delete(file, [](void*, int32_t, int32_t, int64_t, int32_t) { return -1; }));
    EXPECT_TRUE(files::exists(file));
    EXPECT_FALSE(files::exists(Trash() + "/info/kept.trashinfo"));
}

} // namespace

} // namespace vx3::core
