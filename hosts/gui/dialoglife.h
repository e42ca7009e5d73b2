// How dialogs open and close, in the order that guidialog.h promises.
//
// destroyWindow is called for every dialog whose createLayout answered 1, also if the
// opening failed later. Everything here calls modules; a dialog may have closed, or
// have been freed, when a function returns.
#pragma once

#include "gui/deskstate.h"

namespace vx3::gui {

enum class Opening { Window, Modal };

// It is closed, and has not been freed by a callback.
bool CanOpen(DeskState& desk, const Dialog& dialog);

// Opens a window that is closed. False if it did not stay open.
bool OpenWindow(DeskState& desk, Dialog& window, const VX3WindowPlace& place, Opening kind);
// Opens a closed dialog in a gadget of another that has gadgets.
bool AttachDialog(DeskState& desk, Dialog& dialog, Gadget& holder);

// Closes it as soon as no callback runs in it. False if it is closed or goes already.
bool RequestClose(DeskState& desk, Dialog& dialog, int32_t result);
// Closes it whatever runs in it.
void CloseNow(DeskState& desk, Dialog& dialog);
// The same where nothing may be thrown.
void CloseSafely(DeskState& desk, Dialog& dialog) noexcept;
// Asks the module of a window, and closes it if that agrees. False if it stays.
bool AskToClose(DeskState& desk, Dialog& window);

// May timers and core messages come?
bool IsLive(const Dialog& dialog);
bool IsLeaving(const Dialog& dialog);    // it, or a dialog around it
bool WantsToLeave(const Dialog& dialog); // the same, or as soon as nothing runs in it
// Tells the toolkit when the next timer is due.
void UpdateWakeTime(DeskState& desk);

// The modules of a dialog and of those inside it hear that it is about to be hidden.
void TellHiding(DeskState& desk, Dialog& dialog);

} // namespace vx3::gui
