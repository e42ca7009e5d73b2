/* Threads.
 *
 * A thread object is made for an object of the module and a table of its operations,
 * started at most once, waited for and freed by whoever made it. A priority is a wish.
 */
#ifndef VX3_THREAD_H
#define VX3_THREAD_H

#include "types.h"

/* The operations of the module's object, in this order. */
typedef struct VX3ThreadTable {
    /* Called by `free` after the thread has ended; may be none. [any-thread] */
    void (*destruct)(void* object);
    /* 1 if the body has a reason of its own to stop. [owner-thread] */
    VX3Bool (*testBreak)(void* object);
    /* The body. [owner-thread] [may-block] */
    void (*main)(void* object);
    /* The name that tools show, borrowed while the thread lives. [any-thread] */
    const char* (*getThreadName)(void* object);
} VX3ThreadTable;

enum { VX3_PRIORITY_NORMAL = 0, VX3_PRIORITY_BACKGROUND = 1001 };

typedef struct VX3ThreadServices {
    /* Makes a thread object that does not run yet, or none. The table is borrowed
     * until `free`; the caller must free with `free`. [any-thread] */
    VX3Thread* (*create)(void* object, const VX3ThreadTable* table);
    /* Ends, waits and frees; none is allowed. [any-thread] [may-block] */
    void (*free)(VX3Thread* thread);
    /* Starts the body. With `background` unset the body runs before the call
     * returns. 0 if it cannot be started or was started before.
     * [any-thread] [may-block] */
    VX3Bool (*start)(VX3Thread* thread, VX3Bool background, int32_t priority);
    /* Asks the body to end, which it notices at its next stop test. [any-thread] */
    void (*end)(VX3Thread* thread);
    /* Waits until the body has returned; returns at once if it was never started.
     * [any-thread] [may-block] */
    void (*wait)(VX3Thread* thread);
    /* The stop test: 1 if `end` was called or `testBreak` answers 1. For the body.
     * [owner-thread] */
    VX3Bool (*shouldStop)(VX3Thread* thread);
    VX3Bool (*isRunning)(VX3Thread* thread); /* [any-thread] */
    void (*sleep)(int32_t milliseconds);     /* [any-thread] [may-block] */
    VX3Bool (*isMainThread)(void);           /* [any-thread] */
} VX3ThreadServices;

VX3_STATIC_ASSERT(sizeof(VX3ThreadTable) == 4 * sizeof(void*), "laid out without gaps");
VX3_STATIC_ASSERT(sizeof(VX3ThreadServices) == 9 * sizeof(void*), "laid out without gaps");

#endif
