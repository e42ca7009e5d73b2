/* Registration: what a module gives to the host and to other modules.
 *
 * Names and texts are borrowed until the call returns; objects and tables must live
 * until action 3 has ended. What is still registered then is taken out by the host.
 */
#ifndef VX3_REGISTRY_H
#define VX3_REGISTRY_H

#include "types.h"

enum { VX3_COMMAND_ENABLED = 1, VX3_COMMAND_CHECKED = 2 };

/* Commands that the host has in its own menus, with names of its own. A module that
 * registers one of these with an empty name is asked when the user chooses it. */
enum {
    VX3_EDIT_COPY = 300001003,
    VX3_EDIT_PASTE = 300001004,
    VX3_EDIT_DELETE = 300001005,
    VX3_EDIT_SELECT_ALL = 300001006,
    VX3_EDIT_SELECT_NONE = 300001007,
    VX3_EDIT_INVERT = 300001008
};

/* The operations of a command, in this order. One that is none is the host's. An object
 * stays its module's: `destruct` is called only by a host that takes the object out while
 * the module still lives. */
typedef struct VX3CommandTable {
    void (*destruct)(void* object);   /* [start-end] */
    VX3Bool (*execute)(void* object); /* [gui-thread] [may-block] [nested] */
    void (*reserved2)(void* object);  /* none [gui-thread] */
    /* Opens the window of a sub-id with what a saved layout holds of it, by `restore` of
     * guidialog.h. 0 if this command opens none. [gui-thread] [nested] */
    VX3Bool (*restore)(void* object, int32_t subId);
    uint32_t (*getState)(void* object); /* VX3_COMMAND bits [gui-thread] */
} VX3CommandTable;

/* The operations of a page in the host's preference window. A value travels in a
 * container under the element's id. */
typedef struct VX3PrefsPageTable {
    void (*destruct)(void* object);                                           /* [start-end] */
    VX3Bool (*getValue)(void* object, int32_t element, VX3Container* values); /* 0: not an element of this page [gui-thread] */
    VX3Bool (*setValue)(void* object, int32_t element,
                        const VX3Container* values); /* 0: not an element, or not a value of it [gui-thread] */
} VX3PrefsPageTable;

typedef struct VX3RegistryServices {
    /* Registers a command. `name` may be empty for an id that the host knows.
     * `icon` is 0 or an id of `registerIcon`. [start-end] */
    VX3Bool (*registerCommand)(int32_t id, const VX3String* name, uint32_t flags, int32_t icon, const VX3String* help, void* object,
                               const VX3CommandTable* table);
    /* Registers a page by the name of its description resource. [start-end] */
    VX3Bool (*registerPrefsPage)(int32_t id, const VX3String* name, const char* description, int32_t sort, void* object,
                                 const VX3PrefsPageTable* table);
    /* Registers a whole picture under an id; the bitmap is copied. [start-end] */
    VX3Bool (*registerIcon)(int32_t id, const VX3Bitmap* bitmap);
    /* Publishes a table of functions for other modules; 0 if the id is taken.
     * [start-end] */
    VX3Bool (*publish)(int32_t id, int32_t version, int32_t size, const void* table);
    /* Takes a published table back. [start-end] */
    void (*withdraw)(int32_t id);
    /* A published table of at least this version and size, borrowed until its module
     * ends; none if there is none. [any-thread] */
    const void* (*find)(int32_t id, int32_t version, int32_t size);
    /* The container of a module's preferences, which the host keeps across runs;
     * borrowed until action 3 has ended. None if the host keeps none. [gui-thread] */
    VX3Container* (*preferences)(int32_t id);
    /* Registers a menu, under which the commands of the module gather. The id may be
     * that of a command as well. [start-end] */
    VX3Bool (*registerMenu)(int32_t id, const VX3String* name);
} VX3RegistryServices;

VX3_STATIC_ASSERT(sizeof(VX3CommandTable) == 5 * sizeof(void*), "laid out without gaps");
VX3_STATIC_ASSERT(sizeof(VX3PrefsPageTable) == 3 * sizeof(void*), "laid out without gaps");
VX3_STATIC_ASSERT(sizeof(VX3RegistryServices) == 8 * sizeof(void*), "laid out without gaps");

#endif
