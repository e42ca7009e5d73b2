// Size, depth and alpha from the heads of files, without their pixels.
#include <algorithm>
#include <array>

#include "codec.h"

namespace vx3::core {

namespace {

// A stretch of a file as a header to look at; `Get` is short where the file ends.
class Window
{
public:
    Window(PictureFile& source, int64_t offset)
    {
        int64_t count = source.ReadAt(offset, bytes.data(), int64_t(bytes.size()));
        length = size_t(std::max<int64_t>(count, 0));
    }
    Header Get() const { return Header(bytes.data(), length); }

private:
    std::array<char, headerSize> bytes;
    size_t length;
};

bool SetHead(PictureHead& head, uint32_t width, uint32_t height, uint32_t depth, bool hasAlpha)
{
    if (width == 0 || height == 0 || width > uint32_t(maximumSide) || height > uint32_t(maximumSide))
        return false;
    head.width = int32_t(width);
    head.height = int32_t(height);
    head.depth = int32_t(depth);
    head.hasAlpha = hasAlpha;
    return true;
}

// A tRNS chunk, which must stand in front of the first IDAT.
bool HasPngTransparency(PictureFile& file)
{
    constexpr int64_t firstChunk = 8;
    constexpr int64_t frameOfChunk = 12; // length, tag, check sum
    constexpr int mostChunks = 1000;
    int64_t offset = firstChunk;
    for (int count = 0; count < mostChunks; ++count) {
        Window chunk(file, offset);
        Header tag = chunk.Get().substr(0, 8);
        if (tag.size() < 8 || tag.ends_with("IDAT"))
            return false;
        if (tag.ends_with("tRNS"))
            return true;
        offset += frameOfChunk + BigAt(tag, 0, 4);
    }
    return false;
}

bool ReadPngHead(Header bytes, PictureFile& file, PictureHead& head)
{
    constexpr size_t headerEnd = 29;
    if (bytes.size() < headerEnd || bytes.substr(12, 4) != "IHDR")
        return false;
    constexpr std::array<uint32_t, 7> channels = { 1, 0, 3, 1, 2, 0, 4 }; // by colour type
    uint32_t type = ByteAt(bytes, 25);
    if (type >= channels.size() || channels[type] == 0)
        return false;
    constexpr uint32_t alphaBit = 4;
    bool hasAlpha = (type & alphaBit) || HasPngTransparency(file);
    return SetHead(head, BigAt(bytes, 16, 4), BigAt(bytes, 20, 4), ByteAt(bytes, 24) * channels[type], hasAlpha);
}

// Every SOF marker but DHT, JPG and DAC, which share their range. T.81, table B.1.
bool IsStartOfFrame(uint32_t marker)
{
    return marker >= 0xc0 && marker <= 0xcf && marker != 0xc4 && marker != 0xc8 && marker != 0xcc;
}

bool ReadJpegHead(PictureFile& file, PictureHead& head)
{
    constexpr int64_t firstMarker = 2;
    constexpr int mostSegments = 2000;
    constexpr uint32_t startOfScan = 0xda;
    int64_t offset = firstMarker;
    for (int count = 0; count < mostSegments; ++count) {
        Window window(file, offset);
        Header segment = window.Get();
        if (segment.size() < 4 || ByteAt(segment, 0) != 0xff)
            return false;
        uint32_t marker = ByteAt(segment, 1);
        if (marker == 0xff) { // a byte of filling
            ++offset;
            continue;
        }
        if (marker == startOfScan)
            return false;
        if (IsStartOfFrame(marker) && segment.size() >= 10)
            return SetHead(head, BigAt(segment, 7, 2), BigAt(segment, 5, 2), ByteAt(segment, 4) * ByteAt(segment, 9), false);
        offset += 2 + BigAt(segment, 2, 2);
    }
    return false;
}

// Blocks up to the first image: a graphic control block may name a transparent colour. GIF89a, 23.
bool HasGifTransparency(Header bytes, PictureFile& file)
{
    constexpr size_t screenEnd = 13;
    constexpr int mostBlocks = 1000;
    uint32_t screenFlags = ByteAt(bytes, 10);
    int64_t offset = int64_t(screenEnd) + ((screenFlags & 0x80) ? 3 << ((screenFlags & 7) + 1) : 0);
    for (int count = 0; count < mostBlocks; ++count) {
        Window window(file, offset);
        Header block = window.Get();
        if (block.size() < 4 || block[0] != '!')
            return false;
        if (ByteAt(block, 1) == 0xf9)
            return ByteAt(block, 3) & 1;
        offset += 2; // introducer and label, then chains of counted bytes up to an empty one
        for (uint32_t length = 1; length != 0 && count < mostBlocks; ++count) {
            length = BigAt(Window(file, offset).Get(), 0, 1);
            offset += 1 + length;
        }
    }
    return false;
}

bool ReadGifHead(Header bytes, PictureFile& file, PictureHead& head)
{
    constexpr size_t screenEnd = 13;
    if (bytes.size() < screenEnd)
        return false;
    uint32_t depth = (ByteAt(bytes, 10) & 7) + 1;
    return SetHead(head, LittleAt(bytes, 6, 2), LittleAt(bytes, 8, 2), depth, HasGifTransparency(bytes, file));
}

bool ReadBmpHead(Header bytes, PictureHead& head)
{
    constexpr uint32_t oldHeader = 12; // with words of two bytes
    constexpr uint32_t alphaHeader = 56;
    uint32_t headerLength = LittleAt(bytes, 14, 4);
    if (headerLength == oldHeader)
        return SetHead(head, LittleAt(bytes, 18, 2), LittleAt(bytes, 20, 2), LittleAt(bytes, 24, 2), false);
    uint32_t height = LittleAt(bytes, 22, 4);
    if (height > INT32_MAX) // negative: the rows stand from top to bottom
        height = 0 - height;
    bool hasAlpha = headerLength >= alphaHeader && LittleAt(bytes, 28, 2) == 32 && LittleAt(bytes, 66, 4) != 0;
    return SetHead(head, LittleAt(bytes, 18, 4), height, LittleAt(bytes, 28, 2), hasAlpha);
}

bool ReadTgaHead(Header bytes, PictureHead& head)
{
    return SetHead(head, LittleAt(bytes, 12, 2), LittleAt(bytes, 14, 2), ByteAt(bytes, 16), ByteAt(bytes, 17) & 0x0f);
}

bool ReadPsdHead(Header bytes, PictureHead& head)
{
    constexpr uint32_t rgb = 3;
    uint32_t channels = BigAt(bytes, 12, 2);
    bool hasAlpha = BigAt(bytes, 24, 2) == rgb && channels > 3;
    return SetHead(head, BigAt(bytes, 18, 4), BigAt(bytes, 14, 4), channels * BigAt(bytes, 22, 2), hasAlpha);
}

bool ReadSgiHead(Header bytes, PictureHead& head)
{
    uint32_t channels = BigAt(bytes, 10, 2);
    return SetHead(head, BigAt(bytes, 6, 2), BigAt(bytes, 8, 2), channels * BigAt(bytes, 3, 1) * 8, channels == 4 || channels == 2);
}

// The SIZ segment, which follows the first marker of the codestream. T.800, A.5.1.
bool ReadJpeg2000Head(PictureFile& file, PictureHead& head)
{
    Window window(file, 0);
    Header bytes = window.Get();
    size_t start = bytes.find(std::string_view("\xff\x4f\xff\x51", 4));
    constexpr size_t sizeSegment = 43;
    if (start == Header::npos || start + sizeSegment > bytes.size())
        return false;
    Header size = bytes.substr(start + 4);
    uint32_t components = BigAt(size, 36, 2);
    uint32_t bits = (BigAt(size, 38, 1) & 0x7f) + 1;
    return SetHead(head, BigAt(size, 4, 4) - BigAt(size, 12, 4), BigAt(size, 8, 4) - BigAt(size, 16, 4), components * bits,
                   components == 4 || components == 2);
}

} // namespace

bool ReadPictureHead(PictureFormat format, PictureFile& file, PictureHead& head)
{
    Window window(file, 0);
    Header bytes = window.Get();
    switch (format) {
    case PictureFormat::Png: return ReadPngHead(bytes, file, head);
    case PictureFormat::Jpeg: return ReadJpegHead(file, head);
    case PictureFormat::Gif: return ReadGifHead(bytes, file, head);
    case PictureFormat::Bmp: return ReadBmpHead(bytes, head);
    case PictureFormat::Tga: return ReadTgaHead(bytes, head);
    case PictureFormat::Psd: return ReadPsdHead(bytes, head);
    case PictureFormat::Sgi: return ReadSgiHead(bytes, head);
    case PictureFormat::Jp2:
    case PictureFormat::J2k: return ReadJpeg2000Head(file, head);
    default: return false;
    }
}

} // namespace vx3::core
