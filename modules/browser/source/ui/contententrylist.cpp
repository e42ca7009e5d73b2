#include "ui/contententrylist.h"

#include <algorithm>

#include "search/sortkeys.h"
#include "services/preferences.h"
#include "ui/entrymerge.h"

namespace browser {

namespace {

int32_t CompareEntries(const void* context, RTreeNode* a, RTreeNode* b)
{
    return CompareNodes(*static_cast<const SortMode*>(context), static_cast<BrowserContentNode*>(a), static_cast<BrowserContentNode*>(b));
}

SelectionState StateOf(const EntrySelection& selection)
{
    return { selection.SelectedCount(), selection.FirstSelected(), selection.LastSelected(),
             selection.Anchor(),        selection.Focus(),         selection.Count() };
}

EntrySnapshot SnapshotOf(const EntrySelection& selection)
{
    return { selection.Generation(),  selection.Count(),         selection.FirstVisible(),
             selection.LastVisible(), selection.FirstSelected(), selection.LastSelected() };
}

// Where containers stand in front, by the bits of their kind, they are groups of their
// own; a comparison of two nodes knows nothing of that.
class SortedGroups
{
public:
    SortedGroups(const Entries& entries, SortMode mode, bool foldersFirst)
    {
        if (mode == SortMode::None)
            return;
        if (SortPlan::For(mode, foldersFirst).foldersFirst)
            for (uint32_t kind = Attribute::canHoldChildren; kind > 0; kind--)
                ends[count++] = CountInFront(entries, kind);
        ends[count++] = static_cast<int32_t>(entries.Count());
    }
    std::span<const int32_t> Ends() const { return { ends, count }; }

private:
    static int32_t CountInFront(const Entries& entries, uint32_t kind)
    {
        auto standsInFront = [kind](const ContentViewEntry& entry) {
            return (ContentOf(entry.node)->GetAttributes(nullptr) & Attribute::canHoldChildren) >= kind;
        };
        return static_cast<int32_t>(std::partition_point(entries.begin(), entries.end(), standsInFront) - entries.begin());
    }

    int32_t ends[Attribute::canHoldChildren + 1];
    size_t count = 0;
};

} // namespace

// Which lock this is, is known at run time only.
ContentViewEntryList::Writer::Writer(ContentViewEntryList& list) CB_UNCHECKED : lock(list.lock), selection(list.selection)
{
    lock.Lock(LockRank::EntryList);
    lockedChangeCount = selection.ChangeCount();
}

ContentViewEntryList::Writer::~Writer() CB_UNCHECKED
{
    const bool isChanged = selection.ChangeCount() != lockedChangeCount;
    lock.Unlock();
    if (isChanged) // Without memory for a message the next one tells of this change, too.
        (void)host->message->postCore(VX3_MESSAGE_BROWSER, CoreMessage::selectionChanged, 0, nullptr);
}

SelectionState ContentViewEntryList::GetState() const
{
    return StateOf(*Reader(*this));
}

SelectionState ContentViewEntryList::GetSelection(Array<NodeRef>& nodes) const
{
    nodes.Clear();
    const Reader list(*this);
    (void)list->CollectSelected(nodes);
    return StateOf(*list);
}

NodeRef ContentViewEntryList::GetNode(int32_t index) const
{
    return Reader(*this)->GetNode(index);
}

bool ContentViewEntryList::IsSelected(int32_t index) const
{
    return Reader(*this)->IsSelected(index);
}

uint32_t ContentViewEntryList::ChangeCount() const
{
    return Reader(*this)->ChangeCount();
}

EntrySnapshot ContentViewEntryList::TakeSnapshot() const
{
    return SnapshotOf(*Reader(*this));
}

// What `entry` held is given back outside the lock, since it may delete a node.
bool ContentViewEntryList::ReadEntry(const EntrySnapshot& taken, int32_t index, ContentViewEntry& entry) const
{
    ContentViewEntry found;
    {
        const Reader list(*this);
        if (SnapshotOf(*list) != taken || !list->Has(index))
            return false;
        found = *list->EntryAt(index);
    }
    std::swap(entry, found);
    return true;
}

// A search makes an index, so it writes.
int32_t ContentViewEntryList::FindNode(const NodeRef& node)
{
    return Writer(*this)->FindNode(node);
}

bool ContentViewEntryList::IsNodeSelected(const NodeRef& node)
{
    return Writer(*this)->IsNodeSelected(node);
}

void ContentViewEntryList::SetRange(bool selected, int32_t from, int32_t to)
{
    Writer(*this)->SetRange(selected, from, to);
}

void ContentViewEntryList::SetSelectedBlock(int32_t first, int32_t last, int32_t stride, int32_t width)
{
    Writer(*this)->SetSelectedBlock(first, last, stride, width);
}

void ContentViewEntryList::SetSelected(int32_t index, bool selected)
{
    Writer(*this)->SetSelected(index, selected);
}

void ContentViewEntryList::Toggle(int32_t index)
{
    Writer(*this)->Toggle(index);
}

bool ContentViewEntryList::SetNodeSelected(const NodeRef& node, bool selected)
{
    return Writer(*this)->SetNodeSelected(node, selected);
}

void ContentViewEntryList::SetVisibleRange(int32_t first, int32_t last)
{
    Writer(*this)->SetVisibleRange(first, last);
}

void ContentViewEntryList::Synchronize(NodeRef firstChild, SortMode sortKey, const EntryFilter& filter)
{
    Origin wanted = { ContentVersion(), std::move(firstChild), sortKey, FoldersFirst(), filter, true };
    if (wanted == origin)
        return;
    Entries next;
    if (MakeEntries(wanted, next))
        Merge(next, wanted);
    else
        Empty();
    origin = std::move(wanted);
}

// A folder without children and one that cannot be sorted for want of memory both have
// no entries. False if there is no memory for entries.
bool ContentViewEntryList::MakeEntries(Origin& wanted, Entries& next)
{
    Array<NodeRef> sorted;
    if (!MakeSortedChildren(wanted.sortKey, wanted.firstChild, sorted)) {
        sorted.Clear();
        wanted.isKnown = false;
    }
    if (!next.Reserve(sorted.Count()))
        return wanted.isKnown = false;
    for (NodeRef& node : sorted) {
        if (!wanted.filter.keeps || wanted.filter.keeps(wanted.filter.settings, *ContentOf(node)))
            (void)next.Append({ std::move(node), 0 });
    }
    return true;
}

// The old entries go to the caller, whose nodes are given back after the lock.
void ContentViewEntryList::Merge(Entries& next, const Origin& wanted)
{
    const SortedGroups groups(next, wanted.sortKey, wanted.foldersFirst);
    uint32_t changes = 0;
    {
        const Reader list(*this);
        changes = EntryMerge(*list, next, { CompareEntries, &wanted.sortKey, groups.Ends() }).Run();
    }
    parkedNodes.Clear();
    Writer(*this)->Install(next, changes);
    for (size_t i = 0; i < next.Count(); i++) {
        Foresee(next, i + stepsAhead);
        next[i].node = NodeRef();
    }
}

void ContentViewEntryList::Empty()
{
    Entries old;
    parkedNodes.Clear();
    Writer(*this)->InstallNothing(old);
}

// Without memory nothing is kept of the nodes, and the next Synchronize finds nothing
// selected.
void ContentViewEntryList::Park()
{
    Array<NodeRef> held; // outlives the lock
    origin = Origin();
    parkedNodes.Clear();
    const Writer list(*this);
    const auto count = static_cast<size_t>(list->Count());
    const bool hasRoom = held.Reserve(count) && parkedNodes.Reserve(count);
    for (int32_t i = 0; i < list->Count(); i++) {
        NodeRef node = list->TakeNode(i);
        if (node && hasRoom && parkedNodes.Append({ node.Get(), i }))
            (void)held.Append(std::move(node));
    }
    std::sort(parkedNodes.begin(), parkedNodes.end());
}

void ContentViewEntryList::Unpark(NodeRef firstChild)
{
    Array<NodeRef> children; // without memory for all: those that were found
    (void)CollectSiblings(std::move(firstChild), children);
    {
        const Writer list(*this);
        for (const NodeRef& child : children)
            if (const ParkedNode* parked = FindParked(child.Get()))
                list->GiveNode(parked->index, child);
    }
    parkedNodes.Clear();
}

const ContentViewEntryList::ParkedNode* ContentViewEntryList::FindParked(const RTreeNode* node) const
{
    const ParkedNode* at = std::lower_bound(parkedNodes.begin(), parkedNodes.end(), ParkedNode{ node, 0 });
    return at != parkedNodes.end() && at->node == node ? at : nullptr;
}

} // namespace browser
