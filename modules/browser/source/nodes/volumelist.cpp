#include "nodes/volumelist.h"

#include "nodes/directorynode.h"

namespace browser {

namespace {

struct VolumeValue : VX3Volume {
    VolumeValue()
        : VX3Volume{}
    {
    }
    ~VolumeValue()
    {
        host->path->destruct(&path);
        host->text->destruct(&name);
        host->text->destruct(&label);
    }
};

bool TakeSnapshot(BrowserContentNode& computer, Array<NodeRef>& held)
{
    Array<NodeRef> children;
    if (!computer.CollectChildren(children))
        return false;
    for (NodeRef& child : children)
        if (AsDirectory(ContentOf(child)) && !held.Append(std::move(child)))
            return false;
    for (NodeRef& each : held)
        ContentOf(each)->SetFlags(Attribute::mark);
    return true;
}

// Volumes are few: no search tree is needed to find one.
DirectoryNode* FindVolume(Array<NodeRef>& held, const FilePath& path)
{
    for (NodeRef& each : held) {
        auto* node = AsDirectory(ContentOf(each));
        if (node->HasPath(path))
            return node;
    }
    return nullptr;
}

// The name, and the label in brackets if there is one.
String ShownName(VolumeValue& volume)
{
    String name = String::Of(&volume.name);
    String& label = String::Of(&volume.label);
    if (!label.IsEmpty() && name.Append(" [") && name.Append(label))
        (void)name.Append("]");
    return name;
}

bool AddVolume(BrowserContentNode& computer, VolumeValue& volume)
{
    DirectoryEntry entry;
    if (!MakeAddress(FilePath::Of(&volume.path), entry.address))
        return false;
    entry.address.name = ShownName(volume);
    entry.flags = Attribute::folder | Attribute::volume | Attribute::dirty;
    ContentRef node(Make<DirectoryNode>()(std::move(entry)));
    return node && node->AttachTo(computer);
}

bool MergeVolumes(BrowserContentNode& computer, VX3VolumeWalk* walk, Array<NodeRef>& held)
{
    bool changed = false;
    VolumeValue volume;
    while (host->folder->nextVolume(walk, &volume)) {
        if (DirectoryNode* old = FindVolume(held, FilePath::Of(&volume.path)))
            old->ClearFlags(Attribute::mark);
        else if (!(volume.attributes & VX3_VOLUME_LEAVE_OUT))
            changed |= AddVolume(computer, volume);
    }
    for (NodeRef& each : held) {
        BrowserContentNode* node = ContentOf(each);
        if (!node->HasFlags(Attribute::mark))
            continue;
        node->ClearFlags(Attribute::mark);
        node->Remove();
        changed = true;
    }
    return changed;
}

} // namespace

bool ListVolumes(BrowserContentNode& computer)
{
    LockGuard guard(computer.contentLock, LockRank::Content);
    Array<NodeRef> held;
    VX3VolumeWalk* walk = host->folder->startVolumes();
    if (!walk)
        return false;
    bool changed = TakeSnapshot(computer, held) && MergeVolumes(computer, walk, held);
    host->folder->endVolumes(walk);
    return changed;
}

} // namespace browser
