// Each misuse of the table must give its sentence and no other; good use must give none.
#include <gtest/gtest.h>

#include <cstddef>
#include <functional>
#include <thread>

#include "core/values.h"
#include "testing/testhost.h"

namespace vx3::testing {

namespace {

void Elsewhere(const std::function<void()>& body)
{
    std::thread(body).join();
}

struct Misuse {
    const char* name;
    std::vector<std::string> expected;
    std::function<void(const VX3Host&, CheckedTable&)> body;
};

core::Path NoSuchFile()
{
    return core::Path("/no/such/file");
}

VX3BinaryFile* FreedFile(const VX3Host& host)
{
    VX3BinaryFile* file = host.file->create();
    host.file->free(file);
    return file;
}

const std::vector<Misuse>& ArgumentMisuses()
{
    static const std::vector<Misuse> misuses = {
        { "NullText",
          { "text.copy: argument 2 is none" },
          [](const VX3Host& host, auto&) { EXPECT_EQ(host.text->copy(core::Text().Get(), nullptr), 0); } },
        { "NullBytesWithALength",
          { "text.set: argument 2 is none" },
          [](const VX3Host& host, auto&) { host.text->set(core::Text().Get(), nullptr, -1, VX3_ENCODING_UTF8); } },
        { "NegativeCount",
          { "text.erase: argument 3 is below 0" },
          [](const VX3Host& host, auto&) { host.text->erase(core::Text().Get(), 0, -1); } },
        { "UnknownEncoding",
          { "text.set: argument 4 has the unknown value 7" },
          [](const VX3Host& host, auto&) { host.text->set(core::Text().Get(), "a", 1, 7); } },
        { "UnknownWalkBits",
          { "folder.startWalk: argument 2 has the unknown value 8" },
          [](const VX3Host& host, auto&) { EXPECT_EQ(host.folder->startWalk(NoSuchFile().Get(), 8), nullptr); } },
    };
    return misuses;
}

const std::vector<Misuse>& ObjectMisuses()
{
    static const std::vector<Misuse> misuses = {
        { "ForeignBlock",
          { "memory.free: the memory block was never given or is freed already" },
          [](const VX3Host& host, auto&) {
              int local = 0;
              host.memory->free(&local);
          } },
        { "BlockFreedTwice",
          { "memory.free: the memory block was never given or is freed already" },
          [](const VX3Host& host, auto&) {
              void* block = host.memory->alloc(8, 1, "a.cpp", 0);
              host.memory->free(block);
              host.memory->free(block);
          } },
        { "FileAfterFree",
          { "file.length: the binary file was never given or is freed already" },
          [](const VX3Host& host, auto&) { EXPECT_EQ(host.file->length(FreedFile(host)), -1); } },
        { "WalkAfterEnd",
          { "folder.nextEntry: the folder walk was never given or is freed already" },
          [](const VX3Host& host, auto&) {
              VX3FolderWalk* walk = host.folder->startWalk(core::Path("/").Get(), 0);
              host.folder->endWalk(walk);
              VX3FolderEntry entry = {};
              host.folder->nextEntry(walk, &entry);
          } },
        { "WatchEndedTwice",
          { "folder.unwatch: the folder watch was never given or is freed already" },
          [](const VX3Host& host, auto&) {
              VX3FolderWatch* watch = host.folder->watch(
                  core::Path("/").Get(), [](void*) {}, nullptr);
              host.folder->unwatch(watch);
              host.folder->unwatch(watch);
          } },
        { "BlockTakenForABitmap",
          { "bitmap.width: the bitmap was never given or is freed already" },
          [](const VX3Host& host, auto&) {
              void* block = host.memory->alloc(64, 1, "a.cpp", 1);
              host.bitmap->width(static_cast<VX3Bitmap*>(block));
              host.memory->free(block);
          } },
        { "NoneWhereAnObjectMustBe",
          { "folder.endWalk: the folder walk is none" },
          [](const VX3Host& host, auto&) { host.folder->endWalk(nullptr); } },
        { "StopOfTheModule",
          { "console.criticalStop: the module stopped at tree.cpp:12" },
          [](const VX3Host& host, auto&) { host.console->criticalStop("tree.cpp", 12); } },
    };
    return misuses;
}

const std::vector<Misuse>& ThreadMisuses()
{
    static const std::vector<Misuse> misuses = {
        { "GuiCallFromAThread",
          { "message.documentChanged: called by another thread than the main one" },
          [](const VX3Host& host, auto&) { Elsewhere([&] { host.message->documentChanged(); }); } },
        { "PublishInAMessage",
          { "registry.withdraw: called outside the actions 2 and 3" },
          [](const VX3Host& host, CheckedTable& checks) {
              checks.EnterAction(VX3_ACTION_START);
              host.registry->withdraw(1);
              checks.EnterAction(VX3_ACTION_MESSAGE);
              host.registry->withdraw(1);
              checks.LeaveAction();
          } },
        { "CallAfterTheEnd",
          { "run.clock: called after the end", "text.view: called after the end" },
          [](const VX3Host& host, CheckedTable& checks) {
              const auto cached = host.text->view;
              checks.CloseWindow();
              host.run->clock();
              int32_t length = 0;
              EXPECT_NE(cached(core::Text().Get(), &length), nullptr);
          } },
    };
    return misuses;
}

const std::vector<Misuse>& LockMisuses()
{
    static const std::vector<Misuse> misuses = {
        { "WrongOrder",
          { "lock.lock32: rank 2 is taken while rank 3 is held" },
          [](const VX3Host& host, auto&) {
              uint32_t outer = 0, inner = 0;
              host.lock->lock32(&inner, 3);
              host.lock->lock32(&outer, 2);
              host.lock->unlock32(&outer);
              host.lock->unlock32(&inner);
          } },
        { "WaitingForAnOuterLockAfterATry",
          { "lock.lock64: rank 1 is taken while rank 1 is held" },
          [](const VX3Host& host, auto&) {
              uint64_t first = 0, second = 0;
              EXPECT_TRUE(host.lock->try64(&first, 1));
              host.lock->lock64(&second, 1);
              host.lock->unlock64(&second);
              host.lock->unlock64(&first);
          } },
        { "LockedTwice",
          { "lock.lockExclusive: this thread holds the lock already" },
          [](const VX3Host& host, auto&) {
              uint32_t word = 0;
              host.lock->lockExclusive(&word, 1);
              host.lock->lockExclusive(&word, 1);
              host.lock->unlockExclusive(&word);
              host.lock->unlockExclusive(&word);
              EXPECT_EQ(word, 0u);
          } },
        { "UnlockOfAFreeLock",
          { "lock.unlock32: this thread does not hold the lock" },
          [](const VX3Host& host, auto&) {
              uint32_t word = 0;
              host.lock->unlock32(&word);
          } },
        { "UnlockByAnotherThread",
          { "lock.unlock32: this thread does not hold the lock" },
          [](const VX3Host& host, auto&) {
              uint32_t word = 0;
              host.lock->lock32(&word, 1);
              Elsewhere([&] { host.lock->unlock32(&word); });
              host.lock->unlock32(&word);
          } },
        { "UnlockOfAnotherForm",
          { "lock.unlockShared: the lock was taken by a call of another form" },
          [](const VX3Host& host, auto&) {
              uint32_t word = 0;
              host.lock->lockExclusive(&word, 1);
              host.lock->unlockShared(&word);
              host.lock->unlockExclusive(&word);
          } },
    };
    return misuses;
}

const std::vector<Misuse>& HeldLockMisuses()
{
    static const std::vector<Misuse> misuses = {
        { "NoRank",
          { "lock.lock32: argument 2 is no rank" },
          [](const VX3Host& host, auto&) {
              uint32_t word = 0;
              host.lock->lock32(&word, 0);
          } },
        { "FileCallUnderALinkLock",
          { "folder.exists: may wait while a 64-bit lock is held" },
          [](const VX3Host& host, auto&) {
              uint64_t word = 0;
              host.lock->lock64(&word, 1);
              host.folder->exists(NoSuchFile().Get());
              host.lock->unlock64(&word);
          } },
        { "ProbeUnderAnyLock",
          { "folder.probeVolume: may take seconds while a lock is held" },
          [](const VX3Host& host, auto&) {
              uint32_t word = 0;
              host.lock->lock32(&word, 1);
              host.folder->exists(NoSuchFile().Get()); // allowed under a 32-bit lock
              host.folder->probeVolume(NoSuchFile().Get());
              host.lock->unlock32(&word);
          } },
        { "EntryReturnsWithALock",
          { "vx3_main: a lock is held when the entry function returns" },
          [](const VX3Host& host, CheckedTable& checks) {
              static uint32_t word = 0;
              checks.EnterAction(VX3_ACTION_MESSAGE);
              host.lock->lock32(&word, 1);
              checks.LeaveAction();
          } },
    };
    return misuses;
}

void RunMisuses(const std::vector<Misuse>& misuses)
{
    for (const Misuse& misuse : misuses) {
        SCOPED_TRACE(misuse.name);
        TestHost host;
        misuse.body(*host.Table(), host.Checked());
        EXPECT_EQ(host.Checked().TakeViolations(), misuse.expected);
        EXPECT_EQ(host.ExpectClean(), "");
    }
}

} // namespace

TEST(CheckedTable, TellsWrongArguments)
{
    RunMisuses(ArgumentMisuses());
    RunMisuses(ObjectMisuses());
}

TEST(CheckedTable, TellsWrongThreadsAndTimes)
{
    RunMisuses(ThreadMisuses());
}

TEST(CheckedTable, TellsWrongUseOfLocks)
{
    RunMisuses(LockMisuses());
    RunMisuses(HeldLockMisuses());
}

TEST(CheckedTable, TellsCallsInFrontOfTheWindow)
{
    TestHost host({ .calling = Calling::InModules });
    host.Table()->run->clock();
    EXPECT_EQ(host.ExpectClean(), "run.clock: called before the first entry call\n");
}

namespace {

std::function<void()> insideRead;

// A core host's table whose read calls back, so that a second call can be made inside.
VX3Host TableWithSlowRead(const VX3Host& base, VX3FileServices& files)
{
    files = *base.file;
    files.read = [](VX3BinaryFile*, void*, int64_t) -> int64_t {
        insideRead();
        return 0;
    };
    VX3Host table = base;
    table.file = &files;
    return table;
}

} // namespace

TEST(CheckedTable, TellsTwoCallsOnOneFile)
{
    TestHost host;
    VX3FileServices files;
    const VX3Host slow = TableWithSlowRead(*host.PlainTable(), files);
    CheckedTable checks(&slow);
    checks.OpenWindow();
    const VX3Host& table = *checks.Table();
    VX3BinaryFile* file = table.file->create();
    char byte = 0;
    insideRead = [&] {
        table.file->position(file); // the owner itself, further down in one call
        Elsewhere([&] { table.file->position(file); });
        Elsewhere([&] { table.file->free(file); });
    };
    table.file->read(file, &byte, 1);
    table.file->free(file);
    const std::vector<std::string> expected = { "file.position: the binary file is in another call",
                                                "file.free: the binary file is in another call" };
    EXPECT_EQ(checks.TakeViolations(), expected);
    EXPECT_EQ(checks.LeakReport(), "");
}

namespace {

uint32_t lockOfTheThread = 0;

const VX3ThreadTable forgetfulThread = { nullptr, nullptr,
                                         [](void* host) { static_cast<const VX3Host*>(host)->lock->lock32(&lockOfTheThread, 1); },
                                         [](void*) { return "forgetful"; } };

} // namespace

TEST(CheckedTable, TellsAThreadThatEndsWithALock)
{
    TestHost host;
    VX3Host table = *host.Table();
    VX3Thread* thread = table.thread->create(&table, &forgetfulThread);
    ASSERT_TRUE(table.thread->start(thread, 1, VX3_PRIORITY_NORMAL));
    table.thread->free(thread);
    EXPECT_EQ(host.ExpectClean(), "thread: \"forgetful\" ended with a lock held\n");
}

TEST(CheckedTable, ReplacesEveryFunctionOfEverySection)
{
    TestHost host;
    const VX3Host& wrapped = *host.Table();
    const VX3Host& base = *host.Core().Table();
    constexpr std::size_t firstSection = offsetof(VX3Host, memory) / sizeof(void*);
    constexpr std::size_t lastSection = offsetof(VX3Host, run) / sizeof(void*);
    constexpr std::size_t functionCounts[] = { 2, 24, 20, 26, 4, 16, 4, 19, 16, 1, 14, 9, 3, 5, 4, 8, 7 };
    static_assert(std::size(functionCounts) == lastSection - firstSection + 1);
    const auto* wrappedSections = reinterpret_cast<void* const* const*>(&wrapped);
    const auto* baseSections = reinterpret_cast<void* const* const*>(&base);
    for (std::size_t section = firstSection; section <= lastSection; ++section) {
        for (std::size_t i = 0; i < functionCounts[section - firstSection]; ++i)
            EXPECT_NE(wrappedSections[section][i], baseSections[section][i]) << section << " " << i;
    }
}

TEST(CheckedTable, NamesWhatIsNotGivenBack)
{
    TestHost host;
    const VX3Host& table = *host.Table();
    void* first = table.memory->alloc(10, 7, "one.cpp", 0);
    void* second = table.memory->alloc(20, 7, "one.cpp", 0);
    VX3Semaphore* semaphore = table.lock->createSemaphore(1);
    VX3String text = {};
    table.text->set(&text, "left", -1, VX3_ENCODING_PLAIN);
    EXPECT_EQ(host.ExpectClean(),
              "lock.createSemaphore: 1 of kind semaphore not given back\n"
              "one.cpp:7: 2 of kind memory block not given back, 30 bytes\n"
              "1 texts not destructed\n");
    table.text->destruct(&text);
    table.lock->freeSemaphore(semaphore);
    table.memory->free(first);
    table.memory->free(second);
    EXPECT_EQ(host.ExpectClean(), "");
}

TEST(CheckedTable, KnowsBlocksThatOtherSectionsGive)
{
    TestHost host;
    const VX3Host& table = *host.Table();
    VX3Compressor* compressor = table.compressor->create(VX3_COMPRESSOR_DEFLATE);
    void* packed = nullptr;
    int64_t length = 0;
    ASSERT_TRUE(table.compressor->compress(compressor, "aaaaaaaa", 8, 1, &packed, &length));
    table.compressor->free(compressor);
    EXPECT_NE(host.Checked().LeakReport().find("compressor.compress: 1 of kind memory block"), std::string::npos);
    table.memory->free(packed);
    EXPECT_EQ(host.ExpectClean(), "");
}

// Threads that work side by side through all wrappers, each on its own objects and all
// on one lock: nothing is to be told, neither by the checks nor by a sanitizer.
TEST(CheckedTable, TakesManyThreadsAtOnce)
{
    constexpr int threadCount = 8;
    constexpr int rounds = 500;
    for (const Checks depth : { Checks::Full, Checks::Light }) {
        TestHost host({ .files = Files::InMemory, .checks = depth });
        const VX3Host& table = *host.Table();
        uint32_t word = 0;
        int64_t sum = 0; // under word
        std::vector<std::thread> threads;
        for (int i = 0; i < threadCount; ++i) {
            threads.emplace_back([&] {
                for (int round = 0; round < rounds; ++round) {
                    void* block = table.memory->alloc(16, 1, "storm.cpp", 1);
                    VX3BinaryFile* file = table.file->create();
                    table.lock->lock32(&word, 1);
                    ++sum;
                    table.lock->unlock32(&word);
                    table.file->free(file);
                    table.memory->free(block);
                }
            });
        }
        for (std::thread& thread : threads)
            thread.join();
        EXPECT_EQ(sum, threadCount * rounds);
        EXPECT_EQ(host.ExpectClean(), "");
    }
}

} // namespace vx3::testing
