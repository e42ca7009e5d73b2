// A file of the host for the length of a scope.
#pragma once

#include "services/filepath.h"

namespace browser {

enum class OpenMode : int32_t { Update = VX3_OPEN_UPDATE, Read = VX3_OPEN_READ, Create = VX3_OPEN_CREATE };

class BinaryFile
{
public:
    BinaryFile()
        : file(host->file->create())
    {
    }
    ~BinaryFile() { host->file->free(file); }
    BinaryFile(const BinaryFile&) = delete;
    BinaryFile& operator=(const BinaryFile&) = delete;

    // Quiet: a failure is told by the result alone.
    [[nodiscard]] bool Open(const FilePath& path, OpenMode mode)
    {
        return file
            && host->file->open(file, path.Value(), static_cast<int32_t>(mode), false, VX3_ORDER_BIG, VX3_FILE_TYPE, VX3_FILE_CREATOR);
    }
    [[nodiscard]] int64_t Read(void* bytes, int64_t length) { return host->file->read(file, bytes, length); }

private:
    VX3BinaryFile* file;
};

} // namespace browser
