// Opening a file of the disk for writing, as the only writer.
#pragma once

#include <string>

#include "descriptor.h"

namespace vx3::core {

struct WritableFile {
    Descriptor descriptor;
    bool isNew = false;     // it was made just now
    bool isChanged = false; // made or truncated
};

enum class OldBytes { Keep, Drop };

// Not open on failure, with the reason for the user; nothing of the file is changed then.
//
// The lock (flock) is one between programs that ask for it, and belongs to the open file:
// a second opening in this process is refused as well. Where a file system has no locks,
// there is none.
WritableFile OpenWritable(const std::string& native, OldBytes oldBytes, std::string& reason);

// To be called before closing: a child process that was forked meanwhile has the open file
// too, and would keep the lock as long as it lives.
void Unlock(int descriptor);

} // namespace vx3::core
