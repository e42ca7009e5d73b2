// What the file system in memory can do that a disk cannot be asked for.
#include <gtest/gtest.h>

#include "core/values.h"
#include "testing/testhost.h"

namespace vx3::testing {

namespace {

class MemoryFileSystemTest : public ::testing::Test
{
protected:
    MemoryFileSystemTest()
        : host({ .files = Files::InMemory })
        , fs(host.FileSystem())
        , folders(*host.Table()->folder)
    {
    }

    // The names of a walk in its order, with `!` behind them if it was not sound.
    std::string Names(const char* path, uint32_t options = VX3_WALK_HIDDEN | VX3_WALK_READONLY)
    {
        VX3FolderWalk* walk = folders.startWalk(core::Path(path).Get(), options);
        if (!walk)
            return "unreadable";
        std::string names;
        VX3FolderEntry entry = {};
        while (folders.nextEntry(walk, &entry))
            names += core::NativeNameBytes(entry.name) + " ";
        names += folders.walkIsSound(walk) ? "" : "!";
        folders.endWalk(walk);
        host.Table()->text->destruct(&entry.name);
        return names;
    }
    VX3FileDate Modified(const char* path)
    {
        VX3FileDate date = {};
        folders.date(core::Path(path).Get(), VX3_DATE_MODIFIED, &date);
        return date;
    }
    uint32_t Flags(const char* path)
    {
        VX3FolderEntry entry = {};
        folders.inspect(core::Path(path).Get(), &entry);
        return entry.flags;
    }
    VX3Bool Move(const char* from, const char* to) { return folders.move(core::Path(from).Get(), core::Path(to).Get()); }
    VX3Bool Copy(const char* from, const char* to)
    {
        return folders.copy(core::Path(from).Get(), core::Path(to).Get(), 0, 0, nullptr, nullptr, nullptr);
    }
    VX3Bool Remove(const char* path) { return folders.remove(core::Path(path).Get(), 0, 0, nullptr, nullptr, nullptr); }

    void TearDown() override { EXPECT_EQ(host.ExpectClean(), ""); }

    TestHost host;
    MemoryFileSystem& fs;
    const VX3FolderServices& folders;
};

} // namespace

TEST_F(MemoryFileSystemTest, ListsInTheScriptedOrder)
{
    for (const char* path : { "/f/b", "/f/a", "/f/c" })
        fs.AddFile(path, "");
    EXPECT_EQ(Names("/f"), "b a c ");
    fs.SetListingOrder("/f", { "c", "a", "b" });
    EXPECT_EQ(Names("/f"), "c a b ");
    fs.BreakListing("/f", 2);
    EXPECT_EQ(Names("/f"), "c a !");
    fs.SetUnreadable("/f");
    EXPECT_EQ(Names("/f"), "unreadable");
}

TEST_F(MemoryFileSystemTest, MarksEntries)
{
    fs.AddFile("/f/a", "");
    fs.AddFolder("/f/b");
    fs.SetHidden("/f/a");
    fs.SetBundle("/f/b");
    fs.SetReadOnly("/f/b");
    EXPECT_EQ(Flags("/f/a"), uint32_t(VX3_ENTRY_HIDDEN));
    EXPECT_EQ(Flags("/f/b"), uint32_t(VX3_ENTRY_FOLDER | VX3_ENTRY_BUNDLE | VX3_ENTRY_READONLY));
    EXPECT_EQ(Names("/f", VX3_WALK_READONLY), "b ");
    EXPECT_EQ(Names("/f", VX3_WALK_HIDDEN), "a ");
    EXPECT_FALSE(folders.createFolder(core::Path("/f/b/c").Get()));
    EXPECT_FALSE(Move("/f/a", "/f/b/a"));
}

TEST_F(MemoryFileSystemTest, DatesByTheScriptedClock)
{
    host.Clock().SetDate({ 2022, 5, 6, 7, 8, 9 });
    fs.AddFolder("/f");
    fs.AddFile("/f/old", "", { 2001, 1, 1, 0, 0, 0 });
    host.Clock().Advance(1000);
    EXPECT_EQ(Modified("/f/old").year, 2001);
    EXPECT_EQ(Modified("/f").second, 9); // builders do not touch the folder above
    ASSERT_TRUE(folders.createFolder(core::Path("/f/new").Get()));
    EXPECT_EQ(Modified("/f/new").second, 10);
    EXPECT_EQ(Modified("/f").second, 10);
    host.Clock().Advance(1000);
    ASSERT_TRUE(Copy("/f/old", "/f/copy"));
    EXPECT_EQ(Modified("/f/copy").year, 2001);
    EXPECT_EQ(Modified("/f").second, 11);
    host.Clock().Advance(1000);
    ASSERT_TRUE(Remove("/f/copy"));
    EXPECT_EQ(Modified("/f").second, 12);
}

TEST_F(MemoryFileSystemTest, CountsWhatIsAsked)
{
    fs.AddFile("/f/a", "");
    fs.ResetCounts();
    Modified("/f");
    EXPECT_EQ(fs.CountOf(Asked::Date), 1);
    EXPECT_EQ(fs.CountOf(Asked::Walk), 0);
    Names("/f");
    EXPECT_EQ(fs.CountOf(Asked::Walk), 1);
    EXPECT_EQ(fs.CountOf(Asked::Entry), 2);
    fs.ResetCounts();
    EXPECT_EQ(fs.CountOf(Asked::Date), 0);
}

TEST_F(MemoryFileSystemTest, KeepsVolumesApart)
{
    fs.AddFile("/a", "a");
    fs.AddVolume("/media/usb", "STICK", VX3_VOLUME_REMOVABLE);
    fs.AddFile("/media/usb/b", "b");
    EXPECT_FALSE(Move("/a", "/media/usb/a"));
    EXPECT_FALSE(Move("/media/usb", "/media/disk"));
    EXPECT_FALSE(Remove("/media/usb"));
    EXPECT_FALSE(Remove("/media")); // and takes nothing of the volume
    EXPECT_EQ(Names("/media/usb"), "b ");
    EXPECT_TRUE(Copy("/a", "/media/usb/a"));
    EXPECT_FALSE(folders.sameVolume(core::Path("/a").Get(), core::Path("/media/usb/new").Get()));
    EXPECT_TRUE(folders.sameVolume(core::Path("/a").Get(), core::Path("/media/usb2").Get()));
    fs.FailProbe("/media/usb");
    EXPECT_FALSE(folders.probeVolume(core::Path("/media/usb/b").Get()));
    EXPECT_TRUE(folders.probeVolume(core::Path("/a").Get()));

    VX3VolumeWalk* walk = folders.startVolumes();
    VX3Volume volume = {};
    ASSERT_TRUE(folders.nextVolume(walk, &volume));
    EXPECT_EQ(core::ToUtf8(volume.name), "/");
    ASSERT_TRUE(folders.nextVolume(walk, &volume));
    EXPECT_EQ(core::ToUtf8(volume.label), "STICK");
    EXPECT_EQ(volume.attributes, uint32_t(VX3_VOLUME_REMOVABLE));
    EXPECT_FALSE(folders.nextVolume(walk, &volume));
    folders.endVolumes(walk);
    host.Table()->path->destruct(&volume.path);
    host.Table()->text->destruct(&volume.name);
    host.Table()->text->destruct(&volume.label);
}

TEST_F(MemoryFileSystemTest, IsFullWhenItIsToBe)
{
    fs.AddFile("/f/a", "12345");
    fs.SetFreeBytes(7);
    EXPECT_TRUE(Copy("/f/a", "/f/b"));
    EXPECT_FALSE(Copy("/f", "/g")); // ten bytes of a folder, of which the first file would fit after a removal
    EXPECT_FALSE(fs.Exists("/g"));
    EXPECT_TRUE(Remove("/f/b"));
    EXPECT_TRUE(Copy("/f/a", "/f/b"));
}

TEST_F(MemoryFileSystemTest, FoldsCaseWhereItIsTold)
{
    fs.Remove("/profile");
    fs.SetCaseSensitive(false);
    fs.AddFile("/Name", "1");
    EXPECT_TRUE(folders.exists(core::Path("/nAME").Get()));
    EXPECT_FALSE(folders.createFolder(core::Path("/NAME").Get()));
    EXPECT_TRUE(Move("/name", "/NAME")); // another spelling of the same name
    EXPECT_EQ(Names("/"), "NAME ");
}

TEST_F(MemoryFileSystemTest, RestoresWhatWasKept)
{
    fs.AddFile("/f/a", "1");
    const auto image = fs.Keep();
    ASSERT_TRUE(Remove("/f"));
    fs.Restore(image);
    EXPECT_EQ(fs.Listing("/f"), "a=1\n");
    ASSERT_TRUE(Remove("/f"));
    fs.Restore(image);
    EXPECT_EQ(fs.BytesOf("/f/a"), "1");
}

} // namespace vx3::testing
