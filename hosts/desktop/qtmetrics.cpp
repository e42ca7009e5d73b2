#include "qtmetrics.h"

#include <algorithm>

#include <QStyle>
#include <QStyleOptionTab>

namespace vx3::desktop {

namespace {

int TabHeight(const QStyle& style, const QFontMetrics& font)
{
    QStyleOptionTab tab;
    tab.text = QStringLiteral("X");
    tab.fontMetrics = font;
    const QSize text(font.horizontalAdvance(tab.text), font.height());
    const QSize room(style.pixelMetric(QStyle::PM_TabBarTabHSpace, &tab), style.pixelMetric(QStyle::PM_TabBarTabVSpace, &tab));
    return style.sizeFromContents(QStyle::CT_TabBarTab, &tab, text + room).height();
}

} // namespace

gui::Metrics MetricsOf(const QStyle& style, const QFontMetrics& font)
{
    constexpr int titleRoom = 4;
    gui::Metrics metrics;
    metrics.spacing = std::clamp(style.pixelMetric(QStyle::PM_LayoutVerticalSpacing), 3, 6);
    metrics.margin = metrics.spacing + 2;
    metrics.splitterWidth = std::max(5, style.pixelMetric(QStyle::PM_SplitterWidth));
    metrics.scrollBar = style.pixelMetric(QStyle::PM_ScrollBarExtent);
    metrics.groupTitle = font.height() + titleRoom;
    metrics.tabBar = TabHeight(style, font);
    return metrics;
}

} // namespace vx3::desktop
