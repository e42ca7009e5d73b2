/* Dialogs: windows, modal dialogs and dialogs inside others.
 *
 * A module makes a dialog once, and opens and closes it as often as it likes. The order
 * of the callbacks is fixed:
 *   opening: restore message if there is one, createLayout of the window, createLayout
 *     of each sub-dialog when it is attached, initValues of the sub-dialogs in the order
 *     of attaching, then of the window, VX3_GUI_RESIZED, the first timer;
 *   closing: askClose, VX3_GUI_HIDING, destroyWindow of the sub-dialogs in reverse
 *     order, then of the window.
 * Timers and core messages come only between initValues and destroyWindow. A popup edit,
 * a drag or a menu that is still open ends first.
 */
#ifndef VX3_GUIDIALOG_H
#define VX3_GUIDIALOG_H

#include "guitypes.h"

/* The operations of a module's dialog; one that is none is left out. */
typedef struct VX3DialogTable {
    VX3Bool (*createLayout)(void* object); /* 0: the dialog does not open [gui-thread] [nested] */
    VX3Bool (*initValues)(void* object);   /* 0: the dialog does not open [gui-thread] [nested] */
    /* The user used a gadget or chose a row of the menu bar; `event` has the keys VX3_COMMAND.
     * [gui-thread] [nested] */
    VX3Bool (*command)(void* object, int32_t id, const VX3Container* event);
    void (*timer)(void* object); /* never inside another callback of this timer [gui-thread] [nested] */
    /* See VX3_CORE keys. [gui-thread] [nested] */
    void (*coreMessage)(void* object, int32_t id, const VX3Container* message);
    /* 1: consumed. `result` is empty at first. [gui-thread] [nested] */
    VX3Bool (*message)(void* object, int32_t code, const VX3Container* message, VX3Container* result);
    VX3Bool (*askClose)(void* object);   /* 1: the window stays open [gui-thread] [nested] */
    void (*destroyWindow)(void* object); /* [gui-thread] [nested] */
} VX3DialogTable;

/* Keys of a command. A row of the menu bar has none of them. */
enum {
    VX3_COMMAND_VALUE = 1,   /* float64: the value, 1 for a plain button */
    VX3_COMMAND_DRAGGED = 2, /* bool: a slider is still held */
    VX3_COMMAND_MENU = 3     /* bool: the user asks for the menu of a button instead; there is no value */
};

/* Where and as what a window opens. */
typedef struct VX3WindowPlace {
    int32_t id;    /* of the kind of window */
    int32_t subId; /* of this one among its kind */
    int32_t x;     /* left and top of the window; -1, -1 leaves the place to the host */
    int32_t y;
    int32_t width; /* of its inside; 0 for what the layout needs */
    int32_t height;
} VX3WindowPlace;

typedef struct VX3DialogServices {
    /* Makes a dialog that is not open; 0 without memory. `object` and `table` must live until
     * it is freed. The caller must free with `free`. [gui-thread] */
    VX3Dialog (*create)(void* object, const VX3DialogTable* table);
    void (*free)(VX3Dialog dialog); /* Closes it first, without asking. [gui-thread] [nested] */

    /* Opens a window that does not hold up the others; its first frame comes later. 0 if it
     * is open or does not want to. [gui-thread] [nested] */
    VX3Bool (*open)(VX3Dialog dialog, const VX3WindowPlace* place);
    /* Opens a window that holds up all others and returns when it is closed, with the
     * result of `close`; 0 if the user closed it. [gui-thread] [may-block] [nested] */
    int32_t (*openModal)(VX3Dialog dialog, const VX3WindowPlace* place);
    /* Opens a window with the size, the place and the contents of a saved layout. 0 if the
     * host has none for these ids. [gui-thread] [nested] */
    VX3Bool (*restore)(VX3Dialog dialog, int32_t id, int32_t subId);
    /* Closes without asking; inside a callback of the dialog, when that has returned.
     * [gui-thread] [nested] */
    VX3Bool (*close)(VX3Dialog dialog, int32_t result);
    VX3Bool (*isOpen)(VX3Dialog dialog);                                      /* [gui-thread] */
    VX3Bool (*setTitle)(VX3Dialog dialog, const VX3String* title);            /* Also before it opens. [gui-thread] */
    VX3Bool (*raise)(VX3Dialog dialog);                                       /* To the front, with the focus. [gui-thread] */
    VX3Bool (*setLeastSize)(VX3Dialog dialog, int32_t width, int32_t height); /* [gui-thread] */
    VX3Bool (*getSize)(VX3Dialog dialog, int32_t* width, int32_t* height);    /* Of the inside. [gui-thread] */

    /* Calls the timer every so many milliseconds; 0 stops it. One for each dialog, stopped
     * when it closes. [gui-thread] */
    VX3Bool (*setTimer)(VX3Dialog dialog, int32_t milliseconds);
    /* Sends a message without contents to the dialog, later. [gui-thread] */
    VX3Bool (*post)(VX3Dialog dialog, int32_t code);

    /* Puts a dialog into a gadget of an open one, with createLayout at once and initValues
     * before that of the parent, or at once if the parent had its own. A dialog that
     * is in that gadget is closed first. 0 if it is open, or if the gadget is not of the kind
     * VX3_GADGET_SUBDIALOG. [gui-thread] [nested] */
    VX3Bool (*attach)(VX3Dialog dialog, VX3Dialog parent, int32_t gadget);
    VX3Bool (*detach)(VX3Dialog dialog); /* Closes it; the gadget is empty then. [gui-thread] [nested] */
} VX3DialogServices;

VX3_STATIC_ASSERT(sizeof(VX3DialogTable) == 8 * sizeof(void*), "laid out without gaps");
VX3_STATIC_ASSERT(sizeof(VX3WindowPlace) == 24, "VX3WindowPlace is 24 bytes");
VX3_STATIC_ASSERT(sizeof(VX3DialogServices) == 15 * sizeof(void*), "laid out without gaps");

#endif
