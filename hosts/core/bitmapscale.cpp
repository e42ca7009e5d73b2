// Scaling: the average of the area where a side shrinks, two neighbours where it grows,
// one direction after the other. Colours are weighted by their alpha, so that what lies
// under transparent pixels does not bleed into the edges.
#include <algorithm>
#include <cmath>
#include <cstring>
#include <new>
#include <vector>

#include "bitmappixels.h"

namespace vx3::core {

namespace {

constexpr float alphaScale = 255.0f;

// The source pixels from `first` on that make up one target pixel; the weights add up to 1.
struct Taps {
    int32_t first = 0;
    uint32_t offset = 0; // of the weights in Axis::weights
    uint32_t count = 0;
};

// One direction: the taps of the target pixels `visibleFirst` and on.
struct Axis {
    int32_t visibleFirst = 0;
    std::vector<Taps> taps;
    std::vector<float> weights;

    void Add(int32_t first, const std::vector<double>& shares);
};

void Axis::Add(int32_t first, const std::vector<double>& shares)
{
    double sum = 0;
    for (double share : shares)
        sum += share;
    taps.push_back({ first, uint32_t(weights.size()), uint32_t(shares.size()) });
    for (double share : shares)
        weights.push_back(float(share / sum));
}

// Target pixel `place` of `to` covers a stretch of the `from` source pixels; each one counts by what is covered.
void AddAverage(Axis& axis, int32_t origin, int64_t from, int64_t to, int64_t place, std::vector<double>& shares)
{
    double begin = double(place) * double(from) / double(to);
    double end = double(place + 1) * double(from) / double(to);
    auto first = int64_t(begin);
    int64_t last = std::clamp(int64_t(std::ceil(end)) - 1, first, from - 1);
    shares.clear();
    for (int64_t pixel = first; pixel <= last; ++pixel) {
        double covered = std::min(end, double(pixel + 1)) - std::max(begin, double(pixel));
        shares.push_back(std::max(covered, 0.0));
    }
    axis.Add(int32_t(origin + first), shares);
}

void AddNeighbours(Axis& axis, int32_t origin, int64_t from, int64_t to, int64_t place, std::vector<double>& shares)
{
    double centre = (double(place) + 0.5) * double(from) / double(to) - 0.5;
    centre = std::clamp(centre, 0.0, double(from - 1));
    auto first = int64_t(centre);
    double second = centre - double(first);
    shares.assign(1, 1.0 - second);
    if (second > 0)
        shares.push_back(second);
    axis.Add(int32_t(origin + first), shares);
}

// `limit` is the side of the target picture: only its own pixels get taps.
Axis MakeAxis(int32_t sourceFirst, int32_t sourceLast, int32_t targetFirst, int32_t targetLast, int32_t limit)
{
    Axis axis;
    int64_t from = int64_t(sourceLast) - sourceFirst + 1;
    int64_t to = int64_t(targetLast) - targetFirst + 1;
    axis.visibleFirst = std::max(targetFirst, 0);
    int32_t visibleLast = std::min(targetLast, limit - 1);
    std::vector<double> shares;
    for (int64_t pixel = axis.visibleFirst; pixel <= visibleLast; ++pixel)
        (to < from ? AddAverage : AddNeighbours)(axis, sourceFirst, from, to, pixel - targetFirst, shares);
    return axis;
}

// Source rows scaled in width, as floats: colours times alpha, and alpha. Two rows are
// remembered, since neighbouring target rows share them.
class WideRows
{
public:
    WideRows(const Pixels& source, const Axis& columns, bool weighted)
        : pixels(source)
        , axis(columns)
        , byAlpha(weighted)
    {
        for (Slot& slot : slots)
            slot.values.resize(axis.taps.size() * bytesPerPixel);
    }

    const float* Get(int32_t y);

private:
    struct Slot {
        int32_t y = -1;
        std::vector<float> values;
    };

    void Fill(Slot& slot, int32_t y) const;

    const Pixels& pixels;
    const Axis& axis;
    bool byAlpha;
    Slot slots[2];
    int next = 0;
};

const float* WideRows::Get(int32_t y)
{
    for (const Slot& slot : slots)
        if (slot.y == y)
            return slot.values.data();
    Slot& slot = slots[next];
    next = 1 - next;
    Fill(slot, y);
    return slot.values.data();
}

void WideRows::Fill(Slot& slot, int32_t y) const
{
    const uint8_t* row = pixels.Row(y);
    float* out = slot.values.data();
    for (const Taps& taps : axis.taps) {
        float sums[bytesPerPixel] = {};
        const uint8_t* pixel = row + size_t(taps.first) * bytesPerPixel;
        for (uint32_t tap = 0; tap < taps.count; ++tap, pixel += bytesPerPixel) {
            float weight = axis.weights[taps.offset + tap];
            float colour = byAlpha ? weight * float(pixel[3]) / alphaScale : weight;
            for (int channel = 0; channel < 3; ++channel)
                sums[channel] += colour * float(pixel[channel]);
            sums[3] += weight * float(pixel[3]);
        }
        std::copy_n(sums, bytesPerPixel, out);
        out += bytesPerPixel;
    }
    slot.y = y;
}

uint8_t ToByte(float value)
{
    return uint8_t(std::clamp(value + 0.5f, 0.0f, 255.0f));
}

// One finished row of sums into the target.
void StoreRow(const std::vector<float>& sums, bool weighted, bool alphaWanted, uint8_t* out)
{
    for (size_t at = 0; at < sums.size(); at += bytesPerPixel, out += bytesPerPixel) {
        float alpha = sums[at + 3];
        float factor = !weighted ? 1.0f : alpha > 0 ? alphaScale / alpha : 0.0f;
        for (size_t channel = 0; channel < 3; ++channel)
            out[channel] = ToByte(sums[at + channel] * factor);
        out[3] = alphaWanted ? ToByte(alpha) : opaque;
    }
}

void ScaleRows(WideRows& rows, const Axis& columns, const Axis& lines, bool weighted, Pixels& target)
{
    std::vector<float> sums(columns.taps.size() * bytesPerPixel);
    int32_t y = lines.visibleFirst;
    for (const Taps& taps : lines.taps) {
        std::fill(sums.begin(), sums.end(), 0.0f);
        for (uint32_t tap = 0; tap < taps.count; ++tap) {
            const float* wide = rows.Get(taps.first + int32_t(tap));
            float weight = lines.weights[taps.offset + tap];
            for (size_t at = 0; at < sums.size(); ++at)
                sums[at] += weight * wide[at];
        }
        StoreRow(sums, weighted, target.hasAlpha, target.Row(y++) + size_t(columns.visibleFirst) * bytesPerPixel);
    }
}

bool HasSameSize(const PixelRect& a, const PixelRect& b)
{
    return int64_t(a.right) - a.left == int64_t(b.right) - b.left && int64_t(a.bottom) - a.top == int64_t(b.bottom) - b.top;
}

// Same size: exact, also in the colours under transparent pixels.
void CopyRect(const Pixels& source, const PixelRect& from, Pixels& target, const PixelRect& to)
{
    int64_t left = std::max(to.left, 0);
    int64_t right = std::min(to.right, target.Width() - 1);
    for (int64_t y = std::max(to.top, 0); left <= right && y <= std::min(to.bottom, target.Height() - 1); ++y) {
        const uint8_t* in = source.Row(int32_t(from.top + y - to.top)) + size_t(from.left + left - to.left) * bytesPerPixel;
        uint8_t* out = target.Row(int32_t(y)) + size_t(left) * bytesPerPixel;
        size_t length = size_t(right - left + 1) * bytesPerPixel;
        std::memcpy(out, in, length);
        for (size_t alpha = 3; !target.hasAlpha && alpha < length; alpha += bytesPerPixel)
            out[alpha] = opaque;
    }
}

} // namespace

bool ScalePixels(const Pixels& source, const PixelRect& from, Pixels& target, const PixelRect& to)
try {
    if (HasSameSize(from, to)) {
        CopyRect(source, from, target, to);
        return true;
    }
    bool weighted = source.hasAlpha && target.hasAlpha;
    Axis columns = MakeAxis(from.left, from.right, to.left, to.right, target.Width());
    Axis lines = MakeAxis(from.top, from.bottom, to.top, to.bottom, target.Height());
    WideRows rows(source, columns, weighted);
    ScaleRows(rows, columns, lines, weighted, target);
    return true;
} catch (const std::bad_alloc&) {
    return false;
}

} // namespace vx3::core
