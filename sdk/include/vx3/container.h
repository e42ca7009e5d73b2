/* Containers.
 *
 * A VX3Container keeps values of several types under 32-bit keys and has an id of its
 * own. A key holds one value: setting replaces, also with another type. Entries stand
 * in the order in which their keys were first set. A nested container keeps its
 * address while other keys come and go. Many threads may read one container at once;
 * whoever changes it, or one that is nested in it, does so alone.
 *
 * A getter answers its default if the key is absent or holds another type. A setter
 * answers 0 if there is no memory and then nothing has changed.
 */
#ifndef VX3_CONTAINER_H
#define VX3_CONTAINER_H

#include "types.h"

enum {
    VX3_VALUE_NONE = 0,
    VX3_VALUE_INT32 = 1,
    VX3_VALUE_INT64 = 2,
    VX3_VALUE_FLOAT = 3,
    VX3_VALUE_BOOL = 4,
    VX3_VALUE_TEXT = 5,
    VX3_VALUE_CONTAINER = 6,
    VX3_VALUE_POINTER = 7, /* not owned, never written to a file */
    VX3_VALUE_BYTES = 8    /* a generic value: bytes that the host does not understand */
};

typedef struct VX3ContainerServices {
    /* Frees all values and leaves an empty container with the id 0. [any-thread] */
    void (*destruct)(VX3Container* container);
    /* Makes `to` a deep copy of `from`, with its id; pointers are copied as they
     * are. [any-thread] */
    VX3Bool (*copy)(VX3Container* to, const VX3Container* from);

    int32_t (*getId)(const VX3Container* container);       /* [any-thread] */
    VX3Bool (*setId)(VX3Container* container, int32_t id); /* [any-thread] */

    int32_t (*getInt32)(const VX3Container* container, int32_t key, int32_t fallback); /* [any-thread] */
    int64_t (*getInt64)(const VX3Container* container, int32_t key, int64_t fallback); /* [any-thread] */
    double (*getFloat)(const VX3Container* container, int32_t key, double fallback);   /* [any-thread] */
    VX3Bool (*getBool)(const VX3Container* container, int32_t key, VX3Bool fallback);  /* [any-thread] */
    void* (*getPointer)(const VX3Container* container, int32_t key, void* fallback);   /* [any-thread] */
    /* Copies the text; without one `text` is left alone and the answer is 0.
     * [any-thread] */
    VX3Bool (*getText)(const VX3Container* container, int32_t key, VX3String* text);
    /* The bytes, borrowed until the key is set again or removed; none if absent.
     * [any-thread] */
    const void* (*getBytes)(const VX3Container* container, int32_t key, int64_t* length);
    /* The nested container itself, borrowed until the key is set again or removed;
     * none if absent, or without memory. It may be changed in place. [any-thread] */
    VX3Container* (*getContainer)(const VX3Container* container, int32_t key);

    VX3Bool (*setInt32)(VX3Container* container, int32_t key, int32_t value);                     /* [any-thread] */
    VX3Bool (*setInt64)(VX3Container* container, int32_t key, int64_t value);                     /* [any-thread] */
    VX3Bool (*setFloat)(VX3Container* container, int32_t key, double value);                      /* [any-thread] */
    VX3Bool (*setBool)(VX3Container* container, int32_t key, VX3Bool value);                      /* [any-thread] */
    VX3Bool (*setPointer)(VX3Container* container, int32_t key, void* value);                     /* [any-thread] */
    VX3Bool (*setText)(VX3Container* container, int32_t key, const VX3String* value);             /* [any-thread] */
    VX3Bool (*setBytes)(VX3Container* container, int32_t key, const void* bytes, int64_t length); /* [any-thread] */
    /* Stores a deep copy of `value`; none stores an empty container. [any-thread] */
    VX3Bool (*setContainer)(VX3Container* container, int32_t key, const VX3Container* value);

    /* The type under a key, VX3_VALUE_NONE if it is absent. [any-thread] */
    int32_t (*typeOf)(const VX3Container* container, int32_t key);
    /* Takes a key out; 0 if it was not there, or without memory. [any-thread] */
    VX3Bool (*remove)(VX3Container* container, int32_t key);
    /* Takes all keys out and keeps the id. [any-thread] */
    void (*clear)(VX3Container* container);
    /* The number of keys. [any-thread] */
    int32_t (*count)(const VX3Container* container);
    /* Key and type of the entry at a place from 0 to count - 1. [any-thread] */
    VX3Bool (*entryAt)(const VX3Container* container, int32_t place, int32_t* key, int32_t* type);
    /* 1 if both hold the same id, keys in the same order, types and values.
     * [any-thread] */
    VX3Bool (*equals)(const VX3Container* a, const VX3Container* b);
} VX3ContainerServices;

enum { VX3_DATA_READ = 1, VX3_DATA_WRITE = 2 };

/* Data files: containers as bytes, on a path that may be a memory path. The format is
 * the host's own and is documented with it: deterministic, without pointers, with a
 * depth of 64 at the most. */
typedef struct VX3DataFileServices {
    /* Opens for VX3_DATA_READ or VX3_DATA_WRITE with a four-character ident, which
     * must be met again on reading. None if that fails; the caller must free with
     * `close`. [any-thread] [may-block] */
    VX3DataFile* (*open)(const VX3Path* path, int32_t mode, uint32_t ident);
    /* Appends one container. [owner-thread] [may-block] */
    VX3Bool (*write)(VX3DataFile* file, const VX3Container* container);
    /* Reads the next container; a cut or damaged image gives 0 and leaves
     * `container` as it was. [owner-thread] [may-block] */
    VX3Bool (*read)(VX3DataFile* file, VX3Container* container);
    /* Ends the file; 0 if anything written did not reach it. [owner-thread] [may-block] */
    VX3Bool (*close)(VX3DataFile* file);
} VX3DataFileServices;

VX3_STATIC_ASSERT(sizeof(VX3ContainerServices) == 26 * sizeof(void*), "laid out without gaps");
VX3_STATIC_ASSERT(sizeof(VX3DataFileServices) == 4 * sizeof(void*), "laid out without gaps");

#endif
