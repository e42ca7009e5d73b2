#include "qttexts.h"

#include <cmath>

#include <QPainter>
#include <QTextLayout>

#include "qtcodes.h"

namespace vx3::desktop {

namespace {

constexpr size_t widthBudget = 8 << 20; // bytes, about
constexpr size_t layoutBudget = 24 << 20;
constexpr size_t entryCost = 96;
constexpr size_t layoutCost = 512;
constexpr size_t glyphCost = 48;

size_t BytesOf(std::u16string_view text)
{
    return text.size() * sizeof(char16_t);
}

// The widest font of which a line fits into a cell.
QFont CellFont(int width, int height)
{
    QFont font(QStringLiteral("DejaVu Sans Mono"));
    font.setStyleHint(QFont::Monospace);
    font.setHintingPreference(QFont::PreferFullHinting);
    for (int size = height; size > 1; --size) {
        font.setPixelSize(size);
        const QFontMetricsF metrics(font);
        if (metrics.height() <= height + 1 && metrics.horizontalAdvance(QLatin1Char('m')) <= width)
            break;
    }
    font.setLetterSpacing(QFont::AbsoluteSpacing, width - QFontMetricsF(font).horizontalAdvance(QLatin1Char('m')));
    return font;
}

} // namespace

Texts::Texts()
    : metrics(font)
    , exactMetrics(font)
    , widths(widthBudget)
    , layouts(layoutBudget)
{
}

void Texts::SetFont(const QFont& wanted)
{
    userFont = wanted;
    if (cellWidth == 0)
        UseFont(wanted);
}

void Texts::SetCells(int width, int height)
{
    cellWidth = width;
    cellHeight = height;
    UseFont(width > 0 ? CellFont(width, height) : userFont);
}

void Texts::UseFont(const QFont& wanted)
{
    font = wanted;
    metrics = QFontMetrics(font);
    exactMetrics = QFontMetricsF(font);
    widths.Clear();
    layouts.Clear();
}

int Texts::WidthOf(std::u16string_view text)
{
    if (cellWidth > 0)
        return cellWidth * static_cast<int>(text.size());
    if (text.empty())
        return 0;
    if (const int* width = widths.Find(text))
        return *width;
    const int width = static_cast<int>(std::ceil(exactMetrics.horizontalAdvance(ToQt(text))));
    return widths.Put(std::u16string(text), width, BytesOf(text) + entryCost);
}

int Texts::Height() const
{
    return cellWidth > 0 ? cellHeight : metrics.height();
}

void Texts::Draw(QPainter& painter, const QPointF& corner, std::u16string_view text)
{
    if (text.empty())
        return;
    const Layout* layout = layouts.Find(text);
    if (!layout)
        layout = &layouts.Put(std::u16string(text), MakeLayout(text), BytesOf(text) + layoutCost + text.size() * glyphCost);
    const QPointF base(corner.x(), corner.y() + metrics.ascent() - layout->ascent);
    for (const QGlyphRun& run : layout->runs)
        painter.drawGlyphRun(base, run);
}

Texts::Layout Texts::MakeLayout(std::u16string_view text) const
{
    QTextOption option;
    option.setAlignment(Qt::AlignLeft | Qt::AlignAbsolute);
    option.setTextDirection(Qt::LayoutDirectionAuto); // a name is read in the direction of its first letter
    option.setWrapMode(QTextOption::NoWrap);
    QTextLayout lines(ToQt(text).replace(QChar::LineSeparator, QLatin1Char(' ')), font);
    lines.setTextOption(option);
    lines.setCacheEnabled(true);
    lines.beginLayout();
    const QTextLine line = lines.createLine();
    lines.endLayout();
    Layout layout;
    if (!line.isValid())
        return layout;
    const QList<QGlyphRun> runs = lines.glyphRuns();
    layout.runs.assign(runs.begin(), runs.end());
    layout.ascent = line.ascent();
    return layout;
}

} // namespace vx3::desktop
