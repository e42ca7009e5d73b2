// What the first bytes of a file tell: its class and, for a picture, its format. Pure
// functions of the bytes, for the classify section and for the codecs.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace vx3::core {

enum class PictureFormat { None, Png, Jpeg, Gif, Bmp, Tiff, Tga, Psd, Exr, Ilbm, Sgi, Xpm, Xbm, Pict, Jp2, J2k, MacPaint, Qtif };

// Bytes as text, because literals of both kinds then stand in one table.
using Header = std::string_view;

constexpr size_t headerSize = 512; // bytes that decide a class

constexpr uint8_t ByteAt(Header header, size_t offset)
{
    return uint8_t(header[offset]);
}

uint32_t BigAt(Header header, size_t offset, size_t width);    // `width` bytes, the first one is the highest; 0 outside
uint32_t LittleAt(Header header, size_t offset, size_t width); // the last one is the highest

// A row of the table of signatures.
struct Magic {
    uint16_t offset;
    std::string_view bytes;
    std::string_view mask; // of the same length, or empty: every bit counts
    uint32_t kind;         // VX3_CLASS_…
    bool foreign;          // a scene of another program
    PictureFormat picture;
};

// The first row that fits, or none.
const Magic* FindMagic(Header header);

// Formats that need more than a comparison.
bool IsBmp(Header header);
bool IsTga(Header header); // has no signature: every field of the header must make sense
bool IsXbm(Header header);
bool IsPict(Header file); // needs 526 bytes
bool IsMpegAudio(Header header);
bool IsMpegTransport(Header header);
bool IsFlic(Header header);
bool IsFlash(Header header);
bool IsDv(Header header);
bool IsStl(Header header, int64_t fileLength); // -1: not known
bool Is3ds(Header header);

PictureFormat TellPicture(Header header);

// The bytes that an uncompressed TGA file has at least, 0 for a packed one.
int64_t TgaLength(Header header);
int64_t TgaPixelOffset(Header header);

} // namespace vx3::core
