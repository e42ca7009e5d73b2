// Listings of folders: what is merged, kept, dropped, and when the disk is asked.

#include "support/nodefixture.h"

#include "model/upcalls.h"
#include "model/urlresolver.h"
#include "nodes/volumelist.h"
#include "plugins/registryorder.h"

using namespace browser;
using namespace vx3::tests;
using vx3::testing::Asked;
using vx3::testing::FailClass;
using vx3::testing::Failing;

namespace {

class Listing : public NodeTest
{
protected:
    Listing()
    {
        Disk().AddFile("/p/a.tif", "aaa", Day(1));
        Disk().AddFile("/p/b.png", "b", Day(2));
        Disk().AddFolder("/p/sub");
        Disk().AddFile("/p/sub/deep.tif", "deep", Day(3));
        Disk().SetDates("/p/sub", Day(4), Day(4));
        Disk().SetDates("/p", Day(5), Day(5));
        top = Top("/p");
    }
    ~Listing() override { top = DirectoryRef(); }

    void Touch(uint16_t day) { Disk().SetDates("/p", Day(5), Day(day)); }

    DirectoryRef top;
};

TEST_F(Listing, IsMadeOnFirstRequestAndNotAgain)
{
    EXPECT_EQ(top->Generation(), 0);
    EXPECT_EQ(Disk().CountOf(Asked::Walk), 0);
    EXPECT_EQ(Names(*top), (Strings{ "a.tif", "b.png", "sub" }));
    EXPECT_EQ(top->Generation(), 1);
    const int64_t dates = Disk().CountOf(Asked::Date);
    for (int i = 0; i < 3; i++)
        (void)Names(*top);
    EXPECT_EQ(Disk().CountOf(Asked::Walk), 1);
    EXPECT_EQ(Disk().CountOf(Asked::Date), dates) << "a clean folder gives its children without a look at the disk";
    EXPECT_EQ(top->Populate(), 1);
    EXPECT_EQ(Disk().CountOf(Asked::Date), dates + 1) << "Populate costs one date";
    EXPECT_EQ(Disk().CountOf(Asked::Walk), 1);
}

TEST_F(Listing, NewEntriesGetExactlyTheseFlags)
{
    Disk().AddFolder("/p/pack");
    Disk().SetBundle("/p/pack");
    Disk().SetReadOnly("/p/a.tif");
    Disk().SetReadOnly("/p/pack");
    Disk().AddFile("/p/.hidden", "x", Day(1));
    Touch(6);
    EXPECT_EQ(Names(*top), (Strings{ "a.tif", "b.png", "sub", "pack" }));
    int64_t size = -1;
    EXPECT_EQ(Child(*top, "a.tif")->GetAttributes(&size), Attribute::readOnly);
    EXPECT_EQ(size, 3);
    EXPECT_EQ(Child(*top, "b.png")->GetAttributes(&size), 0u);
    EXPECT_EQ(Child(*top, "sub")->GetAttributes(&size), 0x40001u);
    EXPECT_EQ(Child(*top, "pack")->GetAttributes(&size), Attribute::bundle | Attribute::readOnly);
    EXPECT_EQ(size, 0);
    EXPECT_EQ(Child(*top, "pack")->Populate(), 0) << "a bundle is never entered";
}

TEST_F(Listing, OnlyHiddenEntriesStillRaiseTheGeneration)
{
    Disk().AddFile("/h/.a", "x", Day(1));
    DirectoryRef folder = Top("/h");
    EXPECT_EQ(Names(*folder), Strings{});
    EXPECT_EQ(folder->Generation(), 1);
}

TEST_F(Listing, ARefreshKeepsNodesAndMergesWhatChanged)
{
    (void)Names(*top);
    DirectoryRef a = Child(*top, "a.tif"), b = Child(*top, "b.png");
    Disk().Remove("/p/b.png");
    Disk().AddFile("/p/c.jpg", "cc", Day(7));
    Disk().AddFile("/p/a.tif", "longer", Day(8));
    Touch(9);
    EXPECT_EQ(top->Populate(), 2);
    EXPECT_EQ(Names(*top).size(), 3u);
    EXPECT_EQ(Child(*top, "a.tif").Get(), a.Get());
    FileDate modified;
    int64_t size = 0;
    a->GetDate(DateKind::Modified, modified);
    a->GetAttributes(&size);
    EXPECT_EQ(CompareDates(modified, Day(8)), 0);
    EXPECT_EQ(size, 6);
    EXPECT_TRUE(b->IsRemoved());
    NodeRef none;
    b->GetNext(none);
    EXPECT_FALSE(none);
    EXPECT_EQ(b->Rename(ChangeMode::Do, TextOf("x")), Error::rename);
}

// A folder is compared on its creation date held in the modification field.
TEST_F(Listing, ChildFoldersAreRefreshedAsTold)
{
    (void)Names(*top);
    DirectoryRef sub = Child(*top, "sub");
    EXPECT_EQ(Names(*sub), Strings{ "deep.tif" });
    EXPECT_EQ(sub->Generation(), 1);
    struct Row {
        VX3FileDate created, modified;
        int64_t generation;
        bool dirty;
        const char* why;
    };
    const Row rows[] = {
        { Day(4), Day(4), 1, false, "equal dates: nothing happens" },
        { Day(10), Day(4), 2, true, "another creation date: raised, and to be listed" },
        { Day(10), Day(11), 2, true, "the creation date is in the field now; what was dirty stays so" },
    };
    uint16_t day = 20;
    for (const Row& row : rows) {
        Disk().SetDates("/p/sub", row.created, row.modified);
        Touch(day++);
        top->Populate();
        EXPECT_EQ(sub->Generation(), row.generation) << row.why;
        EXPECT_EQ(sub->HasFlags(Attribute::dirty), row.dirty) << row.why;
    }
    (void)Names(*sub);
    EXPECT_EQ(sub->Generation(), 3);
    EXPECT_FALSE(sub->HasFlags(Attribute::dirty));
}

TEST_F(Listing, AFolderNeverListedStaysDirty)
{
    (void)Names(*top);
    Touch(20);
    top->Populate();
    DirectoryRef sub = Child(*top, "sub");
    EXPECT_TRUE(sub->HasFlags(Attribute::dirty));
    EXPECT_EQ(Names(*sub), Strings{ "deep.tif" });
}

TEST_F(Listing, AnEntryThatChangesItsKindKeepsItsNode)
{
    (void)Names(*top);
    DirectoryRef a = Child(*top, "a.tif"), sub = Child(*top, "sub"), deep = Child(*sub, "deep.tif");
    Disk().Remove("/p/a.tif");
    Disk().AddFile("/p/a.tif/inside", "x", Day(1));
    Disk().Remove("/p/sub");
    Disk().AddFile("/p/sub", "file now", Day(1));
    Touch(20);
    top->Populate();
    EXPECT_EQ(Child(*top, "a.tif").Get(), a.Get());
    EXPECT_EQ(a->GetAttributes(nullptr), 0x40001u);
    EXPECT_EQ(a->Generation(), 0);
    EXPECT_EQ(Names(*a), Strings{ "inside" });
    int64_t size = 0;
    EXPECT_EQ(sub->GetAttributes(&size), 0u);
    EXPECT_EQ(size, 8);
    EXPECT_TRUE(deep->IsRemoved());
    NodeRef none;
    sub->GetFirstChildLinked(none);
    EXPECT_FALSE(none);
}

TEST_F(Listing, AWalkThatCannotStartLeavesTheFolderDirty)
{
    Disk().SetUnreadable("/p");
    EXPECT_EQ(Names(*top), Strings{});
    EXPECT_EQ(top->Generation(), 1);
    EXPECT_TRUE(top->HasFlags(Attribute::dirty));
    Disk().SetUnreadable("/p", false);
    EXPECT_EQ(Names(*top).size(), 3u) << "the next request tries again";
}

TEST_F(Listing, AWalkThatBreaksOffDropsNobody)
{
    (void)Names(*top);
    Disk().BreakListing("/p", 1);
    Touch(20);
    top->Populate();
    NodeRef child;
    size_t count = 0;
    for (top->GetFirstChildLinked(child); child; child->GetNext(child))
        count++;
    EXPECT_EQ(count, 3u);
    EXPECT_TRUE(top->HasFlags(Attribute::dirty));
}

TEST_F(Listing, ARemovedFolderListsNothing)
{
    top->Remove();
    EXPECT_EQ(top->Populate(), 0);
    EXPECT_EQ(Names(*top), Strings{});
    EXPECT_EQ(Disk().CountOf(Asked::Walk), 0);
}

TEST_F(Listing, HardNamesAreTheirOwnEntries)
{
    const Strings names = { "A.png", "a.png", "a b#?%", "\xF0\x9F\x8E\xA8.tif", std::string(255, 'n') };
    for (const std::string& name : names)
        Disk().AddFile("/n/" + name, name, Day(1));
    DirectoryRef folder = Top("/n");
    EXPECT_EQ(Names(*folder), names);
    DirectoryRef upper = Child(*folder, "A.png"), lower = Child(*folder, "a.png");
    Disk().SetDates("/n", Day(9), Day(9));
    folder->Populate();
    EXPECT_EQ(Child(*folder, "A.png").Get(), upper.Get());
    EXPECT_EQ(Child(*folder, "a.png").Get(), lower.Get());
    EXPECT_EQ(NativeOf(lower->GetPath()), "/n/a.png");
    BrowserURL url(PathOf("/n/A.png")), given;
    upper->GetUrl(given, 0);
    EXPECT_EQ(given.GetHash(), url.GetHash()) << "the hash of a listing is that of the text";
}

// A known plugin stays although the file changes; one that was found missing is asked for anew.
TEST_F(Listing, PluginsAreKeptAsTold)
{
    ASSERT_TRUE(CreatePluginRegistry());
    RegisterAllPlugins();
    const std::string png = std::string("\x89PNG\r\n\x1A\n") + std::string(40, '\0');
    Disk().AddFile("/p/b.png", png, Day(2));
    (void)Names(*top);
    DirectoryRef a = Child(*top, "a.tif"), b = Child(*top, "b.png"), sub = Child(*top, "sub");
    BrowserPluginInterface* image = FindPluginById(1018021);
    EXPECT_EQ(a->GetPlugin(PLUGIN_QUICK_TEST), image);
    EXPECT_TRUE(a->HasFlags(Attribute::quickPlugin));
    EXPECT_EQ(a->GetPlugin(0), nullptr) << "the bytes are no picture";
    EXPECT_TRUE(a->HasFlags(Attribute::noPlugin));
    EXPECT_EQ(a->GetPlugin(PLUGIN_QUICK_TEST), nullptr) << "what was read counts from then on";
    EXPECT_EQ(b->GetPlugin(0), image);
    EXPECT_FALSE(b->HasFlags(Attribute::quickPlugin));
    EXPECT_EQ(sub->GetPlugin(0), knownPlugins.folder);

    Disk().AddFile("/p/a.tif", png, Day(8));
    Disk().AddFile("/p/b.png", "text now", Day(8));
    Touch(9);
    top->Populate();
    const int64_t opened = Disk().CountOf(Asked::Open);
    EXPECT_EQ(b->GetPlugin(0), image) << "a known plugin is kept";
    EXPECT_EQ(Disk().CountOf(Asked::Open), opened);
    EXPECT_EQ(a->GetAttributes(nullptr) & (Attribute::noPlugin | Attribute::quickPlugin), 0u);
    EXPECT_EQ(a->GetPlugin(0), image) << "the changed file is identified again";
    FreeAllPlugins();
    FreePluginRegistry();
}

// Whatever call fails, the tree agrees with itself, and the next listing is whole.
TEST_F(Listing, SurvivesEveryFailure)
{
    for (FailClass kind : { FailClass::Memory, FailClass::StartWalk, FailClass::NextEntry, FailClass::Inspect })
        for (Failing failing : { Failing::Once, Failing::FromThereOn }) {
            int64_t failures = 1, runs = 0;
            for (; failures; runs++) {
                DirectoryRef folder = Top("/p");
                testHost.Faults().Fail(kind, runs + 1, failing);
                (void)folder->Populate();
                folder->MarkDirty();
                (void)folder->Populate();
                failures = testHost.Faults().FailuresOf(kind);
                testHost.Faults().Clear();
                folder->MarkDirty();
                EXPECT_EQ(Names(*folder).size(), 3u) << "failure " << runs + 1 << " of class " << int(kind);
                folder->Remove();
            }
            EXPECT_GT(runs, kind == FailClass::Memory ? 10 : 1);
        }
}

class Volumes : public NodeTest
{
};

TEST_F(Volumes, ComeAndGoWithTheirNodes)
{
    Disk().AddVolume("/", "");
    Disk().AddVolume("/media/usb", "Stick");
    Disk().AddVolume("/proc", "", VX3_VOLUME_LEAVE_OUT);
    ContentRef computer(Make<CategoryNode>()(TextOf("Computer"), TextOf("file:/"), Icon::Computer));
    computer->InsertLast(contentTree.tree);
    upcalls.listVolumes = ListVolumes;
    contentTree.indexedRoots[size_t(RootIndex::Computer)].Set(computer);
    EXPECT_EQ(Names(*computer), (Strings{ "/", "/media/usb [Stick]" }));
    DirectoryRef usb;
    NodeRef last;
    computer->GetLastChild(last);
    usb = DirectoryRef(AsDirectory(ContentOf(last)));
    EXPECT_EQ(usb->GetAttributes(nullptr), 0x60001u);
    EXPECT_FALSE(ListVolumes(*computer));
    // Where volumes lie in each other, a name's end decides which one a place is on.
    Disk().AddFile("/media/usb2/x.tif", "x", Day(1));
    Disk().AddFile("/media/usb/y.tif", "y", Day(1));
    for (const char* place : { "/media/usb2/x.tif", "/media/usb/y.tif", "/media/usb2", "/" }) {
        BrowserURL url(PathOf(place));
        ContentRef found;
        FindNodeByUrl(url, FindPlain, ContentRef(), found);
        ASSERT_TRUE(found) << place;
        EXPECT_EQ(NativeOf(AsDirectory(found.Get())->GetPath()), place);
    }
    EXPECT_EQ(usb->Delete(ChangeMode::Ask, {}), Error::deletion);
    EXPECT_EQ(usb->Delete(ChangeMode::Do, {}), Error::deletion) << "a mount is never deleted";
    Disk().FailProbe("/media/usb");
    Disk().AddFile("/media/usb/x", "x", Day(1));
    usb->MarkDirty();
    EXPECT_EQ(Names(*usb), Strings{ "y.tif" }) << "a silent volume keeps what it had";
    Disk().FailProbe("/media/usb", false);
    EXPECT_EQ(Names(*usb), (Strings{ "y.tif", "x" }));
    upcalls = {};
    ForgetCategoryListings();
    usb = DirectoryRef();
    last = NodeRef();
}

} // namespace
