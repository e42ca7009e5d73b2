#include "containerimage.h"

#include <bit>
#include <utility>

#include "bigendian.h"
#include "containerbody.h"
#include "textbuffer.h"
#include "vx3/container.h"

namespace vx3::core {
namespace {

// A key, a type and the smallest value.
constexpr size_t smallestEntry = sizeof(uint32_t) + 2 * sizeof(uint8_t);

class ImageWriter
{
public:
    explicit ImageWriter(std::vector<uint8_t>& target)
        : image(target)
    {
    }

    bool PutContainer(const VX3Container& container, int32_t depth);

private:
    bool PutEntry(const ContainerEntry& entry, int32_t depth);
    void PutText(UnitSpan text);
    void PutBytes(const ByteValue& bytes);

    template <class Number>
    void Put(Number number)
    {
        uint8_t bytes[sizeof(Number)];
        StoreBig(number, bytes);
        image.insert(image.end(), bytes, bytes + sizeof(Number));
    }

    std::vector<uint8_t>& image;
};

uint32_t CountWritten(const ContainerBody& body)
{
    uint32_t count = 0;
    for (int32_t place = 0; place < body.Count(); ++place)
        count += body.At(place)->type != VX3_VALUE_POINTER ? 1 : 0;
    return count;
}

bool ImageWriter::PutContainer(const VX3Container& container, int32_t depth)
{
    if (depth > maximalContainerDepth)
        return false;
    const ContainerBody* body = BodyOf(container);
    Put(static_cast<uint32_t>(body ? body->id : 0));
    Put(body ? CountWritten(*body) : uint32_t{ 0 });
    for (int32_t place = 0; body && place < body->Count(); ++place) {
        const ContainerEntry& entry = *body->At(place);
        if (entry.type != VX3_VALUE_POINTER && !PutEntry(entry, depth))
            return false;
    }
    return true;
}

bool ImageWriter::PutEntry(const ContainerEntry& entry, int32_t depth)
{
    Put(static_cast<uint32_t>(entry.key));
    Put(static_cast<uint8_t>(entry.type));
    switch (entry.type) {
    case VX3_VALUE_INT32: Put(static_cast<uint32_t>(entry.value.int32)); return true;
    case VX3_VALUE_INT64: Put(static_cast<uint64_t>(entry.value.int64)); return true;
    case VX3_VALUE_FLOAT: Put(std::bit_cast<uint64_t>(entry.value.number)); return true;
    case VX3_VALUE_BOOL: Put(static_cast<uint8_t>(entry.value.int32)); return true;
    case VX3_VALUE_TEXT: PutText(SpanOf(entry.value.text)); return true;
    case VX3_VALUE_BYTES: PutBytes(*entry.value.bytes); return true;
    case VX3_VALUE_CONTAINER: return PutContainer(*entry.value.container, depth + 1);
    default: return false;
    }
}

void ImageWriter::PutText(UnitSpan text)
{
    Put(static_cast<uint32_t>(text.length));
    for (int32_t i = 0; i < text.length; ++i)
        Put(text.units[i]);
}

void ImageWriter::PutBytes(const ByteValue& bytes)
{
    Put(static_cast<uint64_t>(bytes.length));
    image.insert(image.end(), bytes.Bytes(), bytes.Bytes() + bytes.length);
}

// Every length is compared with the bytes that are left before memory is asked for.
class ImageReader
{
public:
    explicit ImageReader(std::span<const uint8_t> source)
        : left(source)
    {
    }

    bool TakeContainer(VX3Container& container, int32_t depth);
    bool IsAtEnd() const { return left.empty(); }

private:
    bool TakeEntry(ContainerBody& body, int32_t depth);
    bool TakeValue(int32_t type, ContainerValue& value, int32_t depth);
    bool TakeBool(ContainerValue& value);
    bool TakeText(ContainerValue& value);
    bool TakeBytes(ContainerValue& value);
    bool TakeNested(ContainerValue& value, int32_t depth);

    template <class Number>
    bool Take(Number& number)
    {
        if (left.size() < sizeof(Number))
            return false;
        number = LoadBig<Number>(left.data());
        left = left.subspan(sizeof(Number));
        return true;
    }

    std::span<const uint8_t> left;
};

bool ImageReader::TakeContainer(VX3Container& container, int32_t depth)
{
    uint32_t id = 0;
    uint32_t count = 0;
    if (depth > maximalContainerDepth || !Take(id) || !Take(count) || count > left.size() / smallestEntry)
        return false;
    if (id == 0 && count == 0)
        return true;
    ContainerBody* body = DemandBody(container);
    if (!body)
        return false;
    body->id = static_cast<int32_t>(id);
    for (uint32_t i = 0; i < count; ++i) {
        if (!TakeEntry(*body, depth))
            return false;
    }
    return true;
}

bool ImageReader::TakeEntry(ContainerBody& body, int32_t depth)
{
    uint32_t key = 0;
    uint8_t type = 0;
    if (!Take(key) || !Take(type) || body.Find(static_cast<int32_t>(key)))
        return false;
    ContainerValue value = {};
    if (!TakeValue(type, value, depth))
        return false;
    if (body.Set(static_cast<int32_t>(key), type, value))
        return true;
    FreeValue(type, value);
    return false;
}

bool ImageReader::TakeValue(int32_t type, ContainerValue& value, int32_t depth)
{
    uint32_t word = 0;
    uint64_t longWord = 0;
    switch (type) {
    case VX3_VALUE_INT32:
        if (!Take(word))
            return false;
        value.int32 = static_cast<int32_t>(word);
        return true;
    case VX3_VALUE_INT64:
        if (!Take(longWord))
            return false;
        value.int64 = static_cast<int64_t>(longWord);
        return true;
    case VX3_VALUE_FLOAT:
        if (!Take(longWord))
            return false;
        value.number = std::bit_cast<double>(longWord);
        return true;
    case VX3_VALUE_BOOL: return TakeBool(value);
    case VX3_VALUE_TEXT: return TakeText(value);
    case VX3_VALUE_BYTES: return TakeBytes(value);
    case VX3_VALUE_CONTAINER: return TakeNested(value, depth);
    default: return false;
    }
}

bool ImageReader::TakeBool(ContainerValue& value)
{
    uint8_t byte = 0;
    if (!Take(byte) || byte > 1)
        return false;
    value.int32 = byte;
    return true;
}

bool ImageReader::TakeText(ContainerValue& value)
{
    uint32_t length = 0;
    if (!Take(length) || length > left.size() / sizeof(VX3Unit) || length > maximalTextLength)
        return false;
    if (length == 0)
        return true;
    VX3Unit* units = PrepareText(value.text, static_cast<int32_t>(length));
    if (!units)
        return false;
    for (uint32_t i = 0; i < length; ++i)
        units[i] = LoadBig<VX3Unit>(left.data() + i * sizeof(VX3Unit));
    left = left.subspan(length * sizeof(VX3Unit));
    return true;
}

bool ImageReader::TakeBytes(ContainerValue& value)
{
    uint64_t length = 0;
    if (!Take(length) || length > left.size())
        return false;
    value.bytes = MakeBytes(left.data(), static_cast<int64_t>(length));
    left = left.subspan(length);
    return value.bytes;
}

bool ImageReader::TakeNested(ContainerValue& value, int32_t depth)
{
    value.container = MakeNested();
    if (value.container && TakeContainer(*value.container, depth + 1))
        return true;
    FreeValue(VX3_VALUE_CONTAINER, value);
    return false;
}

} // namespace

bool EncodeContainer(const VX3Container& container, std::vector<uint8_t>& image)
{
    return ImageWriter(image).PutContainer(container, 1);
}

bool DecodeContainer(std::span<const uint8_t> image, VX3Container& container)
{
    ImageReader reader(image);
    VX3Container read = {};
    const bool done = reader.TakeContainer(read, 1) && reader.IsAtEnd();
    if (done)
        std::swap(container.opaque, read.opaque);
    DestructContainer(read);
    return done;
}

} // namespace vx3::core
