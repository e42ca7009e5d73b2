#include "storage/libraryrewrite.h"

#include <algorithm>

#include "storage/itempayloads.h"
#include "storage/libraryfile.h"

namespace browser {

namespace {

constexpr uint64_t lost = ~uint64_t(0); // of a payload that could not be read

struct CopiedPayload {
    PayloadReference reference; // in the old file
    uint64_t copy = 0;          // its offset in the new one, or `lost`
};

struct CopiedItem {
    ItemRecord* record = nullptr;
    size_t firstPayload = 0;
    size_t payloadCount = 0;
    uint64_t chunk = 0; // of the new file
};

class Rewrite
{
public:
    explicit Rewrite(LibraryState& rewritten)
        : library(rewritten)
    {
    }
    bool Run();

private:
    bool Prepare();
    bool Replace();
    bool ListItems();
    void DropRepeated();
    bool WriteFile();
    bool WriteHead();
    bool CopyPayloads();
    bool CopyPayload(CopiedPayload& payload);
    bool WriteItems();
    bool WriteItem(CopiedItem& item);
    bool WriteWithoutLost(CopiedItem& item);
    bool AppendItem(CopiedItem& item, const BaseContainer& values);
    bool PointTo(const CopiedItem& item, bool newFile);
    bool AdoptItem(const CopiedItem& item);
    bool TakePlace();
    void Adopt();
    bool Append(ChunkTag tag, const BaseContainer& container, uint64_t& offset);

    LibraryState& library;
    FilePath backup;
    FilePath fresh;
    BinaryFile source;
    BinaryFile target;
    Array<CopiedItem> items;
    Array<CopiedPayload> payloads;
    uint64_t end = 0; // of what is written
    uint64_t infoOffset = 0;
    uint64_t categoryOffset = 0;
};

bool Rewrite::Run()
{
    if (library.openCount != 0 || !OpenForUpdate(library)) // so that nobody else writes it meanwhile
        return false;
    const FileStamp stamp = library.stamp;
    const bool isReplaced = Prepare() && Replace();
    (void)CloseAfterUpdate(library);
    library.stamp = stamp;
    if (isReplaced)
        Adopt();
    return isReplaced;
}

bool Rewrite::Replace()
{
    const bool isWritten = WriteFile();
    const bool areClosed = source.Close() && target.Close();
    if (isWritten && areClosed && TakePlace())
        return true;
    (void)RemoveFile(fresh);
    return false;
}

bool Rewrite::Prepare()
{
    return MakeSibling(library.filePath, ".bak", backup) && MakeSibling(library.filePath, ".new", fresh) && ListItems()
        && source.Open(library.filePath, OpenMode::Read) && target.Open(fresh, OpenMode::Create);
}

bool Rewrite::ListItems()
{
    Array<PayloadReference> own;
    for (size_t place = 0; place < library.items.PlaceCount(); place++) {
        ItemRecord* record = library.items.At(place);
        if (!record || record->state == ItemState::Deleted)
            continue;
        own.Clear();
        if (!ListPayloads(*record, own) || !items.Append({ record, payloads.Count(), own.Count(), 0 }))
            return false;
        for (const PayloadReference& payload : own)
            if (!payloads.Append({ payload, 0 }))
                return false;
    }
    DropRepeated();
    return true;
}

// Two records that name one chunk come from no writer: the first one gets it.
void Rewrite::DropRepeated()
{
    Array<size_t> sorted;
    if (!sorted.Reserve(payloads.Count()))
        return; // copies too much, and nothing wrong
    for (size_t i = 0; i < payloads.Count(); i++)
        (void)sorted.Append(i);
    const auto offsetOf = [this](size_t i) { return payloads[i].reference.offset; };
    std::sort(sorted.begin(), sorted.end(),
              [&](size_t a, size_t b) { return offsetOf(a) != offsetOf(b) ? offsetOf(a) < offsetOf(b) : a < b; });
    for (size_t i = 1; i < sorted.Count(); i++)
        if (offsetOf(sorted[i]) == offsetOf(sorted[i - 1]))
            payloads[sorted[i]].copy = lost;
}

bool Rewrite::WriteFile()
{
    if (!WriteHead() || !CopyPayloads() || !WriteItems() || !WriteChunkHeader(target, { ChunkTag::FileEnd, 0, 0 }))
        return false;
    return target.Length() == static_cast<int64_t>(end) + chunkHeaderSize;
}

bool Rewrite::Append(ChunkTag tag, const BaseContainer& container, uint64_t& offset)
{
    offset = end;
    return WriteContainerChunk(target, tag, 0, container, offset, end);
}

bool Rewrite::WriteHead()
{
    BaseContainer info, category;
    end = chunkHeaderSize;
    if (!WriteChunkHeader(target, { ChunkTag::FileHead, 0, 0 }) || !MakeInfo(library, info) || !Append(ChunkTag::Info, info, infoOffset))
        return false;
    return !library.hasCategory || (MakeCategory(library, category) && Append(ChunkTag::Category, category, categoryOffset));
}

bool Rewrite::CopyPayloads()
{
    for (CopiedPayload& payload : payloads)
        if (payload.copy != lost && !CopyPayload(payload))
            return false;
    return true;
}

// What is no payload is left out. Where the disk or the memory fails, the whole rewrite does:
// the payload may be all right.
bool Rewrite::CopyPayload(CopiedPayload& payload)
{
    Block bytes;
    BrowserDatabaseChunk header;
    const PayloadReference& old = payload.reference;
    payload.copy = lost;
    library.hasLostPayload = true;
    if (!IsPayload(source, source.Length(), library, old, header))
        return source.IsUsable();
    if (!source.SeekTo(static_cast<int64_t>(old.offset)) || !ReadChunkPayload(source, bytes)
        || !WriteChunkWithPayload(target, header.tag, old.record->id, bytes.Bytes(), bytes.Size()))
        return false;
    payload.copy = end;
    end += static_cast<uint64_t>(chunkHeaderSize + bytes.Size());
    return true;
}

bool Rewrite::WriteItems()
{
    for (CopiedItem& item : items)
        if (!WriteItem(item))
            return false;
    return true;
}

bool Rewrite::WriteItem(CopiedItem& item)
{
    for (size_t i = 0; i < item.payloadCount; i++)
        if (payloads[item.firstPayload + i].copy == lost)
            return WriteWithoutLost(item);
    const bool isWritten = PointTo(item, true) && AppendItem(item, item.record->values);
    if (!PointTo(item, false) && !PointTo(item, false))
        library.isDetached = true;
    return isWritten && !library.isDetached;
}

bool Rewrite::WriteWithoutLost(CopiedItem& item)
{
    ItemRecord copy(item.record->id, item.record->owner);
    if (!copy.values.Set(item.record->values))
        return false;
    for (size_t i = 0; i < item.payloadCount; i++) {
        const CopiedPayload& payload = payloads[item.firstPayload + i];
        const PayloadReference& old = payload.reference;
        BaseContainer* previews = copy.values.FindContainer(ItemPreviews);
        const bool isDone = payload.copy == lost && old.kind == PayloadKind::Preview
            ? previews && previews->Remove(old.preview)
            : SetPayloadOffset(copy, old.kind, old.preview, payload.copy == lost ? 0 : payload.copy);
        if (!isDone)
            return false;
    }
    return AppendItem(item, copy.values);
}

bool Rewrite::AppendItem(CopiedItem& item, const BaseContainer& values)
{
    item.chunk = end;
    return WriteContainerChunk(target, ChunkTag::Item, item.record->id, values, item.chunk, end);
}

// Replacing a number takes no memory in the hosts that are known.
bool Rewrite::PointTo(const CopiedItem& item, bool newFile)
{
    bool isDone = true;
    for (size_t i = 0; i < item.payloadCount; i++) {
        const CopiedPayload& payload = payloads[item.firstPayload + i];
        const PayloadReference& old = payload.reference;
        isDone = SetPayloadOffset(*old.record, old.kind, old.preview, newFile ? payload.copy : old.offset) && isDone;
    }
    return isDone;
}

// If the last step fails, the old file goes back to its place. A disk may rename a file and tell
// that it has not.
bool Rewrite::TakePlace()
{
    const bool isFree = RemoveFile(backup) && host->folder->rename(library.filePath.Value(), backup.Value());
    if (!isFree && (host->folder->exists(library.filePath.Value()) || !host->folder->exists(backup.Value())))
        return false;
    if (host->folder->rename(fresh.Value(), library.filePath.Value()) || !host->folder->exists(fresh.Value()))
        return true;
    library.isDisplaced = !host->folder->rename(backup.Value(), library.filePath.Value()) && host->folder->exists(backup.Value());
    return false;
}

bool Rewrite::AdoptItem(const CopiedItem& item)
{
    bool isDone = true;
    for (size_t i = 0; i < item.payloadCount; i++) {
        const CopiedPayload& payload = payloads[item.firstPayload + i];
        const PayloadReference& old = payload.reference;
        if (payload.copy == lost && old.kind == PayloadKind::Preview)
            (void)old.record->values.FindContainer(ItemPreviews)->Remove(old.preview);
        else
            isDone = SetPayloadOffset(*old.record, old.kind, old.preview, payload.copy == lost ? 0 : payload.copy) && isDone;
    }
    return isDone;
}

void Rewrite::Adopt()
{
    for (const CopiedItem& item : items) {
        item.record->chunk = item.chunk;
        item.record->isChanged = false;
        if (!AdoptItem(item) && !AdoptItem(item))
            library.isDetached = true;
    }
    for (size_t place = 0; place < library.items.PlaceCount(); place++)
        if (ItemRecord* record = library.items.At(place); record && record->state == ItemState::Deleted) {
            record->chunk = 0; // it is not in the new file
            (void)record->values.Remove(ItemData);
            (void)record->values.Remove(ItemPreviews);
        }
    library.infoOffset = infoOffset;
    library.categoryOffset = categoryOffset;
    library.legacyOffset = library.headLength = 0;
    library.endOffset = end;
    library.loadedVersion = currentVersion;
    library.needsBackup = false;
    library.stamp = StampOf(library.filePath);
}

} // namespace

bool RewriteLibrary(LibraryState& library)
{
    return Rewrite(library).Run();
}

} // namespace browser
