// A life of a handle with each allocation failing, once and from there on: nothing leaks,
// and what is in memory and in the file agrees with what was promised.

#include <map>

#include "itemfixture.h"

namespace {

using namespace vx3::tests;
using namespace vx3::testing;
using browser::BrowserDatabase;
using browser::ItemState;

class ItemFaults : public ItemTest
{
protected:
    // Every item that is alive is found by its path, and they are as many as are counted.
    static void ExpectAgreement(BrowserDatabase& library)
    {
        int32_t live = 0;
        for (size_t place = 0; place < library.State().items.PlaceCount(); place++) {
            const browser::ItemRecord* record = library.State().items.At(place);
            if (!record || record->state != ItemState::Live)
                continue;
            live++;
            const std::string path = Utf8(record->GetPath());
            EXPECT_EQ(record->GetPathHash(), browser::PathHash(TextOf(path)));
            const Item found = Find(path);
            ASSERT_TRUE(found) << path;
            EXPECT_EQ(&found->Record(), record) << path;
        }
        EXPECT_EQ(library.CountItems(), live);
    }

    // What the operations said, by item: the data that is there then.
    using Promised = std::map<std::string, std::string>;

    Promised Live(BrowserDatabase& library, const std::string& bytes)
    {
        Promised promised = { { "x/old", bytes } };
        const browser::HostBitmap bitmap = Grey(9);
        {
            const Item item(library.OpenItem(one)), old(browser::FindItem(kept));
            if (item) {
                promised["x/one"] = "none";
                (void)item->SetType(1, 2);
                (void)item->SetName(TextOf("name"));
                (void)item->GetName(true);
                (void)item->SetDescription(TextOf("description"));
                (void)item->SetChanged(Date());
                (void)item->SetViewDate(Date());
                (void)item->SetViewPosition(1, { 1, 2, 3, 4 });
                if (SetData(*item, bytes, true))
                    promised["x/one"] = bytes;
                if (bitmap && item->AddPreview(bitmap.Get(), 1, 1, Date(), true))
                    (void)item->GetPreview(1);
                if (item->GetSharedPreview(1))
                    item->ReleasePreview(1);
                (void)item->DeletePreview(1);
            }
            if (item && old) {
                if (item->CopyDataFrom(*old))
                    promised["x/one"] = bytes;
                (void)item->CopyPreviewsFrom(*old);
                if (old->DeleteData())
                    promised["x/old"] = "none";
            }
            if (library.MoveItem(one, moved)) {
                promised["y/moved"] = promised["x/one"];
                promised.erase("x/one");
            }
            if (library.DeleteItem(kept))
                promised.erase("x/old");
        }
        return promised;
    }
    // Made before anything fails: an empty path is one as well.
    const browser::String one = TextOf("x/one"), moved = TextOf("y/moved"), kept = TextOf("x/old");

    static VX3FileDate Date() { return { 2026, 1, 2, 3, 4, 5 }; }

    static void ExpectPromised(const Promised& promised)
    {
        for (const auto& [path, bytes] : promised) {
            const Item item = Find(path);
            ASSERT_TRUE(item) << path;
            EXPECT_EQ(DataOf(*item), bytes) << path;
        }
    }
};

TEST_F(ItemFaults, ALifeOfAHandle)
{
    const std::string bytes(1000, 'b');
    for (const Failing failing : { Failing::Once, Failing::FromThereOn }) {
        int64_t failures = 1, runs = 0;
        for (; failures && !HasFailure(); runs++) {
            BrowserDatabase* library = &MakeEmpty();
            ASSERT_TRUE(SetData(*OpenItem(*library, "x/old"), bytes) && library->Flush());
            testHost.Faults().Fail(FailClass::Memory, runs + 1, failing);
            const Promised promised = Live(*library, bytes);
            failures = testHost.Faults().FailuresOf(FailClass::Memory);
            testHost.Faults().Clear();
            SCOPED_TRACE(runs + 1);
            ExpectAgreement(*library);
            EXPECT_EQ(library->CountItems(), static_cast<int32_t>(promised.size()));
            ExpectPromised(promised);
            library = &Reopen(*library);
            EXPECT_FALSE(library->IsDamaged());
            ExpectAgreement(*library);
            ExpectPromised(promised);
            browser::CloseAll(false, false);
            browser::FreeItemCompressor();
        }
        EXPECT_GT(runs, 60);
    }
}

} // namespace
