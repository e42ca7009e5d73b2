/* Files and compression.
 *
 * A binary file is created, opened, used by one thread at a time, closed and freed by
 * whoever created it. Reading and writing are buffered. Only regular files are opened,
 * for reading as for writing: a pipe, a socket or a device fails at once and never
 * waits. Offsets and lengths are bytes.
 *
 * A file of a disk has one writer. Opening it for update or anew fails, and changes
 * nothing, while it is open so elsewhere, here or in another program; the lock goes when
 * the file is closed or the program ends. Any number may read meanwhile, and see what has
 * been written out: a shorter file reads as shorter, a longer one as longer. Memory paths,
 * and file systems that have no locks, leave it to the callers.
 *
 * After a failed call the position is undefined, and every later call but `close` and
 * `free` fails as well.
 */
#ifndef VX3_FILE_H
#define VX3_FILE_H

#include "types.h"

enum {
    VX3_OPEN_UPDATE = 0, /* read and write, created if absent, not truncated */
    VX3_OPEN_READ = 1,   /* fails if absent */
    VX3_OPEN_CREATE = 2  /* written anew, truncated if it exists */
};
enum { VX3_ORDER_BIG = 0, VX3_ORDER_LITTLE = 1 };
enum { VX3_SEEK_ABSOLUTE = 0, VX3_SEEK_RELATIVE = 2 };

/* Type and creator that a module passes to `open`. */
enum { VX3_FILE_TYPE = 0x56583343, VX3_FILE_CREATOR = 0x56583331 };

typedef struct VX3FileServices {
    /* Makes a closed file object, or none. The caller must free with `free`.
     * [any-thread] */
    VX3BinaryFile* (*create)(void);
    /* Closes if need be and frees; none is allowed. [owner-thread] [may-block] */
    void (*free)(VX3BinaryFile* file);
    /* Opens a path, which may be a memory path. `showErrors` asks the host to tell
     * the user of a failure; `byteOrder` is for the integers below; `type` and
     * `creator` are tags for systems that keep such, and never stand in the bytes.
     * [owner-thread] [may-block] */
    VX3Bool (*open)(VX3BinaryFile* file, const VX3Path* path, int32_t mode, VX3Bool showErrors, int32_t byteOrder, uint32_t type,
                    uint32_t creator);
    /* Writes out what is buffered, waits until the disk has it and closes; 0 if any byte
     * could not be written or may not have arrived. A host may let its user turn the
     * waiting off. [owner-thread] [may-block] */
    VX3Bool (*close)(VX3BinaryFile* file);
    /* Reads up to `length` bytes, none allowed for 0, and returns how many there were, less only at the
     * end of the file; -1 on an error. [owner-thread] [may-block] */
    int64_t (*read)(VX3BinaryFile* file, void* bytes, int64_t length);
    /* Writes all of `length` bytes. [owner-thread] [may-block] */
    VX3Bool (*write)(VX3BinaryFile* file, const void* bytes, int64_t length);
    /* Integers in the byte order of `open`; a short read is a failure. */
    VX3Bool (*readInt16)(VX3BinaryFile* file, uint16_t* value); /* [owner-thread] [may-block] */
    VX3Bool (*readInt32)(VX3BinaryFile* file, uint32_t* value); /* [owner-thread] [may-block] */
    VX3Bool (*readInt64)(VX3BinaryFile* file, uint64_t* value); /* [owner-thread] [may-block] */
    VX3Bool (*writeInt16)(VX3BinaryFile* file, uint16_t value); /* [owner-thread] [may-block] */
    VX3Bool (*writeInt32)(VX3BinaryFile* file, uint32_t value); /* [owner-thread] [may-block] */
    VX3Bool (*writeInt64)(VX3BinaryFile* file, uint64_t value); /* [owner-thread] [may-block] */
    /* Moves the position; in front of the start is a failure, behind the end is
     * allowed. [owner-thread] [may-block] */
    VX3Bool (*seek)(VX3BinaryFile* file, int64_t offset, int32_t origin);
    /* -1 if the file is not open. [owner-thread] */
    int64_t (*position)(VX3BinaryFile* file);
    /* The length with what is still buffered; -1 on an error. [owner-thread] [may-block] */
    int64_t (*length)(VX3BinaryFile* file);
    /* Writes out what is buffered and waits as `close` does. [owner-thread] [may-block] */
    VX3Bool (*sync)(VX3BinaryFile* file);
} VX3FileServices;

/* A lossless compressor. A context has no state between calls and may be used from
 * many threads at once. */
typedef struct VX3CompressorServices {
    /* `library` is 1011188, the deflate stream with a checksum of RFC 1950; others
     * give none. The caller must free with `free`. [any-thread] */
    VX3Compressor* (*create)(int32_t library);
    void (*free)(VX3Compressor* compressor); /* [any-thread] */
    /* Packs at a level from 1 to 9 into a new block, which the caller must free with
     * the memory section. [any-thread] */
    VX3Bool (*compress)(VX3Compressor* compressor, const void* bytes, int64_t length, int32_t level, void** packed, int64_t* packedLength);
    /* Unpacks into a new block, which the caller must free with the memory section.
     * Fails on bad data, on trailing bytes, and if more than `limit` bytes come out.
     * [any-thread] */
    VX3Bool (*decompress)(VX3Compressor* compressor, const void* packed, int64_t packedLength, int64_t limit, void** bytes,
                          int64_t* length);
} VX3CompressorServices;

enum { VX3_COMPRESSOR_DEFLATE = 1011188 };

VX3_STATIC_ASSERT(sizeof(VX3FileServices) == 16 * sizeof(void*), "laid out without gaps");
VX3_STATIC_ASSERT(sizeof(VX3CompressorServices) == 4 * sizeof(void*), "laid out without gaps");

#endif
