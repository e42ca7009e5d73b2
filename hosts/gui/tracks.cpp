#include "gui/tracks.h"

#include <algorithm>
#include <cmath>

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

// Takes from those that scale evenly; one that has less gives all of it, and the others more.
void ShareDeficit(std::vector<Track>& tracks, int deficit)
{
    for (int givers = 1; deficit > 0 && givers > 0;) {
        givers = static_cast<int>(std::count_if(tracks.begin(), tracks.end(),
                                                [](const Track& track) { return track.isUsed && track.scales && track.length > 0; }));
        const int share = givers > 0 ? std::max(1, deficit / givers) : 0;
        for (Track& track : tracks) {
            if (!track.isUsed || !track.scales)
                continue;
            const int taken = std::min({ share, track.length, deficit });
            track.length -= taken;
            deficit -= taken;
        }
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
    int need = SpacingOf(tracks, spacing);
    for (const Track& track : tracks)
        if (track.isUsed)
            need += track.need;
    return need;
}

void SpreadTracks(std::vector<Track>& tracks, int from, int length, int spacing)
{
    for (Track& track : tracks)
        track.length = track.isUsed ? track.need : 0;
    const int surplus = length - NeedOfTracks(tracks, spacing);
    if (surplus > 0)
        ShareSurplus(tracks, surplus);
    else
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
