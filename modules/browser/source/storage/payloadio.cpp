#include "storage/payloadio.h"

#include "storage/browserdatabaseitem.h"
#include "storage/libraryfile.h"

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
    if (!(isWritten ? RestAfterPayload(library) : CloseAfterUpdate(library) && false))
        return false;
    library.endOffset += static_cast<uint64_t>(chunkHeaderSize + size);
    if (library.isResting)
        library.safeEnd = library.endOffset;
    return true;
}

bool KillPayload(LibraryState& library, const PayloadReference& payload)
{
    BrowserDatabaseChunk header;
    if (!OpenForUpdate(library))
        return false;
    if (IsPayload(library.file, library.file.Length(), library, payload, header))
        (void)InvalidateChunk(library.file, payload.offset, header.tag);
    return CloseAfterUpdate(library);
}

// --- Files beside the library ---

namespace {

// The old file goes when the new one stands in its place, and back if that fails.
bool TakePlaceOf(const FilePath& path, const FilePath& fresh)
{
    FilePath old;
    const bool isThere = host->folder->exists(path.Value());
    if (!MakeSibling(path, ".old", old) || (isThere && (!RemoveFile(old) || !host->folder->rename(path.Value(), old.Value()))))
        return false;
    if (!host->folder->rename(fresh.Value(), path.Value())) {
        if (isThere)
            (void)host->folder->rename(old.Value(), path.Value());
        return false;
    }
    (void)RemoveFile(old); // one that stays harms nobody
    return true;
}

} // namespace

// A file that is replaced goes when the new one is whole.
bool WriteWholeFile(const FilePath& path, const void* bytes, int64_t size)
{
    FilePath fresh;
    BinaryFile file;
    if (!MakeSibling(path, ".new", fresh) || !file.Open(fresh, OpenMode::Create))
        return false;
    const bool isWritten = file.Write(bytes, size);
    const bool isClosed = file.Close();
    if (isWritten && isClosed && TakePlaceOf(path, fresh))
        return true;
    (void)RemoveFile(fresh);
    return false;
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

PayloadFile::~PayloadFile()
{
    if (own && own->IsUsable())
        library.idleReader.Leave(own);
    else
        Destroy(own);
}

bool PayloadFile::OpenOwn()
{
    if (own || (own = library.idleReader.Take()))
        return true;
    own = Make<BinaryFile>()();
    if (own && own->Open(library.filePath, OpenMode::Read))
        return true;
    Destroy(std::exchange(own, nullptr));
    return false;
}

BinaryFile* PayloadFile::Open(const PayloadReference& payload, BrowserDatabaseChunk& header)
{
    const bool isShared = library.IsOpen();
    if (!isShared && !OpenOwn())
        return nullptr;
    BinaryFile& file = isShared ? library.file : *own;
    const int64_t length = isShared ? file.Length() : library.stamp.length; // of a file that is not written
    return IsPayload(file, length, library, payload, header) ? &file : nullptr;
}

// The header is right in front of the position.
bool PayloadFile::Read(const PayloadReference& payload, Block& bytes)
{
    BrowserDatabaseChunk header;
    BinaryFile* file = Open(payload, header);
    if (!file || !bytes.Alloc(static_cast<int64_t>(header.length)))
        return false;
    if (file->Read(bytes.Bytes(), bytes.Size()) == bytes.Size())
        return true;
    bytes.Free();
    return false;
}

int64_t PayloadFile::LengthOf(const PayloadReference& payload)
{
    BrowserDatabaseChunk header;
    return Open(payload, header) ? static_cast<int64_t>(header.length) : -1;
}

// --- The place in a record ---

ContainerSlot::ContainerSlot(BaseContainer* outer, int32_t slotKey)
    : parent(outer)
    , key(slotKey)
{
    slot = parent ? parent->FindContainer(key) : nullptr;
    isTemporary = !slot && parent && !parent->HoldsContainer(key);
    if (parent && !slot)
        slot = parent->DemandContainer(key);
}

ContainerSlot::~ContainerSlot()
{
    if (slot && isTemporary)
        (void)parent->Remove(key);
}

void ContainerSlot::Fill(BaseContainer& content)
{
    slot->Swap(content);
    isTemporary = false;
}

} // namespace browser
