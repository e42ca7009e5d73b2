#include "storage/libraryflush.h"

#include "services/resources.h"
#include "storage/itempayloads.h"

namespace browser {

namespace {

constexpr BrowserDatabaseChunk closingChunk = { ChunkTag::FileEnd, 0, 0 };

void TellChanged(const LibraryState& library)
{
    String line("CB: somebody else has changed the library, so it is not written: ");
    String path;
    (void)host->path->getText(library.filePath.Value(), path.Value());
    (void)line.Append(path);
    host->console->line(line.Value());
}

// Before the first write over what could not be read whole.
bool MakeBackup(LibraryState& library)
{
    if (!library.needsBackup || library.stamp.length < 0)
        return true;
    FilePath backup;
    if (!MakeSibling(library.filePath, ".bak", backup))
        return false;
    if (!RemoveFile(backup)
        || !host->folder->copy(library.filePath.Value(), backup.Value(), 0, library.stamp.length, nullptr, nullptr, nullptr))
        return false;
    library.needsBackup = false;
    return true;
}

// Behind a rewrite whose last renaming failed, and the way back too.
bool TakeBackPlace(LibraryState& library)
{
    FilePath backup;
    if (!library.isDisplaced)
        return true;
    if (!MakeSibling(library.filePath, ".bak", backup)
        || (!host->folder->rename(backup.Value(), library.filePath.Value()) && host->folder->exists(backup.Value())))
        return false;
    library.isDisplaced = false;
    return true;
}

bool WriteHead(LibraryState& library)
{
    return library.file.SeekTo(0) && WriteChunkHeader(library.file, { ChunkTag::FileHead, 0, library.headLength });
}

// Appends a chunk with a container, and moves the end of the log behind it.
bool AppendContainer(LibraryState& library, ChunkTag tag, int32_t id, const BaseContainer& container, uint64_t& offset)
{
    const uint64_t start = library.endOffset;
    uint64_t end = 0;
    if (!WriteContainerChunk(library.file, tag, id, container, start, end))
        return false;
    offset = start;
    library.endOffset = end;
    return true;
}

void MarkReplaced(LibraryState& library)
{
    if (library.legacyOffset)
        (void)InvalidateChunk(library.file, library.legacyOffset, ChunkTag::OldItems);
    if (library.categoryDirty && library.categoryOffset)
        (void)InvalidateChunk(library.file, library.categoryOffset, ChunkTag::Category);
    if (library.infoDirty && library.infoOffset)
        (void)InvalidateChunk(library.file, library.infoOffset, ChunkTag::Info);
}

bool WriteInfo(LibraryState& library)
{
    BaseContainer info;
    if (!MakeInfo(library, info) || !AppendContainer(library, ChunkTag::Info, 0, info, library.infoOffset))
        return false;
    library.infoDirty = false;
    return true;
}

bool WriteCategory(LibraryState& library)
{
    BaseContainer category;
    if (!MakeCategory(library, category) || !AppendContainer(library, ChunkTag::Category, 0, category, library.categoryOffset))
        return false;
    library.categoryDirty = false;
    return true;
}

// An item whose chunk could not be marked would come back at the next start: it is kept.
bool RemoveDeleted(LibraryState& library, ItemRecord& record)
{
    if (record.chunk)
        (void)InvalidateChunk(library.file, record.chunk, ChunkTag::Item);
    KillPayloads(library, record);
    if (!library.file.IsUsable())
        return false;
    library.items.Remove(record);
    return true;
}

// Without success the record is still marked as changed, and as one that was never stored.
bool WriteItem(LibraryState& library, ItemRecord& record)
{
    if (record.chunk)
        (void)InvalidateChunk(library.file, record.chunk, ChunkTag::Item);
    record.chunk = 0;
    if (!AppendContainer(library, ChunkTag::Item, record.id, record.values, record.chunk))
        return false;
    record.isChanged = false;
    return true;
}

bool WriteItemChanges(LibraryState& library, bool all)
{
    Array<ItemRecord*> changed;
    if (!library.items.TakeChanged(changed, all))
        return false;
    bool isWritten = true;
    for (ItemRecord* record : changed) {
        const bool isWanted = record->state != ItemState::DeletePending;
        if (isWritten && record->state == ItemState::Deleted)
            isWritten = RemoveDeleted(library, *record);
        else if (isWritten && isWanted && (record->isChanged || all))
            isWritten = WriteItem(library, *record);
        if (!isWritten || !isWanted)
            library.items.NoteChanged(*record);
    }
    return isWritten;
}

} // namespace

bool CreateEmptyFile(LibraryState& library)
{
    library.idleReader.Leave(nullptr);
    if (library.openCount != 0 || library.isDetached || !library.file.Open(library.filePath, OpenMode::Create))
        return false;
    const bool isWritten = WriteChunkHeader(library.file, { ChunkTag::FileHead, 0, 0 }) && WriteChunkHeader(library.file, closingChunk);
    const bool isClosed = library.file.Close();
    library.stamp = StampOf(library.filePath);
    if (!isWritten || !isClosed)
        return false;
    library.headLength = 0;
    library.endOffset = chunkHeaderSize;
    library.infoOffset = library.categoryOffset = 0;
    return true;
}

bool OpenForUpdate(LibraryState& library)
{
    if (library.openCount > 0) {
        library.openCount++;
        return true;
    }
    library.idleReader.Leave(nullptr);
    if (library.isDetached || (library.slot == noSlot && library.endOffset == 0) || !TakeBackPlace(library))
        return false;
    if (!(StampOf(library.filePath) == library.stamp)) {
        TellChanged(library);
        return false;
    }
    if (!MakeBackup(library) || (library.endOffset == 0 && !CreateEmptyFile(library)))
        return false;
    if (!library.file.Open(library.filePath, OpenMode::Update))
        return false;
    library.openCount = 1;
    return true;
}

bool CloseAfterUpdate(LibraryState& library)
{
    if (--library.openCount > 0)
        return true;
    const bool isClosed = library.file.Close();
    library.stamp = StampOf(library.filePath);
    return isClosed;
}

bool WriteChanges(LibraryState& library)
{
    const bool hadInfo = library.infoOffset != 0;
    MarkReplaced(library);
    if (!WriteHead(library) || ((library.infoDirty || !hadInfo) && !WriteInfo(library)))
        return false;
    if (library.hasCategory && (library.categoryDirty || !hadInfo) && !WriteCategory(library))
        return false;
    const bool isWritten = WriteItemChanges(library, library.legacyOffset != 0);
    const bool isClosed = library.file.SeekTo(static_cast<int64_t>(library.endOffset)) && WriteChunkHeader(library.file, closingChunk);
    if (!isWritten || !isClosed)
        return false;
    library.legacyOffset = 0;
    library.dirty = false;
    if (library.file.Length() > static_cast<int64_t>(library.endOffset) + chunkHeaderSize)
        library.rewriteWanted = true; // an old tail that a crash might bring back
    return true;
}

} // namespace browser
