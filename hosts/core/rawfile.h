// Bytes at offsets, without a buffer: a file of the disk or a block of memory.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "vx3/path.h"

namespace vx3::core {

// Used by one thread at a time; closed by its destructor at the latest.
class RawFile
{
public:
    virtual ~RawFile() = default;

    virtual int64_t ReadAt(int64_t offset, void* bytes, int64_t count) = 0; // less only at the end; -1 on an error
    virtual bool WriteAt(int64_t offset, const void* bytes, int64_t count) = 0;
    virtual void Announce(int64_t, int64_t) { } // offset and count of what is read soon: a hint, for a disk
    virtual int64_t Length() = 0;               // -1 on an error
    virtual bool Sync() = 0;
    virtual bool Close() = 0; // false if a write was lost, or may be if the machine stops now
};

// `mode` is one of VX3_OPEN. None on failure, with the reason for the user. A file of the
// disk is written by one opening at a time (openwritable.h).
std::unique_ptr<RawFile> OpenDiskFile(const std::string& native, int32_t mode, std::string& reason);
std::unique_ptr<RawFile> OpenMemoryFile(const VX3Path& path, int32_t mode, std::string& reason);

} // namespace vx3::core
