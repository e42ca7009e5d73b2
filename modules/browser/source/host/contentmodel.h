// Start and stop of the content: plugins, tree and roots.
#pragma once

#include "services/filepath.h"

namespace browser {

// Brings up plugins, tree and roots. A root that cannot be made is absent; false if
// there is no tree at all.
bool InitContentModel();

// First stage of going down: all nodes leave the tree, libraries are closed, the
// temporary folder is emptied. `quick` is for the libraries.
void ShutDownContentModel(bool quick);

// Last stage: what is left of the model's memory.
void FreeContentModel();

} // namespace browser
