#include <algorithm>
#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "filestatus.h"
#include "hoststate.h"
#include "openwritable.h"
#include "rawfile.h"
#include "sync.h"
#include "vx3/file.h"

namespace vx3::core {

namespace {

// Changed: made, truncated, or written since the disk was last waited for.
class DiskFile : public RawFile
{
public:
    explicit DiskFile(Descriptor readable)
        : descriptor(std::move(readable))
    {
    }
    DiskFile(WritableFile writable, std::string folderOfFile)
        : descriptor(std::move(writable.descriptor))
        , folder(std::move(folderOfFile))
        , isWritable(true)
        , isNew(writable.isNew)
        , isChanged(writable.isChanged)
    {
    }
    DiskFile(const DiskFile&) = delete;
    DiskFile& operator=(const DiskFile&) = delete;
    ~DiskFile() override { Close(); }

    int64_t ReadAt(int64_t offset, void* bytes, int64_t count) override;
    bool WriteAt(int64_t offset, const void* bytes, int64_t count) override;
    void Announce(int64_t offset, int64_t count) override;
    int64_t Length() override;
    bool Sync() override;
    bool Close() override;

private:
    Descriptor descriptor;
    std::string folder; // of a writable file
    bool isWritable = false;
    bool isNew = false;
    bool isChanged = false;
};

int64_t DiskFile::ReadAt(int64_t offset, void* bytes, int64_t count)
{
    int64_t done = 0;
    while (done < count) {
        ssize_t got = pread(descriptor.Get(), static_cast<char*>(bytes) + done, static_cast<size_t>(count - done), offset + done);
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
    isChanged = true;
    for (int64_t done = 0; done < count;) {
        ssize_t put = pwrite(descriptor.Get(), static_cast<const char*>(bytes) + done, static_cast<size_t>(count - done), offset + done);
        if (put < 0 && errno == EINTR)
            continue;
        if (put <= 0)
            return false;
        done += put;
    }
    return true;
}

// In pieces: of a longer range a system may take the first part alone.
void DiskFile::Announce(int64_t offset, int64_t count)
{
    constexpr int64_t piece = 512 << 10;
    for (; count > 0; offset += piece, count -= piece)
        posix_fadvise(descriptor.Get(), offset, std::min(count, piece), POSIX_FADV_WILLNEED);
}

int64_t DiskFile::Length()
{
    struct stat status;
    return fstat(descriptor.Get(), &status) == 0 ? status.st_size : -1;
}

// The name of a new file stands in its folder, and may get lost with that alone.
bool DiskFile::Sync()
{
    if (!CurrentSettings().syncFiles || !isChanged)
        return true;
    if (!SyncFile(descriptor.Get()) || (isNew && !SyncFolder(folder)))
        return false;
    isNew = isChanged = false;
    return true;
}

bool DiskFile::Close()
{
    if (!descriptor.IsOpen())
        return true;
    const bool isSafe = Sync();
    if (isWritable)
        Unlock(descriptor.Get());
    const bool isClosed = descriptor.Close() || errno == EINTR; // gone whatever the answer: never tried again
    return isSafe && isClosed;
}

std::unique_ptr<RawFile> OpenForReading(const std::string& native, std::string& reason)
{
    // Without waiting: opening a pipe would otherwise last until somebody writes.
    Descriptor descriptor(open(native.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    struct stat status;
    if (!descriptor.IsOpen() || fstat(descriptor.Get(), &status) != 0)
        reason = std::strerror(errno);
    else if (!S_ISREG(status.st_mode))
        reason = "not a regular file";
    else
        return std::make_unique<DiskFile>(std::move(descriptor));
    return nullptr;
}

} // namespace

std::unique_ptr<RawFile> OpenDiskFile(const std::string& native, int32_t mode, std::string& reason)
{
    if (native.empty() || native.find('\0') != std::string::npos) {
        reason = "not a path";
        return nullptr;
    }
    if (mode == VX3_OPEN_READ)
        return OpenForReading(native, reason);
    WritableFile file = OpenWritable(native, mode == VX3_OPEN_CREATE ? OldBytes::Drop : OldBytes::Keep, reason);
    if (!file.descriptor.IsOpen())
        return nullptr;
    return std::make_unique<DiskFile>(std::move(file), FolderOf(native));
}

} // namespace vx3::core
