// Distances of the layout, as the user's style and font have them.
#pragma once

#include <QFontMetrics>

#include "gui/toolkit.h"

class QStyle;

namespace vx3::desktop {

gui::Metrics MetricsOf(const QStyle& style, const QFontMetrics& font);

} // namespace vx3::desktop
