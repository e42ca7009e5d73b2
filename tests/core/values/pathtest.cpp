#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <thread>
#include <vector>

#include "core/livecounts.h"
#include "core/memoryblock.h"
#include "core/services.h"
#include "core/values.h"

namespace vx3::core {
namespace {

const VX3PathServices& path = *PathServices();

Path PathOf(std::u16string_view units)
{
    Path made;
    EXPECT_TRUE(path.setText(made.Get(), Text(units).Get()));
    return made;
}

std::u16string TextOf(const Path& value)
{
    Text text;
    EXPECT_TRUE(path.getText(value.Get(), text.Get()));
    return text.Units();
}

std::u16string DirectoryOf(const Path& value)
{
    Path directory;
    EXPECT_TRUE(path.getDirectory(value.Get(), directory.Get()));
    return TextOf(directory);
}

std::u16string LastOf(const Path& value)
{
    Text last;
    EXPECT_TRUE(path.getLast(value.Get(), last.Get()));
    return last.Units();
}

TEST(Path, TextIsBroughtIntoShapeAndSplit)
{
    const struct {
        std::u16string_view input;
        std::u16string_view text;
        std::u16string_view directory;
        std::u16string_view last;
    } rows[] = {
        { u"", u"", u"", u"" },
        { u"/", u"/", u"", u"" },
        { u"///", u"/", u"", u"" },
        { u"/a", u"/a", u"/", u"a" },
        { u"/a/", u"/a", u"/", u"a" },
        { u"//a//b///c//", u"/a/b/c", u"/a/b", u"c" },
        { u"\\a\\b", u"/a/b", u"/a", u"b" },
        { u"/a/../b/.", u"/a/../b/.", u"/a/../b", u"." },
        { u"a", u"a", u"", u"a" },
        { u"a/b/c", u"a/b/c", u"a/b", u"c" },
        { u"/x\xDC5Cy/z", u"/x\xDC5Cy/z", u"/x\xDC5Cy", u"z" },
    };
    for (const auto& row : rows) {
        const Path value = PathOf(row.input);
        EXPECT_EQ(TextOf(value), row.text);
        EXPECT_EQ(DirectoryOf(value), row.directory);
        EXPECT_EQ(LastOf(value), row.last);
        EXPECT_EQ(path.isEmpty(value.Get()) != 0, row.text.empty());
        EXPECT_TRUE(path.equals(value.Get(), PathOf(row.text).Get()));
    }
    EXPECT_FALSE(path.equals(PathOf(u"/").Get(), Path().Get()));
    EXPECT_FALSE(path.equals(PathOf(u"/a").Get(), PathOf(u"/A").Get()));
    EXPECT_FALSE(path.equals(PathOf(u"/a").Get(), PathOf(u"a").Get()));
}

std::string AllBytesName()
{
    std::string name;
    for (int byte = 1; byte < 256; ++byte) {
        if (byte != '/')
            name += static_cast<char>(byte);
    }
    return name;
}

// From the disk into text, into an address, and back: nothing may be lost on the way.
TEST(Path, HardNamesSurviveEveryWay)
{
    std::string deep;
    while (deep.size() < 2000)
        deep += "/folder";
    const std::string rows[] = {
        "/",
        "/a b#?%:x",
        "/\xFF",
        "/a\\b",
        "/\\",
        "/\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80",
        "/" + std::string(255, 'n'),
        "/" + AllBytesName(),
        "/\xED\xA0\x80",
        "/\xC0\x80",
        "/\xC3",
        "/\xC3/\xA9",
        "/\xF0\x9F\x98",
        "/\xED\xB1\x9C",
        "/C:/x",
        "/C:",
        "/...",
        "/ ",
        deep,
    };
    for (const std::string& bytes : rows) {
        const Path fromDisk(bytes);
        EXPECT_EQ(fromDisk.Native(), bytes);
        EXPECT_EQ(PathOf(TextOf(fromDisk)).Native(), bytes);
        Text tail;
        Path fromTail;
        ASSERT_TRUE(path.getUrlTail(fromDisk.Get(), tail.Get()));
        ASSERT_TRUE(path.setUrlTail(fromTail.Get(), tail.Get()));
        EXPECT_EQ(fromTail.Native(), bytes) << tail.Utf8();
        VX3String name = {};
        const std::string last = bytes.substr(bytes.rfind('/') + 1);
        ASSERT_TRUE(SetNativeName(name, last));
        EXPECT_EQ(NativeNameBytes(name), last);
        TextServices()->destruct(&name);
    }
    EXPECT_EQ(Path(std::string_view("/a\0b", 4)).Native(), "") << "would name /a";
}

TEST(Path, UrlTails)
{
    const struct {
        std::u16string_view tail;
        std::u16string_view text;
        std::u16string_view back;
    } rows[] = {
        { u"", u"/", u"" },
        { u"a/b", u"/a/b", u"a/b" },
        { u"a\\b/", u"/a/b", u"a/b" },
        { u"C:/a", u"C:/a", u"C:/a" },
        { u"/C:/a", u"/C:/a", u"/C:/a" },
        { u"1:/a", u"/1:/a", u"1:/a" },
    };
    for (const auto& row : rows) {
        Path value;
        ASSERT_TRUE(path.setUrlTail(value.Get(), Text(row.tail).Get()));
        EXPECT_EQ(TextOf(value), row.text);
        Text back;
        ASSERT_TRUE(path.getUrlTail(value.Get(), back.Get()));
        EXPECT_EQ(back.Units(), row.back);
    }
}

TEST(Path, JoinAndReplaceParts)
{
    const struct {
        std::u16string_view folder;
        std::u16string_view name;
        std::u16string_view joined;
    } rows[] = {
        { u"/", u"a", u"/a" },     { u"/a", u"b", u"/a/b" },     { u"/a/b", u"c", u"/a/b/c" },
        { u"", u"a", u"a" },       { u"a", u"b", u"a/b" },       { u"/a", u"", u"/a" },
        { u"", u"", u"" },         { u"/a", u"b/c", u"/a/b/c" }, { u"/a", u"/b\\c/", u"/a/b/c" },
        { u"", u"/a/b", u"/a/b" }, { u"/a", u"/", u"/a" },       { u"/a", u"b\xDC5C", u"/a/b\xDC5C" },
    };
    for (const auto& row : rows) {
        const Path folder = PathOf(row.folder);
        Path joined = PathOf(u"/before");
        ASSERT_TRUE(path.join(folder.Get(), Text(row.name).Get(), joined.Get()));
        EXPECT_EQ(TextOf(joined), row.joined);
        EXPECT_TRUE(path.equals(joined.Get(), PathOf(row.joined).Get())) << "the same parts, however it was made";
        Path same = folder;
        ASSERT_TRUE(path.join(same.Get(), Text(row.name).Get(), same.Get()));
        EXPECT_EQ(TextOf(same), row.joined);
        EXPECT_EQ(TextOf(folder), row.folder);
    }
    Path value = PathOf(u"/a/b");
    ASSERT_TRUE(path.setDirectory(value.Get(), PathOf(u"/x/y").Get()));
    EXPECT_EQ(TextOf(value), u"/x/y/b");
    ASSERT_TRUE(path.setDirectory(value.Get(), value.Get())) << "into itself";
    EXPECT_EQ(TextOf(value), u"/x/y/b/b");
    ASSERT_TRUE(path.setLast(value.Get(), Text(u"z").Get()));
    EXPECT_EQ(TextOf(value), u"/x/y/b/z");
    ASSERT_TRUE(path.setLast(value.Get(), Text().Get()));
    EXPECT_TRUE(path.equals(value.Get(), PathOf(u"/x/y/b").Get()));
    ASSERT_TRUE(path.getDirectory(value.Get(), value.Get()));
    EXPECT_EQ(TextOf(value), u"/x/y");
    ASSERT_TRUE(path.setDirectory(value.Get(), Path().Get()));
    EXPECT_EQ(TextOf(value), u"y");
}

// A listing of a folder pays for the folder's text once and for a name what the name costs.
TEST(Path, EntriesOfAFolderShareItsText)
{
    constexpr int entries = 1000;
    for (const char* native : { "/", "/folder", "/some/folder" }) {
        const Path folder(native);
        const LiveObjects before = ReadLiveObjects();
        std::vector<Path> paths(entries);
        std::vector<Text> names;
        for (int i = 0; i < entries; ++i)
            names.emplace_back("name" + std::to_string(i));
        for (size_t i = 0; i < entries; ++i)
            ASSERT_TRUE(path.join(folder.Get(), names[i].Get(), paths[i].Get()));
        const LiveObjects live = ReadLiveObjects();
        EXPECT_LE(live.paths - before.paths, 1) << native;
        EXPECT_EQ(live.texts - before.texts, entries) << native;
        names.clear();
        EXPECT_EQ(paths[77].Native(), std::string(native) + (folder.Native() == "/" ? "" : "/") + "name77");
    }
}

// What one folder left in the buffer of a name must not be taken for another folder.
TEST(Path, FoldersOfOneNameAreNotMixedUp)
{
    const Text name("same");
    const Text entry("entry");
    std::vector<Path> folders(3);
    const char* above[] = { "/ax", "/a", "/a/x" };
    for (size_t i = 0; i < 3; ++i)
        ASSERT_TRUE(path.join(Path(above[i]).Get(), name.Get(), folders[i].Get()));
    Path joined;
    for (int round = 0; round < 2; ++round) {
        for (size_t i = 0; i < 3; ++i) {
            ASSERT_TRUE(path.join(folders[i].Get(), entry.Get(), joined.Get()));
            EXPECT_EQ(joined.Native(), std::string(above[i]) + "/same/entry");
        }
    }
    // As long as the right one, with the same ends, and another separator.
    Path trap("/axb/entry");
    ASSERT_TRUE(path.join(Path("/a/b").Get(), entry.Get(), trap.Get()));
    EXPECT_EQ(trap.Native(), "/a/b/entry");
}

TEST(Path, ANameThatChangesLeavesWhatItsFolderKept)
{
    const LiveObjects before = ReadLiveObjects();
    {
        Text name("folder");
        Path joined;
        {
            Path folder;
            ASSERT_TRUE(path.join(Path("/a").Get(), name.Get(), folder.Get()));
            ASSERT_TRUE(path.join(folder.Get(), Text("x").Get(), joined.Get()));
        }
        ASSERT_TRUE(TextServices()->set(name.Get(), "other!", -1, VX3_ENCODING_UTF8)) << "in place: nobody else holds it";
        Path folder;
        ASSERT_TRUE(path.join(Path("/a").Get(), name.Get(), folder.Get()));
        ASSERT_TRUE(path.join(folder.Get(), Text("y").Get(), folder.Get()));
        EXPECT_EQ(joined.Native(), "/a/folder/x");
        EXPECT_EQ(folder.Native(), "/a/other!/y");
    }
    EXPECT_EQ(ReadLiveObjects().paths, before.paths);
    EXPECT_EQ(ReadLiveObjects().texts, before.texts);
}

TEST(Path, CopiesOfAFolderAreJoinedByManyThreadsAtOnce)
{
    const LiveObjects before = ReadLiveObjects();
    for (int round = 0; round < 50; ++round) {
        const Path folder("/some/folder");
        auto work = [](Path mine, char letter) {
            for (int i = 0; i < 200; ++i) {
                Path joined;
                ASSERT_TRUE(path.join(mine.Get(), Text(std::string(1, letter)).Get(), joined.Get()));
                ASSERT_EQ(joined.Native(), std::string("/some/folder/") + letter);
            }
        };
        std::vector<std::thread> threads;
        for (char letter : { 'a', 'b', 'c', 'd' })
            threads.emplace_back(work, folder, letter);
        for (std::thread& thread : threads)
            thread.join();
    }
    EXPECT_EQ(ReadLiveObjects().paths, before.paths);
    EXPECT_EQ(ReadLiveObjects().texts, before.texts);
}

TEST(Path, Suffixes)
{
    const struct {
        std::u16string_view text;
        std::u16string_view suffix;
        std::u16string_view replaced; // with "new"; empty: refused
        std::u16string_view without;  // empty: refused
    } rows[] = {
        { u"/d.e/a.TAR.Gz", u"Gz", u"/d.e/a.TAR.new", u"/d.e/a.TAR" },
        { u"/d.e/a", u"", u"/d.e/a.new", u"/d.e/a" },
        { u"/a.", u"", u"/a.new", u"/a" },
        { u"/.hidden", u"hidden", u"/.new", u"" },
        { u"/", u"", u"", u"" },
        { u"", u"", u"", u"" },
        { u"a.b", u"b", u"a.new", u"a" },
    };
    for (const auto& row : rows) {
        Path value = PathOf(row.text);
        Text suffix(u"before");
        ASSERT_TRUE(path.getSuffix(value.Get(), suffix.Get()));
        EXPECT_EQ(suffix.Units(), row.suffix);
        EXPECT_TRUE(path.hasSuffix(value.Get(), suffix.Get()));
        EXPECT_EQ(path.setSuffix(value.Get(), Text(u"new").Get()) != 0, !row.replaced.empty());
        EXPECT_EQ(TextOf(value), row.replaced.empty() ? row.text : row.replaced);
        value = PathOf(row.text);
        EXPECT_EQ(path.setSuffix(value.Get(), Text().Get()) != 0, !row.without.empty());
        EXPECT_EQ(TextOf(value), row.without.empty() ? row.text : row.without);
    }
    EXPECT_TRUE(path.hasSuffix(PathOf(u"/a.JPG").Get(), Text(u"jpg").Get()));
    EXPECT_FALSE(path.hasSuffix(PathOf(u"/a.jpeg").Get(), Text(u"jpg").Get()));
    Path value = PathOf(u"/a.b");
    EXPECT_FALSE(path.setSuffix(value.Get(), Text(u"c/d").Get()));
}

TEST(Path, AllowedNames)
{
    for (std::u16string_view good : { u"a", u"...", u".a", u" ", u"a:b*?", u"\xDC5C", u"\xDCFF", u"\u00E9\U0001F600" })
        EXPECT_TRUE(path.isNameAllowed(Text(good).Get())) << Text(good).Utf8();
    const std::u16string tooLong[] = { std::u16string(256, u'a'), std::u16string(128, u'\u00E9'), std::u16string(85, u'\u20AC') + u"a" };
    EXPECT_TRUE(path.isNameAllowed(Text(std::u16string(255, u'a')).Get()));
    EXPECT_TRUE(path.isNameAllowed(Text(std::u16string(85, u'\u20AC')).Get()));
    for (const std::u16string& bad : tooLong)
        EXPECT_FALSE(path.isNameAllowed(Text(bad).Get()));
    const std::u16string bad[] = {
        u"",
        u".",
        u"..",
        u"a/b",
        u"a\\b",
        std::u16string(u"a\0", 2),
        u"\xD800",
        u"\xDC41",       // no byte stands for these
        u"\xDCC3\xDCA9", // these bytes are a letter, and would come back as one
    };
    for (const std::u16string& name : bad)
        EXPECT_FALSE(path.isNameAllowed(Text(name).Get())) << Text(name).Utf8();
}

TEST(Path, MemoryThatIsRead)
{
    const char bytes[] = "memory";
    Path value;
    ASSERT_TRUE(path.setMemoryReading(value.Get(), bytes, 6));
    EXPECT_FALSE(path.isEmpty(value.Get()));
    MemoryBlock* block = BlockOf(*value.Get());
    ASSERT_TRUE(block);
    char out[8] = {};
    EXPECT_EQ(block->Read(2, out, 8), 4);
    EXPECT_STREQ(out, "mory");
    EXPECT_EQ(block->Read(6, out, 8), 0);
    EXPECT_FALSE(block->Write(0, "x", 1));
    EXPECT_FALSE(block->Resize(3));
    void* taken = nullptr;
    int64_t length = 0;
    EXPECT_FALSE(path.takeMemory(value.Get(), &taken, &length));
    EXPECT_FALSE(path.setMemoryReading(value.Get(), bytes, -1));
    EXPECT_EQ(BlockOf(*value.Get()), block) << "a refused call leaves the old value";
    EXPECT_FALSE(path.join(value.Get(), Text("a").Get(), value.Get()));
    EXPECT_EQ(TextOf(value), u"");
    EXPECT_EQ(value.Native(), "");
    EXPECT_EQ(BlockOf(*Path("/a").Get()), nullptr);
}

TEST(Path, MemoryThatIsWrittenIsSharedByCopiesAndTakenOnce)
{
    const LiveObjects before = ReadLiveObjects();
    void* taken = nullptr;
    int64_t length = 0;
    {
        Path value;
        ASSERT_TRUE(path.setMemoryWriting(value.Get()));
        const Path copy(value);
        EXPECT_TRUE(path.equals(value.Get(), copy.Get()));
        EXPECT_FALSE(path.takeMemory(value.Get(), &taken, &length)) << "nothing was written";
        MemoryBlock* block = BlockOf(*copy.Get());
        ASSERT_TRUE(block->Write(1000, "end", 3));
        ASSERT_TRUE(block->Write(0, "start", 5));
        EXPECT_FALSE(block->Write(INT64_MAX, "x", 1));
        EXPECT_FALSE(block->Write(-1, "x", 1));
        ASSERT_TRUE(path.takeMemory(value.Get(), &taken, &length));
        EXPECT_FALSE(path.takeMemory(value.Get(), &taken, &length));
        ASSERT_TRUE(block->Write(0, "again", 5)) << "and freed with the path";
    }
    ASSERT_EQ(length, 1003);
    EXPECT_EQ(std::memcmp(taken, "start\0\0", 7), 0);
    EXPECT_EQ(std::memcmp(static_cast<char*>(taken) + 999, "\0end", 4), 0);
    EXPECT_EQ(ReadLiveObjects().memoryBlocks, before.memoryBlocks + 1);
    MemoryServices()->free(taken);
    EXPECT_EQ(ReadLiveObjects().memoryBlocks, before.memoryBlocks);
    EXPECT_EQ(ReadLiveObjects().paths, before.paths);
}

} // namespace
} // namespace vx3::core
