// The chunks that a library file is made of: a header of 16 bytes and a payload each.
// docs/libraryformat.md describes them byte by byte.
//
// Works on an open file and keeps nothing. A length that a file tells is compared with what
// the file has before anything is allocated or skipped, so that a damaged one costs nothing.
#pragma once

#include "services/allocation.h"
#include "services/basecontainer.h"
#include "services/binaryfile.h"

namespace browser {

constexpr uint32_t FourCharacters(const char (&name)[5])
{
    uint32_t tag = 0;
    for (int i = 0; i < 4; i++)
        tag = tag << 8 | static_cast<uint8_t>(name[i]);
    return tag;
}

enum class ChunkTag : uint32_t {
    None = 0,
    FileHead = FourCharacters("dbfh"),
    Info = FourCharacters("difm"),
    Category = FourCharacters("cati"),
    Item = FourCharacters("ditm"),
    Data = FourCharacters("bina"),
    Image = FourCharacters("imag"),
    Dead = FourCharacters("ivld"),
    OldItems = FourCharacters("dbas"), // all items in one chunk, of old files
    FileEnd = FourCharacters("dbfe"),
};

struct BrowserDatabaseChunk {
    ChunkTag tag = ChunkTag::None;
    int32_t id = 0;
    uint64_t length = 0; // of the payload
};

constexpr int64_t chunkHeaderSize = 16;
constexpr uint64_t mostPayload = 0x7FFFFFFF; // of a chunk that is skipped, so of one that is written

// A block of bytes that its holder frees.
class Block
{
public:
    Block() = default;
    ~Block() { Free(); }
    Block(const Block&) = delete;
    Block& operator=(const Block&) = delete;

    [[nodiscard]] bool Alloc(int64_t size, SourcePlace place = SourcePlace::Here());
    // The same, without memory if there is room already.
    [[nodiscard]] bool Resize(int64_t size, SourcePlace place = SourcePlace::Here());
    void Adopt(void* block, int64_t size);
    void Free();
    uint8_t* Bytes() { return bytes; }
    const uint8_t* Bytes() const { return bytes; }
    int64_t Size() const { return length; }
    uint8_t* Take(); // for the caller to free

private:
    uint8_t* bytes = nullptr;
    int64_t length = 0;
    int64_t capacity = 0;
};

// False if fewer than 16 bytes are left.
[[nodiscard]] bool ReadChunkHeader(BinaryFile& file, BrowserDatabaseChunk& header);
[[nodiscard]] bool WriteChunkHeader(BinaryFile& file, const BrowserDatabaseChunk& header);

// A chunk at the file's position, header and all. The tag is not looked at.
[[nodiscard]] bool ReadChunkPayload(BinaryFile& file, Block& payload);
[[nodiscard]] bool WriteChunkWithPayload(BinaryFile& file, ChunkTag tag, int32_t id, const void* bytes, int64_t length);

// Makes the chunk at an offset a dead one if it is one of the expected kind; no other byte
// of any file is ever touched. The position is undefined afterwards.
[[nodiscard]] bool InvalidateChunk(BinaryFile& file, uint64_t offset, ChunkTag expected);

enum class Reading {
    Done,
    Damaged, // the bytes are not what they should be
    Failed,  // for memory, or by the disk: they may be all right
};

// Containers as the payload of a chunk: without a header, at the file's position. The file has
// as many bytes. `payload` is room for them, which who reads many keeps.
[[nodiscard]] Reading ReadContainerPayload(BinaryFile& file, uint64_t length, Block& payload, BaseContainer& container);
[[nodiscard]] bool WriteContainerPayload(BinaryFile& file, const BaseContainer& container, int64_t& length);

// A whole chunk with a container at `offset`, whose length is patched when it is known: a
// cut in between leaves an empty payload, which cannot be taken for a whole one. `end` is
// behind it and the file's position.
[[nodiscard]] bool WriteContainerChunk(BinaryFile& file, ChunkTag tag, int32_t id, const BaseContainer& container, uint64_t offset,
                                       uint64_t& end);

// Where the chunk behind this one begins. False if that lies behind the end of the file.
[[nodiscard]] bool FindNextChunk(uint64_t position, uint64_t length, uint64_t fileLength, uint64_t& next);

} // namespace browser
