// What stands behind windows and gadgets without a screen: only what the gadget tree does
// not know itself.
#pragma once

#include "gui/gadget.h"
#include "headless/displaylist.h"
#include "headless/lineeditor.h"

namespace vx3::headless {

struct WindowNative : gui::Native {
    gui::Point corner;                 // of the whole window, on the screen
    bool isShown = false;              // the main loop went on since it was opened
    gui::Gadget* remembered = nullptr; // gets the focus when the window does
    bool hasEndedModal = false;
};

struct GadgetNative : gui::Native {
    bool isVisible = false; // neither hidden nor on a page behind another
    LineEditor editor;      // of a gadget with a text that can be edited

    // Of areas and trees, in their own coordinates.
    gui::Place dirty;
    gui::Place painted; // what was seen when it was painted last
    gui::Size size;     // and how large it was
    int drawings = 0;
    DisplayList drawn; // that painting
};

inline WindowNative& NativeOf(const gui::Dialog& window)
{
    return static_cast<WindowNative&>(*window.native);
}

inline GadgetNative& NativeOf(const gui::Gadget& gadget)
{
    return static_cast<GadgetNative&>(*gadget.native);
}

} // namespace vx3::headless
