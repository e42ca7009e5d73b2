// Pictures: the double click shows them in the host's viewer.
#pragma once

#include "plugins/filetypeplugin.h"

namespace browser {

class BrowserImagePlugin final : public FileTypePlugin
{
public:
    using FileTypePlugin::FileTypePlugin;

    bool OpenItem(ContentRef node, BrowserURL* url, uint32_t request) override;
};

} // namespace browser
