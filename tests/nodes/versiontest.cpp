// The version of all content: raised by each change that a sorted list may depend on, and
// by nothing that happens all the time.

#include <functional>

#include "model/contenttree.h"
#include "nodes/baselistnode.h"
#include "nodes/volumelist.h"
#include "plugins/registryorder.h"
#include "support/nodefixture.h"

using namespace browser;
using namespace vx3::tests;

namespace {

constexpr std::string_view png("\x89PNG\r\n\x1a\n\0\0\0\rIHDR\0\0\0\1\0\0\0\1\10\2\0\0\0", 29);

class Version : public NodeTest
{
protected:
    Version()
    {
        EXPECT_TRUE(CreatePluginRegistry());
        RegisterAllPlugins();
        for (const char* file : { "a.tif", "b.png", "readme" })
            Disk().AddFile("/p/" + std::string(file), "bytes", Day(1));
        Disk().AddFile("/p/sub/deep.tif", "deep", Day(1));
        for (const char* path : { "/p/a.tif", "/p/b.png", "/p/readme", "/p/sub", "/p" })
            Disk().SetDates(path, Day(2), Day(2));
        top = Top("/p");
        Settle();
    }
    ~Version() override
    {
        top = DirectoryRef();
        FreeAllPlugins();
        FreePluginRegistry();
    }

    // All that a window asks again and again.
    void Settle()
    {
        NodeRef child;
        top->Populate();
        for (top->GetFirstChild(child); child; child->GetNext(child)) {
            String text;
            BrowserURL url;
            FileDate date;
            ContentOf(child)->GetTypeName(text, TypeDetail::Specific);
            (void)ContentOf(child)->GetUrl(url, 0);
            (void)ContentOf(child)->GetDate(DateKind::Modified, date);
            (void)ContentOf(child)->GetAttributes(nullptr);
        }
    }
    void Relist()
    {
        top->MarkDirty();
        Settle();
    }
    void Replace(const std::string& path, std::string_view bytes, uint16_t created, uint16_t modified)
    {
        Disk().AddFile(path, bytes);
        Disk().SetDates(path, Day(created), Day(modified));
        Relist();
    }

    DirectoryRef top;
};

struct Change {
    const char* what;
    std::function<void()> make;
};

TEST_F(Version, RisesWithEveryChangeThatAListShows)
{
    DirectoryRef a = Child(*top, "a.tif"), b = Child(*top, "b.png"), sub = Child(*top, "sub");
    NodeRef lone(Make<CategoryNode>()(TextOf("Lone"), TextOf("lone:/"), Icon::Folder));
    auto* category = static_cast<CategoryNode*>(lone.Get());
    BrowserPluginInterface* plugin = GetPluginByIndex(GetPluginCount() - 1);
    const Change rows[] = {
        { "renamed", [&] { EXPECT_EQ(a->Rename(ChangeMode::Do, TextOf("c.tif")), Error::none); } },
        { "modified", [&] { Replace("/p/c.tif", "bytes", 2, 3); } },
        { "created", [&] { Replace("/p/c.tif", "bytes", 3, 3); } },
        { "longer", [&] { Replace("/p/c.tif", "more bytes", 3, 3); } },
        { "read-only", [&] { Disk().SetReadOnly("/p/c.tif"), Relist(); } },
        { "new on the disk", [&] { Replace("/p/new", "", 1, 1); } },
        { "gone from the disk", [&] { Disk().Remove("/p/new"), Relist(); } },
        { "a folder's own date", [&] { Disk().SetDates("/p/sub", Day(2), Day(9)), sub->Populate(); } },
        { "a folder's date of creation", [&] { Disk().SetDates("/p/sub", Day(8), Day(9)), Relist(); } },
        { "a file has become a folder", [&] { Disk().Remove("/p/readme"), Disk().AddFolder("/p/readme"), Relist(); } },
        { "new folder",
          [&] {
              EXPECT_EQ(top->CreateFolder(ChangeMode::Do, TextOf("made"), nullptr), Error::none);
              Relist();
          } },
        { "moved", [&] { EXPECT_EQ(sub->MoveInto(ContentRef(a), ChangeMode::Do, {}), Error::none); } },
        { "deleted", [&] { EXPECT_EQ(a->Delete(ChangeMode::Do, {}), Error::none); } },
        { "below a folder that was renamed",
          [&] { sub->UpdateUrlPrefix(TextOf("file://localhost/p"), TextOf("file://localhost/q"), true); } },
        { "attached", [&] { EXPECT_TRUE(category->AttachTo(*top)); } },
        { "put in front", [&] { lone->InsertBefore(b.Get()); } },
        { "put behind", [&] { EXPECT_TRUE(category->MoveBehindSiblings(*top)); } },
        { "stamped", [&] { category->StampDate(Day(1)); } },
        { "detached", [&] { lone->Detach(); } },
        { "another attribute", [&] { category->SetFlags(Attribute::container); } },
        { "an attribute less", [&] { category->ClearFlags(Attribute::container); } },
        { "all children gone", [&] { top->RemoveChildren(); } },
        { "a type less", [&] { UnregisterPlugin(plugin); } },
        { "a type more", [&] { EXPECT_TRUE(RegisterPlugin(plugin, MatchFiles::Yes)); } },
    };
    for (const Change& row : rows) {
        const uint64_t before = ContentVersion();
        row.make();
        EXPECT_GT(ContentVersion(), before) << row.what;
    }
}

TEST_F(Version, StandsStillWhileNothingChanges)
{
    DirectoryRef sub = Child(*top, "sub");
    sub->Populate();
    Relist();
    const Change rows[] = {
        { "asked", [&] { Settle(); } },
        { "listed again", [&] { Relist(), Relist(); } },
        { "asked for its plugin again", [&] { (void)Child(*top, "readme")->GetPlugin(PLUGIN_QUICK_TEST); } },
        { "the same name", [&] { EXPECT_EQ(Child(*top, "a.tif")->Rename(ChangeMode::Do, TextOf("a.tif")), Error::none); } },
        { "refused", [&] { EXPECT_NE(Child(*top, "a.tif")->Rename(ChangeMode::Do, TextOf("a/b")), Error::none); } },
        { "no such type", [&] { UnregisterPlugin(nullptr); } },
    };
    for (const Change& row : rows) {
        const uint64_t before = ContentVersion();
        row.make();
        EXPECT_EQ(ContentVersion(), before) << row.what;
    }
}

// What the address says is the answer also before it was asked for; what the bytes say is
// another one.
TEST_F(Version, RisesWhenTheBytesTellAnotherTypeThanTheAddress)
{
    const struct {
        const char* name;
        std::string_view bytes;
        bool quickIsNew, deepIsNew;
    } rows[] = {
        { "honest.png", png, false, false },
        { "wrong.tif", "no picture", false, true },
        { "unknown", png, false, true },
        { "unknown too", "text", false, true },
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        Disk().AddFile("/p/" + std::string(row.name), row.bytes, Day(1));
        top->MarkDirty();
        DirectoryRef node = Child(*top, row.name);
        uint64_t before = ContentVersion();
        (void)node->GetPlugin(PLUGIN_QUICK_TEST);
        EXPECT_EQ(ContentVersion() > before, row.quickIsNew);
        before = ContentVersion();
        (void)node->GetPlugin(0);
        EXPECT_EQ(ContentVersion() > before, row.deepIsNew);
        before = ContentVersion();
        (void)node->GetPlugin(0), (void)node->GetPlugin(PLUGIN_QUICK_TEST);
        EXPECT_EQ(ContentVersion(), before);
    }
}

TEST_F(Version, RisesWithVolumesAndOnlyOnceForAllNewChildren)
{
    ContentRef computer(Make<CategoryNode>()(TextOf("Computer"), TextOf("file:/"), Icon::Computer));
    const Change rows[] = {
        { "first listing", [&] { Disk().AddVolume("/v", "Disk"), ListVolumes(*computer); } },
        { "one more", [&] { Disk().AddVolume("/w", "Disk"), ListVolumes(*computer); } },
    };
    for (const Change& row : rows) {
        const uint64_t before = ContentVersion();
        row.make();
        EXPECT_GT(ContentVersion(), before) << row.what;
    }
    uint64_t before = ContentVersion();
    ListVolumes(*computer);
    EXPECT_EQ(ContentVersion(), before);
    computer->RemoveChildren();

    for (int i = 0; i < 200; i++)
        Disk().AddFile("/many/" + std::to_string(i), "x", Day(1));
    DirectoryRef many = Top("/many");
    before = ContentVersion();
    (void)Names(*many);
    EXPECT_LE(ContentVersion() - before, 2U);
}

// Nobody may keep a list of nodes that do not take part.
TEST_F(Version, KindsOfNodesTakePartOnlyWhereTheySaySo)
{
    ContentRef element(Make<BrowserBaseListNode>()(nullptr, TextOf("Cube")));
    EXPECT_FALSE(element->NotesChanges());
    EXPECT_TRUE(top->NotesChanges());
}

} // namespace
