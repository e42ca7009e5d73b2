#include <algorithm>
#include <iterator>

#include <linux/magic.h>
#include <sys/statvfs.h>
#include <sys/vfs.h>
#include <unistd.h>

#include "ancestors.h"
#include "descriptor.h"
#include "filestatus.h"

namespace vx3::core {

namespace {

VX3FileDate ModifiedDate(const struct statx& status, LocalDates& dates)
{
    return dates.Convert(status.stx_mtime.tv_sec);
}

VX3FileDate CreatedDate(const struct statx& status, LocalDates& dates)
{
    bool isKept = (status.stx_mask & STATX_BTIME) != 0;
    return dates.Convert(isKept ? status.stx_btime.tv_sec : status.stx_mtime.tv_sec);
}

// <linux/magic.h> has only what is part of the kernel.
bool IsServedType(uint32_t type)
{
    constexpr uint32_t lustre = 0x0BD00BD0;
    constexpr uint32_t served[] = { NFS_SUPER_MAGIC, SMB_SUPER_MAGIC,  SMB2_SUPER_MAGIC, FUSE_SUPER_MAGIC, V9FS_MAGIC, AFS_SUPER_MAGIC,
                                    AFS_FS_MAGIC,    CODA_SUPER_MAGIC, CIFS_SUPER_MAGIC, CEPH_SUPER_MAGIC, lustre };
    return std::find(std::begin(served), std::end(served), type) != std::end(served);
}

FileSystemFacts FactsOf(const struct statfs& status)
{
    return { (status.f_flags & ST_RDONLY) != 0, IsServedType(static_cast<uint32_t>(status.f_type)) };
}

} // namespace

FileIdentity IdentityOf(const struct statx& status)
{
    return { uint64_t(status.stx_dev_major) << 32 | status.stx_dev_minor, status.stx_ino };
}

bool ReadStatus(int folder, const char* name, bool followLink, struct statx& status, Freshness freshness)
{
    int flags = AT_NO_AUTOMOUNT | (followLink ? 0 : AT_SYMLINK_NOFOLLOW);
    flags |= freshness == Freshness::Cached ? AT_STATX_DONT_SYNC : AT_STATX_SYNC_AS_STAT;
    return statx(folder, name, flags, entryFields, &status) == 0;
}

FileSystemFacts ReadFileSystem(int descriptor)
{
    struct statfs status;
    return fstatfs(descriptor, &status) == 0 ? FactsOf(status) : FileSystemFacts();
}

FileSystemFacts ReadFileSystem(const std::string& path)
{
    Descriptor held(open(path.c_str(), O_PATH | O_CLOEXEC)); // statfs on the path would mount what waits there
    return ReadFileSystem(held.Get());
}

WriteRights::WriteRights(const FileSystemFacts& fileSystem)
    : isReadOnlyVolume(fileSystem.isReadOnly)
    , user(geteuid())
{
    groups.resize(static_cast<size_t>(std::max(getgroups(0, nullptr), 0)));
    if (!groups.empty())
        groups.resize(static_cast<size_t>(std::max(getgroups(static_cast<int>(groups.size()), groups.data()), 0)));
    groups.push_back(getegid());
}

bool WriteRights::IsReadOnly(const struct statx& status) const
{
    constexpr uint32_t anyWrite = S_IWUSR | S_IWGRP | S_IWOTH;
    if (isReadOnlyVolume || (status.stx_mode & anyWrite) == 0)
        return true;
    if (user == 0)
        return false;
    if (status.stx_uid == user)
        return (status.stx_mode & S_IWUSR) == 0;
    bool isInGroup = std::find(groups.begin(), groups.end(), status.stx_gid) != groups.end();
    return (status.stx_mode & (isInGroup ? S_IWGRP : S_IWOTH)) == 0;
}

void DescribeStatus(const struct statx& status, const WriteRights& rights, LocalDates& dates, VX3FolderEntry& entry)
{
    bool isFolder = S_ISDIR(status.stx_mode);
    bool isPlain = isFolder || S_ISREG(status.stx_mode) || S_ISLNK(status.stx_mode);
    entry.size = S_ISREG(status.stx_mode) ? static_cast<int64_t>(status.stx_size) : 0;
    entry.flags = isFolder ? VX3_ENTRY_FOLDER : isPlain ? 0 : VX3_ENTRY_SPECIAL;
    if (!S_ISLNK(status.stx_mode) && rights.IsReadOnly(status)) // the mode of a link says nothing
        entry.flags |= VX3_ENTRY_READONLY;
    entry.created = CreatedDate(status, dates);
    entry.modified = ModifiedDate(status, dates);
}

FollowedStatus ReadFollowedStatus(int folder, const char* name, Ancestors& ancestors, struct statx& status, Freshness freshness)
{
    struct statx target;
    if (!ReadStatus(folder, name, true, target, freshness))
        return ReadStatus(folder, name, false, status, freshness) ? FollowedStatus::Broken : FollowedStatus::Nothing;
    if (S_ISDIR(target.stx_mode) && ancestors.Contain(IdentityOf(target)))
        return ReadStatus(folder, name, false, status, freshness) ? FollowedStatus::Broken : FollowedStatus::Nothing;
    status = target;
    return FollowedStatus::Whole;
}

bool FileExists(const std::string& native)
{
    struct statx status;
    return !native.empty() && ReadStatus(AT_FDCWD, native.c_str(), false, status);
}

bool InspectFile(const std::string& native, VX3FolderEntry& entry)
{
    struct statx status;
    if (native.empty() || !ReadStatus(AT_FDCWD, native.c_str(), false, status))
        return false;
    uint32_t flags = LastOf(native).starts_with('.') ? VX3_ENTRY_HIDDEN : 0;
    if (S_ISLNK(status.stx_mode)) {
        Ancestors ancestors(FolderOf(native));
        FollowedStatus found = ReadFollowedStatus(AT_FDCWD, native.c_str(), ancestors, status, Freshness::Asked);
        if (found == FollowedStatus::Nothing)
            return false;
        flags |= VX3_ENTRY_LINK | (found == FollowedStatus::Broken ? VX3_ENTRY_BROKEN : 0);
    }
    LocalDates dates;
    DescribeStatus(status, WriteRights(ReadFileSystem(native)), dates, entry);
    entry.flags |= flags;
    return true;
}

bool DateOfFile(const std::string& native, int32_t kind, VX3FileDate& date)
{
    date = {};
    bool isKnown = kind == VX3_DATE_CREATED || kind == VX3_DATE_MODIFIED;
    struct statx status;
    if (native.empty() || !isKnown)
        return false;
    // A broken link answers with its own date, at the price of a second call.
    if (!ReadStatus(AT_FDCWD, native.c_str(), true, status) && !ReadStatus(AT_FDCWD, native.c_str(), false, status))
        return false;
    bool isCreated = kind == VX3_DATE_CREATED && (status.stx_mask & STATX_BTIME);
    date = LocalDate(isCreated ? status.stx_btime.tv_sec : status.stx_mtime.tv_sec);
    return true;
}

std::string FolderOf(const std::string& native)
{
    size_t slash = native.find_last_of('/');
    if (slash == std::string::npos)
        return ".";
    return slash == 0 ? "/" : native.substr(0, slash);
}

std::string LastOf(const std::string& native)
{
    return native.substr(native.find_last_of('/') + 1);
}

} // namespace vx3::core
