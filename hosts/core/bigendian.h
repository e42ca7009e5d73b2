// Integers as bytes, the most significant one first, on any machine.
#pragma once

#include <climits>
#include <concepts>
#include <cstddef>
#include <cstdint>

namespace vx3::core {

template <std::unsigned_integral Number>
void StoreBig(Number number, uint8_t* bytes)
{
    for (size_t i = 0; i < sizeof(Number); ++i)
        bytes[i] = static_cast<uint8_t>(number >> (sizeof(Number) - 1 - i) * CHAR_BIT);
}

template <std::unsigned_integral Number>
Number LoadBig(const uint8_t* bytes)
{
    Number number = 0;
    for (size_t i = 0; i < sizeof(Number); ++i)
        number = static_cast<Number>(number << (sizeof(Number) > 1 ? CHAR_BIT : 0)) | bytes[i];
    return number;
}

} // namespace vx3::core
