#include "nodes/directorylisting.h"

#include <algorithm>

#include "model/crc32.h"

namespace browser {

void DirectoryListing::Run()
{
    folderPath = folder.GetPath();
    VX3FolderWalk* walk = host->folder->startWalk(folderPath.Value(), uint32_t(VX3_WALK_HIDDEN) | uint32_t(VX3_WALK_READONLY));
    if (!walk)
        return; // The folder stays dirty: the next request tries again.
    folder.ClearFlags(Attribute::dirty);
    if (TakeSnapshot()) {
        StartHash();
        VX3FolderEntry entry = {};
        while (host->folder->nextEntry(walk, &entry))
            if (!(entry.flags & VX3_ENTRY_HIDDEN))
                Merge(entry);
        host->text->destruct(&entry.name);
        Finish(host->folder->walkIsSound(walk));
    } else {
        folder.MarkDirty();
    }
    host->folder->endWalk(walk);
}

bool DirectoryListing::TakeSnapshot()
{
    NodeRef child, next;
    for (folder.GetFirstChildLinked(child); child; child = std::move(next)) {
        child->GetNext(next);
        DirectoryNode* node = AsDirectory(ContentOf(child));
        if (!node)
            continue;
        if (!known.Append({ node->IndexHash(), node }) || !held.Append(std::move(child)))
            return false;
    }
    for (Known& each : known)
        each.node->SetFlags(Attribute::mark);
    std::sort(known.begin(), known.end(), [](const Known& a, const Known& b) { return a.hash < b.hash; });
    return true;
}

void DirectoryListing::StartHash()
{
    constexpr VX3Unit slash = '/';
    BrowserURL url(folderPath);
    Units text = url.GetText().View();
    prefixState = ContinueCrcOfUnit(ContinueCrcFolding(crcStart, text), slash);
    prefixLength = static_cast<uint32_t>(text.size()) + 1;
}

void DirectoryListing::Merge(VX3FolderEntry& found)
{
    const String& foundName = String::Of(&found.name);
    Units units = foundName.View();
    DirectoryEntry entry;
    entry.urlHash = FinishCrc(ContinueCrcFolding(prefixState, units));
    entry.urlLength = prefixLength + static_cast<uint32_t>(units.size());
    entry.flags = FlagsOfNewEntry(found.flags);
    entry.created = found.created;
    entry.modified = found.modified;
    entry.size = found.size;
    if (DirectoryNode* old = FindKnown(entry.urlHash, foundName)) {
        old->RefreshFrom(entry);
        return;
    }
    entry.name = std::move(String::Of(&found.name));
    if (entry.path.SetJoined(folderPath, entry.name))
        AddNew(std::move(entry));
}

DirectoryNode* DirectoryListing::FindKnown(uint32_t hash, const String& name)
{
    if (expected < held.Count()) {
        auto* next = static_cast<DirectoryNode*>(ContentOf(held[expected]));
        if (next->IndexHash() == hash && next->HasName(name)) {
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
