#include "studiomenus.h"

#include <algorithm>
#include <map>

#include <QAction>
#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>

#include "core/registry.h"
#include "qtmenus.h"
#include "studiotexts.h"

namespace vx3::desktop {

namespace {

struct EditRow {
    int32_t id;
    Word word;
    QKeySequence shortcut;
    const char* method; // of fields for text; none: they have no such thing
};

const std::vector<EditRow>& EditRows()
{
    static const std::vector<EditRow> rows = {
        { VX3_EDIT_COPY, Word::Copy, QKeySequence::Copy, "copy" },
        { VX3_EDIT_PASTE, Word::Paste, QKeySequence::Paste, "paste" },
        { VX3_EDIT_DELETE, Word::Delete, QKeySequence::Delete, nullptr },
        { VX3_EDIT_SELECT_ALL, Word::SelectAll, QKeySequence::SelectAll, "selectAll" },
        { VX3_EDIT_SELECT_NONE, Word::SelectNone, QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_A), nullptr },
        { VX3_EDIT_INVERT, Word::Invert, QKeySequence(Qt::CTRL | Qt::Key_I), nullptr },
    };
    return rows;
}

bool IsEditCommand(int32_t id)
{
    return std::any_of(EditRows().begin(), EditRows().end(), [id](const EditRow& row) { return row.id == id; });
}

QWidget* FocusedField()
{
    QWidget* focus = QApplication::focusWidget();
    return dynamic_cast<QLineEdit*>(focus) || dynamic_cast<QPlainTextEdit*>(focus) ? focus : nullptr;
}

bool IsCommandEnabled(int32_t id)
{
    const core::RegisteredCommand* command = core::FindCommand(id);
    return command && (command->State() & VX3_COMMAND_ENABLED);
}

void RunCommand(int32_t id)
{
    if (IsCommandEnabled(id))
        core::FindCommand(id)->Execute();
}

// A field that has the focus takes what it can do; else the module does.
void RunEdit(const EditRow& row)
{
    if (QWidget* field = row.method ? FocusedField() : nullptr)
        QMetaObject::invokeMethod(field, row.method);
    else
        RunCommand(row.id);
}

// The commands of each registered menu, in the order of registration, and those whose module has none.
struct CommandMenu {
    std::string name;
    core::Registrant owner = nullptr;
    std::vector<int32_t> ids;
};

std::vector<CommandMenu> GatherCommands()
{
    std::vector<CommandMenu> menus;
    for (const core::RegisteredMenu& menu : core::RegisteredMenus())
        menus.push_back({ menu.name, menu.owner, {} });
    for (const core::RegisteredCommand& command : core::RegisteredCommands()) {
        if (IsEditCommand(command.id) || command.name.empty())
            continue;
        auto menu = std::find_if(menus.begin(), menus.end(), [&](const CommandMenu& one) { return one.owner == command.owner; });
        if (menu == menus.end())
            menu = menus.insert(menus.end(), { {}, command.owner, {} });
        menu->ids.push_back(command.id);
    }
    std::erase_if(menus, [](const CommandMenu& menu) { return menu.ids.empty(); });
    return menus;
}

} // namespace

StudioMenus::StudioMenus(QMenuBar& ownBar, Deeds ownDeeds)
    : bar(ownBar)
    , deeds(std::move(ownDeeds))
{
    AddFile();
    AddEdit();
    AddCommands();
    AddWindow();
    AddHelp();
}

QAction* StudioMenus::AddRow(QMenu& menu, const QString& text, const QKeySequence& shortcut, std::function<void()> deed)
{
    QAction* action = menu.addAction(text);
    action->setShortcut(shortcut);
    action->setShortcutContext(Qt::ApplicationShortcut);
    QObject::connect(action, &QAction::triggered, action, std::move(deed));
    if (!shortcut.isEmpty())
        withShortcuts.push_back(action);
    return action;
}

void StudioMenus::AddFile()
{
    QMenu& menu = *bar.addMenu(Say(Word::File));
    AddRow(menu, Say(Word::NewBrowser), QKeySequence::New, deeds.newBrowser);
    menu.addSeparator();
    AddRow(menu, Say(Word::Quit), QKeySequence(Qt::CTRL | Qt::Key_Q), deeds.quit)->setMenuRole(QAction::QuitRole);
}

// The rows are grey only while the menu is open: a shortcut asks when it is pressed.
void StudioMenus::AddEdit()
{
    QMenu& menu = *bar.addMenu(Say(Word::Edit));
    std::vector<std::pair<QAction*, const EditRow*>> rows;
    for (const EditRow& row : EditRows()) {
        if (row.id == VX3_EDIT_SELECT_ALL)
            menu.addSeparator();
        rows.push_back({ AddRow(menu, Say(row.word), row.shortcut, [&row] { RunEdit(row); }), &row });
    }
    menu.addSeparator();
    AddRow(menu, Say(Word::Preferences), QKeySequence(Qt::CTRL | Qt::Key_Comma), deeds.preferences)->setMenuRole(QAction::PreferencesRole);
    QObject::connect(&menu, &QMenu::aboutToShow, &menu, [rows] {
        for (const auto& [action, row] : rows)
            action->setEnabled((row->method && FocusedField()) || IsCommandEnabled(row->id));
    });
    QObject::connect(&menu, &QMenu::aboutToHide, &menu, [rows] {
        for (const auto& [action, row] : rows)
            action->setEnabled(true);
    });
}

void StudioMenus::AddCommands()
{
    for (const CommandMenu& menu : GatherCommands())
        AddCommandMenu(menu.name.empty() ? Say(Word::Commands) : QString::fromStdString(menu.name), menu.ids);
}

void StudioMenus::AddCommandMenu(const QString& name, const std::vector<int32_t>& ids)
{
    QMenu& menu = *bar.addMenu(name);
    menu.setToolTipsVisible(true);
    for (int32_t id : ids) {
        QAction* action = AddRow(menu, QString(), QKeySequence(), [id] { RunCommand(id); });
        action->setData(id);
        ShowCommand(*action, id);
    }
    QObject::connect(&menu, &QMenu::aboutToShow, &menu, [shown = &menu] {
        for (QAction* action : shown->actions())
            ShowCommand(*action, action->data().toInt());
    });
}

void StudioMenus::AddWindow()
{
    QMenu& menu = *bar.addMenu(Say(Word::Window));
    AddRow(menu, Say(Word::NextPane), QKeySequence(Qt::Key_F6), deeds.nextPane);
    QObject::connect(&menu, &QMenu::aboutToShow, &menu, [this, shown = &menu] { deeds.fillWindowMenu(*shown); });
}

void StudioMenus::AddHelp()
{
    QMenu& menu = *bar.addMenu(Say(Word::Help));
    AddRow(menu, Say(Word::Shortcuts), QKeySequence::HelpContents, deeds.shortcuts);
    AddRow(menu, Say(Word::About), QKeySequence(), deeds.about)->setMenuRole(QAction::AboutRole);
}

bool StudioMenus::OfferKey(const QKeyEvent& key)
{
    const QKeySequence pressed(key.keyCombination());
    for (QAction* action : withShortcuts)
        if (action->isEnabled() && action->shortcut() == pressed) {
            action->trigger();
            return true;
        }
    return false;
}

} // namespace vx3::desktop
