// Counted trees.
//
// Every link of a node is a counted reference, so a linked tree is a web of cycles that
// only Remove breaks: a node that drops out of use without Remove lives for ever.
//
// Any thread may call. `lock` guards the five links of its node and nothing else. A
// change of links needs the locks of the node, its parent, its prev and its next: the
// first is waited for, every further one is tried, and if one is taken all are given
// back and the change starts over with the links as they stand then. So two
// neighbours can be removed at once, and there is no lock for the whole tree.
#pragma once

#include "model/noderef.h"
#include "services/array.h"
#include "services/hostlock.h"

namespace browser {

class RTree;
class RTreeNode;
class ChildIndex;
using NodeRef = Ref<RTreeNode>;

class RTreeNode : public ReferenceObject
{
public:
    RTreeNode() = default;
    ~RTreeNode() override;

    virtual void GetFirstChild(NodeRef& out);
    virtual void GetLastChild(NodeRef& out);
    virtual void Remove(); // children first, then out of the tree

    void GetParent(NodeRef& out);                                         // none for a top node
    RTreeNode* GetParentRaw() const CB_UNCHECKED { return parent.Get(); } // no lock, no count
    void GetNext(NodeRef& out);
    void GetPrev(NodeRef& out);
    void GetFirstChildLocked(NodeRef& out) CB_UNCHECKED; // the caller holds `lock`, which is tested at run time

    void InsertLast(RTreeNode* newParent);                      // without a parent: below the tree, if the node has one
    void InsertLastDetached(RTreeNode* newParent) CB_UNCHECKED; // the caller holds the lock of `newParent`
    void InsertBefore(RTreeNode* sibling);
    enum class ParentLock : bool { HeldByCaller, Take };
    void Detach(ParentLock parentLock = ParentLock::Take); // the children stay attached
    void RemoveChildren();

    // As InsertLast; false if `admits` says no to the parent under the parent's lock.
    using Admission = bool (*)(const RTreeNode& parent);
    [[nodiscard]] bool InsertLastIf(RTreeNode* newParent, Admission admits);
    // Moves a child of `ownParent` behind its siblings; false if it is none any more.
    [[nodiscard]] bool MoveToEnd(RTreeNode* ownParent, Admission admits);
    bool IsAtOrBelow(const RTreeNode& other);
    // Appends unlinked nodes in one go; each array element keeps its own count.
    [[nodiscard]] bool InsertAllLastIf(Ref<RTreeNode>* nodes, size_t count, Admission admits);

    // A parent with many children keeps them by key, so that a lookup need not walk
    // them: the hash of the child's URL and its length. 0 length: not to be found so.
    void SetIndexKey(uint32_t hash, uint32_t length);
    void InitIndexKey(uint32_t hash, uint32_t length) // for a node that no other thread knows yet
    {
        indexHash.store(hash, std::memory_order_relaxed);
        indexLength.store(length, std::memory_order_relaxed);
    }
    uint32_t IndexHash() const { return indexHash.load(std::memory_order_relaxed); }
    uint32_t IndexLength() const { return indexLength.load(std::memory_order_relaxed); }
    // What the index knows of the child of a key. Unknown: the children must be walked.
    enum class Lookup { Unknown, None, One, Several };
    Lookup FindIndexedChild(uint32_t hash, uint32_t length, NodeRef& out);

    RTree* GetTree() const { return tree.load(std::memory_order_relaxed); }
    LinkLock& Lock() CB_ATTRIBUTE(lock_returned(lock)) { return lock; }

protected:
    void RemoveFromTree(); // the body of Remove, not virtual
    // The children as they are linked, without listing anything.
    void GetFirstChildLinked(NodeRef& out);
    void GetLastChildLinked(NodeRef& out);
    // All children of one moment, from `first` on if it is given. False without memory.
    [[nodiscard]] bool CollectChildren(Array<NodeRef>& out, RTreeNode* first = nullptr) CB_UNCHECKED;

private:
    // With `indexLength` the key, changed under the parent's lock. Stands here since it
    // fills a gap behind the count: a folder may have 100,000 nodes.
    std::atomic<uint32_t> indexHash = 0;

protected:
    std::atomic<RTree*> tree = nullptr; // not counted; the same in a whole subtree

private:
    friend class RTree;
    class HeldLinks;

    struct Displaced;
    enum class Outcome { Done, Refused, Busy };
    enum class From { Anywhere, SameParent };

    // One attempt each, with the locks of `links`; Busy means that a lock was taken.
    bool TryNeighbours(HeldLinks& links, ParentLock parentLock) CB_UNCHECKED;
    Outcome TryLinkLast(RTreeNode* newParent, Admission admits, From from) CB_UNCHECKED;
    Outcome TryLinkBefore(RTreeNode* sibling) CB_UNCHECKED;
    Outcome TryLinkChain(Ref<RTreeNode>* nodes, size_t count, Admission admits) CB_UNCHECKED;
    bool TryUnlink(bool clearTree, ParentLock parentLock) CB_UNCHECKED;
    bool TrySetIndexKey(uint32_t hash, uint32_t length) CB_UNCHECKED;

    // With all locks held that the change needs.
    void Unlink(Displaced& displaced) CB_UNCHECKED;
    void AppendTo(RTreeNode* newParent, Displaced& displaced) CB_UNCHECKED;
    void NoteChildAdded(RTreeNode* child) CB_UNCHECKED;
    void NoteChildTaken(RTreeNode* child) CB_UNCHECKED;
    void BuildIndex(size_t expected) CB_UNCHECKED; // with room for so many children
    void DropIndex() CB_UNCHECKED;

    void CopyLink(NodeRef RTreeNode::*link, NodeRef& out) CB_UNCHECKED; // a link is named by its field
    void SpreadTree();
    bool TakeTree(RTree* own);
    void AdoptTree(RTree* own) CB_UNCHECKED;

    NodeRef parent CB_GUARDED_BY(lock);
    NodeRef firstChild CB_GUARDED_BY(lock);
    NodeRef lastChild CB_GUARDED_BY(lock);
    NodeRef prev CB_GUARDED_BY(lock);
    NodeRef next CB_GUARDED_BY(lock);
    LinkLock lock;
    ChildIndex* index CB_GUARDED_BY(lock) = nullptr; // owned; none while there are few children
    uint32_t childCount CB_GUARDED_BY(lock) = 0;
    std::atomic<uint32_t> indexLength = 0;
};

// The root of a counted tree. It holds one count of itself, and is deleted by its owner.
class RTree : public RTreeNode
{
public:
    RTree();
    ~RTree() override;
};

} // namespace browser
