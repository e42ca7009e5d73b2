// PNG by libpng. The library leaves a failed call by longjmp, so the functions that call
// setjmp hold plain values only and what must be freed belongs to their callers.
#include <png.h>

#include <csetjmp>
#include <cstring>
#include <new>

#include "codec.h"
#include "vx3/bitmap.h"

namespace vx3::core {

namespace {

constexpr png_alloc_size_t maximumChunk = 64u << 20; // a profile or a text may be long, a forged one not endless
constexpr int packingLevel = 6;

void Fail(png_structp png, png_const_charp)
{
    png_longjmp(png, 1);
}

void Ignore(png_structp, png_const_charp)
{
}

struct Reader {
    explicit Reader(PictureBytes all)
        : bytes(all)
        , png(png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, Fail, Ignore))
        , info(png ? png_create_info_struct(png) : nullptr)
    {
    }
    ~Reader() { png_destroy_read_struct(&png, &info, nullptr); }
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;

    PictureBytes bytes;
    size_t position = 0;
    png_structp png;
    png_infop info;
};

void ReadBytes(png_structp png, png_bytep out, size_t count)
{
    auto* reader = static_cast<Reader*>(png_get_io_ptr(png));
    if (count > reader->bytes.size() - reader->position)
        png_error(png, "the file ends");
    std::memcpy(out, reader->bytes.data() + reader->position, count);
    reader->position += count;
}

// Whatever the file holds comes out as 8 bits of red, green, blue and alpha.
void AskForRgba(png_structp png)
{
    png_set_expand(png);
    png_set_scale_16(png);
    png_set_gray_to_rgb(png);
    png_set_filler(png, opaque, PNG_FILLER_AFTER);
}

bool ReadHeader(Reader& reader)
{
    if (setjmp(png_jmpbuf(reader.png)))
        return false;
    png_set_read_fn(reader.png, &reader, ReadBytes);
    png_set_user_limits(reader.png, png_uint_32(maximumSide), png_uint_32(maximumSide));
    png_set_chunk_malloc_max(reader.png, maximumChunk);
    png_read_info(reader.png, reader.info);
    return true;
}

bool ReadRows(Reader& reader, Pixels& pixels)
{
    if (setjmp(png_jmpbuf(reader.png)))
        return false;
    AskForRgba(reader.png);
    int passes = png_set_interlace_handling(reader.png);
    png_read_update_info(reader.png, reader.info);
    if (png_get_rowbytes(reader.png, reader.info) != pixels.RowBytes())
        return false;
    for (int pass = 0; pass < passes; ++pass)
        for (int32_t y = 0; y < pixels.Height(); ++y)
            png_read_row(reader.png, pixels.Row(y), nullptr);
    png_read_end(reader.png, nullptr);
    return true;
}

bool HasAlpha(const Reader& reader)
{
    return (png_get_color_type(reader.png, reader.info) & PNG_COLOR_MASK_ALPHA) != 0
        || png_get_valid(reader.png, reader.info, PNG_INFO_tRNS) != 0;
}

struct Writer {
    explicit Writer(ByteBuffer& out)
        : bytes(out)
        , png(png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, Fail, Ignore))
        , info(png ? png_create_info_struct(png) : nullptr)
    {
    }
    ~Writer() { png_destroy_write_struct(&png, &info); }
    Writer(const Writer&) = delete;
    Writer& operator=(const Writer&) = delete;

    ByteBuffer& bytes;
    png_structp png;
    png_infop info;
};

bool Append(ByteBuffer& bytes, const png_byte* more, size_t count) noexcept
try {
    bytes.insert(bytes.end(), more, more + count);
    return true;
} catch (const std::bad_alloc&) {
    return false;
}

void WriteBytes(png_structp png, png_bytep bytes, size_t count)
{
    if (!Append(static_cast<Writer*>(png_get_io_ptr(png))->bytes, bytes, count))
        png_error(png, "no memory");
}

void Flush(png_structp)
{
}

bool WriteRows(Writer& writer, const Pixels& pixels, bool withAlpha)
{
    if (setjmp(png_jmpbuf(writer.png)))
        return false;
    png_set_write_fn(writer.png, &writer, WriteBytes, Flush);
    png_set_compression_level(writer.png, packingLevel);
    int colours = withAlpha ? PNG_COLOR_TYPE_RGB_ALPHA : PNG_COLOR_TYPE_RGB;
    png_set_IHDR(writer.png, writer.info, png_uint_32(pixels.Width()), png_uint_32(pixels.Height()), 8, colours, PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_write_info(writer.png, writer.info);
    if (!withAlpha)
        png_set_filler(writer.png, 0, PNG_FILLER_AFTER); // drops the fourth byte
    for (int32_t y = 0; y < pixels.Height(); ++y)
        png_write_row(writer.png, pixels.Row(y));
    png_write_end(writer.png, writer.info);
    return true;
}

} // namespace

int32_t DecodePng(PictureBytes bytes, Pixels& pixels)
{
    Reader reader(bytes);
    if (!reader.info)
        return VX3_IMAGE_NO_MEMORY;
    if (!ReadHeader(reader))
        return VX3_IMAGE_DAMAGED;
    int64_t width = png_get_image_width(reader.png, reader.info);
    int64_t height = png_get_image_height(reader.png, reader.info);
    if (!IsSizePlausible(width, height, int64_t(bytes.size())))
        return VX3_IMAGE_DAMAGED;
    if (!pixels.Allocate(int32_t(width), int32_t(height)))
        return VX3_IMAGE_NO_MEMORY;
    pixels.hasAlpha = HasAlpha(reader);
    return ReadRows(reader, pixels) ? VX3_IMAGE_OK : VX3_IMAGE_DAMAGED;
}

bool EncodePng(const Pixels& pixels, bool withAlpha, ByteBuffer& bytes)
{
    Writer writer(bytes);
    return writer.info && WriteRows(writer, pixels, withAlpha);
}

} // namespace vx3::core
