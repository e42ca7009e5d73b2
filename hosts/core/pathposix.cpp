#ifndef _WIN32

#include <array>
#include <cstring>

#include "pathplatform.h"
#include "textvalue.h"
#include "unicode.h"

namespace vx3::core {
namespace {

constexpr int32_t maximalNameBytes = 255;
constexpr uint32_t byteMark = 0xDC00; // a byte b stands as the lone surrogate byteMark + b
constexpr VX3Unit backslashUnit = byteMark + '\\';

VX3Unit UnitOfByte(unsigned char byte)
{
    return static_cast<VX3Unit>(byteMark + byte);
}

bool IsMappedByte(uint32_t character)
{
    constexpr uint32_t firstInvalid = 0x80;
    return character == backslashUnit || (character >= byteMark + firstInvalid && character <= byteMark + 0xFF);
}

int EncodeNative(uint32_t character, unsigned char* bytes)
{
    if (!IsMappedByte(character))
        return EncodeUtf8(character, bytes);
    bytes[0] = static_cast<unsigned char>(character - byteMark);
    return 1;
}

// What the disk gives back for a name is the name itself, or it cannot be met again.
bool SurvivesTheDisk(UnitSpan name)
{
    std::array<unsigned char, maximalNameBytes + maximalUtf8Length> bytes;
    int32_t size = 0;
    for (int32_t at = 0; at < name.length;) {
        uint32_t character = 0;
        at += DecodeUnits(name.units + at, name.length - at, character);
        size += EncodeNative(character, bytes.data() + size);
        if (size > maximalNameBytes)
            return false;
    }
    std::array<VX3Unit, maximalNameBytes> back;
    const std::string_view native(reinterpret_cast<const char*>(bytes.data()), static_cast<size_t>(size));
    return SpansEqual({ back.data(), UnitsOfBytes(native, back.data()) }, name);
}

} // namespace

const VX3Unit pathSeparator = '/';
const bool hasDrives = false;

int32_t RootLength(UnitSpan path)
{
    return path.length > 0 && IsSeparator(path.units[0]) ? 1 : 0;
}

std::string BytesOfUnits(UnitSpan units)
{
    std::string bytes;
    bytes.reserve(static_cast<size_t>(units.length));
    for (int32_t at = 0; at < units.length;) {
        uint32_t character = 0;
        at += DecodeUnits(units.units + at, units.length - at, character);
        unsigned char encoded[maximalUtf8Length];
        const int size = EncodeNative(character, encoded);
        bytes.append(reinterpret_cast<const char*>(encoded), static_cast<size_t>(size));
    }
    return bytes;
}

int32_t UnitsOfBytes(std::string_view bytes, VX3Unit* units)
{
    const auto* raw = reinterpret_cast<const unsigned char*>(bytes.data());
    const int32_t length = DecodeUtf8Text(raw, bytes.size(), units, UnitOfByte);
    if (std::memchr(raw, '\\', bytes.size())) {
        for (int32_t i = 0; i < length; ++i)
            units[i] = units[i] == '\\' ? backslashUnit : units[i];
    }
    return length;
}

bool IsNameAllowed(UnitSpan name)
{
    if (name.length == 0 || name.length > maximalNameBytes)
        return false;
    if (name.units[0] == '.' && (name.length == 1 || (name.length == 2 && name.units[1] == '.')))
        return false;
    for (int32_t i = 0; i < name.length; ++i) {
        if (name.units[i] == 0 || IsSeparator(name.units[i]))
            return false;
    }
    return SurvivesTheDisk(name);
}

} // namespace vx3::core

#endif
