#include "model/urlresolver.h"

#include "model/contenttree.h"
#include "model/urltarget.h"

namespace browser {

namespace {

// Among siblings the longest URL wins that is a prefix of the target. On one length the
// first wins, but of files whose names differ only in case the exact one; where volumes
// lie in each other, one that ends a component goes before one that does not.
class LevelSearch
{
public:
    explicit LevelSearch(const UrlTarget& searched)
        : target(searched)
    {
    }

    void WalkFrom(const NodeRef& first);
    void SearchChildrenOf(BrowserContentNode& parent, const NodeRef& firstChild, uint32_t parentLength);

    ContentRef best;
    uint32_t bestLength = 0;

private:
    void Offer(const NodeRef& node);
    void OfferAll(BrowserContentNode& parent, const NodeRef& firstChild);
    bool IsBetter(bool isVolume, uint32_t length, bool exact) const;
    bool SearchIndex(BrowserContentNode& parent, uint32_t parentLength);
    bool IsWhole() const { return bestLength == target.Length() && (bestExact || !target.IsFileUrl()); }

    const UrlTarget& target;
    bool bestExact = false;
};

void LevelSearch::WalkFrom(const NodeRef& first)
{
    NodeRef node = first, next;
    for (; node && !IsWhole(); node = std::move(next)) {
        node->GetNext(next);
        Offer(node);
    }
}

void LevelSearch::Offer(const NodeRef& node)
{
    uint32_t length = node->IndexLength();
    if (length && (length > target.Length() || (target.HasHashes() && target.HashOfPrefix(length) != node->IndexHash())))
        return;
    BrowserURL url;
    if (!ContentOf(node)->GetUrl(url, 0))
        return;
    length = target.MatchFolding(url.GetText());
    if (!length)
        return;
    bool exact = target.IsFileUrl() && target.MatchesExactly(url.GetText());
    bool isVolume = ContentOf(node)->HasFlags(Attribute::volume);
    if (!IsBetter(isVolume, length, exact))
        return;
    best = ToContent(node);
    bestLength = length;
    bestExact = exact;
}

bool LevelSearch::IsBetter(bool isVolume, uint32_t length, bool exact) const
{
    if (isVolume && bestLength && target.EndsComponent(length) != target.EndsComponent(bestLength))
        return target.EndsComponent(length);
    if (length == bestLength)
        return exact && !bestExact;
    return length > bestLength;
}

// True if the index could answer.
bool LevelSearch::SearchIndex(BrowserContentNode& parent, uint32_t parentLength)
{
    for (uint32_t length = target.Length(); length > parentLength; length--) {
        NodeRef child;
        switch (parent.FindIndexedChild(target.HashOfPrefix(length), length, child)) {
        case RTreeNode::Lookup::Unknown:
        case RTreeNode::Lookup::Several: return false;
        case RTreeNode::Lookup::None: break;
        case RTreeNode::Lookup::One:
            Offer(child);
            if (best)
                return true;
        }
    }
    return true;
}

void LevelSearch::SearchChildrenOf(BrowserContentNode& parent, const NodeRef& firstChild, uint32_t parentLength)
{
    bool mayNest = &parent == contentTree.Computer();
    if (mayNest || !target.HasHashes() || !SearchIndex(parent, parentLength))
        OfferAll(parent, firstChild);
}

// The children of one moment: a removal meanwhile must not end the search early.
void LevelSearch::OfferAll(BrowserContentNode& parent, const NodeRef& firstChild)
{
    Array<NodeRef> children;
    if (!parent.CollectChildren(children))
        return WalkFrom(firstChild);
    for (size_t i = 0; i < children.Count() && !IsWhole(); i++)
        Offer(children[i]);
}

// Where a search without a start begins: below the computer for what has a file path.
NodeRef FirstNode(BrowserURL& url, const UrlTarget& target)
{
    NodeRef first;
    BrowserContentNode* computer = contentTree.Computer();
    if (computer && target.IsFileUrl() && url.HasFile()) {
        computer->GetFirstChildLinked(first);
        if (!first) {
            RefreshVolumes();
            computer->GetFirstChildLinked(first);
        }
    } else if (contentTree.tree) {
        contentTree.tree->GetFirstChild(first);
    }
    return first;
}

} // namespace

void FindNodeByUrl(BrowserURL& url, int32_t mode, ContentRef start, ContentRef& out)
{
    out = ContentRef();
    UrlTarget target(url);
    if (!target.Length())
        return;
    ContentRef reached;
    LevelSearch top(target);
    top.WalkFrom(start ? NodeRef(start) : FirstNode(url, target));
    ContentRef best = std::move(top.best);
    uint32_t length = top.bestLength;
    while (best && length < target.Length()) {
        if (mode & FindPopulate)
            best->Populate();
        reached = best;
        NodeRef child;
        best->GetFirstChild(child);
        LevelSearch level(target);
        if (child)
            level.SearchChildrenOf(*reached, child, length);
        best = std::move(level.best);
        length = level.bestLength;
    }
    if (best)
        out = std::move(best);
    else if (mode & FindDeepest)
        out = std::move(reached);
}

void FindNetworkNode(BrowserURL& url, ContentRef& out)
{
    out = ContentRef();
    ContentRef root = contentTree.network;
    if (!root)
        return;
    root->Populate();
    FindNodeByUrl(url, FindPlain, std::move(root), out);
}

void FindNearestNode(BrowserURL& url, ContentRef& out)
{
    FindNodeByUrl(url, FindDeepest, ContentRef(), out);
    UrlTarget target(url);
    while (out) {
        BrowserURL reached;
        if (out->GetUrl(reached, 0)) {
            uint32_t length = target.MatchFolding(reached.GetText());
            if (length && target.EndsComponent(length))
                return;
        }
        NodeRef parent;
        out->GetParent(parent);
        out = ToContent(parent);
    }
    out = ContentRef(contentTree.Computer());
}

void EnsureNodeForUrl(ContentRef parent, BrowserURL& url, NodeFactory factory, void* context, ContentRef& out)
{
    // The addresses that have no node yet, the deepest first.
    Array<BrowserURL> missing;
    out = parent;
    for (BrowserURL level(url); !level.GetText().IsEmpty();) {
        ContentRef found;
        FindNodeByUrl(level, FindPlain, parent, found);
        if (found) {
            out = std::move(found);
            break;
        }
        BrowserURL above;
        level.GetParent(above);
        if (!missing.Append(level)) {
            out = ContentRef();
            return;
        }
        level = above;
    }
    for (size_t i = missing.Count(); i > 0 && out; i--) {
        String name;
        ContentRef made;
        missing[i - 1].GetName(name);
        factory({ std::move(out), ContentRef(), missing[i - 1], name, true, 0 }, context, made);
        out = std::move(made);
    }
}

} // namespace browser
