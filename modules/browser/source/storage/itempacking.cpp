#include "storage/itempacking.h"

#include <atomic>
#include <cstring>

namespace browser {

namespace {

constexpr int32_t bestLevel = 9;
constexpr int64_t sizeBytes = 4; // in front

std::atomic<VX3Compressor*> shared = nullptr;

// Made on first use; of two threads that make one at once the second takes the first one's.
VX3Compressor* Compressor()
{
    VX3Compressor* known = shared.load(std::memory_order_acquire);
    if (known)
        return known;
    VX3Compressor* made = host->compressor->create(VX3_COMPRESSOR_DEFLATE);
    if (!made || shared.compare_exchange_strong(known, made, std::memory_order_acq_rel))
        return made;
    host->compressor->free(made);
    return known;
}

void StoreSize(uint32_t size, uint8_t* bytes)
{
    for (int64_t i = sizeBytes - 1; i >= 0; i--, size >>= 8)
        bytes[i] = static_cast<uint8_t>(size);
}

uint32_t LoadSize(const uint8_t* bytes)
{
    return uint32_t(bytes[0]) << 24 | uint32_t(bytes[1]) << 16 | uint32_t(bytes[2]) << 8 | bytes[3];
}

} // namespace

bool PackData(const void* bytes, int64_t size, Block& packed)
{
    VX3Compressor* compressor = Compressor();
    void* block = nullptr;
    int64_t length = 0;
    if (!compressor || !host->compressor->compress(compressor, bytes, size, bestLevel, &block, &length))
        return false;
    Block deflated;
    deflated.Adopt(block, length);
    if (length + sizeBytes >= size || !packed.Alloc(length + sizeBytes))
        return false;
    StoreSize(static_cast<uint32_t>(size), packed.Bytes());
    std::memcpy(packed.Bytes() + sizeBytes, deflated.Bytes(), static_cast<size_t>(length));
    return true;
}

bool RenewPacking(Block& packed, int64_t unpackedSize)
{
    if (packed.Size() < sizeBytes || unpackedSize < 0 || unpackedSize > UINT32_MAX)
        return false;
    StoreSize(static_cast<uint32_t>(unpackedSize), packed.Bytes());
    return true;
}

bool UnpackData(const Block& packed, Block& data)
{
    VX3Compressor* compressor = Compressor();
    void* block = nullptr;
    int64_t length = 0;
    if (!compressor || packed.Size() < sizeBytes)
        return false;
    if (!host->compressor->decompress(compressor, packed.Bytes() + sizeBytes, packed.Size() - sizeBytes, LoadSize(packed.Bytes()), &block,
                                      &length))
        return false;
    data.Adopt(block, length);
    return true;
}

void FreeItemCompressor()
{
    if (VX3Compressor* old = shared.exchange(nullptr, std::memory_order_acq_rel))
        host->compressor->free(old);
}

} // namespace browser
