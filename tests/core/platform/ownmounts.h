// Mounts that only a test sees.
#pragma once

#include <functional>
#include <optional>
#include <string>

namespace vx3::core {

// Runs `check` in a process of its own, which may mount what it likes, with the text of
// what went wrong as its answer; none if this user may not do so.
std::optional<std::string> RunWithOwnMounts(const std::function<std::string()>& check);

// A file system in memory over a folder.
bool MountMemory(const std::string& folder);
bool MakeMountReadOnly(const std::string& folder);

} // namespace vx3::core
