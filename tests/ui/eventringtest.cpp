// Events of other threads: in order, one by one, and no more than the ring holds.

#include "entryfixture.h"

#include "ui/eventring.h"

using namespace browser;
using namespace vx3::tests;
using Type = BrowserEvent::Type;

namespace {

class Ring : public EntryTest
{
protected:
    // For example "select a".
    std::string TakeOne()
    {
        static constexpr const char* names[] = { "none", "clear", "select", "deselect" };
        BrowserEvent event;
        if (!ring.Take(event))
            return "";
        return std::string(names[static_cast<size_t>(event.type)]) + " " + (event.node == Node('a') ? "a" : event.node ? "other" : "none");
    }

    EventRing ring;
};

TEST_F(Ring, GivesEventsInTheirOrder)
{
    EXPECT_EQ(TakeOne(), "");
    ring.Post(Type::ClearSelection, NodeRef());
    ring.Post(Type::Select, Node('a'));
    EXPECT_EQ(TakeOne(), "clear none");
    ring.Post(Type::Deselect, Node('b'));
    EXPECT_EQ(TakeOne(), "select a");
    EXPECT_EQ(TakeOne(), "deselect other");
    EXPECT_EQ(TakeOne(), "");
}

TEST_F(Ring, DropsWhatDoesNotFitAndGoesOn)
{
    constexpr int posted = 600;
    for (int lap = 0; lap < 4; lap++) { // each begins at another slot
        std::vector<NodeRef> nodes;
        for (int i = 0; i < posted; i++) {
            nodes.push_back(NodeRef(Make<LetterNode>()(i)));
            ring.Post(Type::Select, nodes.back());
        }
        BrowserEvent event;
        uint32_t taken = 0;
        for (; ring.Take(event); taken++)
            EXPECT_EQ(event.node, nodes[taken]) << lap;
        EXPECT_EQ(taken, EventRing::capacity);
        ring.Post(Type::Select, Node('a'));
        EXPECT_EQ(TakeOne(), "select a");
    }
}

TEST_F(Ring, HoldsANodeNoLongerThanUntilItIsTaken)
{
    static int live = 0;
    struct Counted : RTreeNode {
        Counted() { live++; }
        ~Counted() override { live--; }
    };
    {
        EventRing abandoned;
        for (EventRing* each : { &ring, &abandoned }) {
            each->Post(Type::Select, NodeRef(Make<Counted>()()));
            each->Post(Type::Deselect, NodeRef(Make<Counted>()()));
        }
        BrowserEvent event;
        EXPECT_EQ(live, 4);
        EXPECT_TRUE(ring.Take(event));
        EXPECT_EQ(live, 4);
        EXPECT_TRUE(ring.Take(event));
        EXPECT_EQ(live, 3);
        event = {};
        EXPECT_EQ(live, 2);
    }
    EXPECT_EQ(live, 0);
}

} // namespace
