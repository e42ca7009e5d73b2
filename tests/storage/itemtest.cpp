// Items are found, made, moved and deleted, whoever owns them and whoever uses them.

#include "itemfixture.h"

namespace {

using namespace vx3::tests;
using browser::BrowserDatabase;
using browser::BrowserDatabaseItem;
using browser::Force;

class Items : public ItemTest
{
};

TEST_F(Items, APathIsOpenedOnceWhateverItsCase)
{
    BrowserDatabase& library = MakeEmpty();
    {
        const Item first = OpenItem(library, "preset://a.libvx/One");
        ASSERT_TRUE(first);
        const Item again = OpenItem(library, "preset://A.LIBVX/one"), found = Find("preset://a.libvx/ONE");
        ASSERT_TRUE(again && found);
        EXPECT_EQ(&first->Record(), &again->Record());
        EXPECT_EQ(&first->Record(), &found->Record());
        EXPECT_EQ(Utf8(again->GetPath()), "preset://a.libvx/One") << "as it was first written";
        EXPECT_EQ(again->GetPathHash(), browser::PathHash(TextOf("preset://a.libvx/one")));
        EXPECT_EQ(OpenItem(library, "preset://a.libvx/two")->GetId(), 2);
    }
    EXPECT_EQ(library.CountItems(), 2);
    EXPECT_TRUE(library.IsDirty());
    EXPECT_FALSE(Find("preset://a.libvx/three"));

    library.State().nextItemId = 0x7FFFFFFF;
    EXPECT_EQ(OpenItem(library, "preset://a.libvx/last")->GetId(), 0x7FFFFFFF);
    EXPECT_FALSE(OpenItem(library, "preset://a.libvx/none")) << "no id is left";
    EXPECT_EQ(library.CountItems(), 3);
}

// What a read-only library refuses, and what it is made to do.
TEST_F(Items, AReadOnlyLibraryOpensByForceOnly)
{
    BrowserDatabase& library = MakeEmpty();
    ASSERT_TRUE(SetData(*OpenItem(library, "x/one"), "data"));
    library.State().readOnly = true;
    const browser::HostBitmap bitmap = Grey(1);
    EXPECT_FALSE(OpenItem(library, "x/one"));
    EXPECT_FALSE(OpenItem(library, "x/two"));
    EXPECT_FALSE(Item(browser::FindWritableItem(TextOf("x/one"))));
    EXPECT_FALSE(library.MoveItem(TextOf("x/one"), TextOf("x/three")));
    EXPECT_FALSE(library.DeleteItem(TextOf("x/one")));
    const Item item = OpenItem(library, "x/one", Force::Yes);
    ASSERT_TRUE(item);
    EXPECT_FALSE(item->IsWritable());
    const bool refused[] = { item->SetType(1),
                             item->SetName(TextOf("n")),
                             item->SetDescription(TextOf("")),
                             item->SetChanged({}),
                             SetData(*item, "other", true),
                             item->DeleteData(),
                             item->DeletePreview(1),
                             item->DeleteAllPreviews(),
                             item->SetScanState(1),
                             item->SetViewOrder(1),
                             item->SetLink(TextOf("t"), true),
                             item->CopyDataFrom(*item),
                             item->SetSettings({}),
                             item->CopyPreviewsFrom(*item),
                             item->SetViewPosition(0, {}),
                             item->SetViewDate({}),
                             item->AddPreview(bitmap.Get(), 1, 1, {}, false) };
    for (size_t i = 0; i < std::size(refused); i++)
        EXPECT_FALSE(refused[i]) << i;
    EXPECT_EQ(DataOf(*item), "data");
    EXPECT_TRUE(OpenItem(library, "x/two", Force::Yes));
}

TEST_F(Items, WhateverIsStoredIsThereAfterALoad)
{
    const VX3FileDate date = { 2026, 11, 23, 6, 45, 59 };
    browser::BaseContainer settings, source, words;
    settings.SetText(7, TextOf("seven"));
    source.SetInt32(0, 640);
    BrowserDatabase* library = &MakeEmpty();
    {
        BrowserDatabaseItem* item = library->OpenItem(TextOf("x/one"));
        EXPECT_EQ(item->GetScanState(), -1);
        EXPECT_EQ(item->GetViewOrder(), browser::unordered);
        EXPECT_TRUE(item->SetDescription(TextOf(""))) << "nothing to take away";
        EXPECT_TRUE(item->SetType(1234, 5) && item->SetDescription(TextOf("told")) && item->SetSettings(settings)
                    && item->SetSource(source));
        EXPECT_TRUE(item->SetChanged(date) && item->SetCreated({ 1999, 1, 2, 3, 4, 5 }) && item->SetScanState(3));
        EXPECT_TRUE(item->SetLink(TextOf("target"), true) && item->SetViewOrder(9) && item->SetViewFlags(8) && item->SetViewValue(-2));
        EXPECT_TRUE(item->SetViewDate(date) && item->SetViewPosition(2, { 1, -2, 3, -4 }));
        item->Release();
    }
    EXPECT_FALSE(library->IsDirty()) << "the release has written it";
    library = &Reopen(*library);
    const Item item = Find("x/one");
    ASSERT_TRUE(item);
    int32_t subtype = 0;
    bool isRelative = false;
    browser::ViewPosition position = {};
    browser::BaseContainer readSettings, readSource;
    EXPECT_EQ(item->GetType(&subtype), 1234);
    EXPECT_EQ(subtype, 5);
    EXPECT_EQ(Utf8(item->GetDescription()), "told");
    EXPECT_TRUE(item->GetSettings(readSettings) && item->GetSource(readSource));
    EXPECT_EQ(Utf8(readSettings.GetText(7)), "seven");
    EXPECT_EQ(readSource.GetInt32(0, 0), 640);
    EXPECT_EQ(browser::CompareDates(item->GetChanged(), date), 0);
    EXPECT_EQ(item->GetCreated().year, 1999);
    EXPECT_EQ(item->GetScanState(), 3);
    EXPECT_EQ(Utf8(item->GetLink(&isRelative)), "target");
    EXPECT_TRUE(isRelative);
    EXPECT_EQ(item->GetViewOrder(), 9);
    EXPECT_EQ(item->GetViewFlags(), 8 | browser::viewHasDate);
    EXPECT_EQ(item->GetViewValue(), -2);
    EXPECT_EQ(browser::CompareDates(item->GetViewDate(), date), 0);
    EXPECT_TRUE(item->GetViewPosition(2, position));
    EXPECT_EQ(position, (browser::ViewPosition{ 1, -2, 3, -4 }));
    EXPECT_FALSE(item->GetViewPosition(1, position));
    EXPECT_FALSE(item->GetWords(words));
    EXPECT_EQ(Utf8(item->GetPath()), "x/one") << "a link keeps the path";
    EXPECT_TRUE(item->SetType(1234));
    EXPECT_FALSE(item->Record().values.Has(browser::ItemSubtype));
}

TEST_F(Items, ANameIsChosenAmongLanguages)
{
    constexpr int32_t english = 0x75730000, german = 0x64650000, czech = 0x637A0000, french = 0x66720000;
    BrowserDatabase& library = MakeEmpty();
    const struct {
        std::vector<std::pair<int32_t, const char*>> names;
        const char* name; // where the user reads English
        const char* withFallback;
        bool several;
    } rows[] = { { {}, "", "leaf", false },
                 { { { german, "Holz" } }, "Holz", "Holz", false },
                 { { { czech, "strom" }, { german, "Holz" } }, "Holz", "Holz", true },
                 { { { czech, "strom" }, { french, "bois" } }, "strom", "strom", true },
                 { { { german, "Holz" }, { english, "wood" } }, "wood", "wood", true },
                 { { { english, "" } }, "", "leaf", false } };
    int number = 0;
    for (const auto& row : rows) {
        const Item item = OpenItem(library, ("x/" + std::to_string(number++) + "/leaf").c_str());
        for (const auto& [language, text] : row.names)
            EXPECT_TRUE(item->SetNameIn(language, TextOf(text)));
        EXPECT_EQ(Utf8(item->GetName(false)), row.name) << number;
        EXPECT_EQ(Utf8(item->GetName(true)), row.withFallback) << number;
        EXPECT_EQ(item->HasSeveralNames(), row.several) << number;
        browser::String name;
        int32_t language = 0;
        for (size_t i = 0; i < row.names.size(); i++) {
            ASSERT_TRUE(item->NameAt(static_cast<int32_t>(i), language, name));
            EXPECT_EQ(language, row.names[i].first);
        }
        EXPECT_FALSE(item->NameAt(static_cast<int32_t>(row.names.size()), language, name));
    }
    const Item item = OpenItem(library, "x/named");
    EXPECT_TRUE(item->SetName(TextOf("wood")));
    EXPECT_EQ(Utf8(item->GetNameIn(english)), "wood");
}

// --- Moving ---

TEST_F(Items, AMoveEndsAtAFreePathOrChangesNothing)
{
    const struct {
        const char* from;
        const char* to;
        bool isMoved;
    } rows[] = { { "x/one", "x/three", true }, { "X/ONE", "y/One", true },  { "x/one", "X/ONE", true },  { "x/one", "x/one", true },
                 { "x/one", "x/two", false },  { "x/one", "X/Two", false }, { "x/none", "x/one", false } };
    BrowserDatabase& library = MakeEmpty();
    for (const auto& row : rows) {
        const Item one = OpenItem(library, "x/one"), two = OpenItem(library, "x/two");
        ASSERT_EQ(library.MoveItem(TextOf(row.from), TextOf(row.to)), row.isMoved) << row.to;
        const char* path = row.isMoved ? row.to : "x/one";
        EXPECT_EQ(Utf8(one->GetPath()), path);
        EXPECT_EQ(one->GetPathHash(), browser::PathHash(TextOf(path)));
        EXPECT_EQ(&Find(path)->Record(), &one->Record());
        EXPECT_EQ(&Find("x/two")->Record(), &two->Record());
        EXPECT_EQ(Find("x/one") != nullptr, one->GetPathHash() == browser::PathHash(TextOf("x/one")));
        if (row.isMoved) {
            ASSERT_TRUE(library.MoveItem(TextOf(row.to), TextOf("x/one")));
        }
    }
    EXPECT_EQ(library.CountItems(), 2);
    EXPECT_EQ(library.State().items.Find(1)->node.load()->CountEntries(), 1) << "no entry stays behind";
}

// A deletion must know of handles that were opened under another path.
TEST_F(Items, AMoveTakesItsUsersWithIt)
{
    BrowserDatabase& library = MakeEmpty();
    Item item = OpenItem(library, "x/one");
    ASSERT_TRUE(SetData(*item, "data"));
    ASSERT_TRUE(library.MoveItem(TextOf("x/one"), TextOf("x/two")));
    ASSERT_TRUE(library.DeleteItem(TextOf("x/two")));
    ASSERT_TRUE(library.Flush());
    EXPECT_EQ(DataOf(*item), "data");
    item.reset();
    ASSERT_TRUE(library.Flush());
    EXPECT_EQ(library.State().items.Find(1), nullptr);
}

// --- Deleting ---

TEST_F(Items, AnOpenHandleKeepsADeletedItemTillTheWriteBehindIt)
{
    BrowserDatabase& library = MakeEmpty();
    Item item = OpenItem(library, "x/one"), second = Find("x/one");
    ASSERT_TRUE(SetData(*item, "data") && item->SetName(TextOf("name")));
    ASSERT_TRUE(library.Flush());
    ASSERT_TRUE(library.DeleteItem(TextOf("X/one")));
    EXPECT_FALSE(library.DeleteItem(TextOf("x/one"))) << "once";
    EXPECT_FALSE(Find("x/one"));
    EXPECT_EQ(library.CountItems(), 0);
    ASSERT_TRUE(library.Flush());
    item.reset();
    EXPECT_EQ(DataOf(*second), "data");
    EXPECT_EQ(Utf8(second->GetName(false)), "name");
    EXPECT_EQ(Tags(Bytes()), "dbfh bina difm ditm dbfe");
    second->Release();
    (void)second.release();
    EXPECT_TRUE(library.IsDirty()) << "or it would be back at the next start";
    ASSERT_TRUE(library.Flush());
    EXPECT_EQ(Tags(Bytes()), "dbfh ivld difm ivld dbfe");
    const Item again = OpenItem(library, "x/one");
    EXPECT_EQ(again->GetId(), 2) << "an id is never given twice";
}

TEST_F(Items, AnItemThatWasNeverWrittenLeavesNoTrace)
{
    BrowserDatabase* library = &MakeEmpty();
    const browser::HostBitmap bitmap = Grey(3);
    {
        const Item item = OpenItem(*library, "x/one");
        ASSERT_TRUE(SetData(*item, "data") && item->AddPreview(bitmap.Get(), 1, 1, {}, false));
        EXPECT_EQ(GreyOf(item->GetPreview(1).Get()), 3);
    }
    ASSERT_TRUE(library->DeleteItem(TextOf("x/one")));
    ASSERT_TRUE(library->Flush());
    EXPECT_EQ(Tags(Bytes()), "dbfh ivld ivld difm dbfe");
    EXPECT_EQ(browser::DatabaseBitmapCache::Count(), 0);
    library = &Reopen(*library);
    EXPECT_EQ(library->CountItems(), 0);
}

// --- Several libraries ---

TEST_F(Items, AnItemIsChangedInTheLibraryThatOwnsIt)
{
    BrowserDatabase &owner = MakeEmpty(), &other = MakeEmpty("/lib/b.libvx");
    ASSERT_TRUE(OpenItem(owner, "x/one") && OpenItem(owner, "x/two") && OpenItem(other, "x/three"));
    ASSERT_TRUE(owner.Flush() && other.Flush());
    EXPECT_EQ(&OpenItem(other, "x/one")->Library(), &owner);
    EXPECT_EQ(other.CountItems(), 1) << "nothing is made of what exists";
    EXPECT_FALSE(other.MoveItem(TextOf("x/one"), TextOf("x/three"))) << "taken, in another library";
    EXPECT_TRUE(other.MoveItem(TextOf("x/one"), TextOf("x/four")));
    EXPECT_TRUE(other.DeleteItem(TextOf("x/two")));
    EXPECT_TRUE(owner.IsDirty());
    EXPECT_FALSE(other.IsDirty());
    EXPECT_EQ(owner.CountItems(), 1);
    owner.State().readOnly = true;
    EXPECT_FALSE(OpenItem(other, "x/four"));
    EXPECT_TRUE(Find("x/four"));
}

// A copy of a path that can be changed comes first, whichever library was opened first.
TEST_F(Items, AWritableCopyHidesAReadOnlyOne)
{
    for (const bool isWritableFirst : { true, false }) {
        for (const char* path : { "/lib/a.libvx", "/lib/b.libvx" }) {
            const bool readOnly = (path[5] == 'a') != isWritableFirst;
            const std::string name = std::string("preset://") + (path + 5);
            Put(FileBytes().Head().Chunk("difm", 0, InfoImage(name.c_str(), 7, readOnly)).Chunk("ditm", 1, ItemImage("x/one")).End().bytes,
                path);
        }
        BrowserDatabase &first = Open("/lib/a.libvx"), &second = Open("/lib/b.libvx");
        BrowserDatabase& writable = isWritableFirst ? first : second;
        EXPECT_EQ(&Find("X/ONE")->Library(), &writable);
        EXPECT_TRUE(Item(browser::FindWritableItem(TextOf("x/one"))));
        browser::CloseLibrary(&writable);
        EXPECT_TRUE(Find("x/one"));
        EXPECT_FALSE(Item(browser::FindWritableItem(TextOf("x/one"))));
        browser::CloseAll(false, false);
    }
}

} // namespace
