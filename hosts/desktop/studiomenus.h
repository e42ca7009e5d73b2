// The main menu: the program's own rows, and the commands of modules with the names, icons,
// ticks and states that they have when a menu opens.
#pragma once

#include <functional>
#include <vector>

#include <QKeySequence>

#include "qtcodes.h"

class QAction;
class QKeyEvent;
class QMenu;
class QMenuBar;

namespace vx3::desktop {

class StudioMenus
{
public:
    // What the program's own rows do.
    struct Deeds {
        std::function<void()> newBrowser;
        std::function<void()> quit;
        std::function<void()> preferences;
        std::function<void()> nextPane;
        std::function<void()> shortcuts;
        std::function<void()> about;
        std::function<void(QMenu&)> fillWindowMenu; // when it opens
    };

    StudioMenus(QMenuBar& ownBar, Deeds ownDeeds);
    // A key that nobody wanted in a window of a module: true if it belongs to a row.
    bool OfferKey(const QKeyEvent& key);

private:
    void AddFile();
    void AddEdit();
    void AddCommands();
    void AddCommandMenu(const QString& name, const std::vector<int32_t>& ids);
    void AddWindow();
    void AddHelp();
    QAction* AddRow(QMenu& menu, const QString& text, const QKeySequence& shortcut, std::function<void()> deed);

    QMenuBar& bar;
    Deeds deeds;
    std::vector<QAction*> withShortcuts;
};

} // namespace vx3::desktop
