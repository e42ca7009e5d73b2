// A picture file that is read: a file or a memory path, through the file section, which
// opens regular files only and never waits. Used by one thread.
#pragma once

#include <cstdint>
#include <vector>

#include "vx3/file.h"

namespace vx3::core {

using ByteBuffer = std::vector<uint8_t>;

class PictureFile
{
public:
    PictureFile() = default;
    ~PictureFile();
    PictureFile(const PictureFile&) = delete;
    PictureFile& operator=(const PictureFile&) = delete;

    bool Open(const VX3Path& path);
    int64_t Length() const { return length; }
    // Reads what stands from `offset` and returns how many bytes there were, -1 on an error.
    int64_t ReadAt(int64_t offset, void* bytes, int64_t count);
    bool ReadAll(ByteBuffer& bytes); // false on an error, or if the file is too long for a picture

private:
    VX3BinaryFile* file = nullptr;
    int64_t length = 0;
};

// Writes a whole file: beside the old one under another name, and renamed when it is on
// the disk. Into a memory path at once.
bool ReplaceFile(const VX3Path& path, const ByteBuffer& bytes);

} // namespace vx3::core
