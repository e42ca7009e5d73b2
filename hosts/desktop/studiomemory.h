// What the program keeps of its windows from one run to the next, in the folder of the
// profile's settings: a file for the main window, and one with what modules say of theirs.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include <QSettings>
#include <QStringList>

#include "gui/desk.h"

class QMainWindow;

namespace vx3::desktop {

class StudioDocks;

class StudioMemory
{
public:
    explicit StudioMemory(std::string ownFolder); // native bytes; empty: nothing is kept

    struct SavedWindow {
        int32_t id = 0;
        int32_t subId = 0;
    };

    bool DocksFirst() const;
    QStringList DockedNames() const;
    void Restore(QMainWindow& window) const;
    // Hands the desk what modules said, and answers whose windows it is of.
    std::vector<SavedWindow> RestoreWindows(gui::Desk& desk) const;
    void Keep(const QMainWindow& window, const StudioDocks& docks);
    bool KeepWindows(gui::Desk& desk); // false if not all could be told or written: what was kept stays

private:
    std::string WindowsFile() const { return folder + "/windows"; }

    std::string folder;
    std::unique_ptr<QSettings> settings; // none without a folder
};

} // namespace vx3::desktop
