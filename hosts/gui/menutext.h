// Menus as lines of text, and how a script chooses from them. The same in every host.
#pragma once

#include <string>
#include <vector>

#include "gui/gadget.h"

namespace vx3::gui {

// A row a line: its number, a mark if it has one, and its text, in brackets if it cannot be
// chosen. A separator is a hyphen; rows of a menu inside stand indented below its text.
std::string DescribeMenu(const std::vector<MenuItem>& menu);

// The row that an answer names, by its number or its text; 0 and empty choose none. False if
// no row that can be chosen has that name.
bool ChooseFromMenu(const std::vector<MenuItem>& menu, const std::string& answer, int32_t& id);

// A text of a menu bar without the sign in front of the keyboard's letter.
std::u16string WithoutMnemonic(const std::u16string& text);

} // namespace vx3::gui
