#include "containerimage.h"

#include <algorithm>
#include <bit>
#include <utility>

#include "bigendian.h"
#include "imagetext.h"
#include "packedbody.h"

namespace vx3::core {
namespace {

constexpr size_t smallestEntry = 3; // a key, a type and the smallest value
constexpr uint64_t mostEntries = INT32_MAX / 4;

class ImageWriter
{
public:
    explicit ImageWriter(std::vector<uint8_t>& target)
        : image(target)
    {
    }

    bool PutContainer(const VX3Container& container, int32_t depth);

private:
    bool PutPlain(const ContainerBody* body, int32_t depth);
    bool PutPacked(const PackedBody& body, int32_t depth);
    bool PutEntry(const ContainerEntry& entry, int32_t depth);
    bool PutNested(const VX3Container& container, int32_t depth);
    void PutNumber(uint64_t number);
    void PutSigned(int64_t number) { PutNumber(FoldSign(number)); }
    void PutRun(std::span<const uint8_t> run) { image.insert(image.end(), run.begin(), run.end()); }
    void PutFloat(double number);
    void PutText(UnitSpan text);
    void PutLengthBefore(size_t start);

    std::vector<uint8_t>& image;
};

int32_t CountWritten(const ContainerBody& body)
{
    int32_t count = 0;
    for (int32_t place = 0; place < body.Count(); ++place)
        count += body.At(place)->type != VX3_VALUE_POINTER ? 1 : 0;
    return count;
}

// How deep the containers of an image are nested, the outermost one counted.
int32_t HeightOf(std::span<const uint8_t> image)
{
    ImageCursor cursor(image);
    int64_t id = 0;
    uint64_t count = 0;
    int32_t highest = 0;
    ImageEntry entry;
    (void)(cursor.TakeSigned(id) && cursor.TakeNumber(count));
    while (cursor.TakeEntry(entry))
        if (entry.type == VX3_VALUE_CONTAINER)
            highest = std::max(highest, HeightOf(entry.value));
    return highest + 1;
}

void ImageWriter::PutNumber(uint64_t number)
{
    for (; number > imageGroupMask; number >>= imageGroupBits)
        image.push_back(static_cast<uint8_t>((number & imageGroupMask) | imageGroupFollows));
    image.push_back(static_cast<uint8_t>(number));
}

bool ImageWriter::PutContainer(const VX3Container& container, int32_t depth)
{
    if (depth > maximalContainerDepth)
        return false;
    const PackedBody* packed = PackedOf(container);
    return packed ? PutPacked(*packed, depth) : PutPlain(PlainOf(container), depth);
}

bool ImageWriter::PutPlain(const ContainerBody* body, int32_t depth)
{
    PutSigned(body ? body->id : 0);
    PutNumber(body ? static_cast<uint64_t>(CountWritten(*body)) : 0);
    for (int32_t place = 0; body && place < body->Count(); ++place) {
        const ContainerEntry& entry = *body->At(place);
        if (entry.type != VX3_VALUE_POINTER && !PutEntry(entry, depth))
            return false;
    }
    return true;
}

// As it was read, but for the nested ones that somebody may have changed. It may stand deeper
// now than where it was read.
bool ImageWriter::PutPacked(const PackedBody& body, int32_t depth)
{
    PutSigned(body.Id());
    PutNumber(static_cast<uint64_t>(body.Count()));
    ImageCursor cursor(body.Entries());
    ImageEntry entry;
    for (int32_t i = 0; i < body.Count() && cursor.TakeEntry(entry); ++i) {
        PackedNested* nested = body.FindNested(entry.key);
        if (nested && !PutEntry({ entry.key, entry.type, { .container = &nested->container } }, depth))
            return false;
        if (!nested && entry.type == VX3_VALUE_CONTAINER && depth + HeightOf(entry.value) > maximalContainerDepth)
            return false;
        if (!nested)
            PutRun(entry.whole);
    }
    return true;
}

bool ImageWriter::PutEntry(const ContainerEntry& entry, int32_t depth)
{
    PutSigned(entry.key);
    image.push_back(static_cast<uint8_t>(entry.type));
    switch (entry.type) {
    case VX3_VALUE_INT32: PutSigned(entry.value.int32); return true;
    case VX3_VALUE_INT64: PutSigned(entry.value.int64); return true;
    case VX3_VALUE_FLOAT: PutFloat(entry.value.number); return true;
    case VX3_VALUE_BOOL: image.push_back(static_cast<uint8_t>(entry.value.int32)); return true;
    case VX3_VALUE_TEXT: PutText(SpanOf(entry.value.text)); return true;
    case VX3_VALUE_CONTAINER: return PutNested(*entry.value.container, depth);
    case VX3_VALUE_BYTES:
        PutNumber(static_cast<uint64_t>(entry.value.bytes->length));
        PutRun({ entry.value.bytes->Bytes(), static_cast<size_t>(entry.value.bytes->length) });
        return true;
    default: return false;
    }
}

bool ImageWriter::PutNested(const VX3Container& container, int32_t depth)
{
    const size_t start = image.size();
    if (!PutContainer(container, depth + 1))
        return false;
    PutLengthBefore(start);
    return true;
}

void ImageWriter::PutFloat(double number)
{
    uint8_t bytes[sizeof(number)];
    StoreBig(std::bit_cast<uint64_t>(number), bytes);
    PutRun(bytes);
}

void ImageWriter::PutText(UnitSpan text)
{
    const size_t start = image.size();
    AppendImageText(text, image);
    PutLengthBefore(start);
}

// How much it is stands in front and is known behind.
void ImageWriter::PutLengthBefore(size_t start)
{
    const size_t end = image.size();
    PutNumber(end - start);
    std::rotate(image.begin() + static_cast<std::ptrdiff_t>(start), image.begin() + static_cast<std::ptrdiff_t>(end), image.end());
}

// --- Checking ---

bool CheckContainer(std::span<const uint8_t> image, int32_t depth);

bool CheckValue(const ImageEntry& entry, int32_t depth)
{
    int32_t word = 0;
    switch (entry.type) {
    case VX3_VALUE_INT32: return ImageCursor(entry.value).TakeSigned(word);
    case VX3_VALUE_BOOL: return entry.value[0] <= 1;
    case VX3_VALUE_TEXT: return CountImageText(entry.value) >= 0;
    case VX3_VALUE_CONTAINER: return CheckContainer(entry.value, depth + 1);
    default: return true;
    }
}

// Tells keys that stand twice. A few are compared one by one, and most not even that.
class KeyCheck
{
public:
    explicit KeyCheck(uint64_t expected)
    {
        if (expected > mostPackedEntries)
            many.reserve(static_cast<size_t>(expected));
    }

    // False if a key of a few was here.
    bool Add(int32_t key)
    {
        if (many.capacity() > 0) {
            many.push_back(key);
            return true;
        }
        const uint64_t bit = uint64_t(1) << (static_cast<uint32_t>(key) % 64);
        if ((seen & bit) != 0 && std::find(few, few + count, key) != few + count)
            return false;
        seen |= bit;
        few[count++] = key;
        return true;
    }

    bool AreManyUnique()
    {
        std::ranges::sort(many);
        return std::ranges::adjacent_find(many) == many.end();
    }

private:
    uint64_t seen = 0;
    int32_t count = 0;
    int32_t few[mostPackedEntries];
    std::vector<int32_t> many;
};

bool CheckContainer(std::span<const uint8_t> image, int32_t depth)
{
    ImageCursor cursor(image);
    int32_t id = 0;
    uint64_t count = 0;
    if (depth > maximalContainerDepth || !cursor.TakeSigned(id) || !cursor.TakeNumber(count) || count > cursor.Left() / smallestEntry
        || count > mostEntries)
        return false;
    KeyCheck keys(count);
    ImageEntry entry;
    for (uint64_t i = 0; i < count; ++i)
        if (!cursor.TakeEntry(entry) || !keys.Add(entry.key) || !CheckValue(entry, depth))
            return false;
    return cursor.IsAtEnd() && keys.AreManyUnique();
}

} // namespace

bool EncodeContainer(const VX3Container& container, std::vector<uint8_t>& image)
{
    return ImageWriter(image).PutContainer(container, 1);
}

bool DecodeContainer(std::span<const uint8_t> image, VX3Container& container)
{
    if (!CheckContainer(image, 1))
        return false;
    VX3Container read = {};
    const bool done = BuildContainer(image, read);
    if (done)
        std::swap(container.opaque, read.opaque);
    DestructContainer(read);
    return done;
}

} // namespace vx3::core
