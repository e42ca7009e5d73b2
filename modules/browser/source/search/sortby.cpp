#include "search/sortby.h"

#include "search/sortkeys.h"
#include "services/preferences.h"

namespace browser {

namespace {

int32_t CompareNames(BrowserContentNode& a, BrowserContentNode& b)
{
    String nameA, nameB;
    a.GetName(nameA);
    b.GetName(nameB);
    return nameA.Order(nameB);
}

int32_t CompareNamesAndUrls(BrowserContentNode& a, BrowserContentNode& b)
{
    int32_t result = CompareNames(a, b);
    return result ? result : CompareUrls(a, b);
}

int32_t CompareByDate(DateKind kind, BrowserContentNode& a, BrowserContentNode& b)
{
    FileDate dateA = {}, dateB = {};
    (void)a.GetDate(kind, dateA);
    (void)b.GetDate(kind, dateB);
    return CompareDates(dateA, dateB);
}

int32_t CompareBySize(BrowserContentNode& a, BrowserContentNode& b)
{
    int64_t sizeA = 0, sizeB = 0;
    a.GetAttributes(&sizeA);
    b.GetAttributes(&sizeB);
    return sizeA < sizeB ? -1 : sizeA > sizeB;
}

int32_t CompareByType(BrowserContentNode& a, BrowserContentNode& b)
{
    String typeA, typeB;
    a.GetTypeName(typeA, TypeDetail::Specific);
    b.GetTypeName(typeB, TypeDetail::Specific);
    return typeA.Order(typeB);
}

bool CollectUnsorted(NodeRef first, Array<NodeRef>& nodes)
{
    if (!CollectSiblings(std::move(first), nodes))
        return false;
    for (const NodeRef& node : nodes)
        DoubtUnlessNoted(*ContentOf(node));
    return true;
}

} // namespace

int32_t CompareUrls(BrowserContentNode& a, BrowserContentNode& b)
{
    BrowserURL urlA, urlB;
    a.GetUrl(urlA, 0);
    b.GetUrl(urlB, 0);
    DoubtIfEmpty(urlA.GetText());
    DoubtIfEmpty(urlB.GetText());
    return urlA.GetText().Order(urlB.GetText());
}

SortMode SortModeOf(int32_t number)
{
    bool known = number >= static_cast<int32_t>(SortMode::Name) && number <= static_cast<int32_t>(SortMode::None);
    return known ? static_cast<SortMode>(number) : SortMode::Name;
}

bool CollectSiblings(NodeRef first, Array<NodeRef>& siblings)
{
    if (!first)
        return true;
    NodeRef parent, next;
    first->GetParent(parent);
    if (parent)
        return ContentOf(parent)->CollectChildren(siblings, first.Get());
    for (NodeRef node = std::move(first); node; node = std::move(next)) {
        node->GetNext(next);
        if (!siblings.Append(std::move(node)))
            return false;
    }
    return true;
}

bool MakeSortedChildren(SortMode mode, NodeRef first, Array<NodeRef>& sorted)
{
    if (mode == SortMode::None)
        return CollectUnsorted(std::move(first), sorted);
    SortKeys keys(SortPlan::For(mode, FoldersFirst()));
    if (!keys.Take(std::move(first)) || !keys.Sort() || !sorted.Reserve(keys.Count()))
        return false;
    for (size_t i = 0; i < keys.Count(); i++)
        if (!sorted.Append(keys.TakeNode(i)))
            return false;
    return true;
}

int32_t CompareNodes(SortMode mode, BrowserContentNode* a, BrowserContentNode* b)
{
    if (!a || !b)
        return 0;
    int32_t result = 0;
    switch (mode) {
    case SortMode::Modified: result = CompareByDate(DateKind::Modified, *a, *b); break;
    case SortMode::Created: result = CompareByDate(DateKind::Created, *a, *b); break;
    case SortMode::Size: result = CompareBySize(*a, *b); break;
    case SortMode::Type:
        if (a->GetAttributes(nullptr) & Attribute::canHoldChildren)
            return CompareNames(*a, *b);
        result = CompareByType(*a, *b);
        break;
    default: break;
    }
    return result ? result : CompareNamesAndUrls(*a, *b);
}

} // namespace browser
