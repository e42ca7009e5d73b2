// The life of host, windows and module in one run of the studio.
//
// Made behind the application and ended before it. Main thread only, but for the lines of
// the console, which any thread may write.
#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include <QSocketNotifier>
#include <QTimer>

#include "core/corehost.h"
#include "core/moduleloader.h"
#include "qttoolkit.h"
#include "studiooptions.h"
#include "vx3/browser.h"

namespace vx3::desktop {

// Why something did not work; Exit::Done if it did.
struct Failure {
    Exit exit = Exit::Done;
    std::string sentence;

    explicit operator bool() const { return exit != Exit::Done; }
};

// Lines that come from any thread and are shown by the main one.
class ConsoleLines
{
public:
    void Add(const std::string& line); // any thread
    // Is handed those that came before, and from then on each as it comes.
    void SetListener(std::function<void(const std::string& line)> wanted);

private:
    void HandOut();

    std::mutex lock;
    std::vector<std::string> waiting; // under lock
    std::function<void(const std::string&)> listener;
    QObject receiver; // of the main thread
};

class StudioSession
{
public:
    explicit StudioSession(const StudioOptions& options);
    ~StudioSession(); // as Close

    // Loads the module and finds its table.
    Failure Open(const StudioOptions& options);
    // Ends the module; its windows go without being asked.
    void Close();

    core::CoreHost& Core() { return *host; }
    gui::Desk& GetDesk() { return *desk; }
    QtToolkit& Toolkit() { return *toolkit; }
    const VX3Browser& Browser() const { return *browser; }
    const std::string& ModuleFile() const { return moduleFile; }
    ConsoleLines& Console() { return console; }

    // A window on a place, or where the browser begins usually.
    Failure OpenPlace(const std::string& place);
    Failure GoTo(const std::string& place);        // in the window in front
    bool RestoreWindow(int32_t id, int32_t subId); // from the desk's saved layout

private:
    Failure UrlOf(const std::string& place, VX3Url& url); // of one that is there; the caller destructs it
    core::HostSettings SettingsOf(const StudioOptions& options);
    std::vector<std::string> FilesOfDrag(int32_t type, const void* data) const;
    void ShowText(const std::string& utf8);
    void HearOfFolders();

    ConsoleLines console;
    std::unique_ptr<core::CoreHost> host;
    std::unique_ptr<QtToolkit> toolkit;
    std::unique_ptr<gui::Desk> desk;
    VX3Host table = {};
    core::ModuleLoader loader;
    const VX3Browser* browser = nullptr;
    std::string moduleFile;
    std::unique_ptr<QSocketNotifier> folderNotifier;
    QTimer pulse; // looks after what nobody wakes the loop for
};

} // namespace vx3::desktop
