/* Messages from a module to the host and its open dialogs. */
#ifndef VX3_MESSAGE_H
#define VX3_MESSAGE_H

#include "types.h"

/* Id of the browser's own core message and of its main command. */
enum { VX3_MESSAGE_BROWSER = 1017163 };

typedef struct VX3MessageServices {
    /* Queues a core message, which every open dialog receives on the main thread in
     * the order of posting. `data` may be none; it is copied. 0 if there is no
     * memory. [any-thread] */
    VX3Bool (*postCore)(int32_t id, int64_t first, int64_t second, const VX3Container* data);
    /* Tells the user something and waits for it to be read; a host without a screen
     * writes it to the console. [gui-thread] [may-block] [nested] */
    void (*showText)(const VX3String* text);
    /* Tells the open document that it has changed. [gui-thread] [nested] */
    void (*documentChanged)(void);
} VX3MessageServices;

VX3_STATIC_ASSERT(sizeof(VX3MessageServices) == 3 * sizeof(void*), "laid out without gaps");

#endif
