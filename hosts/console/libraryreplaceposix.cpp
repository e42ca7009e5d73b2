#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

#include "descriptorposix.h"
#include "libraryreplace.h"
#include "progressbar.h"

namespace vx3::console {

namespace {

constexpr size_t pieceSize = 1 << 20;
constexpr int mostNames = 1000;

Failure SystemFailure(const std::string& path, const char* what)
{
    return { Exit::Refused, Quoted(path) + " cannot be " + what + ": " + std::strerror(errno) };
}

std::string FolderOf(const std::string& path)
{
    size_t slash = path.rfind('/');
    if (slash == std::string::npos)
        return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

bool WriteAll(int descriptor, const char* bytes, size_t count)
{
    while (count > 0) {
        ssize_t done = write(descriptor, bytes, count);
        if (done < 0 && errno == EINTR)
            continue;
        if (done < 0)
            return false;
        bytes += done;
        count -= static_cast<size_t>(done);
    }
    return true;
}

Failure CopyBytes(const Descriptor& from, const std::string& source, const Descriptor& to, const std::string& copy)
{
    std::vector<char> piece(pieceSize);
    for (;;) {
        if (IsInterrupted())
            return { Exit::Cancelled, "cancelled" };
        ssize_t count = read(from.Get(), piece.data(), piece.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return SystemFailure(source, "read");
        if (count == 0)
            return {};
        if (!WriteAll(to.Get(), piece.data(), static_cast<size_t>(count)))
            return SystemFailure(copy, "written");
    }
}

// A new file with the source's bytes and rights, which is on the disk afterwards.
Failure MakeCopy(const std::string& source, const std::string& copy)
{
    Descriptor from(open(source.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat status = {};
    if (!from || fstat(from.Get(), &status) != 0)
        return SystemFailure(source, "read");
    constexpr mode_t rights = 0777;
    Descriptor to(open(copy.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, status.st_mode & rights));
    if (!to)
        return SystemFailure(copy, "made");
    Failure failure = CopyBytes(from, source, to, copy);
    bool isOnDisk = !failure && fchmod(to.Get(), status.st_mode & rights) == 0 && fsync(to.Get()) == 0 && to.Close();
    if (!failure && !isOnDisk)
        failure = SystemFailure(copy, "written");
    if (failure)
        unlink(copy.c_str());
    return failure;
}

// Gives the file a second name that is free. Where a file has one name only, it loses the first one.
Failure KeepAside(const std::string& path, std::string& kept)
{
    for (int number = 1; number <= mostNames; ++number) {
        std::string name = path + ".damaged" + (number > 1 ? "." + std::to_string(number) : "");
        int result = link(path.c_str(), name.c_str());
        bool hasNoLinks = result != 0 && (errno == EPERM || errno == ENOTSUP || errno == ENOSYS);
        if (hasNoLinks)
            result = renameat2(AT_FDCWD, path.c_str(), AT_FDCWD, name.c_str(), RENAME_NOREPLACE);
        if (result == 0) {
            kept = name;
            return {};
        }
        if (errno != EEXIST)
            return SystemFailure(path, "kept under another name");
    }
    return { Exit::Conflict, Quoted(path) + " cannot be kept: too many files of its name are damaged ones" };
}

// Into the place of the file that is kept, or where there is none; never over one that came since.
bool TakeOver(const std::string& copy, const std::string& target, bool wasThere)
{
    if (wasThere)
        return rename(copy.c_str(), target.c_str()) == 0;
    if (renameat2(AT_FDCWD, copy.c_str(), AT_FDCWD, target.c_str(), RENAME_NOREPLACE) == 0)
        return true;
    bool isUnknown = errno == EINVAL || errno == ENOSYS;
    return isUnknown && access(target.c_str(), F_OK) != 0 && rename(copy.c_str(), target.c_str()) == 0;
}

void SyncFolder(const std::string& folder)
{
    Descriptor opened(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (opened)
        fsync(opened.Get());
}

} // namespace

Failure ReplaceLibrary(const std::string& source, const std::string& target, std::string& kept)
{
    // Held to the end: whoever has the library open for writing holds the same lock.
    Descriptor old(open(target.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!old && errno != ENOENT)
        return SystemFailure(target, "opened");
    if (old && flock(old.Get(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK)
        return { Exit::Refused, Quoted(target) + " is in use by another program" };
    std::string copy = target + ".recovering." + std::to_string(getpid());
    if (Failure failure = MakeCopy(source, copy))
        return failure;
    Failure failure = old ? KeepAside(target, kept) : Failure{};
    if (!failure && !TakeOver(copy, target, static_cast<bool>(old)))
        failure = SystemFailure(target, "replaced");
    if (failure)
        unlink(copy.c_str());
    SyncFolder(FolderOf(target));
    return failure;
}

} // namespace vx3::console
