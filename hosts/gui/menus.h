// Menus as the toolkit gets them, from what a module describes.
#pragma once

#include "gui/gadget.h"

namespace vx3::gui {

// The rows of a popup menu (guimenu.h).
std::vector<MenuItem> PopupRows(const VX3Container& menu);
// The row that can be chosen under a number; none if there is none.
MenuItem* FindItem(std::vector<MenuItem>& menu, int32_t id);
// The name and the state of a registered command.
void FillInCommand(MenuItem& item);
void FillInCommands(std::vector<MenuItem>& menu);

inline bool CanBeChosen(const MenuItem& item)
{
    return (item.bits & VX3_MENU_DISABLED) == 0;
}

} // namespace vx3::gui
