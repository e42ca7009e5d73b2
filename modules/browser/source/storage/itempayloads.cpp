#include "storage/itempayloads.h"

namespace browser {

namespace {

constexpr int32_t versionWithIds = 3; // of payload chunks

BaseContainer* FindPreview(ItemRecord& record, int32_t number)
{
    BaseContainer* previews = record.values.FindContainer(ItemPreviews);
    return previews ? previews->FindContainer(number) : nullptr;
}

void RemoveExternals(LibraryState& library, ItemRecord& record)
{
    FilePath path;
    if (DataPath(library, record, path))
        (void)RemoveFile(path);
    const BaseContainer* previews = record.values.GetContainer(ItemPreviews);
    int32_t number = 0, type = 0;
    for (int32_t place = 0; previews && previews->EntryAt(place, number, type); place++)
        if (const BaseContainer* preview = previews->GetContainer(number); preview && PreviewPath(library, *preview, path))
            (void)RemoveFile(path);
}

} // namespace

ChunkTag TagOf(PayloadKind kind)
{
    return kind == PayloadKind::Data ? ChunkTag::Data : ChunkTag::Image;
}

bool ListPayloads(ItemRecord& record, Array<PayloadReference>& payloads)
{
    const BaseContainer* data = record.values.GetContainer(ItemData);
    const BaseContainer* previews = record.values.GetContainer(ItemPreviews);
    if ((!data && record.values.HoldsContainer(ItemData)) || (!previews && record.values.HoldsContainer(ItemPreviews)))
        return false;
    if (data)
        if (const int64_t offset = data->GetInt64(DataOffset, 0); offset != 0)
            if (!payloads.Append({ &record, PayloadKind::Data, 0, static_cast<uint64_t>(offset) }))
                return false;
    int32_t number = 0, type = 0;
    for (int32_t place = 0; previews && previews->EntryAt(place, number, type); place++) {
        const BaseContainer* preview = previews->GetContainer(number);
        if (!preview && type == VX3_VALUE_CONTAINER)
            return false;
        const int64_t offset = preview ? preview->GetInt64(PictureOffset, 0) : 0;
        if (offset != 0 && !payloads.Append({ &record, PayloadKind::Preview, number, static_cast<uint64_t>(offset) }))
            return false;
    }
    return true;
}

bool SetPayloadOffset(ItemRecord& record, PayloadKind kind, int32_t preview, uint64_t offset)
{
    const auto stored = static_cast<int64_t>(offset);
    if (kind == PayloadKind::Data) {
        BaseContainer* data = record.values.FindContainer(ItemData);
        return data && (data->GetInt64(DataOffset, 0) == stored || data->SetInt64(DataOffset, stored));
    }
    BaseContainer* found = FindPreview(record, preview);
    return found && (found->GetInt64(PictureOffset, 0) == stored || found->SetInt64(PictureOffset, stored));
}

bool DataPath(const LibraryState& library, const ItemRecord& record, FilePath& path)
{
    String name;
    return !library.dataInFile && !library.imagePath.IsEmpty() && name.SetInteger(record.id) && name.Append("_data")
        && path.SetJoined(library.imagePath, name);
}

bool PreviewPath(const LibraryState& library, const BaseContainer& preview, FilePath& path)
{
    const String name = preview.GetText(PictureFile);
    return !library.imagePath.IsEmpty() && !name.IsEmpty() && IsNameAllowed(name) && path.SetJoined(library.imagePath, name);
}

bool IsPayload(BinaryFile& file, int64_t length, const LibraryState& library, const PayloadReference& payload, BrowserDatabaseChunk& header)
{
    const auto offset = static_cast<int64_t>(payload.offset);
    if (offset < chunkHeaderSize || offset > length - chunkHeaderSize || !file.SeekTo(offset) || !ReadChunkHeader(file, header))
        return false;
    const bool hasId = library.loadedVersion < versionWithIds || header.id == payload.record->id;
    uint64_t next = 0;
    return header.tag == TagOf(payload.kind) && hasId && FindNextChunk(payload.offset, header.length, static_cast<uint64_t>(length), next);
}

void KillPayloads(LibraryState& library, ItemRecord& record)
{
    Array<PayloadReference> payloads;
    BrowserDatabaseChunk header;
    if (ListPayloads(record, payloads) && payloads.Count() > 0) {
        const int64_t length = library.file.Length();
        for (const PayloadReference& payload : payloads)
            if (IsPayload(library.file, length, library, payload, header))
                (void)InvalidateChunk(library.file, payload.offset, header.tag);
    }
    RemoveExternals(library, record);
    const BaseContainer* previews = record.values.GetContainer(ItemPreviews);
    int32_t number = 0, type = 0;
    for (int32_t place = 0; previews && previews->EntryAt(place, number, type); place++)
        (void)library.bitmapCache.Forget(record.id, number);
}

} // namespace browser
