#include "qtcolours.h"

#include <algorithm>
#include <cmath>

#include <QPalette>

#include "vx3/guitypes.h"

namespace vx3::desktop {

namespace {

// Relative luminance of sRGB.
double LuminanceOf(const QColor& colour)
{
    const auto linear = [](double channel) { return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4); };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
}

QColor Mix(const QColor& a, const QColor& b, double share)
{
    const auto mixed = [share](int from, int to) { return static_cast<int>(std::lround(from + (to - from) * share)); };
    return QColor(mixed(a.red(), b.red()), mixed(a.green(), b.green()), mixed(a.blue(), b.blue()));
}

// Many palettes have one colour for both; a list must show which one has the focus.
QColor UnfocusedOf(const QPalette& palette, const QColor& selection, const QColor& background)
{
    const QColor own = palette.color(QPalette::Inactive, QPalette::Highlight);
    return own != selection ? own : Mix(selection, background, 0.6);
}

// In the hue of `wanted`, as bright or dark as it is read best on all of three grounds.
QColor ReadableOn(const QColor& wanted, const QColor& first, const QColor& second, const QColor& third)
{
    constexpr int steps = 20;
    const double saturation = std::max(0.55, wanted.hslSaturationF() * 1.0);
    QColor best = wanted;
    double bestContrast = 0;
    for (int step = 1; step < steps; ++step) {
        const QColor candidate = QColor::fromHslF(wanted.hslHueF(), static_cast<float>(saturation), static_cast<float>(step) / steps);
        const double contrast = std::min({ ContrastOf(candidate, first), ContrastOf(candidate, second), ContrastOf(candidate, third) });
        if (contrast > bestContrast) {
            best = candidate;
            bestContrast = contrast;
        }
    }
    return best;
}

} // namespace

double ContrastOf(const QColor& a, const QColor& b)
{
    const double one = LuminanceOf(a) + 0.05;
    const double other = LuminanceOf(b) + 0.05;
    return std::max(one, other) / std::min(one, other);
}

Colours::Colours(const QPalette& palette)
    : background(palette.color(QPalette::Active, QPalette::Base))
    , text(palette.color(QPalette::Active, QPalette::Text))
    , selection(palette.color(QPalette::Active, QPalette::Highlight))
    , unfocused(UnfocusedOf(palette, selection, background))
    , selectedText(palette.color(QPalette::Active, QPalette::HighlightedText))
{
    unfocusedText = ContrastOf(text, unfocused) >= ContrastOf(selectedText, unfocused) ? text : selectedText;
    constexpr int amber = 35; // degrees; neither the blue of most selections nor grey
    special = ReadableOn(QColor::fromHsl(amber, 255, 128), background, selection, unfocused);
}

QColor Colours::Of(int32_t number) const
{
    switch (number) {
    case VX3_COLOUR_BACKGROUND: return background;
    case VX3_COLOUR_TEXT: return text;
    case VX3_COLOUR_SELECTION: return selection;
    case VX3_COLOUR_SELECTION_UNFOCUSED: return unfocused;
    case VX3_COLOUR_SELECTED_TEXT: return selectedText;
    case VX3_COLOUR_SELECTED_TEXT_UNFOCUSED: return unfocusedText;
    case VX3_COLOUR_SPECIAL_TEXT: return special;
    default: return Qt::black;
    }
}

} // namespace vx3::desktop
