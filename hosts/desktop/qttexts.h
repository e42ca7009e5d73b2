// Texts of the user's font, measured and laid out once.
//
// To measure a name costs some microseconds and to lay it out more, and a list asks for the
// same names at every frame. Both are kept by the text, for one font at a time.
// Main thread only.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <QFont>
#include <QFontMetrics>
#include <QGlyphRun>

#include "qtcache.h"

class QPainter;
class QPointF;

namespace vx3::desktop {

class Texts
{
public:
    Texts();

    void SetFont(const QFont& wanted); // forgets what was kept for another one
    // Every unit as wide as every other: while a script runs that must see the same as in a
    // host without a screen. 0, 0 ends it.
    void SetCells(int width, int height);

    int WidthOf(std::u16string_view text);
    int Height() const;
    // With the upper left corner of a line at a point. What other fonts lend keeps the
    // base line of this one.
    void Draw(QPainter& painter, const QPointF& corner, std::u16string_view text);

    size_t LayoutCount() const { return layouts.Count(); }

private:
    struct Layout {
        std::vector<QGlyphRun> runs;
        double ascent = 0;
    };
    struct TextHash {
        using is_transparent = void;
        size_t operator()(std::u16string_view text) const { return std::hash<std::u16string_view>()(text); }
    };

    Layout MakeLayout(std::u16string_view text) const;
    void UseFont(const QFont& wanted);

    QFont userFont;
    QFont font;
    QFontMetrics metrics;
    QFontMetricsF exactMetrics;
    int cellWidth = 0;
    int cellHeight = 0;
    AgingCache<std::u16string, int, TextHash> widths;
    AgingCache<std::u16string, Layout, TextHash> layouts;
};

} // namespace vx3::desktop
