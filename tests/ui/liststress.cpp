// A list while others read it: the main thread refreshes and selects, workers read rows as
// the maker of previews does, look for nodes and change the folder. Whenever all rest, a
// refresh gives what a list made anew would be: no change has been overlooked.

#include <atomic>
#include <random>
#include <shared_mutex>
#include <thread>

#include "listfixture.h"

#include "support/watchdog.h"

using namespace browser;
using namespace vx3::tests;
using Reader = ContentViewEntryList::Reader;
using Writer = ContentViewEntryList::Writer;

namespace {

constexpr int files = 60;
constexpr int names = 90;
constexpr auto time = std::chrono::milliseconds(40); // between two rests

vx3::testing::TestHostOptions LightChecks()
{
    vx3::testing::TestHostOptions options = InMemory();
    options.checks = vx3::testing::Checks::Light;
    return options;
}

class ListStress : public ListTest
{
protected:
    using Random = std::mt19937;

    ListStress()
        : ListTest(LightChecks())
    {
        Disk().AddFolder("/p/sub");
        for (int i = 0; i < files; i++)
            Disk().AddFile("/p/" + std::to_string(i), std::string(static_cast<size_t>(i % 5), 'x'), Day(1));
        top = Top("/p");
    }

    // Any thread.
    DirectoryRef AnyChild(Random& random)
    {
        const Strings all = Names(*top);
        return all.empty() ? DirectoryRef() : Child(*top, all[random() % all.size()]);
    }

    void ReadRows(Random& random)
    {
        ContentViewEntry entry;
        const EntrySnapshot taken = list.TakeSnapshot();
        EXPECT_LE(taken.lastSelected, taken.count);
        int32_t i = static_cast<int32_t>(random() % 3);
        for (; list.ReadEntry(taken, i, entry); i++)
            AskNode(entry);
    }

    void ReadAll()
    {
        const Reader entries(list);
        int32_t selected = 0;
        for (const ContentViewEntry& entry : entries->All()) {
            AskNode(entry);
            selected += entry.IsSelected();
        }
        EXPECT_EQ(selected, entries->SelectedCount());
    }

    static void AskNode(const ContentViewEntry& entry)
    {
        String text;
        BrowserURL url;
        FileDate date;
        if (!entry.node)
            return;
        BrowserContentNode& node = *ContentOf(entry.node);
        node.GetName(text);
        (void)node.GetUrl(url, 0);
        (void)node.GetDate(DateKind::Modified, date);
        (void)node.GetAttributes(nullptr);
        node.GetTypeName(text, TypeDetail::Specific);
    }

    void LookFor(Random& random)
    {
        Array<NodeRef> nodes;
        const DirectoryRef child = AnyChild(random);
        (void)list.IsNodeSelected(child);
        (void)list.FindNode(child);
        EXPECT_GE(list.GetSelection(nodes).selectedCount, static_cast<int32_t>(nodes.Count())); // parked ones have no node
    }

    void ChangeFolder(Random& random)
    {
        const DirectoryRef child = AnyChild(random), sub = Child(*top, "sub");
        const String name = TextOf(std::to_string(random() % names));
        if (!child || child == sub)
            return;
        switch (random() % 6) {
        case 0: (void)child->Rename(ChangeMode::Do, name); break;
        case 1: (void)child->MoveBehindSiblings(*top); break;
        case 2: (void)top->CopyInto(child, ChangeMode::Do, &name, {}, 0); break;
        case 3:
            if (random() % 3 == 0)
                (void)child->Delete(ChangeMode::Do, {});
            break;
        case 4: (void)sub->MoveInto(child, ChangeMode::Do, {}); break;
        default: (void)top->MoveInto(AnyChildOf(*sub), ChangeMode::Do, {});
        }
    }

    static ContentRef AnyChildOf(BrowserContentNode& folder)
    {
        NodeRef first;
        folder.GetFirstChild(first);
        return ToContent(first);
    }

    // The main thread.
    void ChangeList(Random& random)
    {
        const auto place = static_cast<int32_t>(random() % files);
        switch (random() % 8) {
        case 0: sortKey = SortModeOf(static_cast<int32_t>(1 + random() % 6)); break;
        case 1: list.SetRange(random() % 2, place, place + 5); break;
        case 2: list.SetSelectedBlock(place, place + 20, 7, 3); break;
        case 3: list.SetNodeSelected(AnyChild(random), true); break;
        case 4: list.SetVisibleRange(place, place + 9); break;
        case 5:
            if (random() % 20 == 0)
                list.Park(), list.Unpark(FirstOf(*top));
            break;
        default: Synchronize();
        }
        vx3::core::DeliverQueuedMessages();
    }

    void ExpectUpToDate()
    {
        Array<NodeRef> sorted;
        Synchronize();
        ASSERT_TRUE(MakeSortedChildren(sortKey, FirstOf(*top), sorted));
        const Reader entries(list);
        ASSERT_EQ(entries->Count(), static_cast<int32_t>(sorted.Count()));
        for (size_t i = 0; i < sorted.Count(); i++)
            ASSERT_EQ(entries->All()[i].node, sorted[i]) << i;
    }
};

TEST_F(ListStress, NoChangeIsOverlookedAndNobodyWaitsForEver)
{
    Watchdog watchdog(StressSeconds() + std::chrono::seconds(60));
    std::shared_mutex resting; // shared by those who work
    std::atomic<bool> stop = false, wantsRest = false;
    std::atomic<int64_t> operations = 0;
    std::vector<std::thread> workers;
    auto work = [&](auto job) {
        workers.emplace_back([&, job, seed = workers.size()] {
            for (Random dice(static_cast<unsigned>(seed)); !stop; operations++) {
                while (wantsRest)
                    std::this_thread::yield();
                const std::shared_lock guard(resting);
                job(dice);
            }
        });
    };
    work([this](Random& dice) { ReadRows(dice); });
    work([this](Random&) { ReadAll(); });
    work([this](Random& dice) { LookFor(dice); });
    for (int i = 0; i < 2; i++)
        work([this](Random& dice) { ChangeFolder(dice); });

    Random random(99);
    int rests = 0;
    const auto end = std::chrono::steady_clock::now() + StressSeconds();
    for (auto rest = std::chrono::steady_clock::now(); rest < end && !HasFatalFailure(); rests++) {
        for (rest += time; std::chrono::steady_clock::now() < rest; operations++)
            ChangeList(random);
        wantsRest = true;
        const std::unique_lock guard(resting);
        ExpectUpToDate();
        wantsRest = false;
    }
    stop = true;
    for (std::thread& worker : workers)
        worker.join();
    EXPECT_GT(operations, 1000);
    EXPECT_GT(rests, 10);
    RecordProperty("operations", std::to_string(operations));
    list.Park();
}

} // namespace
