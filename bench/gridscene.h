// The grid that both sides paint: its size, pictures and captions.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>

namespace vx3::bench {

constexpr int gridWidth = 1280;
constexpr int gridHeight = 800;
constexpr int frameCount = 200;
constexpr int scrollStep = 37; // pixels; no whole number of rows
constexpr int pictureCount = 64;
constexpr int captionCount = 2000;

struct PictureColour {
    uint8_t red;
    uint8_t green;
    uint8_t blue;
};

// Of one pixel of one of the pictures.
inline PictureColour ColourAt(int picture, int x, int y)
{
    return { static_cast<uint8_t>(x * 5 + picture * 40), static_cast<uint8_t>(y * 7 + picture * 90), static_cast<uint8_t>(x ^ y) };
}

inline std::string CaptionOf(int index)
{
    char text[64];
    std::snprintf(text, sizeof text, "Oak plank brushed %06d.jpg", index);
    return text;
}

} // namespace vx3::bench
