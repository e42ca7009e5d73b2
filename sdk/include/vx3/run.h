/* The run: its mode, what the edition allows, places on this machine, and time. */
#ifndef VX3_RUN_H
#define VX3_RUN_H

#include "types.h"

/* Run modes of a host without windows; other numbers have windows. */
enum { VX3_RUN_COMMAND_LINE = 8, VX3_RUN_SERVER = 9, VX3_RUN_CLIENT = 10 };

/* Questions of `edition`. */
enum {
    VX3_EDITION_EXCLUDED = 0,        /* is this module left out of the run? */
    VX3_EDITION_RESTRICTED = 1,      /* must the run leave the user's folders alone? */
    VX3_EDITION_LIBRARY_ALLOWED = 2, /* may the library file at `path` be opened? */
    VX3_EDITION_LIBRARIES_FIXED = 3  /* are all libraries unchangeable? */
};

/* Folders of the host by number, and standard places of the user. The start-up place is
 * the folder of the host that marker files lie in. A plain host answers the questions
 * above with 0, 0, 1, 0. */
enum { VX3_FOLDER_PREFERENCES = 1, VX3_FOLDER_APPLICATION_LIBRARY = 3, VX3_FOLDER_USER_LIBRARY = 4 };
enum { VX3_PLACE_STARTUP = 1, VX3_PLACE_TEMPORARY = 2, VX3_PLACE_HOME = 3, VX3_PLACE_DESKTOP = 6 };

typedef struct VX3RunServices {
    int32_t (*runMode)(void);                                  /* [any-thread] */
    VX3Bool (*edition)(int32_t question, const VX3Path* path); /* [any-thread] */
    /* Sets `path` to a folder of the host, which may not exist yet; 0 and an empty
     * path if the host has none. [any-thread] */
    VX3Bool (*folder)(int32_t number, VX3Path* path);
    /* The same for a place of the user. [any-thread] */
    VX3Bool (*place)(int32_t number, VX3Path* path);
    /* The value of an environment variable; 0 and an empty text if it is not set.
     * [any-thread] */
    VX3Bool (*environment)(const char* name, VX3String* value);
    /* A clock in milliseconds that only goes forward and wraps around. [any-thread] */
    uint32_t (*clock)(void);
    void (*currentDate)(VX3FileDate* date); /* Local time. [any-thread] */
} VX3RunServices;

VX3_STATIC_ASSERT(sizeof(VX3RunServices) == 7 * sizeof(void*), "laid out without gaps");

#endif
