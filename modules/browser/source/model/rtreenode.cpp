#include "model/rtreenode.h"

#include "model/childindex.h"
#include "model/contentversion.h"
#include "services/resources.h"

namespace browser {

namespace {

// From so many children on a parent keeps an index of them.
constexpr uint32_t indexThreshold = 32;

void Yield()
{
    host->thread->sleep(0);
}

} // namespace

// The locks of one attempt. All are given back at the end of its life.
class RTreeNode::HeldLinks
{
public:
    HeldLinks() = default;
    ~HeldLinks() CB_UNCHECKED // Which locks are held is only known at run time.
    {
        while (count)
            held[--count]->Unlock();
    }
    HeldLinks(const HeldLinks&) = delete;
    HeldLinks& operator=(const HeldLinks&) = delete;

    void Wait(RTreeNode* node) CB_UNCHECKED
    {
        node->lock.Lock();
        held[count++] = &node->lock;
    }
    // True also for none and for a node that is held already.
    bool Try(RTreeNode* node) CB_UNCHECKED
    {
        if (!node || Holds(node->lock))
            return true;
        if (!node->lock.Try())
            return false;
        held[count++] = &node->lock;
        return true;
    }

private:
    bool Holds(const LinkLock& wanted) const
    {
        for (size_t i = 0; i < count; i++)
            if (held[i] == &wanted)
                return true;
        return false;
    }

    static constexpr size_t mostLocks = 8;
    LinkLock* held[mostLocks];
    size_t count = 0;
};

// References that a change takes out of links. They are given back after the locks,
// since the last one of them may delete a node.
struct RTreeNode::Displaced {
    static constexpr size_t mostReferences = 12;

    void Set(NodeRef& link, const NodeRef& value)
    {
        references[count] = std::move(link);
        count++;
        link = value;
    }

    NodeRef references[mostReferences];
    size_t count = 0;
};

RTreeNode::~RTreeNode()
{
    AddRef(); // A second destruction must not start while the links go.
    if (firstChild || parent || prev || next)
        RTreeNode::RemoveFromTree();
    (void)ReleaseNoDelete();
    Destroy(index);
}

// What `out` held is given back outside the lock, since it may delete a node.
void RTreeNode::CopyLink(NodeRef RTreeNode::*link, NodeRef& out)
{
    NodeRef copy;
    {
        LinkGuard guard(lock);
        copy = this->*link;
    }
    out = std::move(copy);
}

void RTreeNode::GetFirstChildLinked(NodeRef& out)
{
    CopyLink(&RTreeNode::firstChild, out);
}

void RTreeNode::GetLastChildLinked(NodeRef& out)
{
    CopyLink(&RTreeNode::lastChild, out);
}

// Links between siblings change under the parent's lock, so that one is enough.
bool RTreeNode::CollectChildren(Array<NodeRef>& out, RTreeNode* first)
{
    LinkGuard guard(lock);
    if (!out.Reserve(out.Count() + childCount))
        return false;
    bool isLinked = first && first->parent.Get() == this;
    for (RTreeNode* child = isLinked ? first : firstChild.Get(); child; child = child->next.Get())
        if (!out.Append(NodeRef(child)))
            return false;
    return true;
}

void RTreeNode::GetFirstChild(NodeRef& out)
{
    GetFirstChildLinked(out);
}

void RTreeNode::GetLastChild(NodeRef& out)
{
    GetLastChildLinked(out);
}

void RTreeNode::GetParent(NodeRef& out)
{
    NodeRef above;
    CopyLink(&RTreeNode::parent, above);
    out = above.Get() == GetTree() ? NodeRef() : std::move(above);
}

void RTreeNode::GetNext(NodeRef& out)
{
    CopyLink(&RTreeNode::next, out);
}

void RTreeNode::GetPrev(NodeRef& out)
{
    CopyLink(&RTreeNode::prev, out);
}

void RTreeNode::GetFirstChildLocked(NodeRef& out)
{
    NodeRef child;
    if (lock.IsHeld())
        child = firstChild;
    else
        ReportCriticalStop();
    out = std::move(child);
}

void RTreeNode::Remove()
{
    RemoveFromTree();
}

void RTreeNode::RemoveFromTree()
{
    AddRef();
    RemoveChildren();
    while (!TryUnlink(true, ParentLock::Take))
        Yield();
    Release();
}

void RTreeNode::RemoveChildren()
{
    NodeRef child;
    for (GetFirstChildLinked(child); child; GetFirstChildLinked(child))
        child->Remove();
}

void RTreeNode::Detach(ParentLock parentLock)
{
    AddRef();
    while (!TryUnlink(false, parentLock))
        if (parentLock == ParentLock::Take) // No pause while the caller holds a link lock.
            Yield();
    (void)ReleaseNoDelete();
}

bool RTreeNode::TryNeighbours(HeldLinks& links, ParentLock parentLock)
{
    return (parentLock == ParentLock::HeldByCaller || links.Try(parent.Get())) && links.Try(prev.Get()) && links.Try(next.Get());
}

bool RTreeNode::TryUnlink(bool clearTree, ParentLock parentLock)
{
    Displaced displaced;
    HeldLinks links;
    if (parentLock == ParentLock::Take)
        links.Wait(this);
    else if (!links.Try(this))
        return false;
    if (!TryNeighbours(links, parentLock))
        return false;
    Unlink(displaced);
    if (clearTree && GetTree() != this)
        tree.store(nullptr, std::memory_order_relaxed);
    return true;
}

void RTreeNode::Unlink(Displaced& displaced)
{
    if (parent) {
        parent->NoteChildTaken(this);
        if (parent->firstChild.Get() == this)
            displaced.Set(parent->firstChild, next);
        if (parent->lastChild.Get() == this)
            displaced.Set(parent->lastChild, prev);
    }
    if (prev)
        displaced.Set(prev->next, next);
    if (next)
        displaced.Set(next->prev, prev);
    displaced.Set(parent, NodeRef());
    displaced.Set(prev, NodeRef());
    displaced.Set(next, NodeRef());
    NoteContentChange();
}

void RTreeNode::InsertLast(RTreeNode* newParent)
{
    AddRef();
    if (newParent) {
        (void)InsertLastIf(newParent, nullptr);
    } else {
        while (!TryUnlink(false, ParentLock::Take))
            Yield();
        if (RTree* top = GetTree())
            (void)InsertLastIf(top, nullptr);
    }
    (void)ReleaseNoDelete();
}

bool RTreeNode::InsertLastIf(RTreeNode* newParent, Admission admits)
{
    Outcome outcome = Outcome::Busy;
    while ((outcome = TryLinkLast(newParent, admits, From::Anywhere)) == Outcome::Busy)
        Yield();
    if (outcome == Outcome::Done)
        SpreadTree();
    return outcome == Outcome::Done;
}

bool RTreeNode::MoveToEnd(RTreeNode* ownParent, Admission admits)
{
    Outcome outcome = Outcome::Busy;
    while ((outcome = TryLinkLast(ownParent, admits, From::SameParent)) == Outcome::Busy)
        Yield();
    return outcome == Outcome::Done;
}

bool RTreeNode::IsAtOrBelow(const RTreeNode& other)
{
    for (NodeRef node(this); node; node->GetParent(node))
        if (node.Get() == &other)
            return true;
    return false;
}

RTreeNode::Outcome RTreeNode::TryLinkLast(RTreeNode* newParent, Admission admits, From from)
{
    Displaced displaced;
    HeldLinks links;
    links.Wait(this);
    if (from == From::SameParent && parent.Get() != newParent)
        return Outcome::Refused;
    if (!TryNeighbours(links, ParentLock::Take) || !links.Try(newParent) || !links.Try(newParent->lastChild.Get()))
        return Outcome::Busy;
    if (admits && !admits(*newParent))
        return Outcome::Refused;
    Unlink(displaced);
    AppendTo(newParent, displaced);
    return Outcome::Done;
}

// The node is unlinked; it, the parent and the parent's last child are locked.
void RTreeNode::AppendTo(RTreeNode* newParent, Displaced& displaced)
{
    NodeRef self(this);
    tree.store(newParent->GetTree(), std::memory_order_relaxed);
    parent = NodeRef(newParent);
    if (newParent->lastChild) {
        displaced.Set(newParent->lastChild->next, self);
        prev = newParent->lastChild;
    } else {
        displaced.Set(newParent->firstChild, self);
    }
    displaced.Set(newParent->lastChild, self);
    newParent->NoteChildAdded(this);
    NoteContentChange();
}

void RTreeNode::InsertLastDetached(RTreeNode* newParent)
{
    if (!newParent || parent || prev || next)
        return;
    Displaced displaced;
    HeldLinks links;
    // The holder of either lock never waits for another one, so it gives way soon.
    while (!links.Try(this) || !links.Try(newParent->lastChild.Get()))
        continue;
    AppendTo(newParent, displaced);
    for (RTreeNode* child = firstChild.Get(); child; child = child->next.Get())
        child->AdoptTree(GetTree());
}

// For a subtree that nobody else can reach, since its top was unlinked.
void RTreeNode::AdoptTree(RTree* own)
{
    tree.store(own, std::memory_order_relaxed);
    for (RTreeNode* child = firstChild.Get(); child; child = child->next.Get())
        child->AdoptTree(own);
}

bool RTreeNode::InsertAllLastIf(Ref<RTreeNode>* nodes, size_t count, Admission admits)
{
    if (!count)
        return true;
    Outcome outcome = Outcome::Busy;
    while ((outcome = TryLinkChain(nodes, count, admits)) == Outcome::Busy)
        Yield();
    return outcome == Outcome::Done;
}

// The nodes are known to this thread alone, so only the parent and its last child are locked.
RTreeNode::Outcome RTreeNode::TryLinkChain(Ref<RTreeNode>* nodes, size_t count, Admission admits)
{
    HeldLinks links;
    links.Wait(this);
    if (!links.Try(lastChild.Get()))
        return Outcome::Busy;
    if (admits && !admits(*this))
        return Outcome::Refused;
    if (index && !index->Prepare(childCount + count))
        DropIndex();
    else if (!index && childCount + count > indexThreshold)
        BuildIndex(childCount + count);
    NodeRef before = std::move(lastChild);
    for (size_t i = 0; i < count; i++) {
        NodeRef& node = nodes[i];
        node->tree.store(GetTree(), std::memory_order_relaxed);
        node->parent = NodeRef(this);
        (before ? before->next : firstChild) = node;
        node->prev = std::move(before);
        before = node;
        NoteChildAdded(node.Get());
    }
    lastChild = std::move(before);
    NoteContentChange();
    return Outcome::Done;
}

void RTreeNode::InsertBefore(RTreeNode* sibling)
{
    if (!sibling || sibling == this)
        return;
    AddRef();
    Outcome outcome = TryLinkBefore(sibling);
    for (; outcome == Outcome::Busy; outcome = TryLinkBefore(sibling))
        Yield();
    if (outcome == Outcome::Done)
        SpreadTree();
    (void)ReleaseNoDelete();
}

// In front of a sibling that has left its parent there is no place: the node stays where it is.
RTreeNode::Outcome RTreeNode::TryLinkBefore(RTreeNode* sibling)
{
    Displaced displaced;
    HeldLinks links;
    links.Wait(this);
    if (!TryNeighbours(links, ParentLock::Take) || !links.Try(sibling) || !links.Try(sibling->parent.Get())
        || !links.Try(sibling->prev.Get()))
        return Outcome::Busy;
    if (!sibling->parent)
        return Outcome::Refused;
    Unlink(displaced);
    NodeRef self(this);
    tree.store(sibling->GetTree(), std::memory_order_relaxed);
    parent = sibling->parent;
    prev = sibling->prev;
    next = NodeRef(sibling);
    displaced.Set(prev ? prev->next : parent->firstChild, self);
    displaced.Set(sibling->prev, self);
    parent->NoteChildAdded(this);
    NoteContentChange();
    return Outcome::Done;
}

// Gives the descendants the tree of this node. They are linked below it and nowhere
// else, so no lock is held over the walk; it stops where the tree is right already.
void RTreeNode::SpreadTree()
{
    RTree* own = GetTree();
    NodeRef node;
    GetFirstChildLinked(node);
    while (node) {
        NodeRef following;
        if (node->TakeTree(own))
            node->GetFirstChildLinked(following);
        while (!following && node && node.Get() != this) {
            node->GetNext(following);
            if (!following)
                node->GetParent(node);
        }
        node = std::move(following);
    }
}

// False if nothing changes: the tree is right, or the node has been removed meanwhile.
bool RTreeNode::TakeTree(RTree* own)
{
    LinkGuard guard(lock);
    return parent && tree.exchange(own, std::memory_order_relaxed) != own;
}

void RTreeNode::NoteChildAdded(RTreeNode* child)
{
    childCount++;
    if (!index) {
        if (childCount > indexThreshold)
            BuildIndex(childCount);
    } else if (!index->Add(child->IndexHash(), child->IndexLength(), child)) {
        DropIndex();
    }
}

void RTreeNode::NoteChildTaken(RTreeNode* child)
{
    childCount--;
    if (index)
        index->Take(child->IndexHash(), child->IndexLength(), child);
}

// Without memory there is no index, and the next child that is added tries again.
void RTreeNode::BuildIndex(size_t expected)
{
    index = Make<ChildIndex>()();
    if (!index)
        return;
    bool complete = index->Prepare(expected);
    for (RTreeNode* child = firstChild.Get(); child && complete; child = child->next.Get())
        complete = index->Add(child->IndexHash(), child->IndexLength(), child);
    if (!complete)
        DropIndex();
}

void RTreeNode::DropIndex()
{
    Destroy(index);
    index = nullptr;
}

void RTreeNode::SetIndexKey(uint32_t hash, uint32_t length)
{
    while (!TrySetIndexKey(hash, length))
        Yield();
}

bool RTreeNode::TrySetIndexKey(uint32_t hash, uint32_t length)
{
    HeldLinks links;
    links.Wait(this);
    RTreeNode* above = parent.Get();
    if (!links.Try(above))
        return false;
    if (above && above->index)
        above->index->Take(IndexHash(), IndexLength(), this);
    InitIndexKey(hash, length);
    if (above && above->index && !above->index->Add(hash, length, this))
        above->DropIndex();
    return true;
}

RTreeNode::Lookup RTreeNode::FindIndexedChild(uint32_t hash, uint32_t length, NodeRef& out)
{
    LinkGuard guard(lock);
    if (!index || index->unkeyed)
        return Lookup::Unknown;
    if (!index->MayHaveLength(length))
        return Lookup::None;
    RTreeNode* child = nullptr;
    size_t count = index->Find(hash, &child, 1);
    if (count == 1)
        out = NodeRef(child);
    return count == 0 ? Lookup::None : count == 1 ? Lookup::One : Lookup::Several;
}

RTree::RTree()
{
    tree.store(this, std::memory_order_relaxed);
    AddRef(); // Nodes that go must not take their tree with them.
}

// Top nodes that are held elsewhere survive as single nodes.
RTree::~RTree()
{
    NodeRef top;
    for (GetFirstChildLinked(top); top; GetFirstChildLinked(top)) {
        top->RemoveChildren();
        top->RemoveFromTree();
    }
}

} // namespace browser
