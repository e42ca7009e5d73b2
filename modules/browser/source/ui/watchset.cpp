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

void NoteChange(void* user)
{
    ContentRef node = static_cast<WatchedNode*>(user)->node; // a copy: the watch may end meanwhile
    DirectoryNode& folder = *AsDirectory(node.Get());
    folder.MarkDirty();
    RemoveIfGone(folder);
    NotifyChanged(std::move(node));
}

void StartWatch(WatchedNode& entry)
{
    FilePath path;
    DirectoryNode* folder = AsDirectory(entry.node.Get());
    if (folder && folder->CanHoldChildren() && host->folder->watch && folder->ReadPath(path))
        entry.watch = host->folder->watch(path.Value(), NoteChange, &entry);
}

void FreeEntry(WatchedNode* entry)
{
    if (entry->watch)
        host->folder->unwatch(entry->watch);
    Destroy(entry);
}

} // namespace

void WatchNode(const ContentRef& node)
{
    if (!node)
        return;
    if (!watched)
        watched = Make<Array<WatchedNode*>>()();
    if (!watched)
        return; // Without memory nothing is watched.
    const size_t place = PlaceOf(node);
    if (place < watched->Count()) {
        (*watched)[place]->watchers++;
        return;
    }
    auto* entry = Make<WatchedNode>()(WatchedNode{ node });
    if (!entry || !watched->Append(entry)) {
        Destroy(entry);
        return;
    }
    StartWatch(*entry);
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
