/* Drawing, inside the draw callbacks of areas and trees.
 *
 * Each drawing begins without a clip, with the pen and the text in VX3_COLOUR_TEXT and
 * the background VX3_COLOUR_BACKGROUND. Text stands in the user's font; its background is
 * not painted. Outside a drawing only the two measures answer, for any canvas.
 */
#ifndef VX3_GUIDRAW_H
#define VX3_GUIDRAW_H

#include "guitypes.h"

/* How `drawBitmap` treats alpha: 256 blends with the alpha channel, 768 draws a bitmap
 * without looking at it. */
enum { VX3_DRAW_ALPHA = 256, VX3_DRAW_OPAQUE = 768 };

typedef struct VX3DrawServices {
    void (*setClip)(VX3Canvas canvas, const VX3Rectangle* clip);                   /* Replaces the one before. [gui-thread] */
    void (*clearClip)(VX3Canvas canvas);                                           /* [gui-thread] */
    void (*setPen)(VX3Canvas canvas, int32_t colour);                              /* A VX3_COLOUR number. [gui-thread] */
    void (*setPenRgb)(VX3Canvas canvas, uint8_t red, uint8_t green, uint8_t blue); /* [gui-thread] */
    /* `background` is what stands behind the text, for hosts that smooth letters against a
     * colour; nothing is painted with it. [gui-thread] */
    void (*setTextColours)(VX3Canvas canvas, int32_t text, int32_t background);
    void (*fillRectangle)(VX3Canvas canvas, const VX3Rectangle* rectangle);             /* With the pen. [gui-thread] */
    void (*drawLine)(VX3Canvas canvas, int32_t x1, int32_t y1, int32_t x2, int32_t y2); /* Both ends included. [gui-thread] */
    /* Scales a part of a bitmap into a rectangle: corner and size of both. The bitmap may be
     * kept in a form of the host's until it changes or is freed. [gui-thread] */
    void (*drawBitmap)(VX3Canvas canvas, const VX3Bitmap* bitmap, int32_t x, int32_t y, int32_t width, int32_t height, int32_t sourceX,
                       int32_t sourceY, int32_t sourceWidth, int32_t sourceHeight, uint32_t mode);
    /* Draws `count` units with their upper left corner at a point. [gui-thread] */
    void (*drawText)(VX3Canvas canvas, const VX3Unit* units, int32_t count, int32_t x, int32_t y);
    int32_t (*textWidth)(VX3Canvas canvas, const VX3Unit* units, int32_t count); /* [gui-thread] */
    int32_t (*fontHeight)(VX3Canvas canvas);                                     /* [gui-thread] */
    /* A colour of the palette as 0xRRGGBB. [gui-thread] */
    uint32_t (*colour)(int32_t number);
    /* How many dots of the screen 100 pixels are, at least 100: a bitmap with as many dots as
     * its rectangle looks sharp. 100 outside a drawing. [gui-thread] */
    int32_t (*dots)(VX3Canvas canvas);
} VX3DrawServices;

VX3_STATIC_ASSERT(sizeof(VX3DrawServices) == 13 * sizeof(void*), "laid out without gaps");

#endif
