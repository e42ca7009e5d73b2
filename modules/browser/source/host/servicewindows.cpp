// The section for windows, which a host without a GUI does not get.

#include "host/servicetable.h"
#include "ui/windowregistry.h"

namespace browser {

namespace {

VX3Bool Open(VX3Url* url)
{
    return OpenBrowserWindow(BrowserURL::Of(url));
}

constexpr VX3BrowserWindows windowSection = { Open };

} // namespace

const VX3BrowserWindows* WindowSection()
{
    return host->gui ? &windowSection : nullptr;
}

} // namespace browser
