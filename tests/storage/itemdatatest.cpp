// What is put into an item comes out again; what a file only says of it is not believed.

#include "itemfixture.h"

namespace {

using namespace vx3::tests;
using browser::BrowserDatabase;
using browser::StorageMode;

const std::string longText = [] {
    std::string text;
    for (int i = 0; i < 500; i++)
        text += "line " + std::to_string(i % 7) + "\n";
    return text;
}();

std::string Packed(const std::string& bytes)
{
    browser::Block packed;
    EXPECT_TRUE(browser::PackData(bytes.data(), static_cast<int64_t>(bytes.size()), packed));
    return StringOf(packed);
}

class ItemData : public ItemTest
{
protected:
    // A file with one item of the id 1 and its record's word for its data.
    void PutItem(const std::string& chunk, int64_t offset, StorageMode mode, int64_t unpackedSize, int32_t chunkId = 1)
    {
        browser::BaseContainer item, place, data;
        place.SetText(browser::PathText, TextOf("x/one"));
        place.SetInt32(browser::PathHashValue, static_cast<int32_t>(browser::PathHash(TextOf("x/one"))));
        data.SetInt64(browser::DataOffset, offset);
        data.SetInt32(browser::DataMode, static_cast<int32_t>(mode));
        data.SetInt64(browser::DataUnpacked, unpackedSize);
        item.SetContainer(browser::ItemPath, place);
        item.SetContainer(browser::ItemData, data);
        Put(FileBytes()
                .Head()
                .Chunk("bina", chunkId, chunk)
                .Chunk("difm", 0, InfoImage("preset://a.libvx"))
                .Chunk("ditm", 1, ImageOf(item))
                .End()
                .bytes);
    }
};

TEST_F(ItemData, ComesBackAsItWas)
{
    const struct {
        std::string bytes;
        bool compress;
        StorageMode mode;
    } rows[] = { { "", false, StorageMode::Raw },
                 { "", true, StorageMode::Raw },
                 { "short", true, StorageMode::Raw }, // does not shrink
                 { longText, false, StorageMode::Raw },
                 { longText, true, StorageMode::Packed } };
    for (const bool isOutside : { false, true })
        for (const auto& row : rows) {
            BrowserDatabase& library = MakeEmpty(usualFile, isOutside ? uint32_t(browser::LibraryExternal) : 0);
            const auto size = static_cast<int64_t>(row.bytes.size());
            Item item = OpenItem(library, "x/one");
            EXPECT_EQ(item->GetDataSize(true), -1);
            EXPECT_EQ(DataOf(*item), "none");
            ASSERT_TRUE(SetData(*item, "what was there before") && SetData(*item, row.bytes, row.compress));
            EXPECT_EQ(DataOf(*item), row.bytes);
            browser::Block stored;
            StorageMode mode = StorageMode::OldPacked;
            int64_t unpacked = 0;
            ASSERT_TRUE(item->GetStoredData(stored, mode, unpacked));
            EXPECT_EQ(mode, row.mode);
            EXPECT_EQ(unpacked, size);
            EXPECT_EQ(item->GetDataSize(true), size);
            EXPECT_EQ(item->GetDataSize(false), stored.Size());
            EXPECT_EQ(testHost.FileSystem().Exists("/lib/image/1_data"), isOutside);
            EXPECT_EQ(Tags(Bytes()), isOutside ? "dbfh dbfe" : "dbfh bina bina");

            Item copy = OpenItem(library, "x/two");
            ASSERT_TRUE(copy->CopyDataFrom(*item));
            EXPECT_EQ(DataOf(*copy), row.bytes);
            EXPECT_EQ(copy->GetDataSize(false), row.bytes == longText ? static_cast<int64_t>(Packed(longText).size()) : size);
            ASSERT_TRUE(item->DeleteData());
            EXPECT_EQ(DataOf(*item), "none");
            EXPECT_EQ(item->GetDataSize(false), -1);
            EXPECT_FALSE(testHost.FileSystem().Exists("/lib/image/1_data"));
            item.reset();
            copy.reset();
            browser::CloseAll(false, false);
        }
}

TEST_F(ItemData, OfTheOldFormIsUnpackedAndCopiedInTheNewOne)
{
    std::string chunk = Packed(longText);
    chunk.replace(0, 4, "\xFF\xFF\xFF\xFF");
    PutItem(chunk, 16, StorageMode::OldPacked, static_cast<int64_t>(longText.size()));
    BrowserDatabase& library = Open();
    const Item item = Find("x/one"), copy = OpenItem(library, "x/two");
    EXPECT_EQ(DataOf(*item), longText);
    ASSERT_TRUE(copy->CopyDataFrom(*item));
    EXPECT_EQ(DataOf(*copy), longText);
    browser::Block stored;
    StorageMode mode = StorageMode::Raw;
    int64_t unpacked = 0;
    ASSERT_TRUE(copy->GetStoredData(stored, mode, unpacked));
    EXPECT_EQ(mode, StorageMode::Packed);
    EXPECT_EQ(StringOf(stored), Packed(longText));
}

// No offset, id or size of a record leads to another item's bytes or to memory without end.
TEST_F(ItemData, IsOnlyReadWhereItIs)
{
    const std::string packed = Packed(longText);
    const struct {
        const char* what;
        std::string chunk;
        int64_t offset;
        StorageMode mode;
        int64_t unpacked;
        int32_t chunkId;
        std::string data;
    } rows[] = {
        { "right", "data", 16, StorageMode::Raw, 4, 1, "data" },
        { "of another item", "data", 16, StorageMode::Raw, 4, 2, "none" },
        { "the first chunk", "data", 0, StorageMode::Raw, 4, 1, "none" },
        { "inside a header", "data", 20, StorageMode::Raw, 4, 1, "none" },
        { "the info chunk", "data", 36, StorageMode::Raw, 4, 1, "none" },
        { "behind the end", "data", 1 << 20, StorageMode::Raw, 4, 1, "none" },
        { "far behind the end", "data", INT64_MAX, StorageMode::Raw, 4, 1, "none" },
        { "in front of the start", "data", -16, StorageMode::Raw, 4, 1, "none" },
        { "a smaller size than is told", longText, 16, StorageMode::Raw, 4, 1, longText },
        { "packed", packed, 16, StorageMode::Packed, INT64_MAX, 1, longText },
        { "more comes out than is told", std::string("\0\0\0\1", 4) + packed.substr(4), 16, StorageMode::Packed, 1, 1, "none" },
        { "the old form, more comes out", packed, 16, StorageMode::OldPacked, 1, 1, "none" },
        { "the old form, a size without end", packed, 16, StorageMode::OldPacked, INT64_MAX, 1, "none" },
        { "the old form, a negative size", packed, 16, StorageMode::OldPacked, -1, 1, "none" },
        { "cut", packed.substr(0, packed.size() / 2), 16, StorageMode::Packed, 1, 1, "none" },
        { "too short to be packed", "abc", 16, StorageMode::Packed, 3, 1, "none" },
        { "no deflated bytes", "abcdefgh", 16, StorageMode::OldPacked, 3, 1, "none" },
    };
    for (const auto& row : rows) {
        PutItem(row.chunk, row.offset, row.mode, row.unpacked, row.chunkId);
        (void)Open();
        Item item = Find("x/one");
        ASSERT_TRUE(item) << row.what;
        EXPECT_EQ(DataOf(*item), row.data) << row.what;
        const std::string before = Bytes();
        EXPECT_TRUE(item->DeleteData()) << row.what;
        if (row.chunkId == 2 || row.offset != 16) {
            EXPECT_EQ(Bytes(), before) << row.what << ": nothing of anybody else's is marked dead";
        }
        item.reset();
        browser::CloseAll(false, false);
    }
}

TEST_F(ItemData, OfMoreThanAChunkCanHoldIsRefused)
{
    const Item item = OpenItem(MakeEmpty(), "x/one");
    const char byte = 0;
    const auto tooMuch = static_cast<int64_t>(browser::mostPayload) + 1;
    EXPECT_FALSE(item->SetStoredData(&byte, tooMuch, StorageMode::Raw, tooMuch));
    EXPECT_FALSE(item->SetData(&byte, tooMuch, true));
    EXPECT_FALSE(item->SetData(&byte, -1, false));
    EXPECT_FALSE(item->SetData(nullptr, 1, false));
    EXPECT_FALSE(item->AddPreviewBytes(&byte, tooMuch, { 1, 1, 1, 1, {} }));
    EXPECT_EQ(item->GetDataSize(false), -1);
}

// The writer's buffer has what the disk has not yet.
TEST_F(ItemData, IsReadWhileTheFileIsHeldOpen)
{
    BrowserDatabase& library = MakeEmpty();
    const Item item = OpenItem(library, "x/one");
    ASSERT_TRUE(library.HoldFile());
    ASSERT_TRUE(SetData(*item, "one") && SetData(*item, longText, true));
    EXPECT_EQ(DataOf(*item), longText);
    EXPECT_EQ(item->GetDataSize(true), static_cast<int64_t>(longText.size()));
    ASSERT_TRUE(SetData(*item, "two"));
    library.ReleaseFile();
    EXPECT_EQ(DataOf(*item), "two");
    ASSERT_TRUE(library.Flush());
    EXPECT_EQ(Tags(Bytes()), "dbfh bina bina bina difm ditm dbfe");
}

// Until new data is whole in the file, the record tells of the old one.
TEST_F(ItemData, SurvivesAFailedReplacement)
{
    using namespace vx3::testing;
    for (const FailClass kind : { FailClass::Open, FailClass::Write })
        for (const Failing failing : { Failing::Once, Failing::FromThereOn }) {
            bool hasFailed = true;
            int64_t runs = 0;
            for (; hasFailed; runs++) {
                BrowserDatabase* library = &MakeEmpty();
                Item item = OpenItem(*library, "x/one");
                ASSERT_TRUE(SetData(*item, longText, true) && library->Flush());
                testHost.Faults().Fail(kind, runs + 1, failing);
                const bool isStored = SetData(*item, "new");
                hasFailed = testHost.Faults().FailuresOf(kind) > 0;
                testHost.Faults().Clear();
                EXPECT_NE(isStored, hasFailed);
                EXPECT_EQ(DataOf(*item), isStored ? "new" : longText);
                item.reset();
                library = &Reopen(*library);
                EXPECT_EQ(DataOf(*Find("x/one")), isStored ? "new" : longText);
                EXPECT_FALSE(library->IsDamaged());
                browser::CloseAll(false, false);
            }
            EXPECT_GT(runs, 1);
        }
}

} // namespace
