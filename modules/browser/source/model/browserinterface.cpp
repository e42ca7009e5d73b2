#include "model/browserinterface.h"

#include "model/pluginregistry.h"
#include "services/resources.h"

namespace browser {

bool BrowserContentNode::IsAlive(const RTreeNode& parent)
{
    return !static_cast<const BrowserContentNode&>(parent).IsRemoved();
}

void BrowserContentNode::GetFirstChild(NodeRef& out)
{
    Populate();
    GetFirstChildLinked(out);
}

void BrowserContentNode::GetLastChild(NodeRef& out)
{
    Populate();
    GetLastChildLinked(out);
}

void BrowserContentNode::Remove()
{
    {
        LinkGuard guard(Lock()); // From here on no child is attached any more.
        SetFlags(Attribute::removed);
    }
    RTreeNode::Remove();
}

BrowserPluginInterface* BrowserContentNode::GetPlugin(uint32_t)
{
    return nullptr;
}

void BrowserContentNode::GetTypeName(String& out, TypeDetail detail)
{
    BrowserPluginInterface* plugin = GetPlugin(URL_LINK_TARGET);
    BrowserURL url;
    if (!plugin && GetUrl(url, 0))
        (void)FindPluginForUrl(url, PluginTest::Quick, &plugin);
    if (plugin)
        plugin->GetTypeName(out, ContentRef(this), nullptr, detail);
    else
        out = ResourceText(Texts::UnknownType);
}

bool BrowserContentNode::GetDate(DateKind, FileDate& out)
{
    out = {};
    return false;
}

uint32_t BrowserContentNode::GetAttributes(int64_t* size)
{
    if (size)
        *size = 0;
    return 0;
}

Preview* BrowserContentNode::GetPreview(uint32_t, int32_t)
{
    return nullptr;
}

int64_t BrowserContentNode::Populate()
{
    return 0;
}

int32_t BrowserContentNode::GetContentData(int32_t, int32_t, int32_t, void**)
{
    return -1;
}

ErrorCode BrowserContentNode::Rename(ChangeMode, const String&)
{
    return Error::rename;
}

ErrorCode BrowserContentNode::CreateFolder(ChangeMode, const String&, ContentRef*)
{
    return Error::newFolder;
}

ErrorCode BrowserContentNode::MoveInto(ContentRef, ChangeMode, Progress)
{
    return Error::move;
}

ErrorCode BrowserContentNode::CopyInto(ContentRef, ChangeMode, const String*, Progress, uint32_t)
{
    return Error::copy;
}

ErrorCode BrowserContentNode::Delete(ChangeMode, Progress)
{
    return Error::deletion;
}

void BrowserContentNode::UpdateUrlPrefix(const String&, const String&, bool)
{
}

bool BrowserPluginInterface::Identify(BrowserURL&, IdentifyHeader)
{
    return false;
}

void* BrowserPluginInterface::OpenContent(ContentRef, BrowserURL&, ContentInfo&)
{
    return nullptr;
}

void BrowserPluginInterface::CloseContent(void*)
{
}

VX3Bitmap* BrowserPluginInterface::TakeContentBitmap(void*)
{
    return nullptr;
}

VX3PreviewDialog* BrowserPluginInterface::CreatePreviewDialog(ContentRef, uint32_t)
{
    return nullptr;
}

int32_t BrowserPluginInterface::ClosePreviewDialog(ContentRef, VX3PreviewDialog*)
{
    return 0;
}

int32_t BrowserPluginInterface::PollPreviewDialog(ContentRef, VX3PreviewDialog*)
{
    return 0;
}

bool BrowserPluginInterface::OpenItem(ContentRef, BrowserURL*, uint32_t)
{
    return false;
}

} // namespace browser
