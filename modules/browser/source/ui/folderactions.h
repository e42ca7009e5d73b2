// What can be done with entries of a folder pane.
#pragma once

#include "services/array.h"
#include "services/gedialog.h"
#include "ui/panewindow.h"

namespace browser {

// Applies a leaf, in a new document if wanted, and goes to a container; through a link to
// what it points at.
void OpenEntry(PaneWindow& window, ContentRef item, bool newDocument);

// Does it to one after the other. Any of them may show a box, and the user may close the window behind
// it: then the others are left alone.
template <class Act>
void ForEachWhileOpen(const DialogBase& dialog, const Array<NodeRef>& items, Act act)
{
    for (const NodeRef& item : items) {
        if (!dialog.IsOpen())
            return;
        act(item);
    }
}

// In the system's file manager, and with the program that the system has for a file. Of
// nodes that are no files nothing is shown.
void ShowInFileManager(const NodeRef& item);
void OpenInSystem(const NodeRef& item);

} // namespace browser
