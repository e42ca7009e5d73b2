// Layouts that modules build, by calls or from files. Main thread only.
#pragma once

#include "gui/deskstate.h"

namespace vx3::gui {

// The functions of guigadget.h that make and take away gadgets.
VX3Bool LoadLayout(VX3Dialog dialog, VX3Resources* resources, int32_t number);
VX3Bool BeginGroup(VX3Dialog dialog, const VX3GadgetShape* shape, const VX3String* title);
VX3Bool EndGroup(VX3Dialog dialog);
VX3Bool AddSingle(VX3Dialog dialog, const VX3GadgetShape* shape, const VX3String* text, const VX3String* tip);
VX3Bool FlushGroup(VX3Dialog dialog, int32_t group);
VX3Bool UpdateGroup(VX3Dialog dialog, int32_t group);

} // namespace vx3::gui
