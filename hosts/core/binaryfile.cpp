#include <concepts>
#include <exception>
#include <new>

#include "filebuffer.h"
#include "hoststate.h"
#include "livecounts.h"
#include "services.h"
#include "values.h"

struct VX3BinaryFile {
    vx3::core::FileBuffer buffer;
    bool isBigEndian = true;
};

namespace vx3::core {

namespace {

VX3BinaryFile* Create()
{
    auto* file = new (std::nothrow) VX3BinaryFile;
    if (file)
        liveCounters.files.Add();
    return file;
}

void Free(VX3BinaryFile* file)
{
    if (!file)
        return;
    file->buffer.Close();
    delete file;
    liveCounters.files.Subtract();
}

// A box may only stand on the main thread; from elsewhere the console hears of it.
void TellUser(const VX3Path& path, const std::string& reason)
{
    Text name;
    PathServices()->getText(&path, name.Get());
    std::string text = "The file could not be opened: " + name.Utf8() + " (" + reason + ")";
    if (ThreadServices()->isMainThread())
        ShowHostText(text);
    else
        WriteConsoleLine(text);
}

bool OpenBuffer(FileBuffer& buffer, const VX3Path& path, int32_t mode, std::string& reason)
{
    if (mode != VX3_OPEN_READ && mode != VX3_OPEN_UPDATE && mode != VX3_OPEN_CREATE) {
        reason = "unknown mode";
        return false;
    }
    auto raw = BlockOf(path) ? OpenMemoryFile(path, mode, reason) : OpenDiskFile(NativeBytes(path), mode, reason);
    if (!raw)
        return false;
    buffer.Attach(std::move(raw), mode != VX3_OPEN_READ);
    return true;
}

// The tags of type and creator are for systems that keep them beside the bytes.
VX3Bool Open(VX3BinaryFile* file, const VX3Path* path, int32_t mode, VX3Bool showErrors, int32_t byteOrder, uint32_t, uint32_t)
{
    if (file->buffer.IsOpen())
        return 0;
    try {
        std::string reason;
        file->isBigEndian = byteOrder == VX3_ORDER_BIG;
        if (OpenBuffer(file->buffer, *path, mode, reason))
            return 1;
        if (showErrors)
            TellUser(*path, reason);
    } catch (const std::bad_alloc&) {
    }
    return 0;
}

VX3Bool Close(VX3BinaryFile* file)
{
    return file->buffer.Close();
}

int64_t Read(VX3BinaryFile* file, void* bytes, int64_t length)
{
    return file->buffer.Read(bytes, length);
}

VX3Bool Write(VX3BinaryFile* file, const void* bytes, int64_t length)
{
    return file->buffer.Write(bytes, length);
}

template <std::unsigned_integral Integer>
VX3Bool ReadInteger(VX3BinaryFile* file, Integer* value)
{
    uint8_t bytes[sizeof(Integer)];
    if (!file->buffer.ReadExactly(bytes, sizeof(bytes)))
        return 0;
    uint64_t number = 0;
    for (size_t i = 0; i < sizeof(bytes); ++i)
        number = number << 8 | bytes[file->isBigEndian ? i : sizeof(bytes) - 1 - i];
    *value = static_cast<Integer>(number);
    return 1;
}

template <std::unsigned_integral Integer>
VX3Bool WriteInteger(VX3BinaryFile* file, Integer value)
{
    uint8_t bytes[sizeof(Integer)];
    uint64_t rest = value;
    for (size_t i = 0; i < sizeof(bytes); ++i, rest >>= 8)
        bytes[file->isBigEndian ? sizeof(bytes) - 1 - i : i] = static_cast<uint8_t>(rest);
    return file->buffer.Write(bytes, sizeof(bytes));
}

VX3Bool Seek(VX3BinaryFile* file, int64_t offset, int32_t origin)
{
    return origin == VX3_SEEK_RELATIVE ? file->buffer.SeekBy(offset) : file->buffer.SeekTo(offset);
}

int64_t Position(VX3BinaryFile* file)
{
    return file->buffer.Position();
}

int64_t Length(VX3BinaryFile* file)
{
    return file->buffer.Length();
}

VX3Bool Sync(VX3BinaryFile* file)
{
    return file->buffer.Sync();
}

} // namespace

const VX3FileServices* FileServices()
{
    static constexpr VX3FileServices services = { Create,
                                                  Free,
                                                  Open,
                                                  Close,
                                                  Read,
                                                  Write,
                                                  ReadInteger<uint16_t>,
                                                  ReadInteger<uint32_t>,
                                                  ReadInteger<uint64_t>,
                                                  WriteInteger<uint16_t>,
                                                  WriteInteger<uint32_t>,
                                                  WriteInteger<uint64_t>,
                                                  Seek,
                                                  Position,
                                                  Length,
                                                  Sync };
    return &services;
}

} // namespace vx3::core
