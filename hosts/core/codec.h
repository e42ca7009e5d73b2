// Picture codecs: which one a file needs is told by its bytes. Every codec takes damaged
// bytes for a failure, checks sizes before it allocates, and is quiet. Any thread may call
// with its own data. They throw std::bad_alloc and nothing else.
#pragma once

#include <cstdint>
#include <span>

#include "bitmappixels.h"
#include "classifymagic.h"
#include "codecsource.h"

namespace vx3::core {

struct PictureHead {
    int32_t width = 0;
    int32_t height = 0;
    int32_t depth = 0; // bits of a pixel in the file
    bool hasAlpha = false;
    const char* format = "";
};

struct SaveOptions {
    bool withAlpha = false;
    int32_t quality = 90; // of a JPEG, 1 to 100
};

using PictureBytes = std::span<const uint8_t>;

// These give a VX3_IMAGE value.
int32_t LoadPicture(const VX3Path& path, int32_t frame, Pixels& pixels);
int32_t SavePicture(const Pixels& pixels, const VX3Path& path, int32_t format, const SaveOptions& options);
bool InspectPicture(const VX3Path& path, PictureHead& head);

// One pair for each library. Decoders give a VX3_IMAGE value; encoders append nothing on failure.
int32_t DecodePng(PictureBytes bytes, Pixels& pixels);
bool EncodePng(const Pixels& pixels, bool withAlpha, ByteBuffer& bytes);
int32_t DecodeJpeg(PictureBytes bytes, Pixels& pixels);
bool EncodeJpeg(const Pixels& pixels, int32_t quality, ByteBuffer& bytes);
int32_t DecodeTiff(PictureFile& file, int32_t frame, Pixels& pixels);
bool EncodeTiff(const Pixels& pixels, bool withAlpha, ByteBuffer& bytes);
bool ReadTiffHead(PictureFile& file, PictureHead& head);

// GIF, BMP, TGA and others by the media library.
bool IsMediaPicture(PictureFormat format);
int32_t DecodeMediaPicture(PictureFormat format, PictureBytes bytes, int32_t frame, Pixels& pixels);

// Fills size, depth and alpha from the file's head; all formats but TIFF.
bool ReadPictureHead(PictureFormat format, PictureFile& file, PictureHead& head);

} // namespace vx3::core
