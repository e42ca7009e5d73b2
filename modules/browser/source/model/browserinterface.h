// The two interfaces of content: the node, which says where a thing is, and the plugin,
// which says what it is.
#pragma once

#include "model/browserurl.h"
#include "model/contentcodes.h"
#include "model/contentversion.h"
#include "model/preview.h"
#include "model/rtreenode.h"
#include "services/array.h"
#include "services/filedate.h"

namespace browser {

class BrowserPluginInterface;
class BrowserContentNode;

// The class of a node, for casts: the node type does not tell classes apart.
enum class NodeClass : uint8_t { BaseList, Category, Directory };

// One element of the content tree.
//
// Any thread may call any operation. A node lives as long as a reference does, also
// after Remove: then it has Attribute::removed and no links, its own fields still
// answer, and operations that own files refuse.
//
// `contentLock` is held over a listing or a file operation of this node. The slots of
// the published table follow the order of the virtual operations.
class BrowserContentNode : public RTreeNode
{
public:
    explicit BrowserContentNode(NodeClass ownClass, uint32_t startFlags = 0)
        : flags(startFlags)
        , nodeClass(ownClass)
    {
    }

    void GetFirstChild(NodeRef& out) override; // calls Populate
    void GetLastChild(NodeRef& out) override;
    void Remove() override;

    virtual NodeType GetNodeType() const = 0;
    virtual BrowserPluginInterface* GetPlugin(uint32_t request);
    virtual void GetName(String& out) = 0;
    virtual const String& GetNameRef() = 0; // borrowed while the node lives and keeps its name
    virtual void GetTypeName(String& out, TypeDetail detail);
    virtual bool GetUrl(BrowserURL& out, uint32_t request) = 0;
    virtual bool GetDate(DateKind kind, FileDate& out);
    virtual uint32_t GetAttributes(int64_t* size);
    virtual Preview* GetPreview(uint32_t request, int32_t size);
    virtual int64_t Populate(); // a generation that changes when the children do
    virtual int32_t GetContentData(int32_t id, int32_t kind, int32_t sub, void** data);

    virtual ErrorCode Rename(ChangeMode mode, const String& newName);
    virtual ErrorCode CreateFolder(ChangeMode mode, const String& newName, Ref<BrowserContentNode>* out);
    virtual ErrorCode MoveInto(Ref<BrowserContentNode> source, ChangeMode mode, Progress progress);
    virtual ErrorCode CopyInto(Ref<BrowserContentNode> source, ChangeMode mode, const String* newName, Progress progress, uint32_t more);
    virtual ErrorCode Delete(ChangeMode mode, Progress progress);
    virtual void UpdateUrlPrefix(const String& oldPrefix, const String& newPrefix, bool recursive);

    // Whether each change of what this node tells raises the content version. Of a node
    // that cannot see to that nobody keeps anything.
    virtual bool NotesChanges() const { return false; }

    NodeClass GetClass() const { return nodeClass; }
    bool IsRemoved() const { return HasFlags(Attribute::removed); }
    bool CanHoldChildren() const { return HasFlags(Attribute::canHoldChildren); }
    // Marks a folder so that the next request for children lists it.
    void MarkDirty()
    {
        if (CanHoldChildren())
            SetFlags(Attribute::dirty);
    }
    void ClearFlags(uint32_t bits) { NoteChangedFlags(flags.fetch_and(~bits, std::memory_order_acq_rel) & bits); }
    void SetFlags(uint32_t bits) { NoteChangedFlags(~flags.fetch_or(bits, std::memory_order_acq_rel) & bits); }
    bool HasFlags(uint32_t anyOf) const { return (Flags() & anyOf) != 0; }
    uint32_t Flags() const { return flags.load(std::memory_order_acquire); }

    // Attaches as last child; false below a parent that has been removed, below itself, and
    // for a node that has been removed.
    [[nodiscard]] bool AttachTo(BrowserContentNode& newParent)
    {
        return !IsRemoved() && !newParent.IsAtOrBelow(*this) && InsertLastIf(&newParent, IsAlive);
    }
    // Moves a child of `ownParent` behind its siblings.
    [[nodiscard]] bool MoveBehindSiblings(BrowserContentNode& ownParent) { return MoveToEnd(&ownParent, IsAlive); }

    // The same for unlinked nodes that only the caller knows, all at once.
    [[nodiscard]] bool InsertAllLast(NodeRef* nodes, size_t count) { return InsertAllLastIf(nodes, count, IsAlive); }

    using RTreeNode::CollectChildren;
    using RTreeNode::GetFirstChildLinked;
    using RTreeNode::GetLastChildLinked;

    HostLock contentLock;

protected:
    static bool IsAlive(const RTreeNode& parent);
    static void NoteChangedFlags(uint32_t changed)
    {
        if (changed & ~Attribute::passing)
            NoteContentChange();
    }

    std::atomic<uint32_t> flags; // Attribute; changed by setting and clearing bits

private:
    const NodeClass nodeClass;
};

using ContentRef = Ref<BrowserContentNode>;

// All nodes below the content tree are content nodes.
inline BrowserContentNode* ContentOf(const NodeRef& node)
{
    return static_cast<BrowserContentNode*>(node.Get());
}
inline ContentRef ToContent(const NodeRef& node)
{
    return ContentRef(ContentOf(node));
}

// What the bytes or the URL of a thing are asked for.
struct IdentifyHeader {
    const void* bytes = nullptr; // none: decide from the URL alone, and read nothing
    int32_t length = 0;
};

// What OpenContent tells of the content.
struct ContentInfo {
    uint32_t kind = 0;
    int32_t width = -1;
    int32_t height = -1;
};

// A content type. One object for each type, without state: any thread may call, also
// several at once. An operation is given a node, or a URL, or both.
class BrowserPluginInterface
{
public:
    virtual ~BrowserPluginInterface() = default;
    static void operator delete(void* block) { HostFree(block); }

    virtual int32_t GetTypeId(String* name) = 0;
    virtual bool Identify(BrowserURL& url, IdentifyHeader header);
    virtual void GetTypeName(String& out, ContentRef node, BrowserURL* url, TypeDetail detail) = 0;
    virtual void* OpenContent(ContentRef node, BrowserURL& url, ContentInfo& info);
    virtual void CloseContent(void* handle);
    virtual VX3Bitmap* TakeContentBitmap(void* handle);
    virtual Preview* GetTypeIcon(BrowserURL& url, int32_t size) = 0;
    virtual VX3PreviewDialog* CreatePreviewDialog(ContentRef node, uint32_t request);
    virtual int32_t ClosePreviewDialog(ContentRef node, VX3PreviewDialog* dialog);
    virtual int32_t PollPreviewDialog(ContentRef node, VX3PreviewDialog* dialog);
    virtual bool OpenItem(ContentRef node, BrowserURL* url, uint32_t request);
    // False without memory.
    virtual bool GetTypeNames(TypeDetail detail, Array<String>& names) = 0;
};

} // namespace browser
