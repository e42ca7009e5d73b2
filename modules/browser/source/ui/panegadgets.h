// The numbers of a folder pane: its layout and the gadgets in it.
#pragma once

#include <cstdint>

namespace browser {

constexpr int32_t paneLayout = 10118;

namespace PaneGadget {
enum : int32_t {
    scroll = 10120,
    viewGroup = 10121, // holds the area of the view
    view = 10122,
    status = 10125, // the row below: all that follows
    statusText = 10126,
    zoom = 10127,
    smallest = 10128,
    largest = 10129,
    busy = 10130,
};
} // namespace PaneGadget

} // namespace browser
