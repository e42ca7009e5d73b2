#include "model/subtreewalk.h"

#include "model/upcalls.h"

namespace browser {

namespace {

// The next node of the subtree in pre-order; none at its end.
NodeRef NextInSubtree(BrowserContentNode& top, NodeRef node, bool intoChildren)
{
    NodeRef following;
    if (intoChildren)
        ContentOf(node)->GetFirstChildLinked(following);
    while (!following && node && node.Get() != &top) {
        node->GetNext(following);
        if (!following)
            node->GetParent(node);
    }
    return following;
}

} // namespace

bool WalkSubtree(BrowserContentNode& top, ChangeMode mode, Progress progress, ListFolders listFolders)
{
    for (NodeRef node(&top); node;) {
        int64_t size = 0;
        uint32_t attributes = ContentOf(node)->GetAttributes(&size);
        if (!progress.Report(mode, size))
            return false;
        bool isFolder = (attributes & Attribute::canHoldChildren) != 0;
        if (isFolder && listFolders == ListFolders::Yes)
            ContentOf(node)->Populate();
        node = NextInSubtree(top, std::move(node), isFolder);
    }
    return true;
}

void MoveUrlPrefix(BrowserContentNode& top, const String& oldPrefix, const String& newPrefix)
{
    for (NodeRef node(&top); node;) {
        ContentOf(node)->UpdateUrlPrefix(oldPrefix, newPrefix, true);
        bool isFolder = ContentOf(node)->CanHoldChildren();
        if (isFolder)
            ContentOf(node)->Populate();
        node = NextInSubtree(top, std::move(node), isFolder);
    }
    // Once for the whole prefix, not once for each node below it.
    if (upcalls.urlPrefixChanged)
        upcalls.urlPrefixChanged(oldPrefix, newPrefix);
}

} // namespace browser
