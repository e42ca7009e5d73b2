// The icons that every host has, of 16 x 16 pixels: signs for the buttons of a window.
#pragma once

namespace vx3::headless {

void RegisterHostIcons(); // with the registry of the core, before modules are loaded

} // namespace vx3::headless
