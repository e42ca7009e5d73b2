// The names in an open folder, for operations on whole trees.
#pragma once

#include <string>
#include <vector>

#include "filestatus.h"

namespace vx3::core {

struct ListedName {
    std::string name;
    bool isFolder = false;  // itself, not through a link
    bool isSpecial = false; // a pipe, socket or device
};

// All but `.` and `..`. False if the folder could not be read to its end.
bool ListNames(int folder, std::vector<ListedName>& names);

// The status of an open folder or file itself.
bool ReadOpenStatus(int descriptor, struct statx& status);

// Is something mounted on what `status` tells of, seen from a folder on `device`?
bool IsMountRoot(const struct statx& status, uint64_t device);

// Opens the folder above an open one and makes sure that it is the one expected: not
// so if somebody has moved the tree meanwhile. -1 on failure.
int OpenParent(int folder, const FileIdentity& expected, int flags);

// Are there only files, links and folders that can be listed? Looks at the thing itself
// and all below it, by the listings alone where they tell the kinds.
bool HoldsNothingSpecial(const std::string& path);

} // namespace vx3::core
