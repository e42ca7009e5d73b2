#include "unicode.h"

#include <cstring>

namespace vx3::core {
namespace {

constexpr size_t stepUnits = 16; // as many as compilers put into one or two registers
constexpr VX3Unit firstBeyondAscii = 0x80;
constexpr VX3Unit letterCount = 26;
constexpr VX3Unit caseDistance = 'a' - 'A';

bool IsContinuation(unsigned char byte)
{
    return (byte & 0xC0) == 0x80;
}

bool IsAsciiStep(const VX3Unit* in)
{
    VX3Unit all = 0;
    for (size_t i = 0; i < stepUnits; ++i)
        all |= in[i];
    return all < firstBeyondAscii;
}

void LowerAsciiStep(const VX3Unit* in, VX3Unit* out)
{
    for (size_t i = 0; i < stepUnits; ++i) {
        const VX3Unit unit = in[i];
        const bool isCapital = static_cast<VX3Unit>(unit - 'A') < letterCount;
        out[i] = static_cast<VX3Unit>(unit + (isCapital ? caseDistance : 0));
    }
}

void LowerStep(const VX3Unit* in, VX3Unit* out)
{
    if (IsAsciiStep(in)) {
        LowerAsciiStep(in, out);
        return;
    }
    for (size_t i = 0; i < stepUnits; ++i)
        out[i] = LowerUnit(in[i]);
}

// The number of bytes that a first byte announces, and the bits of the character in it.
int LengthOf(unsigned char first, uint32_t& bits)
{
    if (first < 0xC2) // continuations, and first bytes of forms that are too long
        return 0;
    if (first < 0xE0) {
        bits = first & 0x1F;
        return 2;
    }
    if (first < 0xF0) {
        bits = first & 0x0F;
        return 3;
    }
    bits = first & 0x07;
    return first < 0xF5 ? 4 : 0;
}

} // namespace

size_t WidenAscii(const unsigned char* bytes, size_t length, VX3Unit* units)
{
    constexpr uint64_t beyondAscii = 0x8080808080808080u;
    size_t done = 0;
    for (uint64_t eight = 0; done + sizeof(eight) <= length; done += sizeof(eight)) {
        std::memcpy(&eight, bytes + done, sizeof(eight));
        if ((eight & beyondAscii) != 0)
            break;
        for (size_t i = 0; i < sizeof(eight); ++i)
            units[done + i] = bytes[done + i];
    }
    return done;
}

int DecodeUtf8(const unsigned char* bytes, size_t available, uint32_t& character)
{
    static constexpr uint32_t smallest[] = { 0, 0, 0x80, 0x800, firstBeyondUnits };
    constexpr uint32_t largest = 0x10FFFF;
    if (bytes[0] < 0x80) {
        character = bytes[0];
        return 1;
    }
    uint32_t value = 0;
    const int length = LengthOf(bytes[0], value);
    if (length == 0 || static_cast<size_t>(length) > available)
        return 0;
    for (int i = 1; i < length; ++i) {
        if (!IsContinuation(bytes[i]))
            return 0;
        value = value << 6 | (bytes[i] & 0x3Fu);
    }
    if (value < smallest[length] || value > largest || IsSurrogate(value))
        return 0;
    character = value;
    return length;
}

int EncodeUtf8(uint32_t character, unsigned char* bytes)
{
    auto tail = [&](int place, int shift) { bytes[place] = static_cast<unsigned char>(0x80 | (character >> shift & 0x3F)); };
    if (character < 0x80) {
        bytes[0] = static_cast<unsigned char>(character);
        return 1;
    }
    if (character < 0x800) {
        bytes[0] = static_cast<unsigned char>(0xC0 | character >> 6);
        tail(1, 0);
        return 2;
    }
    if (character < firstBeyondUnits) {
        bytes[0] = static_cast<unsigned char>(0xE0 | character >> 12);
        tail(1, 6);
        tail(2, 0);
        return 3;
    }
    bytes[0] = static_cast<unsigned char>(0xF0 | character >> 18);
    tail(1, 12);
    tail(2, 6);
    tail(3, 0);
    return 4;
}

void LowerUnits(const VX3Unit* in, VX3Unit* out, size_t count)
{
    size_t at = 0;
    for (; at + stepUnits <= count; at += stepUnits)
        LowerStep(in + at, out + at);
    // What is in lower case stays so; the last step may begin inside the one before.
    if (at < count && count >= stepUnits) {
        LowerStep(in + count - stepUnits, out + count - stepUnits);
        return;
    }
    for (; at < count; ++at)
        out[at] = LowerUnit(in[at]);
}

} // namespace vx3::core
