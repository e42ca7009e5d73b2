// The section for the operations of a node, by slot, and the one for dispatch.

#include "host/servicetable.h"
#include "model/pluginregistry.h"

namespace browser {

namespace {

void FirstChild(VX3Node* node, VX3Node** out)
{
    NodeRef child;
    FromC(node)->GetFirstChild(child);
    GiveOut(ToContent(child), out);
}

void LastChild(VX3Node* node, VX3Node** out)
{
    NodeRef child;
    FromC(node)->GetLastChild(child);
    GiveOut(ToContent(child), out);
}

void RemoveNode(VX3Node* node)
{
    FromC(node)->Remove();
}

int32_t TypeOfNode(VX3Node* node)
{
    return static_cast<int32_t>(FromC(node)->GetNodeType());
}

VX3Plugin* PluginOfNode(VX3Node* node, uint32_t request)
{
    return ToC(FromC(node)->GetPlugin(request));
}

void NameOfNode(VX3Node* node, VX3String* out)
{
    FromC(node)->GetName(String::Of(out));
}

const VX3String* NameRefOfNode(VX3Node* node)
{
    return FromC(node)->GetNameRef().Value();
}

void TypeNameOfNode(VX3Node* node, VX3String* out, int32_t detail)
{
    FromC(node)->GetTypeName(String::Of(out), static_cast<TypeDetail>(detail));
}

VX3Bool UrlOfNode(VX3Node* node, VX3Url* out, uint32_t request)
{
    return FromC(node)->GetUrl(BrowserURL::Of(out), request);
}

VX3Bool DateOfNode(VX3Node* node, int32_t kind, VX3FileDate* out)
{
    return FromC(node)->GetDate(static_cast<DateKind>(kind), *out);
}

uint32_t AttributesOfNode(VX3Node* node, int64_t* size)
{
    return FromC(node)->GetAttributes(size);
}

VX3Preview* PreviewOfNode(VX3Node* node, uint32_t request, int32_t size)
{
    return ToC(FromC(node)->GetPreview(request, size));
}

int64_t PopulateNode(VX3Node* node)
{
    return FromC(node)->Populate();
}

int32_t ContentDataOfNode(VX3Node* node, int32_t id, int32_t kind, int32_t sub, void** data)
{
    return FromC(node)->GetContentData(id, kind, sub, data);
}

uint32_t RenameNode(VX3Node* node, int32_t mode, const VX3String* name)
{
    return FromC(node)->Rename(ModeOf(mode), String::Of(name));
}

uint32_t CreateFolderInNode(VX3Node* node, int32_t mode, const VX3String* name, VX3Node** folder)
{
    ContentRef made;
    ErrorCode result = FromC(node)->CreateFolder(ModeOf(mode), String::Of(name), folder ? &made : nullptr);
    if (made)
        GiveOut(std::move(made), folder);
    return result;
}

uint32_t MoveIntoNode(VX3Node* node, VX3Node* source, int32_t mode, VX3ProgressFunction progress, void* user)
{
    return FromC(node)->MoveInto(Consume(source), ModeOf(mode), { progress, user });
}

uint32_t CopyIntoNode(VX3Node* node, VX3Node* source, int32_t mode, const VX3String* name, VX3ProgressFunction progress, void* user,
                      uint32_t more)
{
    return FromC(node)->CopyInto(Consume(source), ModeOf(mode), name ? &String::Of(name) : nullptr, { progress, user }, more);
}

uint32_t DeleteNode(VX3Node* node, int32_t mode, VX3ProgressFunction progress, void* user)
{
    return FromC(node)->Delete(ModeOf(mode), { progress, user });
}

void UpdatePrefixOfNode(VX3Node* node, const VX3String* oldPrefix, const VX3String* newPrefix, VX3Bool recursive)
{
    FromC(node)->UpdateUrlPrefix(String::Of(oldPrefix), String::Of(newPrefix), recursive);
}

VX3PreviewDialog* MakeDialog(VX3Node* node, uint32_t request)
{
    return CreatePreviewDialog(Consume(node), request);
}

int32_t CloseDialog(VX3Node* node, VX3PreviewDialog* dialog)
{
    return ClosePreviewDialog(Consume(node), dialog);
}

int32_t PollDialog(VX3Node* node, VX3PreviewDialog* dialog)
{
    return PollPreviewDialog(Consume(node), dialog);
}

VX3Bool Open(VX3Node* node, VX3Url* url, uint32_t request)
{
    return OpenItem(Consume(node), url ? &BrowserURL::Of(url) : nullptr, request);
}

void TypeNameByPlugin(VX3Node* node, VX3Url* url, VX3String* out, int32_t detail)
{
    GetTypeName(Consume(node), url ? &BrowserURL::Of(url) : nullptr, String::Of(out), static_cast<TypeDetail>(detail));
}

constexpr VX3NodeFunctions nodeSection = {
    nullptr, // slot 0, the destructor
    FirstChild,     LastChild,          RemoveNode,   TypeOfNode,       PluginOfNode,  NameOfNode,         NameRefOfNode,
    TypeNameOfNode, UrlOfNode,          DateOfNode,   AttributesOfNode, PreviewOfNode, PopulateNode,       ContentDataOfNode,
    RenameNode,     CreateFolderInNode, MoveIntoNode, CopyIntoNode,     DeleteNode,    UpdatePrefixOfNode,
};

constexpr VX3DispatchFunctions dispatchSection = { MakeDialog, CloseDialog, PollDialog, Open, TypeNameByPlugin };

} // namespace

const VX3NodeFunctions* NodeSection()
{
    return &nodeSection;
}

const VX3DispatchFunctions* DispatchSection()
{
    return &dispatchSection;
}

} // namespace browser
