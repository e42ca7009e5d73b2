// UTF-8, UTF-16 and lower case, on plain arrays.
#pragma once

#include <cstddef>
#include <cstdint>

#include "vx3/types.h"

namespace vx3::core {

constexpr uint32_t replacementCharacter = 0xFFFD;
constexpr uint32_t firstBeyondUnits = 0x10000; // characters from here on are pairs of units
constexpr int maximalUtf8Length = 4;

inline bool IsHighSurrogate(uint32_t unit)
{
    return (unit & 0xFC00) == 0xD800;
}

inline bool IsLowSurrogate(uint32_t unit)
{
    return (unit & 0xFC00) == 0xDC00;
}

inline bool IsSurrogate(uint32_t unit)
{
    return (unit & 0xF800) == 0xD800;
}

// Reads the character at `bytes` and answers its number of bytes, 0 if they are not
// well-formed UTF-8. `available` is at least 1.
int DecodeUtf8(const unsigned char* bytes, size_t available, uint32_t& character);

// Writes a character, or a surrogate in the same manner, and answers the number of bytes.
int EncodeUtf8(uint32_t character, unsigned char* bytes);

// Reads the character at `units`: a pair, or one unit, which may be a lone surrogate. Answers
// the number of units. `available` is at least 1.
inline int DecodeUnits(const VX3Unit* units, int32_t available, uint32_t& character)
{
    character = units[0];
    if (!IsHighSurrogate(character) || available < 2 || !IsLowSurrogate(units[1]))
        return 1;
    character = firstBeyondUnits + ((character & 0x3FF) << 10) + (units[1] & 0x3FFu);
    return 2;
}

inline int EncodeUnits(uint32_t character, VX3Unit* units)
{
    if (character < firstBeyondUnits) {
        units[0] = static_cast<VX3Unit>(character);
        return 1;
    }
    units[0] = static_cast<VX3Unit>(0xD800 + ((character - firstBeyondUnits) >> 10));
    units[1] = static_cast<VX3Unit>(0xDC00 + (character & 0x3FF));
    return 2;
}

// Turns ASCII into units, eight at a time up to the first eight that hold something else, and
// answers how many.
size_t WidenAscii(const unsigned char* bytes, size_t length, VX3Unit* units);

// Turns bytes into at most as many units and answers how many. What `MapInvalid` makes
// of a byte that is not well-formed stands in its place.
template <class MapInvalid>
int32_t DecodeUtf8Text(const unsigned char* bytes, size_t length, VX3Unit* units, MapInvalid mapInvalid)
{
    const size_t ascii = WidenAscii(bytes, length, units);
    VX3Unit* out = units + ascii;
    for (size_t at = ascii; at < length;) {
        if (bytes[at] < 0x80) {
            *out++ = bytes[at++];
            continue;
        }
        uint32_t character = 0;
        const int size = DecodeUtf8(bytes + at, length - at, character);
        if (size == 0)
            *out++ = mapInvalid(bytes[at]);
        else
            out += EncodeUnits(character, out);
        at += size == 0 ? 1 : static_cast<size_t>(size);
    }
    return static_cast<int32_t>(out - units);
}

// The simple lower-case mapping of the Unicode Character Database, of one unit (casetable.cpp).
extern const uint8_t caseBlocks[];
extern const uint16_t caseOffsets[];
constexpr int caseBlockBits = 6;

inline VX3Unit LowerUnit(VX3Unit unit)
{
    const unsigned block = caseBlocks[unit >> caseBlockBits];
    const unsigned inside = unit & ((1u << caseBlockBits) - 1);
    return static_cast<VX3Unit>(unit + caseOffsets[(block << caseBlockBits) + inside]);
}

// `out` may be `in`.
void LowerUnits(const VX3Unit* in, VX3Unit* out, size_t count);

} // namespace vx3::core
