// The pixels of a bitmap or of a picture that is being decoded: bytes r, g, b, a, row 0
// on top, the alpha straight. Without an alpha channel every alpha byte is 255, so that
// rows can be copied as they are. Owned by whoever holds it; no lock.
//
// Of a bitmap of the table BitmapView shows the same, for hosts that draw it.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>

namespace vx3::core {

constexpr int32_t maximumSide = 32768;                  // pixels
constexpr int64_t maximumPixelCount = int64_t(1) << 28; // 1 GiB of memory
constexpr int32_t bytesPerPixel = 4;
constexpr uint8_t opaque = 255;

class Pixels
{
public:
    // Zeroed pixels of a new size, also in alpha. False, with the old ones kept, if the
    // size is out of bounds or there is no memory.
    [[nodiscard]] bool Allocate(int32_t newWidth, int32_t newHeight);
    [[nodiscard]] bool CopyFrom(const Pixels& other);
    void MakeOpaque(); // every alpha byte 255; hasAlpha stays

    int32_t Width() const { return width; }
    int32_t Height() const { return height; }
    uint8_t* Row(int32_t y) { return bytes.get() + RowBytes() * size_t(y); }
    const uint8_t* Row(int32_t y) const { return bytes.get() + RowBytes() * size_t(y); }
    size_t RowBytes() const { return size_t(width) * bytesPerPixel; }

    bool hasAlpha = false;

private:
    struct Free {
        void operator()(uint8_t* block) const;
    };

    int32_t width = 0;
    int32_t height = 0;
    std::unique_ptr<uint8_t[], Free> bytes;
};

// A rectangle of pixels whose corners both belong to it.
struct PixelRect {
    int32_t left;
    int32_t top;
    int32_t right;
    int32_t bottom;

    bool IsInside(const Pixels& pixels) const
    {
        return left >= 0 && top >= 0 && left <= right && top <= bottom && right < pixels.Width() && bottom < pixels.Height();
    }
};

// False for what no file of this length can hold: guards memory from a few forged bytes.
bool IsSizePlausible(int64_t width, int64_t height, int64_t fileLength);

// Scales a rectangle of `source`, which must lie inside it, into a rectangle of another
// picture; what falls outside that one is left out. False without memory.
[[nodiscard]] bool ScalePixels(const Pixels& source, const PixelRect& from, Pixels& target, const PixelRect& to);

} // namespace vx3::core

// Who writes says so at the end (MarkWritten). Serial and revision may be asked for while
// another thread writes, the pixels may not.
struct VX3Bitmap {
    explicit VX3Bitmap(vx3::core::Pixels whole)
        : pixels(std::move(whole))
    {
    }
    void MarkWritten() { revision.fetch_add(1, std::memory_order_release); }

    vx3::core::Pixels pixels;
    const uint64_t serial = nextSerial.fetch_add(1, std::memory_order_relaxed);
    std::atomic<uint64_t> revision{ 1 };

private:
    static inline std::atomic<uint64_t> nextSerial{ 1 };
};

namespace vx3::core {

// Which picture stands in a bitmap. Two marks are equal only if it is the same one: a host
// that keeps a bitmap in a form of its own keeps the mark beside it. No two bitmaps of a
// process have the same serial, not even one after the other at one address.
struct BitmapMark {
    uint64_t serial = 0; // never 0 of a bitmap
    uint64_t revision = 0;

    bool operator==(const BitmapMark&) const = default;
};

BitmapMark MarkOf(const VX3Bitmap& bitmap); // any thread, also while one writes

// Borrowed until the bitmap is written or freed. Several threads may read, none write.
struct BitmapView {
    int32_t width = 0;
    int32_t height = 0;
    bool hasAlpha = false;
    const uint8_t* bytes = nullptr; // r, g, b, a, row 0 on top; a is straight, and 255 without alpha
    size_t rowBytes = 0;            // from one row to the next
};

BitmapView ViewOf(const VX3Bitmap& bitmap);

} // namespace vx3::core
