#include "storage/chunkio.h"

#include <bit>

namespace browser {

namespace {

constexpr uint32_t containerIdent = FourCharacters("brow");

uint32_t LoadWord(const uint8_t* bytes)
{
    return uint32_t(bytes[0]) << 24 | uint32_t(bytes[1]) << 16 | uint32_t(bytes[2]) << 8 | bytes[3];
}

void StoreWord(uint32_t word, uint8_t* bytes)
{
    for (int i = 3; i >= 0; i--, word >>= 8)
        bytes[i] = static_cast<uint8_t>(word);
}

uint64_t BytesLeft(const BinaryFile& file)
{
    const int64_t length = file.Length(), position = file.Position();
    return position < 0 || length < position ? 0 : static_cast<uint64_t>(length - position);
}

// A read that breaks off in front of the end is the disk's failure: the file is of no use any
// more, so that nobody takes what he has not seen for absent.
bool FailFile(BinaryFile& file)
{
    constexpr int64_t nowhere = -1;
    return file.SeekTo(nowhere);
}

// A data file of the host over bytes in memory, for the length of a scope.
class MemoryDataFile
{
public:
    // For reading what is borrowed.
    MemoryDataFile(const void* bytes, int64_t length)
    {
        if (host->path->setMemoryReading(path.Value(), bytes, length))
            file = host->dataFile->open(path.Value(), VX3_DATA_READ, containerIdent);
    }
    // For writing.
    MemoryDataFile()
    {
        if (host->path->setMemoryWriting(path.Value()))
            file = host->dataFile->open(path.Value(), VX3_DATA_WRITE, containerIdent);
    }
    ~MemoryDataFile() { (void)Close(); }
    MemoryDataFile(const MemoryDataFile&) = delete;
    MemoryDataFile& operator=(const MemoryDataFile&) = delete;

    bool Read(BaseContainer& container) { return file && host->dataFile->read(file, container.Value()); }
    bool Write(const BaseContainer& container) { return file && host->dataFile->write(file, container.Value()); }
    bool Close() { return !file || host->dataFile->close(std::exchange(file, nullptr)); }
    bool TakeBytes(Block& bytes)
    {
        void* block = nullptr;
        int64_t length = 0;
        if (!Close() || !host->path->takeMemory(path.Value(), &block, &length))
            return false;
        bytes.Adopt(block, length);
        return true;
    }

private:
    FilePath path;
    VX3DataFile* file = nullptr;
};

// Could the host read a container of that size now, if it were one? It does not tell why it
// could not read one.
bool CanReadContainers(uint64_t length)
{
    constexpr uint64_t growth = 16; // of a container over what is stored of it
    Block probe;
    BaseContainer plain, again;
    MemoryDataFile written;
    if (!probe.Alloc(static_cast<int64_t>(length * growth)) || !plain.SetInt32(1, 1) || !written.Write(plain) || !written.TakeBytes(probe))
        return false;
    return MemoryDataFile(probe.Bytes(), probe.Size()).Read(again);
}

} // namespace

bool Block::Alloc(int64_t size, SourcePlace place)
{
    Free();
    bytes = static_cast<uint8_t*>(HostAlloc(static_cast<size_t>(size ? size : 1), place));
    length = capacity = bytes ? size : 0;
    return bytes != nullptr;
}

bool Block::Resize(int64_t size, SourcePlace place)
{
    if (!bytes || size > capacity)
        return Alloc(size, place);
    length = size;
    return true;
}

void Block::Adopt(void* block, int64_t size)
{
    Free();
    bytes = static_cast<uint8_t*>(block);
    length = capacity = size;
}

void Block::Free()
{
    if (bytes)
        HostFree(bytes);
    bytes = nullptr;
    length = capacity = 0;
}

uint8_t* Block::Take()
{
    length = capacity = 0;
    return std::exchange(bytes, nullptr);
}

bool ReadChunkHeader(BinaryFile& file, BrowserDatabaseChunk& header)
{
    uint8_t bytes[chunkHeaderSize];
    const int64_t got = file.Read(bytes, chunkHeaderSize);
    if (got != chunkHeaderSize)
        return BytesLeft(file) > 0 && FailFile(file);
    header.tag = static_cast<ChunkTag>(LoadWord(bytes));
    header.id = std::bit_cast<int32_t>(LoadWord(bytes + 4));
    header.length = uint64_t(LoadWord(bytes + 8)) << 32 | LoadWord(bytes + 12);
    return true;
}

bool WriteChunkHeader(BinaryFile& file, const BrowserDatabaseChunk& header)
{
    uint8_t bytes[chunkHeaderSize];
    StoreWord(static_cast<uint32_t>(header.tag), bytes);
    StoreWord(std::bit_cast<uint32_t>(header.id), bytes + 4);
    StoreWord(static_cast<uint32_t>(header.length >> 32), bytes + 8);
    StoreWord(static_cast<uint32_t>(header.length), bytes + 12);
    return file.Write(bytes, chunkHeaderSize);
}

bool ReadChunkPayload(BinaryFile& file, Block& payload)
{
    BrowserDatabaseChunk header;
    if (!ReadChunkHeader(file, header) || header.length > BytesLeft(file) || !payload.Alloc(static_cast<int64_t>(header.length)))
        return false;
    if (file.Read(payload.Bytes(), payload.Size()) == payload.Size())
        return true;
    payload.Free();
    return false;
}

bool WriteChunkWithPayload(BinaryFile& file, ChunkTag tag, int32_t id, const void* bytes, int64_t length)
{
    return WriteChunkHeader(file, { tag, id, static_cast<uint64_t>(length) }) && file.Write(bytes, length);
}

bool InvalidateChunk(BinaryFile& file, uint64_t offset, ChunkTag expected)
{
    BrowserDatabaseChunk header;
    uint8_t tag[4];
    StoreWord(static_cast<uint32_t>(ChunkTag::Dead), tag);
    const auto place = static_cast<int64_t>(offset);
    if (place < 0 || place > file.Length() - chunkHeaderSize || !file.SeekTo(place) || !ReadChunkHeader(file, header))
        return false;
    return header.tag == expected && file.SeekTo(place) && file.Write(tag, sizeof(tag));
}

Reading ReadContainerPayload(BinaryFile& file, uint64_t length, Block& payload, BaseContainer& container)
{
    if (!payload.Resize(static_cast<int64_t>(length)) || file.Read(payload.Bytes(), payload.Size()) != payload.Size())
        return Reading::Failed;
    if (MemoryDataFile(payload.Bytes(), payload.Size()).Read(container))
        return Reading::Done;
    if (!CanReadContainers(length))
        return Reading::Failed;
    return MemoryDataFile(payload.Bytes(), payload.Size()).Read(container) ? Reading::Done : Reading::Damaged;
}

bool WriteContainerPayload(BinaryFile& file, const BaseContainer& container, int64_t& length)
{
    MemoryDataFile image;
    Block bytes;
    if (!image.Write(container) || !image.TakeBytes(bytes))
        return false;
    length = bytes.Size();
    return file.Write(bytes.Bytes(), length);
}

bool WriteContainerChunk(BinaryFile& file, ChunkTag tag, int32_t id, const BaseContainer& container, uint64_t offset, uint64_t& end)
{
    const auto start = static_cast<int64_t>(offset);
    int64_t length = 0;
    if (!file.SeekTo(start) || !WriteChunkHeader(file, { tag, id, 0 }) || !WriteContainerPayload(file, container, length))
        return false;
    end = offset + chunkHeaderSize + static_cast<uint64_t>(length);
    return file.SeekTo(start) && WriteChunkHeader(file, { tag, id, static_cast<uint64_t>(length) })
        && file.SeekTo(static_cast<int64_t>(end));
}

bool FindNextChunk(uint64_t position, uint64_t length, uint64_t fileLength, uint64_t& next)
{
    const uint64_t left = position > fileLength ? 0 : fileLength - position;
    if (left < chunkHeaderSize || length > left - chunkHeaderSize)
        return false;
    next = position + chunkHeaderSize + length;
    return true;
}

} // namespace browser
