// The main window of VX3 Studio. Main thread only.
#pragma once

#include <memory>

#include <QMainWindow>
#include <QPointer>

#include "studiodocks.h"
#include "studiomemory.h"
#include "studiomenus.h"
#include "studiosession.h"

namespace vx3::desktop {

class StudioConsole;
class StudioPreferences;

class StudioWindow final : public QMainWindow
{
public:
    explicit StudioWindow(StudioSession& ownSession);
    ~StudioWindow() override;

    void Restore(); // size and place of the last run; before the first window is opened
    // The windows of the last run, the one in front at a place if one is given. Without any, one
    // on the place or where the browser begins usually.
    Failure OpenWindows(const std::string& place);

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void MakeMenus();
    void Listen();
    void MakeHint();
    void ShowHint();
    void FillWindowMenu(QMenu& menu);
    void FocusNextPane();
    void OpenBrowser();
    bool OpenPreferences(int32_t page); // 0: the first
    void ShowShortcuts();
    void ShowAbout();
    void Keep();
    bool CloseAll();

    StudioSession& session;
    StudioMemory memory;
    StudioDocks docks;
    StudioConsole* console;
    QWidget* hint; // where windows are docked, while none is
    std::unique_ptr<StudioMenus> menus;
    QPointer<StudioPreferences> preferences;
};

} // namespace vx3::desktop
