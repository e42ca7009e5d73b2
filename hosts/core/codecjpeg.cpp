// JPEG by libjpeg-turbo.
#include <turbojpeg.h>

#include <cstring>
#include <memory>
#include <string_view>

#include "codec.h"
#include "vx3/bitmap.h"

namespace vx3::core {

namespace {

constexpr int32_t finestColourQuality = 90; // above it colours keep their full resolution

struct End {
    void operator()(void* handle) const { tjDestroy(handle); }
};
using Handle = std::unique_ptr<void, End>;

// Stray bytes between two markers do no harm and are common; every other complaint means lost pixels.
bool IsHarmless(tjhandle handle)
{
    return tjGetErrorCode(handle) == TJERR_WARNING && std::string_view(tjGetErrorStr2(handle)).find("extraneous") != std::string_view::npos;
}

// Programs that write the APP14 segment of Adobe Technical Note 5116 store inks inverted: 255 is none.
bool HasInvertedInks(PictureBytes bytes)
{
    constexpr size_t firstMarker = 2;
    constexpr uint8_t app14 = 0xee;
    constexpr uint8_t startOfScan = 0xda;
    for (size_t at = firstMarker; at + 9 <= bytes.size() && bytes[at] == 0xff && bytes[at + 1] != startOfScan;) {
        if (bytes[at + 1] == app14 && std::memcmp(&bytes[at + 4], "Adobe", 5) == 0)
            return true;
        at += 2 + (size_t(bytes[at + 2]) << 8 | bytes[at + 3]);
    }
    return false;
}

// Cyan, magenta, yellow and black in place become red, green, blue and opaque.
void ConvertInks(Pixels& pixels, bool inverted)
{
    constexpr int half = 127;
    for (int32_t y = 0; y < pixels.Height(); ++y) {
        uint8_t* end = pixels.Row(y) + pixels.RowBytes();
        for (uint8_t* pixel = pixels.Row(y); pixel < end; pixel += bytesPerPixel) {
            int light = inverted ? pixel[3] : opaque - pixel[3];
            for (int ink = 0; ink < 3; ++ink)
                pixel[ink] = uint8_t(((inverted ? pixel[ink] : opaque - pixel[ink]) * light + half) / opaque);
            pixel[3] = opaque;
        }
    }
}

} // namespace

int32_t DecodeJpeg(PictureBytes bytes, Pixels& pixels)
{
    Handle handle(tjInitDecompress());
    if (!handle)
        return VX3_IMAGE_NO_MEMORY;
    int width = 0, height = 0, sampling = 0, colours = 0;
    auto length = static_cast<unsigned long>(bytes.size());
    if (tjDecompressHeader3(handle.get(), bytes.data(), length, &width, &height, &sampling, &colours) != 0 && !IsHarmless(handle.get()))
        return VX3_IMAGE_DAMAGED;
    if (!IsSizePlausible(width, height, int64_t(bytes.size())))
        return VX3_IMAGE_DAMAGED;
    if (!pixels.Allocate(width, height))
        return VX3_IMAGE_NO_MEMORY;
    bool inks = colours == TJCS_CMYK || colours == TJCS_YCCK;
    constexpr int flags = TJFLAG_ACCURATEDCT | TJFLAG_LIMITSCANS;
    int format = inks ? TJPF_CMYK : TJPF_RGBA;
    if (tjDecompress2(handle.get(), bytes.data(), length, pixels.Row(0), width, 0, height, format, flags) != 0 && !IsHarmless(handle.get()))
        return VX3_IMAGE_DAMAGED;
    if (inks)
        ConvertInks(pixels, HasInvertedInks(bytes));
    return VX3_IMAGE_OK;
}

bool EncodeJpeg(const Pixels& pixels, int32_t quality, ByteBuffer& bytes)
{
    Handle handle(tjInitCompress());
    if (!handle)
        return false;
    int sampling = quality > finestColourQuality ? TJSAMP_444 : TJSAMP_420;
    bytes.resize(tjBufSize(pixels.Width(), pixels.Height(), sampling));
    unsigned char* out = bytes.data();
    auto length = static_cast<unsigned long>(bytes.size());
    if (tjCompress2(handle.get(), pixels.Row(0), pixels.Width(), 0, pixels.Height(), TJPF_RGBX, &out, &length, sampling, quality,
                    TJFLAG_NOREALLOC | TJFLAG_ACCURATEDCT)
        != 0)
        return false;
    bytes.resize(length);
    return true;
}

} // namespace vx3::core
