// What a drag carries out of a list, and where it may be dropped in one.
#pragma once

#include "model/browserinterface.h"

namespace browser {

// The data of a drag of the type VX3_DRAG_BROWSER, alive while the drag goes on. `source`
// is compared and never followed: its window may close meanwhile.
struct DragBlock {
    int32_t count = 0;
    const NodeRef* nodes = nullptr; // `count` of them, borrowed
    const void* source = nullptr;   // the pane that the drag began in

    bool Holds(const RTreeNode* node) const;
};

struct DropTarget {
    ContentRef node;        // none: nothing can be dropped there
    bool isChanged = false; // what is shown of it: draw again
};

} // namespace browser
