/* Memory.
 *
 * The only source of memory for a module. Each request names the place in the
 * module's source, so that the host can report what was not given back. Blocks are
 * aligned to 16 bytes. A failed request gives none and nothing else happens.
 */
#ifndef VX3_MEMORY_H
#define VX3_MEMORY_H

#include "types.h"

typedef struct VX3MemoryServices {
    /* Gives `size` bytes, zeroed if `clear` is set, or none. A size of 0 gives a
     * block of its own. `file` is a literal that outlives the module's last call;
     * the caller must free with `free`.
     * [any-thread] */
    void* (*alloc)(size_t size, int32_t line, const char* file, VX3Bool clear);

    /* Gives a block back. None is allowed.
     * [any-thread] */
    void (*free)(void* block);
} VX3MemoryServices;

VX3_STATIC_ASSERT(sizeof(VX3MemoryServices) == 2 * sizeof(void*), "laid out without gaps");

#endif
