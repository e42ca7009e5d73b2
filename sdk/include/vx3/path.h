/* Paths.
 *
 * A VX3Path names a file or folder of this machine by an absolute path, or stands for
 * a block of memory that is read or written as a file. It has a directory part and a
 * last part. Making a path never asks the disk: a trailing separator is dropped,
 * double separators become one, and `..`, `.` and links are kept as they are.
 *
 * Names are text of UTF-16 units, yet a POSIX name is any bytes but `/` and zero. A
 * byte b that is not part of well-formed UTF-8 stands as the lone surrogate
 * U+DC00 + b, and a backslash inside a name as U+DC5C, so that every name survives
 * the way into text and back. A plain backslash in a text is a separator.
 *
 * A memory path has no parts: their getters give empty ones, and calls that would change
 * them answer 0.
 *
 * The text of a path is `/a/b` on POSIX systems and `C:\a\b` on Windows. One value is
 * used by one thread at a time. A call that needs memory and gets none answers 0 and
 * leaves the old value.
 */
#ifndef VX3_PATH_H
#define VX3_PATH_H

#include "types.h"

typedef struct VX3PathServices {
    /* Frees what the value holds and leaves it empty. A memory path frees its block
     * unless the block was borrowed or taken. [any-thread] */
    void (*destruct)(VX3Path* path);

    /* Makes `to` an independent copy of `from`. Copies of a memory path that is
     * written share the block. [any-thread] */
    VX3Bool (*copy)(VX3Path* to, const VX3Path* from);

    /* 1 if the path is empty. A memory path is not. [any-thread] */
    VX3Bool (*isEmpty)(const VX3Path* path);

    /* 1 if both name the same place letter by letter; case is not folded.
     * [any-thread] */
    VX3Bool (*equals)(const VX3Path* a, const VX3Path* b);

    /* Reads the text form. [any-thread] */
    VX3Bool (*setText)(VX3Path* path, const VX3String* text);

    /* Writes the text form. [any-thread] */
    VX3Bool (*getText)(const VX3Path* path, VX3String* text);

    /* Reads what stands behind "file://localhost/" in a file URL, with forward
     * slashes: on POSIX a `/` is put in front unless the tail begins with an ASCII letter
     * and ":", and an empty tail is the path `/`. [any-thread] */
    VX3Bool (*setUrlTail)(VX3Path* path, const VX3String* tail);

    /* Writes the same: `/a/b` gives "a/b", `C:\a` gives "C:/a", `/` gives the empty
     * text; the POSIX path `/C:/a` gives "/C:/a", so that it reads back. [any-thread] */
    VX3Bool (*getUrlTail)(const VX3Path* path, VX3String* tail);

    /* The directory part as a path; of `/a` it is `/`, of `/` it is empty.
     * [any-thread] */
    VX3Bool (*getDirectory)(const VX3Path* path, VX3Path* directory);

    /* Replaces the directory part and keeps the last part. [any-thread] */
    VX3Bool (*setDirectory)(VX3Path* path, const VX3Path* directory);

    /* The last part; of `/` it is empty. [any-thread] */
    VX3Bool (*getLast)(const VX3Path* path, VX3String* last);

    /* Replaces the last part and keeps the directory part. [any-thread] */
    VX3Bool (*setLast)(VX3Path* path, const VX3String* last);

    /* Sets `joined` to the entry `name` of the folder `folder`; an empty folder
     * gives `name` alone. `joined` may be `folder`. Paths made from one folder
     * value share its storage, so that a listing pays for it once. [any-thread] */
    VX3Bool (*join)(const VX3Path* folder, const VX3String* name, VX3Path* joined);

    /* The part behind the last `.` of the last part, without it; empty if there is
     * no `.`. [any-thread] */
    VX3Bool (*getSuffix)(const VX3Path* path, VX3String* suffix);

    /* Replaces or adds the suffix; an empty one takes it away with its `.`.
     * [any-thread] */
    VX3Bool (*setSuffix)(VX3Path* path, const VX3String* suffix);

    /* 1 if the suffix equals `suffix` in lower case. [any-thread] */
    VX3Bool (*hasSuffix)(const VX3Path* path, const VX3String* suffix);

    /* 1 if `name` can name an entry of a folder on this system: not empty, not `.`
     * or `..`, no separator, no zero, not too long. [any-thread] */
    VX3Bool (*isNameAllowed)(const VX3String* name);

    /* Makes a path that reads a block; the bytes are borrowed until the path and all
     * its copies are destructed. [any-thread] */
    VX3Bool (*setMemoryReading)(VX3Path* path, const void* bytes, int64_t length);

    /* Makes a path that writes into a block of its own, which grows. [any-thread] */
    VX3Bool (*setMemoryWriting)(VX3Path* path);

    /* Takes the block out of a path that was written: the caller must free it with
     * the memory section. 0 if there is none. [any-thread] */
    VX3Bool (*takeMemory)(VX3Path* path, void** bytes, int64_t* length);
} VX3PathServices;

VX3_STATIC_ASSERT(sizeof(VX3PathServices) == 20 * sizeof(void*), "laid out without gaps");

#endif
