#include "copyfile.h"

#include <algorithm>
#include <cerrno>
#include <memory>

#include <unistd.h>

#include "filestatus.h"

namespace vx3::core {

namespace {

constexpr int64_t chunkSize = 1024 * 1024;

class ContentCopier
{
public:
    ContentCopier(int sourceFile, int targetFile, OperationProgress& callerProgress)
        : source(sourceFile)
        , target(targetFile)
        , progress(callerProgress)
    {
    }
    bool Run();

private:
    bool CopyLength(int64_t length);
    bool CopyToEnd();
    bool CopyRange(int64_t from, int64_t to);
    int64_t CopyChunk(int64_t at, int64_t length); // bytes, 0 at the end, -1 on an error
    int64_t CopyThroughMemory(int64_t at, int64_t length);

    int source;
    int target;
    OperationProgress& progress;
    bool hasEnded = false; // the source is shorter than it was
    bool isDirect = true;  // the system copies by itself
    std::unique_ptr<char[]> buffer;
};

bool ContentCopier::Run()
{
    struct stat status;
    if (fstat(source, &status) != 0)
        return false;
    return status.st_size > 0 ? CopyLength(status.st_size) : CopyToEnd();
}

bool ContentCopier::CopyLength(int64_t length)
{
    for (int64_t at = 0; at < length && !hasEnded;) {
        int64_t data = lseek(source, at, SEEK_DATA);
        if (data < 0)
            data = errno == ENXIO ? length : at; // nothing but a hole is left, or holes are not told
        data = std::min(data, length);
        int64_t hole = data < length ? lseek(source, data, SEEK_HOLE) : length;
        hole = hole <= data ? length : std::min(hole, length);
        if ((data > at && !progress.AddBytes(data - at)) || !CopyRange(data, hole))
            return false;
        at = hole;
    }
    return hasEnded || ftruncate(target, length) == 0; // a hole at the end
}

// Some files of the system say that they are empty and are not.
bool ContentCopier::CopyToEnd()
{
    for (int64_t at = 0;; at += chunkSize) {
        if (!CopyRange(at, at + chunkSize))
            return false;
        if (hasEnded)
            return true;
    }
}

bool ContentCopier::CopyRange(int64_t from, int64_t to)
{
    while (from < to) {
        int64_t copied = CopyChunk(from, std::min(chunkSize, to - from));
        if (copied < 0 || (copied > 0 && !progress.AddBytes(copied)))
            return false;
        hasEnded = copied == 0;
        if (hasEnded)
            return true;
        from += copied;
    }
    return true;
}

int64_t ContentCopier::CopyChunk(int64_t at, int64_t length)
{
    if (isDirect) {
        off_t from = at;
        off_t to = at;
        ssize_t copied = copy_file_range(source, &from, target, &to, static_cast<size_t>(length), 0);
        if (copied > 0)
            return copied;
        bool isRefused = copied == 0 || errno == EXDEV || errno == EINVAL || errno == ENOSYS || errno == EOPNOTSUPP || errno == EPERM;
        if (!isRefused && errno != EINTR)
            return -1;
        isDirect = !isRefused;
    }
    return CopyThroughMemory(at, length);
}

int64_t ContentCopier::CopyThroughMemory(int64_t at, int64_t length)
{
    if (!buffer)
        buffer = std::make_unique<char[]>(chunkSize);
    ssize_t got = 0;
    do
        got = pread(source, buffer.get(), static_cast<size_t>(length), at);
    while (got < 0 && errno == EINTR);
    for (ssize_t done = 0; done < got;) {
        ssize_t put = pwrite(target, buffer.get() + done, static_cast<size_t>(got - done), at + done);
        if (put <= 0 && !(put < 0 && errno == EINTR))
            return -1;
        done += std::max<ssize_t>(put, 0);
    }
    return got;
}

} // namespace

bool CopyContents(int source, int target, OperationProgress& progress)
{
    return ContentCopier(source, target, progress).Run();
}

bool CopyRightsAndDates(const struct statx& from, int target)
{
    constexpr mode_t kept = S_IRWXU | S_IRWXG | S_IRWXO; // the owner may be another, so no special bits
    struct timespec dates[2] = { { from.stx_atime.tv_sec, from.stx_atime.tv_nsec }, { from.stx_mtime.tv_sec, from.stx_mtime.tv_nsec } };
    return fchmod(target, from.stx_mode & kept) == 0 && futimens(target, dates) == 0;
}

} // namespace vx3::core
