#include "model/crc32.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

namespace browser {

namespace {

constexpr uint32_t polynomial = 0xEDB88320;
constexpr size_t slices = 8;
using SliceTables = std::array<std::array<uint32_t, 256>, slices>;

constexpr SliceTables MakeTables()
{
    SliceTables tables = {};
    for (uint32_t byte = 0; byte < 256; byte++) {
        uint32_t value = byte;
        for (int bit = 0; bit < 8; bit++)
            value = (value >> 1) ^ (value & 1 ? polynomial : 0);
        tables[0][byte] = value;
    }
    for (size_t slice = 1; slice < slices; slice++)
        for (size_t byte = 0; byte < 256; byte++)
            tables[slice][byte] = (tables[slice - 1][byte] >> 8) ^ tables[0][tables[slice - 1][byte] & 0xFF];
    return tables;
}

constexpr SliceTables tables = MakeTables();

inline CrcState Step(CrcState state, uint8_t byte)
{
    return (state >> 8) ^ tables[0][(state ^ byte) & 0xFF];
}

inline uint32_t LittleEndian(const uint8_t* bytes)
{
    uint32_t word;
    std::memcpy(&word, bytes, sizeof word);
    if constexpr (std::endian::native == std::endian::big)
        word = __builtin_bswap32(word);
    return word;
}

// Eight bytes whose first four are already joined with the state.
inline CrcState StepEight(uint32_t low, uint32_t high)
{
    return tables[7][low & 0xFF] ^ tables[6][(low >> 8) & 0xFF] ^ tables[5][(low >> 16) & 0xFF] ^ tables[4][low >> 24]
        ^ tables[3][high & 0xFF] ^ tables[2][(high >> 8) & 0xFF] ^ tables[1][(high >> 16) & 0xFF] ^ tables[0][high >> 24];
}

// Two units as four bytes, the high byte of the first unit first.
inline uint32_t TwoUnits(const VX3Unit* units)
{
    return uint32_t(units[0] >> 8) | uint32_t(units[0] & 0xFF) << 8 | uint32_t(units[1] >> 8) << 16 | uint32_t(units[1] & 0xFF) << 24;
}

} // namespace

CrcState ContinueCrc(CrcState state, const void* bytes, size_t length)
{
    auto* at = static_cast<const uint8_t*>(bytes);
    for (; length >= 8; length -= 8, at += 8)
        state = StepEight(LittleEndian(at) ^ state, LittleEndian(at + 4));
    for (; length; length--, at++)
        state = Step(state, *at);
    return state;
}

CrcState ContinueCrcOfUnit(CrcState state, VX3Unit unit)
{
    return Step(Step(state, uint8_t(unit >> 8)), uint8_t(unit & 0xFF));
}

CrcState ContinueCrcOfUnits(CrcState state, Units lower)
{
    size_t i = 0;
    for (; i + 4 <= lower.size(); i += 4)
        state = StepEight(TwoUnits(&lower[i]) ^ state, TwoUnits(&lower[i + 2]));
    for (; i < lower.size(); i++)
        state = ContinueCrcOfUnit(state, lower[i]);
    return state;
}

CrcState ContinueCrcFolding(CrcState state, Units units)
{
    constexpr size_t pieceUnits = 256;
    VX3Unit piece[pieceUnits];
    for (size_t at = 0; at < units.size(); at += pieceUnits) {
        size_t count = std::min(pieceUnits, units.size() - at);
        host->text->lowerUnits(&units[at], piece, static_cast<int32_t>(count));
        state = ContinueCrcOfUnits(state, { piece, count });
    }
    return state;
}

} // namespace browser
