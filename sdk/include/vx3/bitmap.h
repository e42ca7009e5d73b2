/* Bitmaps and picture codecs.
 *
 * A bitmap is width x height pixels of red, green, blue with 8 bits each, row 0 on
 * top, with an optional alpha channel that is not multiplied into the colours. One
 * bitmap is used by one thread at a time, but may be read by several at once.
 *
 * Codecs decode at least PNG, JPEG, TIFF, BMP, TGA and GIF, told by their bytes and
 * not by the name. A damaged or oversized file is a failure and never an abort.
 */
#ifndef VX3_BITMAP_H
#define VX3_BITMAP_H

#include "types.h"

enum {
    VX3_IMAGE_OK = 1,
    VX3_IMAGE_NOT_FOUND = 2,
    VX3_IMAGE_UNKNOWN = 3, /* no codec for these bytes */
    VX3_IMAGE_DAMAGED = 4,
    VX3_IMAGE_NO_MEMORY = 5,
    VX3_IMAGE_NOT_WRITTEN = 6
};
enum { VX3_FORMAT_LOSSLESS = 1100, VX3_FORMAT_JPEG = 1104, VX3_FORMAT_PNG = 1106 };

/* Key of the quality, 1 to 100, in the settings of a save. */
enum { VX3_SAVE_QUALITY = 10021 };

/* What a picture file says of itself. */
typedef struct VX3ImageInfo {
    int32_t width;  /* pixels */
    int32_t height; /* pixels */
    int32_t depth;  /* bits of one pixel in the file */
    VX3Bool hasAlpha;
    VX3String format; /* such as "PNG"; the caller must free */
} VX3ImageInfo;

typedef struct VX3BitmapServices {
    /* Makes a black bitmap. `depth` is 24; at most 32,768 pixels a side. None if
     * that fails; the caller must free with `free`. [any-thread] */
    VX3Bitmap* (*create)(int32_t width, int32_t height, int32_t depth);
    void (*free)(VX3Bitmap* bitmap); /* None is allowed. [any-thread] */
    /* An independent copy, or none; the caller must free with `free`. [any-thread] */
    VX3Bitmap* (*clone)(const VX3Bitmap* bitmap);
    int32_t (*width)(const VX3Bitmap* bitmap);    /* [any-thread] */
    int32_t (*height)(const VX3Bitmap* bitmap);   /* [any-thread] */
    int32_t (*depth)(const VX3Bitmap* bitmap);    /* Bits of a pixel: 24, or 32 with alpha. [any-thread] */
    VX3Bool (*hasAlpha)(const VX3Bitmap* bitmap); /* [any-thread] */
    /* Adds an opaque alpha channel if there is none. [owner-thread] */
    VX3Bool (*addAlpha)(VX3Bitmap* bitmap);
    /* Reads `count` pixels of row `y` from `x` as bytes r, g, b, a; a is 255 without
     * alpha. Outside the bitmap it is a failure. [any-thread] */
    VX3Bool (*readPixels)(const VX3Bitmap* bitmap, int32_t x, int32_t y, int32_t count, uint8_t* rgba);
    /* Writes the same; a is dropped without alpha. [owner-thread] */
    VX3Bool (*writePixels)(VX3Bitmap* bitmap, int32_t x, int32_t y, int32_t count, const uint8_t* rgba);
    /* Scales the source rectangle into the target rectangle, with alpha where both
     * have it. A corner is a pixel that belongs to the rectangle. The two are different
     * bitmaps. [owner-thread] */
    VX3Bool (*scale)(const VX3Bitmap* source, int32_t left, int32_t top, int32_t right, int32_t bottom, VX3Bitmap* target,
                     int32_t targetLeft, int32_t targetTop, int32_t targetRight, int32_t targetBottom);
    /* A new bitmap of a rectangle given by its corner and its size, or none; the
     * caller must free with `free`. [any-thread] */
    VX3Bitmap* (*cut)(const VX3Bitmap* bitmap, int32_t x, int32_t y, int32_t width, int32_t height);
    /* Reads a picture from a path, which may be a memory path, into `bitmap`, which
     * takes the picture's size. `frame` counts from 0. Returns a VX3_IMAGE value;
     * unless it is VX3_IMAGE_OK the bitmap is as it was. [owner-thread] [may-block] */
    int32_t (*load)(VX3Bitmap* bitmap, const VX3Path* path, int32_t frame);
    /* Writes a picture to a path, which may be a memory path. `settings` may be none.
     * An existing file is replaced only when the new one is whole.
     * Returns a VX3_IMAGE value. [owner-thread] [may-block] */
    int32_t (*save)(const VX3Bitmap* bitmap, const VX3Path* path, int32_t format, const VX3Container* settings, VX3Bool saveAlpha);
    /* Reads what the head of a file says, without decoding its pixels.
     * [any-thread] [may-block] */
    VX3Bool (*inspect)(const VX3Path* path, VX3ImageInfo* info);
    /* Opens a picture file for the user, in the way of the host. 0 if the host has
     * no viewer or the picture cannot be read. [gui-thread] [may-block] */
    VX3Bool (*show)(const VX3Path* path);
} VX3BitmapServices;

VX3_STATIC_ASSERT(sizeof(VX3ImageInfo) == 24, "VX3ImageInfo is 24 bytes");
VX3_STATIC_ASSERT(sizeof(VX3BitmapServices) == 16 * sizeof(void*), "laid out without gaps");

#endif
