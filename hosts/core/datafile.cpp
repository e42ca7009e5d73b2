#include <array>
#include <cstdint>
#include <cstring>
#include <new>
#include <span>
#include <vector>

#include "bigendian.h"
#include "containerimage.h"
#include "pathvalue.h"
#include "services.h"

// On a file, or right on bytes in memory that nobody writes.
struct VX3DataFile {
    VX3BinaryFile* file = nullptr;
    vx3::core::MemoryBlock* memory = nullptr;
    int64_t position = 0; // in the memory
    int32_t mode = 0;
    bool failed = false;
};

namespace vx3::core {
namespace {

constexpr uint32_t signature = 0x56583364; // VX3d
constexpr uint32_t formatVersion = 2;
constexpr size_t wordSize = sizeof(uint32_t);
constexpr size_t lengthSize = sizeof(uint64_t);
constexpr size_t headerSize = 3 * wordSize;
using Header = std::array<uint8_t, headerSize>;

Header MakeHeader(uint32_t ident)
{
    Header header;
    StoreBig(signature, header.data());
    StoreBig(formatVersion, header.data() + wordSize);
    StoreBig(ident, header.data() + 2 * wordSize);
    return header;
}

bool WriteHeader(VX3BinaryFile* file, uint32_t ident)
{
    const Header header = MakeHeader(ident);
    return FileServices()->write(file, header.data(), headerSize);
}

bool CheckHeader(VX3BinaryFile* file, uint32_t ident)
{
    Header header;
    return FileServices()->read(file, header.data(), headerSize) == headerSize && header == MakeHeader(ident);
}

bool OpenFile(VX3BinaryFile* file, const VX3Path* path, int32_t mode, uint32_t ident)
{
    const bool writes = mode == VX3_DATA_WRITE;
    const int32_t openMode = writes ? VX3_OPEN_CREATE : VX3_OPEN_READ;
    if (!FileServices()->open(file, path, openMode, 0, VX3_ORDER_BIG, VX3_FILE_TYPE, VX3_FILE_CREATOR))
        return false;
    return writes ? WriteHeader(file, ident) : CheckHeader(file, ident);
}

VX3DataFile* OpenMemory(MemoryBlock& memory, uint32_t ident)
{
    const Header header = MakeHeader(ident);
    if (memory.length < static_cast<int64_t>(headerSize) || std::memcmp(memory.data, header.data(), headerSize) != 0)
        return nullptr;
    auto* data = new (std::nothrow) VX3DataFile{ nullptr, &memory, headerSize, VX3_DATA_READ, false };
    if (data)
        memory.Retain();
    return data;
}

VX3DataFile* Open(const VX3Path* path, int32_t mode, uint32_t ident)
{
    if (mode != VX3_DATA_READ && mode != VX3_DATA_WRITE)
        return nullptr;
    if (MemoryBlock* memory = MemoryOf(*path); memory && !memory->writable && mode == VX3_DATA_READ)
        return OpenMemory(*memory, ident);
    VX3BinaryFile* file = FileServices()->create();
    if (!file)
        return nullptr;
    auto* data = OpenFile(file, path, mode, ident) ? new (std::nothrow) VX3DataFile{ file, nullptr, 0, mode, false } : nullptr;
    if (!data)
        FileServices()->free(file);
    return data;
}

bool WriteImage(VX3DataFile& data, const VX3Container& container)
{
    std::vector<uint8_t> image(lengthSize);
    if (!EncodeContainer(container, image))
        return false;
    StoreBig(static_cast<uint64_t>(image.size() - lengthSize), image.data());
    data.failed = !FileServices()->write(data.file, image.data(), static_cast<int64_t>(image.size()));
    return !data.failed;
}

// The file itself says how much can follow, whatever stands in front of the image.
bool ReadFileImage(VX3DataFile& data, VX3Container& container)
{
    uint8_t lengthBytes[lengthSize];
    if (FileServices()->read(data.file, lengthBytes, lengthSize) != static_cast<int64_t>(lengthSize))
        return false;
    const auto length = LoadBig<uint64_t>(lengthBytes);
    const int64_t left = FileServices()->length(data.file) - FileServices()->position(data.file);
    if (left < 0 || length > static_cast<uint64_t>(left))
        return false;
    std::vector<uint8_t> image(length);
    const auto size = static_cast<int64_t>(length);
    return FileServices()->read(data.file, image.data(), size) == size && DecodeContainer(image, container);
}

bool ReadMemoryImage(VX3DataFile& data, VX3Container& container)
{
    std::span<const uint8_t> left(data.memory->data + data.position, static_cast<size_t>(data.memory->length - data.position));
    if (left.size() < lengthSize)
        return false;
    const auto length = LoadBig<uint64_t>(left.data());
    left = left.subspan(lengthSize);
    if (length > left.size() || !DecodeContainer(left.first(length), container))
        return false;
    data.position += static_cast<int64_t>(lengthSize + length);
    return true;
}

bool ReadImage(VX3DataFile& data, VX3Container& container)
{
    return data.memory ? ReadMemoryImage(data, container) : ReadFileImage(data, container);
}

VX3Bool Write(VX3DataFile* data, const VX3Container* container)
{
    if (data->mode != VX3_DATA_WRITE || data->failed)
        return 0;
    try {
        return WriteImage(*data, *container);
    } catch (const std::bad_alloc&) {
        return 0;
    }
}

// Behind damage nobody knows where the next image begins.
VX3Bool Read(VX3DataFile* data, VX3Container* container)
{
    if (data->mode != VX3_DATA_READ || data->failed)
        return 0;
    try {
        data->failed = !ReadImage(*data, *container);
    } catch (const std::bad_alloc&) {
        data->failed = true;
    }
    return !data->failed;
}

bool CloseFile(const VX3DataFile& data)
{
    const bool closed = FileServices()->close(data.file);
    FileServices()->free(data.file);
    return closed && (data.mode == VX3_DATA_READ || !data.failed);
}

VX3Bool Close(VX3DataFile* data)
{
    if (!data)
        return 0;
    const bool arrived = !data->file || CloseFile(*data);
    if (data->memory)
        data->memory->Release();
    delete data;
    return arrived;
}

constexpr VX3DataFileServices dataFileServices = { Open, Write, Read, Close };

} // namespace

const VX3DataFileServices* DataFileServices()
{
    return &dataFileServices;
}

} // namespace vx3::core
