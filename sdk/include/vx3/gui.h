/* Windows: the optional GUI section of the host's table.
 *
 * A host without a screen has none; a module tests the pointer once and then shows
 * nothing. The section is seven tables: dialogs, the gadgets in them, areas that the
 * module draws itself, drawing, trees, menus with drags, and boxes.
 *
 * Everything here belongs to the host's main thread. Handles are numbers that are never
 * used twice: a call with a closed dialog, an unknown gadget, a freed area or 0 does
 * nothing and answers 0, so nobody has to ask first. Calls marked [nested] run timers,
 * draws and messages before they return: the caller holds no lock, and looks again at
 * whatever it knew.
 *
 * A callback without [nested] answers a question: how large an area is, what stands in a row,
 * what a drawing looks like, what state a command has. Inside it a call marked [nested] does
 * nothing and answers 0, and so does `setValue` of tabs; a dialog that is freed there goes
 * when the host's main loop is back, without a callback. Calls that run such callbacks say so.
 *
 * The calls for a dialog work from its createLayout to its destroyWindow; sizes and places hold
 * from its initValues on. A call that there is no memory for answers 0.
 *
 * Lengths are logical pixels: a host on a fine screen draws several dots for one.
 * Rectangles hold both their corners, but for that of `getVisiblePart` (guigadget.h), whose
 * second corner lies behind it.
 */
#ifndef VX3_GUI_H
#define VX3_GUI_H

#include "guiarea.h"
#include "guibox.h"
#include "guidialog.h"
#include "guidraw.h"
#include "guigadget.h"
#include "guimenu.h"
#include "guitree.h"

typedef struct VX3GuiServices {
    const VX3DialogServices* dialog;
    const VX3GadgetServices* gadget;
    const VX3AreaServices* area;
    const VX3DrawServices* draw;
    const VX3TreeServices* tree;
    const VX3MenuServices* menu;
    const VX3BoxServices* box;
} VX3GuiServices;

VX3_STATIC_ASSERT(sizeof(VX3GuiServices) == 7 * sizeof(void*), "laid out without gaps");

#endif
