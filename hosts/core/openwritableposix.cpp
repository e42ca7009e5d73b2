#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include "openwritable.h"

namespace vx3::core {

namespace {

constexpr mode_t newFileMode = 0666; // the user's mask takes away from it
constexpr int mostTries = 4;

void OpenOrMake(const std::string& native, WritableFile& file)
{
    // Without waiting: opening a pipe would otherwise last until somebody reads.
    constexpr int flags = O_RDWR | O_CLOEXEC | O_NONBLOCK | O_NOCTTY;
    file.isNew = false;
    file.descriptor = Descriptor(open(native.c_str(), flags));
    if (file.descriptor.IsOpen() || errno != ENOENT)
        return;
    file.descriptor = Descriptor(open(native.c_str(), flags | O_CREAT, newFileMode));
    file.isNew = file.descriptor.IsOpen();
}

// Empty if this opening holds the lock now, or none is to be had on that file system.
std::string ReasonAgainstLock(int descriptor)
{
    int result = 0;
    do
        result = flock(descriptor, LOCK_EX | LOCK_NB);
    while (result != 0 && errno == EINTR);
    if (result == 0 || errno == ENOLCK || errno == EOPNOTSUPP || errno == ENOTSUP || errno == ENOSYS || errno == EINVAL)
        return {};
    return errno == EWOULDBLOCK ? "it is open for writing already, here or in another program" : std::strerror(errno);
}

// Between opening and locking another program may have put a new file in its place.
bool IsStillAt(const std::string& native, const struct stat& opened)
{
    struct stat now;
    return stat(native.c_str(), &now) == 0 && now.st_dev == opened.st_dev && now.st_ino == opened.st_ino;
}

enum class Outcome { Taken, Refused, Replaced };

Outcome Take(const std::string& native, WritableFile& file, std::string& reason)
{
    OpenOrMake(native, file);
    struct stat status;
    if (!file.descriptor.IsOpen() || fstat(file.descriptor.Get(), &status) != 0)
        reason = std::strerror(errno);
    else if (!S_ISREG(status.st_mode))
        reason = "not a regular file";
    else
        reason = ReasonAgainstLock(file.descriptor.Get());
    if (!reason.empty())
        return Outcome::Refused;
    return IsStillAt(native, status) ? Outcome::Taken : Outcome::Replaced;
}

// Only now that it is known to be a regular file, and nobody else's.
bool DropBytes(WritableFile& file)
{
    struct stat status;
    if (fstat(file.descriptor.Get(), &status) != 0)
        return false;
    if (status.st_size == 0)
        return true;
    file.isChanged = true;
    return ftruncate(file.descriptor.Get(), 0) == 0;
}

} // namespace

WritableFile OpenWritable(const std::string& native, OldBytes oldBytes, std::string& reason)
{
    WritableFile file;
    Outcome outcome = Outcome::Replaced;
    // A file system whose numbers change from call to call is taken as it is in the end.
    for (int i = 0; i < mostTries && outcome == Outcome::Replaced; ++i)
        outcome = Take(native, file, reason);
    if (outcome == Outcome::Refused)
        return {};
    file.isChanged = file.isNew;
    if (oldBytes == OldBytes::Keep || DropBytes(file))
        return file;
    reason = std::strerror(errno);
    return {};
}

void Unlock(int descriptor)
{
    flock(descriptor, LOCK_UN);
}

} // namespace vx3::core
