#include "gui/tracks.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace vx3::gui {

namespace {

// Makes whole pixels of lengths that were pixels once and went through a division.
constexpr double roundingError = 1e-6;

int SpacingOf(const std::vector<Track>& tracks, int spacing)
{
    const auto used = std::count_if(tracks.begin(), tracks.end(), [](const Track& track) { return track.isUsed; });
    return used > 1 ? static_cast<int>(used - 1) * spacing : 0;
}

int CountScaling(const std::vector<Track>& tracks)
{
    return static_cast<int>(std::count_if(tracks.begin(), tracks.end(), [](const Track& track) { return track.isUsed && track.scales; }));
}

void LetFittingScale(std::vector<Track>& tracks)
{
    if (CountScaling(tracks) > 0)
        return;
    for (Track& track : tracks)
        track.scales = track.fits;
}

void ShareSurplus(std::vector<Track>& tracks, int surplus)
{
    int sharers = CountScaling(tracks);
    for (Track& track : tracks) {
        if (!track.isUsed || !track.scales)
            continue;
        const int share = (surplus + sharers - 1) / sharers;
        track.length += share;
        surplus -= share;
        --sharers;
    }
}

// What tracks that scale have together if none is longer than `most`.
int64_t LengthUpTo(const std::vector<Track>& tracks, int most)
{
    int64_t sum = 0;
    for (const Track& track : tracks)
        if (track.isUsed && track.scales)
            sum += std::min(track.length, most);
    return sum;
}

// Cuts the longest of those that scale, so that short ones stay whole as long as that does it.
void ShareDeficit(std::vector<Track>& tracks, int deficit)
{
    const int64_t wanted = std::max<int64_t>(0, LengthUpTo(tracks, mostLength) - deficit);
    int fitting = 0;
    for (int tooLong = mostLength + 1; tooLong - fitting > 1;) {
        const int tried = fitting + (tooLong - fitting) / 2;
        (LengthUpTo(tracks, tried) <= wanted ? fitting : tooLong) = tried;
    }
    int64_t rest = wanted - LengthUpTo(tracks, fitting);
    for (Track& track : tracks) {
        if (!track.isUsed || !track.scales || track.length <= fitting)
            continue;
        track.length = fitting + (rest > 0 ? 1 : 0);
        rest -= rest > 0 ? 1 : 0;
    }
}

double SumOfWeights(const std::vector<Part>& parts, const std::vector<bool>& isFixed)
{
    double sum = 0;
    for (size_t i = 0; i < parts.size(); ++i)
        if (!isFixed[i])
            sum += parts[i].weight;
    return sum;
}

// Parts whose share is below their least get that, and the others divide the rest again.
double FixSmallParts(std::vector<Part>& parts, std::vector<bool>& isFixed, double rest)
{
    for (bool hasFixed = true; hasFixed;) {
        hasFixed = false;
        const double sum = SumOfWeights(parts, isFixed);
        const double whole = rest;
        for (size_t i = 0; i < parts.size(); ++i) {
            if (isFixed[i] || (sum > 0 && whole * parts[i].weight / sum >= parts[i].least))
                continue;
            isFixed[i] = true;
            hasFixed = true;
            parts[i].length = parts[i].least;
            rest -= parts[i].least;
        }
    }
    return rest;
}

void NormalizeWeights(std::vector<Part>& parts)
{
    double sum = 0;
    for (Part& part : parts) {
        part.weight = std::isfinite(part.weight) ? std::max(0.0, part.weight) : 0;
        sum += part.weight;
    }
    for (Part& part : parts)
        part.weight = sum > 0 && std::isfinite(sum) ? part.weight / sum : 1;
}

// What rounding left over, a pixel each; what is missing, from the last ones.
void SettleLength(std::vector<Part>& parts, int length)
{
    int rest = length;
    for (const Part& part : parts)
        rest -= part.length;
    for (size_t i = 0; rest > 0; i = (i + 1) % parts.size(), --rest)
        ++parts[i].length;
    for (size_t i = parts.size(); rest < 0 && i-- > 0;) {
        const int taken = std::min(-rest, parts[i].length);
        parts[i].length -= taken;
        rest += taken;
    }
}

} // namespace

int NeedOfTracks(const std::vector<Track>& tracks, int spacing)
{
    int64_t need = SpacingOf(tracks, spacing);
    for (const Track& track : tracks)
        if (track.isUsed)
            need += track.need;
    return static_cast<int>(std::min<int64_t>(need, mostLength));
}

void SpreadTracks(std::vector<Track>& tracks, int from, int length, int spacing)
{
    for (Track& track : tracks)
        track.length = track.isUsed ? track.need : 0;
    LetFittingScale(tracks);
    const int surplus = length - NeedOfTracks(tracks, spacing);
    if (surplus > 0)
        ShareSurplus(tracks, surplus);
    else if (surplus < 0)
        ShareDeficit(tracks, -surplus);
    for (Track& track : tracks) {
        track.from = from;
        if (track.isUsed)
            from += track.length + spacing;
    }
}

void DivideByWeights(std::vector<Part>& parts, int length)
{
    if (parts.empty())
        return;
    length = std::max(0, length);
    NormalizeWeights(parts);
    std::vector<bool> isFixed(parts.size(), false);
    const double rest = FixSmallParts(parts, isFixed, length);
    const double sum = SumOfWeights(parts, isFixed);
    for (size_t i = 0; i < parts.size(); ++i)
        if (!isFixed[i])
            parts[i].length = static_cast<int>(std::floor(rest * parts[i].weight / sum + roundingError));
    SettleLength(parts, length);
}

} // namespace vx3::gui
