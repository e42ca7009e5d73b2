// Pictures by FFmpeg: one packet that is the whole file for most formats, the packets of
// its demuxer for GIF, which is read through a custom I/O context so that no name is ever
// taken for a pattern or a protocol.
extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/pixdesc.h>
#include <libswscale/swscale.h>
}

#include <algorithm>
#include <cstring>
#include <memory>

#include "core/codec.h"
#include "core/media/mediaentry.h"
#include "vx3/bitmap.h"

namespace vx3::core {

namespace {

struct FreeContext {
    void operator()(AVCodecContext* context) const { avcodec_free_context(&context); }
    void operator()(AVFrame* frame) const { av_frame_free(&frame); }
    void operator()(AVPacket* packet) const { av_packet_free(&packet); }
    void operator()(AVFormatContext* context) const { avformat_close_input(&context); }
    void operator()(SwsContext* context) const { sws_freeContext(context); }
    void operator()(AVIOContext* context) const
    {
        av_freep(&context->buffer);
        avio_context_free(&context);
    }
};

template <class T>
using Owned = std::unique_ptr<T, FreeContext>;

AVCodecID CodecOf(PictureFormat format)
{
    switch (format) {
    case PictureFormat::Gif: return AV_CODEC_ID_GIF;
    case PictureFormat::Bmp: return AV_CODEC_ID_BMP;
    case PictureFormat::Tga: return AV_CODEC_ID_TARGA;
    case PictureFormat::Psd: return AV_CODEC_ID_PSD;
    case PictureFormat::Sgi: return AV_CODEC_ID_SGI;
    case PictureFormat::Jp2:
    case PictureFormat::J2k: return AV_CODEC_ID_JPEG2000;
    default: return AV_CODEC_ID_NONE;
    }
}

// A decoder of one thread that stops at the first damage.
Owned<AVCodecContext> OpenDecoder(AVCodecID id, const AVCodecParameters* parameters)
{
    const AVCodec* codec = avcodec_find_decoder(id);
    Owned<AVCodecContext> context(codec ? avcodec_alloc_context3(codec) : nullptr);
    if (!context || (parameters && avcodec_parameters_to_context(context.get(), parameters) < 0))
        return nullptr;
    context->thread_count = 1;
    context->max_pixels = maximumPixelCount;
    context->err_recognition = AV_EF_EXPLODE | AV_EF_CRCCHECK | AV_EF_BITSTREAM | AV_EF_BUFFER;
    if (avcodec_open2(context.get(), codec, nullptr) < 0)
        return nullptr;
    return context;
}

bool IsTransparentAnywhere(const Pixels& pixels)
{
    for (int32_t y = 0; y < pixels.Height(); ++y) {
        const uint8_t* end = pixels.Row(y) + pixels.RowBytes();
        for (const uint8_t* pixel = pixels.Row(y); pixel < end; pixel += bytesPerPixel)
            if (pixel[3] != opaque)
                return true;
    }
    return false;
}

// A palette may always hold alpha; it counts only where a pixel shows it.
void SettleAlpha(const AVFrame& frame, Pixels& pixels)
{
    auto format = static_cast<AVPixelFormat>(frame.format);
    const AVPixFmtDescriptor* description = av_pix_fmt_desc_get(format);
    bool stored = description && (description->flags & AV_PIX_FMT_FLAG_ALPHA);
    bool certain = stored && format != AV_PIX_FMT_PAL8;
    if (!stored)
        pixels.MakeOpaque();
    pixels.hasAlpha = certain || (stored && IsTransparentAnywhere(pixels));
}

int32_t ConvertFrame(const AVFrame& frame, int64_t fileLength, Pixels& pixels)
{
    if (!IsSizePlausible(frame.width, frame.height, fileLength))
        return VX3_IMAGE_DAMAGED;
    if (!pixels.Allocate(frame.width, frame.height))
        return VX3_IMAGE_NO_MEMORY;
    auto format = static_cast<AVPixelFormat>(frame.format);
    constexpr int exact = SWS_POINT | SWS_ACCURATE_RND | SWS_FULL_CHR_H_INT | SWS_FULL_CHR_H_INP;
    Owned<SwsContext> scaler(
        sws_getContext(frame.width, frame.height, format, frame.width, frame.height, AV_PIX_FMT_RGBA, exact, nullptr, nullptr, nullptr));
    if (!scaler)
        return VX3_IMAGE_UNKNOWN;
    uint8_t* planes[] = { pixels.Row(0), nullptr, nullptr, nullptr };
    int strides[] = { int(pixels.RowBytes()), 0, 0, 0 };
    if (sws_scale(scaler.get(), frame.data, frame.linesize, 0, frame.height, planes, strides) != frame.height)
        return VX3_IMAGE_DAMAGED;
    SettleAlpha(frame, pixels);
    return VX3_IMAGE_OK;
}

bool DecodePacket(AVCodecContext& context, const AVPacket* packet, AVFrame& frame)
{
    return avcodec_send_packet(&context, packet) >= 0 && avcodec_receive_frame(&context, &frame) >= 0
        && !(frame.flags & AV_FRAME_FLAG_CORRUPT) && frame.decode_error_flags == 0;
}

int32_t DecodeWholeFile(AVCodecID id, PictureBytes bytes, Pixels& pixels)
{
    Owned<AVCodecContext> context = OpenDecoder(id, nullptr);
    Owned<AVPacket> packet(av_packet_alloc());
    Owned<AVFrame> frame(av_frame_alloc());
    // A packet of its own: decoders read some bytes beyond the end, which must be zero.
    if (!context || !packet || !frame || bytes.size() > size_t(INT32_MAX) - AV_INPUT_BUFFER_PADDING_SIZE
        || av_new_packet(packet.get(), int(bytes.size())) < 0)
        return VX3_IMAGE_NO_MEMORY;
    std::copy(bytes.begin(), bytes.end(), packet->data);
    if (!DecodePacket(*context, packet.get(), *frame))
        return VX3_IMAGE_DAMAGED;
    return ConvertFrame(*frame, int64_t(bytes.size()), pixels);
}

struct ByteCursor {
    PictureBytes bytes;
    int64_t position = 0;
};

int ReadProc(void* user, uint8_t* out, int count)
{
    auto* cursor = static_cast<ByteCursor*>(user);
    int64_t left = int64_t(cursor->bytes.size()) - cursor->position;
    if (left <= 0)
        return AVERROR_EOF;
    int64_t got = std::min<int64_t>(left, count);
    std::memcpy(out, cursor->bytes.data() + cursor->position, size_t(got));
    cursor->position += got;
    return int(got);
}

int64_t SeekProc(void* user, int64_t offset, int whence)
{
    auto* cursor = static_cast<ByteCursor*>(user);
    auto length = int64_t(cursor->bytes.size());
    if (whence & AVSEEK_SIZE)
        return length;
    int64_t base = whence == SEEK_CUR ? cursor->position : whence == SEEK_END ? length : 0;
    if (base + offset < 0 || base + offset > length)
        return AVERROR(EINVAL);
    return cursor->position = base + offset;
}

// The demuxer of one known format over bytes in memory.
class Demuxer
{
public:
    bool Open(const char* format, PictureBytes bytes);
    AVFormatContext* Get() const { return context.get(); }

private:
    ByteCursor cursor;
    Owned<AVIOContext> io; // outlives the context, which reads through it
    Owned<AVFormatContext> context;
};

bool Demuxer::Open(const char* format, PictureBytes bytes)
{
    constexpr int bufferSize = 4096;
    cursor.bytes = bytes;
    auto* buffer = static_cast<uint8_t*>(av_malloc(bufferSize));
    if (!buffer)
        return false;
    io.reset(avio_alloc_context(buffer, bufferSize, 0, &cursor, ReadProc, nullptr, SeekProc));
    if (!io) {
        av_free(buffer);
        return false;
    }
    AVFormatContext* opened = avformat_alloc_context();
    if (!opened)
        return false;
    opened->pb = io.get();
    if (avformat_open_input(&opened, nullptr, av_find_input_format(format), nullptr) < 0) // frees it on failure
        return false;
    context.reset(opened);
    return opened->nb_streams == 1;
}

// Frames build on each other, so all up to the wanted one are decoded.
int32_t DecodeGif(PictureBytes bytes, int32_t frameNumber, Pixels& pixels)
{
    Demuxer demuxer;
    if (!demuxer.Open("gif", bytes))
        return VX3_IMAGE_DAMAGED;
    Owned<AVCodecContext> context = OpenDecoder(AV_CODEC_ID_GIF, demuxer.Get()->streams[0]->codecpar);
    Owned<AVPacket> packet(av_packet_alloc());
    Owned<AVFrame> frame(av_frame_alloc());
    if (!context || !packet || !frame)
        return VX3_IMAGE_NO_MEMORY;
    for (int32_t at = 0; av_read_frame(demuxer.Get(), packet.get()) >= 0; ++at) {
        bool decoded = !(packet->flags & AV_PKT_FLAG_CORRUPT) && DecodePacket(*context, packet.get(), *frame);
        av_packet_unref(packet.get());
        if (!decoded)
            return VX3_IMAGE_DAMAGED;
        if (at == frameNumber)
            return ConvertFrame(*frame, int64_t(bytes.size()), pixels);
    }
    return frameNumber > 0 ? VX3_IMAGE_NOT_FOUND : VX3_IMAGE_DAMAGED;
}

// The descriptor of a TGA file says whether the fourth byte is alpha, or nothing.
void DropUndeclaredAlpha(PictureBytes bytes, Pixels& pixels)
{
    constexpr size_t descriptor = 17;
    constexpr uint8_t alphaBits = 0x0f;
    if (bytes[descriptor] & alphaBits)
        return;
    pixels.MakeOpaque();
    pixels.hasAlpha = false;
}

// The library fills up what a cut file lacks in its last packets, so they are counted before.
bool HasAllTgaPackets(PictureBytes bytes)
{
    Header header(reinterpret_cast<const char*>(bytes.data()), std::min(bytes.size(), headerSize));
    int64_t start = TgaPixelOffset(header);
    constexpr uint8_t packed = 8;
    constexpr uint8_t repeated = 0x80;
    if (!(ByteAt(header, 2) & packed))
        return true;
    int64_t missing = int64_t(LittleAt(header, 12, 2)) * LittleAt(header, 14, 2);
    int64_t pixelBytes = (ByteAt(header, 16) + 7) / 8;
    auto length = int64_t(bytes.size());
    for (int64_t at = start; missing > 0;) {
        if (at >= length)
            return false;
        int64_t count = (bytes[size_t(at)] & ~repeated) + 1;
        at += 1 + (bytes[size_t(at)] & repeated ? 1 : count) * pixelBytes;
        missing -= count;
        if (at > length)
            return false;
    }
    return true;
}

// The library writes to stderr unless it is told not to, for the whole process.
void SilenceLibrary()
{
    static const bool done = (av_log_set_level(AV_LOG_QUIET), true);
    (void)done;
}

int32_t Decode(PictureFormat format, PictureBytes bytes, int32_t frame, Pixels& pixels)
{
    SilenceLibrary();
    if (format == PictureFormat::Gif)
        return DecodeGif(bytes, frame, pixels);
    if (format == PictureFormat::Tga && !HasAllTgaPackets(bytes))
        return VX3_IMAGE_DAMAGED;
    int32_t result = DecodeWholeFile(CodecOf(format), bytes, pixels);
    if (result == VX3_IMAGE_OK && format == PictureFormat::Tga)
        DropUndeclaredAlpha(bytes, pixels);
    return result;
}

} // namespace

} // namespace vx3::core

int32_t vx3_decode_media_picture(vx3::core::PictureFormat format, const uint8_t* bytes, size_t length, int32_t frame,
                                 vx3::core::Pixels* pixels)
{
    return vx3::core::Decode(format, { bytes, length }, frame, *pixels);
}
