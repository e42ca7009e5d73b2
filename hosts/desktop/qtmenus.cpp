#include "qtmenus.h"

#include <QAction>
#include <QActionGroup>
#include <QIcon>
#include <QMenu>
#include <QMenuBar>

#include "core/registry.h"
#include "qtapplication.h"
#include "qtcodes.h"
#include "qticons.h"

namespace vx3::desktop {

namespace {

using gui::MenuItem;

void ShowState(QAction& action, const MenuItem& row)
{
    action.setText(ToQt(row.text));
    action.setCheckable(row.bits & (VX3_MENU_CHECKED | VX3_MENU_RADIO));
    action.setChecked(row.bits & VX3_MENU_CHECKED);
    action.setEnabled(!(row.bits & VX3_MENU_DISABLED));
}

// Fills menus of one bar or one popup.
class MenuFiller
{
public:
    MenuFiller(MenuChosen ownChosen, std::function<void()> ownOpens)
        : chosen(std::move(ownChosen))
        , opens(std::move(ownOpens))
    {
    }

    void Fill(QMenu& menu, const std::vector<MenuItem>& rows)
    {
        QActionGroup* radio = nullptr;
        for (const MenuItem& row : rows) {
            if (row.kind == MenuItem::Kind::Separator)
                menu.addSeparator();
            else if (row.kind == MenuItem::Kind::Menu)
                AddMenu(menu, row);
            else
                AddRow(menu, row, radio);
        }
        if (opens)
            QObject::connect(&menu, &QMenu::aboutToShow, &menu, opens);
    }
    void AddMenu(QWidget& parent, const MenuItem& row)
    {
        auto* menu = new QMenu(ToQt(row.text), &parent);
        menu->setToolTipsVisible(true);
        menu->setEnabled(!(row.bits & VX3_MENU_DISABLED));
        Fill(*menu, row.children);
        parent.addAction(menu->menuAction());
    }

private:
    void AddRow(QMenu& menu, const MenuItem& row, QActionGroup*& radio)
    {
        QAction* action = menu.addAction(ToQt(row.text));
        action->setData(row.id);
        if (row.bits & VX3_MENU_RADIO) {
            if (!radio)
                radio = new QActionGroup(&menu);
            action->setActionGroup(radio);
        }
        ShowState(*action, row);
        if (const core::RegisteredCommand* command = CommandOf(row)) {
            action->setIcon(IconOfCommand(*command));
            action->setToolTip(PlainTip(QString::fromStdString(command->help)));
        }
        QObject::connect(action, &QAction::triggered, action, [called = chosen, id = row.id] { called(id); });
    }
    static const core::RegisteredCommand* CommandOf(const MenuItem& row)
    {
        return row.kind == MenuItem::Kind::Command ? core::FindCommand(row.id) : nullptr;
    }

    MenuChosen chosen;
    std::function<void()> opens;
};

} // namespace

void FillMenuBar(QMenuBar& bar, const std::vector<MenuItem>& rows, const MenuChosen& chosen, const std::function<void()>& opens)
{
    for (QObject* old : bar.findChildren<QMenu*>(QString(), Qt::FindDirectChildrenOnly))
        DeleteAfterEvents(*old); // one of them may be open at this moment
    bar.clear();
    MenuFiller filler(chosen, opens);
    for (const MenuItem& row : rows)
        if (row.kind == MenuItem::Kind::Menu)
            filler.AddMenu(bar, row);
}

void FillMenu(QMenu& menu, const std::vector<MenuItem>& rows, const MenuChosen& chosen)
{
    MenuFiller(chosen, {}).Fill(menu, rows);
}

void UpdateRows(const QWidget& menu, const std::vector<MenuItem>& rows)
{
    for (const MenuItem& row : rows) {
        if (row.kind == MenuItem::Kind::Menu)
            UpdateRows(menu, row.children);
        else if (QAction* action = row.id ? FindRow(menu, row.id) : nullptr)
            ShowState(*action, row);
    }
}

QAction* FindRow(const QWidget& menu, int32_t id)
{
    for (QAction* action : menu.actions()) {
        if (action->data().isValid() && action->data().toInt() == id)
            return action;
        if (const QMenu* inner = action->menu<QMenu*>())
            if (QAction* found = FindRow(*inner, id))
                return found;
    }
    return nullptr;
}

void ShowCommand(QAction& action, int32_t id)
{
    const core::RegisteredCommand* command = core::FindCommand(id);
    action.setEnabled(command != nullptr);
    if (!command)
        return;
    const uint32_t state = command->State();
    if (!command->name.empty())
        action.setText(QString::fromStdString(command->name).replace(QLatin1Char('&'), QStringLiteral("&&")));
    action.setStatusTip(QString::fromStdString(command->help));
    action.setToolTip(PlainTip(QString::fromStdString(command->help)));
    action.setIcon(IconOfCommand(*command));
    action.setEnabled(state & VX3_COMMAND_ENABLED);
    action.setCheckable(state & VX3_COMMAND_CHECKED);
    action.setChecked(state & VX3_COMMAND_CHECKED);
}

} // namespace vx3::desktop
