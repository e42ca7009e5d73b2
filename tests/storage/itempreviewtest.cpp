// Previews: stored, chosen, shared and forgotten.

#include "itemfixture.h"
#include "storage/itempayloads.h"

namespace {

using namespace vx3::tests;
using browser::BrowserDatabase;
using browser::PreviewInfo;
using browser::PreviewRange;

class ItemPreviews : public ItemTest
{
protected:
    static bool Add(browser::BrowserDatabaseItem& item, const PreviewInfo& info)
    {
        const std::string bytes = std::to_string(info.number) + " no picture";
        return item.AddPreviewBytes(bytes.data(), static_cast<int64_t>(bytes.size()), info);
    }
    static std::string BytesOfPreview(const browser::BrowserDatabaseItem& item, int32_t number)
    {
        browser::Block bytes;
        return item.GetPreviewBytes(number, bytes) ? StringOf(bytes) : "none";
    }
};

TEST_F(ItemPreviews, ComeBackAsPictures)
{
    const VX3FileDate date = { 2026, 5, 4, 3, 2, 1 };
    for (const bool isOutside : { false, true }) {
        BrowserDatabase* library = &MakeEmpty(usualFile, isOutside ? uint32_t(browser::LibraryExternal) : 0);
        {
            const Item item = OpenItem(*library, "x/one");
            EXPECT_TRUE(item->AddPreview(Grey(50, 20, 10).Get(), 1, 1, date, false));
            EXPECT_TRUE(item->AddPreview(Grey(60, 8, 8, true).Get(), 4, 4, date, true));
            EXPECT_FALSE(item->AddPreview(nullptr, 5, 1, date, false));
            EXPECT_FALSE(Add(*item, { -1, 1, 1, 1, {} }));
        }
        EXPECT_EQ(testHost.FileSystem().Exists("/lib/image/1_1.jpg"), isOutside);
        EXPECT_EQ(testHost.FileSystem().Exists("/lib/image/1_4.jpg"), isOutside) << "the name is the same for all formats";
        ASSERT_TRUE(library->Flush());
        browser::CloseLibrary(library);
        library = &Make(usualFile, isOutside ? uint32_t(browser::LibraryExternal) : 0);
        ASSERT_TRUE(library->Load());
        Item item = Find("x/one"), copy = OpenItem(*library, "x/two");
        PreviewInfo info;
        ASSERT_TRUE(item->PreviewAt(0, info));
        EXPECT_EQ(info.number, 1);
        EXPECT_EQ(info.width, 20);
        EXPECT_EQ(info.height, 10);
        EXPECT_EQ(browser::CompareDates(info.date, date), 0);
        EXPECT_FALSE(item->PreviewAt(2, info));
        ASSERT_TRUE(copy->CopyPreviewsFrom(*item));
        for (browser::BrowserDatabaseItem* read : { item.get(), copy.get() }) {
            EXPECT_NEAR(GreyOf(read->GetPreview(1).Get()), 50, 2) << "JPEG";
            const browser::HostBitmap exact = read->GetPreview(4);
            EXPECT_EQ(GreyOf(exact.Get()), 60);
            EXPECT_TRUE(browser::host->bitmap->hasAlpha(exact.Get()));
            EXPECT_FALSE(read->GetPreview(2));
        }
        ASSERT_TRUE(item->DeletePreview(4) && !item->DeletePreview(4));
        EXPECT_FALSE(item->GetPreview(4)) << "also forgotten";
        ASSERT_TRUE(copy->DeleteAllPreviews());
        EXPECT_FALSE(copy->PreviewAt(0, info));
        EXPECT_FALSE(testHost.FileSystem().Exists("/lib/image/2_1.jpg"));
        EXPECT_EQ(testHost.FileSystem().Exists("/lib/image/1_1.jpg"), isOutside);
        item.reset();
        copy.reset();
        browser::CloseAll(false, false);
    }
}

TEST_F(ItemPreviews, TheBestOneIsFound)
{
    const struct {
        std::vector<PreviewInfo> previews; // number, width, height, grade
        PreviewRange range;
        int32_t found;
    } rows[] = {
        { {}, {}, -1 },
        { { { 1, 8, 8, 1, {} }, { 2, 8, 8, 1, {} } }, {}, 2 }, // the later one of equals
        { { { 1, 8, 8, 1, {} }, { 2, 9, 7, 1, {} } }, {}, 1 }, // a later one must be as large both ways
        { { { 1, 8, 8, 4, {} }, { 2, 99, 99, 1, {} } }, {}, 1 },
        { { { 1, 8, 8, 1, {} }, { 2, 4, 4, 4, {} } }, {}, 1 }, // also if it is of a better grade
        { { { 1, 8, 8, 1, {} }, { 2, 8, 8, 2, {} }, { 4, 8, 8, 4, {} } }, { 2, 0, 0, 2, 99, 99 }, 2 },
        { { { 1, 8, 8, 1, {} }, { 2, 16, 16, 1, {} } }, { 0, 0, 0, 9, 8, 8 }, 1 },
        { { { 1, 8, 8, 1, {} } }, { 0, 9, 0, 9, 99, 99 }, -1 },
        { { { 1, 8, 8, 1, {} } }, { 2, 0, 0, 9, 99, 99 }, -1 },
    };
    BrowserDatabase& library = MakeEmpty();
    int number = 0;
    for (const auto& row : rows) {
        const Item item = OpenItem(library, std::to_string(++number).c_str());
        for (const PreviewInfo& preview : row.previews)
            ASSERT_TRUE(Add(*item, preview));
        EXPECT_EQ(item->FindPreview(row.range).number, row.found) << number;
    }
}

TEST_F(ItemPreviews, OneThatIsMadeAgainIsSeenAtOnce)
{
    BrowserDatabase& library = MakeEmpty();
    const Item item = OpenItem(library, "x/one");
    ASSERT_TRUE(item->AddPreview(Grey(10).Get(), 1, 1, {}, true));
    EXPECT_EQ(GreyOf(item->GetPreview(1).Get()), 10);
    const VX3Bitmap* shared = item->GetSharedPreview(1);
    EXPECT_EQ(shared, item->GetSharedPreview(1)) << "one picture for all";
    ASSERT_TRUE(item->AddPreview(Grey(20).Get(), 1, 1, {}, true));
    EXPECT_EQ(GreyOf(item->GetPreview(1).Get()), 20);
    EXPECT_EQ(GreyOf(shared), 10) << "who uses the old one keeps it";
    const VX3Bitmap* renewed = item->GetSharedPreview(1);
    EXPECT_EQ(GreyOf(renewed), 20);
    for (int use = 0; use < 2; use++) {
        item->ReleasePreview(1);
        EXPECT_EQ(GreyOf(shared), 10);
        EXPECT_EQ(GreyOf(renewed), 20);
    }
    item->ReleasePreview(1);
    ASSERT_TRUE(item->DeletePreview(1));
    EXPECT_EQ(browser::DatabaseBitmapCache::Count(), 0);
}

// The bytes of a file that somebody damaged are no picture, and no other item's either.
TEST_F(ItemPreviews, AreOnlyReadWhereTheyAre)
{
    BrowserDatabase& library = MakeEmpty();
    const Item item = OpenItem(library, "x/one"), other = OpenItem(library, "x/two");
    ASSERT_TRUE(item->AddPreview(Grey(10).Get(), 1, 1, {}, false) && Add(*other, { 1, 8, 8, 1, {} }));
    EXPECT_FALSE(other->GetPreview(1));
    EXPECT_EQ(other->GetSharedPreview(1), nullptr);
    EXPECT_EQ(BytesOfPreview(*other, 1), "1 no picture");
    browser::ItemRecord& record = *library.State().items.Find(2);
    for (const int64_t offset : { int64_t(16), int64_t(-1), INT64_MAX, int64_t(1) }) {
        ASSERT_TRUE(SetPayloadOffset(record, browser::PayloadKind::Preview, 1, static_cast<uint64_t>(offset)));
        EXPECT_EQ(BytesOfPreview(*other, 1), "none") << offset;
    }
    ASSERT_TRUE(other->DeletePreview(1));
    EXPECT_NEAR(GreyOf(item->GetPreview(1).Get()), 10, 2) << "nothing of another item's is marked dead";
}

} // namespace
