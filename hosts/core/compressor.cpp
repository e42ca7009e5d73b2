#include <zlib.h>

#include <algorithm>
#include <climits>
#include <cstdlib>

#include "livecounts.h"
#include "memory.h"
#include "services.h"

// Has no state: what a call needs lives on its stack.
struct VX3Compressor {
    int32_t library;
};

namespace vx3::core {
namespace {

constexpr const char* place = "compressor";
constexpr int64_t firstOutput = 4096;
constexpr int64_t expectedRatio = 4;
constexpr int64_t maximalLength = INT64_MAX / 4;

// A block that the caller gets, and how much of it is filled.
struct Output {
    Bytef* bytes = nullptr;
    int64_t length = 0;
    int64_t capacity = 0;

    ~Output() { FreeBlock(bytes); }

    bool Resize(int64_t size)
    {
        void* resized = ResizeBlock(bytes, static_cast<size_t>(size), place);
        if (!resized)
            return false;
        bytes = static_cast<Bytef*>(resized);
        capacity = size;
        return true;
    }

    // A block that cannot be made smaller is handed out as it is.
    void HandOut(void** block, int64_t* blockLength)
    {
        if (length < capacity)
            Resize(length);
        *block = bytes;
        *blockLength = length;
        bytes = nullptr;
    }
};

// zlib counts in 32 bits, so both sides are given to it in portions.
struct Input {
    const Bytef* bytes;
    int64_t left;

    void Refill(z_stream& stream)
    {
        if (stream.avail_in > 0)
            return;
        const auto portion = static_cast<uInt>(std::min<int64_t>(left, UINT_MAX));
        stream.next_in = const_cast<Bytef*>(bytes);
        stream.avail_in = portion;
        bytes += portion;
        left -= portion;
    }
};

// Runs one step into the free end of the output.
template <class Step>
int RunInto(z_stream& stream, Output& output, Step step)
{
    const auto room = static_cast<uInt>(std::min<int64_t>(output.capacity - output.length, UINT_MAX));
    stream.next_out = output.bytes + output.length;
    stream.avail_out = room;
    const int result = step();
    output.length += room - stream.avail_out;
    return result;
}

bool Deflate(z_stream& stream, Input input, Output& output)
{
    int result = Z_OK;
    while (result == Z_OK) {
        input.Refill(stream);
        if (output.length == output.capacity && !output.Resize(output.capacity * 2))
            return false;
        result = RunInto(stream, output, [&] { return deflate(&stream, input.left > 0 ? Z_NO_FLUSH : Z_FINISH); });
    }
    return result == Z_STREAM_END;
}

// At the limit the stream may still hold its checksum, but not another byte.
bool IsEndedAtLimit(z_stream& stream, Input& input)
{
    Bytef extra = 0;
    int result = Z_OK;
    while (result == Z_OK) {
        input.Refill(stream);
        stream.next_out = &extra;
        stream.avail_out = 1;
        result = inflate(&stream, Z_NO_FLUSH);
        if (stream.avail_out == 0)
            return false;
    }
    return result == Z_STREAM_END;
}

bool InflateUpTo(z_stream& stream, Input& input, Output& output, int64_t limit)
{
    int result = Z_OK;
    while (result == Z_OK) {
        input.Refill(stream);
        if (output.length == limit)
            return IsEndedAtLimit(stream, input);
        const int64_t grown = output.capacity > limit / 2 ? limit : output.capacity * 2;
        if (output.length == output.capacity && !output.Resize(grown))
            return false;
        result = RunInto(stream, output, [&] { return inflate(&stream, Z_NO_FLUSH); });
    }
    return result == Z_STREAM_END;
}

bool Inflate(z_stream& stream, Input input, Output& output, int64_t limit)
{
    if (!InflateUpTo(stream, input, output, limit))
        return false;
    return stream.avail_in == 0 && input.left == 0;
}

VX3Compressor* Create(int32_t library)
{
    if (library != VX3_COMPRESSOR_DEFLATE)
        return nullptr;
    auto* compressor = static_cast<VX3Compressor*>(std::malloc(sizeof(VX3Compressor)));
    if (!compressor)
        return nullptr;
    compressor->library = library;
    liveCounters.compressors.Add();
    return compressor;
}

void Free(VX3Compressor* compressor)
{
    if (!compressor)
        return;
    std::free(compressor);
    liveCounters.compressors.Subtract();
}

bool IsInputAllowed(const void* bytes, int64_t length)
{
    return length >= 0 && length <= maximalLength && (bytes || length == 0);
}

VX3Bool Compress(VX3Compressor* compressor, const void* bytes, int64_t length, int32_t level, void** packed, int64_t* packedLength)
{
    if (!compressor || !IsInputAllowed(bytes, length) || level < Z_BEST_SPEED || level > Z_BEST_COMPRESSION)
        return 0;
    z_stream stream = {};
    if (deflateInit(&stream, level) != Z_OK)
        return 0;
    Output output;
    const auto bound = static_cast<int64_t>(deflateBound(&stream, static_cast<uLong>(length)));
    const Input input = { static_cast<const Bytef*>(bytes), length };
    const bool done = output.Resize(bound) && Deflate(stream, input, output);
    deflateEnd(&stream);
    if (done)
        output.HandOut(packed, packedLength);
    return done;
}

VX3Bool Decompress(VX3Compressor* compressor, const void* packed, int64_t packedLength, int64_t limit, void** bytes, int64_t* length)
{
    if (!compressor || !IsInputAllowed(packed, packedLength) || limit < 0)
        return 0;
    z_stream stream = {};
    if (inflateInit(&stream) != Z_OK)
        return 0;
    Output output;
    const int64_t expected = std::max(firstOutput, packedLength * expectedRatio);
    const Input input = { static_cast<const Bytef*>(packed), packedLength };
    const bool done = output.Resize(std::min(limit, expected)) && Inflate(stream, input, output, limit);
    inflateEnd(&stream);
    if (done)
        output.HandOut(bytes, length);
    return done;
}

constexpr VX3CompressorServices compressorServices = { Create, Free, Compress, Decompress };

} // namespace

const VX3CompressorServices* CompressorServices()
{
    return &compressorServices;
}

} // namespace vx3::core
