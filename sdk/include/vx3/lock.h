/* Locks and semaphores.
 *
 * A lock lives in a word of the structure that it guards: 0 while free, another value
 * while held. Locking allocates nothing and cannot fail. Locks are not recursive and
 * belong to the thread that took them.
 *
 * `rank` is the place of the lock in the caller's own order, from 1 for the outermost
 * upwards. A host may ignore it; a checking host reports a thread that takes a lock
 * whose rank is not above those of the locks it holds. A lock taken by `try` is exempt, but
 * counts among the held ones.
 */
#ifndef VX3_LOCK_H
#define VX3_LOCK_H

#include "types.h"

typedef struct VX3LockServices {
    void (*lock32)(uint32_t* word, int32_t rank);   /* [any-thread] [may-block] */
    VX3Bool (*try32)(uint32_t* word, int32_t rank); /* [any-thread] */
    void (*unlock32)(uint32_t* word);               /* [any-thread] */

    void (*lock64)(uint64_t* word, int32_t rank);   /* [any-thread] [may-block] */
    VX3Bool (*try64)(uint64_t* word, int32_t rank); /* [any-thread] */
    void (*unlock64)(uint64_t* word);               /* [any-thread] */

    /* A reader-writer lock in one word: many shared holders or one exclusive. A
     * waiting writer holds new readers off. */
    void (*lockShared)(uint32_t* word, int32_t rank);    /* [any-thread] [may-block] */
    void (*unlockShared)(uint32_t* word);                /* [any-thread] */
    void (*lockExclusive)(uint32_t* word, int32_t rank); /* [any-thread] [may-block] */
    void (*unlockExclusive)(uint32_t* word);             /* [any-thread] */

    /* A counting semaphore with a start count, or none; the caller must free with
     * `freeSemaphore` while nobody waits. [any-thread] */
    VX3Semaphore* (*createSemaphore)(int32_t count);
    void (*freeSemaphore)(VX3Semaphore* semaphore); /* None is allowed. [any-thread] */
    void (*take)(VX3Semaphore* semaphore);          /* Waits until the count is above 0. [any-thread] [may-block] */
    void (*give)(VX3Semaphore* semaphore);          /* [any-thread] */
} VX3LockServices;

VX3_STATIC_ASSERT(sizeof(VX3LockServices) == 14 * sizeof(void*), "laid out without gaps");

#endif
