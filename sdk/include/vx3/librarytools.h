/* Tools for library files: a file that is opened for itself, and what is in it read and
 * changed. Reached from VX3ToolFunctions.libraries (browser.h).
 *
 * A library stands for one file from its opening to its closing. It belongs to nothing that
 * the browser shows: no node comes or goes with it. Its items are told by paths, which is what
 * stands behind the address of the library and a slash; the whole address is taken for a
 * path too. Slashes around a path are left away, case does not count, and a path that is
 * empty, that has an empty part, a part `.` or `..`, or a control character, belongs to no item.
 *
 * What is changed goes to the file at once or when it is closed. From the first change to
 * the closing the file is open for writing, so nobody else can write it meanwhile. A
 * file that is damaged is copied to a file beside it, with `.bak` behind its name, before
 * it is written, and is not written if there is such a file already. A file that is no library is never opened. One that was opened for reading
 * is never written.
 *
 * All libraries are closed before message VX3_MESSAGE_ENDING. Every call but those on values
 * answers one of the outcomes below; out arguments are set with VX3_LIBRARY_OK alone.
 */
#ifndef VX3_LIBRARYTOOLS_H
#define VX3_LIBRARYTOOLS_H

#include "types.h"

typedef struct VX3Library VX3Library;

/* What came of a call. */
enum {
    VX3_LIBRARY_OK = 0,
    VX3_LIBRARY_NOT_FOUND = 1,    /* no such file, folder, item or preview */
    VX3_LIBRARY_EXISTS = 2,       /* something has that name or path already */
    VX3_LIBRARY_FOLDER = 3,       /* the path is that of a folder */
    VX3_LIBRARY_UNREADABLE = 4,   /* no ordinary file, or it may not be read, or the disk fails */
    VX3_LIBRARY_NO_LIBRARY = 5,   /* the file does not begin as a library does */
    VX3_LIBRARY_DAMAGED = 6,      /* what was asked for cannot be read, or is not done to a damaged library */
    VX3_LIBRARY_READ_ONLY = 7,    /* the library is frozen, opened for reading, or fixed by the edition */
    VX3_LIBRARY_PROTECTED = 8,    /* the user may not write the file */
    VX3_LIBRARY_IN_USE = 9,       /* this program or another one has the file open for writing */
    VX3_LIBRARY_NAME_TAKEN = 10,  /* an open library has the same address */
    VX3_LIBRARY_CHANGED = 11,     /* somebody else has written the file since it was opened */
    VX3_LIBRARY_NOT_WRITTEN = 12, /* the disk is full or fails: only some of the changes may be kept */
    VX3_LIBRARY_BAD_PATH = 13,    /* no item can have such a path, or no preview such a number */
    VX3_LIBRARY_NO_DATA = 14,     /* the item has none */
    VX3_LIBRARY_TOO_LARGE = 15,   /* data has less than 2^31 bytes */
    VX3_LIBRARY_NO_PICTURE = 16,  /* no codec can read the bytes */
    VX3_LIBRARY_FULL = 17,        /* no id is left for a further item */
    VX3_LIBRARY_NO_MEMORY = 18,
    VX3_LIBRARY_BACKUP_THERE = 19 /* it is damaged, and a `.bak` beside it would be lost by a change */
};

/* What `open` is for. */
enum { VX3_LIBRARY_READ = 0, VX3_LIBRARY_CHANGE = 1 };

/* How data are stored. */
enum { VX3_STORED_NONE = -1, VX3_STORED_PLAIN = 0, VX3_STORED_OLD_PACKED = 1, VX3_STORED_PACKED = 2 };

/* The type of an item that `putData` leaves as it is; a new one has the type 0 then. */
enum { VX3_LIBRARY_KEEP_TYPE = -1 };

typedef struct VX3LibraryItem {
    VX3String path;     /* behind the address of the library; zeroed at first, the caller must free it with the text section */
    int64_t dataSize;   /* bytes, unpacked; -1 without data, or if they cannot be found */
    int64_t storedSize; /* bytes that they take in the file; -1 as above */
    int32_t id;
    int32_t type;     /* id of a plugin, or 0 */
    int32_t mode;     /* VX3_STORED_PLAIN or one of those beside it */
    int32_t previews; /* how many there are */
} VX3LibraryItem;

typedef struct VX3LibraryPreview {
    int32_t number;
    int32_t width;  /* pixels */
    int32_t height; /* pixels */
    int32_t grade;  /* of several in the wanted size the one with the highest is shown */
    VX3FileDate date;
    int32_t reserved;
} VX3LibraryPreview;

typedef struct VX3LibraryToolFunctions {
    /* Makes a file with nothing in it, which must not exist, and opens it for changes. Its
     * address is "preset://" and the name of the file; `name`, shown in the user's language,
     * may be none. The caller must free with `close`. [gui-thread] [may-block] */
    int32_t (*create)(const VX3Path* file, const VX3String* name, VX3Library** library);
    /* Opens a file for VX3_LIBRARY_READ or VX3_LIBRARY_CHANGE. A damaged one is read as far
     * as that goes. The caller must free with `close`. [gui-thread] [may-block] */
    int32_t (*open)(const VX3Path* file, int32_t access, VX3Library** library);
    /* Writes what has changed and frees the library whatever the outcome. What the outcome
     * tells of is the writing. None is allowed. [gui-thread] [may-block] */
    int32_t (*close)(VX3Library* library);

    VX3Bool (*isReadOnly)(VX3Library* library);                     /* It is frozen, or was opened for reading. [owner-thread] */
    VX3Bool (*isDamaged)(VX3Library* library);                      /* It was when it was opened. [owner-thread] */
    int32_t (*countItems)(VX3Library* library);                     /* How many there are. [owner-thread] */
    int32_t (*getAddress)(VX3Library* library, VX3String* address); /* [owner-thread] */
    int32_t (*getName)(VX3Library* library, VX3String* name);       /* As it is shown; may be empty. [owner-thread] */
    int32_t (*setName)(VX3Library* library, const VX3String* name); /* In the user's language. [owner-thread] [may-block] */

    /* Fills the item of a path. [owner-thread] [may-block] */
    int32_t (*findItem)(VX3Library* library, const VX3String* path, VX3LibraryItem* item);
    /* Fills the items one after the other, in their order: `place` is 0 at first and is moved on
     * by the call. VX3_LIBRARY_NOT_FOUND at the end. [owner-thread] [may-block] */
    int32_t (*nextItem)(VX3Library* library, int32_t* place, VX3LibraryItem* item);

    /* Gives an item its data, packed if that makes them smaller, and dates it; makes the item
     * if need be. `bytes` may be none if `length` is 0. If it fails a new item is not there
     * afterwards, and an old one has its old data. [owner-thread] [may-block] */
    int32_t (*putData)(VX3Library* library, const VX3String* path, int32_t type, const void* bytes, int64_t length);
    /* The data of an item, unpacked: a block that the caller must free with the memory section.
     * [owner-thread] [may-block] */
    int32_t (*getData)(VX3Library* library, const VX3String* path, void** bytes, int64_t* length);
    /* Takes an item away with all it has. [owner-thread] [may-block] */
    int32_t (*removeItem)(VX3Library* library, const VX3String* path);
    /* Gives an item another path, which is free or its own in another case. [owner-thread] [may-block] */
    int32_t (*moveItem)(VX3Library* library, const VX3String* from, const VX3String* to);

    /* Stores the picture in `bytes` as a preview of an item. A JPEG or a TIFF file is stored as it is,
     * pictures of other formats as one of them. A preview with that number, which is not
     * negative, is replaced. [owner-thread] [may-block] */
    int32_t (*putPreview)(VX3Library* library, const VX3String* path, int32_t number, int32_t grade, const void* bytes, int64_t length);
    /* The picture file that is stored: a block that the caller must free with the memory section.
     * [owner-thread] [may-block] */
    int32_t (*getPreview)(VX3Library* library, const VX3String* path, int32_t number, void** bytes, int64_t* length);
    /* Fills the previews of an item by an index from 0; VX3_LIBRARY_NOT_FOUND behind the last.
     * [owner-thread] */
    int32_t (*previewAt)(VX3Library* library, const VX3String* path, int32_t index, VX3LibraryPreview* preview);

    /* Marks the library as read-only, for good: nothing here takes that back. It is written at
     * once, and whole if more of it is dead than alive. Not for a damaged one. [owner-thread] [may-block] */
    int32_t (*freeze)(VX3Library* library);
    /* Writes the library anew without what is dead in it; the old file stays beside it as `.bak`. Not
     * for a damaged one. [owner-thread] [may-block] */
    int32_t (*compact)(VX3Library* library);
} VX3LibraryToolFunctions;

VX3_STATIC_ASSERT(sizeof(VX3LibraryItem) == 40, "VX3LibraryItem is 40 bytes");
VX3_STATIC_ASSERT(sizeof(VX3LibraryPreview) == 32, "VX3LibraryPreview is 32 bytes");
VX3_STATIC_ASSERT(sizeof(VX3LibraryToolFunctions) == 20 * sizeof(void*), "one entry for each function");

#endif
