#include <cstring>

#include "textvalue.h"
#include "unicode.h"
#include "vx3/text.h"

namespace vx3::core {
namespace {

// The bytes that the units need as UTF-8, a lone surrogate as U+FFFD.
int64_t Utf8Length(UnitSpan span)
{
    int64_t length = 0;
    for (int32_t at = 0; at < span.length;) {
        uint32_t character = 0;
        at += DecodeUnits(span.units + at, span.length - at, character);
        length += character < 0x80 ? 1 : character < 0x800 ? 2 : character < firstBeyondUnits ? 3 : 4;
    }
    return length;
}

// Writes whole characters while they fit, and answers the bytes.
int32_t WriteUtf8(UnitSpan span, unsigned char* bytes, int32_t capacity)
{
    int32_t written = 0;
    for (int32_t at = 0; at < span.length;) {
        uint32_t character = 0;
        at += DecodeUnits(span.units + at, span.length - at, character);
        unsigned char encoded[maximalUtf8Length];
        const int size = EncodeUtf8(IsSurrogate(character) ? replacementCharacter : character, encoded);
        if (size > capacity - written)
            break;
        std::memcpy(bytes + written, encoded, static_cast<size_t>(size));
        written += size;
    }
    return written;
}

} // namespace

bool SetTextBytes(VX3String& text, const char* bytes, size_t length, int32_t encoding)
{
    if (length > maximalTextLength || (encoding != VX3_ENCODING_PLAIN && encoding != VX3_ENCODING_UTF8))
        return false;
    if (length == 0)
        return AssignUnits(text, nullptr, 0);
    VX3Unit* units = PrepareText(text, static_cast<int32_t>(length));
    if (!units)
        return false;
    const auto* raw = reinterpret_cast<const unsigned char*>(bytes);
    if (encoding == VX3_ENCODING_PLAIN) {
        for (size_t i = 0; i < length; ++i)
            units[i] = raw[i];
        return true;
    }
    auto replace = [](unsigned char) { return static_cast<VX3Unit>(replacementCharacter); };
    BufferOf(text)->length = DecodeUtf8Text(raw, length, units, replace);
    return true;
}

VX3Bool SetText(VX3String* text, const char* bytes, int32_t length, int32_t encoding)
{
    if (length < -1 || (!bytes && length != 0))
        return 0;
    return SetTextBytes(*text, bytes, length == -1 ? std::strlen(bytes) : static_cast<size_t>(length), encoding);
}

int32_t TextToUtf8(const VX3String* text, char* bytes, int32_t capacity)
{
    const UnitSpan span = SpanOf(*text);
    if (bytes && capacity > 0) {
        const int32_t written = WriteUtf8(span, reinterpret_cast<unsigned char*>(bytes), capacity - 1);
        bytes[written] = 0;
    }
    const int64_t needed = Utf8Length(span);
    return needed > INT32_MAX ? INT32_MAX : static_cast<int32_t>(needed);
}

} // namespace vx3::core
