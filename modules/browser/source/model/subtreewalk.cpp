#include "model/subtreewalk.h"

#include "model/upcalls.h"

namespace browser {

namespace {

// Puts the children of a node onto a stack, the first one on top.
bool PushChildren(BrowserContentNode& node, Array<NodeRef>& stack)
{
    const size_t below = stack.Count();
    if (!node.CollectChildren(stack))
        return false;
    for (size_t i = below, j = stack.Count(); i + 1 < j; i++)
        std::swap(stack[i], stack[--j]);
    return true;
}

NodeRef Pop(Array<NodeRef>& stack)
{
    NodeRef node = std::move(stack[stack.Count() - 1]);
    stack.RemoveAt(stack.Count() - 1);
    return node;
}

} // namespace

WalkEnd WalkSubtree(BrowserContentNode& top, ChangeMode mode, Progress progress, ListFolders listFolders)
{
    Array<NodeRef> stack;
    if (!stack.Append(NodeRef(&top)))
        return WalkEnd::OutOfMemory;
    while (!stack.IsEmpty()) {
        NodeRef held = Pop(stack);
        BrowserContentNode& node = *ContentOf(held);
        int64_t size = 0;
        const uint32_t attributes = node.GetAttributes(&size);
        if (attributes & Attribute::removed)
            continue;
        if (!progress.Report(mode, size))
            return WalkEnd::Cancelled;
        if (!(attributes & Attribute::canHoldChildren))
            continue;
        if (listFolders == ListFolders::Yes)
            node.Populate();
        if (!PushChildren(node, stack))
            return WalkEnd::OutOfMemory;
    }
    return WalkEnd::Done;
}

AddressChange::AddressChange(BrowserContentNode& changed)
{
    if (!nodes.Append(NodeRef(&changed)))
        return;
    for (size_t i = 0; i < nodes.Count(); i++) {
        BrowserContentNode& node = *ContentOf(nodes[i]);
        if (!node.CanHoldChildren())
            continue;
        {
            LockGuard guard(node.contentLock, LockRank::Content);
            node.SetFlags(Attribute::addressChanging);
        }
        if (!node.CollectChildren(nodes))
            return;
    }
    isReady = true;
}

AddressChange::~AddressChange()
{
    for (NodeRef& node : nodes)
        ContentOf(node)->ClearFlags(Attribute::addressChanging);
}

void AddressChange::MovePrefix(const String& oldPrefix, const String& newPrefix)
{
    for (size_t i = 1; i < nodes.Count(); i++)
        ContentOf(nodes[i])->UpdateUrlPrefix(oldPrefix, newPrefix, true);
    // Once for the whole prefix, not once for each node below it.
    if (upcalls.urlPrefixChanged)
        upcalls.urlPrefixChanged(oldPrefix, newPrefix);
}

} // namespace browser
