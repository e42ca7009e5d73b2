/* Menus, the popup edit, drag and drop, and the state of pointer and keys. */
#ifndef VX3_GUIMENU_H
#define VX3_GUIMENU_H

#include "guitypes.h"

enum { VX3_MENU_CHECKED = 1, VX3_MENU_RADIO = 2, VX3_MENU_DISABLED = 4 };

/* Reasons of a popup edit's callback. */
enum { VX3_EDIT_CHANGED = 1, VX3_EDIT_CLOSED = 2, VX3_EDIT_CANCELLED = 3 };

/* Hears of a popup edit: every change, and its end once, as closed by Enter or by the loss of
 * the focus, or as cancelled. `text` is borrowed until the call returns.
 * [gui-thread] [nested] */
typedef void (*VX3PopupEditFunction)(void* user, int32_t reason, const VX3String* text);

/* Types of what is dragged. Of a type of a module the data is whatever that module says. 204
 * and 205 are kept for kinds of files that come with sections of their own. */
enum {
    VX3_DRAG_OBJECTS = 201, /* elements of the scene */
    VX3_DRAG_FILE = 202,    /* data is a VX3Path; one message for each of several files at the drop */
    VX3_DRAG_BROWSER = 1017705
};

/* Keys of a VX3_GUI_DRAG message. It goes to the dialog under the pointer, and at the end
 * to every dialog that got one. Without the keys 5 and 7 the pointer moves. */
enum {
    VX3_DRAG_KEY_TYPE = 1,
    VX3_DRAG_KEY_DATA = 2, /* pointer, borrowed until the call returns */
    VX3_DRAG_KEY_X = 3,    /* on the screen */
    VX3_DRAG_KEY_Y = 4,
    VX3_DRAG_KEY_DROP = 5, /* bool: dropped here */
    VX3_DRAG_KEY_QUALIFIERS = 6,
    VX3_DRAG_KEY_END = 7,   /* bool: the drag left, or is over */
    VX3_DRAG_KEY_GADGET = 8 /* under the pointer; absent if none has a number */
};

typedef struct VX3MenuServices {
    /* The menu bar of a window: flush, then per menu `beginMenu`, rows and menus inside it,
     * `endMenu`, at last `finish`. A row's command arrives at the window's `command`. The id 0
     * is a separator. A `&` in a text marks the next letter for the keyboard. [gui-thread] */
    VX3Bool (*flush)(VX3Dialog dialog);
    VX3Bool (*beginMenu)(VX3Dialog dialog, const VX3String* text);                              /* [gui-thread] */
    VX3Bool (*endMenu)(VX3Dialog dialog);                                                       /* [gui-thread] */
    VX3Bool (*addItem)(VX3Dialog dialog, int32_t id, const VX3String* text, uint32_t menuBits); /* VX3_MENU bits. [gui-thread] */
    /* A row for a registered command, which brings its name, icon, help and state and is
     * executed by the host. Asks for its state, and again before the menu is shown. [gui-thread] */
    VX3Bool (*addCommand)(VX3Dialog dialog, int32_t command);
    VX3Bool (*finish)(VX3Dialog dialog);                                 /* [gui-thread] */
    VX3Bool (*setItem)(VX3Dialog dialog, int32_t id, uint32_t menuBits); /* Also after `finish`. [gui-thread] */

    /* Shows a menu at a point of the screen, or at the pointer for -1, -1, and answers the
     * number of the row that the user chose, or 0. Rows are the container's texts in order:
     * their key is the number; a text that ends in "&d&" is shown and cannot be chosen, in
     * "&c&" has a tick; an empty one is a separator; a nested container is a menu of its own, whose text
     * stands under the key 1 in it and whose rows have other keys. A text under the key 0 is shown
     * and cannot be told from none; values of other types are left out; of rows with the same
     * number the first one counts. [gui-thread] [nested] */
    int32_t (*popup)(VX3Dialog dialog, const VX3Container* menu, int32_t x, int32_t y);

    /* Opens a field for one line over a place of the screen, with all of its text selected,
     * and returns at once. There is one in the program: the one before ends as closed. 0:
     * `function` is never called. [gui-thread] */
    VX3Bool (*popupEdit)(VX3Dialog dialog, const VX3Rectangle* place, const VX3String* text, VX3PopupEditFunction function, void* user);
    /* Ends it, as closed or as cancelled. [gui-thread] [nested] */
    void (*endPopupEdit)(VX3Bool cancel);

    /* Drags something, from a press that an area was just told of, until the button is let
     * go or the user cancels. 0: the pointer stayed where it was, or is busy with a rubber band
     * or a drag. `data` is borrowed until the call returns. [gui-thread] [nested] */
    VX3Bool (*drag)(VX3Area area, int32_t type, void* data);
    /* In a VX3_GUI_DRAG message: the pointer tells the user what a drop would do. A
     * VX3_CURSOR value. [gui-thread] */
    void (*setDragResult)(int32_t cursor);

    void (*setCursor)(int32_t cursor);           /* A VX3_CURSOR value, until the next one. [gui-thread] */
    uint32_t (*qualifiers)(void);                /* VX3_QUALIFIER bits of the keys held now. [gui-thread] */
    uint32_t (*pointer)(int32_t* x, int32_t* y); /* On the screen; a bit for each VX3_CHANNEL held, from bit 1. [gui-thread] */
} VX3MenuServices;

VX3_STATIC_ASSERT(sizeof(VX3MenuServices) == 15 * sizeof(void*), "laid out without gaps");

#endif
