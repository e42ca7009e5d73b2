// What can be done with entries of a folder pane.
#pragma once

#include "ui/panewindow.h"

namespace browser {

// Applies a leaf, in a new document if wanted, and goes to a container; through a link to
// what it points at.
void OpenEntry(PaneWindow& window, ContentRef item, bool newDocument);

// In the system's file manager, and with the program that the system has for a file. Of
// nodes that are no files nothing is shown.
void ShowInFileManager(const NodeRef& item);
void OpenInSystem(const NodeRef& item);

} // namespace browser
