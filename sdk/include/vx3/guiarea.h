/* User areas: surfaces that a module draws itself and whose input it gets.
 *
 * The host asks for the least size whenever the layout is made; width and height that it
 * then has come back by `getSize`, also inside that question. Areas in a scroll group
 * may be of any size: only what is seen is drawn. Coordinates are the area's own.
 */
#ifndef VX3_GUIAREA_H
#define VX3_GUIAREA_H

#include "guitypes.h"

/* The operations of a module's area; one that is none is left out. */
typedef struct VX3AreaTable {
    /* What the area needs, given the width that `getSize` tells. [gui-thread] */
    void (*minSize)(void* object, int32_t* width, int32_t* height);
    /* Draws at least all of `dirty`, on `canvas`; only here, and in a tree's cells, drawing
     * has an effect. [gui-thread] */
    void (*draw)(void* object, VX3Canvas canvas, const VX3Rectangle* dirty);
    /* A press of a button, a turn of the wheel or a key: see VX3_INPUT keys. 1: consumed.
     * [gui-thread] [nested] */
    VX3Bool (*input)(void* object, const VX3Container* event);
    /* 1: consumed. [gui-thread] [nested] */
    VX3Bool (*message)(void* object, int32_t code, const VX3Container* message);
} VX3AreaTable;

/* Answers of `trackRubberBand`. */
enum {
    VX3_BAND_NONE = 0,    /* it could not be shown, or another one or a drag is going on */
    VX3_BAND_UNMOVED = 1, /* the button was let go where it was pressed */
    VX3_BAND_RECTANGLE = 2,
    VX3_BAND_CANCELLED = 3 /* by the user or by the host: do nothing */
};
enum { VX3_BAND_FRAME = 0x40000001 };

typedef struct VX3AreaServices {
    /* Makes an area that is nowhere yet; 0 without memory. `object` and `table` must live
     * until it is freed. The caller must free with `free`. [gui-thread] */
    VX3Area (*create)(void* object, const VX3AreaTable* table);
    void (*free)(VX3Area area); /* Takes it out of its dialog. [gui-thread] */
    /* Puts it into a gadget of the kind VX3_GADGET_AREA of an open dialog, in place of one that
     * was there; it leaves where it was. It leaves by itself when that dialog closes. [gui-thread] */
    VX3Bool (*attach)(VX3Area area, VX3Dialog dialog, int32_t gadget);
    VX3Bool (*getSize)(VX3Area area, int32_t* width, int32_t* height); /* [gui-thread] */
    /* Draws it again, later; none for all of it. [gui-thread] */
    VX3Bool (*redraw)(VX3Area area, const VX3Rectangle* part);
    VX3Bool (*activate)(VX3Area area);                         /* Gives it the focus. [gui-thread] */
    VX3Bool (*hasFocus)(VX3Area area);                         /* [gui-thread] */
    VX3Bool (*toLocal)(VX3Area area, int32_t* x, int32_t* y);  /* A point of the screen, in the area. [gui-thread] */
    VX3Bool (*toScreen)(VX3Area area, int32_t* x, int32_t* y); /* And back. [gui-thread] */
    /* Sends a message without contents to the area, later; one that waits already is not
     * sent twice. [gui-thread] */
    VX3Bool (*post)(VX3Area area, int32_t code);
    /* Follows the mouse, whose left button is down since (x, y), until it is let go, and
     * shows a frame between the two points. Scrolls at the edges of a scroll group.
     * `mode` is VX3_BAND_FRAME. [gui-thread] [nested] */
    int32_t (*trackRubberBand)(VX3Area area, int32_t x, int32_t y, uint32_t mode, VX3Rectangle* band);
} VX3AreaServices;

VX3_STATIC_ASSERT(sizeof(VX3AreaTable) == 4 * sizeof(void*), "laid out without gaps");
VX3_STATIC_ASSERT(sizeof(VX3AreaServices) == 11 * sizeof(void*), "laid out without gaps");

#endif
