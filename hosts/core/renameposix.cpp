#include <cerrno>
#include <cstdio>

#include <unistd.h>

#include "ancestors.h"
#include "fileoperations.h"
#include "filestatus.h"

namespace vx3::core {

namespace {

constexpr mode_t newFolderMode = 0777; // the user's mask takes away from it

// Is `to` another spelling of the very same entry, as on a disk that folds case? Of
// two hard links the system would answer so too and do nothing.
bool IsOtherSpelling(const std::string& from, const std::string& to)
{
    struct stat source;
    struct stat target;
    if (LastOf(from) == LastOf(to) || lstat(from.c_str(), &source) != 0 || lstat(to.c_str(), &target) != 0)
        return false;
    bool isOneEntry = S_ISDIR(source.st_mode) || source.st_nlink == 1;
    return isOneEntry && source.st_dev == target.st_dev && source.st_ino == target.st_ino;
}

// For file systems that know no renaming without replacing. A hard link is refused
// where the name is taken, so files stay safe; for the rest a look must do.
bool RenameAfterLook(const std::string& from, const std::string& to)
{
    struct stat source;
    if (lstat(from.c_str(), &source) != 0)
        return false;
    if (S_ISREG(source.st_mode) && link(from.c_str(), to.c_str()) == 0) {
        if (unlink(from.c_str()) == 0)
            return true;
        unlink(to.c_str());
        return false;
    }
    return !FileExists(to) && std::rename(from.c_str(), to.c_str()) == 0;
}

bool ReadVolume(const std::string& path, bool followLink, struct statx& status)
{
    constexpr unsigned fields = entryFields | STATX_MNT_ID;
    const int flags = AT_NO_AUTOMOUNT | (followLink ? 0 : AT_SYMLINK_NOFOLLOW);
    return statx(AT_FDCWD, path.c_str(), flags, fields, &status) == 0;
}

// Of the folder that something is to go into: a link to a folder leads there.
bool ReadVolumeOfFolder(const std::string& path, struct statx& status)
{
    return ReadVolume(path, true, status) && S_ISDIR(status.stx_mode);
}

// Of a thing itself, or of the folder it is to stand in.
bool ReadVolumeOfEntry(const std::string& path, struct statx& status)
{
    return ReadVolume(path, false, status) || ReadVolume(FolderOf(path), true, status);
}

} // namespace

bool MakeFolder(const std::string& path)
{
    return mkdir(path.c_str(), newFolderMode) == 0;
}

bool RenameWithoutReplacing(const std::string& from, const std::string& to)
{
    if (renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0)
        return true;
    if (errno == EEXIST)
        return IsOtherSpelling(from, to) && std::rename(from.c_str(), to.c_str()) == 0;
    // EINVAL means also a folder into itself, which the other way refuses as well.
    return (errno == EINVAL || errno == ENOSYS) && RenameAfterLook(from, to);
}

bool AreOnOneVolume(const std::string& target, const std::string& moved)
{
    struct statx first;
    struct statx second;
    if ((!ReadVolumeOfFolder(target, first) && !ReadVolumeOfEntry(target, first)) || !ReadVolumeOfEntry(moved, second))
        return false;
    // Two mounts of one disk do not take each other's files either.
    bool hasMounts = (first.stx_mask & second.stx_mask & STATX_MNT_ID) != 0;
    return IdentityOf(first).device == IdentityOf(second).device && (!hasMounts || first.stx_mnt_id == second.stx_mnt_id);
}

} // namespace vx3::core
