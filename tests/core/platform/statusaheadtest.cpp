// A folder that is large enough for a second thread.

#include "core/statusahead.h"
#include <cstring>

#include "core/filestatus.h"
#include "scratch.h"

namespace vx3::core {

namespace {

constexpr int entryCount = 7000; // names of 40 bytes and more: two batches

bool SameDate(const VX3FileDate& a, const VX3FileDate& b)
{
    return std::memcmp(&a, &b, sizeof a) == 0;
}

std::string NameOf(int number)
{
    std::string digits = std::to_string(number);
    return std::string(40 - digits.size(), 'n') + digits + (number % 7 ? ".png" : ".d");
}

void Fill(const Scratch& scratch)
{
    for (int i = 0; i < entryCount; i++) {
        if (i % 7 == 0)
            scratch.Folder(NameOf(i));
        else if (i % 11 == 0)
            files::create_symlink(NameOf(i - 1), scratch / NameOf(i));
        else
            scratch.File((i % 13 ? "" : ".") + NameOf(i), std::string(size_t(i % 50), 'x'));
    }
}

TEST(StatusAhead, ALargeFolderReadsLikeItsEntriesOneByOne)
{
    Scratch scratch;
    Fill(scratch);
    auto seen = Walk(scratch.Root(), VX3_WALK_HIDDEN | VX3_WALK_READONLY);
    EXPECT_EQ(seen.size(), size_t(entryCount));
    for (const auto& [name, entry] : seen) {
        VX3FolderEntry alone = {};
        ASSERT_TRUE(InspectFile(scratch / name, alone)) << name;
        EXPECT_EQ(entry.size, alone.size) << name;
        EXPECT_EQ(entry.flags, alone.flags) << name;
        EXPECT_TRUE(SameDate(entry.created, alone.created) && SameDate(entry.modified, alone.modified)) << name;
    }
}

TEST(StatusAhead, AWalkMayEndInTheMiddle)
{
    Scratch scratch;
    Fill(scratch);
    Path folder(scratch.Root());
    for (int taken : { 0, 1, 3000, entryCount - 1 }) {
        VX3FolderWalk* walk = FolderServices()->startWalk(folder.Get(), VX3_WALK_HIDDEN | VX3_WALK_READONLY);
        ASSERT_TRUE(walk);
        VX3FolderEntry entry = {};
        for (int i = 0; i < taken; i++)
            EXPECT_TRUE(FolderServices()->nextEntry(walk, &entry));
        FolderServices()->endWalk(walk);
        TextServices()->destruct(&entry.name);
    }
}

} // namespace

} // namespace vx3::core
