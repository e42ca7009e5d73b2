#include "plugins/browserimageplugin.h"

namespace browser {

// On the main thread, as all of the host's windows.
bool BrowserImagePlugin::OpenItem(ContentRef node, BrowserURL* url, uint32_t)
{
    BrowserURL nodeUrl;
    if (!url && node && node->GetUrl(nodeUrl, URL_LINK_TARGET))
        url = &nodeUrl;
    FilePath path;
    return url && url->GetFile(path) && host->bitmap->show(path.Value());
}

} // namespace browser
