// Paths as an index of items has them, and an order in which they are asked for.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "measure.h"

namespace vx3::bench {

constexpr size_t indexCounts[] = { 100'000, 1'000'000 };
constexpr int indexRepeats = 3;

// Of seven libraries, in lower case.
inline std::string PathInIndex(size_t number)
{
    constexpr size_t libraries = 7;
    char text[80];
    std::snprintf(text, sizeof text, "preset://lib%zu.libvx/materials/wood/weathered plank %06zu", number % libraries, number);
    return text;
}

inline std::vector<uint32_t> ShuffledNumbers(size_t count)
{
    uint64_t random = 3;
    std::vector<uint32_t> order(count);
    for (size_t i = 0; i < count; i++)
        order[i] = static_cast<uint32_t>(i);
    for (size_t i = count; i > 1; i--)
        std::swap(order[i - 1], order[NextRandom(&random) % i]);
    return order;
}

} // namespace vx3::bench
