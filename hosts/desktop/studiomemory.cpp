#include "studiomemory.h"

#include <cstdio>
#include <filesystem>

#include <QFile>
#include <QMainWindow>

#include "core/services.h"
#include "core/values.h"
#include "gui/containervalue.h"
#include "gui/savedlayout.h"
#include "studiodocks.h"

namespace vx3::desktop {

namespace {

constexpr uint32_t windowsIdent = 0x77696E64; // 'wind'
constexpr int stateVersion = 1;

const QString geometryKey = QStringLiteral("window/geometry");
const QString stateKey = QStringLiteral("window/docks");
const QString dockedKey = QStringLiteral("window/docked");
const QString docksKey = QStringLiteral("window/docksFirst");

bool WriteContainer(const std::string& file, const VX3Container& container)
{
    const VX3DataFileServices& files = *core::DataFileServices();
    VX3DataFile* open = files.open(core::Path(std::string_view(file)).Get(), VX3_DATA_WRITE, windowsIdent);
    if (!open)
        return false;
    const bool isWritten = files.write(open, &container);
    return files.close(open) && isWritten;
}

std::vector<StudioMemory::SavedWindow> WindowsOf(const VX3Container& layout)
{
    const VX3ContainerServices& containers = *core::ContainerServices();
    std::vector<StudioMemory::SavedWindow> windows;
    for (int32_t index = 0; index < containers.count(&layout); ++index) {
        int32_t key = 0;
        int32_t type = 0;
        containers.entryAt(&layout, index, &key, &type);
        if (const VX3Container* saved = containers.getContainer(&layout, key))
            windows.push_back({ containers.getInt32(saved, gui::SavedId, 0), containers.getInt32(saved, gui::SavedSubId, 0) });
    }
    return windows;
}

} // namespace

StudioMemory::StudioMemory(std::string ownFolder)
    : folder(std::move(ownFolder))
{
    if (!folder.empty())
        settings = std::make_unique<QSettings>(QFile::decodeName(QByteArray::fromStdString(folder + "/studio.ini")), QSettings::IniFormat);
}

bool StudioMemory::DocksFirst() const
{
    return !settings || settings->value(docksKey, true).toBool();
}

QStringList StudioMemory::DockedNames() const
{
    return settings ? settings->value(dockedKey).toStringList() : QStringList();
}

void StudioMemory::Restore(QMainWindow& window) const
{
    if (!settings)
        return;
    window.restoreGeometry(settings->value(geometryKey).toByteArray());
    window.restoreState(settings->value(stateKey).toByteArray(), stateVersion);
}

void StudioMemory::Keep(const QMainWindow& window, const StudioDocks& docks)
{
    if (!settings)
        return;
    settings->setValue(geometryKey, window.saveGeometry());
    settings->setValue(stateKey, window.saveState(stateVersion));
    settings->setValue(docksKey, docks.DocksFirst());
    settings->setValue(dockedKey, docks.DockedNames());
    settings->sync();
}

std::vector<StudioMemory::SavedWindow> StudioMemory::RestoreWindows(gui::Desk& desk) const
{
    const VX3DataFileServices& files = *core::DataFileServices();
    VX3DataFile* open =
        folder.empty() ? nullptr : files.open(core::Path(std::string_view(WindowsFile())).Get(), VX3_DATA_READ, windowsIdent);
    if (!open)
        return {};
    gui::ContainerValue layout;
    const bool isRead = files.read(open, layout.Get());
    files.close(open);
    if (!isRead)
        return {};
    desk.SetSavedLayout(*layout.Get());
    return WindowsOf(*layout.Get());
}

// A new file in place of the old one, so that a full disk costs neither.
bool StudioMemory::KeepWindows(gui::Desk& desk)
{
    if (folder.empty())
        return true;
    gui::ContainerValue layout;
    if (!desk.SaveLayout(*layout.Get()))
        return false;
    std::error_code failed;
    std::filesystem::create_directories(folder, failed);
    const std::string fresh = WindowsFile() + ".new";
    return WriteContainer(fresh, *layout.Get()) && std::rename(fresh.c_str(), WindowsFile().c_str()) == 0;
}

} // namespace vx3::desktop
