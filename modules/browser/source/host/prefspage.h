// The browser's page in the host's preference window, and the start URL. Main thread.
#pragma once

#include "model/browserurl.h"

namespace browser {

// At start. The page holds nothing: its values are the stored settings.
[[nodiscard]] bool RegisterPrefsPage();

void GetStartUrl(BrowserURL& out); // empty if none is set
bool SetStartUrl(BrowserURL& url); // false if it cannot be kept

} // namespace browser
