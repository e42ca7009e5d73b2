/* Plain types that cross the boundary.
 *
 * Everything here is C11 without extensions and compiles as C++20. Integers have
 * fixed widths, text is UTF-16 inside and UTF-8 outside, truth is a 32-bit 0 or 1.
 *
 * Thread tags. Every function pointer of every table carries one:
 *   [any-thread]    any thread may call, also several at once
 *   [owner-thread]  one thread at a time for one object; whoever holds it sees to that
 *   [gui-thread]    the host's main thread only
 *   [start-end]     the main thread, inside the actions 2 and 3 of the entry function
 * and may carry
 *   [may-block]     may wait for a disk, a network or another thread
 *   [nested]        may run timers, draws and messages before it returns
 *
 * Ownership words, used with these meanings only:
 *   "the caller must free"            with the call named beside the words
 *   "borrowed until the call returns" the callee keeps nothing of it
 *   "borrowed until …"                valid up to the event named
 *   "given back whatever the outcome" a counted reference that the callee releases
 *
 * A call that fails says so by its result and leaves its out arguments as they
 * were, unless it says otherwise. None means a null pointer.
 */
#ifndef VX3_TYPES_H
#define VX3_TYPES_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
#define VX3_STATIC_ASSERT(condition, text) static_assert(condition, text)
#else
#define VX3_STATIC_ASSERT(condition, text) _Static_assert(condition, text)
#endif

/* 0 or 1. */
typedef int32_t VX3Bool;

/* One UTF-16 unit. Lone surrogates are allowed and kept: see path.h. */
typedef uint16_t VX3Unit;

/* A text value. The storage behind it is the host's and is not looked at.
 * All zero is a valid empty text, so zeroed memory needs no construction.
 * Not to be copied by assignment: use the text section. It may be moved by
 * copying the bytes and zeroing the source. */
typedef struct VX3String {
    void* opaque;
} VX3String;

/* A path value: a directory part and a last part, or a block of memory that stands
 * for a file. The same rules as for VX3String: all zero is the empty path. */
typedef struct VX3Path {
    void* opaque[2];
} VX3Path;

/* A keyed store of typed values. The same rules: all zero is an empty container
 * with the id 0. */
typedef struct VX3Container {
    void* opaque;
} VX3Container;

/* A civil date and time without a zone, compared field by field in this order.
 * All zero means that there is no date. */
typedef struct VX3FileDate {
    uint16_t year;
    uint16_t month;
    uint16_t day;
    uint16_t hour;
    uint16_t minute;
    uint16_t second;
} VX3FileDate;

/* Progress of a long operation. `mode` is 1 while counting and 2 while doing,
 * `count` is 1 for an element that begins and 0 for further bytes of the same one,
 * `size` is in bytes, `reserved` is 0. A negative result cancels.
 * Called on the thread that runs the operation. [owner-thread] */
typedef int32_t (*VX3ProgressFunction)(void* user, int32_t mode, int32_t count, int64_t size, int32_t reserved);

/* Objects of the host, made and freed by its calls. */
typedef struct VX3BinaryFile VX3BinaryFile;
typedef struct VX3DataFile VX3DataFile;
typedef struct VX3Compressor VX3Compressor;
typedef struct VX3FolderWalk VX3FolderWalk;
typedef struct VX3VolumeWalk VX3VolumeWalk;
typedef struct VX3FolderWatch VX3FolderWatch;
typedef struct VX3NetworkWalk VX3NetworkWalk;
typedef struct VX3Bitmap VX3Bitmap;
typedef struct VX3Thread VX3Thread;
typedef struct VX3Semaphore VX3Semaphore;
typedef struct VX3Resources VX3Resources;

VX3_STATIC_ASSERT(sizeof(void*) == 8, "the boundary is laid out for 64-bit systems");
VX3_STATIC_ASSERT(sizeof(VX3String) == 8, "VX3String is 8 bytes");
VX3_STATIC_ASSERT(sizeof(VX3Path) == 16, "VX3Path is 16 bytes");
VX3_STATIC_ASSERT(sizeof(VX3Container) == 8, "VX3Container is 8 bytes");
VX3_STATIC_ASSERT(sizeof(VX3FileDate) == 12, "VX3FileDate is 12 bytes");

#endif
