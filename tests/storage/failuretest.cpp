// Each call of a class fails in turn, once and from there on, in the life of a library: what
// memory has afterwards is what an ordinary flush brings to disk, and what nobody touched is whole.
#include "libraryfixture.h"

#include <map>

#include "storage/browserdatabaseitem.h"

namespace {

using namespace vx3::tests;
using browser::AllowRewrite;
using browser::BrowserDatabase;
using browser::BrowserDatabaseItem;
using browser::Force;
using vx3::testing::FailClass;
using vx3::testing::Failing;

class LibraryFailures : public LibraryTest
{
protected:
    using Contents = std::map<std::string, std::string>;

    static browser::String Path(const std::string& name) { return TextOf("preset://a.libvx/" + name); }
    static bool Store(BrowserDatabase& library, const std::string& name, const std::string& content)
    {
        BrowserDatabaseItem* item = library.OpenItem(Path(name));
        if (!item)
            return false;
        const bool isStored = item->SetType(1000) && item->SetData(content.data(), static_cast<int64_t>(content.size()), true);
        item->Release();
        return isStored;
    }
    void Prepare()
    {
        testHost.FileSystem().Remove("/lib");
        testHost.FileSystem().AddFolder("/lib");
        BrowserDatabase& library = Make();
        EXPECT_TRUE(library.SetLibraryName(TextOf("preset://a.libvx")));
        for (const char* name : { "kept", "changed", "moved", "deleted" })
            EXPECT_TRUE(Store(library, name, std::string(200, name[0])));
        EXPECT_TRUE(library.Flush(Force::Yes));
        browser::CloseLibrary(&library);
    }
    // Whatever comes of it.
    static void Use(BrowserDatabase& library)
    {
        (void)Store(library, "changed", std::string(300, 'C'));
        (void)Store(library, "new", std::string(100, 'n'));
        (void)library.MoveItem(Path("moved"), Path("there"));
        (void)library.DeleteItem(Path("deleted"));
        (void)library.Flush(Force::Yes);
        (void)library.SetCategory(TextOf("wood"));
        (void)library.Compact();
        (void)library.Compact();
        (void)Store(library, "last", std::string(50, 'l'));
    }
    static Contents ContentsOf()
    {
        Contents contents;
        for (const char* name : { "kept", "changed", "moved", "there", "deleted", "new", "last" }) {
            BrowserDatabaseItem* item = browser::FindItem(Path(name));
            browser::Block data;
            if (item)
                contents[name] =
                    item->GetData(data) ? std::string(reinterpret_cast<const char*>(data.Bytes()), static_cast<size_t>(data.Size())) : "";
            delete item;
        }
        return contents;
    }
    void Check(BrowserDatabase& library, int64_t nth)
    {
        const bool isWritten = library.Flush(Force::Yes, AllowRewrite::Yes);
        const Contents inMemory = ContentsOf();
        browser::CloseLibrary(&library);
        BrowserDatabase& again = Open();
        const Contents onDisk = ContentsOf(); // more, if the index had no memory for an item
        for (const auto& [name, content] : inMemory)
            EXPECT_TRUE(!isWritten || (onDisk.count(name) && onDisk.at(name) == content)) << name << " " << nth;
        EXPECT_EQ(onDisk.count("kept") ? onDisk.at("kept") : "none", std::string(200, 'k')) << nth;
        EXPECT_FALSE(isWritten && again.IsDamaged()) << nth;
        browser::CloseLibrary(&again);
    }

    // How many runs had a failure.
    int Run(FailClass kind, Failing failing)
    {
        vx3::testing::FaultPlan& faults = testHost.Faults();
        for (int nth = 1;; ++nth) {
            Prepare();
            faults.Fail(kind, nth, failing);
            BrowserDatabase* library = browser::MakeLibrary(PathOf(usualFile), browser::String(), 0);
            const bool isLoaded = library && library->Load();
            if (isLoaded)
                Use(*library);
            const bool hasFailed = faults.FailuresOf(kind) > 0;
            faults.Clear();
            if (isLoaded)
                Check(*library, nth);
            else
                browser::CloseLibrary(library);
            if (!hasFailed || HasFailure())
                return nth - 1;
        }
    }
    void RunBoth(FailClass kind, int least)
    {
        const int once = Run(kind, Failing::Once);
        const int fromThereOn = HasFailure() ? 0 : Run(kind, Failing::FromThereOn);
        RecordProperty("runs", once + fromThereOn);
        EXPECT_GT(once, least);
    }
};

TEST_F(LibraryFailures, OfMemory)
{
    RunBoth(FailClass::Memory, 150);
}

TEST_F(LibraryFailures, OfOpening)
{
    RunBoth(FailClass::Open, 5);
}

TEST_F(LibraryFailures, OfReading)
{
    RunBoth(FailClass::Read, 20);
}

TEST_F(LibraryFailures, OfWriting)
{
    RunBoth(FailClass::Write, 30);
}

TEST_F(LibraryFailures, OfAskingForTheFile)
{
    RunBoth(FailClass::Inspect, 5);
}

TEST_F(LibraryFailures, OfRenaming)
{
    RunBoth(FailClass::Rename, 1);
}

TEST_F(LibraryFailures, OfRemoving)
{
    Put("an old one", "/lib/a.libvx.bak");
    RunBoth(FailClass::Remove, 0);
}

} // namespace
