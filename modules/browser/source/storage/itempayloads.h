// What a record names outside of itself: its data and its previews, as chunks of the library
// file or as files beside it.
#pragma once

#include "storage/librarystate.h"

namespace browser {

enum class PayloadKind : int32_t { Data, Preview };

// A chunk that a record names.
struct PayloadReference {
    ItemRecord* record = nullptr;
    PayloadKind kind = PayloadKind::Data;
    int32_t preview = 0; // number of the preview
    uint64_t offset = 0;
};

ChunkTag TagOf(PayloadKind kind);

// All chunks that the record names, data first, previews in their order.
[[nodiscard]] bool ListPayloads(ItemRecord& record, Array<PayloadReference>& payloads);

// Where the record keeps the offset of a payload; replacing one needs no memory.
bool SetPayloadOffset(ItemRecord& record, PayloadKind kind, int32_t preview, uint64_t offset);

// The paths of what lies outside of the file.
[[nodiscard]] bool DataPath(const LibraryState& library, const ItemRecord& record, FilePath& path);
[[nodiscard]] bool PreviewPath(const LibraryState& library, const BaseContainer& preview, FilePath& path);

// Does the chunk at an offset of a file so long hold this payload? What a file says is not
// believed. The position is behind the header then.
[[nodiscard]] bool IsPayload(BinaryFile& file, int64_t length, const LibraryState& library, const PayloadReference& payload,
                             BrowserDatabaseChunk& header);

// Makes all of the record's chunks dead ones, and takes its files away. The library's file
// is open for update; its position is undefined afterwards.
void KillPayloads(LibraryState& library, ItemRecord& record);

} // namespace browser
