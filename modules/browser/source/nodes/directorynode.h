// A file, a folder, or a volume of this machine.
//
// A folder lists itself when its children are asked for while it is dirty; a later
// listing merges into the children that exist, so that nodes, the references to them
// and their plugins survive a refresh.
//
// `contentLock` is held over a listing and over file operations; `fieldLock` guards the
// fields that a listing, a rename and readers share, and is never held over a call that
// can block.
#pragma once

#include "model/browserinterface.h"

namespace browser {

// A place: all that changes when a node is renamed or moved. Made whole before anything
// happens on disk, so that nothing can fail behind it.
struct DirectoryAddress {
    FilePath path;
    String name;
    BrowserURL::Key key;
};

// The place of an entry of a folder, or of a path itself. False without memory.
[[nodiscard]] bool MakeAddress(const FilePath& folder, const String& name, DirectoryAddress& out);
[[nodiscard]] bool MakeAddress(const FilePath& path, DirectoryAddress& out);

// What a listing learns of an entry.
struct DirectoryEntry {
    DirectoryAddress address;
    uint32_t flags = 0;
    int64_t size = 0; // of a plain file
    FileDate created = {};
    FileDate modified = {};
};

class DirectoryNode final : public BrowserContentNode
{
public:
    // Takes the values out of `entry`.
    explicit DirectoryNode(DirectoryEntry&& entry);

    void GetFirstChild(NodeRef& out) override;
    void GetLastChild(NodeRef& out) override;
    NodeType GetNodeType() const override { return NodeType::Directory; }
    BrowserPluginInterface* GetPlugin(uint32_t request) override;
    void GetName(String& out) override;
    const String& GetNameRef() override CB_UNCHECKED { return name; }
    void GetTypeName(String& out, TypeDetail detail) override;
    bool GetUrl(BrowserURL& out, uint32_t request) override;
    bool GetDate(DateKind kind, FileDate& out) override;
    uint32_t GetAttributes(int64_t* size) override;
    Preview* GetPreview(uint32_t request, int32_t size) override;
    int64_t Populate() override;
    ErrorCode Rename(ChangeMode mode, const String& newName) override;
    ErrorCode CreateFolder(ChangeMode mode, const String& newName, ContentRef* out) override;
    ErrorCode MoveInto(ContentRef source, ChangeMode mode, Progress progress) override;
    ErrorCode CopyInto(ContentRef source, ChangeMode mode, const String* newName, Progress progress, uint32_t more) override;
    ErrorCode Delete(ChangeMode mode, Progress progress) override;
    void UpdateUrlPrefix(const String& oldPrefix, const String& newPrefix, bool recursive) override;
    bool NotesChanges() const override { return true; }

    FilePath GetPath();
    [[nodiscard]] bool ReadPath(FilePath& out); // false without memory
    bool HasPath(const FilePath& other);
    bool HasName(const String& other);
    int64_t Generation() const { return sizeOrGeneration.load(std::memory_order_acquire); }

    // For a listing, which holds the parent's `contentLock`. False if the node could not be
    // changed now, and must be asked again.
    [[nodiscard]] bool RefreshFrom(const DirectoryEntry& entry);

private:
    friend class DirectoryListing;

    bool IsFolder() const { return HasFlags(Attribute::folder); }
    bool IsVolumeSilent(); // never to be probed, or the probe fails: nothing may be listed
    void ListIfNeeded() CB_NOT_HELD(contentLock);
    void NoteDate() CB_HOLDS(contentLock);
    void RefreshFile(const DirectoryEntry& entry) CB_HOLDS(fieldLock);
    void RefreshFolder(const DirectoryEntry& entry) CB_HOLDS(fieldLock);
    bool ChangeKind(const DirectoryEntry& entry) CB_UNCHECKED; // tries a lock
    void ReplaceFlags(uint32_t newFlags, uint32_t carried);
    void SetAddress(DirectoryAddress&& address);
    void LoseAddress();
    void RaiseGeneration() { sizeOrGeneration.fetch_add(1, std::memory_order_acq_rel); }
    void KeepPlugin(BrowserPluginInterface* found, bool quick);
    void ForgetPlugin() { plugin.store(nullptr, std::memory_order_release); }

    struct Relocation;
    ErrorCode ChangeName(const String& newName);
    ErrorCode TakeIn(DirectoryNode& child);
    bool RenameOnDisk(Relocation& change, DirectoryNode* above);
    bool MoveOnDisk(Relocation& change, DirectoryNode& child, DirectoryNode* oldParent);
    ErrorCode DoMove(DirectoryNode& child, Progress progress);
    ErrorCode AskMove(DirectoryNode& child);
    ErrorCode DoCreateFolder(const String& newName, ContentRef* out);
    ErrorCode DoCopy(DirectoryNode& child, const String* newName, Progress progress);
    ErrorCode DoDelete(Progress progress);

    // Identified as having no plugin.
    static BrowserPluginInterface* NoPlugin() { return reinterpret_cast<BrowserPluginInterface*>(~uintptr_t(0)); }

    HostLock fieldLock;
    FilePath path CB_GUARDED_BY(fieldLock);
    String name CB_GUARDED_BY(fieldLock); // changed by a rename only, on the thread that runs it
    FileDate createdDate CB_GUARDED_BY(fieldLock);
    FileDate modifiedDate CB_GUARDED_BY(fieldLock);
    // Of a file its size in bytes. Of a folder or bundle a counter of listings; 0 means
    // never listed. GetAttributes hides the counter.
    std::atomic<int64_t> sizeOrGeneration;
    std::atomic<BrowserPluginInterface*> plugin = nullptr; // none: not yet identified
};

using DirectoryRef = Ref<DirectoryNode>;

// The node as a directory node, none if it is of another class.
inline DirectoryNode* AsDirectory(BrowserContentNode* node)
{
    return node && node->GetClass() == NodeClass::Directory ? static_cast<DirectoryNode*>(node) : nullptr;
}

// The flags of a node that a listing meets for the first time.
uint32_t FlagsOfNewEntry(uint32_t entryFlags);

} // namespace browser
