// A list beside a naive model of it, through random changes of the disk, the tree, the
// selection, the order and the filter. A change that a refresh overlooks shows here.

#include <algorithm>
#include <random>
#include <set>

#include "listfixture.h"

#include "plugins/registryorder.h"
#include "services/preferencesend.h"

using namespace browser;
using namespace vx3::tests;

namespace {

constexpr int startFiles = 14;
constexpr SortMode modes[] = { SortMode::Name, SortMode::Modified, SortMode::Created, SortMode::Size, SortMode::Type, SortMode::None };
constexpr const char* suffixes[] = { ".tif", ".png", "", ".obj" };

struct ByAddress {
    bool operator()(const NodeRef& a, const NodeRef& b) const { return a.Get() < b.Get(); }
};
using Nodes = std::set<NodeRef, ByAddress>;

class ListModel : public ListTest
{
protected:
    ListModel()
    {
        EXPECT_TRUE(CreatePluginRegistry());
        RegisterAllPlugins();
        ReadPreferences();
        for (int i = 0; i < startFiles; i++)
            MakeFile();
        MakeFolder("/p", { "sub/" });
        Disk().AddFile("/p/sub/inner", "", Day(1));
    }
    ~ListModel() override
    {
        order.clear();
        marked.clear();
        list.Park();
        top->RemoveChildren();
        top = DirectoryRef();
        FreeAllPlugins();
        FreePluginRegistry();
        EndPreferences();
    }

    uint32_t Below(size_t bound) { return static_cast<uint32_t>(random() % bound); }
    std::string AnyName() { return std::string(1, static_cast<char>('a' + Below(4))) + std::to_string(Below(30)) + suffixes[Below(4)]; }
    VX3FileDate AnyDay() { return Day(static_cast<uint16_t>(1 + Below(3)), static_cast<uint16_t>(Below(3))); }
    DirectoryRef AnyChild()
    {
        const Strings names = Names(*top);
        return names.empty() ? DirectoryRef() : Child(*top, names[Below(names.size())]);
    }
    std::string PathOfAny()
    {
        const DirectoryRef child = AnyChild();
        return child ? NativeOf(child->GetPath()) : "/p/a1";
    }
    void MakeFile()
    {
        const std::string path = "/p/" + AnyName();
        Disk().AddFile(path, std::string(Below(4), 'x'));
        Disk().SetDates(path, AnyDay(), AnyDay());
    }

    void ChangeTheDisk()
    {
        const std::string path = PathOfAny();
        switch (Below(6)) {
        case 0: MakeFile(); break;
        case 1: Disk().Remove(path); break;
        case 2: Disk().SetDates(path, AnyDay(), AnyDay()); break;
        case 3: Disk().SetReadOnly(path, Below(2)); break;
        case 4: Disk().Remove(path), Disk().AddFolder(path); break;
        default: Disk().Remove(path), Disk().AddFile(path, "longer than any"), Disk().SetDates(path, Day(1), Day(1));
        }
        Relist();
    }

    void ChangeTheTree()
    {
        const DirectoryRef child = AnyChild(), sub = Child(*top, "sub");
        if (!child)
            return;
        switch (Below(7)) {
        case 0: (void)child->Rename(ChangeMode::Do, TextOf(AnyName())); break;
        case 1: (void)child->Delete(ChangeMode::Do, {}); break;
        case 2: (void)child->GetPlugin(0); break;
        case 3: child->InsertBefore(AnyChild().Get()); break;
        case 4: (void)child->MoveBehindSiblings(*top); break;
        case 5:
            if (sub)
                (void)sub->MoveInto(ContentRef(child), ChangeMode::Do, {});
            break;
        default:
            if (sub)
                (void)sub->Populate();
        }
    }

    void ChangeTheView()
    {
        switch (Below(4)) {
        case 0: sortKey = modes[Below(std::size(modes))]; break;
        case 1: filter = Below(2) ? EntryFilter() : ByFirstLetter(Below(16) | 1u << ('s' - 'a')); break;
        case 2: SetPreferenceNumber(Preference::FoldersFirst, static_cast<int32_t>(Below(2))); break;
        default: list.Park(), list.Unpark(FirstOf(*top));
        }
    }

    void ChangeTheSelection()
    {
        auto place = [&] { return static_cast<int32_t>(Below(order.size() + 2)) - 1; };
        const int32_t from = place(), to = place();
        const bool selected = Below(3) != 0;
        switch (Below(3)) {
        case 0: list.SetRange(selected, from, to); break;
        case 1: list.Toggle(from); break;
        default:
            if (const NodeRef child = AnyChild())
                list.SetNodeSelected(child, selected);
        }
        TakeSelection();
    }

    void TakeSelection()
    {
        marked.clear();
        const ContentViewEntryList::Reader entries(list);
        for (const ContentViewEntry& entry : entries->All())
            if (entry.IsSelected())
                marked.insert(entry.node);
    }

    // What a list would be that is made anew each time.
    void MakeModel()
    {
        Array<NodeRef> sorted;
        ASSERT_TRUE(MakeSortedChildren(sortKey, FirstOf(*top), sorted));
        order.clear();
        for (const NodeRef& node : sorted)
            if (!filter.keeps || filter.keeps(filter.settings, *ContentOf(node)))
                order.push_back(node);
        Nodes kept;
        for (const NodeRef& node : order)
            if (marked.count(node))
                kept.insert(node);
        lost = marked.size() - kept.size();
        marked = std::move(kept);
    }

    void ExpectModel()
    {
        const ContentViewEntryList::Reader entries(list);
        ASSERT_EQ(entries->Count(), static_cast<int32_t>(order.size()));
        EXPECT_EQ(entries->SelectedCount(), static_cast<int32_t>(marked.size()));
        int32_t first = -1, last = -1;
        for (int32_t i = 0; i < entries->Count(); i++) {
            const ContentViewEntry& entry = *entries->EntryAt(i);
            ASSERT_EQ(entry.node, order[static_cast<size_t>(i)]) << i;
            ASSERT_EQ(entry.IsSelected(), marked.count(entry.node) == 1) << i;
            if (entry.IsSelected())
                first = first < 0 ? i : first, last = i;
        }
        EXPECT_EQ(entries->FirstSelected(), first);
        EXPECT_EQ(entries->LastSelected(), last);
        EXPECT_TRUE(marked.empty() || entries->Has(entries->Anchor()));
    }

    std::mt19937 random{ 5 };
    EntryFilter filter;
    std::vector<NodeRef> order;
    Nodes marked; // counted, so that no other node takes the address of one that is gone
    size_t lost = 0;
};

TEST_F(ListModel, ARefreshGivesWhatAListMadeAnewWouldBe)
{
    constexpr int rounds = 20000;
    int made = 0, told = 0;
    for (int round = 0; round < rounds && !HasFatalFailure(); round++) {
        for (uint32_t n = Below(3); n > 0; n--) {
            switch (Below(8)) {
            case 0:
            case 1:
            case 2: ChangeTheDisk(); break;
            case 3: ChangeTheTree(); break;
            case 4: ChangeTheView(); break;
            default: ChangeTheSelection();
            }
        }
        (void)Messages();
        const uint32_t generation = list.TakeSnapshot().generation;
        Synchronize(filter);
        SCOPED_TRACE(round);
        MakeModel();
        ExpectModel();
        made += list.TakeSnapshot().generation != generation;
        const int heard = Messages();
        told += heard;
        EXPECT_TRUE(heard == 1 || (heard == 0 && lost == 0));
    }
    EXPECT_GT(made, rounds / 4);
    EXPECT_GT(rounds - made, rounds / 4) << "as a rule nothing has changed";
    EXPECT_GT(told, rounds / 40);
    RecordProperty("made", made);
}

} // namespace
