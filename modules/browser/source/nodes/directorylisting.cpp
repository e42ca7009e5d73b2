#include "nodes/directorylisting.h"

#include <algorithm>

#include "model/crc32.h"

namespace browser {

void DirectoryListing::Run()
{
    if (!folder.ReadPath(folderPath) || !StartHash() || !TakeSnapshot())
        return folder.MarkDirty(); // The next request tries again.
    // Cleared first: a mark that is set during the walk is for what it may have missed.
    folder.ClearFlags(Attribute::dirty);
    VX3FolderWalk* walk = host->folder->startWalk(folderPath.Value(), uint32_t(VX3_WALK_HIDDEN) | uint32_t(VX3_WALK_READONLY));
    if (!walk)
        return folder.MarkDirty();
    MarkKnown();
    VX3FolderEntry entry = {};
    while (host->folder->nextEntry(walk, &entry))
        if (!(entry.flags & VX3_ENTRY_HIDDEN))
            Merge(entry);
    host->text->destruct(&entry.name);
    Finish(host->folder->walkIsSound(walk));
    host->folder->endWalk(walk);
}

bool DirectoryListing::TakeSnapshot()
{
    if (!folder.CollectChildren(held) || !known.Reserve(held.Count()))
        return false;
    for (NodeRef& child : held)
        if (DirectoryNode* node = AsDirectory(ContentOf(child)))
            if (!known.Append({ node->IndexHash(), node }))
                return false;
    std::sort(known.begin(), known.end(), [](const Known& a, const Known& b) { return a.hash < b.hash; });
    return true;
}

void DirectoryListing::MarkKnown()
{
    for (Known& each : known)
        each.node->SetFlags(Attribute::mark);
}

bool DirectoryListing::StartHash()
{
    constexpr VX3Unit slash = '/';
    BrowserURL url(folderPath);
    Units text = url.GetText().View();
    prefixState = ContinueCrcOfUnit(ContinueCrcFolding(crcStart, text), slash);
    prefixLength = static_cast<uint32_t>(text.size()) + 1;
    return !text.empty();
}

void DirectoryListing::Merge(VX3FolderEntry& found)
{
    String& foundName = String::Of(&found.name);
    Units units = foundName.View();
    DirectoryEntry entry;
    entry.address.key.hash = FinishCrc(ContinueCrcFolding(prefixState, units));
    entry.address.key.length = prefixLength + static_cast<uint32_t>(units.size());
    entry.flags = FlagsOfNewEntry(found.flags);
    entry.created = found.created;
    entry.modified = found.modified;
    entry.size = found.size;
    if (DirectoryNode* old = FindKnown(entry.address.key.hash, foundName)) {
        if (!old->RefreshFrom(entry)) {
            old->ClearFlags(Attribute::mark);
            folder.MarkDirty();
        }
        return;
    }
    entry.address.name = std::move(foundName);
    if (entry.address.path.SetJoined(folderPath, entry.address.name))
        AddNew(std::move(entry));
    else
        folder.MarkDirty();
}

DirectoryNode* DirectoryListing::FindKnown(uint32_t hash, const String& name)
{
    if (expected < held.Count()) {
        DirectoryNode* next = AsDirectory(ContentOf(held[expected]));
        if (next && next->IndexHash() == hash && next->HasName(name)) {
            expected++;
            return next;
        }
    }
    const Known* at =
        std::lower_bound(known.begin(), known.end(), hash, [](const Known& each, uint32_t wanted) { return each.hash < wanted; });
    for (; at != known.end() && at->hash == hash; ++at)
        if (at->node->HasName(name))
            return at->node;
    return nullptr;
}

// Without memory an entry is skipped, and the folder stays dirty.
void DirectoryListing::AddNew(DirectoryEntry&& entry)
{
    NodeRef node(Make<DirectoryNode>()(std::move(entry)));
    if (!node || !added.Append(std::move(node)))
        folder.MarkDirty();
}

void DirectoryListing::Finish(bool sound)
{
    if (!sound)
        folder.MarkDirty();
    for (NodeRef& child : held) {
        BrowserContentNode* node = ContentOf(child);
        if (!node->HasFlags(Attribute::mark))
            continue;
        node->ClearFlags(Attribute::mark);
        if (sound)
            node->Remove();
    }
    (void)folder.InsertAllLast(added.begin(), added.Count());
}

} // namespace browser
