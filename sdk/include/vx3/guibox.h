/* Boxes that ask or tell, and what the host does for a user on request. Boxes for what other
 * sections handle come with those sections. */
#ifndef VX3_GUIBOX_H
#define VX3_GUIBOX_H

#include "guitypes.h"

enum { VX3_BOX_INFORMATION = 0, VX3_BOX_ERROR = 1 };

typedef enum VX3ChooseMode {
    VX3_CHOOSE_FILE = 0,
    VX3_CHOOSE_FOLDER = 1,
    VX3_CHOOSE_SAVE = 2 /* asks before it gives a file that exists */
} VX3ChooseMode;

typedef struct VX3BoxServices {
    /* Tells something, and returns when it was read. [gui-thread] [nested] */
    void (*show)(int32_t kind, const VX3String* text);
    /* Asks; 1 for yes. [gui-thread] [nested] */
    VX3Bool (*ask)(const VX3String* text);
    /* Lets the user choose a path. `filter` are name patterns such as "*.png *.jpg", or none;
     * `start` is where to begin, or none. 0: the user cancelled. [gui-thread] [nested] */
    VX3Bool (*choose)(int32_t mode, const VX3String* title, const VX3String* filter, const VX3Path* start, VX3Path* chosen);
    /* Shows the folder that a file is in, in the system's file manager. 0 if that cannot be
     * done. [gui-thread] [may-block] */
    VX3Bool (*reveal)(const VX3Path* path);
    /* Opens a file with the program that the system has for it. 0 if that cannot be done.
     * [gui-thread] [may-block] */
    VX3Bool (*openWithSystem)(const VX3Path* path);
    /* Opens the host's preferences on a registered page. 0 if there is none of that id.
     * [gui-thread] [nested] */
    VX3Bool (*openPreferences)(int32_t page);
} VX3BoxServices;

VX3_STATIC_ASSERT(sizeof(VX3BoxServices) == 6 * sizeof(void*), "laid out without gaps");

#endif
