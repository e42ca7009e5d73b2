/* The file system: entries, walks, volumes and operations on whole files.
 *
 * Paths are borrowed until the call returns. Nothing here follows a link to a folder
 * into its own ancestors, a delete never follows a link, and nothing replaces what
 * exists. A failed operation leaves both ends as they were.
 */
#ifndef VX3_FOLDER_H
#define VX3_FOLDER_H

#include "types.h"

enum { VX3_DATE_CREATED = 0, VX3_DATE_MODIFIED = 1 };

/* Flags of an entry of a walk, and what `inspect` answers. */
enum {
    VX3_ENTRY_FOLDER = 0x1,
    VX3_ENTRY_BUNDLE = 0x4,    /* a folder that the system shows as one file */
    VX3_ENTRY_READONLY = 0x10, /* no write bit in its mode, or writing is refused to this user */
    VX3_ENTRY_HIDDEN = 0x20,
    VX3_ENTRY_LINK = 0x100,   /* a symbolic link; the other fields tell of its target */
    VX3_ENTRY_BROKEN = 0x200, /* a link without a target, or one that leads back: a plain file */
    VX3_ENTRY_SPECIAL = 0x400 /* pipe, socket or device: a plain file of size 0 */
};

/* One entry of a folder. `name` is the caller's: a walk sets it anew for each entry. The
 * caller may move it out and leave it zeroed, and at the end the caller must free what
 * is in it with the text section. A size of a folder is 0. A creation date that the
 * file system does not keep is the modification date. */
typedef struct VX3FolderEntry {
    VX3String name;
    int64_t size;
    uint32_t flags;
    VX3FileDate created;
    VX3FileDate modified;
    uint32_t reserved;
} VX3FolderEntry;

/* A bit of VX3FolderServices.remove: never into the trash, for files of the caller's own. */
#define VX3_REMOVE_FOR_GOOD 0x10000u

/* Bits of VX3FolderServices.startWalk: hidden and read-only entries are left out unless
 * these are set. */
enum { VX3_WALK_HIDDEN = 1, VX3_WALK_READONLY = 2 };

/* A volume that the attribute bit 0x80 marks is not to be listed: a pseudo file
 * system, or a mount without a device or server behind it. */
enum { VX3_VOLUME_LEAVE_OUT = 0x80, VX3_VOLUME_REMOVABLE = 0x1, VX3_VOLUME_NETWORK = 0x2 };

typedef struct VX3Volume {
    VX3Path path;    /* where it is mounted; the caller must free */
    VX3String name;  /* the text that names it, such as `/` or `C:`; the caller must free */
    VX3String label; /* may be empty; the caller must free */
    uint32_t attributes;
    uint32_t reserved;
} VX3Volume;

typedef struct VX3FolderServices {
    /* 1 if anything is there, a link without a target included. [any-thread] [may-block] */
    VX3Bool (*exists)(const VX3Path* path);
    /* Fills size, flags and dates of what is there; `name` is left alone.
     * [any-thread] [may-block] */
    VX3Bool (*inspect)(const VX3Path* path, VX3FolderEntry* entry);
    /* The date of a kind; on failure the fields are zero. One system call.
     * [any-thread] [may-block] */
    VX3Bool (*date)(const VX3Path* path, int32_t kind, VX3FileDate* date);

    /* Makes a folder in an existing one; fails if the name is taken.
     * [any-thread] [may-block] */
    VX3Bool (*createFolder)(const VX3Path* path);
    /* Gives an entry another name in its folder. Fails if the name is taken.
     * [any-thread] [may-block] */
    VX3Bool (*rename)(const VX3Path* from, const VX3Path* to);
    /* Moves within one volume. Fails if the target exists, lies inside the source, or
     * is on another volume; never falls back to a copy. [any-thread] [may-block] */
    VX3Bool (*move)(const VX3Path* from, const VX3Path* to);
    /* Copies a file, or a folder with all below it, to a temporary name beside the
     * target and renames at the end. `bits` are 0x1 folder and 0x4 bundle as the
     * caller knows them, `size` the bytes of a file. Progress is called in mode 2
     * with count 1 at each element and count 0 for the bytes in between. Links below a
     * folder are copied as links; a pipe, socket or device below it fails the copy
     * before anything is written. Fails if the
     * target exists, lies inside the source or the callback cancels, and then nothing
     * is left behind. `cancelled` may be none. [any-thread] [may-block] */
    VX3Bool (*copy)(const VX3Path* from, const VX3Path* to, uint32_t bits, int64_t size, VX3ProgressFunction progress, void* user,
                    VX3Bool* cancelled);
    /* Deletes a file, or a folder with all below it: into the desktop's trash where
     * the host is set to and the bits do not say VX3_REMOVE_FOR_GOOD, else for good.
     * Refuses a mount point. What lies in the trash goes for good; the trash itself, and
     * folders with a mount in them, do not go into it. Stops at the first
     * failure. `cancelled` may be none. [any-thread] [may-block] */
    VX3Bool (*remove)(const VX3Path* path, uint32_t bits, int64_t size, VX3ProgressFunction progress, void* user, VX3Bool* cancelled);
    /* 1 if a move of `moved` into the folder `target` stays on one volume. A target that
     * is a link to a folder is followed, the moved thing is not; of a path that does not
     * exist its directory counts. [any-thread] [may-block] */
    VX3Bool (*sameVolume)(const VX3Path* target, const VX3Path* moved);
    /* 1 if the volume answers. No error box appears meanwhile, and the call may take
     * seconds: never under a lock. [any-thread] [may-block] */
    VX3Bool (*probeVolume)(const VX3Path* path);

    /* Starts a walk over a folder, without `.` and `..`; none if the folder cannot
     * be read or there is no memory. One system call an entry beyond the listing.
     * The caller must free with `endWalk`. [any-thread] [may-block] */
    VX3FolderWalk* (*startWalk)(const VX3Path* folder, uint32_t options);
    /* Fills the next entry; 0 at the end. An entry that has gone meanwhile is passed over.
     * [owner-thread] [may-block] */
    VX3Bool (*nextEntry)(VX3FolderWalk* walk, VX3FolderEntry* entry);
    /* 1 if the walk met no error so far: a walk that ended on a failed read is not a
     * whole listing. [owner-thread] */
    VX3Bool (*walkIsSound)(VX3FolderWalk* walk);
    void (*endWalk)(VX3FolderWalk* walk); /* [owner-thread] [may-block] */

    /* Starts a list of the volumes; none if that fails. The caller must free with
     * `endVolumes`. [any-thread] [may-block] */
    VX3VolumeWalk* (*startVolumes)(void);
    /* Fills the next volume, zeroed before the first call, anew; 0 at the end. */
    VX3Bool (*nextVolume)(VX3VolumeWalk* walk, VX3Volume* volume); /* [owner-thread] [may-block] */
    void (*endVolumes)(VX3VolumeWalk* walk);                       /* [owner-thread] */

    /* Watches a folder. After entries of it came or went, were renamed, were written and
     * closed or changed their status, and after the folder itself was renamed or went
     * away, `changed` is called on the main thread, when the host delivers what is
     * queued. It is not told what has changed: several changes may come as one call,
     * and a call may come without a change. Watch first and list then, so that nothing is
     * missed in between. What lies deeper is not watched. A renamed folder is watched
     * on under its new name; of one that is gone nothing more is told. A link to a folder
     * is followed. None if the host cannot watch: no such folder, no right to read it, a
     * place of a network, too many watches, no memory. `changed` may watch and unwatch,
     * its own watch included. The caller must free with `unwatch`.
     * [gui-thread] [may-block] */
    VX3FolderWatch* (*watch)(const VX3Path* folder, void (*changed)(void* user), void* user);
    /* Ends a watch, whose `changed` is not called any more. None is allowed. [gui-thread] */
    void (*unwatch)(VX3FolderWatch* watch);
} VX3FolderServices;

VX3_STATIC_ASSERT(sizeof(VX3FolderEntry) == 48, "VX3FolderEntry is 48 bytes");
VX3_STATIC_ASSERT(sizeof(VX3Volume) == 40, "VX3Volume is 40 bytes");
VX3_STATIC_ASSERT(sizeof(VX3FolderServices) == 19 * sizeof(void*), "laid out without gaps");

#endif
