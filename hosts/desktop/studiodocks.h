// Where the windows of modules stand: each in a window of its own or docked into the main
// window, as the user likes.
//
// The first one is docked, so that the program begins as one window; later ones stand for
// themselves. Those of the last run stand as they did. Main thread only.
#pragma once

#include <functional>
#include <optional>
#include <vector>

#include <QDockWidget>
#include <QMainWindow>
#include <QPointer>
#include <QStringList>

#include "qtcodes.h"

namespace vx3::desktop {

class QtToolkit;

class StudioDocks
{
public:
    StudioDocks(QMainWindow& ownMain, QtToolkit& ownToolkit);
    ~StudioDocks();
    StudioDocks(const StudioDocks&) = delete;
    StudioDocks& operator=(const StudioDocks&) = delete;

    void WindowOpened(Dialog& window, QWidget& frame);
    void WindowClosing(Dialog& window, QWidget& frame);
    void SetDocked(Dialog& window, bool wanted);
    bool IsDocked(const Dialog& window) const;
    const std::vector<Dialog*> Windows() const; // in the order of opening
    Dialog* FindWindow(VX3Dialog handle) const; // none: it is closed
    // Called when one has been docked or not, opened or closed.
    void SetListener(std::function<void()> wanted) { changed = std::move(wanted); }
    bool HasDocked() const;
    void SetDocksFirst(bool wanted) { docksFirst = wanted; }
    bool DocksFirst() const { return docksFirst; }
    QStringList DockedNames() const; // of those that are docked at this moment
    // Until EndRestore windows are docked if they were so before, and only then.
    void BeginRestore(QStringList namesBefore);
    void EndRestore() { restored.reset(); }

private:
    struct Standing {
        Dialog* window;
        QPointer<QWidget> frame;
        QPointer<QDockWidget> dock; // none: it is a window of its own
    };
    class Dock;

    Standing* Find(const Dialog& window);
    bool WantsDock(const Dialog& window) const;
    void PutIntoDock(Standing& standing);
    void TakeOutOfDock(Standing& standing);
    void Changed();

    QMainWindow& main;
    QtToolkit& toolkit;
    std::vector<Standing> standings;
    std::function<void()> changed;
    bool docksFirst = true;
    std::optional<QStringList> restored; // the names of those that are to be docked
};

} // namespace vx3::desktop
