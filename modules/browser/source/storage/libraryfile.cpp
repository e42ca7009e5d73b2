#include "storage/libraryfile.h"

#include "services/resources.h"

namespace browser {

namespace {

void TellChanged(const LibraryState& library)
{
    String line("CB: somebody else has changed the library, so it is not written: ");
    String path;
    (void)host->path->getText(library.filePath.Value(), path.Value());
    (void)line.Append(path);
    host->console->line(line.Value());
}

bool Refuse(const LibraryState& library)
{
    TellChanged(library);
    return false;
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

// --- Opening ---

// The date is asked for before the file is opened, which would make it if it had gone.
bool HasOwnDate(const LibraryState& library)
{
    FileStamp now = { library.stamp.length, {} };
    const bool isThere = host->folder->date(library.filePath.Value(), VX3_DATE_MODIFIED, &now.date);
    return isThere == (library.stamp.length >= 0) && (!isThere || now == library.stamp);
}

// From here on nobody else writes it, if the host can see to that.
bool OpenOwn(LibraryState& library)
{
    if (!library.file.Open(library.filePath, OpenMode::Update))
        return false;
    if (library.file.Length() == library.stamp.length)
        return true;
    (void)library.file.Close();
    return Refuse(library);
}

// Before the first write over what could not be read whole.
bool MakeBackup(LibraryState& library)
{
    if (!library.needsBackup)
        return true;
    FilePath backup;
    if (!MakeSibling(library.filePath, ".bak", backup) || !RemoveFile(backup)
        || !host->folder->copy(library.filePath.Value(), backup.Value(), 0, library.stamp.length, nullptr, nullptr, nullptr))
        return false;
    library.needsBackup = false;
    return true;
}

bool OpenWithBackup(LibraryState& library)
{
    if (!OpenOwn(library))
        return false;
    if (MakeBackup(library))
        return true;
    (void)library.file.Close();
    return false;
}

// A file that is none of ours makes way for a new one.
bool OpenOrMake(LibraryState& library)
{
    const bool isThere = library.stamp.length >= 0;
    if (library.endOffset != 0)
        return isThere ? OpenWithBackup(library) : Refuse(library);
    if (isThere && (!OpenWithBackup(library) || !library.file.Close()))
        return false;
    return CreateEmptyFile(library) && OpenOwn(library);
}

bool OpenAnew(LibraryState& library)
{
    library.idleReader.Leave(nullptr);
    if (library.isDetached || library.mustRewrite || (library.slot == noSlot && library.endOffset == 0) || !TakeBackPlace(library))
        return false;
    return HasOwnDate(library) ? OpenOrMake(library) : Refuse(library);
}

// --- Closing ---

// What stands behind the place may not have reached the disk. The next write stores it again.
void TakeBack(LibraryState& library)
{
    const uint64_t place = library.safeEnd;
    for (size_t i = 0; i < library.items.PlaceCount(); i++)
        if (ItemRecord* record = library.items.At(i); record && record->chunk >= place) {
            record->chunk = 0;
            record->isChanged = true;
            library.items.NoteChanged(*record);
        }
    if (library.infoOffset >= place)
        library.infoOffset = 0;
    if (library.categoryOffset >= place) {
        library.categoryOffset = 0;
        library.categoryDirty = true;
    }
    library.endOffset = place;
    library.dirty = true;
}

// A payload is in no memory, and a deleted item in none any more, so that what the disk has of
// them is sorted out by a rewrite.
void NoteLoss(LibraryState& library)
{
    if (library.endOffset <= library.safeEnd && !library.hasUnsafeDeletions)
        return;
    if (!library.hasUnsafePayloads && !library.hasUnsafeDeletions)
        return TakeBack(library);
    library.mustRewrite = library.dirty = true;
}

bool Close(LibraryState& library)
{
    FileStamp stamp = { library.file.Length(), {} };
    const bool isClosed = library.file.Close();
    const bool isKnown = isClosed && stamp.length >= 0 && host->folder->date(library.filePath.Value(), VX3_DATE_MODIFIED, &stamp.date);
    library.stamp = isKnown ? stamp : StampOf(library.filePath);
    library.isResting = false;
    if (!isClosed)
        NoteLoss(library);
    return isClosed;
}

} // namespace

bool CreateEmptyFile(LibraryState& library)
{
    library.idleReader.Leave(nullptr);
    if (library.openCount != 0 || library.isDetached || !library.file.Open(library.filePath, OpenMode::Create))
        return false;
    const bool isWritten =
        WriteChunkHeader(library.file, { ChunkTag::FileHead, 0, 0 }) && WriteChunkHeader(library.file, { ChunkTag::FileEnd, 0, 0 });
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
    if (library.openCount == 0) {
        if (library.isResting && !(library.file.IsUsable() && HasOwnDate(library))) {
            (void)library.file.Close(); // what was written is on the disk, if it is still there
            library.isResting = false;
        }
        if (!library.isResting && !OpenAnew(library))
            return false;
        library.isResting = false;
        library.safeEnd = library.endOffset;
        library.hasUnsafePayloads = library.hasUnsafeDeletions = false;
    }
    library.openCount++;
    return true;
}

bool CloseAfterUpdate(LibraryState& library)
{
    return --library.openCount > 0 || Close(library);
}

bool RestAfterPayload(LibraryState& library)
{
    if (library.openCount > 1) {
        library.hasUnsafePayloads = true;
        library.openCount--;
        return true;
    }
    if (!library.file.Sync())
        return CloseAfterUpdate(library) && false;
    library.openCount = 0;
    library.isResting = true;
    library.stamp.length = library.file.Length();
    if (!host->folder->date(library.filePath.Value(), VX3_DATE_MODIFIED, &library.stamp.date))
        library.stamp = StampOf(library.filePath);
    return true;
}

} // namespace browser
