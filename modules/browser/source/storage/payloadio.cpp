#include "storage/payloadio.h"

#include "storage/browserdatabaseitem.h"
#include "storage/libraryflush.h"

namespace browser {

bool CanBePayload(const void* bytes, int64_t size)
{
    return size >= 0 && static_cast<uint64_t>(size) <= mostPayload && (bytes || size == 0);
}

// The closing chunk is written over, so the library is to be written whatever comes.
bool AppendPayload(LibraryState& library, PayloadKind kind, int32_t id, const void* bytes, int64_t size, BaseContainer& entry)
{
    if (!OpenForUpdate(library))
        return false;
    library.dirty = true;
    const auto offset = static_cast<int64_t>(library.endOffset);
    const int32_t key = kind == PayloadKind::Data ? static_cast<int32_t>(DataOffset) : static_cast<int32_t>(PictureOffset);
    const bool isWritten =
        entry.SetInt64(key, offset) && library.file.SeekTo(offset) && WriteChunkWithPayload(library.file, TagOf(kind), id, bytes, size);
    const bool isClosed = CloseAfterUpdate(library);
    if (isWritten && isClosed)
        library.endOffset += static_cast<uint64_t>(chunkHeaderSize + size);
    return isWritten && isClosed;
}

bool KillPayload(LibraryState& library, const PayloadReference& payload)
{
    BrowserDatabaseChunk header;
    if (!OpenForUpdate(library))
        return false;
    if (IsPayload(library.file, library, payload, header))
        (void)InvalidateChunk(library.file, payload.offset, header.tag);
    return CloseAfterUpdate(library);
}

// --- Files beside the library ---

bool WriteWholeFile(const FilePath& path, const void* bytes, int64_t size)
{
    BinaryFile file;
    if (!file.Open(path, OpenMode::Create))
        return false;
    const bool isWritten = file.Write(bytes, size);
    return file.Close() && isWritten;
}

bool ReadWholeFile(const FilePath& path, Block& bytes)
{
    BinaryFile file;
    if (!file.Open(path, OpenMode::Read))
        return false;
    const int64_t length = file.Length();
    if (length < 0 || static_cast<uint64_t>(length) > mostPayload || !bytes.Alloc(length))
        return false;
    if (file.Read(bytes.Bytes(), length) == length)
        return true;
    bytes.Free();
    return false;
}

int64_t LengthOfFile(const FilePath& path)
{
    BinaryFile file;
    return file.Open(path, OpenMode::Read) ? file.Length() : -1;
}

// --- Reading from the library ---

BinaryFile* PayloadFile::Open(const PayloadReference& payload, BrowserDatabaseChunk& header)
{
    BinaryFile& file = library.openCount > 0 ? library.file : own;
    if (&file == &own && !isOpen)
        isOpen = own.Open(library.filePath, OpenMode::Read);
    return (&file != &own || isOpen) && IsPayload(file, library, payload, header) ? &file : nullptr;
}

bool PayloadFile::Read(const PayloadReference& payload, Block& bytes)
{
    BrowserDatabaseChunk header;
    BinaryFile* file = Open(payload, header);
    return file && file->SeekTo(static_cast<int64_t>(payload.offset)) && ReadChunkPayload(*file, bytes);
}

int64_t PayloadFile::LengthOf(const PayloadReference& payload)
{
    BrowserDatabaseChunk header;
    return Open(payload, header) ? static_cast<int64_t>(header.length) : -1;
}

// --- The place in a record ---

ContainerSlot::ContainerSlot(ItemRecord& owner, BaseContainer* outer, int32_t slotKey)
    : record(owner)
    , parent(outer)
    , key(slotKey)
{
    slot = parent ? parent->FindContainer(key) : nullptr;
    isTemporary = !slot;
    if (parent && !slot)
        (void)ChangeValues(record, [this](BaseContainer&) { return (slot = parent->DemandContainer(key)) != nullptr; });
}

ContainerSlot::~ContainerSlot()
{
    if (slot && isTemporary)
        (void)ChangeValues(record, [this](BaseContainer&) { return parent->Remove(key); });
}

void ContainerSlot::Fill(BaseContainer& content)
{
    slot->Swap(content);
    isTemporary = false;
}

} // namespace browser
