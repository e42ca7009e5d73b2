// A file of the core host for the length of a scope, in few words.
#pragma once

#include "scratch.h"

namespace vx3::core {

// A file that is freed at the end of its scope.
class OpenFile
{
public:
    OpenFile(const Path& path, int32_t mode, int32_t order = VX3_ORDER_BIG)
        : file(FileServices()->create())
    {
        isOpen = FileServices()->open(file, path.Get(), mode, 0, order, VX3_FILE_TYPE, VX3_FILE_CREATOR);
    }
    ~OpenFile() { FileServices()->free(file); }
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;

    bool Write(const std::string& bytes) { return FileServices()->write(file, bytes.data(), static_cast<int64_t>(bytes.size())); }
    std::string Read(int64_t length)
    {
        std::string bytes(static_cast<size_t>(length), 0);
        int64_t got = FileServices()->read(file, bytes.data(), length);
        return got < 0 ? "failed" : bytes.substr(0, static_cast<size_t>(got));
    }
    bool Seek(int64_t offset, int32_t origin = VX3_SEEK_ABSOLUTE) { return FileServices()->seek(file, offset, origin); }
    int64_t Position() { return FileServices()->position(file); }
    int64_t Length() { return FileServices()->length(file); }
    bool Sync() { return FileServices()->sync(file); }
    bool Close() { return FileServices()->close(file); }

    VX3BinaryFile* file;
    bool isOpen;
};

} // namespace vx3::core
