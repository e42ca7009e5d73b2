// Changes of files and folders: rename, new folder, move, copy, delete.
//
// What decides where a node lies is read under locks and tested again there: between a
// question and its answer another thread may have renamed, moved or removed the node.

#include "model/subtreewalk.h"
#include "nodes/directorynode.h"

namespace browser {

namespace {

// One rename or move at a time: addresses above a node stand still while it is held.
HostLock addressLock;

// The folder that a node hangs in, none for a volume.
DirectoryRef ParentFolder(DirectoryNode& node)
{
    NodeRef parent;
    node.GetParent(parent);
    return DirectoryRef(AsDirectory(ContentOf(parent)));
}

ErrorCode WalkResult(BrowserContentNode& top, ChangeMode mode, Progress progress, ErrorCode failure)
{
    switch (WalkSubtree(top, mode, progress, ListFolders::Yes)) {
    case WalkEnd::Done: return Error::none;
    case WalkEnd::Cancelled: return Error::cancelled;
    case WalkEnd::OutOfMemory: break;
    }
    return failure;
}

uint32_t KindBits(const DirectoryNode& node)
{
    return node.Flags() & (Attribute::folder | Attribute::bundle);
}

// A node and its folder for the length of a scope: neither is listed, renamed or moved.
class HeldPlace
{
public:
    explicit HeldPlace(DirectoryNode& node)
    {
        LockGuard order(addressLock, LockRank::Address);
        above = ParentFolder(node);
        locks.Take(node.contentLock, above ? above->contentLock : node.contentLock);
    }
    DirectoryNode* Above() { return above.Get(); }

private:
    DirectoryRef above; // outlives the locks
    LockPair locks;
};

} // namespace

// A change of address, whole before the disk is touched.
struct DirectoryNode::Relocation {
    explicit Relocation(DirectoryNode& moved)
        : subtree(moved)
    {
    }
    [[nodiscard]] bool Prepare(DirectoryNode& moved, const FilePath& folder, const String& newName)
    {
        BrowserURL oldUrl, newUrl;
        if (!subtree.IsReady() || !moved.ReadPath(oldPath) || !MakeAddress(folder, newName, address))
            return false;
        oldUrl.SetFile(oldPath);
        newUrl.SetFile(address.path);
        return oldText.Set(oldUrl.GetText()) && newText.Set(newUrl.GetText()) && !oldText.IsEmpty() && !newText.IsEmpty();
    }

    AddressChange subtree;
    FilePath oldPath;
    DirectoryAddress address;
    String oldText, newText;
};

ErrorCode DirectoryNode::Rename(ChangeMode mode, const String& newName)
{
    if (mode != ChangeMode::Do)
        return Error::none;
    if (HasFlags(Attribute::volume | Attribute::removed) || !IsNameAllowed(newName))
        return Error::rename;
    if (HasName(newName))
        return Error::none;
    ErrorCode result = ChangeName(newName);
    if (result == Error::none)
        (void)WalkSubtree(*this, ChangeMode::Do, {}, ListFolders::Yes);
    return result;
}

ErrorCode DirectoryNode::ChangeName(const String& newName)
{
    LockGuard order(addressLock, LockRank::Address);
    DirectoryRef above = ParentFolder(*this);
    FilePath own, folder;
    if (!ReadPath(own) || !own.GetDirectory(folder))
        return Error::rename;
    Relocation change(*this);
    if (!change.Prepare(*this, folder, newName) || !RenameOnDisk(change, above.Get()))
        return Error::rename;
    change.subtree.MovePrefix(change.oldText, change.newText);
    return Error::none;
}

bool DirectoryNode::RenameOnDisk(Relocation& change, DirectoryNode* above)
{
    LockPair guard;
    guard.Take(contentLock, above ? above->contentLock : contentLock);
    if (IsRemoved() || !host->folder->rename(change.oldPath.Value(), change.address.path.Value()))
        return false;
    SetAddress(std::move(change.address));
    if (above)
        above->MarkDirty();
    return true;
}

ErrorCode DirectoryNode::CreateFolder(ChangeMode mode, const String& newName, ContentRef* out)
{
    if (!CanHoldChildren())
        return Error::newFolder;
    if (mode != ChangeMode::Do)
        return Error::none;
    return IsNameAllowed(newName) ? DoCreateFolder(newName, out) : Error::newFolder;
}

ErrorCode DirectoryNode::DoCreateFolder(const String& newName, ContentRef* out)
{
    LockGuard order(addressLock, LockRank::Address);
    LockGuard guard(contentLock, LockRank::Content);
    FilePath own;
    DirectoryEntry entry;
    if (IsRemoved() || !ReadPath(own) || !MakeAddress(own, newName, entry.address))
        return Error::newFolder;
    FilePath made;
    if (!made.Set(entry.address.path))
        return Error::newFolder;
    entry.flags = Attribute::folder | Attribute::dirty;
    ContentRef node(out ? Make<DirectoryNode>()(std::move(entry)) : nullptr);
    if (out && (!node || !node->AttachTo(*this)))
        return Error::newFolder;
    if (!host->folder->createFolder(made.Value())) {
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
    case ChangeMode::Walk: return progress ? WalkResult(*child, mode, progress, Error::move) : Error::none;
    case ChangeMode::Ask: return AskMove(*child);
    }
    return Error::move;
}

// A move across volumes is not offered, nor one of a folder into itself.
ErrorCode DirectoryNode::AskMove(DirectoryNode& child)
{
    if (!IsFolder() || HasFlags(Attribute::readOnly | Attribute::removed)
        || child.HasFlags(Attribute::readOnly | Attribute::removed | Attribute::volume) || IsAtOrBelow(child))
        return Error::move;
    FilePath own, moved;
    if (!ReadPath(own) || !child.ReadPath(moved))
        return Error::move;
    return host->folder->sameVolume(own.Value(), moved.Value()) ? Error::none : Error::move;
}

ErrorCode DirectoryNode::DoMove(DirectoryNode& child, Progress progress)
{
    if (!IsFolder() || IsRemoved() || child.HasFlags(Attribute::removed | Attribute::volume))
        return Error::move;
    ErrorCode result = IsAtOrBelow(child) ? Error::moveFailed : TakeIn(child);
    if (result != Error::none)
        return result;
    (void)WalkSubtree(child, ChangeMode::Do, {}, ListFolders::Yes);
    if (progress && WalkSubtree(child, ChangeMode::Do, progress, ListFolders::No) == WalkEnd::Cancelled)
        return Error::cancelled;
    return Error::none;
}

ErrorCode DirectoryNode::TakeIn(DirectoryNode& child)
{
    LockGuard order(addressLock, LockRank::Address);
    DirectoryRef oldParent = ParentFolder(child);
    FilePath own;
    String childName;
    child.GetName(childName);
    Relocation change(child);
    if (!ReadPath(own) || !change.Prepare(child, own, childName) || !MoveOnDisk(change, child, oldParent.Get()))
        return Error::moveFailed;
    change.subtree.MovePrefix(change.oldText, change.newText);
    return Error::none;
}

// The node changes its place in the tree only when the disk has agreed, and takes its new
// address before the locks are given back: a listing of either folder meets a tree that
// agrees with the disk.
bool DirectoryNode::MoveOnDisk(Relocation& change, DirectoryNode& child, DirectoryNode* oldParent)
{
    LockPair guard;
    guard.Take(contentLock, oldParent ? oldParent->contentLock : contentLock);
    if (IsRemoved() || child.IsRemoved() || !host->folder->move(change.oldPath.Value(), change.address.path.Value()))
        return false;
    child.SetAddress(std::move(change.address));
    // Both folders know of the change, so neither is marked: to list them again for each of
    // 10,000 files that move would cost a square of them.
    if (!child.AttachTo(*this))
        child.Remove();
    return true;
}

ErrorCode DirectoryNode::CopyInto(ContentRef source, ChangeMode mode, const String* newName, Progress progress, uint32_t)
{
    // Files out of a library join here once there are libraries.
    DirectoryNode* child = AsDirectory(source.Get());
    if (!child)
        return Error::wrongType;
    switch (mode) {
    case ChangeMode::Do: return DoCopy(*child, newName, progress);
    case ChangeMode::Walk: return progress ? WalkResult(*child, mode, progress, Error::copy) : Error::none;
    case ChangeMode::Ask: return HasFlags(Attribute::readOnly | Attribute::removed) || !IsFolder() ? Error::copy : Error::none;
    }
    return Error::copy;
}

// No lock is held over the bytes: a listing of this folder must not wait for a long copy.
ErrorCode DirectoryNode::DoCopy(DirectoryNode& child, const String* newName, Progress progress)
{
    FilePath from, own;
    DirectoryAddress target;
    String targetName;
    {
        LockGuard order(addressLock, LockRank::Address);
        bool isKnown = child.ReadPath(from) && ReadPath(own) && from.GetLast(targetName);
        if (isKnown && newName && !newName->IsEmpty())
            isKnown = targetName.Set(*newName);
        if (!isKnown || !IsFolder() || IsRemoved() || child.IsRemoved() || !IsNameAllowed(targetName)
            || !MakeAddress(own, targetName, target))
            return Error::copy;
    }
    int64_t size = 0;
    child.GetAttributes(&size);
    VX3Bool cancelled = 0;
    if (!host->folder->copy(from.Value(), target.path.Value(), KindBits(child), size, progress.function, progress.user, &cancelled))
        return cancelled ? Error::cancelled : Error::copy;
    LockGuard guard(contentLock, LockRank::Content);
    MarkDirty();
    return Error::none;
}

ErrorCode DirectoryNode::Delete(ChangeMode mode, Progress progress)
{
    switch (mode) {
    case ChangeMode::Do: return DoDelete(progress);
    case ChangeMode::Walk: return WalkResult(*this, mode, progress, Error::deletion);
    case ChangeMode::Ask: break;
    }
    return HasFlags(Attribute::readOnly | Attribute::volume | Attribute::removed) ? Error::deletion : Error::none;
}

ErrorCode DirectoryNode::DoDelete(Progress progress)
{
    ContentRef kept(this);
    HeldPlace place(*this);
    FilePath own;
    if (HasFlags(Attribute::volume | Attribute::removed) || !ReadPath(own))
        return Error::deletion;
    int64_t size = 0;
    GetAttributes(&size);
    VX3Bool cancelled = 0;
    if (host->folder->remove(own.Value(), KindBits(*this), size, progress.function, progress.user, &cancelled)) {
        Remove();
        return Error::none;
    }
    MarkDirty(); // A part may be gone.
    if (place.Above())
        place.Above()->MarkDirty();
    return cancelled ? Error::cancelled : Error::deletion;
}

} // namespace browser
