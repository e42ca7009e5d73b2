// CRC-32 in the two usual ways: a table of bytes, and eight tables side by side.

#include <array>
#include <cstring>
#include <vector>

#include "measure.h"

namespace {

constexpr size_t repeats = 9;
constexpr size_t blockBytes = 16 << 20;
constexpr size_t urlBytes = 140; // 70 units
constexpr int urlCount = 100000;
constexpr uint32_t start = 0xFFFFFFFF;

using Tables = std::array<std::array<uint32_t, 256>, 8>;

constexpr Tables MakeTables()
{
    Tables made = {};
    for (uint32_t byte = 0; byte < 256; byte++) {
        uint32_t value = byte;
        for (int bit = 0; bit < 8; bit++)
            value = value & 1 ? 0xEDB88320 ^ (value >> 1) : value >> 1;
        made[0][byte] = value;
    }
    for (size_t slice = 1; slice < made.size(); slice++)
        for (size_t byte = 0; byte < 256; byte++)
            made[slice][byte] = (made[slice - 1][byte] >> 8) ^ made[0][made[slice - 1][byte] & 0xFF];
    return made;
}

constexpr Tables tables = MakeTables();

uint32_t Bytewise(uint32_t state, const uint8_t* bytes, size_t length)
{
    for (size_t i = 0; i < length; i++)
        state = (state >> 8) ^ tables[0][(state ^ bytes[i]) & 0xFF];
    return state;
}

uint32_t SliceByEight(uint32_t state, const uint8_t* bytes, size_t length)
{
    for (; length >= 8; length -= 8, bytes += 8) {
        uint64_t word;
        std::memcpy(&word, bytes, sizeof word);
        word ^= state;
        state = 0;
        for (size_t i = 0; i < 8; i++)
            state ^= tables[7 - i][(word >> (8 * i)) & 0xFF];
    }
    return Bytewise(state, bytes, length);
}

using Crc = uint32_t (*)(uint32_t state, const uint8_t* bytes, size_t length);

uint32_t sink = 0;

double BlockTime(Crc crc, const std::vector<uint8_t>& block)
{
    double times[repeats];
    for (double& each : times) {
        double begin = NowSeconds();
        sink ^= crc(start, block.data(), block.size());
        each = (NowSeconds() - begin) / double(block.size());
    }
    return MedianOf(times, repeats);
}

// Each hash begins with the last one, so that they cannot overlap.
double UrlTime(Crc crc, const std::vector<uint8_t>& block)
{
    double times[repeats];
    for (double& each : times) {
        double begin = NowSeconds();
        for (int i = 0; i < urlCount; i++)
            sink = crc(sink, block.data() + (i & 1023) * 64, urlBytes);
        each = (NowSeconds() - begin) / urlCount;
    }
    return MedianOf(times, repeats);
}

} // namespace

int main()
{
    std::vector<uint8_t> block(blockBytes);
    uint64_t random = 7;
    for (uint8_t& byte : block)
        byte = static_cast<uint8_t>(NextRandom(&random));
    if (SliceByEight(start, block.data(), block.size()) != Bytewise(start, block.data(), block.size()))
        return 1;
    PrintCase("slice8_ns_per_byte", BlockTime(SliceByEight, block) * 1e9, "ns/B");
    PrintCase("bytewise_url_ns", UrlTime(Bytewise, block) * 1e9, "ns");
    return sink == 1;
}
