#include <algorithm>
#include <cstring>
#include <new>

#include "codectiff.h"

namespace vx3::core {

namespace {

// The library seeks back to patch what it has written, so the file grows in memory.
struct Target {
    ByteBuffer& bytes;
    size_t position = 0;
};

tmsize_t ReadProc(thandle_t handle, void* out, tmsize_t count)
{
    auto* target = static_cast<Target*>(handle);
    size_t left = target->bytes.size() - std::min(target->position, target->bytes.size());
    size_t got = std::min(left, size_t(count));
    if (got > 0)
        std::memcpy(out, target->bytes.data() + target->position, got);
    target->position += got;
    return tmsize_t(got);
}

// An exception must not pass through the library.
tmsize_t WriteProc(thandle_t handle, void* in, tmsize_t count) noexcept
try {
    auto* target = static_cast<Target*>(handle);
    size_t end = target->position + size_t(count);
    if (end > target->bytes.size())
        target->bytes.resize(end);
    std::memcpy(target->bytes.data() + target->position, in, size_t(count));
    target->position = end;
    return count;
} catch (const std::bad_alloc&) {
    return -1;
}

toff_t SeekProc(thandle_t handle, toff_t offset, int whence)
{
    auto* target = static_cast<Target*>(handle);
    size_t base = whence == SEEK_CUR ? target->position : whence == SEEK_END ? target->bytes.size() : 0;
    target->position = base + size_t(offset);
    return toff_t(target->position);
}

int CloseProc(thandle_t)
{
    return 0;
}

toff_t SizeProc(thandle_t handle)
{
    return toff_t(static_cast<Target*>(handle)->bytes.size());
}

bool WriteTags(TIFF* tif, const Pixels& pixels, uint16_t samples)
{
    constexpr uint32_t stripBytes = 64 * 1024;
    const uint16_t straight[] = { EXTRASAMPLE_UNASSALPHA };
    uint32_t lineBytes = uint32_t(pixels.Width()) * samples;
    return TIFFSetField(tif, TIFFTAG_IMAGEWIDTH, uint32_t(pixels.Width()))
        && TIFFSetField(tif, TIFFTAG_IMAGELENGTH, uint32_t(pixels.Height())) && TIFFSetField(tif, TIFFTAG_BITSPERSAMPLE, 8)
        && TIFFSetField(tif, TIFFTAG_SAMPLESPERPIXEL, samples) && TIFFSetField(tif, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_RGB)
        && TIFFSetField(tif, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG) && TIFFSetField(tif, TIFFTAG_ORIENTATION, ORIENTATION_TOPLEFT)
        && (samples == 3 || TIFFSetField(tif, TIFFTAG_EXTRASAMPLES, 1, straight))
        && TIFFSetField(tif, TIFFTAG_COMPRESSION, COMPRESSION_ADOBE_DEFLATE) && TIFFSetField(tif, TIFFTAG_PREDICTOR, PREDICTOR_HORIZONTAL)
        && TIFFSetField(tif, TIFFTAG_ROWSPERSTRIP, std::max(stripBytes / lineBytes, 1u));
}

bool WriteRows(TIFF* tif, const Pixels& pixels, uint16_t samples)
{
    ByteBuffer line(size_t(pixels.Width()) * samples); // the predictor changes what it is given
    for (int32_t y = 0; y < pixels.Height(); ++y) {
        const uint8_t* in = pixels.Row(y);
        for (size_t at = 0; at < line.size(); at += samples, in += bytesPerPixel)
            std::copy_n(in, samples, line.begin() + std::ptrdiff_t(at));
        if (TIFFWriteScanline(tif, line.data(), uint32_t(y), 0) != 1)
            return false;
    }
    return true;
}

} // namespace

bool EncodeTiff(const Pixels& pixels, bool withAlpha, ByteBuffer& bytes)
{
    Target target{ bytes };
    TiffOptions options;
    TiffHandle tif(
        TIFFClientOpenExt("", "w", &target, ReadProc, WriteProc, SeekProc, CloseProc, SizeProc, nullptr, nullptr, options.Get()));
    uint16_t samples = withAlpha ? 4 : 3;
    return tif && WriteTags(tif.get(), pixels, samples) && WriteRows(tif.get(), pixels, samples) && TIFFWriteDirectory(tif.get());
}

} // namespace vx3::core
