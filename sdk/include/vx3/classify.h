/* Classification of a file by its bytes. The name does not count. */
#ifndef VX3_CLASSIFY_H
#define VX3_CLASSIFY_H

#include "types.h"

enum {
    VX3_CLASS_SCENE = 1,
    VX3_CLASS_IMAGE = 2,
    VX3_CLASS_MOVIE = 4,
    VX3_CLASS_SCRIPT = 16,
    VX3_CLASS_TONIC = 32,
    VX3_CLASS_SOUND = 64,
    VX3_CLASS_LAYOUT = 128
};

/* Bits of `flags`: scenes of other programs count too; look at the bytes alone and
 * open nothing. */
enum { VX3_CLASSIFY_FOREIGN_SCENES = 1, VX3_CLASSIFY_HEADER_ONLY = 8 };

typedef struct VX3ClassifyServices {
    /* The class of a file whose first `length` bytes are `header`, 0 if it is none of
     * them. `path` may be none, and is opened only where the header is not enough and
     * the flags allow it. [any-thread] [may-block] */
    uint32_t (*classify)(const VX3Path* path, const void* header, int32_t length, uint32_t flags);
} VX3ClassifyServices;

VX3_STATIC_ASSERT(sizeof(VX3ClassifyServices) == sizeof(void*), "laid out without gaps");

#endif
