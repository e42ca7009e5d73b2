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
    // False if anything written was lost; a file that is not open is fine.
    [[nodiscard]] bool Close() { return file && host->file->close(file); }
    [[nodiscard]] int64_t Read(void* bytes, int64_t length) { return host->file->read(file, bytes, length); }
    [[nodiscard]] bool ReadWord(uint32_t& word) { return host->file->readInt32(file, &word); }
    [[nodiscard]] bool Write(const void* bytes, int64_t length) { return host->file->write(file, bytes, length); }
    [[nodiscard]] bool WriteWord(uint32_t word) { return host->file->writeInt32(file, word); }
    [[nodiscard]] bool Sync() { return file && host->file->sync(file); }
    bool IsUsable() const { return Position() >= 0; } // open, and no call has failed
    [[nodiscard]] bool SeekTo(int64_t offset) { return host->file->seek(file, offset, VX3_SEEK_ABSOLUTE); }
    int64_t Position() const { return file ? host->file->position(file) : -1; }
    int64_t Length() const { return file ? host->file->length(file) : -1; }

private:
    VX3BinaryFile* file;
};

} // namespace browser
