// Menus of modules as menus of Qt.
#pragma once

#include <functional>
#include <vector>

#include "gui/gadget.h"

class QAction;
class QMenu;
class QMenuBar;
class QWidget;

namespace vx3::desktop {

using MenuChosen = std::function<void(int32_t id)>;

// Replaces what was there. `opens` is called before a menu is shown, with the menu.
void FillMenuBar(QMenuBar& bar, const std::vector<gui::MenuItem>& rows, const MenuChosen& chosen, const std::function<void()>& opens);
void FillMenu(QMenu& menu, const std::vector<gui::MenuItem>& rows, const MenuChosen& chosen);

// Texts and states of rows that are there already.
void UpdateRows(const QWidget& menu, const std::vector<gui::MenuItem>& rows);

// The action of a row, also in the menus inside; none if there is none.
QAction* FindRow(const QWidget& menu, int32_t id);

// Name, icon, help, state of a registered command, as they are now; none of it if the
// command is gone.
void ShowCommand(QAction& action, int32_t command);

} // namespace vx3::desktop
