#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "rawfile.h"
#include "vx3/file.h"

namespace vx3::core {

namespace {

constexpr mode_t newFileMode = 0666; // the user's mask takes away from it

class DiskFile : public RawFile
{
public:
    explicit DiskFile(int openDescriptor)
        : descriptor(openDescriptor)
    {
    }
    DiskFile(const DiskFile&) = delete;
    DiskFile& operator=(const DiskFile&) = delete;
    ~DiskFile() override { Close(); }

    int64_t ReadAt(int64_t offset, void* bytes, int64_t count) override;
    bool WriteAt(int64_t offset, const void* bytes, int64_t count) override;
    int64_t Length() override;
    bool Sync() override;
    bool Close() override;

private:
    int descriptor;
};

int64_t DiskFile::ReadAt(int64_t offset, void* bytes, int64_t count)
{
    int64_t done = 0;
    while (done < count) {
        ssize_t got = pread(descriptor, static_cast<char*>(bytes) + done, static_cast<size_t>(count - done), offset + done);
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            return -1;
        if (got == 0)
            break;
        done += got;
    }
    return done;
}

bool DiskFile::WriteAt(int64_t offset, const void* bytes, int64_t count)
{
    for (int64_t done = 0; done < count;) {
        ssize_t put = pwrite(descriptor, static_cast<const char*>(bytes) + done, static_cast<size_t>(count - done), offset + done);
        if (put < 0 && errno == EINTR)
            continue;
        if (put <= 0)
            return false;
        done += put;
    }
    return true;
}

int64_t DiskFile::Length()
{
    struct stat status;
    return fstat(descriptor, &status) == 0 ? status.st_size : -1;
}

bool DiskFile::Sync()
{
    return fdatasync(descriptor) == 0; // with the length, which is all that a reader needs
}

bool DiskFile::Close()
{
    if (descriptor < 0)
        return true;
    int result = close(descriptor); // gone whatever the answer: never tried again
    descriptor = -1;
    return result == 0 || errno == EINTR;
}

int OpenFlags(int32_t mode)
{
    // Without waiting: opening a pipe would otherwise last until somebody writes.
    constexpr int always = O_CLOEXEC | O_NONBLOCK | O_NOCTTY;
    if (mode == VX3_OPEN_READ)
        return always | O_RDONLY;
    return always | O_RDWR | O_CREAT;
}

// Empty if the open file may be used.
std::string ReasonToRefuse(int descriptor, int32_t mode)
{
    struct stat status;
    if (fstat(descriptor, &status) != 0)
        return std::strerror(errno);
    if (!S_ISREG(status.st_mode))
        return "not a regular file";
    // Truncated only now that it is known to be one.
    if (mode == VX3_OPEN_CREATE && status.st_size > 0 && ftruncate(descriptor, 0) != 0)
        return std::strerror(errno);
    return {};
}

} // namespace

std::unique_ptr<RawFile> OpenDiskFile(const std::string& native, int32_t mode, std::string& reason)
{
    if (native.empty() || native.find('\0') != std::string::npos) {
        reason = "not a path";
        return nullptr;
    }
    int descriptor = open(native.c_str(), OpenFlags(mode), newFileMode);
    if (descriptor < 0) {
        reason = std::strerror(errno);
        return nullptr;
    }
    auto file = std::make_unique<DiskFile>(descriptor);
    reason = ReasonToRefuse(descriptor, mode);
    return reason.empty() ? std::move(file) : nullptr;
}

} // namespace vx3::core
