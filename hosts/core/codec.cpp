#include "codec.h"

#include <algorithm>
#include <array>

#include "vx3/bitmap.h"

namespace vx3::core {

namespace {

constexpr int32_t lowestQuality = 1;
constexpr int32_t highestQuality = 100;

PictureFormat TellFormat(PictureFile& file)
{
    std::array<char, headerSize> bytes;
    int64_t length = file.ReadAt(0, bytes.data(), int64_t(bytes.size()));
    return length > 0 ? TellPicture(Header(bytes.data(), size_t(length))) : PictureFormat::None;
}

const char* FormatName(PictureFormat format)
{
    switch (format) {
    case PictureFormat::Png: return "PNG";
    case PictureFormat::Jpeg: return "JPEG";
    case PictureFormat::Gif: return "GIF";
    case PictureFormat::Bmp: return "BMP";
    case PictureFormat::Tiff: return "TIFF";
    case PictureFormat::Tga: return "TGA";
    case PictureFormat::Psd: return "PSD";
    case PictureFormat::Sgi: return "SGI";
    case PictureFormat::Jp2:
    case PictureFormat::J2k: return "JPEG 2000";
    default: return "";
    }
}

bool CanDecode(PictureFormat format)
{
    return format == PictureFormat::Png || format == PictureFormat::Jpeg || format == PictureFormat::Tiff || IsMediaPicture(format);
}

bool HasFrames(PictureFormat format)
{
    return format == PictureFormat::Tiff || format == PictureFormat::Gif;
}

int32_t DecodeBytes(PictureFormat format, PictureBytes bytes, int32_t frame, Pixels& pixels)
{
    switch (format) {
    case PictureFormat::Png: return DecodePng(bytes, pixels);
    case PictureFormat::Jpeg: return DecodeJpeg(bytes, pixels);
    default: return DecodeMediaPicture(format, bytes, frame, pixels);
    }
}

bool Encode(const Pixels& pixels, int32_t format, const SaveOptions& options, ByteBuffer& bytes)
{
    switch (format) {
    case VX3_FORMAT_LOSSLESS: return EncodeTiff(pixels, options.withAlpha, bytes);
    case VX3_FORMAT_PNG: return EncodePng(pixels, options.withAlpha, bytes);
    case VX3_FORMAT_JPEG: return EncodeJpeg(pixels, std::clamp(options.quality, lowestQuality, highestQuality), bytes);
    default: return false;
    }
}

} // namespace

int32_t LoadPicture(const VX3Path& path, int32_t frame, Pixels& pixels)
{
    PictureFile file;
    if (!file.Open(path))
        return VX3_IMAGE_NOT_FOUND;
    PictureFormat format = TellFormat(file);
    if (!CanDecode(format))
        return VX3_IMAGE_UNKNOWN;
    if (frame > 0 && !HasFrames(format))
        return VX3_IMAGE_NOT_FOUND;
    if (format == PictureFormat::Tiff)
        return DecodeTiff(file, frame, pixels);
    ByteBuffer bytes;
    if (!file.ReadAll(bytes))
        return VX3_IMAGE_DAMAGED;
    return DecodeBytes(format, bytes, frame, pixels);
}

int32_t SavePicture(const Pixels& pixels, const VX3Path& path, int32_t format, const SaveOptions& options)
{
    if (format != VX3_FORMAT_LOSSLESS && format != VX3_FORMAT_JPEG && format != VX3_FORMAT_PNG)
        return VX3_IMAGE_UNKNOWN;
    ByteBuffer bytes;
    if (!Encode(pixels, format, options, bytes) || !ReplaceFile(path, bytes))
        return VX3_IMAGE_NOT_WRITTEN;
    return VX3_IMAGE_OK;
}

bool InspectPicture(const VX3Path& path, PictureHead& head)
{
    PictureFile file;
    if (!file.Open(path))
        return false;
    PictureFormat format = TellFormat(file);
    if (!CanDecode(format))
        return false;
    head.format = FormatName(format);
    bool known = format == PictureFormat::Tiff ? ReadTiffHead(file, head) : ReadPictureHead(format, file, head);
    return known && IsSizePlausible(head.width, head.height, file.Length());
}

} // namespace vx3::core
