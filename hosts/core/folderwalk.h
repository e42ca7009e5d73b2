// One walk over the entries of a folder. One thread at a time.
#pragma once

#include <memory>
#include <string>

#include <dirent.h>

#include "ancestors.h"
#include "descriptor.h"
#include "filestatus.h"
#include "localdate.h"
#include "statusahead.h"

namespace vx3::core {

class FolderWalk
{
public:
    static std::unique_ptr<FolderWalk> Start(const std::string& native, uint32_t options); // none if it cannot be read

    bool Next(VX3FolderEntry& entry);
    bool IsSound() const { return isSound; }
    void Spoil() { isSound = false; } // an entry is missing

private:
    FolderWalk(Descriptor open, const std::string& native, uint32_t walkOptions);
    bool Refill();
    bool Take(const struct dirent64& listed, VX3FolderEntry& entry);
    bool Describe(const struct dirent64& listed, VX3FolderEntry& entry);
    bool DescribeLink(const char* name, VX3FolderEntry& entry);

    static constexpr size_t bufferSize = 256 * 1024; // some thousand entries a call
    Descriptor folder;
    uint32_t options;
    FileSystemFacts fileSystem;
    Freshness freshness; // old facts of a served file system would hide what others have changed
    Ancestors ancestors;
    WriteRights rights;
    LocalDates dates;
    std::unique_ptr<char[]> buffer;
    size_t filled = 0;
    size_t at = 0;
    bool isSound = true;
    StatusAhead ahead; // reads `folder`, `rights` and `buffer`, so it ends before them
};

} // namespace vx3::core
