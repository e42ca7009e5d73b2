// Payloads of items between memory and the library: chunks of its file, or files beside it.
//
// For handles, with the lock of the library held: shared for reading, exclusively for writing.
#pragma once

#include "storage/browserdatabase.h"
#include "storage/itempayloads.h"

namespace browser {

bool CanBePayload(const void* bytes, int64_t size);

// Appends a payload to the library's file, and puts its offset into `entry`. The end of the
// log moves only if all of it was written.
[[nodiscard]] bool AppendPayload(LibraryState& library, PayloadKind kind, int32_t id, const void* bytes, int64_t size,
                                 BaseContainer& entry);
// Makes the chunk of a payload a dead one, if it is there. False if the file cannot be written.
[[nodiscard]] bool KillPayload(LibraryState& library, const PayloadReference& payload);

[[nodiscard]] bool WriteWholeFile(const FilePath& path, const void* bytes, int64_t size);
[[nodiscard]] bool ReadWholeFile(const FilePath& path, Block& bytes);
[[nodiscard]] int64_t LengthOfFile(const FilePath& path); // -1 if it cannot be read

// The library's file for the time of one reading, opened when it is first needed.
class PayloadFile
{
public:
    explicit PayloadFile(LibraryState& read)
        : library(read)
    {
    }
    ~PayloadFile();
    PayloadFile(const PayloadFile&) = delete;
    PayloadFile& operator=(const PayloadFile&) = delete;
    [[nodiscard]] bool Read(const PayloadReference& payload, Block& bytes);
    int64_t LengthOf(const PayloadReference& payload); // -1 without such a chunk

private:
    BinaryFile* Open(const PayloadReference& payload, BrowserDatabaseChunk& header);
    bool OpenOwn();

    LibraryState& library;
    BinaryFile* own = nullptr; // open if there is one
};

// Calls `read` with a PayloadFile. Readers share the lock and have a file each, unless a
// writer keeps the library's open: what it wrote last may be in that one's buffer alone.
template <class Action>
auto ReadPayloads(BrowserDatabase& library, Action read)
{
    LibraryState& state = library.State();
    {
        const ReadGuard guard(library.Lock(), LockRank::Library);
        PayloadFile file(state);
        if (!state.IsOpen())
            return read(file);
    }
    const WriteGuard guard(library.Lock(), LockRank::Library);
    PayloadFile file(state);
    return read(file);
}

// A container of a record that is filled when what it tells of has been stored; if it was
// made for that, it goes again without.
class ContainerSlot
{
public:
    ContainerSlot(BaseContainer* outer, int32_t slotKey);
    ~ContainerSlot();
    ContainerSlot(const ContainerSlot&) = delete;
    ContainerSlot& operator=(const ContainerSlot&) = delete;

    explicit operator bool() const { return slot != nullptr; }
    void Fill(BaseContainer& content); // by exchange, so without memory

private:
    BaseContainer* parent;
    const int32_t key;
    BaseContainer* slot = nullptr;
    bool isTemporary = false;
};

} // namespace browser
