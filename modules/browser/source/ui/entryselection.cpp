#include "ui/entryselection.h"

#include <algorithm>

namespace browser {

bool EntrySelection::HasIndex()
{
    return places.IsMade() || places.Make(entries);
}

int32_t EntrySelection::FindNode(const NodeRef& node)
{
    if (!node)
        return none;
    if (HasIndex())
        return places.FindFirst(entries, node.Get(), 0, Count() - 1);
    for (int32_t i = 0; i < Count(); i++)
        if (entries[At(i)].node == node)
            return i;
    return none;
}

int32_t EntrySelection::FindLastNode(const RTreeNode* node)
{
    if (!node)
        return none;
    if (HasIndex())
        return places.FindLast(entries, node);
    int32_t i = Count() - 1;
    while (i >= 0 && entries[At(i)].node.Get() != node)
        i--;
    return i;
}

bool EntrySelection::CollectSelected(Array<NodeRef>& nodes) const
{
    if (!nodes.Reserve(At(selectedCount)))
        return false;
    for (int32_t i = std::max(firstSelected, 0); i <= lastSelected; i++) {
        const ContentViewEntry& entry = entries[At(i)];
        if (entry.IsSelected() && entry.node && !nodes.Append(entry.node))
            return false;
    }
    return true;
}

void EntrySelection::SetSelected(int32_t index, bool selected)
{
    if (!Has(index))
        return;
    if (selected)
        Select(index);
    else
        Deselect(index);
}

bool EntrySelection::SetNodeSelected(const NodeRef& node, bool selected)
{
    const int32_t index = FindLastNode(node.Get());
    SetSelected(index, selected);
    return index != none;
}

void EntrySelection::Toggle(int32_t index)
{
    SetSelected(index, !IsSelected(index));
}

void EntrySelection::SetRange(bool selected, int32_t from, int32_t to)
{
    const int32_t end = std::min(to, Count() - 1);
    for (int32_t i = std::max(from, 0); i <= end; i++)
        SetSelected(i, selected);
}

void EntrySelection::SelectFromAnchor(int32_t index)
{
    if (!Has(index) || selectedCount == 0)
        return;
    const int32_t from = anchorIndex == none ? index : anchorIndex;
    SetRange(true, std::min(from, index), std::max(from, index));
    SetRange(false, 0, std::min(from, index) - 1);
    SetRange(false, std::max(from, index) + 1, toEnd);
}

void EntrySelection::SetSelectedBlock(int32_t first, int32_t last, int32_t stride, int32_t width)
{
    const int32_t anchor = anchorIndex;
    const int64_t end = std::min(std::max(first, last), Count() - 1);
    anchorIndex = none;
    Clear();
    if (stride < 1)
        return;
    // Kept: a block whose last column lies in front of its first one has no width. It
    // selects nothing, and what was selected is gone.
    for (int64_t row = std::max(std::min(first, last), 0); row <= end; row += stride)
        SetRange(true, static_cast<int32_t>(row), static_cast<int32_t>(std::min(row + width - 1, end)));
    if (IsSelected(anchor))
        anchorIndex = anchor;
}

void EntrySelection::Select(int32_t index)
{
    ContentViewEntry& entry = entries[At(index)];
    focusIndex = index;
    if (entry.IsSelected())
        return;
    entry.flags |= EntryFlag::selected;
    changeCount++;
    if (++selectedCount == 1)
        anchorIndex = firstSelected = lastSelected = index;
    firstSelected = std::min(firstSelected, index);
    lastSelected = std::max(lastSelected, index);
}

// Kept: the focus stays where it is, also when nothing is selected any more, so that
// keys go on from there.
void EntrySelection::Deselect(int32_t index)
{
    ContentViewEntry& entry = entries[At(index)];
    if (!entry.IsSelected())
        return;
    entry.flags &= ~EntryFlag::selected;
    changeCount++;
    if (--selectedCount == 0)
        anchorIndex = firstSelected = lastSelected = none;
    else if (index == firstSelected)
        firstSelected = NextSelected(index, 1);
    else if (index == lastSelected)
        lastSelected = NextSelected(index, -1);
}

int32_t EntrySelection::NextSelected(int32_t from, int32_t step) const
{
    int32_t i = from + step;
    while (Has(i) && !entries[At(i)].IsSelected())
        i += step;
    return Has(i) ? i : none;
}

bool EntrySelection::SetDropIndex(int32_t index, const void* owner, bool& changed)
{
    changed = index != dropIndex;
    if (!changed)
        return true;
    dropOwner = owner;
    // Kept: an entry that the user had selected is not selected any more once the pointer
    // has passed over it, since one mark serves both.
    SetSelected(dropIndex, false);
    if (!Has(index) && index != dropPane && index != dropNothing)
        return false;
    dropIndex = index;
    if (!IsSelected(index))
        SetSelected(index, true);
    return true;
}

void EntrySelection::SetVisibleRange(int32_t first, int32_t last)
{
    // Kept: the last entry of the old range keeps its mark. The range is what counts.
    for (int32_t i = std::max(firstVisible, 0); i < lastVisible; i++)
        entries[At(i)].flags &= ~EntryFlag::visible;
    firstVisible = std::max(first, 0); // Kept: -1 and -1, for no range, become 0 and -1.
    lastVisible = std::min(last, Count() - 1);
    for (int32_t i = firstVisible; i <= lastVisible; i++)
        entries[At(i)].flags |= EntryFlag::visible;
}

void EntrySelection::Install(Entries& next, uint32_t changes)
{
    const NodeRef anchor = GetNode(anchorIndex);
    const NodeRef focus = GetNode(focusIndex);
    const NodeRef drop = GetNode(dropIndex);
    entries.Swap(next);
    places.Forget();
    generation++;
    // Only a change of what is selected is news: one more than the merge found.
    if (changes)
        changeCount += changes + 1;
    Recount(anchor.Get(), focus.Get(), drop.Get());
}

void EntrySelection::InstallNothing(Entries& old)
{
    old.Clear();
    Install(old, 0);
    changeCount++;
}

NodeRef EntrySelection::TakeNode(int32_t index)
{
    places.Forget();
    return Has(index) ? std::move(entries[At(index)].node) : NodeRef();
}

void EntrySelection::GiveNode(int32_t index, NodeRef node)
{
    places.Forget();
    if (Has(index))
        entries[At(index)].node = std::move(node);
}

// Kept: the visible range comes from the marks, with those that SetVisibleRange left
// behind, and is told exactly by the next layout.
void EntrySelection::Recount(const RTreeNode* anchor, const RTreeNode* focus, const RTreeNode* drop)
{
    dropIndex = std::min(dropIndex, dropPane); // where the target has gone a drop is one on the pane
    anchorIndex = focusIndex = firstSelected = lastSelected = firstVisible = lastVisible = none;
    selectedCount = 0;
    for (int32_t i = 0; i < Count(); i++) {
        const ContentViewEntry& entry = entries[At(i)];
        if (entry.IsSelected()) {
            firstSelected = selectedCount++ ? firstSelected : i;
            lastSelected = i;
        }
        if (entry.IsVisible()) {
            firstVisible = firstVisible == none ? i : firstVisible;
            lastVisible = i;
        }
        if (anchor && entry.node.Get() == anchor)
            anchorIndex = i;
        if (focus && entry.node.Get() == focus)
            focusIndex = i;
        if (drop && entry.node.Get() == drop)
            dropIndex = i;
    }
    if (anchorIndex == none)
        anchorIndex = firstSelected;
    if (focusIndex == none)
        focusIndex = firstSelected;
}

} // namespace browser
