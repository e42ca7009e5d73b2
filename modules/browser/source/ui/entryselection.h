// What is selected among the entries of a list, and what else a list remembers by place.
//
// Knows no lock and no view: the list that owns it calls it under its own lock, for
// writing unless an operation is const. Places outside the array are ignored, never an
// error. Whoever draws or listens compares the two counters with those of last time.
#pragma once

#include "ui/entryindex.h"

namespace browser {

class EntrySelection
{
public:
    static constexpr int32_t none = -1;
    static constexpr int32_t toEnd = 0x7FFFFFFF;

    // What a drag may point at beside an entry.
    static constexpr int32_t dropNothing = -2;
    static constexpr int32_t dropPane = -1;

    // The entries.
    const Entries& All() const { return entries; }
    int32_t Count() const { return static_cast<int32_t>(entries.Count()); }
    bool Has(int32_t index) const { return index >= 0 && index < Count(); }
    bool IsSelected(int32_t index) const { return Has(index) && entries[At(index)].IsSelected(); }
    const ContentViewEntry* EntryAt(int32_t index) const { return Has(index) ? &entries[At(index)] : nullptr; }
    NodeRef GetNode(int32_t index) const { return Has(index) ? entries[At(index)].node : NodeRef(); }
    int32_t FindNode(const NodeRef& node); // the first place, or -1
    bool IsNodeSelected(const NodeRef& node) { return IsSelected(FindNode(node)); }

    // The selection.
    int32_t SelectedCount() const { return selectedCount; }
    int32_t FirstSelected() const { return firstSelected; }
    int32_t LastSelected() const { return lastSelected; }
    int32_t Anchor() const { return anchorIndex; } // selected when nothing else was
    int32_t Focus() const { return focusIndex; }   // selected last
    // The nodes of the selected entries in order. False without memory.
    [[nodiscard]] bool CollectSelected(Array<NodeRef>& nodes) const;

    void SetSelected(int32_t index, bool selected);
    bool SetNodeSelected(const NodeRef& node, bool selected); // true if it is there; its last place counts
    void Toggle(int32_t index);
    void SetRange(bool selected, int32_t from, int32_t to); // both included
    void Clear() { SetRange(false, 0, toEnd); }
    // Selects from the anchor to `index` and nothing else; without an anchor `index` alone.
    void SelectFromAnchor(int32_t index);
    // Rows of `width` entries, `stride` apart, that begin between `first` and `last`, and
    // nothing else. The anchor stays if it lies in the block.
    void SetSelectedBlock(int32_t first, int32_t last, int32_t stride, int32_t width);
    // Toggles all that `isHit` names by place.
    template <class IsHit>
    void ToggleHits(IsHit isHit)
    {
        // Kept: from the last to the first, so that the highest hit becomes the anchor.
        for (int32_t i = Count() - 1; i >= 0; i--)
            if (isHit(i))
                Toggle(i);
    }

    // The drop target, which is shown as selected. False if `index` can be none. `owner`
    // is compared and never followed: its window may close while the drag goes on.
    bool SetDropIndex(int32_t index, const void* owner, bool& changed);
    int32_t DropIndex() const { return dropIndex; }
    const void* DropOwner() const { return dropOwner; }
    bool IsDropActive() const { return dropIndex != dropNothing; }

    // The visible part, for those who make pictures of what is seen first.
    void SetVisibleRange(int32_t first, int32_t last);
    int32_t FirstVisible() const { return firstVisible; }
    int32_t LastVisible() const { return lastVisible; }

    // Counters; both may wrap.
    uint32_t Generation() const { return generation; }   // of the array
    uint32_t ChangeCount() const { return changeCount; } // of what is selected

    // Puts other entries in place. `next` has the old ones afterwards, so that nodes can
    // be released after the lock. Marks come with the new entries; anchor, focus and drop
    // target stay with their nodes. `changes` is what a merge counted.
    void Install(Entries& next, uint32_t changes);
    void InstallNothing(Entries& old); // where there was no memory for new ones

    // While a window is closed the entries stand without their nodes.
    NodeRef TakeNode(int32_t index);
    void GiveNode(int32_t index, NodeRef node);

private:
    static size_t At(int32_t index) { return static_cast<size_t>(index); }
    void Select(int32_t index);
    void Deselect(int32_t index);
    int32_t NextSelected(int32_t from, int32_t step) const;
    int32_t FindLastNode(const RTreeNode* node);
    bool HasIndex();
    void Recount(const RTreeNode* anchor, const RTreeNode* focus, const RTreeNode* drop);

    Entries entries;
    EntryIndex places; // of this generation, made when it is first needed
    uint32_t generation = 0;
    uint32_t changeCount = 0;
    int32_t anchorIndex = none;
    int32_t focusIndex = none;
    int32_t firstSelected = none;
    int32_t lastSelected = none;
    int32_t selectedCount = 0;
    int32_t dropIndex = dropNothing;
    const void* dropOwner = nullptr;
    int32_t firstVisible = none;
    int32_t lastVisible = none;
};

} // namespace browser
