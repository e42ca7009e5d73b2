// How data of items is packed: deflated, behind its size in 32 bits. Any thread.
#pragma once

#include "storage/chunkio.h"
#include "storage/itemrecord.h"

namespace browser {

// False if that makes it no smaller, or cannot be done.
[[nodiscard]] bool PackData(const void* bytes, int64_t size, Block& packed);
// Of the old form, the first four bytes become the size that its record tells.
[[nodiscard]] bool RenewPacking(Block& packed, int64_t unpackedSize);
// Never more than the size in front of the packed bytes.
[[nodiscard]] bool UnpackData(const Block& packed, Block& data);

void FreeItemCompressor(); // at the end of a life

} // namespace browser
