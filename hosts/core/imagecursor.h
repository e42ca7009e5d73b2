// Reads what an image of a container is made of, one thing behind the other.
//
// A read that fails leaves the cursor somewhere behind; whoever checks an image stops there.
#pragma once

#include <bit>
#include <climits>
#include <cstdint>
#include <span>

#include "vx3/container.h"

namespace vx3::core {

constexpr int imageGroupBits = 7; // of a number, in each of its bytes
constexpr uint8_t imageGroupMask = 0x7F;
constexpr uint8_t imageGroupFollows = 0x80;

// Numbers of a small amount are small whatever their sign.
inline uint64_t FoldSign(int64_t number)
{
    return static_cast<uint64_t>(number) << 1 ^ static_cast<uint64_t>(number >> (sizeof(number) * CHAR_BIT - 1));
}

inline int64_t UnfoldSign(uint64_t folded)
{
    return static_cast<int64_t>(folded >> 1 ^ (~(folded & 1) + 1));
}

// An entry of a container as it stands in an image. `value` is the bytes of a text, a
// container or a run of bytes without their number, else all of the value.
struct ImageEntry {
    int32_t key = 0;
    int32_t type = VX3_VALUE_NONE;
    std::span<const uint8_t> value;
    std::span<const uint8_t> whole; // with key and type
};

class ImageCursor
{
public:
    explicit ImageCursor(std::span<const uint8_t> image)
        : at(image.data())
        , end(image.data() + image.size())
    {
    }

    bool IsAtEnd() const { return at == end; }
    size_t Left() const { return static_cast<size_t>(end - at); }
    std::span<const uint8_t> Rest() const { return { at, end }; }

    // False for a number that could be shorter, or has more than 64 bits.
    bool TakeNumber(uint64_t& number)
    {
        if (at < end && *at < imageGroupFollows) {
            number = *at++;
            return true;
        }
        return TakeLongNumber(number);
    }

    bool TakeSigned(int64_t& number)
    {
        uint64_t folded = 0;
        if (!TakeNumber(folded))
            return false;
        number = UnfoldSign(folded);
        return true;
    }

    bool TakeSigned(int32_t& number)
    {
        int64_t wide = 0;
        if (!TakeSigned(wide) || wide < INT32_MIN || wide > INT32_MAX)
            return false;
        number = static_cast<int32_t>(wide);
        return true;
    }

    bool TakeRun(uint64_t length, std::span<const uint8_t>& run)
    {
        if (length > Left())
            return false;
        run = { at, static_cast<size_t>(length) };
        at += length;
        return true;
    }

    // Of any type that there is; what stands in the value is not looked at.
    bool TakeEntry(ImageEntry& entry)
    {
        const uint8_t* start = at;
        if (!TakeSigned(entry.key) || at == end)
            return false;
        entry.type = *at++;
        if (!TakeValue(entry))
            return false;
        entry.whole = { start, at };
        return true;
    }

private:
    bool TakeLongNumber(uint64_t& number);
    bool TakeValue(ImageEntry& entry);

    const uint8_t* at;
    const uint8_t* end;
};

inline bool ImageCursor::TakeLongNumber(uint64_t& number)
{
    constexpr int bits = sizeof(number) * CHAR_BIT;
    number = 0;
    for (int shift = 0; shift < bits && at < end; shift += imageGroupBits) {
        const uint64_t group = *at & imageGroupMask;
        const bool isLast = *at++ < imageGroupFollows;
        if (group << shift >> shift != group)
            return false;
        number |= group << shift;
        if (isLast)
            return group != 0;
    }
    return false;
}

inline bool ImageCursor::TakeValue(ImageEntry& entry)
{
    const uint8_t* start = at;
    uint64_t number = 0;
    switch (entry.type) {
    case VX3_VALUE_INT32:
    case VX3_VALUE_INT64:
        if (!TakeNumber(number))
            return false;
        entry.value = { start, at };
        return true;
    case VX3_VALUE_FLOAT: return TakeRun(sizeof(double), entry.value);
    case VX3_VALUE_BOOL: return TakeRun(1, entry.value);
    case VX3_VALUE_TEXT:
    case VX3_VALUE_CONTAINER:
    case VX3_VALUE_BYTES: return TakeNumber(number) && TakeRun(number, entry.value);
    default: return false;
    }
}

} // namespace vx3::core
