// Several threads post into one ring while the main thread takes: nothing comes twice or
// out of order, nothing gets lost but what did not fit, and every node goes.

#include <array>
#include <atomic>
#include <thread>

#include "support/modulefixture.h"
#include "support/watchdog.h"

#include "ui/eventring.h"

using namespace browser;
using namespace vx3::tests;

namespace {

constexpr size_t posters = 4;

std::atomic<int64_t> liveNodes = 0;

class PostedNode : public RTreeNode
{
public:
    PostedNode(size_t ownPoster, int64_t ownNumber)
        : poster(ownPoster)
        , number(ownNumber)
    {
        liveNodes++;
    }
    ~PostedNode() override { liveNodes--; }

    const size_t poster;
    const int64_t number;
};

class RingStress : public ModuleTest
{
protected:
    RingStress()
        : ModuleTest(LightChecks())
    {
    }
    static vx3::testing::TestHostOptions LightChecks()
    {
        vx3::testing::TestHostOptions options;
        options.checks = vx3::testing::Checks::Light;
        return options;
    }

    void TakeAll()
    {
        BrowserEvent event;
        while (ring.Take(event)) {
            const auto& node = static_cast<const PostedNode&>(*event.node);
            EXPECT_EQ(event.type, BrowserEvent::Type::Select);
            EXPECT_GT(node.number, lastTaken[node.poster]);
            lastTaken[node.poster] = node.number;
            taken++;
        }
    }

    EventRing ring;
    std::array<int64_t, posters> lastTaken = { -1, -1, -1, -1 };
    int64_t taken = 0;
};

TEST_F(RingStress, EventsOfAThreadKeepTheirOrder)
{
    Watchdog watchdog(StressSeconds() + std::chrono::seconds(60));
    std::atomic<bool> stop = false;
    std::array<int64_t, posters> posted = {};
    std::array<std::thread, posters> threads;
    for (size_t i = 0; i < posters; i++)
        threads[i] = std::thread([&, i] {
            for (; !stop; posted[i]++)
                ring.Post(BrowserEvent::Type::Select, NodeRef(Make<PostedNode>()(i, posted[i])));
        });
    const auto end = std::chrono::steady_clock::now() + StressSeconds() / 3;
    while (std::chrono::steady_clock::now() < end)
        TakeAll();
    stop = true;
    for (std::thread& thread : threads)
        thread.join();
    TakeAll();
    int64_t all = 0;
    for (int64_t count : posted)
        all += count;
    EXPECT_LE(taken, all);
    EXPECT_GT(taken, EventRing::capacity);
    EXPECT_EQ(liveNodes, 0);
    RecordProperty("posted", std::to_string(all));
}

} // namespace
