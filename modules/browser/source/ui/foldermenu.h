// The context menu of a folder pane: one table of rows, and what a selection has of them.
#pragma once

#include "services/basecontainer.h"
#include "ui/contententrylist.h"

namespace browser {

class FolderContentDialog;

// What the menu goes by, counted once. The rows act on the nodes that were selected then,
// whatever the list shows when the user has chosen.
struct MenuFacts {
    Array<NodeRef> selected;
    bool areContainers = false; // all of them; false without a selection
    bool areFiles = false;      // or folders, on a disk
    bool showsNode = false;     // and not the roots
    bool isSingleClick = false;

    bool HasSelection() const { return !selected.IsEmpty(); }
};
void CountMenuFacts(FolderContentDialog& dialog, MenuFacts& facts);

// The rows that have a meaning now, with a separator between groups. False without memory.
[[nodiscard]] bool MakeFolderMenu(const MenuFacts& facts, BaseContainer& menu);
// Does what a row says; nothing for a number that is none.
void RunFolderCommand(int32_t command, FolderContentDialog& dialog, const MenuFacts& facts);

} // namespace browser
