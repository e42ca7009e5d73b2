// Windows that open, go somewhere and close on the main thread while others list folders,
// change the tree, announce it and post events. Whenever all rest, a window shows what is
// there; in the end nothing is left.

#include <atomic>
#include <random>
#include <thread>

#include "support/watchdog.h"
#include "windowfixture.h"

using namespace browser;
using namespace vx3::tests;

namespace {

constexpr size_t workers = 3;
constexpr int turns = 40; // of the main thread between two rests

class WindowStress : public WindowTest
{
protected:
    using Random = std::mt19937;

    WindowStress()
        : WindowTest(WithWindows(vx3::testing::Checks::Light))
        , place(AddPlace("shared"))
    {
        for (int i = 0; i < 20; i++)
            Disk().AddFile("/p/sub/" + std::to_string(i), "x");
        Disk().AddFolder("/p/other");
        nodes = { NodeOf("/p"), NodeOf("/p/sub"), NodeOf("/p/other"), NodeOf("/p/sub/3"), place, AddChild(*place, "stays") };
        lasting = &Open(place);
    }
    ~WindowStress() override
    {
        nodes.clear();
        place->Remove();
    }

    // --- Any thread ---

    ContentRef AnyNode(Random& random) { return nodes[random() % nodes.size()]; }
    void Work(Random& random)
    {
        const ContentRef node = AnyNode(random);
        NodeRef child;
        switch (random() % 6) {
        case 0:
            node->MarkDirty();
            node->GetFirstChild(child);
            break;
        case 1: ChangePlace(random); break;
        case 2: lasting->NodeChanged(node); break;
        default: NotifyChanged(node);
        }
        done++;
    }
    // A child comes or goes, and the window that shows its folder hears of it.
    void ChangePlace(Random& random)
    {
        NodeRef child;
        place->GetFirstChildLinked(child);
        for (auto steps = random() % 20; child && steps > 0; steps--) {
            NodeRef next;
            child->GetNext(next);
            child = std::move(next);
        }
        const ContentRef old = ToContent(child);
        if (old && old.Get() != nodes.back().Get()) {
            lasting->ChildLeft(old, place.Get());
            old->Remove();
        } else {
            const ContentRef added = NewChild(*place, "n" + std::to_string(random() % 1000));
            if (added->AttachTo(*place))
                lasting->NodeChangedWithChild(added, place.Get());
        }
        NotifyChanged(place);
    }

    // --- The main thread ---

    BrowserDialog* AnyWindow(Random& random)
    {
        BrowserDialog* window = FindBrowserWindow(static_cast<int32_t>(random() % windowSlots));
        return window == lasting ? nullptr : window;
    }
    void Turn(Random& random)
    {
        BrowserDialog* window = AnyWindow(random);
        switch (random() % 5) {
        case 0:
            if (window)
                Close(*window);
            break;
        case 1:
            if (window)
                window->GoTo(AnyNode(random));
            break;
        case 2: Tick(); break;
        case 3: lasting->Pane().SelectAll(); break;
        default: (void)OpenBrowserWindow(AnyNode(random)); break;
        }
    }
    void ExpectTheLastingWindowToBeRight()
    {
        NotifyChanged(place);
        Tick();
        std::multiset<std::string> shown, there;
        NodeRef child;
        const ContentViewEntryList::Reader list(lasting->Pane().GetList());
        for (const ContentViewEntry& entry : list->All())
            shown.insert(Utf8(ContentOf(entry.node)->GetNameRef()));
        for (place->GetFirstChildLinked(child); child; child->GetNext(child))
            there.insert(Utf8(ContentOf(child)->GetNameRef()));
        EXPECT_EQ(shown, there);
    }

    Ref<TestPlace> place;
    std::vector<ContentRef> nodes; // the last one stays in the place
    BrowserDialog* lasting;
    std::atomic<int64_t> done = 0;
};

// The workers of one round end before anything is looked at.
TEST_F(WindowStress, AnnouncementsReachWindowsThatComeAndGo)
{
    Watchdog watchdog(StressSeconds() + std::chrono::seconds(60));
    const auto end = std::chrono::steady_clock::now() + StressSeconds();
    Random random(1);
    int rounds = 0;
    for (; std::chrono::steady_clock::now() < end; rounds++) {
        std::atomic<bool> stop = false;
        std::vector<std::thread> threads;
        for (size_t i = 0; i < workers; i++)
            threads.emplace_back([this, &stop, seed = static_cast<uint32_t>(rounds * workers + i)] {
                for (Random own(seed); !stop;)
                    Work(own);
            });
        for (int i = 0; i < turns; i++)
            Turn(random);
        stop = true;
        for (std::thread& thread : threads)
            thread.join();
        ExpectTheLastingWindowToBeRight();
    }
    EXPECT_GT(rounds, 2);
    EXPECT_GT(done, rounds);
    RecordProperty("announced", std::to_string(done));
}

} // namespace
