#include "storage/libraryupgrade.h"

#include "storage/itempayloads.h"

namespace browser {

namespace {

constexpr int32_t versionWithIds = 3;      // of payload chunks
constexpr int32_t versionAfterIds = 4;     // that writing them leads to
constexpr int32_t versionWithPreviews = 5; // in a place of their own
constexpr int32_t idPlace = 4;             // in the header of a chunk

ItemRecord* LiveAt(const LibraryState& library, size_t place)
{
    ItemRecord* record = library.items.At(place);
    return record && record->state == ItemState::Live ? record : nullptr;
}

void Note(LibraryState& library, ItemRecord& record)
{
    record.isChanged = true;
    library.items.NoteChanged(record);
}

bool WriteId(BinaryFile& file, const LibraryState& library, const PayloadReference& payload)
{
    BrowserDatabaseChunk header;
    return !IsPayload(file, file.Length(), library, payload, header)
        || (file.SeekTo(static_cast<int64_t>(payload.offset) + idPlace) && file.WriteWord(static_cast<uint32_t>(payload.record->id)));
}

// Previews may have moved already: the file tells its old version until something else is written.
bool WriteIdsOf(BinaryFile& file, const LibraryState& library, ItemRecord& record)
{
    const BaseContainer* data = record.values.GetContainer(ItemData);
    const int64_t offset = data ? data->GetInt64(DataOffset, 0) : 0;
    if (offset != 0 && !WriteId(file, library, { &record, PayloadKind::Data, 0, static_cast<uint64_t>(offset) }))
        return false;
    const BaseContainer* path = record.values.GetContainer(ItemPath);
    const BaseContainer* oldPreviews = path ? path->GetContainer(PathOldPreviews) : nullptr;
    int32_t number = 0, type = 0;
    for (const BaseContainer* previews : { oldPreviews, record.values.GetContainer(ItemPreviews) })
        for (int32_t place = 0; previews && previews->EntryAt(place, number, type); place++) {
            const BaseContainer* preview = previews->GetContainer(number);
            const int64_t image = preview ? preview->GetInt64(PictureOffset, 0) : 0;
            if (image != 0 && !WriteId(file, library, { &record, PayloadKind::Preview, number, static_cast<uint64_t>(image) }))
                return false;
        }
    return true;
}

// A file that cannot be written keeps chunks without ids, which are then not compared.
void WriteIds(LibraryState& library)
{
    BinaryFile file;
    if (library.readOnly || library.needsBackup || !file.Open(library.filePath, OpenMode::Update))
        return;
    bool isWritten = true;
    for (size_t place = 0; isWritten && place < library.items.PlaceCount(); place++)
        if (ItemRecord* record = LiveAt(library, place))
            isWritten = WriteIdsOf(file, library, *record);
    isWritten = file.Close() && isWritten;
    library.stamp = StampOf(library.filePath);
    if (isWritten) {
        library.version = versionAfterIds;
        library.loadedVersion = versionAfterIds;
    }
}

bool MovePreviews(ItemRecord& record)
{
    BaseContainer* path = record.values.FindContainer(ItemPath);
    BaseContainer* previews = path ? path->FindContainer(PathOldPreviews) : nullptr;
    if (!previews || previews->Count() == 0 || !record.values.SetContainer(ItemPreviews, *previews))
        return false;
    (void)path->Remove(PathOldPreviews);
    return true;
}

// Kept: `dirty` says afterwards whether this has changed anything, whatever it was before.
void MoveAllPreviews(LibraryState& library)
{
    library.dirty = false;
    for (size_t place = 0; place < library.items.PlaceCount(); place++)
        if (ItemRecord* record = LiveAt(library, place); record && MovePreviews(*record)) {
            Note(library, *record);
            library.dirty = true;
        }
    library.version = versionWithPreviews;
}

// Kept: the info chunk keeps its old number until something else writes it, so this is done
// at each load till then.
void RenewItems(LibraryState& library)
{
    library.dirty = false;
    for (size_t place = 0; place < library.items.PlaceCount(); place++)
        if (ItemRecord* record = LiveAt(library, place)) {
            Note(library, *record);
            library.dirty = true;
        }
    library.version = currentVersion;
}

} // namespace

void UpgradeLibrary(LibraryState& library)
{
    if (library.version < versionWithIds)
        WriteIds(library);
    if (library.version < versionWithPreviews)
        MoveAllPreviews(library);
    if (library.version < currentVersion)
        RenewItems(library);
}

} // namespace browser
