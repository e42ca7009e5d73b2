// Pictures that no signature tells.
#include <algorithm>
#include <initializer_list>

#include "classifymagic.h"

namespace vx3::core {

namespace {

constexpr uint32_t maximumTgaSide = 32768;

// Truevision TGA 2.0, field 3.
enum TgaType { TgaMapped = 1, TgaColour = 2, TgaGrey = 3, TgaPacked = 8 };

constexpr size_t tgaHeaderSize = 18;

bool IsOneOf(uint32_t value, std::initializer_list<uint32_t> allowed)
{
    return std::find(allowed.begin(), allowed.end(), value) != allowed.end();
}

bool IsColourMapSane(Header header, uint32_t type)
{
    uint32_t mapType = ByteAt(header, 1);
    uint32_t mapLength = LittleAt(header, 5, 2);
    uint32_t entryBits = ByteAt(header, 7);
    if (mapType == 0) // nothing may stand in the fields of a map that is not there
        return type != TgaMapped && LittleAt(header, 3, 2) == 0 && mapLength == 0 && entryBits == 0;
    return mapType == 1 && mapLength > 0 && mapLength <= 65535 && IsOneOf(entryBits, { 15, 16, 24, 32 });
}

// Bits of a pixel, and how many of them the descriptor gives to alpha.
bool IsTgaDepthSane(uint32_t type, uint32_t bits, uint32_t alphaBits)
{
    switch (type) {
    case TgaMapped: return bits == 8 && IsOneOf(alphaBits, { 0, 8 });
    case TgaGrey: return (bits == 8 && alphaBits == 0) || (bits == 16 && alphaBits == 8);
    case TgaColour: break;
    default: return false;
    }
    switch (bits) {
    case 15: return alphaBits <= 1;
    case 16: return alphaBits <= 1;
    case 24: return alphaBits == 0;
    case 32: return IsOneOf(alphaBits, { 0, 8 });
    default: return false;
    }
}

bool IsWordCharacter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
}

} // namespace

// Windows bitmaps: reserved words of zero, and a known size of the second header.
bool IsBmp(Header header)
{
    constexpr size_t coreHeaderEnd = 26;
    if (header.size() < coreHeaderEnd || header.substr(0, 2) != "BM" || LittleAt(header, 6, 4) != 0)
        return false;
    return IsOneOf(LittleAt(header, 14, 4), { 12, 16, 40, 52, 56, 64, 108, 124 });
}

bool IsTga(Header header)
{
    if (header.size() < tgaHeaderSize)
        return false;
    uint32_t type = ByteAt(header, 2) & ~uint32_t(TgaPacked);
    uint32_t descriptor = ByteAt(header, 17);
    uint32_t width = LittleAt(header, 12, 2);
    uint32_t height = LittleAt(header, 14, 2);
    if ((descriptor & 0xc0) != 0 || width == 0 || height == 0 || width > maximumTgaSide || height > maximumTgaSide)
        return false;
    return IsColourMapSane(header, type) && IsTgaDepthSane(type, ByteAt(header, 16), descriptor & 0x0f);
}

int64_t TgaPixelOffset(Header header)
{
    int64_t mapBytes = int64_t(LittleAt(header, 5, 2)) * ((ByteAt(header, 7) + 7) / 8);
    return int64_t(tgaHeaderSize) + ByteAt(header, 0) + mapBytes;
}

int64_t TgaLength(Header header)
{
    if (ByteAt(header, 2) & TgaPacked)
        return 0;
    return TgaPixelOffset(header) + int64_t(LittleAt(header, 12, 2)) * LittleAt(header, 14, 2) * ((ByteAt(header, 16) + 7) / 8);
}

// X11 bitmaps are C source: #define NAME_width NUMBER, then the same with height.
bool IsXbm(Header header)
{
    constexpr std::string_view define = "#define ";
    size_t start = header.substr(0, 2) == "/*" ? header.find("*/") : 0;
    if (start == Header::npos)
        return false;
    start = header.find(define, start);
    if (start == Header::npos || start + define.size() >= header.size())
        return false;
    size_t name = start + define.size();
    size_t end = name;
    while (end < header.size() && IsWordCharacter(header[end]))
        ++end;
    return header.substr(name, end - name).ends_with("_width") && header.find("_height", end) != Header::npos;
}

// Inside Macintosh, Imaging With QuickDraw, A-3: 512 bytes for the program, size, frame, version opcode.
bool IsPict(Header file)
{
    constexpr size_t opcodes = headerSize + 10;
    if (file.size() < opcodes + 4)
        return false;
    return file.substr(opcodes, 4) == std::string_view("\0\x11\x02\xff", 4) || file.substr(opcodes, 2) == "\x11\x01";
}

} // namespace vx3::core
