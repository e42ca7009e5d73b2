#include "ui/folderactions.h"

#include "model/pluginregistry.h"
#include "model/urlresolver.h"
#include "nodes/directorynode.h"
#include "services/guitools.h"

namespace browser {

namespace {

// The node itself, unless it is a link to one that can be found.
ContentRef FollowLink(ContentRef item)
{
    BrowserURL target;
    if (!item->HasFlags(Attribute::link) || !item->GetUrl(target, URL_LINK_TARGET))
        return item;
    ContentRef found;
    FindNodeByUrl(target, FindPlain, ContentRef(), found);
    return found ? found : item;
}

bool GetFilePath(const NodeRef& item, FilePath& path)
{
    DirectoryNode* file = AsDirectory(ContentOf(item));
    return file && file->ReadPath(path);
}

} // namespace

void OpenEntry(PaneWindow& window, ContentRef item, bool newDocument)
{
    if (!item)
        return;
    if (item->CanHoldChildren())
        window.ShowNode(FollowLink(item), ContentRef());
    else
        (void)OpenItem(std::move(item), nullptr, uint32_t{ newDocument });
}

void ShowInFileManager(const NodeRef& item)
{
    FilePath path;
    if (GetFilePath(item, path))
        (void)RevealPath(path);
}

void OpenInSystem(const NodeRef& item)
{
    FilePath path;
    if (GetFilePath(item, path))
        (void)OpenWithSystem(path);
}

} // namespace browser
