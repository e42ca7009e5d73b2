// What a folder pane shows: the entries, shared by the views of the pane and read by its
// worker.
//
// Belongs to the pane. The main thread changes it; any thread may read it and look for
// nodes. A lock of the host lets many read or one write. Whoever reads several things that
// belong together, or changes several, holds a Reader or a Writer; the operations of the
// list itself take the lock for one step each, so they are not for those who hold it.
//
// A Reader may be held over calls of the entries' nodes, as drawing does: no node may
// reach a list. None is held over anything that runs timers, draws or messages.
#pragma once

#include <compare>

#include "search/sortby.h"
#include "ui/entryselection.h"

namespace browser {

// Which children a list shows. The answer for a node that stays as it is may depend on
// `settings` alone, so that it need not be asked again.
struct EntryFilter {
    bool (*keeps)(uint32_t settings, BrowserContentNode& node) = nullptr; // none keeps all
    uint32_t settings = 0;

    bool operator==(const EntryFilter&) const = default;
};

// What a list has selected, as of one moment.
struct SelectionState {
    int32_t selectedCount = 0;
    int32_t first = EntrySelection::none;
    int32_t last = EntrySelection::none;
    int32_t anchor = EntrySelection::none;
    int32_t focus = EntrySelection::none;
    int32_t count = 0; // of all entries

    bool HasSelection() const { return selectedCount > 0; }
};

// What a worker goes by. As long as a list gives an equal one, its entries stand where
// they stood, and the same of them come first.
struct EntrySnapshot {
    uint32_t generation = 0;
    int32_t count = 0;
    int32_t firstVisible = EntrySelection::none;
    int32_t lastVisible = EntrySelection::none;
    int32_t firstSelected = EntrySelection::none;
    int32_t lastSelected = EntrySelection::none;

    bool operator==(const EntrySnapshot&) const = default;
};

class ContentViewEntryList
{
public:
    // Many at once; entries and ranges stand still while one lives.
    class Reader;
    // One alone. If the selection has changed when it goes, it tells the host so, after
    // the lock.
    class Writer;

    // Any thread.
    SelectionState GetState() const;
    // The selected nodes in order, with the state of the same moment. Without memory none,
    // which callers take for an empty selection.
    SelectionState GetSelection(Array<NodeRef>& nodes) const;
    NodeRef GetNode(int32_t index) const;
    bool IsSelected(int32_t index) const;
    uint32_t ChangeCount() const;
    int32_t FindNode(const NodeRef& node); // the first place, or -1
    bool IsNodeSelected(const NodeRef& node);
    EntrySnapshot TakeSnapshot() const;
    // False, and `entry` as it was, if the snapshot does not hold any more.
    [[nodiscard]] bool ReadEntry(const EntrySnapshot& taken, int32_t index, ContentViewEntry& entry) const;

    // Main thread. One change each; several go through one Writer.
    void SetRange(bool selected, int32_t from, int32_t to);
    void ClearSelection() { SetRange(false, 0, EntrySelection::toEnd); }
    void SetSelectedBlock(int32_t first, int32_t last, int32_t stride, int32_t width);
    void SetSelected(int32_t index, bool selected);
    void Toggle(int32_t index);
    bool SetNodeSelected(const NodeRef& node, bool selected); // true if it is there
    void SetVisibleRange(int32_t first, int32_t last);

    // Brings the entries up to date: `firstChild` and its siblings, sorted and filtered.
    // What was selected stays so as long as its node does. Where nothing has changed since
    // the last time nothing is done, and the generation stays. Without memory the list is
    // empty. Main thread.
    void Synchronize(NodeRef firstChild, SortMode sortKey, const EntryFilter& filter);

    // Gives the nodes back while the window is closed, and finds them again among the
    // children when it opens. Entries whose nodes have gone stay empty until the next
    // Synchronize. Main thread.
    void Park();
    void Unpark(NodeRef firstChild);

private:
    // What decides which entries there are, and in which order.
    struct Origin {
        uint64_t version = 0; // ContentVersion, read in front of the sort
        NodeRef firstChild;
        SortMode sortKey = SortMode::Name;
        bool foldersFirst = false;
        EntryFilter filter;
        bool isKnown = false; // unset: the entries have to be made anew

        bool operator==(const Origin&) const = default;
    };
    // A node of a closed window: compared, never followed.
    struct ParkedNode {
        const RTreeNode* node;
        int32_t index;

        auto operator<=>(const ParkedNode&) const = default;
    };

    [[nodiscard]] bool MakeEntries(Origin& wanted, Entries& next);
    void Merge(Entries& next, const Origin& wanted);
    void Empty();
    const ParkedNode* FindParked(const RTreeNode* node) const; // its first place

    mutable ReadWriteLock lock;
    EntrySelection selection CB_GUARDED_BY(lock);

    // Main thread.
    Origin origin;
    Array<ParkedNode> parkedNodes; // in the order of their addresses
};

class ContentViewEntryList::Reader
{
public:
    explicit Reader(const ContentViewEntryList& list) CB_UNCHECKED // The guard is a field.
        : guard(list.lock, LockRank::EntryList),
          selection(list.selection)
    {
    }
    const EntrySelection& operator*() const { return selection; }
    const EntrySelection* operator->() const { return &selection; }

private:
    ReadGuard guard;
    const EntrySelection& selection;
};

class ContentViewEntryList::Writer
{
public:
    explicit Writer(ContentViewEntryList& list);
    ~Writer();
    Writer(const Writer&) = delete;
    Writer& operator=(const Writer&) = delete;
    EntrySelection& operator*() const { return selection; }
    EntrySelection* operator->() const { return &selection; }

private:
    ReadWriteLock& lock;
    EntrySelection& selection;
    uint32_t lockedChangeCount;
};

} // namespace browser
