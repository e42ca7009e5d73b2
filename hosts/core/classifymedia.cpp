// Movies, sounds and foreign scenes whose signature is too short to be trusted alone.
#include <bit>
#include <cmath>

#include "classifymagic.h"

namespace vx3::core {

namespace {

// The bytes of an MPEG audio frame by its header, 0 if that is none. ISO/IEC 11172-3, 2.4.2.3.
size_t AudioFrameLength(uint32_t word)
{
    constexpr uint16_t rates[3][15] = { // kbit/s: layers I to III of MPEG 1
                                        { 0, 32, 64, 96, 128, 160, 192, 224, 256, 288, 320, 352, 384, 416, 448 },
                                        { 0, 32, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320, 384 },
                                        { 0, 32, 40, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320 }
    };
    constexpr uint16_t lowRates[2][15] = { // ISO/IEC 13818-3, 2.4.2.3: layer I, layers II and III
                                           { 0, 32, 48, 56, 64, 80, 96, 112, 128, 144, 160, 176, 192, 224, 256 },
                                           { 0, 8, 16, 24, 32, 40, 48, 56, 64, 80, 96, 112, 128, 144, 160 }
    };
    constexpr uint32_t frequencies[3] = { 44100, 48000, 32000 };
    uint32_t version = word >> 19 & 3; // 3: MPEG 1, 2: MPEG 2, 0: MPEG 2.5
    uint32_t layer = 4 - (word >> 17 & 3);
    uint32_t rate = word >> 12 & 15;
    uint32_t frequency = word >> 10 & 3;
    if (word >> 21 != 0x7ff || version == 1 || layer == 4 || rate == 0 || rate == 15 || frequency == 3)
        return 0;
    bool low = version != 3;
    uint32_t hertz = frequencies[frequency] >> (version == 3 ? 0 : version == 2 ? 1 : 2);
    uint32_t bits = 1000u * (low ? lowRates[layer > 1][rate] : rates[layer - 1][rate]);
    uint32_t padding = word >> 9 & 1;
    if (layer == 1)
        return size_t(12 * bits / hertz + padding) * 4;
    return (layer == 3 && low ? 72 : 144) * bits / hertz + padding;
}

// Number of a facet's twelve floats that stand at `offset`: all finite, and the normal of length 0 or 1.
bool IsFacet(Header header, size_t offset)
{
    constexpr size_t floatCount = 12;
    double square = 0;
    for (size_t at = 0; at < floatCount; ++at) {
        auto value = std::bit_cast<float>(LittleAt(header, offset + at * 4, 4));
        if (!std::isfinite(value) || std::fabs(value) > 1e18f)
            return false;
        if (at < 3)
            square += double(value) * double(value);
    }
    return square == 0 || std::fabs(square - 1) < 0.05;
}

} // namespace

// Eleven set bits occur by chance, so the next frame must stand where the first one says.
bool IsMpegAudio(Header header)
{
    constexpr uint32_t constantBits = 0xfffe0c00; // version, layer, sampling frequency
    uint32_t first = BigAt(header, 0, 4);
    size_t length = AudioFrameLength(first);
    if (length == 0 || length + 4 > header.size())
        return false;
    uint32_t second = BigAt(header, length, 4);
    return AudioFrameLength(second) != 0 && ((first ^ second) & constantBits) == 0;
}

// ISO/IEC 13818-1, 2.4.3.2: packets of 188 bytes that begin with 0x47; with 4 bytes of a time stamp in front on some disks.
bool IsMpegTransport(Header header)
{
    constexpr char sync = 0x47;
    constexpr size_t packet = 188;
    constexpr size_t stampedPacket = 192;
    auto repeats = [&](size_t start, size_t step) {
        return header.size() > start + 2 * step && header[start] == sync && header[start + step] == sync
            && header[start + 2 * step] == sync;
    };
    return repeats(0, packet) || repeats(4, stampedPacket);
}

// FLI and FLC: length, type, frames, width, height, depth of 8 bits. Source: the format notes of its author, 1993.
bool IsFlic(Header header)
{
    constexpr size_t flicHeaderSize = 128;
    if (header.size() < flicHeaderSize)
        return false;
    uint32_t type = LittleAt(header, 4, 2);
    return (type == 0xaf11 || type == 0xaf12) && LittleAt(header, 0, 4) >= flicHeaderSize && LittleAt(header, 6, 2) > 0
        && LittleAt(header, 8, 2) > 0 && LittleAt(header, 10, 2) > 0 && LittleAt(header, 12, 2) == 8;
}

// SWF File Format 19, chapter 2: plain, deflate or LZMA, a version, a length.
bool IsFlash(Header header)
{
    constexpr uint32_t newestVersion = 50;
    if (header.size() < 8 || header.substr(1, 2) != "WS" || (header[0] != 'F' && header[0] != 'C' && header[0] != 'Z'))
        return false;
    return ByteAt(header, 3) >= 1 && ByteAt(header, 3) <= newestVersion && LittleAt(header, 4, 4) > 8;
}

// IEC 61834-2: a header block of section 0, then a subcode block at 80 bytes.
bool IsDv(Header header)
{
    constexpr size_t block = 80;
    if (header.size() < 2 * block)
        return false;
    return (BigAt(header, 0, 4) & 0xffffff7f) == 0x1f07003f && (ByteAt(header, block) >> 5) == 1;
}

// A binary file is 80 bytes, a count, and 50 bytes a facet; a text one says solid and facet.
bool IsStl(Header header, int64_t fileLength)
{
    constexpr size_t countOffset = 80;
    constexpr size_t facetsOffset = 84;
    constexpr size_t facetSize = 50;
    if (header.starts_with("solid") && header.find("facet") != Header::npos)
        return true;
    uint32_t count = LittleAt(header, countOffset, 4);
    if (header.size() < facetsOffset + facetSize || count == 0)
        return false;
    if (fileLength >= 0 && fileLength < int64_t(facetsOffset) + int64_t(count) * int64_t(facetSize))
        return false;
    for (size_t at = facetsOffset, facet = 0; facet < count && at + facetSize <= header.size(); ++facet, at += facetSize)
        if (!IsFacet(header, at))
            return false;
    return true;
}

// Chunks of an id of 2 and a length of 4 bytes: the main chunk, and one that may come first in it.
bool Is3ds(Header header)
{
    constexpr size_t chunkHeader = 6;
    uint32_t length = LittleAt(header, 2, 4);
    if (header.size() < 2 * chunkHeader || LittleAt(header, 0, 2) != 0x4d4d || length < 2 * chunkHeader)
        return false;
    uint32_t innerId = LittleAt(header, chunkHeader, 2);
    uint32_t innerLength = LittleAt(header, chunkHeader + 2, 4);
    return (innerId == 0x0002 || innerId == 0x3d3d || innerId == 0x3d3e) && innerLength >= chunkHeader
        && innerLength <= length - chunkHeader;
}

} // namespace vx3::core
