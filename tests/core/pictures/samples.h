// The sample pictures of tests/data/pictures, and bitmaps that free themselves.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "core/services.h"
#include "core/values.h"

namespace vx3::core {

using Bytes = std::vector<uint8_t>;
using Colour = std::array<uint8_t, 4>;

constexpr int32_t sampleWidth = 24;
constexpr int32_t sampleHeight = 16;

// What a sample shows: entries of the list of colours, of greys, or black and white; in
// single pixels or in blocks; `tolerance` for formats that lose something.
enum class Shown { Colours, Greys, TwoTones };

struct Sample {
    const char* name;
    const char* format;
    int32_t depth;
    bool hasAlpha;
    Shown shown = Shown::Colours;
    bool inBlocks = false;
    int tolerance = 0;
};

const std::vector<Sample>& Samples();
std::string SamplePath(const std::string& name);
Bytes ReadSample(const std::string& name);

// The pixel that a sample of straight colours has at a place; `shift` is the frame.
Colour ExpectedColour(const Sample& sample, int32_t x, int32_t y, int shift = 0);

struct FreeBitmap {
    void operator()(VX3Bitmap* bitmap) const { BitmapServices()->free(bitmap); }
};
using Bitmap = std::unique_ptr<VX3Bitmap, FreeBitmap>;

Bitmap MakeBitmap(int32_t width, int32_t height, bool withAlpha = false);
Colour PixelAt(const Bitmap& bitmap, int32_t x, int32_t y);
void SetPixel(const Bitmap& bitmap, int32_t x, int32_t y, const Colour& colour);
bool AreEqual(const Bitmap& a, const Bitmap& b);

// Decodes bytes in memory, which must outlive the call. A VX3_IMAGE value.
int32_t Decode(const Bytes& bytes, const Bitmap& bitmap, int32_t frame = 0);
Path PathOf(const Bytes& bytes); // reads them

} // namespace vx3::core
