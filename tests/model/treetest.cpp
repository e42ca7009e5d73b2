// Counted trees: links, counts, and what a removal leaves behind.

#include "support/modulefixture.h"

#include "model/rtreenode.h"

using namespace browser;
using namespace vx3::tests;
using vx3::testing::FailClass;

namespace {

int64_t liveNodes = 0;

class TestNode : public RTreeNode
{
public:
    explicit TestNode(int newId = 0)
        : id(newId)
    {
        liveNodes++;
    }
    ~TestNode() override { liveNodes--; }
    const int id;
};

NodeRef NewNode(int id = 0)
{
    return NodeRef(Make<TestNode>()(id));
}

std::vector<int> ChildrenOf(RTreeNode& parent)
{
    std::vector<int> forward, backward;
    NodeRef node;
    for (parent.GetFirstChild(node); node; node->GetNext(node))
        forward.push_back(static_cast<TestNode*>(node.Get())->id);
    for (parent.GetLastChild(node); node; node->GetPrev(node))
        backward.insert(backward.begin(), static_cast<TestNode*>(node.Get())->id);
    EXPECT_EQ(forward, backward);
    return forward;
}

class Tree : public ModuleTest
{
protected:
    Tree() { liveNodes = 0; }
    ~Tree() override { EXPECT_EQ(liveNodes, 0); }

    struct Owned {
        RTree* tree = Make<RTree>()();
        ~Owned() { delete tree; }
    };
};

TEST_F(Tree, LinksInEveryPlace)
{
    Owned owned;
    NodeRef a = NewNode(1), b = NewNode(2), c = NewNode(3), d = NewNode(4);
    a->InsertLast(owned.tree);
    b->InsertLast(owned.tree);
    c->InsertBefore(a.Get());
    d->InsertBefore(b.Get());
    EXPECT_EQ(ChildrenOf(*owned.tree), (std::vector<int>{ 3, 1, 4, 2 }));
    b->InsertBefore(c.Get());
    a->InsertLast(owned.tree);
    a->InsertLast(owned.tree);
    EXPECT_EQ(ChildrenOf(*owned.tree), (std::vector<int>{ 2, 3, 4, 1 }));
    d->Remove();
    EXPECT_EQ(ChildrenOf(*owned.tree), (std::vector<int>{ 2, 3, 1 }));
}

TEST_F(Tree, TopNodesHaveNoParentThatCallersSee)
{
    Owned owned;
    NodeRef top = NewNode(), child = NewNode(), parent;
    top->InsertLast(owned.tree);
    child->InsertLast(top.Get());
    top->GetParent(parent);
    EXPECT_FALSE(parent);
    EXPECT_EQ(top->GetParentRaw(), owned.tree);
    child->GetParent(parent);
    EXPECT_EQ(parent.Get(), top.Get());
    top->Remove();
    child->GetParent(parent);
    EXPECT_FALSE(parent);
    EXPECT_EQ(top->GetParentRaw(), nullptr);
    EXPECT_EQ(top->GetTree(), nullptr);
}

TEST_F(Tree, DetachKeepsTheSubtreeAndItsTree)
{
    Owned owned;
    NodeRef folder = NewNode(1), child = NewNode(2), other = NewNode(3);
    folder->InsertLast(owned.tree);
    child->InsertLast(folder.Get());
    other->InsertLast(owned.tree);
    folder->Detach();
    EXPECT_EQ(ChildrenOf(*folder), std::vector<int>{ 2 });
    EXPECT_EQ(folder->GetTree(), owned.tree);
    folder->InsertLast(other.Get());
    EXPECT_EQ(ChildrenOf(*other), std::vector<int>{ 1 });
    child->Detach();
    child->InsertLast(nullptr);
    EXPECT_EQ(ChildrenOf(*owned.tree), (std::vector<int>{ 3, 2 })) << "without a parent a node of a tree goes to its top";
    NodeRef stray = NewNode();
    stray->InsertLast(nullptr);
    EXPECT_EQ(stray->GetParentRaw(), nullptr);
}

TEST_F(Tree, TakesTheTreeOfItsNewParentWithAllBelow)
{
    Owned first, second;
    NodeRef top = NewNode(), middle = NewNode(), leaf = NewNode(), sibling = NewNode();
    middle->InsertLast(top.Get());
    leaf->InsertLast(middle.Get());
    sibling->InsertLast(top.Get());
    top->InsertLast(first.tree);
    EXPECT_EQ(leaf->GetTree(), first.tree);
    top->InsertLast(second.tree);
    for (NodeRef* node : { &top, &middle, &leaf, &sibling })
        EXPECT_EQ((*node)->GetTree(), second.tree);
}

TEST_F(Tree, InsertLastDetachedTakesOnlyUnlinkedNodes)
{
    Owned owned;
    NodeRef parent = NewNode(), linked = NewNode(1), after = NewNode(2), fresh = NewNode(3), child;
    parent->InsertLast(owned.tree);
    linked->InsertLast(parent.Get());
    after->InsertLast(parent.Get());
    linked->InsertLastDetached(parent.Get());
    parent->GetFirstChildLocked(child);
    EXPECT_FALSE(child) << "the lock was not held";
    EXPECT_EQ(testHost.Checked().TakeViolations().size(), 1u) << "the one critical stop";
    {
        LinkGuard guard(parent->Lock());
        fresh->InsertLastDetached(parent.Get());
        parent->GetFirstChildLocked(child);
        EXPECT_EQ(child.Get(), linked.Get());
    }
    EXPECT_EQ(ChildrenOf(*parent), (std::vector<int>{ 1, 2, 3 }));
}

// In front of a node that hangs nowhere there is no place.
TEST_F(Tree, ANodeStaysWhereItsNewSiblingHasNoParent)
{
    Owned owned;
    NodeRef parent = NewNode(), node = NewNode(1), gone = NewNode(2);
    parent->InsertLast(owned.tree);
    node->InsertLast(parent.Get());
    node->InsertBefore(gone.Get());
    EXPECT_EQ(ChildrenOf(*parent), std::vector<int>{ 1 });
    EXPECT_TRUE(node->IsAtOrBelow(*parent));
    EXPECT_FALSE(parent->IsAtOrBelow(*node));
    EXPECT_FALSE(gone->MoveToEnd(parent.Get(), nullptr));
}

TEST_F(Tree, HeldNodesSurviveTheirTreeAsSingleNodes)
{
    NodeRef kept = NewNode(1), next = NewNode(2), child = NewNode(3), out;
    {
        Owned owned;
        kept->InsertLast(owned.tree);
        next->InsertLast(owned.tree);
        child->InsertLast(kept.Get());
        NewNode(4)->InsertLast(owned.tree);
    }
    EXPECT_EQ(liveNodes, 3);
    for (NodeRef* node : { &kept, &next, &child }) {
        (*node)->GetNext(out);
        EXPECT_FALSE(out);
        (*node)->GetFirstChild(out);
        EXPECT_FALSE(out);
        EXPECT_EQ((*node)->GetParentRaw(), nullptr);
    }
}

TEST_F(Tree, TheLastReferenceMayBeTheTrees)
{
    Owned owned;
    NewNode(1)->InsertLast(owned.tree);
    NodeRef child;
    owned.tree->GetFirstChild(child);
    TestNode* raw = static_cast<TestNode*>(child.Get());
    child = NodeRef();
    raw->Remove();
    EXPECT_EQ(liveNodes, 0);
}

// 100,000 siblings go one by one and leave no chain that unwinds on the stack.
TEST_F(Tree, LongListsGoWithoutRecursion)
{
    Owned owned;
    NodeRef parent = NewNode();
    parent->InsertLast(owned.tree);
    for (int i = 0; i < 100000; i++)
        NewNode(i)->InsertLast(parent.Get());
    parent->RemoveChildren();
    EXPECT_EQ(liveNodes, 1);
}

// The index beside the links answers as the links do, through every change.
TEST_F(Tree, IndexFollowsTheLinks)
{
    Owned owned;
    NodeRef parent = NewNode(), found;
    parent->InsertLast(owned.tree);
    constexpr uint32_t length = 20;
    std::vector<NodeRef> nodes;
    for (uint32_t i = 0; i < 200; i++) {
        nodes.push_back(NewNode(static_cast<int>(i)));
        nodes.back()->InitIndexKey(i / 2, length); // two of each
        nodes.back()->InsertLast(parent.Get());
    }
    EXPECT_EQ(parent->FindIndexedChild(7, length, found), RTreeNode::Lookup::Several);
    nodes[14]->Remove();
    ASSERT_EQ(parent->FindIndexedChild(7, length, found), RTreeNode::Lookup::One);
    EXPECT_EQ(found.Get(), nodes[15].Get());
    nodes[15]->SetIndexKey(5000, length + 1);
    EXPECT_EQ(parent->FindIndexedChild(7, length, found), RTreeNode::Lookup::None);
    EXPECT_EQ(parent->FindIndexedChild(5000, length + 1, found), RTreeNode::Lookup::One);
    EXPECT_EQ(parent->FindIndexedChild(7, length + 7, found), RTreeNode::Lookup::None);
    NodeRef unkeyed = NewNode();
    unkeyed->InsertLast(parent.Get());
    EXPECT_EQ(parent->FindIndexedChild(5000, length + 1, found), RTreeNode::Lookup::Unknown);
    unkeyed->Remove();
    EXPECT_EQ(parent->FindIndexedChild(5000, length + 1, found), RTreeNode::Lookup::One);
    found = NodeRef();
    nodes.clear();
}

// Without memory for an index the links are still right.
TEST_F(Tree, LinksDoNotNeedTheIndex)
{
    using namespace vx3::testing;
    for (Failing failing : { Failing::Once, Failing::FromThereOn }) {
        int64_t runs = FailEachInTurn(testHost.Faults(), FailClass::Memory, failing, [&](int64_t) {
            RTree tree;
            int made = 0;
            NodeRef parent = NewNode();
            if (!parent)
                return;
            parent->InsertLast(&tree);
            for (int i = 0; i < 100; i++)
                if (NodeRef node = NewNode(i)) {
                    node->InsertLast(parent.Get());
                    made++;
                }
            EXPECT_EQ(ChildrenOf(*parent).size(), static_cast<size_t>(made));
            parent->Remove();
        });
        EXPECT_GT(runs, 100);
    }
}

TEST_F(Tree, ChainsAreAppendedWholeOrNotAtAll)
{
    Owned owned;
    NodeRef parent = NewNode();
    parent->InsertLast(owned.tree);
    NewNode(1)->InsertLast(parent.Get());
    std::vector<NodeRef> chain = { NewNode(2), NewNode(3), NewNode(4) };
    EXPECT_FALSE(parent->InsertAllLastIf(chain.data(), chain.size(), [](const RTreeNode&) { return false; }));
    EXPECT_EQ(ChildrenOf(*parent), std::vector<int>{ 1 });
    EXPECT_TRUE(parent->InsertAllLastIf(chain.data(), chain.size(), nullptr));
    chain.clear();
    EXPECT_EQ(ChildrenOf(*parent), (std::vector<int>{ 1, 2, 3, 4 }));
}

} // namespace
