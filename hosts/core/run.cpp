#include <chrono>
#include <cstdlib>

#include "hoststate.h"
#include "localdate.h"
#include "services.h"
#include "values.h"

namespace vx3::core {

namespace {

int32_t RunMode()
{
    return CurrentSettings().runMode;
}

VX3Bool Edition(int32_t question, const VX3Path*)
{
    const HostSettings& settings = CurrentSettings();
    switch (question) {
    case VX3_EDITION_EXCLUDED: return settings.moduleExcluded;
    case VX3_EDITION_RESTRICTED: return settings.restricted;
    case VX3_EDITION_LIBRARY_ALLOWED: return 1;
    case VX3_EDITION_LIBRARIES_FIXED: return settings.librariesFixed;
    default: return 0;
    }
}

VX3Bool SetPlace(const std::string& native, VX3Path* path)
{
    PathServices()->destruct(path);
    return !native.empty() && SetNativePath(*path, native);
}

VX3Bool Folder(int32_t number, VX3Path* path)
{
    const HostSettings& settings = CurrentSettings();
    switch (number) {
    case VX3_FOLDER_PREFERENCES: return SetPlace(settings.preferencesFolder, path);
    case VX3_FOLDER_APPLICATION_LIBRARY: return SetPlace(settings.applicationLibraryFolder, path);
    case VX3_FOLDER_USER_LIBRARY: return SetPlace(settings.userLibraryFolder, path);
    default: return SetPlace({}, path);
    }
}

VX3Bool Place(int32_t number, VX3Path* path)
{
    const HostSettings& settings = CurrentSettings();
    switch (number) {
    case VX3_PLACE_STARTUP: return SetPlace(settings.startupFolder, path);
    case VX3_PLACE_TEMPORARY: return SetPlace(settings.temporaryFolder, path);
    case VX3_PLACE_HOME: return SetPlace(settings.homeFolder, path);
    case VX3_PLACE_DESKTOP: return SetPlace(settings.desktopFolder, path);
    default: return SetPlace({}, path);
    }
}

VX3Bool Environment(const char* name, VX3String* value)
{
    const char* found = std::getenv(name);
    if (found)
        return SetNativeName(*value, found); // may be a path of any bytes
    TextServices()->destruct(value);
    return 0;
}

uint32_t Clock()
{
    auto now = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<uint32_t>(std::chrono::duration_cast<std::chrono::milliseconds>(now).count());
}

void CurrentDate(VX3FileDate* date)
{
    auto now = std::chrono::system_clock::now();
    *date = LocalDate(std::chrono::system_clock::to_time_t(now));
}

} // namespace

const VX3RunServices* RunServices()
{
    static constexpr VX3RunServices services = { RunMode, Edition, Folder, Place, Environment, Clock, CurrentDate };
    return &services;
}

} // namespace vx3::core
