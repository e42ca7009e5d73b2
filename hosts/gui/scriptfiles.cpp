#include "gui/scriptfiles.h"

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "gui/scriptparse.h"

namespace vx3::gui {

namespace {

namespace files = std::filesystem;

files::path Below(const std::string& folder, const std::string& name)
{
    const files::path path = name;
    if (folder.empty())
        throw ScriptError{ "the scenario has no folder" };
    if (path.empty() || path.is_absolute() || std::find(path.begin(), path.end(), "..") != path.end())
        throw ScriptError{ "'" + name + "' is no name below the folder of the scenario" };
    return files::path(folder) / path;
}

void Check(const std::error_code& failure, const std::string& name)
{
    if (failure)
        throw ScriptError{ "'" + name + "': " + failure.message() };
}

void MakeFolders(const files::path& path, const std::string& name)
{
    std::error_code failure;
    files::create_directories(path, failure);
    Check(failure, name);
}

} // namespace

void MakeScenarioFile(const std::string& folder, const std::string& name)
{
    const files::path path = Below(folder, name);
    MakeFolders(path.parent_path(), name);
    std::ofstream stream(path, std::ios::binary | std::ios::trunc);
    if (!(stream << name << '\n').flush())
        throw ScriptError{ "'" + name + "' cannot be written" };
}

void MakeScenarioFolder(const std::string& folder, const std::string& name)
{
    MakeFolders(Below(folder, name), name);
}

void RemoveFromScenario(const std::string& folder, const std::string& name)
{
    std::error_code failure;
    const bool wasThere = files::remove_all(Below(folder, name), failure) > 0;
    Check(failure, name);
    if (!wasThere)
        throw ScriptError{ "'" + name + "' is not there" };
}

void RenameInScenario(const std::string& folder, const std::string& from, const std::string& to)
{
    const files::path target = Below(folder, to);
    std::error_code failure;
    if (files::exists(files::symlink_status(target, failure)))
        throw ScriptError{ "'" + to + "' exists already" };
    files::rename(Below(folder, from), target, failure);
    Check(failure, from);
}

} // namespace vx3::gui
