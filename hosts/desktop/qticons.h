// The icons of this host, and icons of bitmaps for menus.
//
// The host's icons are drawn here as signs: black, with the shape in the alpha channel, in a
// size from which they are scaled down. What shows one gives it the colour of its texts
// (qtpictures.h), so that they fit a dark desktop as well as a light one.
#pragma once

#include <QIcon>

#include "core/registry.h"

namespace vx3::desktop {

constexpr int iconSide = 16;           // of an icon in a button, in logical pixels
constexpr int signSide = 8 * iconSide; // of the bitmaps that are registered

void RegisterHostIcons(); // with the registry of the core, before modules are loaded
QIcon IconOfBitmap(const VX3Bitmap& bitmap);
QIcon IconOfCommand(const core::RegisteredCommand& command); // empty if it has none

} // namespace vx3::desktop
