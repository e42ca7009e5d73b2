// Files that are read or written as one, for the verbs that put them into a library and get
// them out again.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "outcome.h"

namespace vx3::console {

bool IsFolder(const std::string& path);
bool IsThere(const std::string& path); // anything, a link without a target included
uint64_t FileSize(const std::string& path);

// Of an ordinary file that an item may hold.
Failure ReadWholeFile(const std::string& path, std::vector<uint8_t>& bytes);

// Writes a file that is not there yet; until it is whole it has another name.
Failure WriteNewFile(const std::string& path, const void* bytes, size_t count);

// Whether the disk, and the limits of this process, let a file grow by so much.
bool HasRoom(const std::string& path, uint64_t bytes);

} // namespace vx3::console
