// The sections for the tree, for references and for links.

#include "host/servicetable.h"
#include "model/contenttree.h"
#include "model/urlresolver.h"

namespace browser {

namespace {

void RootByIndex(int32_t index, VX3Node** out)
{
    ContentRef root;
    GetRootByIndex(index, root);
    GiveOut(std::move(root), out);
}

void RootNode(VX3Node* node, VX3Node** out)
{
    ContentRef first;
    GetRootNode(Consume(node), first);
    GiveOut(std::move(first), out);
}

void FindByUrl(VX3Url* url, int32_t mode, VX3Node* start, VX3Node** out)
{
    ContentRef found;
    FindNodeByUrl(BrowserURL::Of(url), mode ? mode : FindPlain, Consume(start), found);
    GiveOut(std::move(found), out);
}

void FindInNetwork(VX3Url* url, VX3Node** out)
{
    ContentRef found;
    FindNetworkNode(BrowserURL::Of(url), found);
    GiveOut(std::move(found), out);
}

VX3Bool Attach(VX3Node* node, int32_t index)
{
    return AttachToRoot(Consume(node), index);
}

VX3Bool Reorder(int32_t reserved, VX3Node* const* nodes, int32_t count)
{
    return ReorderChildren(reserved, reinterpret_cast<BrowserContentNode* const*>(nodes), count);
}

void Notify(VX3Node* node)
{
    NotifyChanged(Consume(node));
}

// A link of a node by one of its getters.
template <void (RTreeNode::*Getter)(NodeRef&)>
void GetLink(VX3Node* node, VX3Node** out)
{
    NodeRef linked;
    (FromC(node)->*Getter)(linked);
    GiveOut(ToContent(linked), out);
}

void AddReference(VX3Node* node)
{
    FromC(node)->AddRef();
}

void ReleaseReference(VX3Node* node)
{
    if (node)
        FromC(node)->Release();
}

VX3Bool ReleaseWithoutDelete(VX3Node* node)
{
    return FromC(node)->ReleaseNoDelete();
}

VX3Bool InsertLast(VX3Node* node, VX3Node* parent)
{
    if (parent)
        return FromC(node)->AttachTo(*FromC(parent));
    FromC(node)->InsertLast(nullptr);
    return true;
}

void InsertBefore(VX3Node* node, VX3Node* sibling)
{
    if (!FromC(sibling)->IsAtOrBelow(*FromC(node)))
        FromC(node)->InsertBefore(FromC(sibling));
}

void DetachNode(VX3Node* node)
{
    FromC(node)->Detach();
}

void RemoveAllChildren(VX3Node* node)
{
    FromC(node)->RemoveChildren();
}

constexpr VX3TreeFunctions treeSection = { RootByIndex, RootNode, FindByUrl, FindInNetwork, Attach, Reorder, Notify, RefreshVolumes };
constexpr VX3ReferenceFunctions referenceSection = { AddReference, ReleaseReference, ReleaseWithoutDelete };
constexpr VX3LinkFunctions linkSection = { GetLink<&RTreeNode::GetParent>,
                                           GetLink<&RTreeNode::GetNext>,
                                           GetLink<&RTreeNode::GetPrev>,
                                           InsertLast,
                                           InsertBefore,
                                           DetachNode,
                                           RemoveAllChildren };

} // namespace

const VX3TreeFunctions* TreeSection()
{
    return &treeSection;
}

const VX3ReferenceFunctions* ReferenceSection()
{
    return &referenceSection;
}

const VX3LinkFunctions* LinkSection()
{
    return &linkSection;
}

} // namespace browser
