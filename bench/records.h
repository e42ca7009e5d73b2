// The items of the library that is measured: the same for us and for what stands beside us.
#pragma once

#include <string>
#include <sys/stat.h>
#include <vector>

#include "measure.h"

namespace vx3::bench {

constexpr size_t previewBytes = 8 << 10;
constexpr size_t dataBytes = 20 << 10;
constexpr size_t recordBytes = 300; // a row of theirs; ours tells its own size
constexpr int32_t previewSide = 256;

constexpr size_t lookupCount = 100'000; // of random items
constexpr size_t previewCount = 20'000;
constexpr uint64_t orderSeed = 5; // of those items

struct ItemRow {
    std::string path;
    std::string name;
    uint32_t hash = 0;
    int32_t type = 0;
    int32_t subtype = 0;
    int64_t created = 0; // seconds
    int64_t changed = 0;
    std::string settings; // fills the row up
};

inline std::string PathOfItem(size_t number)
{
    static const char* const folders[] = { "Materials/Wood", "Materials/Metal", "Objects/Chairs", "Objects/Lamps",
                                           "Scenes/Rooms",   "Textures/Floor",  "Lights",         "Skies" };
    char text[128];
    std::snprintf(text, sizeof text, "preset://studio.libvx/%s/Weathered plank %06zu", folders[number % std::size(folders)], number);
    return text;
}

inline ItemRow MakeRow(size_t number)
{
    constexpr int32_t firstType = 1'000'000, typeCount = 7, day = 86'400;
    constexpr int64_t firstDate = 1'500'000'000;
    uint64_t random = number;
    ItemRow row;
    row.path = PathOfItem(number);
    row.name = "Weathered plank " + std::to_string(number);
    row.hash = static_cast<uint32_t>(NextRandom(&random));
    row.type = firstType + static_cast<int32_t>(number % typeCount);
    row.subtype = static_cast<int32_t>(number % 3 + 1);
    row.created = firstDate + static_cast<int64_t>(number) * 37;
    row.changed = row.created + day;
    const size_t used = row.path.size() + row.name.size() + 3 * sizeof(int32_t) + 2 * sizeof(int64_t);
    for (size_t i = used; i < recordBytes; i++)
        row.settings += static_cast<char>(NextRandom(&random));
    return row;
}

// Bytes that nothing can compress. An item has a window of one block, so that making them costs nothing.
inline const uint8_t* Payload(size_t number, size_t size)
{
    constexpr size_t blockBytes = 4 << 20, stride = 7919;
    static const std::vector<uint8_t> block = [] {
        std::vector<uint8_t> made(blockBytes);
        uint64_t random = 99;
        for (uint8_t& byte : made)
            byte = static_cast<uint8_t>(NextRandom(&random));
        return made;
    }();
    return block.data() + number * stride % (block.size() - size);
}

inline double MebibytesOf(const std::string& file)
{
    struct stat status = {};
    return stat(file.c_str(), &status) == 0 ? static_cast<double>(status.st_size) / (1 << 20) : 0;
}

} // namespace vx3::bench
