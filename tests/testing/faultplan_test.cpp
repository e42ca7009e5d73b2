// The n-th call of a class fails as it is told to, and gives what the headers promise.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <thread>

#include "core/values.h"
#include "testing/testhost.h"

namespace vx3::testing {

namespace {

// Which of five allocations gave a block, as a text of 1 and 0.
std::string FiveAllocations(const VX3Host& table)
{
    std::string answers;
    for (int i = 0; i < 5; ++i) {
        void* block = table.memory->alloc(8, 1, "a.cpp", 0);
        answers += block ? '1' : '0';
        table.memory->free(block);
    }
    return answers;
}

VX3BinaryFile* OpenFile(const VX3Host& table, const char* path, int32_t mode)
{
    VX3BinaryFile* file = table.file->create();
    EXPECT_TRUE(table.file->open(file, core::Path(path).Get(), mode, 0, VX3_ORDER_BIG, VX3_FILE_TYPE, VX3_FILE_CREATOR));
    return file;
}

} // namespace

TEST(FaultPlan, FailsTheNthCallOnceOrFromThereOn)
{
    TestHost host;
    host.Faults().Fail(FailClass::Memory, 3);
    EXPECT_EQ(FiveAllocations(*host.Table()), "11011");
    EXPECT_EQ(host.Faults().CallsOf(FailClass::Memory), 5);
    EXPECT_EQ(host.Faults().FailuresOf(FailClass::Memory), 1);
    host.Faults().Fail(FailClass::Memory, 3, Failing::FromThereOn);
    EXPECT_EQ(FiveAllocations(*host.Table()), "11000");
    EXPECT_EQ(host.Faults().FailuresOf(FailClass::Memory), 3);
    host.Faults().Clear();
    EXPECT_EQ(FiveAllocations(*host.Table()), "11111");
    EXPECT_EQ(host.ExpectClean(), "");
}

TEST(FaultPlan, CountsValueOperationsAsMemory)
{
    TestHost host;
    const VX3Host& table = *host.Table();
    auto text = std::make_unique<core::Text>("old");
    const int64_t failed = FailEachInTurn(host.Faults(), FailClass::Memory, Failing::Once, [&](int64_t nth) {
        core::Path path("/a");
        VX3Container container = {};
        const bool isSet = table.text->set(text->Get(), "new", -1, VX3_ENCODING_PLAIN);
        const bool isLast = table.path->setLast(path.Get(), text->Get());
        const bool isStored = table.container->setInt32(&container, 1, 2);
        EXPECT_EQ(isSet + isLast + isStored, nth > 3 ? 3 : 2);
        EXPECT_EQ(text->Utf8(), nth == 1 ? "old" : "new");
        table.container->destruct(&container);
    });
    EXPECT_EQ(failed, 3);
    text.reset();
    EXPECT_EQ(host.ExpectClean(), "");
}

namespace {

void FailEachCall(TestHost& host)
{
    const VX3Host& table = *host.Table();
    FaultPlan& faults = host.Faults();
    const core::Path file("/f/a");
    const core::Path other("/f/b");
    struct Case {
        FailClass kind;
        std::function<int64_t()> call;
        int64_t failure;
    };
    VX3Bitmap* bitmap = table.bitmap->create(1, 1, 24);
    VX3FileDate date = { 1, 1, 1, 1, 1, 1 };
    core::Path place("/kept");
    const Case cases[] = {
        { FailClass::Rename, [&] { return table.folder->rename(file.Get(), other.Get()); }, 0 },
        { FailClass::Rename, [&] { return table.folder->move(file.Get(), other.Get()); }, 0 },
        { FailClass::CreateFolder, [&] { return table.folder->createFolder(other.Get()); }, 0 },
        { FailClass::Copy, [&] { return table.folder->copy(file.Get(), other.Get(), 0, 6, nullptr, nullptr, nullptr); }, 0 },
        { FailClass::Remove, [&] { return table.folder->remove(file.Get(), 0, 6, nullptr, nullptr, nullptr); }, 0 },
        { FailClass::StartWalk, [&] { return table.folder->startWalk(core::Path("/f").Get(), 0) != nullptr; }, 0 },
        { FailClass::Watch,
          [&] {
              return table.folder->watch(
                         core::Path("/f").Get(), [](void*) {}, nullptr)
                  != nullptr;
          },
          0 },
        { FailClass::Inspect, [&] { return table.folder->date(file.Get(), VX3_DATE_MODIFIED, &date); }, 0 },
        { FailClass::LoadBitmap, [&] { return table.bitmap->load(bitmap, file.Get(), 0); }, VX3_IMAGE_NO_MEMORY },
        { FailClass::Write, [&] { return table.bitmap->save(bitmap, other.Get(), VX3_FORMAT_PNG, nullptr, 0); }, VX3_IMAGE_NOT_WRITTEN },
        { FailClass::Semaphore, [&] { return table.lock->createSemaphore(0) != nullptr; }, 0 },
        { FailClass::Memory, [&] { return table.run->folder(VX3_FOLDER_PREFERENCES, place.Get()); }, 0 },
    };
    for (const Case& one : cases) {
        SCOPED_TRACE(NameOf(one.kind));
        faults.Fail(one.kind, 1);
        EXPECT_EQ(one.call(), one.failure);
        EXPECT_EQ(faults.FailuresOf(one.kind), 1);
    }
    table.bitmap->free(bitmap);
    EXPECT_EQ(date.year, 0);                                  // a failed date is zero
    EXPECT_EQ(place.Native(), "");                            // a failed folder is the empty path
    EXPECT_EQ(host.FileSystem().Listing("/f"), "a=abcdef\n"); // nothing went through
}

} // namespace

TEST(FaultPlan, GivesTheFailureOfEachCall)
{
    TestHost host({ .files = Files::InMemory });
    host.FileSystem().AddFile("/f/a", "abcdef");
    FailEachCall(host);
    EXPECT_EQ(host.ExpectClean(), "");
}

TEST(FaultPlan, BreaksAFileUntilItIsClosed)
{
    TestHost host({ .files = Files::InMemory });
    const VX3Host& table = *host.Table();
    VX3BinaryFile* file = OpenFile(table, "/a", VX3_OPEN_CREATE);
    host.Faults().Fail(FailClass::Write, 2);
    EXPECT_TRUE(table.file->writeInt32(file, 1));
    EXPECT_FALSE(table.file->writeInt32(file, 2));
    EXPECT_FALSE(table.file->writeInt32(file, 3));
    EXPECT_FALSE(table.file->seek(file, 0, VX3_SEEK_ABSOLUTE));
    EXPECT_FALSE(table.file->close(file));
    EXPECT_TRUE(table.file->open(file, core::Path("/a").Get(), VX3_OPEN_READ, 0, VX3_ORDER_BIG, VX3_FILE_TYPE, VX3_FILE_CREATOR));
    EXPECT_EQ(table.file->length(file), 4);
    EXPECT_TRUE(table.file->close(file));
    table.file->free(file);
    EXPECT_EQ(host.ExpectClean(), "");
}

TEST(FaultPlan, GoesHalfwayOrAllTheWayIfToldTo)
{
    TestHost host({ .files = Files::InMemory });
    host.FileSystem().AddFolder("/f");
    const VX3Host& table = *host.Table();
    VX3BinaryFile* file = OpenFile(table, "/f/a", VX3_OPEN_CREATE);
    host.Faults().Fail(FailClass::Write, 2, Failing::Once, Manner::Halfway);
    EXPECT_TRUE(table.file->write(file, "abcd", 4));
    EXPECT_FALSE(table.file->write(file, "efgh", 4));
    EXPECT_FALSE(table.file->write(file, "ijkl", 4));
    EXPECT_FALSE(table.file->close(file));
    char bytes[6] = {};
    EXPECT_TRUE(table.file->open(file, core::Path("/f/a").Get(), VX3_OPEN_READ, 0, VX3_ORDER_BIG, VX3_FILE_TYPE, VX3_FILE_CREATOR));
    host.Faults().Fail(FailClass::Read, 1, Failing::Once, Manner::Halfway);
    EXPECT_EQ(table.file->read(file, bytes, 6), 3);
    EXPECT_EQ(table.file->read(file, bytes + 3, 3), 3) << "a short read breaks nothing";
    EXPECT_EQ(std::string(bytes, 6), "abcdef");
    host.Faults().Fail(FailClass::Seek, 1);
    EXPECT_FALSE(table.file->seek(file, 0, VX3_SEEK_ABSOLUTE));
    EXPECT_EQ(table.file->read(file, bytes, 1), -1);
    table.file->free(file);
    host.Faults().Fail(FailClass::Rename, 1, Failing::Once, Manner::Done);
    EXPECT_FALSE(table.folder->rename(core::Path("/f/a").Get(), core::Path("/f/b").Get()));
    EXPECT_EQ(host.FileSystem().Listing("/f"), "b=abcdef\n");
    EXPECT_EQ(host.ExpectClean(), "");
}

TEST(FaultPlan, EndsAWalkThatIsNotSound)
{
    TestHost host({ .files = Files::InMemory });
    for (const char* name : { "/f/a", "/f/b", "/f/c" })
        host.FileSystem().AddFile(name, "");
    const VX3Host& table = *host.Table();
    host.Faults().Fail(FailClass::NextEntry, 2);
    VX3FolderWalk* walk = table.folder->startWalk(core::Path("/f").Get(), 0);
    VX3FolderEntry entry = {};
    EXPECT_TRUE(table.folder->nextEntry(walk, &entry));
    EXPECT_TRUE(table.folder->walkIsSound(walk));
    EXPECT_FALSE(table.folder->nextEntry(walk, &entry));
    EXPECT_FALSE(table.folder->nextEntry(walk, &entry));
    EXPECT_FALSE(table.folder->walkIsSound(walk));
    table.folder->endWalk(walk);
    table.text->destruct(&entry.name);
    EXPECT_EQ(host.ExpectClean(), "");
}

TEST(FaultPlan, FailsExactlyOneOfManyThreads)
{
    TestHost host;
    const VX3Host& table = *host.Table();
    constexpr int threadCount = 4;
    constexpr int perThread = 100;
    host.Faults().Fail(FailClass::Memory, threadCount * perThread / 2);
    std::atomic<int> failures = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < threadCount; ++i) {
        threads.emplace_back([&] {
            for (int k = 0; k < perThread; ++k) {
                void* block = table.memory->alloc(8, 1, "a.cpp", 0);
                failures += !block;
                table.memory->free(block);
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(failures, 1);
    EXPECT_EQ(host.Faults().CallsOf(FailClass::Memory), threadCount * perThread);
}

} // namespace vx3::testing
