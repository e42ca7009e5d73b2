// Pictures by the media library, which is loaded when the first of them is decoded.
#include <string>

#include "codec.h"
#include "hoststate.h"
#include "media/mediaentry.h"
#include "sharedlibrary.h"
#include "vx3/bitmap.h"

namespace vx3::core {

namespace {

using DecodeFunction = decltype(&vx3_decode_media_picture);

// Beside the programs of an installation, and in the same place of a build.
std::string MediaLibrary()
{
    return ProgramFolder() + "/../lib/vx3/vx3media.so";
}

// Never unloaded: its codecs keep tables of their own. None, and told once, if it is not there.
DecodeFunction LoadDecoder()
{
    std::string error;
    void* library = OpenLibrary(MediaLibrary(), error);
    void* function = library ? FindSymbol(library, "vx3_decode_media_picture") : nullptr;
    if (!function)
        WriteConsoleLine("Pictures of some formats cannot be read: " + error);
    return reinterpret_cast<DecodeFunction>(function);
}

} // namespace

bool IsMediaPicture(PictureFormat format)
{
    switch (format) {
    case PictureFormat::Gif:
    case PictureFormat::Bmp:
    case PictureFormat::Tga:
    case PictureFormat::Psd:
    case PictureFormat::Sgi:
    case PictureFormat::Jp2:
    case PictureFormat::J2k: return true;
    default: return false;
    }
}

int32_t DecodeMediaPicture(PictureFormat format, PictureBytes bytes, int32_t frame, Pixels& pixels)
{
    static const DecodeFunction decode = LoadDecoder();
    return decode ? decode(format, bytes.data(), bytes.size(), frame, &pixels) : int32_t(VX3_IMAGE_UNKNOWN);
}

} // namespace vx3::core
