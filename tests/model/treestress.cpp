// Eight threads change the links below one parent. Whatever they do, the links agree in
// both directions at the end, every node is freed, and nobody waits for ever.

#include "support/modulefixture.h"

#include <array>
#include <atomic>
#include <chrono>
#include <random>
#include <set>
#include <thread>

#include "model/rtreenode.h"
#include "support/watchdog.h"

using namespace browser;
using namespace vx3::tests;

namespace {

std::atomic<int64_t> liveNodes = 0;

class StressNode : public RTreeNode
{
public:
    StressNode() { liveNodes++; }
    ~StressNode() override { liveNodes--; }
};

NodeRef NewNode()
{
    return NodeRef(Make<StressNode>()());
}

constexpr size_t threads = 8;
constexpr size_t nodesOfAThread = 24;

// Every thread may change any node: the nodes are shared.
using Nodes = std::array<NodeRef, threads * nodesOfAThread>;

class TreeStress : public ModuleTest
{
protected:
    TreeStress()
        : ModuleTest(LightChecks())
    {
    }

    static vx3::testing::TestHostOptions LightChecks()
    {
        vx3::testing::TestHostOptions options;
        options.checks = vx3::testing::Checks::Light;
        return options;
    }
};

void DoSomething(std::mt19937& random, Nodes& nodes, RTreeNode& parent)
{
    RTreeNode& node = *nodes[random() % nodes.size()];
    NodeRef other;
    switch (random() % 9) {
    case 0:
    case 1: node.InsertLast(&parent); break;
    case 2: node.InsertBefore(nodes[random() % nodes.size()].Get()); break;
    case 3: node.Detach(); break;
    case 4: node.Remove(); break;
    case 5: node.GetNext(other); break;
    case 6: node.GetParent(other); break;
    case 7: node.SetIndexKey(static_cast<uint32_t>(random()), 30); break;
    default:
        size_t steps = 0;
        for (parent.GetFirstChild(other); other && steps < nodes.size(); steps++)
            other->GetNext(other);
    }
}

void ExpectConsistentLinks(RTreeNode& parent)
{
    std::vector<RTreeNode*> forward, backward;
    NodeRef node, above;
    for (parent.GetFirstChild(node); node && forward.size() <= threads * nodesOfAThread; node->GetNext(node)) {
        forward.push_back(node.Get());
        node->GetParent(above);
        EXPECT_EQ(above.Get(), &parent);
    }
    for (parent.GetLastChild(node); node && backward.size() <= threads * nodesOfAThread; node->GetPrev(node))
        backward.insert(backward.begin(), node.Get());
    EXPECT_EQ(forward, backward);
    EXPECT_EQ(std::set<RTreeNode*>(forward.begin(), forward.end()).size(), forward.size());
}

TEST_F(TreeStress, EightThreadsOnOneParent)
{
    Watchdog watchdog(StressSeconds() + std::chrono::seconds(60));
    auto* tree = Make<RTree>()();
    {
        NodeRef parent = NewNode();
        parent->InsertLast(tree);
        Nodes nodes;
        for (NodeRef& node : nodes)
            node = NewNode();
        std::atomic<bool> stop = false;
        std::atomic<int64_t> operations = 0;
        std::vector<std::thread> workers;
        for (size_t i = 0; i < threads; i++)
            workers.emplace_back([&, i] {
                std::mt19937 random(static_cast<unsigned>(i));
                for (; !stop; operations++)
                    DoSomething(random, nodes, *parent);
            });
        std::this_thread::sleep_for(StressSeconds());
        stop = true;
        for (std::thread& worker : workers)
            worker.join();
        EXPECT_GT(operations, 1000);
        RecordProperty("operations", std::to_string(operations));
        ExpectConsistentLinks(*parent);
    }
    delete tree;
    EXPECT_EQ(liveNodes, 0);
}

} // namespace
