#include "libraryfile.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "core/bigendian.h"
#include "progressbar.h"

namespace vx3::console {

namespace {

constexpr size_t idOffset = 4;
constexpr size_t lengthOffset = 8;
constexpr int64_t nanoseconds = 1000000000;

Failure OpenFailure(const std::string& path, int error)
{
    bool isAbsent = error == ENOENT || error == ENOTDIR;
    if (isAbsent)
        return { Exit::NotFound, Quoted(path) + ": not found" };
    return { Exit::Refused, Quoted(path) + " cannot be read: " + std::strerror(error) };
}

} // namespace

std::string TagText(uint32_t tag)
{
    std::string text;
    for (int shift = 24; shift >= 0; shift -= 8) {
        char letter = static_cast<char>(tag >> shift);
        if (letter <= ' ' || letter > '~')
            return HexText(tag);
        text += letter;
    }
    return text;
}

LibraryFile::~LibraryFile()
{
    if (descriptor >= 0)
        close(descriptor);
}

// Nothing but a regular file is waited for or read.
Failure LibraryFile::Open(const std::string& newPath)
{
    path = newPath;
    descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    struct stat status = {};
    if (descriptor < 0 || fstat(descriptor, &status) != 0)
        return OpenFailure(path, errno);
    if (S_ISDIR(status.st_mode))
        return { Exit::Refused, Quoted(path) + " is a folder and no library file" };
    if (!S_ISREG(status.st_mode))
        return { Exit::Refused, Quoted(path) + " is no ordinary file" };
    length = static_cast<uint64_t>(status.st_size);
    modified = status.st_mtim.tv_sec * nanoseconds + status.st_mtim.tv_nsec;
    return {};
}

bool LibraryFile::ReadDisk(uint64_t offset, void* bytes, size_t count)
{
    auto* target = static_cast<uint8_t*>(bytes);
    while (count > 0) {
        ssize_t done = pread(descriptor, target, count, static_cast<off_t>(offset));
        if (done < 0 && errno == EINTR)
            continue;
        if (done < 0)
            error = errno;
        if (done <= 0)
            return false;
        target += done;
        offset += static_cast<uint64_t>(done);
        count -= static_cast<size_t>(done);
    }
    return true;
}

bool LibraryFile::Read(uint64_t offset, void* bytes, size_t count)
{
    if (offset > length || count > length - offset)
        return false;
    if (count == 0)
        return true;
    if (count > windowSize)
        return ReadDisk(offset, bytes, count);
    if (offset < windowOffset || offset + count > windowOffset + windowFilled) {
        windowOffset = offset;
        windowFilled = static_cast<size_t>(std::min<uint64_t>(windowSize, length - offset));
        if (!ReadDisk(windowOffset, window.data(), windowFilled)) {
            windowFilled = 0;
            return false;
        }
    }
    std::memcpy(bytes, window.data() + (offset - windowOffset), count);
    return true;
}

bool LibraryFile::ReadChunk(uint64_t offset, Chunk& chunk)
{
    uint8_t header[chunkHeaderSize];
    if (!Read(offset, header, sizeof header))
        return false;
    chunk.offset = offset;
    chunk.tag = core::LoadBig<uint32_t>(header);
    chunk.id = static_cast<int32_t>(core::LoadBig<uint32_t>(header + idOffset));
    chunk.length = core::LoadBig<uint64_t>(header + lengthOffset);
    chunk.isWhole = chunk.length <= length - offset - chunkHeaderSize;
    return true;
}

bool LibraryFile::ReadPayload(const Chunk& chunk, std::vector<uint8_t>& payload)
{
    if (!chunk.isWhole || chunk.length > longestPayload)
        return false;
    payload.resize(static_cast<size_t>(chunk.length));
    return Read(chunk.PayloadOffset(), payload.data(), payload.size());
}

Failure LibraryFile::ReadFailure() const
{
    if (!error)
        return {};
    return { Exit::Refused, Quoted(path) + " cannot be read: " + std::strerror(error) };
}

bool ChunkWalk::Stop(WalkEnd reason)
{
    isOver = true;
    end = reason;
    return false;
}

void ChunkWalk::StopBehind(const Chunk& chunk)
{
    bool isPassedUnread = chunk.tag != tag::info && chunk.tag != tag::category && chunk.tag != tag::item && chunk.tag != tag::oldItems
        && chunk.tag != tag::dead;
    if (chunk.tag == tag::end)
        Stop(WalkEnd::Closed);
    else if (chunk.tag == tag::none)
        Stop(WalkEnd::NoTag);
    else if (chunk.tag == tag::item && chunk.id < 0)
        position = chunk.PayloadOffset(); // the payload of such an item is read as chunks
    else if (chunk.offset > 0 && isPassedUnread && chunk.length > longestPayload)
        Stop(WalkEnd::LongPayload);
    else if (!chunk.isWhole)
        Stop(WalkEnd::CutPayload);
    else
        position = chunk.End();
}

bool ChunkWalk::Next(Chunk& chunk)
{
    if (isOver)
        return false;
    if (IsInterrupted())
        return Stop(WalkEnd::Interrupted);
    bool isFirst = position == 0;
    if (!file.ReadChunk(position, chunk))
        return Stop(isFirst ? WalkEnd::NoLibrary : position < file.Length() ? WalkEnd::CutHeader : WalkEnd::Open);
    if (isFirst && chunk.tag != tag::head)
        return Stop(WalkEnd::NoLibrary);
    StopBehind(chunk);
    return true;
}

} // namespace vx3::console
