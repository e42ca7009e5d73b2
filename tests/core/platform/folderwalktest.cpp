#include <numeric>
#include <vector>

#include <fcntl.h>
#include <grp.h>
#include <sys/stat.h>

#include "core/corehost.h"
#include "core/filestatus.h"
#include "core/localdate.h"
#include "ownmounts.h"
#include "scarcememory.h"
#include "scratch.h"

namespace vx3::core {

namespace {

bool SameDate(const VX3FileDate& a, const VX3FileDate& b)
{
    return a.year == b.year && a.month == b.month && a.day == b.day && a.hour == b.hour && a.minute == b.minute && a.second == b.second;
}

TEST(FolderWalk, EveryNameSurvivesTheWayIntoTextAndBack)
{
    Scratch scratch;
    const std::string names[] = { "plain",
                                  "two words",
                                  "caf\xC3\xA9",
                                  "\xF0\x9F\x8E\xA8",
                                  "bad\xFF"
                                  "byte",
                                  "back\\slash",
                                  "cut\xE2\x82",
                                  "new\nline",
                                  "\xED\xA0\x80",
                                  "%41",
                                  std::string(255, 'n'),
                                  std::string(254, 'x') + "\xFE" };
    for (const std::string& name : names)
        scratch.File(name, name);
    auto seen = Walk(scratch.Root());
    EXPECT_EQ(seen.size(), std::size(names));
    Path folder(scratch.Root());
    for (const std::string& name : names) {
        ASSERT_TRUE(seen.contains(name)) << name;
        EXPECT_EQ(seen[name].size, static_cast<int64_t>(name.size()));
        Text text;
        Path joined;
        ASSERT_TRUE(SetNativeName(*text.Get(), name));
        ASSERT_TRUE(PathServices()->join(folder.Get(), text.Get(), joined.Get()));
        EXPECT_TRUE(FolderServices()->exists(joined.Get())) << name;
    }
}

TEST(FolderWalk, KindsOfEntriesAsTheBoundaryTellsThem)
{
    Scratch scratch;
    std::string folder = scratch.Folder("parent/walked");
    scratch.Folder("elsewhere");
    scratch.File("parent/walked/file", "12345");
    scratch.File("parent/walked/.hidden");
    scratch.File("parent/walked/locked");
    chmod((folder + "/locked").c_str(), 0444);
    mkfifo((folder + "/pipe").c_str(), 0666);
    files::create_directory(folder + "/folder");
    const std::pair<const char*, std::string> links[] = { { "file", "tofile" },  { "../../elsewhere", "tofolder" },
                                                          { "nowhere", "dead" }, { "circle", "circle" },
                                                          { ".", "toself" },     { "../..", "toabove" },
                                                          { "pipe", "topipe" },  { "../walked/folder", "tochild" } };
    for (const auto& [target, name] : links)
        files::create_symlink(target, folder + "/" + name);

    const std::map<std::string, std::pair<uint32_t, int64_t>> expected = { { "file", { 0, 5 } },
                                                                           { ".hidden", { VX3_ENTRY_HIDDEN, 7 } },
                                                                           { "locked", { VX3_ENTRY_READONLY, 7 } },
                                                                           { "pipe", { VX3_ENTRY_SPECIAL, 0 } },
                                                                           { "folder", { VX3_ENTRY_FOLDER, 0 } },
                                                                           { "tofile", { VX3_ENTRY_LINK, 5 } },
                                                                           { "tofolder", { VX3_ENTRY_LINK | VX3_ENTRY_FOLDER, 0 } },
                                                                           { "tochild", { VX3_ENTRY_LINK | VX3_ENTRY_FOLDER, 0 } },
                                                                           { "dead", { VX3_ENTRY_LINK | VX3_ENTRY_BROKEN, 0 } },
                                                                           { "circle", { VX3_ENTRY_LINK | VX3_ENTRY_BROKEN, 0 } },
                                                                           { "toself", { VX3_ENTRY_LINK | VX3_ENTRY_BROKEN, 0 } },
                                                                           { "toabove", { VX3_ENTRY_LINK | VX3_ENTRY_BROKEN, 0 } },
                                                                           { "topipe", { VX3_ENTRY_LINK | VX3_ENTRY_SPECIAL, 0 } } };
    auto seen = Walk(folder);
    EXPECT_EQ(seen.size(), expected.size());
    for (const auto& [name, facts] : expected) {
        EXPECT_EQ(seen[name].flags, facts.first) << name;
        EXPECT_EQ(seen[name].size, facts.second) << name;
        VX3FolderEntry entry = {};
        ASSERT_TRUE(FolderServices()->inspect(Path(folder + "/" + name).Get(), &entry)) << name;
        EXPECT_EQ(entry.flags, facts.first) << name;
        EXPECT_EQ(entry.size, facts.second) << name;
        EXPECT_TRUE(FolderServices()->exists(Path(folder + "/" + name).Get())) << name;
    }
    EXPECT_EQ(Walk(folder, VX3_WALK_READONLY).count(".hidden"), 0u);
    EXPECT_EQ(Walk(folder, VX3_WALK_HIDDEN).count("locked"), 0u);
}

TEST(FolderWalk, FollowingLinksToFoldersAlwaysEnds)
{
    // Two folders that link into each other: neither is above the other.
    Scratch scratch;
    scratch.Folder("a");
    scratch.Folder("b");
    files::create_symlink("../b", scratch / "a/tob");
    files::create_symlink("../a", scratch / "b/toa");
    std::string path = scratch / "a";
    int depth = 0;
    for (bool isDeeper = true; isDeeper && depth < 10; ++depth) {
        isDeeper = false;
        for (const auto& [name, entry] : Walk(path))
            if (entry.flags & VX3_ENTRY_FOLDER) {
                path += "/" + name;
                isDeeper = true;
                break;
            }
    }
    EXPECT_LT(depth, 4);
}

TEST(FolderWalk, DatesAreLocalAndOfTheTarget)
{
    Scratch scratch;
    std::string file = scratch.File("file");
    files::create_symlink("file", scratch / "link");
    constexpr time_t moment = 1234567890;
    struct timespec times[2] = { { moment, 0 }, { moment, 999999999 } };
    ASSERT_EQ(utimensat(AT_FDCWD, file.c_str(), times, 0), 0);
    auto seen = Walk(scratch.Root());
    for (const char* name : { "file", "link" }) {
        VX3FileDate date = {};
        EXPECT_TRUE(SameDate(seen[name].modified, LocalDate(moment))) << name;
        ASSERT_TRUE(FolderServices()->date(Path(scratch / name).Get(), VX3_DATE_MODIFIED, &date));
        EXPECT_TRUE(SameDate(date, LocalDate(moment))) << name;
        ASSERT_TRUE(FolderServices()->date(Path(scratch / name).Get(), VX3_DATE_CREATED, &date));
        EXPECT_TRUE(SameDate(date, seen[name].created)) << name;
    }
    VX3FileDate date = { 1, 1, 1, 1, 1, 1 };
    EXPECT_FALSE(FolderServices()->date(Path(scratch / "absent").Get(), VX3_DATE_MODIFIED, &date));
    EXPECT_TRUE(SameDate(date, {}));
}

// Whoever takes the end for the end of the folder drops what was not told.
TEST(FolderWalk, WithoutMemoryIsNotSound)
{
    Scratch scratch;
    const std::set<std::string> all = { "file", "folder", "link" };
    scratch.File("file");
    scratch.Folder("folder");
    files::create_symlink("folder", scratch / "link"); // asks for the ancestors
    int failures = 0;
    for (bool isShort = true; isShort; failures += isShort) {
        VX3FolderWalk* walk = FolderServices()->startWalk(Path(scratch.Root()).Get(), VX3_WALK_HIDDEN | VX3_WALK_READONLY);
        ASSERT_TRUE(walk);
        std::set<std::string> seen;
        for (bool isDone = false; !isDone;) {
            VX3FolderEntry entry = {};
            {
                ScarceMemory memory(failures);
                isDone = !FolderServices()->nextEntry(walk, &entry);
                isShort = memory.HasFailed();
            }
            if (!isDone)
                seen.insert(NativeNameBytes(entry.name));
            TextServices()->destruct(&entry.name);
        }
        EXPECT_EQ(bool(FolderServices()->walkIsSound(walk)), seen == all) << failures;
        FolderServices()->endWalk(walk);
        ASSERT_LT(failures, 100);
    }
    EXPECT_GT(failures, 2);
}

TEST(FolderWalk, OnAReadOnlyVolumeAllIsReadOnly)
{
    Scratch scratch;
    std::string folder = scratch.Folder("mounted");
    auto isMarked = [](const std::string& path) {
        VX3FolderEntry entry = {};
        return FolderServices()->inspect(Path(path).Get(), &entry) && (entry.flags & VX3_ENTRY_READONLY);
    };
    auto trouble = RunWithOwnMounts([&]() -> std::string {
        if (!MountMemory(folder))
            return "no mount";
        scratch.File("mounted/file");
        files::create_symlink("file", folder + "/link");
        if (isMarked(folder + "/file") || (Walk(folder)["file"].flags & VX3_ENTRY_READONLY))
            return "marked before";
        if (!MakeMountReadOnly(folder))
            return "no read-only mount";
        for (const char* name : { "file", "link" })
            if (!isMarked(folder + "/" + name) || !(Walk(folder)[name].flags & VX3_ENTRY_READONLY))
                return std::string("not marked: ") + name;
        return Walk(folder, VX3_WALK_HIDDEN).empty() ? "" : "told though not asked for";
    });
    if (!trouble)
        GTEST_SKIP() << "no right to mount";
    EXPECT_EQ(*trouble, "");
}

TEST(FolderWalk, RightsOfAUserInManyGroups)
{
    if (!IsRoot())
        GTEST_SKIP() << "only root may join groups";
    auto trouble = RunWithOwnMounts([]() -> std::string {
        constexpr gid_t firstGroup = 70000;
        constexpr uid_t someUser = 70000;
        std::vector<gid_t> groups(200);
        std::iota(groups.begin(), groups.end(), firstGroup);
        if (setgroups(groups.size(), groups.data()) != 0 || setresuid(someUser, someUser, someUser) != 0)
            return "no change of user";
        struct statx status = {};
        status.stx_mode = S_IFREG | 0664;
        for (gid_t group : { groups.front(), groups.back() }) {
            status.stx_gid = group;
            if (WriteRights().IsReadOnly(status))
                return "no right from group " + std::to_string(group);
        }
        status.stx_gid = groups.back() + 1;
        return WriteRights().IsReadOnly(status) ? "" : "a right from a group of others";
    });
    ASSERT_TRUE(trouble);
    EXPECT_EQ(*trouble, "");
}

TEST(FolderWalk, WhatCannotBeReadGivesNoWalk)
{
    Scratch scratch;
    auto starts = [](const std::string& path) {
        VX3FolderWalk* walk = FolderServices()->startWalk(Path(path).Get(), VX3_WALK_HIDDEN);
        FolderServices()->endWalk(walk);
        return walk != nullptr;
    };
    EXPECT_FALSE(starts(scratch.File("file")));
    EXPECT_FALSE(starts(scratch / "absent"));
    EXPECT_TRUE(starts(scratch.Folder("folder")));
    if (!IsRoot()) {
        chmod((scratch / "folder").c_str(), 0300);
        EXPECT_FALSE(starts(scratch / "folder"));
    }
    EXPECT_FALSE(FolderServices()->startWalk(Path().Get(), VX3_WALK_HIDDEN));
}

} // namespace

} // namespace vx3::core
