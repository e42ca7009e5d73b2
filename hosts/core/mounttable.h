// What is mounted, out of the table that the kernel keeps.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "descriptor.h"

namespace vx3::core {

// One line of the table.
struct Mount {
    std::string number;
    std::string parent; // the number of the mount that it is mounted in
    std::string device; // "8:1"
    std::string point;
    std::string type;
    std::string source;
};

// The mounts that `table`, text in the form of /proc/self/mountinfo, tells of and that a
// path can reach: not what is mounted over. The root is always there and comes first.
std::vector<Mount> ReadMounts(std::string_view table);

// The table of this machine, empty where there is no such file. Throws if it cannot be
// read or memory lacks: half a table is worse than none.
std::string ReadMountFile();
Descriptor OpenMountFile();
std::string ReadMountFile(const Descriptor& file); // an open one, from its start

// Was anything mounted or taken away since the last question about this open file? Does
// not wait.
bool HaveMountsChanged(const Descriptor& file);

bool IsNetworkMount(const Mount& mount);
bool IsDiskMount(const Mount& mount);  // has a disk behind it
bool IsFuseSource(const Mount& mount); // a program shows files of its own through it

// Can a call on a place where a volume is mounted never wait for a server or a program?
// Not so of any other path, which may run over links, or of kinds that are unknown here.
bool AnswersAtOnce(const std::vector<Mount>& mounts, std::string_view path);

// The same of a path without links, mount or not.
bool IsOnThisMachine(const std::vector<Mount>& mounts, std::string_view path);

// Does `path` lie below `folder`? By components, on paths without links.
bool LiesBelow(std::string_view path, std::string_view folder);

// Is something mounted below a folder, which is a path without links?
bool HoldsMounts(const std::string& folder);

} // namespace vx3::core
