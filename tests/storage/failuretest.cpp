// Each call of a class fails in turn, once and from there on, in four lives of a library: what
// memory has afterwards is what an ordinary flush brings to disk, and what nobody touched is whole.
#include "libraryfixture.h"
#include "libraryitems.h"
#include "support/campaign.h"

namespace {

using namespace vx3::tests;
using browser::AllowRewrite;
using browser::BrowserDatabase;
using browser::BrowserDatabaseItem;
using browser::Force;
using vx3::testing::FailClass;
using vx3::testing::Failing;
using vx3::testing::Manner;

constexpr const char* name = "preset://a.libvx";

// What a library is used for, and how its file is before.
enum class Life { Change, MakeNew, Repair, ShareName };
constexpr Life lives[] = { Life::Change, Life::MakeNew, Life::Repair, Life::ShareName };

class LibraryFailures : public LibraryTest
{
protected:
    using Contents = std::map<std::string, std::string>; // by path
    using Libraries = std::vector<BrowserDatabase*>;

    static browser::String PathIn(BrowserDatabase& library, const std::string& item)
    {
        return TextOf(Utf8(library.GetLibraryName()) + "/" + item);
    }
    static bool Store(BrowserDatabase& library, const std::string& item, const std::string& content)
    {
        BrowserDatabaseItem* handle = library.OpenItem(PathIn(library, item));
        if (!handle)
            return false;
        const bool isStored = handle->SetType(1000) && handle->SetData(content.data(), static_cast<int64_t>(content.size()), true);
        handle->Release();
        return isStored;
    }

    static std::vector<const char*> FilesOf(Life life)
    {
        if (life == Life::ShareName)
            return { usualFile, "/lib/b.libvx" };
        return { usualFile };
    }
    void Prepare(Life life)
    {
        testHost.FileSystem().Remove("/lib");
        testHost.FileSystem().AddFolder("/lib");
        if (life == Life::MakeNew)
            return;
        for (const char* file : FilesOf(life)) {
            BrowserDatabase& library = Make(file);
            EXPECT_TRUE(library.SetLibraryName(TextOf(name)));
            for (const char* item : { "kept", "changed", "moved", "deleted" })
                EXPECT_TRUE(Store(library, item, std::string(200, item[0])));
            EXPECT_TRUE(library.Flush(Force::Yes));
            browser::CloseLibrary(&library);
        }
        if (life == Life::Repair)
            Put(FileBytes().Raw(Bytes().substr(0, Bytes().size() - 16)).Header("ditm", 9, 60).Raw("cut").bytes);
        Put("an old one", "/lib/a.libvx.bak");
    }

    // Whatever comes of it; true if all was done.
    static bool Use(BrowserDatabase& library)
    {
        bool isDone = Store(library, "changed", std::string(300, 'C')) && Store(library, "new", std::string(100, 'n'));
        isDone = library.MoveItem(PathIn(library, "moved"), PathIn(library, "there")) && isDone;
        isDone = library.DeleteItem(PathIn(library, "deleted")) && isDone;
        isDone = library.Flush(Force::Yes) && isDone;
        isDone = library.SetCategory(TextOf("wood")) && isDone;
        isDone = library.Compact() && isDone;
        isDone = library.Compact() && isDone;
        return Store(library, "last", std::string(50, 'l')) && !library.IsDirty() && isDone;
    }
    static bool Begin(BrowserDatabase& library)
    {
        return library.SetLibraryName(TextOf(name)) && Store(library, "moved", "m") && Store(library, "deleted", "d") && library.Flush();
    }
    // The libraries that could be opened.
    Libraries Live(Life life, bool& isDone)
    {
        Libraries libraries;
        for (const char* file : FilesOf(life)) {
            BrowserDatabase* library = browser::MakeLibrary(PathOf(file), browser::String(), 0);
            const bool isOpen = library && (life == Life::MakeNew ? Begin(*library) : library->Load());
            isDone = isOpen && isDone;
            if (isOpen || (library && life == Life::MakeNew))
                libraries.push_back(library);
            else
                browser::CloseLibrary(library);
            if (isOpen && life == Life::ShareName)
                library->ClearReadOnly();
        }
        for (BrowserDatabase* library : libraries)
            isDone = Use(*library) && isDone;
        return libraries;
    }

    // A record whose chunk was cut stays empty, and has no path.
    static Contents ContentsOf(BrowserDatabase& library)
    {
        Contents contents;
        ForEachItem(library, [&](BrowserDatabaseItem& item) {
            if (const std::string path = Utf8(item.GetPath()); !path.empty())
                contents[path] = ContentOf(item);
        });
        return contents;
    }
    static bool HasItem(const Contents& contents, const std::string& item, const std::string& content)
    {
        return std::any_of(contents.begin(), contents.end(),
                           [&](const auto& pair) { return pair.first.ends_with("/" + item) && pair.second == content; });
    }
    void Check(const Libraries& libraries, Life life)
    {
        std::map<std::string, Contents> written;
        for (BrowserDatabase* library : libraries) {
            if (library->Flush(Force::Yes, AllowRewrite::Yes))
                written.emplace(NativeOf(library->GetFilePath()), ContentsOf(*library));
            browser::CloseLibrary(library);
        }
        for (const char* file : FilesOf(life)) {
            if (life == Life::MakeNew && !written.count(file))
                continue;
            BrowserDatabase& again = Open(file);
            const Contents onDisk = ContentsOf(again); // more, if the index had no memory for an item
            for (const auto& [path, content] : written.count(file) ? written.at(file) : Contents())
                EXPECT_TRUE(onDisk.count(path) && onDisk.at(path) == content) << path;
            EXPECT_TRUE(life == Life::MakeNew || HasItem(onDisk, "kept", std::string(200, 'k'))) << file;
            EXPECT_FALSE(written.count(file) && again.IsDamaged()) << file;
            browser::CloseLibrary(&again);
        }
    }

    // How many runs had a failure.
    int Run(Life life, FailClass kind, Failing failing, Manner manner)
    {
        vx3::testing::FaultPlan& faults = testHost.Faults();
        for (int nth = 1;; ++nth) {
            Prepare(life);
            faults.Fail(kind, nth, failing, manner);
            bool isDone = true;
            const Libraries libraries = Live(life, isDone);
            const bool hasFailed = faults.FailuresOf(kind) > 0;
            faults.Clear();
            SCOPED_TRACE("life " + std::to_string(static_cast<int>(life)) + ", call " + std::to_string(nth)
                         + (failing == Failing::Once ? "" : " and on"));
            Check(libraries, life);
            if (!hasFailed || HasFailure())
                return nth - 1;
        }
    }
    void RunAll(FailClass kind, int least, Manner manner = Manner::Refused)
    {
        int runs = 0;
        for (const Life life : lives)
            for (const Failing failing : { Failing::Once, Failing::FromThereOn })
                if (!HasFailure())
                    runs += Run(life, kind, failing, manner);
        EXPECT_GE(runs, least);
        allRuns += runs;
        RecordProperty("runs", allRuns);
    }

    int allRuns = 0;
};

TEST_F(LibraryFailures, OfMemory)
{
    RunAll(FailClass::Memory, 1000);
}

TEST_F(LibraryFailures, OfOpening)
{
    RunAll(FailClass::Open, 50);
}

TEST_F(LibraryFailures, OfReading)
{
    RunAll(FailClass::Read, 200);
    RunAll(FailClass::Read, 200, Manner::Halfway);
}

TEST_F(LibraryFailures, OfWriting)
{
    RunAll(FailClass::Write, 300);
    RunAll(FailClass::Write, 300, Manner::Halfway);
    RunAll(FailClass::Write, 300, Manner::Done);
}

TEST_F(LibraryFailures, OfSeeking)
{
    RunAll(FailClass::Seek, 200);
}

TEST_F(LibraryFailures, OfAskingForTheFile)
{
    RunAll(FailClass::Inspect, 40);
}

TEST_F(LibraryFailures, OfRenaming)
{
    RunAll(FailClass::Rename, 20);
    RunAll(FailClass::Rename, 20, Manner::Done);
}

TEST_F(LibraryFailures, OfRemoving)
{
    RunAll(FailClass::Remove, 10);
    RunAll(FailClass::Remove, 10, Manner::Done);
}

TEST_F(LibraryFailures, OfCopying)
{
    RunAll(FailClass::Copy, 2);
    RunAll(FailClass::Copy, 2, Manner::Done);
}

// A disk that is full behind each number of bytes.
TEST_F(LibraryFailures, OfRoom)
{
    const int64_t step = InFull(1, 41);
    int runs = 0;
    for (const Life life : lives) {
        bool isDone = false;
        for (int64_t room = 0; !isDone && !HasFailure(); room += step, ++runs) {
            Prepare(life);
            testHost.FileSystem().SetFreeBytes(room);
            isDone = true;
            const Libraries libraries = Live(life, isDone);
            testHost.FileSystem().SetFreeBytes(-1);
            SCOPED_TRACE("life " + std::to_string(static_cast<int>(life)) + ", room for " + std::to_string(room));
            Check(libraries, life);
        }
    }
    RecordProperty("runs", runs);
    EXPECT_GT(runs, InFull(4000, 100));
}

} // namespace
