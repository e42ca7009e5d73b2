#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include "descriptorposix.h"
#include "libraryfile.h"
#include "wholefile.h"

namespace vx3::console {

namespace {

constexpr mode_t newFileMode = 0666; // the user's mask takes away from it

Failure SystemFailure(const std::string& path, const char* what)
{
    bool isMissing = errno == ENOENT || errno == ENOTDIR;
    if (isMissing)
        return { Exit::NotFound, Quoted(path) + ": not found" };
    return { Exit::Refused, Quoted(path) + " cannot be " + what + ": " + std::strerror(errno) };
}

// True if all bytes were moved by `step`, a read or a write.
template <class Step>
bool MoveAll(Step step, size_t count)
{
    for (size_t moved = 0; moved < count;) {
        ssize_t done = step(moved, count - moved);
        if (done < 0 && errno == EINTR)
            continue;
        if (done == 0)
            errno = EIO; // the file has become shorter
        if (done <= 0)
            return false;
        moved += static_cast<size_t>(done);
    }
    return true;
}

Failure Conflict(const std::string& path)
{
    return { Exit::Conflict, Quoted(path) + " exists already" };
}

// Never over a file that came meanwhile.
Failure GiveName(const std::string& from, const std::string& to)
{
    if (renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0)
        return {};
    bool isUnknown = errno == EINVAL || errno == ENOSYS;
    if (isUnknown && !IsThere(to) && rename(from.c_str(), to.c_str()) == 0)
        return {};
    return errno == EEXIST || IsThere(to) ? Conflict(to) : SystemFailure(to, "made");
}

} // namespace

bool IsFolder(const std::string& path)
{
    struct stat status = {};
    return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

bool IsThere(const std::string& path)
{
    struct stat status = {};
    return lstat(path.c_str(), &status) == 0;
}

uint64_t FileSize(const std::string& path)
{
    struct stat status = {};
    return stat(path.c_str(), &status) == 0 ? static_cast<uint64_t>(status.st_size) : 0;
}

Failure ReadWholeFile(const std::string& path, std::vector<uint8_t>& bytes)
{
    Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat status = {};
    if (!file || fstat(file.Get(), &status) != 0)
        return SystemFailure(path, "read");
    if (S_ISDIR(status.st_mode))
        return { Exit::Refused, Quoted(path) + " is a folder" };
    if (!S_ISREG(status.st_mode))
        return { Exit::Refused, Quoted(path) + " is no ordinary file" };
    if (static_cast<uint64_t>(status.st_size) > longestPayload)
        return { Exit::Refused, Quoted(path) + " is too large: an item holds less than 2 GiB" };
    bytes.resize(static_cast<size_t>(status.st_size));
    auto step = [&](size_t offset, size_t count) { return read(file.Get(), bytes.data() + offset, count); };
    return MoveAll(step, bytes.size()) ? Failure{} : SystemFailure(path, "read");
}

Failure WriteNewFile(const std::string& path, const void* bytes, size_t count)
{
    if (IsThere(path))
        return Conflict(path);
    std::string part = path + ".part." + std::to_string(getpid());
    Descriptor file(open(part.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, newFileMode));
    if (!file)
        return SystemFailure(path, "made");
    auto step = [&](size_t offset, size_t length) { return write(file.Get(), static_cast<const char*>(bytes) + offset, length); };
    bool isWritten = MoveAll(step, count) && file.Close();
    Failure failure = isWritten ? GiveName(part, path) : SystemFailure(path, "written");
    if (failure)
        unlink(part.c_str());
    return failure;
}

bool HasRoom(const std::string& path, uint64_t bytes)
{
    struct statvfs disk = {};
    bool isKnown = statvfs(path.c_str(), &disk) == 0 && disk.f_frsize > 0;
    if (isKnown && bytes / disk.f_frsize >= disk.f_bavail)
        return false;
    rlimit limit = {};
    bool isLimited = getrlimit(RLIMIT_FSIZE, &limit) == 0 && limit.rlim_cur != RLIM_INFINITY;
    return !isLimited || FileSize(path) + bytes <= limit.rlim_cur;
}

} // namespace vx3::console
