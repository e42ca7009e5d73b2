// The settings of the user: folders after the XDG base directory rules of
// freedesktop.org, the language of the locale.
#include <cstdlib>
#include <fstream>

#include <climits>
#include <pwd.h>
#include <unistd.h>

#include "corehost.h"

namespace vx3::core {

namespace {

std::string Variable(const char* name)
{
    const char* value = std::getenv(name);
    return value ? value : "";
}

std::string HomeFolder()
{
    std::string home = Variable("HOME");
    if (!home.empty() && home.front() == '/')
        return home;
    const passwd* user = getpwuid(getuid());
    return user && user->pw_dir ? user->pw_dir : "";
}

// The rules tell to pass over a relative path in these variables.
std::string BaseFolder(const char* variable, const std::string& home, const char* fallback)
{
    std::string folder = Variable(variable);
    if (!folder.empty() && folder.front() == '/')
        return folder;
    return home.empty() ? std::string() : home + fallback;
}

std::string Below(const std::string& folder, const char* tail)
{
    return folder.empty() ? std::string() : folder + tail;
}

// `"$HOME/Desktop"` or `"/srv/desk"`, with a backslash in front of special characters.
std::string UnquotePlace(const std::string& quoted, const std::string& home)
{
    std::string place;
    for (size_t i = quoted.find('"') + 1; i != 0 && i < quoted.size() && quoted[i] != '"'; ++i) {
        if (quoted[i] == '\\' && i + 1 < quoted.size())
            ++i;
        place += quoted[i];
    }
    constexpr std::string_view homeMark = "$HOME";
    if (place.starts_with(homeMark))
        place.replace(0, homeMark.size(), home);
    return place.starts_with('/') ? place : std::string();
}

std::string DesktopFolder(const std::string& home)
{
    std::ifstream places(BaseFolder("XDG_CONFIG_HOME", home, "/.config") + "/user-dirs.dirs");
    constexpr std::string_view key = "XDG_DESKTOP_DIR=";
    for (std::string line; std::getline(places, line);)
        if (line.starts_with(key))
            if (std::string place = UnquotePlace(line, home); !place.empty())
                return place;
    return Below(home, "/Desktop");
}

std::string TemporaryFolder()
{
    std::string folder = Variable("TMPDIR");
    return !folder.empty() && folder.front() == '/' ? folder : "/tmp";
}

std::string Language()
{
    for (const char* name : { "LC_ALL", "LC_MESSAGES", "LANG" })
        if (std::string locale = Variable(name); !locale.empty())
            return locale.starts_with("de") ? "de" : "us";
    return "us";
}

// Of `<prefix>/bin/vx3` it is `<prefix>/share/vx3/library`.
std::string ApplicationLibrary()
{
    char program[PATH_MAX];
    ssize_t length = readlink("/proc/self/exe", program, sizeof(program));
    if (length <= 0)
        return {};
    std::string prefix(program, static_cast<size_t>(length));
    for (int i = 0; i < 2 && !prefix.empty(); ++i)
        prefix.erase(prefix.find_last_of('/'));
    return prefix + "/share/vx3/library";
}

} // namespace

HostSettings UserSettings()
{
    HostSettings settings;
    settings.homeFolder = HomeFolder();
    std::string data = BaseFolder("XDG_DATA_HOME", settings.homeFolder, "/.local/share");
    settings.preferencesFolder = Below(data, "/vx3/prefs");
    settings.userLibraryFolder = Below(data, "/vx3/library");
    settings.applicationLibraryFolder = ApplicationLibrary();
    settings.configFolder = Below(BaseFolder("XDG_CONFIG_HOME", settings.homeFolder, "/.config"), "/vx3");
    settings.startupFolder = settings.configFolder;
    settings.temporaryFolder = TemporaryFolder();
    settings.desktopFolder = DesktopFolder(settings.homeFolder);
    settings.language = Language();
    settings.syncFiles = Variable("VX3_SYNC") != "off";
    return settings;
}

HostSettings SettingsBelow(const std::string& profileFolder)
{
    HostSettings settings = UserSettings();
    settings.preferencesFolder = profileFolder + "/prefs";
    settings.userLibraryFolder = profileFolder + "/library";
    settings.applicationLibraryFolder = profileFolder + "/applibrary";
    settings.configFolder = profileFolder + "/config";
    settings.startupFolder = profileFolder + "/startup";
    settings.temporaryFolder = profileFolder + "/tmp";
    return settings;
}

} // namespace vx3::core
