// Dark and light, where the desktop has no say or the user wants another.
#pragma once

namespace vx3::desktop {

enum class Brightness { Desktop, Light, Dark };

// To be called once, after the application was made. Follows the desktop as far as its
// platform theme sets colours; where none does, what the usual settings of desktops say.
void SetLook(Brightness wanted);

} // namespace vx3::desktop
