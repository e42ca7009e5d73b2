// What the system says of one file, as the boundary tells it.
#pragma once

#include <string>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>

#include "localdate.h"
#include "vx3/folder.h"

namespace vx3::core {

// A file of the whole machine: device and number on it.
struct FileIdentity {
    uint64_t device = 0;
    uint64_t number = 0;

    friend bool operator==(const FileIdentity&, const FileIdentity&) = default;
};

FileIdentity IdentityOf(const struct statx& status);

constexpr unsigned entryFields = STATX_TYPE | STATX_MODE | STATX_UID | STATX_GID | STATX_SIZE | STATX_MTIME | STATX_BTIME | STATX_INO;

enum class Freshness {
    Cached, // what the system knows already; of a served file system this may be old
    Asked,  // as fresh as the file system offers
};

// One system call on a name below an open folder, or on a path with AT_FDCWD.
bool ReadStatus(int folder, const char* name, bool followLink, struct statx& status, Freshness freshness = Freshness::Asked);

// What holds for all entries of a folder: the file system that it lies on.
struct FileSystemFacts {
    bool isReadOnly = false; // mounted so
    bool isServed = false;   // a server or another program tells what is in it
};
FileSystemFacts ReadFileSystem(int descriptor);
FileSystemFacts ReadFileSystem(const std::string& path);

// Whose rights count: the user and groups of this process, asked for once, on one file
// system. A link or a mount may lead an entry of a folder to another one, which is not
// asked.
class WriteRights
{
public:
    explicit WriteRights(const FileSystemFacts& fileSystem = {});
    // No write bit in the mode tells a read-only file even where the user may do all.
    bool IsReadOnly(const struct statx& status) const;

private:
    bool isReadOnlyVolume;
    uint32_t user;
    std::vector<gid_t> groups;
};

// Fills all fields but the name and the flags that come from the name and from links.
void DescribeStatus(const struct statx& status, const WriteRights& rights, LocalDates& dates, VX3FolderEntry& entry);

// The three calls of the table.
bool FileExists(const std::string& native);
bool InspectFile(const std::string& native, VX3FolderEntry& entry);
bool DateOfFile(const std::string& native, int32_t kind, VX3FileDate& date);

// The part of a path in front of the last slash, and behind it. Of `/` both are `/`
// and empty.
std::string FolderOf(const std::string& native);
std::string LastOf(const std::string& native);

} // namespace vx3::core
