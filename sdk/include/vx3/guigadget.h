/* Gadgets: what stands in a dialog.
 *
 * A gadget has a number in its dialog, given by the module; 0 for one that is never
 * addressed. Layouts come from a file (`loadLayout`, resource.h) or are built in
 * `createLayout` with begin, add and end, or both: `flush` empties a group and makes it the
 * current one again. A group shows its changes after `update`.
 *
 * Values are doubles, texts or dates, whichever the kind has; a value set by the module
 * is clamped to the range and causes no command.
 */
#ifndef VX3_GUIGADGET_H
#define VX3_GUIGADGET_H

#include "guitypes.h"

typedef enum VX3GadgetKind {
    /* Groups, for `begin`. */
    VX3_GADGET_GROUP = 1,    /* a grid of `columns`, filled row by row; a title gives it a frame */
    VX3_GADGET_SPLITTER = 2, /* children in a row, or in a column with `columns` 1; the user moves the borders */
    VX3_GADGET_SCROLL = 3,   /* one child, seen through a window; a bar where it is larger */
    VX3_GADGET_TABS = 4,     /* each child is a page, titled by its text; the value is the page from 0 */

    /* Single ones, for `add`. */
    VX3_GADGET_TEXT = 20,          /* a text that cannot be edited */
    VX3_GADGET_EDIT = 21,          /* one line; a command on each change, with the value 1 on Enter */
    VX3_GADGET_MULTILINE = 22,     /* several lines; a command on each change */
    VX3_GADGET_NUMBER = 23,        /* a number with a range and a step */
    VX3_GADGET_DATE = 24,          /* year, month and day */
    VX3_GADGET_CHECK = 25,         /* value 0 or 1, with a text */
    VX3_GADGET_BUTTON = 26,        /* a text; a command when pressed */
    VX3_GADGET_BITMAP_BUTTON = 27, /* a picture; a command when pressed. With VX3_FLAG_TOGGLE value 0 or 1 */
    VX3_GADGET_COMBO = 28,         /* one of several rows; the value is the row's number */
    VX3_GADGET_SLIDER = 29,        /* a number with a range and a step, also to be dragged */
    VX3_GADGET_PROGRESS = 30,      /* value 0 to 1; below 0: something is done, nobody knows how much */
    VX3_GADGET_SEPARATOR = 31,     /* a line across its group */
    VX3_GADGET_SPACE = 32,         /* nothing */
    VX3_GADGET_AREA = 33,          /* place of an area (guiarea.h) */
    VX3_GADGET_TREE = 34,          /* place of a tree (guitree.h) */
    VX3_GADGET_SUBDIALOG = 35      /* place of another dialog (guidialog.h) */
} VX3GadgetKind;

/* Without a FIT a gadget has its least size and stands in the middle; with one it fills its
 * cell. A SCALE gives its column or row a share of what is left over; in a group without any,
 * the columns or rows with a FIT share it. */
enum {
    VX3_FLAG_FIT_H = 1,
    VX3_FLAG_FIT_V = 2,
    VX3_FLAG_SCALE_H = 4,
    VX3_FLAG_SCALE_V = 8,
    VX3_FLAG_READ_ONLY = 16, /* EDIT, MULTILINE: can be selected and copied, not changed */
    VX3_FLAG_LEFT = 32,      /* at the left of its cell instead of the middle */
    VX3_FLAG_RIGHT = 64,
    VX3_FLAG_TOGGLE = 128,
    VX3_FLAG_EDIT = 256,    /* COMBO: also other texts than those of its rows */
    VX3_FLAG_PERCENT = 512, /* NUMBER, SLIDER: shown with a percent sign */
    VX3_FLAG_HIDDEN = 1024, /* takes no room until it is shown */
    VX3_FLAG_MENU = 2048    /* BITMAP_BUTTON: the right button asks for a menu: VX3_COMMAND_MENU */
};

/* The shape of one gadget or group. */
typedef struct VX3GadgetShape {
    int32_t kind; /* VX3GadgetKind */
    int32_t id;
    uint32_t flags;
    int32_t minWidth; /* 0: what its contents need */
    int32_t minHeight;
    int32_t columns; /* of a group, from 1 */
} VX3GadgetShape;

/* Keys of the weights of a splitter, float64: columns from 2001, rows from 3001. They
 * compare with each other only. */
enum { VX3_WEIGHT_COLUMN = 2001, VX3_WEIGHT_ROW = 3001 };

typedef struct VX3GadgetServices {
    /* Builds what a layout file of the module describes, as a child of the current group.
     * 0, and nothing built, if the file is absent or wrong, or the group takes no more; the
     * console then has a line that says where. [gui-thread] [may-block] */
    VX3Bool (*loadLayout)(VX3Dialog dialog, VX3Resources* resources, int32_t number);
    /* Adds a group to the current one and makes it the current one. `title` may be none.
     * 0 if the id is there already. [gui-thread] */
    VX3Bool (*begin)(VX3Dialog dialog, const VX3GadgetShape* shape, const VX3String* title);
    VX3Bool (*end)(VX3Dialog dialog); /* Back to the group around it. [gui-thread] */
    /* Adds a gadget to the current group. `text` may be none; `tip` is shown to a user who
     * hesitates, and may be none. 0 if the id is there already. [gui-thread] */
    VX3Bool (*add)(VX3Dialog dialog, const VX3GadgetShape* shape, const VX3String* text, const VX3String* tip);
    /* Removes the children of a group, with what is attached to them, and makes it the
     * current one. [gui-thread] [nested] */
    VX3Bool (*flush)(VX3Dialog dialog, int32_t group);
    /* Lays a group out anew, at once: afterwards all sizes and scroll ranges hold. 0 is the
     * whole dialog. [gui-thread] [nested] */
    VX3Bool (*update)(VX3Dialog dialog, int32_t group);
    VX3Bool (*exists)(VX3Dialog dialog, int32_t id); /* [gui-thread] */

    /* What stands in a disabled group or dialog cannot be used either, and can again as it could
     * before when that is enabled. `isEnabled` tells of the gadget alone. [gui-thread] */
    VX3Bool (*enable)(VX3Dialog dialog, int32_t id, VX3Bool enabled);
    VX3Bool (*isEnabled)(VX3Dialog dialog, int32_t id);           /* [gui-thread] */
    VX3Bool (*show)(VX3Dialog dialog, int32_t id, VX3Bool shown); /* Takes effect with `update`. [gui-thread] */
    VX3Bool (*focus)(VX3Dialog dialog, int32_t id);               /* [gui-thread] */
    VX3Bool (*hasFocus)(VX3Dialog dialog, int32_t id);            /* Also for what is inside it. [gui-thread] */

    VX3Bool (*setText)(VX3Dialog dialog, int32_t id, const VX3String* text); /* [gui-thread] */
    VX3Bool (*getText)(VX3Dialog dialog, int32_t id, VX3String* text);       /* [gui-thread] */
    VX3Bool (*setTip)(VX3Dialog dialog, int32_t id, const VX3String* tip);   /* [gui-thread] */
    /* Selects `count` units from `from`; -1 for all that follow. [gui-thread] */
    VX3Bool (*selectText)(VX3Dialog dialog, int32_t id, int32_t from, int32_t count);
    VX3Bool (*setRange)(VX3Dialog dialog, int32_t id, double least, double most, double step); /* [gui-thread] */
    /* Of tabs: lays the window out anew, which asks areas and trees for their sizes. [gui-thread] */
    VX3Bool (*setValue)(VX3Dialog dialog, int32_t id, double value);
    VX3Bool (*getValue)(VX3Dialog dialog, int32_t id, double* value);          /* [gui-thread] */
    VX3Bool (*setDate)(VX3Dialog dialog, int32_t id, const VX3FileDate* date); /* [gui-thread] */
    VX3Bool (*getDate)(VX3Dialog dialog, int32_t id, VX3FileDate* date);       /* [gui-thread] */
    /* Adds a row to a combo box. `text` none or empty: a separator. [gui-thread] */
    VX3Bool (*addRow)(VX3Dialog dialog, int32_t id, int32_t value, const VX3String* text);
    VX3Bool (*clearRows)(VX3Dialog dialog, int32_t id); /* [gui-thread] */
    /* The pictures of a button, which are copied: the usual one, and one that a button
     * with something going on shows in turn with it. Either may be none. [gui-thread] */
    VX3Bool (*setBitmap)(VX3Dialog dialog, int32_t id, const VX3Bitmap* normal, const VX3Bitmap* second);
    /* The same by the number of an icon of the host (VX3_ICON) or of a registered one; 0 is
     * none. [gui-thread] */
    VX3Bool (*setIcon)(VX3Dialog dialog, int32_t id, int32_t normal, int32_t second);

    VX3Bool (*setWeights)(VX3Dialog dialog, int32_t splitter, const VX3Container* weights); /* [gui-thread] */
    VX3Bool (*getWeights)(VX3Dialog dialog, int32_t splitter, VX3Container* weights);       /* [gui-thread] */
    /* The part of its child that a scroll group shows, in the child's coordinates: x2 and
     * y2 lie behind the last pixel. [gui-thread] */
    VX3Bool (*getVisiblePart)(VX3Dialog dialog, int32_t scroll, VX3Rectangle* part);
    /* Moves it as far as there is something to see; looks at x1 and y1 only. [gui-thread] */
    VX3Bool (*setVisiblePart)(VX3Dialog dialog, int32_t scroll, const VX3Rectangle* part);
    /* Where a gadget stands on the screen. [gui-thread] */
    VX3Bool (*getScreenPlace)(VX3Dialog dialog, int32_t id, VX3Rectangle* place);
} VX3GadgetServices;

/* Icons that every host has. */
enum {
    VX3_ICON_BACK = 300000250,
    VX3_ICON_FORWARD = 300000251,
    VX3_ICON_UP = 300000252,
    VX3_ICON_HOME = 300000253,
    VX3_ICON_SEARCH = 300000254,
    VX3_ICON_REFRESH = 300000255,
    VX3_ICON_MENU = 300000256,
    VX3_ICON_ZOOM_SMALLEST = 300000258,
    VX3_ICON_ZOOM_LARGEST = 300000259
};

VX3_STATIC_ASSERT(sizeof(VX3GadgetShape) == 24, "VX3GadgetShape is 24 bytes");
VX3_STATIC_ASSERT(sizeof(VX3GadgetServices) == 30 * sizeof(void*), "laid out without gaps");

#endif
