#ifdef _WIN32

#include <algorithm>

#include "pathplatform.h"
#include "unicode.h"

namespace vx3::core {
namespace {

constexpr int32_t maximalNameUnits = 255;
constexpr std::u16string_view refusedUnits = u"<>:\"/\\|?*";
constexpr VX3Unit firstAllowedUnit = 0x20;

bool IsDriveLetter(VX3Unit unit)
{
    return (unit >= 'a' && unit <= 'z') || (unit >= 'A' && unit <= 'Z');
}

bool IsUnitRefused(VX3Unit unit)
{
    return unit < firstAllowedUnit || refusedUnits.find(static_cast<char16_t>(unit)) != std::u16string_view::npos;
}

} // namespace

const VX3Unit pathSeparator = '\\';
const bool hasDrives = true;

int32_t RootLength(UnitSpan path)
{
    constexpr int32_t driveLength = 3; // C:\ with its separator
    if (path.length >= driveLength && IsDriveLetter(path.units[0]) && path.units[1] == ':' && IsSeparator(path.units[2]))
        return driveLength;
    return path.length > 0 && IsSeparator(path.units[0]) ? 1 : 0;
}

// Bytes here are UTF-8; a lone surrogate is written in the same manner.
std::string BytesOfUnits(UnitSpan units)
{
    std::string bytes;
    for (int32_t at = 0; at < units.length;) {
        uint32_t character = 0;
        at += DecodeUnits(units.units + at, units.length - at, character);
        unsigned char encoded[maximalUtf8Length];
        const int size = EncodeUtf8(character, encoded);
        bytes.append(reinterpret_cast<const char*>(encoded), static_cast<size_t>(size));
    }
    return bytes;
}

int32_t UnitsOfBytes(std::string_view bytes, VX3Unit* units)
{
    auto replace = [](unsigned char) { return static_cast<VX3Unit>(replacementCharacter); };
    return DecodeUtf8Text(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size(), units, replace);
}

// A name that ends in a point or a space is met again without it, which covers `.` and `..`.
bool IsNameAllowed(UnitSpan name)
{
    if (name.length == 0 || name.length > maximalNameUnits)
        return false;
    const VX3Unit end = name.units[name.length - 1];
    return end != '.' && end != ' ' && std::none_of(name.units, name.units + name.length, IsUnitRefused);
}

} // namespace vx3::core

#endif
