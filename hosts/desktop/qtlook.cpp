#include "qtlook.h"

#include <QApplication>
#include <QDir>
#include <QPalette>
#include <QSettings>
#include <QStandardPaths>
#include <QStyle>
#include <QStyleFactory>

namespace vx3::desktop {

namespace {

struct Shade {
    QPalette::ColorRole role;
    QRgb usual;
    QRgb disabled;
};

constexpr Shade darkShades[] = {
    { QPalette::Window, 0xFF2B2D30, 0xFF2B2D30 },
    { QPalette::WindowText, 0xFFE3E5E8, 0xFF7E8288 },
    { QPalette::Base, 0xFF1E1F22, 0xFF26282B },
    { QPalette::AlternateBase, 0xFF26282B, 0xFF26282B },
    { QPalette::Text, 0xFFE3E5E8, 0xFF7E8288 },
    { QPalette::Button, 0xFF3A3D41, 0xFF313438 },
    { QPalette::ButtonText, 0xFFE3E5E8, 0xFF7E8288 },
    { QPalette::BrightText, 0xFFFFFFFF, 0xFFFFFFFF },
    { QPalette::ToolTipBase, 0xFF3A3D41, 0xFF3A3D41 },
    { QPalette::ToolTipText, 0xFFE3E5E8, 0xFFE3E5E8 },
    { QPalette::PlaceholderText, 0xFF8C9096, 0xFF6A6D72 },
    { QPalette::Highlight, 0xFF2F65AD, 0xFF4A4D52 },
    { QPalette::HighlightedText, 0xFFFFFFFF, 0xFFB0B3B8 },
    { QPalette::Link, 0xFF6CA8F0, 0xFF6A6D72 },
    { QPalette::LinkVisited, 0xFFB795E8, 0xFF6A6D72 },
    { QPalette::Light, 0xFF303337, 0xFF303337 },
    { QPalette::Midlight, 0xFF414449, 0xFF414449 },
    { QPalette::Mid, 0xFF232528, 0xFF232528 },
    { QPalette::Dark, 0xFF18191B, 0xFF18191B },
    { QPalette::Shadow, 0xFF000000, 0xFF000000 },
};

constexpr Shade lightShades[] = {
    { QPalette::Window, 0xFFF2F3F5, 0xFFF2F3F5 },
    { QPalette::WindowText, 0xFF1D1F22, 0xFF8E9298 },
    { QPalette::Base, 0xFFFFFFFF, 0xFFF6F7F8 },
    { QPalette::AlternateBase, 0xFFF7F8FA, 0xFFF7F8FA },
    { QPalette::Text, 0xFF1D1F22, 0xFF8E9298 },
    { QPalette::Button, 0xFFF7F8FA, 0xFFEEEFF1 },
    { QPalette::ButtonText, 0xFF1D1F22, 0xFF8E9298 },
    { QPalette::BrightText, 0xFFFFFFFF, 0xFFFFFFFF },
    { QPalette::ToolTipBase, 0xFFFFFFFF, 0xFFFFFFFF },
    { QPalette::ToolTipText, 0xFF1D1F22, 0xFF1D1F22 },
    { QPalette::PlaceholderText, 0xFF80848A, 0xFFA8ABB0 },
    { QPalette::Highlight, 0xFF2F6FC4, 0xFFC9CCD1 },
    { QPalette::HighlightedText, 0xFFFFFFFF, 0xFF5F636A },
    { QPalette::Link, 0xFF1D5FBF, 0xFF8E9298 },
    { QPalette::LinkVisited, 0xFF6B3FA8, 0xFF8E9298 },
    { QPalette::Light, 0xFFFFFFFF, 0xFFFFFFFF },
    { QPalette::Midlight, 0xFFF7F8FA, 0xFFF7F8FA },
    { QPalette::Mid, 0xFFCDD0D5, 0xFFCDD0D5 },
    { QPalette::Dark, 0xFFA9ADB4, 0xFFA9ADB4 },
    { QPalette::Shadow, 0xFF6E7279, 0xFF6E7279 },
};

template <size_t count>
QPalette PaletteOf(const Shade (&shades)[count])
{
    QPalette palette;
    for (const Shade& shade : shades) {
        palette.setColor(QPalette::All, shade.role, QColor::fromRgb(shade.usual));
        palette.setColor(QPalette::Disabled, shade.role, QColor::fromRgb(shade.disabled));
    }
    return palette;
}

// Themes of desktops bring a style or at least colours of their own.
bool HasDesktopLook()
{
    const QPalette plain = QStyleFactory::create(QStringLiteral("Fusion"))->standardPalette();
    return QApplication::style()->name() != QLatin1String("fusion")
        || QApplication::palette().color(QPalette::Window) != plain.color(QPalette::Window);
}

QString ConfigFile(const char* name)
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + QLatin1Char('/') + QLatin1String(name);
}

bool WantsDark()
{
    for (const char* file : { "gtk-4.0/settings.ini", "gtk-3.0/settings.ini" }) {
        const QSettings settings(ConfigFile(file), QSettings::IniFormat);
        const QString wanted = settings.value(QStringLiteral("Settings/gtk-application-prefer-dark-theme")).toString();
        const QString theme = settings.value(QStringLiteral("Settings/gtk-theme-name")).toString();
        if (wanted == QLatin1String("1") || wanted == QLatin1String("true") || theme.endsWith(QLatin1String("-dark"), Qt::CaseInsensitive))
            return true;
    }
    const QSettings plasma(ConfigFile("kdeglobals"), QSettings::IniFormat);
    return plasma.value(QStringLiteral("General/ColorScheme")).toString().contains(QLatin1String("Dark"));
}

} // namespace

void SetLook(Brightness wanted)
{
    if (wanted == Brightness::Desktop && HasDesktopLook())
        return;
    const bool isDark = wanted == Brightness::Dark || (wanted == Brightness::Desktop && WantsDark());
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QApplication::setPalette(isDark ? PaletteOf(darkShades) : PaletteOf(lightShades));
}

} // namespace vx3::desktop
