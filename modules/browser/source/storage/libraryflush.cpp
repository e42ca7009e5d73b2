#include "storage/libraryflush.h"

#include "storage/itempayloads.h"

namespace browser {

namespace {

constexpr BrowserDatabaseChunk closingChunk = { ChunkTag::FileEnd, 0, 0 };

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

bool WriteInfo(LibraryState& library, const BaseContainer& info)
{
    if (!AppendContainer(library, ChunkTag::Info, 0, info, library.infoOffset))
        return false;
    library.infoDirty = false;
    return true;
}

bool WriteCategory(LibraryState& library, const BaseContainer& category)
{
    if (!AppendContainer(library, ChunkTag::Category, 0, category, library.categoryOffset))
        return false;
    library.categoryDirty = false;
    return true;
}

// An item whose chunk could not be marked would come back at the next start: it is kept.
bool RemoveDeleted(LibraryState& library, ItemRecord& record)
{
    if (record.chunk)
        (void)InvalidateChunk(library.file, record.chunk, ChunkTag::Item);
    library.hasUnsafeDeletions = true;
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
    if (!library.file.IsUsable())
        return false;
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

bool WriteChanges(LibraryState& library)
{
    const bool hadInfo = library.infoOffset != 0;
    BaseContainer info, category;
    if (!MakeInfo(library, info) || !MakeCategory(library, category)) // before the old ones are marked
        return false;
    MarkReplaced(library);
    if (!WriteHead(library) || ((library.infoDirty || !hadInfo) && !WriteInfo(library, info)))
        return false;
    if (library.hasCategory && (library.categoryDirty || !hadInfo) && !WriteCategory(library, category))
        return false;
    const bool isWritten = WriteItemChanges(library, library.legacyOffset != 0);
    const bool isClosed = library.file.SeekTo(static_cast<int64_t>(library.endOffset)) && WriteChunkHeader(library.file, closingChunk);
    if (!isWritten || !isClosed)
        return false;
    library.legacyOffset = 0;
    library.dirty = false;
    if (library.stamp.length > static_cast<int64_t>(library.endOffset) + chunkHeaderSize)
        library.rewriteWanted = true; // an old tail that a crash might bring back
    return true;
}

} // namespace browser
