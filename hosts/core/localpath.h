// The way to a path, as long as it can be gone without waiting.
#pragma once

#include <string>

namespace vx3::core {

// `path` without links, if every step to it lies on a file system that this machine
// answers for itself; empty if one step might wait for a server or a program, or if
// nothing is there. Asks nothing that could wait. Any thread.
std::string FindLocalPath(const std::string& path);

} // namespace vx3::core
