// The chunks of a library file, as docs/libraryformat.md describes them, read without the
// module and never written.
//
// What a header tells is not believed: a payload is looked at only if all of it lies in the
// file. The file is not locked, and another process may have locked it; what is appended
// after it was opened is not seen.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "outcome.h"

namespace vx3::console {

constexpr uint32_t TagNumber(const char (&letters)[5])
{
    uint32_t number = 0;
    for (int index = 0; index < 4; ++index)
        number = number << 8 | static_cast<uint8_t>(letters[index]);
    return number;
}

namespace tag {
constexpr uint32_t none = 0;
constexpr uint32_t head = TagNumber("dbfh");
constexpr uint32_t info = TagNumber("difm");
constexpr uint32_t category = TagNumber("cati");
constexpr uint32_t item = TagNumber("ditm");
constexpr uint32_t data = TagNumber("bina");
constexpr uint32_t image = TagNumber("imag");
constexpr uint32_t dead = TagNumber("ivld");
constexpr uint32_t oldItems = TagNumber("dbas");
constexpr uint32_t end = TagNumber("dbfe");
} // namespace tag

std::string TagText(uint32_t tag); // its letters, or its number if they cannot be shown

constexpr uint64_t chunkHeaderSize = 16;
constexpr uint64_t longestPayload = 0x7FFFFFFF; // of all kinds that a reader passes over unread

struct Chunk {
    uint64_t offset = 0;
    uint32_t tag = tag::none;
    int32_t id = 0;
    uint64_t length = 0;  // of the payload, as the header tells it
    bool isWhole = false; // the payload lies in the file

    uint64_t PayloadOffset() const { return offset + chunkHeaderSize; }
    uint64_t End() const { return PayloadOffset() + length; } // only of a whole chunk
};

class LibraryFile
{
public:
    LibraryFile() = default;
    ~LibraryFile();
    LibraryFile(const LibraryFile&) = delete;
    LibraryFile& operator=(const LibraryFile&) = delete;

    Failure Open(const std::string& path);
    uint64_t Length() const { return length; }
    int64_t Modified() const { return modified; } // nanoseconds since 1970
    // False if fewer bytes are there, or if they cannot be read.
    bool Read(uint64_t offset, void* bytes, size_t count);
    // False if no header stands there, or a negative one.
    bool ReadChunk(uint64_t offset, Chunk& chunk);
    bool ReadPayload(const Chunk& chunk, std::vector<uint8_t>& payload); // of a whole chunk
    // Why the disk did not give what the file has; no failure if it always did.
    Failure ReadFailure() const;

private:
    bool ReadDisk(uint64_t offset, void* bytes, size_t count);

    static constexpr size_t windowSize = 4096; // small, as most of a file is passed over

    int descriptor = -1;
    std::string path;
    uint64_t length = 0;
    int64_t modified = 0;
    int error = 0;
    std::array<uint8_t, windowSize> window;
    uint64_t windowOffset = 0;
    size_t windowFilled = 0;
};

// What ends a walk from chunk to chunk.
enum class WalkEnd {
    Closed,      // the closing chunk
    Open,        // the end of the file, at the end of a chunk
    CutHeader,   // the end of the file, within a header
    CutPayload,  // a payload that reaches over the end of the file
    NoTag,       // a header of nothing
    LongPayload, // longer than such a chunk may be
    NoLibrary,   // the first chunk is of another kind
    Interrupted  // the user does not want to wait
};

// From header to header, by what the headers tell alone.
class ChunkWalk
{
public:
    explicit ChunkWalk(LibraryFile& newFile)
        : file(newFile)
    {
    }

    // The next chunk, also the one at which the walk ends. False behind it.
    bool Next(Chunk& chunk);
    WalkEnd End() const { return end; }
    uint64_t Position() const { return position; } // where the walk goes on, or where it ended

private:
    bool Stop(WalkEnd reason);
    void StopBehind(const Chunk& chunk);

    LibraryFile& file;
    uint64_t position = 0;
    bool isOver = false;
    WalkEnd end = WalkEnd::Open;
};

} // namespace vx3::console
