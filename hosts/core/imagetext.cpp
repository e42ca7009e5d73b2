#include "imagetext.h"

#include <algorithm>
#include <cstring>

#include "unicode.h"

namespace vx3::core {
namespace {

constexpr int surrogateLength = 3;

// A surrogate as three bytes; 0 if they are none.
int DecodeSurrogate(const uint8_t* bytes, size_t available, uint32_t& unit)
{
    constexpr uint8_t lead = 0xED, first = 0xA0, last = 0xBF, followMark = 0x80, followMask = 0x3F;
    if (available < surrogateLength || bytes[0] != lead || bytes[1] < first || bytes[1] > last || (bytes[2] & ~followMask) != followMark)
        return 0;
    unit = 0xD000u | (bytes[1] & followMask) << 6 | (bytes[2] & followMask);
    return surrogateLength;
}

int DecodeImageCharacter(const uint8_t* bytes, size_t available, uint32_t& character)
{
    const int size = DecodeUtf8(bytes, available, character);
    return size ? size : DecodeSurrogate(bytes, available, character);
}

size_t CountAscii(std::span<const uint8_t> bytes)
{
    return static_cast<size_t>(std::ranges::find_if(bytes, [](uint8_t byte) { return byte >= 0x80; }) - bytes.begin());
}

} // namespace

void AppendImageText(UnitSpan text, std::vector<uint8_t>& bytes)
{
    unsigned char encoded[maximalUtf8Length];
    for (int32_t at = 0; at < text.length;) {
        uint32_t character = 0;
        at += DecodeUnits(text.units + at, text.length - at, character);
        bytes.insert(bytes.end(), encoded, encoded + EncodeUtf8(character, encoded));
    }
}

// Two surrogates that make a pair would have been written as the character that they are.
int64_t CountImageText(std::span<const uint8_t> bytes)
{
    size_t at = CountAscii(bytes);
    auto count = static_cast<int64_t>(at);
    bool isBehindHigh = false;
    while (at < bytes.size()) {
        uint32_t character = 0;
        const int size = DecodeImageCharacter(bytes.data() + at, bytes.size() - at, character);
        if (size == 0 || (isBehindHigh && IsLowSurrogate(character)))
            return -1;
        isBehindHigh = IsHighSurrogate(character);
        count += character < firstBeyondUnits ? 1 : 2;
        at += static_cast<size_t>(size);
    }
    return count <= maximalTextLength ? count : -1;
}

bool ReadImageText(std::span<const uint8_t> bytes, VX3String& text)
{
    const int64_t count = CountImageText(bytes);
    if (count <= 0) {
        ReplaceBuffer(text, nullptr);
        return count == 0;
    }
    VX3Unit* units = PrepareText(text, static_cast<int32_t>(count));
    if (!units)
        return false;
    const size_t ascii = WidenAscii(bytes.data(), bytes.size(), units);
    units += ascii;
    for (size_t at = ascii; at < bytes.size();) {
        uint32_t character = 0;
        at += static_cast<size_t>(DecodeImageCharacter(bytes.data() + at, bytes.size() - at, character));
        units += EncodeUnits(character, units);
    }
    return true;
}

} // namespace vx3::core
