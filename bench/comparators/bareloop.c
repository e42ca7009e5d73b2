/* The floor of listing and of searching names: the system calls alone, nothing kept.
 *
 *   bareloop list FOLDER
 *   bareloop walk FOLDER       every folder below, each name tested */
#define _GNU_SOURCE
#include "measure.h"

#include <dirent.h>
#include <fcntl.h>
#include <limits.h>
#include <string.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

enum { REPEATS = 7, STATS = 1000, BUFFER_SIZE = 256 << 10 };

static const unsigned asked = STATX_TYPE | STATX_MODE | STATX_SIZE | STATX_MTIME | STATX_BTIME;
static const char needle[] = "oak";

struct DirectoryRecord {
    uint64_t inode;
    int64_t offset;
    unsigned short length;
    unsigned char type;
    char name[];
};

/* Folders that are still to be read, and all that were. */
static char** folders;
static size_t folderCount, folderRoom;
static char* names; /* in lower case, behind each other, if they are kept */
static size_t nameBytes, nameRoom;
static size_t entries, hits;
static uint64_t sum; /* what is not used would not be fetched */

static void Fail(const char* what)
{
    perror(what);
    exit(1);
}

static void* Grown(void* block, size_t size)
{
    void* larger = realloc(block, size);
    if (!larger)
        Fail("memory");
    return larger;
}

static void AddFolder(const char* parent, const char* name)
{
    size_t size = strlen(parent) + strlen(name) + 2;
    char* path = Grown(NULL, size);
    snprintf(path, size, "%s%s%s", parent, *name ? "/" : "", name);
    if (folderCount == folderRoom)
        folders = Grown(folders, (folderRoom = folderRoom * 2 + 64) * sizeof *folders);
    folders[folderCount++] = path;
}

static void KeepName(const char* lower, size_t length)
{
    if (nameBytes + length + 1 > nameRoom)
        names = Grown(names, nameRoom = nameRoom * 2 + (1 << 20));
    memcpy(names + nameBytes, lower, length);
    names[nameBytes + length] = 0;
    nameBytes += length + 1;
}

static void TestName(const char* name, int keep)
{
    char lower[NAME_MAX + 1];
    size_t length = 0;
    for (; name[length] && length < NAME_MAX; length++)
        lower[length] = (char)(name[length] >= 'A' && name[length] <= 'Z' ? name[length] | 0x20 : name[length]);
    hits += memmem(lower, length, needle, sizeof needle - 1) != NULL;
    if (keep)
        KeepName(lower, length);
}

enum Depth { THIS_FOLDER, WHOLE_TREE, WHOLE_TREE_KEPT };

static void ReadFolder(const char* path, enum Depth depth)
{
    static char buffer[BUFFER_SIZE];
    int folder = open(path, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folder < 0)
        Fail(path);
    for (;;) {
        long filled = syscall(SYS_getdents64, folder, buffer, sizeof buffer);
        if (filled <= 0)
            break;
        for (long at = 0; at < filled;) {
            const struct DirectoryRecord* record = (const struct DirectoryRecord*)(buffer + at);
            struct statx status;
            at += record->length;
            if (record->name[0] == '.')
                continue;
            if (statx(folder, record->name, AT_STATX_DONT_SYNC | AT_SYMLINK_NOFOLLOW, asked, &status) == 0)
                sum += status.stx_size + (uint64_t)status.stx_mtime.tv_sec;
            entries++;
            if (depth == THIS_FOLDER)
                continue;
            TestName(record->name, depth == WHOLE_TREE_KEPT);
            if (record->type == DT_DIR)
                AddFolder(path, record->name);
        }
    }
    close(folder);
}

static double ListOnce(const char* path)
{
    double start = NowSeconds();
    entries = 0;
    ReadFolder(path, THIS_FOLDER);
    return NowSeconds() - start;
}

static double WalkOnce(const char* path, enum Depth depth)
{
    while (folderCount)
        free(folders[--folderCount]);
    double start = NowSeconds();
    entries = hits = 0;
    AddFolder(path, "");
    for (size_t next = 0; next < folderCount; next++)
        ReadFolder(folders[next], depth);
    return NowSeconds() - start;
}

/* Nothing has changed: one statx for each folder, and the names that were kept. */
static double SearchKnown(void)
{
    double start = NowSeconds();
    struct statx status;
    for (size_t i = 0; i < folderCount; i++)
        if (statx(AT_FDCWD, folders[i], AT_STATX_DONT_SYNC, STATX_MTIME, &status) == 0)
            sum += (uint64_t)status.stx_mtime.tv_sec;
    for (size_t at = 0; at < nameBytes;) {
        size_t length = strlen(names + at);
        hits += memmem(names + at, length, needle, sizeof needle - 1) != NULL;
        at += length + 1;
    }
    return NowSeconds() - start;
}

static double StatOnce(const char* path)
{
    struct statx status;
    double start = NowSeconds();
    for (int i = 0; i < STATS; i++)
        if (statx(AT_FDCWD, path, AT_STATX_DONT_SYNC, STATX_MTIME, &status) == 0)
            sum += (uint64_t)status.stx_mtime.tv_sec;
    return (NowSeconds() - start) / STATS;
}

static void MeasureList(const char* path)
{
    double list[REPEATS], stat[REPEATS];
    for (int i = 0; i < REPEATS; i++)
        list[i] = ListOnce(path);
    for (int i = 0; i < REPEATS; i++)
        stat[i] = StatOnce(path);
    PrintCaseOf("list_ms", entries, MedianOf(list, REPEATS) * 1e3, "ms");
    PrintCaseOf("unchanged_us", entries, MedianOf(stat, REPEATS) * 1e6, "us");
}

static void MeasureWalk(const char* path)
{
    double walk[REPEATS], known[REPEATS];
    for (int i = 0; i < REPEATS; i++)
        walk[i] = WalkOnce(path, WHOLE_TREE);
    WalkOnce(path, WHOLE_TREE_KEPT);
    for (int i = 0; i < REPEATS; i++)
        known[i] = SearchKnown();
    PrintCaseOf("search_ms", entries, MedianOf(walk, REPEATS) * 1e3, "ms");
    PrintCaseOf("search_known_ms", entries, MedianOf(known, REPEATS) * 1e3, "ms");
}

int main(int count, char** arguments)
{
    if (count != 3) {
        fprintf(stderr, "usage: bareloop list|walk FOLDER\n");
        return 2;
    }
    if (strcmp(arguments[1], "walk") == 0)
        MeasureWalk(arguments[2]);
    else
        MeasureList(arguments[2]);
    return sum == 1;
}
