// A journal played up to any cut gives the state that stood there.
#include <gtest/gtest.h>

#include <cstring>

#include "core/values.h"
#include "testing/testhost.h"

namespace vx3::testing {

namespace {

// Adds up every state that a call of this test has left behind.
class Scenario
{
public:
    explicit Scenario(TestHost& testHost)
        : host(testHost)
        , table(*testHost.Table())
    {
    }

    void Open(const char* path, int32_t mode)
    {
        file = table.file->create();
        EXPECT_TRUE(table.file->open(file, core::Path(path).Get(), mode, 0, VX3_ORDER_LITTLE, VX3_FILE_TYPE, VX3_FILE_CREATOR));
        Note();
    }
    void Write(const char* bytes)
    {
        EXPECT_TRUE(table.file->write(file, bytes, static_cast<int64_t>(std::strlen(bytes))));
        Note();
    }
    void WriteNumber(uint32_t number)
    {
        EXPECT_TRUE(table.file->writeInt32(file, number));
        Note();
    }
    void Seek(int64_t offset) { EXPECT_TRUE(table.file->seek(file, offset, VX3_SEEK_ABSOLUTE)); }
    void Close()
    {
        EXPECT_TRUE(table.file->close(file));
        table.file->free(file);
        file = nullptr;
    }
    void Rename(const char* from, const char* to)
    {
        EXPECT_TRUE(table.folder->rename(core::Path(from).Get(), core::Path(to).Get()));
        Note();
    }
    void Copy(const char* from, const char* to)
    {
        EXPECT_TRUE(table.folder->copy(core::Path(from).Get(), core::Path(to).Get(), 0, 0, nullptr, nullptr, nullptr));
        Note();
    }
    void Remove(const char* path)
    {
        EXPECT_TRUE(table.folder->remove(core::Path(path).Get(), 0, 0, nullptr, nullptr, nullptr));
        Note();
    }
    void MakeFolder(const char* path)
    {
        EXPECT_TRUE(table.folder->createFolder(core::Path(path).Get()));
        Note();
    }

    std::vector<std::string> states;

private:
    // What stands in the file system once the buffers are written out.
    void Note()
    {
        if (file) {
            EXPECT_TRUE(table.file->sync(file));
        }
        states.push_back(host.FileSystem().Listing("/lib"));
    }

    TestHost& host;
    const VX3Host& table;
    VX3BinaryFile* file = nullptr;
};

void RunScenario(Scenario& run)
{
    run.MakeFolder("/lib/sub");
    run.Open("/lib/new", VX3_OPEN_CREATE);
    run.Write("hello");
    run.WriteNumber(0x44434241);
    run.Seek(1);
    run.Write("EL");
    run.Rename("/lib/new", "/lib/sub/moved"); // while it is open
    run.Write("X");
    run.Close();
}

} // namespace

TEST(WriteJournal, GivesTheStateOfEveryStepAndCut)
{
    TestHost host({ .files = Files::InMemory });
    host.FileSystem().AddFile("/lib/old", "old");
    const auto start = host.FileSystem().Keep();
    host.Journal().Begin("/lib");
    Scenario run(host);
    RunScenario(run);
    host.Journal().End();

    const std::vector<JournalStep> steps = host.Journal().Steps();
    ASSERT_EQ(steps.size(), run.states.size());
    int64_t played = 0;
    int64_t wholeSteps = 0;
    for (int64_t cut = 0; cut <= host.Journal().Units(); ++cut, ++played) {
        host.FileSystem().Restore(start);
        ASSERT_TRUE(host.Journal().Replay(cut, host.PlainTable(), "/lib"));
        const int64_t step = host.Journal().StepAt(cut);
        int64_t unitsOfSteps = 0;
        for (int64_t i = 0; i < step; ++i)
            unitsOfSteps += steps[static_cast<std::size_t>(i)].Units();
        if (step > 0 && unitsOfSteps == cut) {
            EXPECT_EQ(host.FileSystem().Listing("/lib"), run.states[static_cast<std::size_t>(step - 1)]) << cut;
            ++wholeSteps;
        }
    }
    EXPECT_EQ(played, host.Journal().Units() + 1);
    EXPECT_EQ(wholeSteps, static_cast<int64_t>(steps.size()));
    EXPECT_EQ(host.ExpectClean(), "");
}

TEST(WriteJournal, CutsAWriteInItsMiddle)
{
    TestHost host({ .files = Files::InMemory });
    host.FileSystem().AddFolder("/lib");
    const auto start = host.FileSystem().Keep();
    host.Journal().Begin("/lib");
    Scenario run(host);
    run.Open("/lib/a", VX3_OPEN_CREATE);
    run.Write("12345");
    run.Close();
    host.Journal().End();
    host.FileSystem().Restore(start);
    ASSERT_TRUE(host.Journal().Replay(1 + 2, host.PlainTable(), "/lib")); // the creation and two bytes
    EXPECT_EQ(host.FileSystem().Listing("/lib"), "a=12\n");
}

TEST(WriteJournal, TakesACopyAsOneStepAndLeavesOtherFoldersOut)
{
    TestHost host({ .files = Files::InMemory });
    host.FileSystem().AddFile("/from/x/a", "aa");
    host.FileSystem().AddFile("/from/x/b", "bb");
    host.FileSystem().AddFolder("/lib");
    const auto start = host.FileSystem().Keep();
    host.Journal().Begin("/lib");
    Scenario run(host);
    run.MakeFolder("/library"); // begins with the same letters
    run.Copy("/from/x", "/lib/x");
    run.Rename("/lib/x", "/lib/y");
    run.Remove("/lib/y");
    host.Journal().End();
    host.FileSystem().Restore(start);
    ASSERT_TRUE(host.Journal().Replay(1, host.PlainTable(), "/lib"));
    EXPECT_EQ(host.FileSystem().Listing("/lib"), "x/\nx/a=aa\nx/b=bb\n");
    host.FileSystem().Restore(start);
    ASSERT_TRUE(host.Journal().Replay(host.Journal().Units(), host.PlainTable(), "/lib"));
    EXPECT_EQ(host.FileSystem().Listing("/lib"), "");
}

TEST(WriteJournal, LeavesFailedCallsOut)
{
    TestHost host({ .files = Files::InMemory });
    host.FileSystem().AddFile("/lib/a", "");
    host.FileSystem().AddFile("/lib/b", "");
    host.Journal().Begin("/lib");
    const VX3Host& table = *host.Table();
    EXPECT_FALSE(table.folder->rename(core::Path("/lib/a").Get(), core::Path("/lib/b").Get()));
    host.Faults().Fail(FailClass::Remove, 1);
    EXPECT_FALSE(table.folder->remove(core::Path("/lib/a").Get(), 0, 0, nullptr, nullptr, nullptr));
    EXPECT_TRUE(host.Journal().Steps().empty());
}

// The same record on a disk.
TEST(WriteJournal, PlaysIntoARealFolder)
{
    TestHost host;
    const std::string folder = host.Folder() + "/lib";
    ASSERT_TRUE(host.Table()->folder->createFolder(core::Path(folder).Get()));
    host.Journal().Begin(folder);
    VX3BinaryFile* file = host.Table()->file->create();
    const core::Path path(folder + "/a");
    ASSERT_TRUE(host.Table()->file->open(file, path.Get(), VX3_OPEN_UPDATE, 0, VX3_ORDER_BIG, VX3_FILE_TYPE, VX3_FILE_CREATOR));
    ASSERT_TRUE(host.Table()->file->write(file, "abc", 3));
    host.Table()->file->free(file);
    host.Journal().End();
    const std::string second = host.Folder() + "/second";
    ASSERT_TRUE(host.Table()->folder->createFolder(core::Path(second).Get()));
    ASSERT_TRUE(host.Journal().Replay(1 + 2, host.PlainTable(), second));
    VX3FolderEntry entry = {};
    ASSERT_TRUE(host.Table()->folder->inspect(core::Path(second + "/a").Get(), &entry));
    EXPECT_EQ(entry.size, 2);
}

} // namespace vx3::testing
