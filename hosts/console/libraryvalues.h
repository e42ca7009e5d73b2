// The values of a container in words: a row for each, in the order of the file.
#pragma once

#include <string>
#include <vector>

#include "librarycontainer.h"

namespace vx3::console {

struct ValueRow {
    std::string keys; // from the outermost container on, "6.0"
    std::string name; // what they mean, "path.text"; a key without a meaning stands as its number
    const char* type = "";
    std::string text;
};

// The values of a container of a chunk of this kind.
std::vector<ValueRow> ValuesOf(uint32_t tag, ContainerView container);

} // namespace vx3::console
