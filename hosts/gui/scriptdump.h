// What a script shows of a window: without places and sizes, which differ from host to host.
#pragma once

#include <string>

#include "gui/gadget.h"

namespace vx3::gui {

// A gadget a line, indented by groups: kind, number, value, text and what is special. What is hidden is
// named without what is in it. A tree has its rows below it.
std::string DescribeGadgets(Dialog& window);
std::string DescribeFocus(const Dialog& window);

} // namespace vx3::gui
