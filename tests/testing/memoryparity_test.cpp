// The same operations on a disk and in memory must give the same answers and leave the
// same files.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "core/values.h"
#include "testing/testhost.h"

namespace vx3::testing {

namespace {

using Lines = std::vector<std::string>;

// One side of the comparison: a table, a folder in it, and what only a builder can make.
class Side
{
public:
    explicit Side(Files where)
        : files(where)
        , host({ .files = where, .scriptsClock = where == Files::InMemory })
        , table(*host.Table())
        , root((where == Files::OnDisk ? host.Folder() : std::string()) + "/root")
    {
        table.folder->createFolder(core::Path(root).Get());
    }

    core::Path At(const char* path) const { return core::Path(root + "/" + path); }
    std::string Native(const char* path) const { return root + "/" + path; }
    bool IsOnDisk() const { return files == Files::OnDisk; }
    void Say(const std::string& line) { lines.push_back(line); }
    void Say(const std::string& what, int64_t result) { Say(what + " " + std::to_string(result)); }

    void PutLink(const char* path, const std::string& target)
    {
        if (!IsOnDisk())
            return host.FileSystem().AddLink(Native(path), target);
        ASSERT_EQ(symlink(target.c_str(), Native(path).c_str()), 0);
    }
    void PutPipe(const char* path)
    {
        if (!IsOnDisk())
            return host.FileSystem().AddSpecial(Native(path));
        ASSERT_EQ(mkfifo(Native(path).c_str(), 0600), 0);
    }
    void MakeReadOnly(const char* path)
    {
        if (!IsOnDisk())
            return host.FileSystem().SetReadOnly(Native(path));
        ASSERT_EQ(chmod(Native(path).c_str(), 0444), 0);
    }
    void DateBack(const char* path) // to the year 2001
    {
        if (!IsOnDisk())
            return host.FileSystem().SetDates(Native(path), { 2001, 2, 3, 0, 0, 0 }, { 2001, 2, 3, 0, 0, 0 });
        constexpr time_t inTheYear2001 = 981158400;
        const timespec dates[2] = { { inTheYear2001, 0 }, { inTheYear2001, 0 } };
        ASSERT_EQ(utimensat(AT_FDCWD, Native(path).c_str(), dates, AT_SYMLINK_NOFOLLOW), 0);
    }

    Files files;
    TestHost host;
    const VX3Host& table;
    std::string root;
    Lines lines;
};

VX3Bool Open(Side& side, VX3BinaryFile* file, const char* path, int32_t mode)
{
    return side.table.file->open(file, side.At(path).Get(), mode, 0, VX3_ORDER_BIG, VX3_FILE_TYPE, VX3_FILE_CREATOR);
}

void Put(Side& side, const char* path, std::string_view bytes)
{
    VX3BinaryFile* file = side.table.file->create();
    EXPECT_TRUE(Open(side, file, path, VX3_OPEN_CREATE)) << path;
    EXPECT_TRUE(side.table.file->write(file, bytes.data(), static_cast<int64_t>(bytes.size())));
    side.table.file->free(file);
}

// Name, flags and size of each entry, sorted.
void SayWalk(Side& side, const char* folder, uint32_t options)
{
    const VX3FolderServices& folders = *side.table.folder;
    VX3FolderWalk* walk = folders.startWalk(side.At(folder).Get(), options);
    side.Say(std::string("walk of ") + folder, walk != nullptr);
    if (!walk)
        return;
    Lines found;
    VX3FolderEntry entry = {};
    while (folders.nextEntry(walk, &entry))
        found.push_back("  " + core::NativeNameBytes(entry.name) + " " + std::to_string(entry.flags) + " " + std::to_string(entry.size));
    side.table.text->destruct(&entry.name);
    side.Say("sound", folders.walkIsSound(walk));
    folders.endWalk(walk);
    std::sort(found.begin(), found.end());
    side.lines.insert(side.lines.end(), found.begin(), found.end());
}

void SayEntry(Side& side, const char* path)
{
    VX3FolderEntry entry = {};
    entry.size = -1;
    const VX3Bool isThere = side.table.folder->inspect(side.At(path).Get(), &entry);
    VX3FileDate date = {};
    const VX3Bool hasDate = side.table.folder->date(side.At(path).Get(), VX3_DATE_MODIFIED, &date);
    const bool isOld = date.year == 2001;
    side.Say(std::string(path) + " " + std::to_string(isThere) + " " + std::to_string(entry.flags) + " " + std::to_string(entry.size));
    side.Say(" exists", side.table.folder->exists(side.At(path).Get()));
    side.Say(" dated", hasDate);
    side.Say(" old", isOld);
}

void UseFiles(Side& side)
{
    const VX3FileServices& files = *side.table.file;
    VX3BinaryFile* file = files.create();
    char bytes[16] = {};
    side.Say("position of a closed file", files.position(file));
    side.Say("close of a closed file", files.close(file));
    side.Say("read what is not there", Open(side, file, "none", VX3_OPEN_READ));
    side.Say("create in no folder", Open(side, file, "no/folder/a", VX3_OPEN_CREATE));
    side.Say("update makes a file", Open(side, file, "a", VX3_OPEN_UPDATE));
    side.Say("open again", Open(side, file, "a", VX3_OPEN_READ));
    side.Say("write", files.write(file, "abcdef", 6));
    side.Say("length with the buffer", files.length(file));
    side.Say("back", files.seek(file, -2, VX3_SEEK_RELATIVE));
    side.Say("read to the end", files.read(file, bytes, sizeof(bytes)));
    side.Say(std::string(bytes));
    side.Say("beyond the end", files.seek(file, 10, VX3_SEEK_ABSOLUTE));
    side.Say("read there", files.read(file, bytes, 1));
    side.Say("write there", files.writeInt16(file, 0x4142));
    side.Say("length", files.length(file));
    side.Say("in front of the start", files.seek(file, -1, VX3_SEEK_ABSOLUTE));
    side.Say("and no more", files.write(file, "x", 1));
    side.Say("close", files.close(file));
    side.Say("update keeps", Open(side, file, "a", VX3_OPEN_UPDATE));
    side.Say("length", files.length(file));
    files.close(file);
    side.Say("reading", Open(side, file, "a", VX3_OPEN_READ));
    side.Say("no write", files.write(file, "x", 1));
    files.close(file);
    side.Say("create truncates", Open(side, file, "a", VX3_OPEN_CREATE));
    side.Say("length", files.length(file));
    files.close(file);
    files.free(file);
}

void OpenWhatIsNoFile(Side& side)
{
    Put(side, "file", "bytes");
    side.table.folder->createFolder(side.At("folder").Get());
    side.PutPipe("pipe");
    side.PutLink("link", "file");
    side.PutLink("circle", "circle");
    for (const char* path : { "folder", "pipe", "link", "circle", "file/below", "none" }) {
        for (const int32_t mode : { VX3_OPEN_READ, VX3_OPEN_UPDATE }) {
            if (std::strcmp(path, "none") == 0 && mode == VX3_OPEN_UPDATE)
                continue;
            VX3BinaryFile* file = side.table.file->create();
            side.Say(path, Open(side, file, path, mode));
            side.table.file->free(file);
        }
    }
}

void KeepOpenFiles(Side& side)
{
    Put(side, "open", "bytes");
    VX3BinaryFile* file = side.table.file->create();
    Open(side, file, "open", VX3_OPEN_UPDATE);
    side.Say("rename while open", side.table.folder->rename(side.At("open").Get(), side.At("renamed").Get()));
    side.Say("write", side.table.file->write(file, "BY", 2));
    side.Say("sync", side.table.file->sync(file));
    SayEntry(side, "renamed");
    side.Say("remove while open", side.table.folder->remove(side.At("renamed").Get(), 0, 5, nullptr, nullptr, nullptr));
    side.Say("length", side.table.file->length(file));
    side.table.file->free(file);
    SayEntry(side, "renamed");
}

// The first file stays open; what the second opening says, and what it leaves.
void UseWriters(Side& side)
{
    const VX3FileServices& files = *side.table.file;
    for (const int32_t held : { VX3_OPEN_UPDATE, VX3_OPEN_CREATE, VX3_OPEN_READ }) {
        Put(side, "one", "bytes");
        VX3BinaryFile* first = files.create();
        VX3BinaryFile* second = files.create();
        side.Say("held", Open(side, first, "one", held));
        for (const int32_t mode : { VX3_OPEN_UPDATE, VX3_OPEN_READ, VX3_OPEN_CREATE }) {
            side.Say("second", Open(side, second, "one", mode));
            side.Say("close", files.close(second));
            SayEntry(side, "one");
        }
        side.Say("away", side.table.folder->rename(side.At("one").Get(), side.At("two").Get()));
        side.Say("under its new name", Open(side, second, "two", VX3_OPEN_UPDATE));
        files.close(second);
        side.Say("another of its name", Open(side, second, "one", VX3_OPEN_UPDATE));
        files.close(second);
        side.Say("given back", files.close(first) && Open(side, second, "two", VX3_OPEN_UPDATE));
        files.free(first);
        files.free(second);
        side.Say("freed", Open(side, first = files.create(), "two", VX3_OPEN_CREATE));
        files.free(first);
        side.table.folder->remove(side.At("two").Get(), 0, 0, nullptr, nullptr, nullptr);
    }
}

void Inspect(Side& side)
{
    Put(side, "plain", "12345");
    Put(side, ".hidden", "1");
    Put(side, "readonly", "1");
    side.MakeReadOnly("readonly");
    side.table.folder->createFolder(side.At("folder").Get());
    Put(side, "folder/inside", "");
    side.PutPipe("pipe");
    side.PutLink("tofile", "plain");
    side.PutLink("tofolder", "folder");
    side.PutLink("broken", "nothing");
    side.PutLink("folder/up", "..");
    side.DateBack("plain");
    for (const char* path : { "plain", ".hidden", "readonly", "folder", "pipe", "tofile", "tofolder", "broken", "folder/up", "none",
                              "plain/below", "tofolder/inside" })
        SayEntry(side, path);
    for (const uint32_t options : { 0, 1, 2, 3 })
        SayWalk(side, ".", options);
    for (const char* path : { "folder", "tofolder", "plain", "none" })
        SayWalk(side, path, VX3_WALK_HIDDEN | VX3_WALK_READONLY);
    VX3FileDate date = { 1, 1, 1, 1, 1, 1 };
    side.Say("date of nothing", side.table.folder->date(side.At("none").Get(), VX3_DATE_CREATED, &date) + date.year + date.second);
}

void Rename(Side& side)
{
    const auto rename = [&](const char* from, const char* to) {
        side.Say(std::string(from) + " to " + to, side.table.folder->rename(side.At(from).Get(), side.At(to).Get()));
    };
    const auto create = [&](const char* path) { side.Say(path, side.table.folder->createFolder(side.At(path).Get())); };
    Put(side, "a", "a");
    Put(side, "b", "b");
    side.PutLink("broken", "nothing");
    create("x");
    create("x");
    create("x/y");
    create("no/y");
    create("a");
    create("a/y");
    create("broken");
    rename("a", "b");
    rename("a", "x");
    rename("x", "a");
    rename("a", "broken");
    rename("a", "c");
    rename("none", "d");
    rename("x", "x/y/x");
    rename("c", "x/y/c");
    rename("x", "z");
    rename("c", "c");
    rename("b", "b");
    rename("b", "no/b");
    side.Say("move", side.table.folder->move(side.At("z/y").Get(), side.At("y").Get()));
    side.Say("same volume", side.table.folder->sameVolume(side.At("y").Get(), side.At("not/there").Get()));
    side.Say("same volume of new", side.table.folder->sameVolume(side.At("y").Get(), side.At("new").Get()));
    side.Say("probe", side.table.folder->probeVolume(side.At("y").Get()));
    SayWalk(side, ".", 3);
    SayWalk(side, "y", 3);
}

struct Progress {
    Lines lines;
    int cancelAt = -1;
};

int32_t Note(void* user, int32_t mode, int32_t count, int64_t size, int32_t reserved)
{
    auto& progress = *static_cast<Progress*>(user);
    const int number = static_cast<int>(progress.lines.size());
    progress.lines.push_back("  " + std::to_string(mode) + " " + std::to_string(count) + " " + std::to_string(size) + " "
                             + std::to_string(reserved));
    return number == progress.cancelAt ? -1 : 0;
}

void SayProgress(Side& side, const std::string& what, VX3Bool result, VX3Bool cancelled, Progress& progress)
{
    side.Say(what, result);
    side.Say(" cancelled", cancelled);
    std::sort(progress.lines.begin(), progress.lines.end()); // a disk has its own order of entries
    side.lines.insert(side.lines.end(), progress.lines.begin(), progress.lines.end());
}

void CopyOne(Side& side, const char* from, const char* to, int cancelAt = -1)
{
    Progress progress;
    progress.cancelAt = cancelAt;
    VX3Bool cancelled = -1;
    const VX3Bool result = side.table.folder->copy(side.At(from).Get(), side.At(to).Get(), 0, 0, Note, &progress, &cancelled);
    SayProgress(side, std::string("copy ") + from + " to " + to, result, cancelled, progress);
}

void RemoveOne(Side& side, const char* path, int cancelAt = -1)
{
    Progress progress;
    progress.cancelAt = cancelAt;
    VX3Bool cancelled = -1;
    const VX3Bool result = side.table.folder->remove(side.At(path).Get(), 0, 0, Note, &progress, &cancelled);
    SayProgress(side, std::string("remove ") + path, result, cancelled, progress);
}

void Copy(Side& side)
{
    constexpr std::size_t large = 2500 * 1024;
    Put(side, "large", std::string(large, 'x'));
    Put(side, "small", "s");
    Put(side, "empty", "");
    side.DateBack("small");
    side.table.folder->createFolder(side.At("folder").Get());
    Put(side, "folder/only", "12");
    side.PutLink("link", "small");
    side.PutPipe("pipe");
    CopyOne(side, "large", "large2");
    CopyOne(side, "large", "large3", 2); // cancelled in the middle
    CopyOne(side, "large", "large3", 0); // and at the start
    CopyOne(side, "small", "small2");
    CopyOne(side, "small", "small2");
    CopyOne(side, "small", "no/small");
    CopyOne(side, "empty", "empty2");
    CopyOne(side, "folder", "folder2");
    CopyOne(side, "folder", "folder/inside");
    CopyOne(side, "folder", "folder3", 2);
    CopyOne(side, "link", "link2");
    CopyOne(side, "pipe", "pipe2");
    CopyOne(side, "none", "none2");
    SayWalk(side, ".", 3);
    SayWalk(side, "folder2", 3);
    SayEntry(side, "small2");
}

void Remove(Side& side)
{
    side.table.folder->createFolder(side.At("folder").Get());
    side.table.folder->createFolder(side.At("folder/sub").Get());
    Put(side, "folder/sub/file", "12");
    Put(side, "file", "123");
    side.table.folder->createFolder(side.At("target").Get());
    Put(side, "target/kept", "1");
    side.PutLink("folder/link", "../target");
    side.PutLink("link", "target");
    RemoveOne(side, "folder", 0);
    RemoveOne(side, "folder");
    RemoveOne(side, "file", 0);
    RemoveOne(side, "file");
    RemoveOne(side, "link");
    RemoveOne(side, "none");
    SayWalk(side, ".", 3);
    SayWalk(side, "target", 3);
}

Lines LinesOf(Files where, void (*operations)(Side&))
{
    Side side(where);
    operations(side);
    EXPECT_EQ(side.host.ExpectClean(), "");
    return side.lines;
}

class MemoryParity : public ::testing::TestWithParam<void (*)(Side&)>
{
};

} // namespace

TEST_P(MemoryParity, AnswersAsTheDiskDoes)
{
    const Lines disk = LinesOf(Files::OnDisk, GetParam());
    const Lines memory = LinesOf(Files::InMemory, GetParam());
    EXPECT_GT(disk.size(), 5u);
    ASSERT_EQ(disk.size(), memory.size());
    for (std::size_t i = 0; i < disk.size(); ++i)
        EXPECT_EQ(disk[i], memory[i]) << "line " << i << (i > 0 ? " behind: " + disk[i - 1] : "");
}

INSTANTIATE_TEST_SUITE_P(Operations, MemoryParity,
                         ::testing::Values(UseFiles, UseWriters, OpenWhatIsNoFile, KeepOpenFiles, Inspect, Rename, Copy, Remove));

} // namespace vx3::testing
