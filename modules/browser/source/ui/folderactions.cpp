#include "ui/folderactions.h"

#include "model/pluginregistry.h"
#include "model/urlresolver.h"
#include "nodes/directorynode.h"
#include "services/guitools.h"
#include "services/resources.h"

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

// Tells the user if the system does not do it.
void HandToSystem(const NodeRef& item, bool (*take)(const FilePath& path), int32_t failureText)
{
    FilePath path;
    DirectoryNode* file = AsDirectory(ContentOf(item));
    if (!file || !file->ReadPath(path) || take(path))
        return;
    String name;
    file->GetName(name);
    ShowError(ResourceText(failureText, std::span<const String>(&name, 1)));
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
    HandToSystem(item, RevealPath, Texts::NoFileManager);
}

void OpenInSystem(const NodeRef& item)
{
    HandToSystem(item, OpenWithSystem, Texts::NoProgram);
}

} // namespace browser
