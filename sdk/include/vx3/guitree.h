/* Trees: a gadget that shows rows of a module's tree and asks it for everything.
 *
 * Rows are pointers of the module, which the host compares and hands back and never looks
 * into. It keeps them until `refresh`, which must follow every change of the tree, and
 * knows a row again by its id. While it asks for rows (see gui.h), a call that needs them
 * answers 0, and a `refresh` holds for the next time.
 */
#ifndef VX3_GUITREE_H
#define VX3_GUITREE_H

#include "guitypes.h"

/* Modes of `select`. */
enum { VX3_SELECT_NEW = 0, VX3_SELECT_ADD = 1, VX3_SELECT_REMOVE = 2 };

/* Answers of `acceptDrag`, added up. */
enum { VX3_DROP_REFUSED = 0, VX3_DROP_ON_ROW = 4, VX3_DROP_COPY = 0x40000000 };

/* The one column of a tree without a header: 'icon'. */
enum { VX3_COLUMN_ICON = 0x69636F6E };

/* The operations of a module's tree; `object` is that of the attachment. One that is none
 * is the host's: no children, closed, a row of text, no drag, nothing to drop on. */
typedef struct VX3TreeTable {
    void* (*firstRoot)(void* object);                                /* [gui-thread] */
    void* (*firstChild)(void* object, void* row);                    /* [gui-thread] */
    void* (*next)(void* object, void* row);                          /* [gui-thread] */
    void* (*previous)(void* object, void* row);                      /* for hosts that keep no list of rows [gui-thread] */
    int32_t (*columnWidth)(void* object, void* row, int32_t column); /* [gui-thread] */
    int32_t (*rowHeight)(void* object, void* row);                   /* [gui-thread] */
    /* Draws one cell; its corner is that of `cell`. [gui-thread] */
    void (*drawCell)(void* object, void* row, int32_t column, VX3Canvas canvas, const VX3Rectangle* cell);
    VX3Bool (*hasExpander)(void* object, void* row);        /* none: rows with a first child [gui-thread] */
    VX3Bool (*isSelected)(void* object, void* row);         /* [gui-thread] */
    VX3Bool (*isOpen)(void* object, void* row);             /* [gui-thread] */
    void (*name)(void* object, void* row, VX3String* text); /* For readers of the screen, and for typing. [gui-thread] */
    int64_t (*id)(void* object, void* row);                 /* The same for the same row, also after `refresh`. [gui-thread] */
    int32_t (*dragType)(void* object, void* row);           /* 0: it cannot be dragged [gui-thread] */
    void (*open)(void* object, void* row, VX3Bool open);    /* [gui-thread] [nested] */
    void (*select)(void* object, void* row, int32_t mode);  /* [gui-thread] [nested] */
    /* May something be dropped on the row? `message` as of VX3_GUI_DRAG. [gui-thread] */
    uint32_t (*acceptDrag)(void* object, void* row, const VX3Container* message);
    void (*drop)(void* object, void* row, const VX3Container* message); /* [gui-thread] [nested] */
    /* Changes the host's menu of a row, whose entries VX3_TREE_MENU may be taken out; `menu`
     * as in guimenu.h. [gui-thread] */
    void (*contextMenu)(void* object, void* row, VX3Container* menu);
    VX3Bool (*menuCommand)(void* object, void* row, int32_t command); /* 1: done; the host's otherwise [gui-thread] [nested] */
    void* (*makeDrag)(void* object, void* row);                       /* Data for a drag of `dragType`. [gui-thread] */
    /* When the drag is over, or before the tree leaves its gadget in the middle of it. `row` is
     * none if it has gone. [gui-thread] */
    void (*freeDrag)(void* object, void* row, void* data);
    VX3Bool (*doubleClick)(void* object, void* row); /* 1: done; opens or closes otherwise [gui-thread] [nested] */
    VX3Bool (*deleteKey)(void* object);              /* [gui-thread] [nested] */
} VX3TreeTable;

/* Entries of the host's own menu of a row: open all below it, close all. */
enum { VX3_TREE_MENU_OPEN_ALL = 900000, VX3_TREE_MENU_CLOSE_ALL = 900001 };

typedef struct VX3TreeServices {
    /* Shows a tree in a gadget of the kind VX3_GADGET_TREE, in place of one that was there; 0
     * while something is dragged out of that. `object` and `table` must live until another one is
     * attached there, the gadget is flushed away, or the dialog has closed. [gui-thread] */
    VX3Bool (*attach)(VX3Dialog dialog, int32_t gadget, void* object, const VX3TreeTable* table);
    VX3Bool (*refresh)(VX3Dialog dialog, int32_t gadget);            /* Asks for all rows again, later. [gui-thread] */
    VX3Bool (*redraw)(VX3Dialog dialog, int32_t gadget);             /* The rows are the same and look different. [gui-thread] */
    VX3Bool (*showRow)(VX3Dialog dialog, int32_t gadget, void* row); /* Scrolls to it; may ask for rows. [gui-thread] */
    /* Place of a row on the screen, and how far it is indented; 0 if it is not to be seen.
     * May ask for rows. [gui-thread] */
    VX3Bool (*getRowPlace)(VX3Dialog dialog, int32_t gadget, void* row, VX3Rectangle* place, int32_t* indent);
    VX3Bool (*setFocusRow)(VX3Dialog dialog, int32_t gadget, void* row); /* Asks for its id. [gui-thread] */
} VX3TreeServices;

VX3_STATIC_ASSERT(sizeof(VX3TreeTable) == 23 * sizeof(void*), "laid out without gaps");
VX3_STATIC_ASSERT(sizeof(VX3TreeServices) == 6 * sizeof(void*), "laid out without gaps");

#endif
