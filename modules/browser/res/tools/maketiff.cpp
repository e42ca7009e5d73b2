// maketiff PNG TIFF: a picture with straight alpha as the module's icons need it. A tool of
// the build. The program that draws the SVGs writes PNG only, and others multiply alpha in.
#include <png.h>
#include <tiffio.h>

#include <cstdint>
#include <cstdio>
#include <vector>

namespace {

constexpr uint16_t samples = 4;

struct Picture {
    uint32_t width = 0;
    uint32_t height = 0;
    std::vector<uint8_t> rgba;
};

bool ReadPng(const char* name, Picture& picture)
{
    png_image image = {};
    image.version = PNG_IMAGE_VERSION;
    if (!png_image_begin_read_from_file(&image, name))
        return false;
    image.format = PNG_FORMAT_RGBA;
    picture.width = image.width;
    picture.height = image.height;
    picture.rgba.resize(PNG_IMAGE_SIZE(image));
    return png_image_finish_read(&image, nullptr, picture.rgba.data(), 0, nullptr);
}

bool WriteRows(TIFF* tif, Picture& picture)
{
    for (uint32_t y = 0; y < picture.height; ++y)
        if (TIFFWriteScanline(tif, picture.rgba.data() + size_t(y) * picture.width * samples, y, 0) != 1)
            return false;
    return true;
}

bool WriteTiff(const char* name, Picture& picture)
{
    TIFF* tif = TIFFOpen(name, "w");
    if (!tif)
        return false;
    const uint16_t straight[] = { EXTRASAMPLE_UNASSALPHA };
    TIFFSetField(tif, TIFFTAG_IMAGEWIDTH, picture.width);
    TIFFSetField(tif, TIFFTAG_IMAGELENGTH, picture.height);
    TIFFSetField(tif, TIFFTAG_BITSPERSAMPLE, 8);
    TIFFSetField(tif, TIFFTAG_SAMPLESPERPIXEL, samples);
    TIFFSetField(tif, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_RGB);
    TIFFSetField(tif, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
    TIFFSetField(tif, TIFFTAG_EXTRASAMPLES, 1, straight);
    TIFFSetField(tif, TIFFTAG_COMPRESSION, COMPRESSION_ADOBE_DEFLATE);
    TIFFSetField(tif, TIFFTAG_PREDICTOR, PREDICTOR_HORIZONTAL);
    TIFFSetField(tif, TIFFTAG_ROWSPERSTRIP, picture.height);
    bool written = WriteRows(tif, picture) && TIFFFlush(tif);
    TIFFClose(tif);
    return written;
}

} // namespace

int main(int count, char** arguments)
{
    if (count != 3) {
        std::fprintf(stderr, "usage: maketiff PNG TIFF\n");
        return 2;
    }
    Picture picture;
    if (!ReadPng(arguments[1], picture)) {
        std::fprintf(stderr, "maketiff: %s cannot be read\n", arguments[1]);
        return 1;
    }
    if (!WriteTiff(arguments[2], picture)) {
        std::fprintf(stderr, "maketiff: %s cannot be written\n", arguments[2]);
        std::remove(arguments[2]);
        return 1;
    }
    return 0;
}
