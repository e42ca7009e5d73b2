// The numbers of a browser window: gadgets of its layouts and commands of its menu.
#pragma once

#include <cstdint>

namespace browser {

constexpr int32_t browserCommandId = 1017163; // the window's kind, and the command that opens one
constexpr int32_t windowLayout = 10052;

namespace Gadget {
enum : int32_t {
    panes = 10053,
    tree = 10059, // also the token of its focus
    folderPane = 10061,
    toolRow = 10063,
    desktop = 10064,
    home = 10065,
    presets = 10066,
    catalogs = 10067,
    favourites = 10068,
    up = 10069,
    back = 10070,
    forward = 10071,
    newWindow = 10073,
    apply = 10008,
    sortByName = 10028, // and every second number up to that of unsorted
    sortUnsorted = 10038,
};
} // namespace Gadget

} // namespace browser
