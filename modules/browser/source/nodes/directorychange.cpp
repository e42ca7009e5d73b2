// Changes of files and folders: rename, new folder, move, copy, delete.

#include "model/subtreewalk.h"
#include "nodes/directorynode.h"

namespace browser {

namespace {

// The folder that a node hangs in, none for a volume.
DirectoryRef ParentFolder(DirectoryNode& node)
{
    NodeRef parent;
    node.GetParent(parent);
    return DirectoryRef(AsDirectory(ContentOf(parent)));
}

ErrorCode WalkResult(BrowserContentNode& top, ChangeMode mode, Progress progress)
{
    return WalkSubtree(top, mode, progress, ListFolders::Yes) ? Error::none : Error::cancelled;
}

uint32_t KindBits(const DirectoryNode& node)
{
    return node.Flags() & (Attribute::folder | Attribute::bundle);
}

} // namespace

ErrorCode DirectoryNode::Rename(ChangeMode mode, const String& newName)
{
    if (mode != ChangeMode::Do)
        return Error::none;
    if (IsRemoved() || HasFlags(Attribute::volume) || !IsNameAllowed(newName))
        return Error::rename;
    return DoRename(newName);
}

ErrorCode DirectoryNode::DoRename(const String& newName)
{
    DirectoryRef above = ParentFolder(*this);
    String oldText = GetUrlText();
    FilePath oldPath = GetPath();
    FilePath newPath(oldPath);
    if (!newPath.SetLast(newName))
        return Error::rename;
    if (newPath == oldPath)
        return Error::none;
    {
        // A listing of the parent in between would take the node for gone.
        LockPair guard(contentLock, above ? above->contentLock : contentLock);
        if (!host->folder->rename(oldPath.Value(), newPath.Value()))
            return Error::rename;
        SetPath(newPath, &newName);
        if (above)
            above->MarkDirty();
    }
    MoveUrlPrefix(*this, oldText, GetUrlText());
    return Error::none;
}

ErrorCode DirectoryNode::CreateFolder(ChangeMode mode, const String& newName, ContentRef* out)
{
    if (!CanHoldChildren())
        return Error::newFolder;
    if (mode != ChangeMode::Do)
        return Error::none;
    if (IsRemoved() || !IsNameAllowed(newName))
        return Error::newFolder;
    FilePath newPath = PathOfChild(newName);
    LockGuard guard(contentLock, LockRank::Content);
    ContentRef node;
    if (out) {
        DirectoryEntry entry;
        BrowserURL url(newPath);
        entry.urlHash = url.GetHash();
        entry.urlLength = static_cast<uint32_t>(url.GetText().Length());
        entry.path = newPath;
        entry.name = newName;
        entry.flags = Attribute::folder | Attribute::dirty;
        node = ContentRef(Make<DirectoryNode>()(std::move(entry)));
        if (!node || !node->AttachTo(*this))
            return Error::newFolder;
    }
    if (!host->folder->createFolder(newPath.Value())) {
        if (node)
            node->Remove();
        return Error::newFolder;
    }
    MarkDirty();
    if (out)
        *out = std::move(node);
    return Error::none;
}

ErrorCode DirectoryNode::MoveInto(ContentRef source, ChangeMode mode, Progress progress)
{
    DirectoryNode* child = AsDirectory(source.Get());
    if (!child)
        return Error::wrongType;
    switch (mode) {
    case ChangeMode::Do: return DoMove(*child, progress);
    case ChangeMode::Walk: return progress ? WalkResult(*child, mode, progress) : Error::none;
    case ChangeMode::Ask: return AskMove(*child);
    }
    return Error::move;
}

// A move across volumes is not offered.
ErrorCode DirectoryNode::AskMove(DirectoryNode& child)
{
    if (!IsFolder() || HasFlags(Attribute::readOnly | Attribute::removed)
        || child.HasFlags(Attribute::readOnly | Attribute::removed | Attribute::volume))
        return Error::move;
    FilePath own = GetPath(), moved = child.GetPath();
    return host->folder->sameVolume(own.Value(), moved.Value()) ? Error::none : Error::move;
}

ErrorCode DirectoryNode::DoMove(DirectoryNode& child, Progress progress)
{
    if (!IsFolder() || IsRemoved() || child.HasFlags(Attribute::removed | Attribute::volume) || &child == this)
        return Error::move;
    DirectoryRef oldParent = ParentFolder(child);
    String oldText = child.GetUrlText();
    FilePath target = PathOfChild(child.GetPath().Last());
    if (!MoveOnDisk(child, oldParent.Get(), target))
        return Error::moveFailed;
    MoveUrlPrefix(child, oldText, child.GetUrlText());
    if (progress && !WalkSubtree(child, ChangeMode::Do, progress, ListFolders::No))
        return Error::cancelled;
    return Error::none;
}

// The node hangs nowhere while the disk works, and takes its new path before the locks
// are given back: a listing of either folder meets a tree that agrees with the disk.
bool DirectoryNode::MoveOnDisk(DirectoryNode& child, DirectoryNode* oldParent, const FilePath& target)
{
    ContentRef kept(&child);
    FilePath oldPath = child.GetPath();
    LockPair guard(contentLock, oldParent ? oldParent->contentLock : contentLock);
    child.Detach();
    bool moved = host->folder->move(oldPath.Value(), target.Value());
    if (moved) {
        child.SetPath(target, nullptr);
        (void)child.AttachTo(*this);
        MarkDirty();
        if (oldParent)
            oldParent->MarkDirty();
    } else if (oldParent) {
        (void)child.AttachTo(*oldParent);
    }
    return moved;
}

ErrorCode DirectoryNode::CopyInto(ContentRef source, ChangeMode mode, const String* newName, Progress progress, uint32_t)
{
    // Files out of a library join here once there are libraries.
    DirectoryNode* child = AsDirectory(source.Get());
    if (!child)
        return Error::wrongType;
    switch (mode) {
    case ChangeMode::Do: return DoCopy(*child, newName, progress);
    case ChangeMode::Walk: return progress ? WalkResult(*child, mode, progress) : Error::none;
    case ChangeMode::Ask: return HasFlags(Attribute::readOnly | Attribute::removed) || !IsFolder() ? Error::copy : Error::none;
    }
    return Error::copy;
}

// No lock is held over the bytes: a listing of this folder must not wait for a long copy.
ErrorCode DirectoryNode::DoCopy(DirectoryNode& child, const String* newName, Progress progress)
{
    FilePath from = child.GetPath();
    String targetName = newName && !newName->IsEmpty() ? *newName : from.Last();
    if (!IsFolder() || HasFlags(Attribute::removed) || child.IsRemoved() || !IsNameAllowed(targetName))
        return Error::copy;
    FilePath target = PathOfChild(targetName);
    int64_t size = 0;
    child.GetAttributes(&size);
    VX3Bool cancelled = 0;
    bool copied = host->folder->copy(from.Value(), target.Value(), KindBits(child), size, progress.function, progress.user, &cancelled);
    if (copied)
        MarkDirty();
    return copied ? Error::none : cancelled ? Error::cancelled : Error::copy;
}

ErrorCode DirectoryNode::Delete(ChangeMode mode, Progress progress)
{
    switch (mode) {
    case ChangeMode::Do: return DoDelete(progress);
    case ChangeMode::Walk: return WalkResult(*this, mode, progress);
    case ChangeMode::Ask: break;
    }
    return HasFlags(Attribute::readOnly | Attribute::volume | Attribute::removed) ? Error::deletion : Error::none;
}

ErrorCode DirectoryNode::DoDelete(Progress progress)
{
    if (HasFlags(Attribute::volume | Attribute::removed))
        return Error::deletion;
    DirectoryRef above = ParentFolder(*this);
    ContentRef kept(this);
    FilePath own = GetPath();
    int64_t size = 0;
    GetAttributes(&size);
    LockPair guard(contentLock, above ? above->contentLock : contentLock);
    VX3Bool cancelled = 0;
    if (host->folder->remove(own.Value(), KindBits(*this), size, progress.function, progress.user, &cancelled)) {
        Remove();
        return Error::none;
    }
    MarkDirty(); // A part may be gone.
    if (above)
        above->MarkDirty();
    return cancelled ? Error::cancelled : Error::deletion;
}

} // namespace browser
