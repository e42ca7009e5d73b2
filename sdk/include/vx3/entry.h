/* The entry function of a module: the one symbol that it exports.
 *
 * The order of a life is action 1, message 1, action 2, message 1000, messages at any
 * time, message 200000272, action 3; all on the main thread, one at a time. After
 * action 1 failed action 3 follows and nothing else. A module that is asked to start and
 * answers 0 gets no further message but action 3. A module may be loaded again after its
 * last action 3.
 */
#ifndef VX3_ENTRY_H
#define VX3_ENTRY_H

#include "host.h"

enum {
    VX3_ACTION_LOAD = 1,    /* arg1: const VX3Host*, arg3: const VX3Path* of the module's binary; 1, or -3 if the host will not do */
    VX3_ACTION_START = 2,   /* 1, or 0 if the module does not take part */
    VX3_ACTION_END = 3,     /* 1 */
    VX3_ACTION_VERSION = 4, /* 5, the version of this protocol */
    VX3_ACTION_NONE = 5,    /* -1 */
    VX3_ACTION_MESSAGE = 6  /* arg1: the id as a pointer-sized number, arg2: its data; 1, or -1 if it was not taken */
};

enum { VX3_RESULT_OK = 1, VX3_RESULT_REFUSED = -1, VX3_RESULT_HOST_TOO_OLD = -3, VX3_ENTRY_VERSION = 5 };

enum {
    VX3_MESSAGE_BUILD = 0,            /* data: uint32_t*, receives the module's build number */
    VX3_MESSAGE_RESOURCES = 1,        /* data: VX3ResourceRequest* */
    VX3_MESSAGE_ALL_LOADED = 1000,    /* all modules are up */
    VX3_MESSAGE_RUN_TIMING = 1001084, /* heeded, and answered with -1; data: const uint32_t*, 0 at the start of the run */
    VX3_MESSAGE_VOLUME = 1001190,     /* data: const VX3VolumeChange*, may be none */
    VX3_MESSAGE_ENDING = 200000272    /* the host is ending; not from inside a call of the module */
};

/* Data of VX3_MESSAGE_RESOURCES: the host sets `pending`, and the module clears it once
 * its texts are loaded. */
typedef struct VX3ResourceRequest {
    uint64_t pending;
} VX3ResourceRequest;

/* Data of VX3_MESSAGE_VOLUME: one letter for a drive, else the path of a mount. */
typedef struct VX3VolumeChange {
    VX3String volume;
    int32_t removed;
} VX3VolumeChange;

VX3_STATIC_ASSERT(sizeof(VX3ResourceRequest) == 8, "VX3ResourceRequest is 8 bytes");
VX3_STATIC_ASSERT(sizeof(VX3VolumeChange) == 16, "VX3VolumeChange is 16 bytes");

/* The type of the exported function, whose name is "vx3_main". The host calls it as
 * described above. [gui-thread] [may-block] [nested] */
typedef int32_t (*VX3EntryFunction)(int32_t action, void* arg1, void* arg2, void* arg3);

#endif
