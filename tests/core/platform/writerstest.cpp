// One writer at a time, and what is on the disk when.
#include <cerrno>
#include <csignal>

#include <sys/wait.h>

#include "core/corehost.h"
#include "diskcalls.h"
#include "openfile.h"

namespace vx3::core {

namespace {

using Calls = std::vector<std::string>;
constexpr int32_t writingModes[] = { VX3_OPEN_UPDATE, VX3_OPEN_CREATE };

// A child process that does something, says so, and then waits to be killed.
class Child
{
public:
    template <class Action>
    explicit Child(Action action)
    {
        int ends[2] = {};
        EXPECT_EQ(pipe(ends), 0);
        process = fork();
        if (process == 0) {
            const char answer = action() ? 'y' : 'n';
            (void)!write(ends[1], &answer, 1);
            for (;;)
                pause();
        }
        char answer = 0;
        EXPECT_EQ(read(ends[0], &answer, 1), 1);
        hasSucceeded = answer == 'y';
        close(ends[0]);
        close(ends[1]);
    }
    ~Child() { Kill(); }
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    void Kill()
    {
        if (process <= 0)
            return;
        kill(process, SIGKILL);
        waitpid(process, nullptr, 0);
        process = 0;
    }

    bool hasSucceeded = false;

private:
    pid_t process = 0;
};

TEST(Writers, ASecondOneIsRefusedAndNothingIsTruncated)
{
    Scratch scratch;
    for (int32_t held : writingModes)
        for (int32_t second : writingModes) {
            Path path(scratch.File("file"));
            OpenFile holder(path, held);
            ASSERT_TRUE(holder.Write("the holder's") && holder.Sync());
            EXPECT_FALSE(OpenFile(path, second).isOpen) << held << second;
            EXPECT_EQ(OpenFile(path, VX3_OPEN_READ).Read(100), "the holder's");
            EXPECT_TRUE(holder.Close());
            EXPECT_EQ(Contents(scratch / "file"), "the holder's");
            EXPECT_TRUE(OpenFile(path, second).isOpen) << "closing lets go";
        }
}

TEST(Writers, AnotherProgramHoldsAFileUntilItIsGone)
{
    Scratch scratch;
    Path path(scratch.File("file"));
    Child child([&] {
        auto* file = new OpenFile(path, VX3_OPEN_UPDATE); // never closed
        return file->Write("CON") && file->Sync();
    });
    ASSERT_TRUE(child.hasSucceeded);
    std::string told;
    HostSettings settings;
    settings.onText = [&](const std::string& text) { told += text; };
    CoreHost host(settings);
    for (int32_t mode : writingModes) {
        VX3BinaryFile* file = FileServices()->create();
        EXPECT_FALSE(FileServices()->open(file, path.Get(), mode, 1, VX3_ORDER_BIG, 0, 0));
        FileServices()->free(file);
    }
    EXPECT_NE(told.find("open for writing already"), std::string::npos) << told;
    EXPECT_EQ(Contents(scratch / "file"), "CONtent");
    child.Kill();
    EXPECT_TRUE(OpenFile(path, VX3_OPEN_UPDATE).isOpen);
}

TEST(Writers, AChildThatWasForkedMeanwhileKeepsNoLock)
{
    Scratch scratch;
    Path path(scratch.File("file"));
    OpenFile file(path, VX3_OPEN_UPDATE);
    Child child([] { return true; }); // has the open file, too
    ASSERT_TRUE(file.Close());
    EXPECT_TRUE(OpenFile(path, VX3_OPEN_UPDATE).isOpen);
}

TEST(Writers, WhereThereAreNoLocksFilesOpenAllTheSame)
{
    Scratch scratch;
    Path path(scratch / "file");
    DiskCalls calls;
    OpenFile holder(path, VX3_OPEN_CREATE);
    for (int error : { ENOLCK, EOPNOTSUPP, ENOTSUP }) {
        calls.FailNext("flock", error);
        EXPECT_TRUE(OpenFile(path, VX3_OPEN_UPDATE).isOpen) << error;
    }
    calls.FailNext("flock", EINTR);
    EXPECT_FALSE(OpenFile(path, VX3_OPEN_UPDATE).isOpen) << "asked again, and refused then";
    calls.FailNext("flock", EIO);
    EXPECT_FALSE(OpenFile(path, VX3_OPEN_UPDATE).isOpen);
}

TEST(Writers, WhatWasRenamedBeforeItsLockIsNotWrittenInPlaceOfItsSuccessor)
{
    Scratch scratch;
    for (int32_t mode : writingModes) {
        Path path(scratch.File("library", "old"));
        scratch.File("library.new", "new");
        DiskCalls calls;
        calls.BeforeNextLock([&] {
            files::rename(scratch / "library", scratch / "library.bak");
            files::rename(scratch / "library.new", scratch / "library");
        });
        EXPECT_TRUE(OpenFile(path, mode).Write("W"));
        EXPECT_EQ(Contents(scratch / "library.bak"), "old");
        EXPECT_EQ(Contents(scratch / "library"), mode == VX3_OPEN_CREATE ? "W" : "Wew");
    }
}

TEST(Writers, TwoProgramsThatStorePreferencesDoNotSpoilEachOthersPart)
{
    Scratch scratch;
    std::string console;
    HostSettings settings = SettingsBelow(scratch.Root());
    settings.onConsole = [&](const std::string& line) { console += line; };
    CoreHost host(settings);
    VX3Container* page = RegistryServices()->preferences(1);
    ASSERT_NE(page, nullptr);
    ContainerServices()->setInt32(page, 1, 2);
    scratch.Folder("config");
    {
        OpenFile others(Path(scratch / "config/preferences.vx3.part"), VX3_OPEN_CREATE);
        ASSERT_TRUE(others.Write("theirs"));
        EXPECT_FALSE(host.StorePreferences());
        EXPECT_NE(console.find("could not be stored"), std::string::npos);
        EXPECT_TRUE(others.Close());
        EXPECT_EQ(Contents(scratch / "config/preferences.vx3.part"), "theirs");
    }
    EXPECT_TRUE(host.StorePreferences()) << "what another left behind when it died is in nobody's way";
    EXPECT_EQ(NamesBelow(scratch / "config"), std::set<std::string>{ "preferences.vx3" });
}

// --- What is on the disk when ---

bool Rename(const Scratch& scratch, const char* from, const char* to)
{
    return FolderServices()->rename(Path(scratch / from).Get(), Path(scratch / to).Get());
}

TEST(OnDisk, BytesThenNamesInTheOrderOfTheCalls)
{
    Scratch scratch;
    scratch.Folder("here");
    scratch.Folder("there");
    DiskCalls calls;
    {
        OpenFile fresh(Path(scratch / "here/new"), VX3_OPEN_CREATE);
        ASSERT_TRUE(fresh.Write("bytes") && fresh.Close());
    }
    EXPECT_EQ(calls.Take(), (Calls{ "fdatasync new", "fsync here" })) << "a new file has a new name";
    ASSERT_TRUE(Rename(scratch, "here/new", "here/file") && Rename(scratch, "here/file", "there/file"));
    EXPECT_EQ(calls.Take(), (Calls{ "rename new file", "fsync here", "rename file file", "fsync there", "fsync here" }));
    ASSERT_TRUE(FolderServices()->move(Path(scratch / "there/file").Get(), Path(scratch / "here/file").Get())
                && FolderServices()->move(Path(scratch / "here/file").Get(), Path(scratch / "there/file").Get()));
    EXPECT_EQ(calls.Take(), (Calls{ "rename file file", "rename file file" })) << "a thousand moves would take seconds";
    EXPECT_FALSE(Rename(scratch, "here/none", "here/other"));
    EXPECT_EQ(calls.Take(), Calls{ "rename none other" });
    Path old(scratch / "there/file");
    EXPECT_TRUE(OpenFile(old, VX3_OPEN_UPDATE).Read(5) == "bytes" && OpenFile(old, VX3_OPEN_READ).isOpen);
    EXPECT_EQ(calls.Take(), Calls{}) << "nothing was written";
    EXPECT_TRUE(OpenFile(old, VX3_OPEN_UPDATE).Write("B"));
    EXPECT_EQ(calls.Take(), Calls{ "fdatasync file" });
    {
        OpenFile synced(old, VX3_OPEN_CREATE);
        ASSERT_TRUE(synced.Write("x") && synced.Sync());
        EXPECT_EQ(calls.Take(), Calls{ "fdatasync file" });
    }
    EXPECT_EQ(calls.Take(), Calls{}) << "and nothing since";
}

TEST(OnDisk, TheWaitingCanBeTurnedOff)
{
    Scratch scratch;
    HostSettings settings = SettingsBelow(scratch.Root());
    settings.syncFiles = false;
    CoreHost host(settings);
    DiskCalls calls;
    OpenFile file(Path(scratch / "a"), VX3_OPEN_CREATE);
    EXPECT_TRUE(file.Write("bytes") && file.Sync() && file.Close() && Rename(scratch, "a", "b"));
    EXPECT_EQ(calls.Take(), Calls{ "rename a b" });
    EXPECT_EQ(Contents(scratch / "b"), "bytes");
}

TEST(OnDisk, ADiskThatFailsIsTold)
{
    Scratch scratch;
    std::string console;
    HostSettings settings;
    settings.onConsole = [&](const std::string& line) { console += line; };
    CoreHost host(settings);
    struct Row {
        const char* call;
        int error;
        bool isTold;
    };
    constexpr Row rows[] = { { "fdatasync", EIO, true },   { "fdatasync", ENOSPC, true },  { "fdatasync", EROFS, true },
                             { "fsync", EIO, true },       { "fdatasync", EINVAL, false }, { "fsync", EINVAL, false },
                             { "fdatasync", EINTR, false } };
    for (const Row& row : rows) {
        files::remove(scratch / "file");
        DiskCalls calls;
        OpenFile file(Path(scratch / "file"), VX3_OPEN_CREATE);
        EXPECT_TRUE(file.Write("bytes"));
        calls.FailNext(row.call, row.error);
        EXPECT_EQ(file.Close(), !row.isTold) << row.call << row.error;
    }
    DiskCalls calls;
    calls.FailNext("fsync", EIO);
    EXPECT_TRUE(Rename(scratch, "file", "renamed")) << "it has happened";
    EXPECT_NE(console.find(scratch.Root()), std::string::npos) << console;
}

} // namespace

} // namespace vx3::core
