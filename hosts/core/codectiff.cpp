// TIFF by libtiff, sample by sample, so that alpha stays exact. The library's own way to
// read any picture multiplies alpha into the colours; it is used only for the kinds that
// have none: few bits, inks, YCbCr, Lab.
#include "codectiff.h"

#include <algorithm>
#include <cstring>

#include "vx3/bitmap.h"

namespace vx3::core {

namespace {

constexpr tmsize_t maximumBlock = tmsize_t(1) << 28;
constexpr int maximumSamples = 16;
constexpr int maximumBits = 64; // of one sample

int IgnoreMessage(TIFF*, void*, const char*, const char*, va_list)
{
    return 1;
}

struct FileCursor {
    PictureFile* file;
    int64_t position;
};

tmsize_t ReadProc(thandle_t handle, void* out, tmsize_t count)
{
    auto* cursor = static_cast<FileCursor*>(handle);
    int64_t got = cursor->file->ReadAt(cursor->position, out, count);
    cursor->position += got > 0 ? got : 0;
    return tmsize_t(got);
}

tmsize_t RefuseWrite(thandle_t, void*, tmsize_t)
{
    return -1;
}

toff_t SeekProc(thandle_t handle, toff_t offset, int whence)
{
    auto* cursor = static_cast<FileCursor*>(handle);
    int64_t base = whence == SEEK_CUR ? cursor->position : whence == SEEK_END ? cursor->file->Length() : 0;
    cursor->position = base + int64_t(offset);
    return toff_t(cursor->position);
}

int CloseProc(thandle_t)
{
    return 0;
}

toff_t SizeProc(thandle_t handle)
{
    return toff_t(static_cast<FileCursor*>(handle)->file->Length());
}

// A file opened for reading, on one of its pictures.
class Tiff
{
public:
    explicit Tiff(PictureFile& file)
        : cursor{ &file, 0 }
    {
        TiffOptions options;
        // 'm': no mapping into memory; 'O': the offsets of strips are read when they are needed.
        tif.reset(
            TIFFClientOpenExt("", "rmO", &cursor, ReadProc, RefuseWrite, SeekProc, CloseProc, SizeProc, nullptr, nullptr, options.Get()));
    }
    bool IsOpen() const { return tif != nullptr; }
    TIFF* Get() const { return tif.get(); }

private:
    FileCursor cursor;
    TiffHandle tif;
};

// How one picture is stored.
struct Layout {
    uint32_t width = 0;
    uint32_t height = 0;
    uint16_t bits = 1;
    uint16_t samples = 1;
    uint16_t photometric = PHOTOMETRIC_MINISBLACK;
    uint16_t planes = PLANARCONFIG_CONTIG;
    uint16_t sampleFormat = SAMPLEFORMAT_UINT;
    uint16_t alphaKind = EXTRASAMPLE_UNSPECIFIED;
    bool hasAlpha = false;
    bool tiled = false;

    int ColourSamples() const { return photometric == PHOTOMETRIC_RGB ? 3 : 1; }
    bool IsPlain() const; // can be read sample by sample
};

bool Layout::IsPlain() const
{
    bool colours = photometric == PHOTOMETRIC_RGB || photometric == PHOTOMETRIC_MINISBLACK || photometric == PHOTOMETRIC_MINISWHITE
        || (photometric == PHOTOMETRIC_PALETTE && bits == 8);
    return colours && (bits == 8 || bits == 16) && sampleFormat == SAMPLEFORMAT_UINT && samples >= ColourSamples()
        && samples <= maximumSamples;
}

Layout ReadLayout(TIFF* tif)
{
    Layout layout;
    TIFFGetField(tif, TIFFTAG_IMAGEWIDTH, &layout.width);
    TIFFGetField(tif, TIFFTAG_IMAGELENGTH, &layout.height);
    TIFFGetFieldDefaulted(tif, TIFFTAG_BITSPERSAMPLE, &layout.bits);
    TIFFGetFieldDefaulted(tif, TIFFTAG_SAMPLESPERPIXEL, &layout.samples);
    TIFFGetFieldDefaulted(tif, TIFFTAG_PLANARCONFIG, &layout.planes);
    TIFFGetFieldDefaulted(tif, TIFFTAG_SAMPLEFORMAT, &layout.sampleFormat);
    TIFFGetField(tif, TIFFTAG_PHOTOMETRIC, &layout.photometric);
    layout.tiled = TIFFIsTiled(tif) != 0;
    uint16_t extraCount = 0;
    uint16_t* extras = nullptr;
    TIFFGetFieldDefaulted(tif, TIFFTAG_EXTRASAMPLES, &extraCount, &extras);
    if (extraCount > 0 && extras && layout.samples > layout.ColourSamples()) {
        layout.alphaKind = extras[0];
        // A fourth sample of red, green and blue that is not described is alpha by custom.
        layout.hasAlpha = extras[0] != EXTRASAMPLE_UNSPECIFIED || layout.photometric == PHOTOMETRIC_RGB;
    }
    return layout;
}

uint8_t ToByte(const uint8_t* sample, uint16_t bits)
{
    if (bits == 8)
        return *sample;
    uint16_t value = 0;
    std::memcpy(&value, sample, sizeof value);
    return uint8_t((uint32_t(value) * 255 + 32767) / 65535);
}

struct Palette {
    bool Read(TIFF* tif);
    uint8_t colours[256][3];
};

bool Palette::Read(TIFF* tif)
{
    uint16_t* map[3] = {};
    if (!TIFFGetField(tif, TIFFTAG_COLORMAP, &map[0], &map[1], &map[2]))
        return false;
    bool wide = false; // some programs wrote bytes where words belong
    for (int at = 0; at < 256; ++at)
        wide = wide || map[0][at] > 255 || map[1][at] > 255 || map[2][at] > 255;
    for (int at = 0; at < 256; ++at)
        for (int channel = 0; channel < 3; ++channel)
            colours[at][channel] = uint8_t(wide ? map[channel][at] >> 8 : map[channel][at]);
    return true;
}

// Puts runs of stored samples into the picture. A run is part of one row and holds all
// samples of each pixel, or those of one plane.
class SampleSink
{
public:
    SampleSink(const Layout& stored, const Palette& map, Pixels& out)
        : layout(stored)
        , palette(map)
        , pixels(out)
    {
    }

    void Put(uint32_t x, uint32_t y, uint32_t count, const uint8_t* samples, int plane) const;

private:
    void PutSample(uint8_t* pixel, int sample, uint8_t value) const;
    bool IsStoredAsShown() const;

    const Layout& layout;
    const Palette& palette;
    Pixels& pixels;
};

void SampleSink::PutSample(uint8_t* pixel, int sample, uint8_t value) const
{
    int colourSamples = layout.ColourSamples();
    if (sample == colourSamples && layout.hasAlpha)
        pixel[3] = value;
    else if (sample >= colourSamples)
        return;
    else if (layout.photometric == PHOTOMETRIC_RGB)
        pixel[sample] = value;
    else if (layout.photometric == PHOTOMETRIC_PALETTE)
        std::memcpy(pixel, palette.colours[value], 3);
    else
        std::memset(pixel, layout.photometric == PHOTOMETRIC_MINISWHITE ? 255 - value : value, 3);
}

// The common case, which needs no look at each sample.
bool SampleSink::IsStoredAsShown() const
{
    return layout.photometric == PHOTOMETRIC_RGB && layout.bits == 8 && layout.planes == PLANARCONFIG_CONTIG
        && layout.samples == (layout.hasAlpha ? 4 : 3);
}

void SampleSink::Put(uint32_t x, uint32_t y, uint32_t count, const uint8_t* samples, int plane) const
{
    bool separate = layout.planes == PLANARCONFIG_SEPARATE;
    size_t sampleSize = layout.bits / 8;
    uint8_t* pixel = pixels.Row(int32_t(y)) + size_t(x) * bytesPerPixel;
    if (IsStoredAsShown()) {
        for (uint32_t at = 0; at < count; ++at, pixel += bytesPerPixel, samples += layout.samples)
            std::memcpy(pixel, samples, layout.samples);
        return;
    }
    for (uint32_t at = 0; at < count; ++at, pixel += bytesPerPixel)
        for (int sample = separate ? plane : 0; sample <= (separate ? plane : layout.samples - 1); ++sample, samples += sampleSize)
            PutSample(pixel, sample, ToByte(samples, layout.bits));
}

int PlaneCount(const Layout& layout)
{
    return layout.planes == PLANARCONFIG_SEPARATE ? layout.samples : 1;
}

size_t RunBytes(const Layout& layout, uint32_t pixels)
{
    return size_t(pixels) * (layout.bits / 8) * (layout.planes == PLANARCONFIG_SEPARATE ? 1 : layout.samples);
}

bool ReadScanlines(TIFF* tif, const Layout& layout, const SampleSink& sink)
{
    tmsize_t size = TIFFScanlineSize(tif);
    if (size <= 0 || size > maximumBlock || size_t(size) < RunBytes(layout, layout.width))
        return false;
    ByteBuffer line(static_cast<size_t>(size));
    for (int plane = 0; plane < PlaneCount(layout); ++plane)
        for (uint32_t y = 0; y < layout.height; ++y) {
            if (TIFFReadScanline(tif, line.data(), y, uint16_t(plane)) != 1)
                return false;
            sink.Put(0, y, layout.width, line.data(), plane);
        }
    return true;
}

struct TileShape {
    uint32_t width = 0;
    uint32_t height = 0;
};

void PutTile(const Layout& layout, const SampleSink& sink, TileShape tile, uint32_t x, uint32_t y, const uint8_t* bytes, int plane)
{
    uint32_t columns = std::min(tile.width, layout.width - x);
    uint32_t rows = std::min(tile.height, layout.height - y);
    for (uint32_t row = 0; row < rows; ++row)
        sink.Put(x, y + row, columns, bytes + row * RunBytes(layout, tile.width), plane);
}

bool ReadTiles(TIFF* tif, const Layout& layout, const SampleSink& sink)
{
    TileShape tile;
    TIFFGetField(tif, TIFFTAG_TILEWIDTH, &tile.width);
    TIFFGetField(tif, TIFFTAG_TILELENGTH, &tile.height);
    tmsize_t size = TIFFTileSize(tif);
    if (tile.width == 0 || tile.height == 0 || tile.width > uint32_t(maximumSide) || tile.height > uint32_t(maximumSide) || size <= 0
        || size > maximumBlock || size_t(size) < RunBytes(layout, tile.width) * tile.height)
        return false;
    ByteBuffer bytes(static_cast<size_t>(size));
    for (int plane = 0; plane < PlaneCount(layout); ++plane)
        for (uint32_t y = 0; y < layout.height; y += tile.height)
            for (uint32_t x = 0; x < layout.width; x += tile.width) {
                if (TIFFReadTile(tif, bytes.data(), x, y, 0, uint16_t(plane)) < 0)
                    return false;
                PutTile(layout, sink, tile, x, y, bytes.data(), plane);
            }
    return true;
}

// Alpha that was multiplied into the colours is taken out of them again.
void DivideByAlpha(Pixels& pixels)
{
    for (int32_t y = 0; y < pixels.Height(); ++y) {
        uint8_t* end = pixels.Row(y) + pixels.RowBytes();
        for (uint8_t* pixel = pixels.Row(y); pixel < end; pixel += bytesPerPixel)
            for (int channel = 0; channel < 3 && pixel[3] != 0; ++channel)
                pixel[channel] = uint8_t(std::min(255, (pixel[channel] * 255 + pixel[3] / 2) / pixel[3]));
    }
}

bool ReadPlain(TIFF* tif, const Layout& layout, Pixels& pixels)
{
    Palette palette;
    if (layout.photometric == PHOTOMETRIC_PALETTE && !palette.Read(tif))
        return false;
    SampleSink sink(layout, palette, pixels);
    if (!(layout.tiled ? ReadTiles : ReadScanlines)(tif, layout, sink))
        return false;
    if (layout.hasAlpha && layout.alphaKind == EXTRASAMPLE_ASSOCALPHA)
        DivideByAlpha(pixels);
    return true;
}

// Words of alpha, blue, green, red from the highest byte on, whatever the machine.
bool ReadConverted(TIFF* tif, Pixels& pixels)
{
    auto* words = reinterpret_cast<uint32_t*>(pixels.Row(0));
    if (!TIFFReadRGBAImageOriented(tif, uint32_t(pixels.Width()), uint32_t(pixels.Height()), words, ORIENTATION_TOPLEFT, 1))
        return false;
    for (int32_t y = 0; y < pixels.Height(); ++y) {
        uint8_t* pixel = pixels.Row(y);
        for (int32_t x = 0; x < pixels.Width(); ++x, pixel += bytesPerPixel) {
            uint32_t word = 0;
            std::memcpy(&word, pixel, sizeof word);
            const uint8_t bytes[] = { uint8_t(TIFFGetR(word)), uint8_t(TIFFGetG(word)), uint8_t(TIFFGetB(word)), uint8_t(TIFFGetA(word)) };
            std::memcpy(pixel, bytes, sizeof bytes);
        }
    }
    if (pixels.hasAlpha)
        DivideByAlpha(pixels);
    return true;
}

} // namespace

TiffOptions::TiffOptions()
    : options(TIFFOpenOptionsAlloc())
{
    if (!options)
        return;
    TIFFOpenOptionsSetErrorHandlerExtR(options, IgnoreMessage, nullptr);
    TIFFOpenOptionsSetWarningHandlerExtR(options, IgnoreMessage, nullptr);
    TIFFOpenOptionsSetMaxSingleMemAlloc(options, maximumBlock);
}

TiffOptions::~TiffOptions()
{
    TIFFOpenOptionsFree(options);
}

int32_t DecodeTiff(PictureFile& file, int32_t frame, Pixels& pixels)
{
    Tiff tiff(file);
    if (!tiff.IsOpen())
        return VX3_IMAGE_DAMAGED;
    if (frame > 0 && !TIFFSetDirectory(tiff.Get(), tdir_t(frame)))
        return VX3_IMAGE_NOT_FOUND;
    Layout layout = ReadLayout(tiff.Get());
    if (!IsSizePlausible(layout.width, layout.height, file.Length()))
        return VX3_IMAGE_DAMAGED;
    if (!pixels.Allocate(int32_t(layout.width), int32_t(layout.height)))
        return VX3_IMAGE_NO_MEMORY;
    bool plain = layout.IsPlain();
    if (!plain || !layout.hasAlpha)
        pixels.MakeOpaque();
    pixels.hasAlpha = layout.hasAlpha;
    bool read = plain ? ReadPlain(tiff.Get(), layout, pixels) : ReadConverted(tiff.Get(), pixels);
    return read ? VX3_IMAGE_OK : VX3_IMAGE_DAMAGED;
}

bool ReadTiffHead(PictureFile& file, PictureHead& head)
{
    Tiff tiff(file);
    if (!tiff.IsOpen())
        return false;
    Layout layout = ReadLayout(tiff.Get());
    if (layout.width > uint32_t(maximumSide) || layout.height > uint32_t(maximumSide) || layout.bits > maximumBits
        || layout.samples > maximumSamples)
        return false;
    head.width = int32_t(layout.width);
    head.height = int32_t(layout.height);
    head.depth = layout.bits * layout.samples;
    head.hasAlpha = layout.hasAlpha;
    return true;
}

} // namespace vx3::core
