// Libraries of very many items, on a real disk.
#include <filesystem>
#include <fstream>
#include <sstream>

#include <pthread.h>

#include "itemfixture.h"
#include "support/campaign.h"

namespace vx3::tests {
namespace {

using browser::BrowserDatabase;

class LargeLibraries : public ModuleTest
{
protected:
    ~LargeLibraries() override
    {
        browser::CloseAll(false, false);
        browser::FreeItemCompressor();
        browser::ForgetCurrentLanguage();
    }

    std::string FileName() const { return testHost.Folder() + "/a.libvx"; }
    BrowserDatabase& Make() { return *browser::MakeLibrary(PathOf(FileName()), browser::String(), 0); }
    void Put(const std::string& bytes) { std::ofstream(FileName(), std::ios::binary) << bytes; }
    std::string Bytes()
    {
        std::ostringstream bytes;
        bytes << std::ifstream(FileName(), std::ios::binary).rdbuf();
        return bytes.str();
    }
    static FileBytes Start()
    {
        FileBytes bytes;
        bytes.Head().Chunk("difm", 0, InfoImage("preset://a.libvx"));
        return bytes;
    }
    // Loads and closes on a stack that no recursion over the items would get by with.
    int32_t LoadOnSmallStack()
    {
        constexpr size_t stackBytes = 256 << 10;
        pthread_attr_t attributes;
        pthread_attr_init(&attributes);
        pthread_attr_setstacksize(&attributes, stackBytes);
        pthread_t thread;
        const auto run = [](void* test) -> void* {
            static_cast<LargeLibraries*>(test)->LoadAndClose();
            return nullptr;
        };
        EXPECT_EQ(pthread_create(&thread, &attributes, run, this), 0);
        pthread_join(thread, nullptr);
        pthread_attr_destroy(&attributes);
        return loadedItems;
    }

private:
    void LoadAndClose()
    {
        BrowserDatabase& library = Make();
        EXPECT_TRUE(library.Load());
        EXPECT_FALSE(library.IsDamaged());
        loadedItems = library.CountItems();
        browser::CloseLibrary(&library);
    }

    int32_t loadedItems = -1;
};

// A search tree without balance would be a list of them.
TEST_F(LargeLibraries, HashesThatRiseFromItemToItem)
{
    constexpr int32_t count = 200000;
    FileBytes file = Start();
    for (int32_t id = 1; id <= count; ++id) {
        browser::BaseContainer item, place;
        place.SetText(browser::PathText, TextOf("x/" + std::to_string(id)));
        place.SetInt32(browser::PathHashValue, id * 1000);
        item.SetContainer(browser::ItemPath, place);
        file.Chunk("ditm", id, ImageOf(item));
    }
    Put(file.End().bytes);
    EXPECT_EQ(LoadOnSmallStack(), count);
}

// They all have one hash, and are one entry behind the other of one node.
TEST_F(LargeLibraries, ItemsWithoutAPath)
{
    constexpr int32_t count = 100000;
    FileBytes file = Start();
    const std::string nothing = ImageOf(browser::BaseContainer());
    for (int32_t id = 1; id <= count; ++id)
        file.Chunk("ditm", id, nothing);
    Put(file.End().bytes);
    EXPECT_EQ(LoadOnSmallStack(), count);
}

TEST_F(LargeLibraries, WrittenAgainTheyAreTheSameToTheByte)
{
    const int count = InFull(100000, 5000);
    BrowserDatabase& made = Make();
    ASSERT_TRUE(made.CreateEmptyFile() && made.SetLibraryName(TextOf("preset://a.libvx")) && made.HoldFile());
    for (int i = 0; i < count; ++i) {
        const Item item(made.OpenItem(TextOf("preset://a.libvx/folder " + std::to_string(i % 7) + "/item " + std::to_string(i))));
        ASSERT_TRUE(item && item->SetType(1000 + i % 5, i % 3) && item->SetName(TextOf("Item \u00E9 " + std::to_string(i))));
        ASSERT_TRUE(i % 2 || SetData(*item, std::string(static_cast<size_t>(i % 100), 'd'), true));
        ASSERT_TRUE(i % 3 || item->AddPreviewBytes("preview", 7, { i % 4, 8, 8, 1, { 2026, 11, 23, 8, 30, 0 } }));
    }
    ASSERT_TRUE(made.Flush() && made.ReleaseFile() && made.Compact());
    browser::CloseLibrary(&made);
    const std::string first = Bytes();
    BrowserDatabase& again = Make();
    ASSERT_TRUE(again.Load());
    EXPECT_EQ(again.CountItems(), count);
    ASSERT_TRUE(again.Compact());
    browser::CloseLibrary(&again);
    EXPECT_TRUE(Bytes() == first);
}

} // namespace
} // namespace vx3::tests
