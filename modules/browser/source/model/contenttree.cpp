#include "model/contenttree.h"

#include <algorithm>

#include "model/upcalls.h"

namespace browser {

ContentTree contentTree;

void ContentTree::ForgetRoots()
{
    for (auto& root : indexedRoots)
        root.Clear();
    network.Clear();
    defaultObjects.Clear();
}

void GetRootByIndex(int32_t index, ContentRef& out)
{
    bool known = index >= 0 && static_cast<size_t>(index) < rootIndexCount;
    out = known ? ContentRef(contentTree.indexedRoots[index]) : ContentRef();
}

void GetRootNode(ContentRef node, ContentRef& out)
{
    NodeRef first;
    if (node)
        node->GetFirstChild(first);
    else if (contentTree.tree)
        contentTree.tree->GetFirstChild(first);
    out = ToContent(first);
}

bool AttachToRoot(ContentRef node, int32_t index)
{
    ContentRef root;
    GetRootByIndex(index, root);
    if (!root || !node || !node->AttachTo(*root))
        return false;
    if (root->GetClass() == NodeClass::Category && upcalls.stampDate)
        upcalls.stampDate(*root, CurrentDate());
    NotifyChanged(std::move(node));
    return true;
}

void NotifyChanged(ContentRef node)
{
    if (!node)
        return;
    bool concernsPresets = node->GetNodeType() == NodeType::Preset || node.Get() == contentTree.Presets();
    if (concernsPresets && contentTree.ready)
        (void)host->message->postCore(VX3_MESSAGE_BROWSER, CoreMessage::presetsChanged, 0, nullptr);
    if (upcalls.announceChange)
        upcalls.announceChange(std::move(node));
}

void RefreshVolumes()
{
    ContentRef computer(contentTree.Computer());
    if (!computer || !upcalls.listVolumes || !upcalls.listVolumes(*computer))
        return;
    if (upcalls.stampDate)
        upcalls.stampDate(*computer, CurrentDate());
    NotifyChanged(std::move(computer));
}

namespace {

// The parent that all nodes share, or none.
NodeRef SharedParent(BrowserContentNode* const* nodes, int32_t count)
{
    NodeRef shared;
    for (int32_t i = 0; i < count; i++) {
        NodeRef parent;
        if (nodes[i])
            nodes[i]->GetParent(parent);
        if (!parent || (i > 0 && !(parent == shared)))
            return NodeRef();
        shared = std::move(parent);
    }
    return shared;
}

// The children in their new order: the given ones, then the others in their old order.
bool CollectOrder(BrowserContentNode& parent, BrowserContentNode* const* nodes, int32_t count, Array<NodeRef>& order)
{
    Array<NodeRef> children;
    Array<const RTreeNode*> given;
    for (int32_t i = 0; i < count; i++)
        if (!order.Append(NodeRef(nodes[i])) || !given.Append(nodes[i]))
            return false;
    std::sort(given.begin(), given.end());
    if (std::adjacent_find(given.begin(), given.end()) != given.end())
        return false; // One node cannot stand in two places.
    if (!parent.CollectChildren(children))
        return false;
    for (NodeRef& child : children)
        if (!std::binary_search(given.begin(), given.end(), child.Get()) && !order.Append(std::move(child)))
            return false;
    return true;
}

} // namespace

bool ReorderChildren(int32_t reserved, BrowserContentNode* const* nodes, int32_t count)
{
    if (reserved != 0 || !nodes || count < 1)
        return false;
    NodeRef shared = SharedParent(nodes, count);
    if (!shared)
        return false;
    ContentRef parent = ToContent(shared);
    {
        LockGuard guard(parent->contentLock, LockRank::Content);
        Array<NodeRef> order;
        if (!CollectOrder(*parent, nodes, count, order))
            return false;
        for (NodeRef& child : order)
            (void)ContentOf(child)->MoveBehindSiblings(*parent); // One that has left meanwhile stays away.
        if (upcalls.storeOrder)
            upcalls.storeOrder(*parent);
    }
    NotifyChanged(std::move(parent));
    return true;
}

} // namespace browser
