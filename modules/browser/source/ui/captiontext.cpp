#include "ui/captiontext.h"

#include <algorithm>

namespace browser {

namespace {

// Kept: two dots and no ellipsis, always at the end.
constexpr VX3Unit dots[] = { '.', '.' };
constexpr size_t dotCount = std::size(dots);
constexpr size_t reach = 3; // letters that may be drawn as one

bool IsHighSurrogate(VX3Unit unit)
{
    return (unit & 0xFC00) == 0xD800;
}

bool IsLowSurrogate(VX3Unit unit)
{
    return (unit & 0xFC00) == 0xDC00;
}

// Half a pair cannot be drawn.
bool SplitsPair(Units name, size_t kept)
{
    return kept > 0 && kept < name.size() && IsHighSurrogate(name[kept - 1]) && IsLowSurrogate(name[kept]);
}

// Tries beginnings of a name with dots behind them, in a buffer of its caller.
class CaptionCutter
{
public:
    CaptionCutter(Units ownName, std::span<VX3Unit> ownBuffer, int32_t ownLimit, TextWidth ownMeasure)
        : name(ownName)
        , buffer(ownBuffer)
        , most(std::min(ownName.size(), ownBuffer.size() - dotCount))
        , limit(ownLimit)
        , measure(ownMeasure)
    {
        std::copy_n(name.begin(), most, buffer.begin());
    }

    // Takes it that a longer text is a wider one, and letters to be about as wide as those of
    // the whole name: steps away from there, wider and wider ones, then halves what is left.
    // 0 if nothing was found to fit.
    size_t SearchFit(int32_t nameWidth)
    {
        size_t fits = 0, tooLong = most + 1, stride = 1;
        const size_t fair = name.size() * static_cast<size_t>(std::max(limit, 0)) / static_cast<size_t>(std::max(nameWidth, 1));
        size_t next = fair - std::min(fair, dotCount);
        while (tooLong - fits > 1) {
            next = std::clamp(next, fits + 1, tooLong - 1);
            const bool isFit = Fits(next);
            (isFit ? fits : tooLong) = next;
            const bool isBetween = fits > 0 && tooLong <= most;
            if (isBetween)
                next = fits + (tooLong - fits) / 2;
            else
                next = isFit ? next + stride : next - std::min(stride, next);
            stride *= 2;
        }
        return fits;
    }

    // A letter more may be narrower: it may draw closer to the dots, or be joined with
    // the letters before it. The next one is known to be too long.
    size_t LookAtNeighbours(size_t kept)
    {
        for (size_t at = kept + 2; at <= std::min(kept + reach, most); at++)
            if (Fits(at))
                kept = at;
        return kept;
    }

    // Of what was found.
    int32_t Width(Units cut) const { return fitWidth >= 0 ? fitWidth : measure(cut); }

    Units Cut(size_t kept)
    {
        const size_t whole = SplitsPair(name, kept) ? kept - 1 : kept;
        for (size_t at = dotsAt; at < std::min(dotsAt + dotCount, most); at++)
            buffer[at] = name[at];
        std::copy_n(dots, dotCount, buffer.begin() + static_cast<ptrdiff_t>(whole));
        dotsAt = whole;
        return buffer.first(whole + dotCount);
    }

private:
    bool Fits(size_t kept)
    {
        const int32_t width = measure(Cut(kept));
        if (width <= limit)
            fitWidth = width;
        return width <= limit;
    }

    const Units name;
    const std::span<VX3Unit> buffer;
    const size_t most; // units of the name that there is room for
    const int32_t limit;
    const TextWidth measure;
    size_t dotsAt = 0;     // they cover units of the name
    int32_t fitWidth = -1; // of the last one that fitted
};

} // namespace

CaptionText::CaptionText(Units name, int32_t limit, TextWidth measure)
    : text(name)
    , width(measure(name))
{
    if (width <= limit)
        return;
    CaptionCutter cutter(name, shortened, limit, measure);
    text = cutter.Cut(cutter.LookAtNeighbours(cutter.SearchFit(width)));
    width = cutter.Width(text);
}

} // namespace browser
