// The keys of the containers that tell of a library as a whole.
#pragma once

#include <cstdint>

namespace browser {

enum InfoKey : int32_t {
    InfoVersion = 0,
    InfoName = 3,
    InfoNames = 4, // text by packed language code
    InfoReadOnly = 5,
};

enum CategoryKey : int32_t {
    CategoryText = 1,
    CategoryNames = 2, // of old files: in place of InfoNames
};

} // namespace browser
