/* The host's table of services: the only road of a module to the world.
 *
 * The host hands the table to action 1 of the entry function. It is valid until the
 * last action 3 has returned; no call may be made before or after. The table and its
 * sections do not change while it is valid.
 *
 * `version` is compared with the version that a module needs. The sections that are named
 * optional below may be none, and a module tests their pointers; the others are always
 * there. What a host cannot do fails by its documented result. `size` is the number of bytes of the
 * table that the host fills; sections behind it are not there.
 */
#ifndef VX3_HOST_H
#define VX3_HOST_H

#include "bitmap.h"
#include "classify.h"
#include "console.h"
#include "container.h"
#include "file.h"
#include "folder.h"
#include "lock.h"
#include "memory.h"
#include "message.h"
#include "path.h"
#include "registry.h"
#include "resource.h"
#include "run.h"
#include "text.h"
#include "thread.h"

/* Sections that later versions of these headers describe. */
typedef struct VX3NetworkServices VX3NetworkServices;
typedef struct VX3MediaServices VX3MediaServices;
typedef struct VX3GuiServices VX3GuiServices;
typedef struct VX3SceneServices VX3SceneServices;

/* The version that this table has, and that the browser needs. */
enum { VX3_HOST_VERSION = 14000 };

typedef struct VX3Host {
    uint32_t version;
    uint32_t size; /* bytes */
    const VX3MemoryServices* memory;
    const VX3TextServices* text;
    const VX3PathServices* path;
    const VX3ContainerServices* container;
    const VX3DataFileServices* dataFile;
    const VX3FileServices* file;
    const VX3CompressorServices* compressor;
    const VX3FolderServices* folder;
    const VX3BitmapServices* bitmap;
    const VX3ClassifyServices* classify;
    const VX3LockServices* lock;
    const VX3ThreadServices* thread;
    const VX3MessageServices* message;
    const VX3ResourceServices* resource;
    const VX3ConsoleServices* console;
    const VX3RegistryServices* registry;
    const VX3RunServices* run;
    const VX3NetworkServices* network; /* optional: places of the network */
    const VX3MediaServices* media;     /* optional: movies and sounds */
    const VX3GuiServices* gui;         /* optional: windows */
    const VX3SceneServices* scene;     /* optional: the open scene */
} VX3Host;

VX3_STATIC_ASSERT(sizeof(VX3Host) == 8 + 21 * sizeof(void*), "laid out without gaps");

#endif
