#include "ui/watchset.h"

#include "model/contenttree.h"

namespace browser {

namespace {

struct WatchedNode {
    ContentRef node;
    int32_t watchers = 1;
    VX3FolderWatch* watch = nullptr; // none: the host cannot watch it
};

// Its own allocation, since the host keeps the address of each entry.
Array<WatchedNode*>* watched = nullptr;

size_t PlaceOf(const ContentRef& node)
{
    size_t place = 0;
    while (place < watched->Count() && !((*watched)[place]->node == node))
        ++place;
    return place;
}

bool IsGone(DirectoryNode& folder)
{
    FilePath path;
    return folder.ReadPath(path) && !host->folder->exists(path.Value());
}

// A folder that has gone shows in the listing of the one above it, whose children are
// asked for here: nobody else may be looking at them.
void ListAbove(BrowserContentNode& gone)
{
    NodeRef parent;
    gone.GetParent(parent);
    DirectoryNode* above = AsDirectory(ContentOf(parent));
    if (!above)
        return;
    if (IsGone(*above))
        ListAbove(*above);
    NodeRef child;
    above->MarkDirty();
    above->GetFirstChild(child);
}

void NoteChange(void* user);

// Watch first, and list then: what happens in between is not missed.
void StartWatch(WatchedNode& entry)
{
    FilePath path;
    DirectoryNode* folder = AsDirectory(entry.node.Get());
    if (!folder || !folder->CanHoldChildren() || !folder->ReadPath(path))
        return;
    if (host->folder->watch)
        entry.watch = host->folder->watch(path.Value(), NoteChange, &entry);
    folder->MarkDirty();
    if (!entry.watch)
        RemoveIfGone(*folder);
}

void EndWatch(WatchedNode& entry)
{
    if (entry.watch)
        host->folder->unwatch(entry.watch);
    entry.watch = nullptr;
}

// The watch goes with the folder of the disk; what has its name now may be another one.
void NoteChange(void* user)
{
    auto& entry = *static_cast<WatchedNode*>(user);
    ContentRef node = entry.node; // the entry may end in what follows
    EndWatch(entry);
    StartWatch(entry);
    NotifyChanged(std::move(node));
}

void FreeEntry(WatchedNode* entry)
{
    EndWatch(*entry);
    Destroy(entry);
}

} // namespace

bool WatchNode(const ContentRef& node)
{
    if (!watched)
        watched = Make<Array<WatchedNode*>>()();
    if (!node || !watched)
        return false;
    const size_t place = PlaceOf(node);
    if (place < watched->Count()) {
        WatchedNode& entry = *(*watched)[place];
        entry.watchers++;
        if (!entry.watch)
            StartWatch(entry);
        return true;
    }
    auto* entry = Make<WatchedNode>()(WatchedNode{ node });
    if (!entry || !watched->Append(entry)) {
        Destroy(entry);
        return false;
    }
    StartWatch(*entry);
    return true;
}

void UnwatchNode(const ContentRef& node)
{
    if (!node || !watched)
        return;
    const size_t place = PlaceOf(node);
    if (place == watched->Count() || --(*watched)[place]->watchers > 0)
        return;
    WatchedNode* entry = (*watched)[place];
    watched->RemoveAt(place);
    FreeEntry(entry);
}

void RemoveIfGone(DirectoryNode& folder)
{
    if (IsGone(folder))
        ListAbove(folder);
}

void ForgetWatches()
{
    if (!watched)
        return;
    for (WatchedNode* entry : *watched)
        FreeEntry(entry);
    Destroy(watched);
    watched = nullptr;
}

} // namespace browser
