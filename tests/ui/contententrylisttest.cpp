// The list of a pane: what it shows, what it keeps through changes of the folder, whom it
// tells, and what it does without memory.

#include <functional>

#include "listfixture.h"

#include "nodes/baselistnode.h"
#include "plugins/registryorder.h"
#include "services/preferencesend.h"
#include "ui/eventring.h"

using namespace browser;
using namespace vx3::tests;
using vx3::testing::FailClass;
using vx3::testing::Failing;
using Reader = ContentViewEntryList::Reader;
using Writer = ContentViewEntryList::Writer;

namespace {

class EntryList : public ListTest
{
protected:
    uint32_t Generation() { return list.TakeSnapshot().generation; }
    void ExpectSorted()
    {
        const Reader entries(list);
        for (int32_t i = 1; i < entries->Count(); i++)
            EXPECT_LT(NameOf(*entries->EntryAt(i - 1)), NameOf(*entries->EntryAt(i)));
    }
};

TEST_F(EntryList, ASelectionSurvivesWhatTheDiskDoes)
{
    const struct {
        const char* what;
        std::function<void()> change;
        const char* end;
        int messages;
    } rows[] = {
        { "start", [] {}, "sub [a] b [c] d", 0 },
        { "newcomers between", [&] { Disk().AddFile("/p/bb", "", Day(1)), Disk().AddFile("/p/0", "", Day(1)); }, "sub 0 [a] b bb [c] d",
          0 },
        { "an unselected one is gone", [&] { Disk().Remove("/p/b"); }, "sub 0 [a] bb [c] d", 0 },
        { "a selected one is gone", [&] { Disk().Remove("/p/a"); }, "sub 0 bb [c] d", 1 },
        { "renamed here: it moves with its mark", [&] { EXPECT_EQ(Child(*top, "c")->Rename(ChangeMode::Do, TextOf("x")), Error::none); },
          "sub 0 bb d [x]", 0 },
        { "renamed outside: that is another one", [&] { Disk().Remove("/p/x"), Disk().AddFile("/p/y", "", Day(1)); }, "sub 0 bb d y", 1 },
        { "nothing was selected", [&] { Disk().Remove("/p/d"); }, "sub 0 bb y", 0 },
        { "an empty folder", [&] { Disk().Remove("/p"), Disk().AddFolder("/p"); }, "", 0 },
    };
    MakeFolder("/p", { "c", "a", "sub/", "d", "b" });
    Synchronize();
    Select("a"), Select("c");
    (void)Messages();
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        row.change();
        Relist();
        Synchronize();
        EXPECT_EQ(Text(), row.end);
        EXPECT_EQ(Messages(), row.messages);
    }
}

TEST_F(EntryList, NothingIsDoneWhileNothingHasChanged)
{
    MakeFolder("/p", { "a", "b", "c", "sub/" });
    MakeFolder("/q", { "a" });
    DirectoryRef q = std::exchange(top, Top("/p"));
    EntryFilter filter;
    ReadPreferences();
    Synchronize(filter);
    Select("b");
    const struct {
        const char* what;
        std::function<void()> change;
        bool isMade;
        const char* end;
    } rows[] = {
        { "nothing", [] {}, false, "sub a [b] c" },
        { "selection and visible range", [&] { list.Toggle(0), list.Toggle(0), list.SetVisibleRange(0, 2); }, false, "sub a [b] c" },
        { "listed again", [&] { Relist(); }, false, "sub a [b] c" },
        { "another filter", [&] { filter = ByFirstLetter(0b11); }, true, "a [b]" },
        { "the same filter", [] {}, false, "a [b]" },
        { "the same filter, other settings", [&] { filter = ByFirstLetter(0b110); }, true, "[b] c" },
        { "no filter", [&] { filter = {}; }, true, "sub a [b] c" },
        { "another order", [&] { sortKey = SortMode::None; }, true, "a [b] c sub" },
        { "and back", [&] { sortKey = SortMode::Name; }, true, "sub a [b] c" },
        { "folders among files", [&] { SetPreferenceNumber(Preference::FoldersFirst, 0); }, true, "a [b] c sub" },
        { "a date, which may be the order", [&] { Disk().SetDates("/p/a", Day(1), Day(9)), Relist(); }, true, "a [b] c sub" },
        { "something elsewhere", [&] { Disk().AddFile("/q/x", ""), q->MarkDirty(), q->Populate(); }, true, "a [b] c sub" },
        { "another folder", [&] { std::swap(top, q); }, true, "a x" },
        { "and back again", [&] { std::swap(top, q); }, true, "a b c sub" },
        { "one that does not tell of changes", [&] { NodeRef(Make<BrowserBaseListNode>()(nullptr, TextOf("m")))->InsertLast(top.Get()); },
          true, "a b c m sub" },
        { "it must be asked each time", [] {}, true, "a b c m sub" },
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        row.change();
        const uint32_t before = Generation();
        Synchronize(filter);
        EXPECT_EQ(Text(), row.end);
        EXPECT_EQ(Generation() != before, row.isMade);
    }
    top->RemoveChildren();
    Synchronize(filter);
    Synchronize(filter);
    EndPreferences();
}

TEST_F(EntryList, TellsOnceForEachTimeThatSomethingWasSelected)
{
    const struct {
        const char* what;
        std::function<void()> change;
        const char* end;
        int messages;
    } rows[] = {
        { "select", [&] { list.SetSelected(0, true); }, "[a] b c d", 1 },
        { "again", [&] { list.SetSelected(0, true); }, "[a] b c d", 0 },
        { "outside", [&] { list.Toggle(4), list.Toggle(-1), list.SetSelected(9, true); }, "[a] b c d", 0 },
        { "toggle", [&] { list.Toggle(2); }, "[a] b [c] d", 1 },
        { "range", [&] { list.SetRange(true, 1, EntrySelection::toEnd); }, "[a] [b] [c] [d]", 1 },
        { "block", [&] { list.SetSelectedBlock(0, 3, 2, 1); }, "[a] b [c] d", 1 },
        { "by node", [&] { Select("d"), Select("a", false); }, "a b [c] [d]", 2 },
        { "unknown node", [&] { EXPECT_FALSE(list.SetNodeSelected(NodeRef(top), true)); }, "a b [c] [d]", 0 },
        { "looked for", [&] { list.FindNode(Child(*top, "d")), list.IsNodeSelected(NodeRef()); }, "a b [c] [d]", 0 },
        { "visible", [&] { list.SetVisibleRange(0, 3); }, "a b [c] [d]", 0 },
        { "several at once",
          [&] {
              const Writer many(list);
              many->Clear(), many->Toggle(1), many->Toggle(0);
          },
          "[a] [b] c d", 1 },
        { "several and nothing",
          [&] {
              const Writer none(list);
              none->SetSelected(0, true), none->SetVisibleRange(1, 2);
          },
          "[a] [b] c d", 0 },
        { "clear", [&] { list.ClearSelection(); }, "a b c d", 1 },
    };
    MakeFolder("/p", { "a", "b", "c", "d" });
    Synchronize();
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        row.change();
        EXPECT_EQ(Text(), row.end);
        EXPECT_EQ(Messages(), row.messages);
    }
}

TEST_F(EntryList, OthersReadWhatIsSelectedAndWhereTheyAre)
{
    MakeFolder("/p", { "a", "b", "c", "d" });
    Synchronize();
    list.SetRange(true, 1, 2);
    list.SetVisibleRange(0, 1);
    Array<NodeRef> nodes;
    const SelectionState state = list.GetSelection(nodes);
    ASSERT_EQ(nodes.Count(), 2U);
    EXPECT_EQ(nodes[1], NodeRef(Child(*top, "c")));
    EXPECT_EQ(state.selectedCount, 2);
    EXPECT_EQ(state.first, 1);
    EXPECT_EQ(state.last, 2);
    EXPECT_EQ(state.anchor, 1);
    EXPECT_EQ(state.focus, 2);
    EXPECT_EQ(state.count, 4);
    EXPECT_TRUE(list.IsNodeSelected(Child(*top, "b")));
    EXPECT_FALSE(list.IsNodeSelected(Child(*top, "a")));
    EXPECT_EQ(list.GetNode(3), NodeRef(Child(*top, "d")));
    EXPECT_FALSE(list.GetNode(4));

    const EntrySnapshot taken = list.TakeSnapshot();
    ContentViewEntry entry;
    EXPECT_TRUE(list.ReadEntry(taken, 0, entry));
    EXPECT_EQ(NameOf(entry), "a");
    EXPECT_TRUE(entry.IsVisible());
    EXPECT_FALSE(list.ReadEntry(taken, 4, entry));
    EXPECT_FALSE(list.ReadEntry(taken, -1, entry));
    const std::function<void()> changes[] = {
        [&] { list.Toggle(3); }, // the last selected one
        [&] { list.SetVisibleRange(1, 2); },
        [&] { Disk().Remove("/p/d"), Relist(), Synchronize(); },
    };
    for (const auto& change : changes) {
        const EntrySnapshot before = list.TakeSnapshot();
        change();
        EXPECT_FALSE(list.ReadEntry(before, 0, entry));
        EXPECT_TRUE(list.ReadEntry(list.TakeSnapshot(), 0, entry));
    }
    EXPECT_EQ(NameOf(entry), "a");
}

TEST_F(EntryList, AClosedWindowHoldsNoNodesAndFindsThemAgain)
{
    MakeFolder("/p", { "a", "b", "c", "d" });
    Synchronize();
    list.SetRange(true, 1, 2);
    (void)Messages();
    list.Park();
    EXPECT_EQ(Text(), ". [.] [.] .");
    Array<NodeRef> nodes;
    EXPECT_EQ(list.GetSelection(nodes).selectedCount, 2);
    EXPECT_TRUE(nodes.IsEmpty());
    EXPECT_EQ(list.FindNode(Child(*top, "a")), -1);
    Disk().Remove("/p/b");
    Disk().AddFile("/p/e", "", Day(1));
    Relist();
    list.Unpark(FirstOf(*top));
    EXPECT_EQ(Text(), "a [.] [c] d");
    EXPECT_EQ(list.FindNode(Child(*top, "c")), 2);
    EXPECT_EQ(Messages(), 0) << "so far nothing has been lost";
    Synchronize();
    EXPECT_EQ(Text(), "a [c] d e");
    EXPECT_EQ(Messages(), 1);

    list.Park();
    list.Unpark(NodeRef());
    EXPECT_EQ(Text(), ". [.] . .");
    list.Park();
    Synchronize();
    EXPECT_EQ(Text(), "a c d e");
    list.Unpark(FirstOf(*top));
    EXPECT_EQ(Text(), "a c d e") << "what was parked is of another array";
}

// The checked table reports a lock that is taken out of order.
TEST_F(EntryList, NodesAreAskedAndEventsPostedInTheOrderOfLocks)
{
    MakeFolder("/p", { "a.tif", "b.png", "sub/" });
    EXPECT_TRUE(CreatePluginRegistry());
    RegisterAllPlugins();
    Synchronize();
    EventRing ring;
    BrowserEvent event;
    {
        const Reader entries(list);
        for (const ContentViewEntry& entry : entries->All()) {
            String text;
            BrowserURL url;
            BrowserContentNode& node = *ContentOf(entry.node);
            node.GetName(text), node.GetTypeName(text, TypeDetail::Specific);
            (void)node.GetUrl(url, 0);
            (void)node.GetPlugin(PLUGIN_QUICK_TEST);
            Destroy(node.GetPreview(0, 32));
        }
        ring.Post(BrowserEvent::Type::Select, NodeRef(top));
    }
    {
        LockGuard listing(top->contentLock, LockRank::Content);
        ring.Post(BrowserEvent::Type::Deselect, NodeRef(top));
    }
    {
        const Writer entries(list);
        EXPECT_TRUE(ring.Take(event) && ring.Take(event));
        entries->SetNodeSelected(event.node, true);
    }
    top->RemoveChildren();
    Synchronize();
    FreeAllPlugins();
    FreePluginRegistry();
}

TEST_F(EntryList, AnEmptyFolderIsNoFailure)
{
    MakeFolder("/p", {});
    Disk().AddFolder("/p");
    Synchronize();
    EXPECT_EQ(Text(), "");
    EXPECT_EQ(Messages(), 0);
    list.Synchronize(NodeRef(), SortMode::Type, {});
    list.SetRange(true, 0, EntrySelection::toEnd);
    list.SetSelectedBlock(0, 0, 1, 1);
    list.SetVisibleRange(0, 10);
    list.Park();
    list.Unpark(NodeRef());
    EXPECT_EQ(Messages(), 0);
    EXPECT_EQ(list.GetState().count, 0);
}

// Each step of a refresh without memory: the list is whole or empty, says so if something
// was selected, and is whole again with the next refresh.
TEST_F(EntryList, WithoutMemoryARefreshIsWholeOrEmpty)
{
    MakeFolder("/p", { "a", "b", "c", "d", "e", "f", "g", "h", "i", "j" });
    int32_t round = 0;
    for (Failing failing : { Failing::FromThereOn, Failing::Once }) {
        int64_t empty = 0, whole = 0, failures = 1;
        for (int64_t nth = 1; failures; nth++, round++) {
            round % 2 ? Disk().Remove("/p/ab") : Disk().AddFile("/p/ab", "", Day(1));
            Relist();
            Synchronize();
            list.SetRange(true, 0, EntrySelection::toEnd);
            const int32_t selected = list.GetState().selectedCount;
            round % 2 ? Disk().AddFile("/p/c", "", Day(1)) : Disk().Remove("/p/c");
            Relist();
            NodeRef first = FirstOf(*top);
            testHost.Faults().Fail(FailClass::Memory, nth, failing);
            list.Synchronize(first, SortMode::Name, {});
            failures = testHost.Faults().FailuresOf(FailClass::Memory);
            testHost.Faults().Clear();
            const bool isEmpty = list.GetState().count == 0;
            EXPECT_EQ(list.GetState().selectedCount, isEmpty ? 0 : selected - (round + 1) % 2) << nth;
            (isEmpty ? empty : whole)++;
            Synchronize();
            EXPECT_EQ(list.GetState().count, static_cast<int32_t>(Names(*top).size()));
            ExpectSorted();
        }
        EXPECT_GE(empty, 5) << "without the sort, its keys or the entries";
        EXPECT_GE(whole, 1) << "without a message, without a name, and the last run";
    }
}

TEST_F(EntryList, WithoutMemoryOperationsDoWhatCanBeDone)
{
    MakeFolder("/p", { "a", "b", "c" });
    Synchronize();
    Select("b");
    testHost.Faults().Fail(FailClass::Memory, 1, Failing::FromThereOn);
    Array<NodeRef> nodes;
    EXPECT_EQ(list.GetSelection(nodes).selectedCount, 1);
    EXPECT_TRUE(nodes.IsEmpty());
    list.Toggle(0);
    list.Park();
    testHost.Faults().Clear();
    EXPECT_EQ(Text(), "[.] [.] .");
    list.Unpark(FirstOf(*top));
    EXPECT_EQ(Text(), "[.] [.] .");
    (void)Messages();
    Synchronize();
    EXPECT_EQ(Text(), "a b c");
    EXPECT_EQ(Messages(), 1) << "the selection is lost";
}

} // namespace
