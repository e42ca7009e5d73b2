// Whether a library file is whole: every payload is read and held against what its item tells.
#pragma once

#include <vector>

#include "libraryscan.h"

namespace vx3::console {

// Which chunks a reader of the file comes to.
class ChunkUse
{
public:
    explicit ChunkUse(const LibraryScan& scan);
    bool IsUsed(const Chunk& chunk) const;

private:
    std::vector<uint64_t> offsets; // sorted
};

struct LibraryCheck {
    int64_t soundItems = 0; // whose record, data and previews are whole
    int64_t payloads = 0;
    uint64_t payloadBytes = 0;
    int64_t unusedPayloads = 0; // which no item names
    uint64_t unusedBytes = 0;   // with headers
    bool isInterrupted = false;
};

// Adds what is found to the findings of the scan.
LibraryCheck CheckLibrary(LibraryFile& file, LibraryScan& scan);

// Payloads that no item names, without a look into any.
LibraryCheck CountUnused(LibraryFile& file, const LibraryScan& scan);

uint32_t PathHash(const core::Text& path);

} // namespace vx3::console
