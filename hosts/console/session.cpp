#include "session.h"

#include <climits>
#include <cstdlib>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace vx3::console {

namespace {

std::string ProgramFolder()
{
    char buffer[PATH_MAX];
    ssize_t length = readlink("/proc/self/exe", buffer, sizeof buffer);
    std::string file(buffer, length > 0 ? static_cast<size_t>(length) : 0);
    size_t slash = file.rfind('/');
    return slash == std::string::npos ? "." : file.substr(0, slash);
}

Failure FindModule(const Command& command, std::string& file)
{
    std::vector<std::string> candidates;
    const char* variable = std::getenv("VX3_BROWSER_MODULE");
    if (command.Has(Option::Module))
        candidates = { AbsolutePath(command.Value(Option::Module)) };
    else if (variable && *variable)
        candidates = { AbsolutePath(variable) };
    else
        candidates = { AbsolutePath(ProgramFolder() + "/../modules/browser/browser.so"),
                       AbsolutePath(ProgramFolder() + "/../lib/vx3/modules/browser/browser.so") };
    for (const std::string& candidate : candidates) {
        file = candidate;
        if (access(candidate.c_str(), R_OK) == 0)
            return {};
    }
    return { Exit::NotFound, "the browser module was not found at " + Quoted(candidates.front()) + "; give it with --module" };
}

core::HostSettings SettingsOf(const Command& command)
{
    bool hasProfile = command.Has(Option::Profile);
    core::HostSettings settings = hasProfile ? core::SettingsBelow(AbsolutePath(command.Value(Option::Profile))) : core::UserSettings();
    settings.runMode = VX3_RUN_COMMAND_LINE;
    settings.deleteIntoTrash = command.Has(Option::Trash);
    settings.language = command.Value(Option::Lang, settings.language);
    return settings;
}

// The shell's idea of the current folder keeps the links that the user went through.
std::string CurrentFolder()
{
    struct stat told = {};
    struct stat real = {};
    const char* variable = std::getenv("PWD");
    if (variable && *variable == '/' && stat(variable, &told) == 0 && stat(".", &real) == 0 && told.st_ino == real.st_ino
        && told.st_dev == real.st_dev)
        return variable;
    char* folder = getcwd(nullptr, 0);
    std::string result = folder ? folder : "/";
    std::free(folder);
    return result;
}

} // namespace

std::string AbsolutePath(const std::string& argument)
{
    bool isAbsolute = !argument.empty() && argument[0] == '/';
    std::vector<std::string> parts;
    for (const std::string& part : SplitChoices(isAbsolute ? argument : CurrentFolder() + "/" + argument, '/')) {
        if (part.empty() || part == ".")
            continue;
        if (part != "..")
            parts.push_back(part);
        else if (!parts.empty())
            parts.pop_back();
    }
    std::string path;
    for (const std::string& part : parts)
        path += "/" + part;
    return path.empty() ? "/" : path;
}

Session::~Session()
{
    Close();
}

Failure Session::Open(const Command& command)
{
    if (Failure failure = FindModule(command, moduleFile))
        return failure;
    host = std::make_unique<core::CoreHost>(SettingsOf(command));
    return Start();
}

Failure Session::OpenWithWindows(const Command& command, const std::string& home)
{
    if (Failure failure = FindModule(command, moduleFile))
        return failure;
    core::HostSettings settings = SettingsOf(command);
    settings.homeFolder = home;
    windowed = std::make_unique<headless::HeadlessHost>(std::move(settings));
    return Start();
}

Failure Session::Start()
{
    if (!loader.Load(moduleFile) || !loader.Start(&Host()))
        return { Exit::Damaged, "the module " + Quoted(moduleFile) + " cannot be used: " + Shown(loader.Error()) };
    const void* table = Host().registry->find(VX3_BROWSER_TABLE, VX3_BROWSER_VERSION, sizeof(VX3Browser));
    browser = static_cast<const VX3Browser*>(table);
    if (!browser || !browser->tree || !browser->nodes || !browser->tools)
        return { Exit::Damaged, "the module " + Quoted(moduleFile) + " does not publish a table of the browser" };
    return {};
}

core::LiveObjects Session::Close()
{
    if (!host && !windowed)
        return {};
    browser = nullptr;
    loader.End();
    core::LiveObjects left = Core().CountLiveObjects();
    loader.Unload();
    windowed.reset();
    host.reset();
    return left;
}

} // namespace vx3::console
