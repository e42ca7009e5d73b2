// The windows of the browser: 16 slots, the one that is in front, and announcements to all.
//
// Main thread, but for the announcements: any thread may tell that content changed, and
// the windows are walked under the registry's lock. Nothing but flags and events is
// touched there, and whoever takes a window out does it under the same lock.
#pragma once

#include "model/browserinterface.h"

namespace browser {

class BrowserDialog;

constexpr int32_t windowSlots = 16;

// Opens a window on a node, or on the folder of a leaf, which stands selected then. False,
// and nothing done, if all 16 are open or the host shows none.
bool OpenBrowserWindow(ContentRef node);
// The same on what is left of a URL, such as the start URL.
bool OpenBrowserWindow(BrowserURL& url);
// Opens the window of a slot from the host's saved layout.
bool RestoreBrowserWindow(int32_t slot);

// The open window of a slot, or none; -1 is the active one.
BrowserDialog* FindBrowserWindow(int32_t slot);

// The window that had the focus last; none if that was closed.
BrowserDialog* ActiveDialog();
void SetActiveDialog(BrowserDialog* dialog);
void ForgetActiveDialog(const BrowserDialog* dialog); // if it is the active one

// At the end of the module. First all of them stop what they do, then they go.
void CloseAllWindows();

// Any thread: a node's children, or the node itself, changed.
void AnnounceChange(ContentRef node);

} // namespace browser
