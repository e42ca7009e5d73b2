// What gadgets make of a user's hand where the module has no say: buttons, fields, lists.
//
// Each function tells the desk, which may run anything; the gadget may be gone afterwards.
#pragma once

#include "gui/desk.h"

namespace vx3::headless {

// Does a press of the mouse give it the focus? Bitmap buttons leave the focus where it is.
bool TakesFocusByMouse(const gui::Gadget& gadget);
// Does the tabulator stop at it?
bool TakesFocusByTab(const gui::Gadget& gadget);

// The left button was pressed in it: the caret of a text goes there.
void PlaceCaret(gui::Gadget& gadget, gui::Point at);
// The tabulator came to it: the text of one line is selected.
void EnterByTab(gui::Gadget& gadget);
// The left button was pressed and let go in it.
void Click(gui::Desk& desk, gui::Gadget& gadget, gui::Point at);
// A key while it has the focus; false if it has no use for it.
bool PressKey(gui::Desk& desk, gui::Gadget& gadget, const gui::Input& input);

// Choose a value or enter a text. False if a user could not do so.
bool ChooseValue(gui::Desk& desk, gui::Gadget& gadget, double value);
bool EnterText(gui::Desk& desk, gui::Gadget& gadget, const std::u16string& text);

} // namespace vx3::headless
