// The data of an item.

#include "storage/browserdatabaseitem.h"
#include "storage/itempacking.h"
#include "storage/payloadio.h"

namespace browser {

namespace {

constexpr LockRank rank = LockRank::Library;

PayloadReference DataOf(ItemRecord& record, const BaseContainer& stored)
{
    return { &record, PayloadKind::Data, 0, static_cast<uint64_t>(stored.GetInt64(DataOffset, 0)) };
}

bool ReadData(PayloadFile& file, const LibraryState& library, const PayloadReference& payload, Block& data)
{
    if (payload.offset != 0)
        return file.Read(payload, data);
    FilePath path;
    return DataPath(library, *payload.record, path) && ReadWholeFile(path, data);
}

int64_t LengthOfData(PayloadFile& file, const LibraryState& library, const PayloadReference& payload)
{
    if (payload.offset != 0) {
        std::atomic<int64_t>& known = payload.record->dataLength;
        if (known.load(std::memory_order_relaxed) < 0)
            known.store(file.LengthOf(payload), std::memory_order_relaxed);
        return known.load(std::memory_order_relaxed);
    }
    FilePath path;
    return DataPath(library, *payload.record, path) ? LengthOfFile(path) : -1;
}

bool WriteDataFile(const LibraryState& library, const ItemRecord& record, const void* bytes, int64_t size)
{
    FilePath path;
    return DataPath(library, record, path) && WriteWholeFile(path, bytes, size);
}

bool RemoveDataFile(const LibraryState& library, const ItemRecord& record)
{
    FilePath path;
    return !DataPath(library, record, path) || RemoveFile(path);
}

// The record lets go of the chunk first, since only that can be taken back.
bool ForgetChunk(LibraryState& library, BaseContainer& stored, const PayloadReference& payload)
{
    if (!stored.SetInt64(DataOffset, 0))
        return false;
    if (KillPayload(library, payload))
        return true;
    (void)stored.SetInt64(DataOffset, static_cast<int64_t>(payload.offset));
    return false;
}

} // namespace

bool BrowserDatabaseItem::SetData(const void* bytes, int64_t size, bool compress)
{
    Block packed;
    if (!CanBePayload(bytes, size) || !IsWritable())
        return false;
    if (compress && PackData(bytes, size, packed))
        return SetStoredData(packed.Bytes(), packed.Size(), StorageMode::Packed, size);
    return SetStoredData(bytes, size, StorageMode::Raw, size);
}

// Kept: a chunk that is replaced is not marked dead. The record tells of the new one only
// when that is stored.
bool BrowserDatabaseItem::SetStoredData(const void* bytes, int64_t size, StorageMode mode, int64_t unpackedSize)
{
    BaseContainer entry;
    if (!CanBePayload(bytes, size) || !entry.SetInt64(DataOffset, 0) || !entry.SetInt32(DataMode, static_cast<int32_t>(mode))
        || !entry.SetInt64(DataUnpacked, unpackedSize))
        return false;
    const WriteGuard guard(database->Lock(), rank);
    LibraryState& state = database->State();
    if (state.readOnly)
        return false;
    ContainerSlot slot(&record->values, ItemData);
    if (!slot
        || !(state.dataInFile ? AppendPayload(state, PayloadKind::Data, id, bytes, size, entry)
                              : WriteDataFile(state, *record, bytes, size)))
        return false;
    slot.Fill(entry);
    record->dataLength.store(state.dataInFile ? size : -1, std::memory_order_relaxed);
    database->NoteChanged(*record);
    return true;
}

bool BrowserDatabaseItem::GetStoredData(Block& data, StorageMode& mode, int64_t& unpackedSize) const
{
    return ReadPayloads(*database, [&](PayloadFile& file) {
        const BaseContainer* stored = record->values.GetContainer(ItemData);
        if (!stored || !ReadData(file, database->State(), DataOf(*record, *stored), data))
            return false;
        mode = static_cast<StorageMode>(stored->GetInt32(DataMode, 0));
        unpackedSize = mode == StorageMode::Raw ? data.Size() : stored->GetInt64(DataUnpacked, 0);
        return true;
    });
}

bool BrowserDatabaseItem::GetData(Block& data) const
{
    Block stored;
    StorageMode mode = StorageMode::Raw;
    int64_t size = 0;
    if (!GetStoredData(stored, mode, size))
        return false;
    if (mode == StorageMode::Raw) {
        data.Adopt(stored.Take(), size);
        return true;
    }
    return (mode != StorageMode::OldPacked || RenewPacking(stored, size)) && UnpackData(stored, data);
}

int64_t BrowserDatabaseItem::GetDataSize(bool unpacked) const
{
    return ReadPayloads(*database, [&](PayloadFile& file) -> int64_t {
        const BaseContainer* stored = record->values.GetContainer(ItemData);
        if (!stored)
            return -1;
        if (unpacked && stored->GetInt32(DataMode, 0) != static_cast<int32_t>(StorageMode::Raw))
            return stored->GetInt64(DataUnpacked, 0);
        return LengthOfData(file, database->State(), DataOf(*record, *stored));
    });
}

// What is packed stays packed.
bool BrowserDatabaseItem::CopyDataFrom(const BrowserDatabaseItem& source)
{
    Block stored;
    StorageMode mode = StorageMode::Raw;
    int64_t size = 0;
    if (!source.GetStoredData(stored, mode, size))
        return false;
    if (mode == StorageMode::Raw)
        return SetData(stored.Bytes(), stored.Size(), true);
    if (mode == StorageMode::OldPacked && !RenewPacking(stored, size))
        return false;
    return SetStoredData(stored.Bytes(), stored.Size(), StorageMode::Packed, size);
}

bool BrowserDatabaseItem::DeleteData()
{
    const WriteGuard guard(database->Lock(), rank);
    LibraryState& state = database->State();
    if (state.readOnly)
        return false;
    BaseContainer* stored = record->values.FindContainer(ItemData);
    if (!stored)
        return true;
    const PayloadReference payload = DataOf(*record, *stored);
    if (!(payload.offset != 0 ? ForgetChunk(state, *stored, payload) : RemoveDataFile(state, *record)))
        return false;
    database->NoteChanged(*record);
    return true;
}

} // namespace browser
