#include "qticons.h"

#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>
#include <QPixmap>

#include "core/bitmappixels.h"
#include "core/services.h"
#include "qtpictures.h"
#include "vx3/guigadget.h"

namespace vx3::desktop {

namespace {

// Signs on a grid of 16 x 16, as strokes with round ends.
struct Sign {
    int32_t number;
    void (*draw)(QPainterPath& strokes);
};

void AddLine(QPainterPath& path, std::initializer_list<QPointF> points)
{
    path.moveTo(*points.begin());
    for (const QPointF& point : points)
        path.lineTo(point);
}

void DrawBack(QPainterPath& path)
{
    AddLine(path, { { 8, 3 }, { 3, 8 }, { 8, 13 } });
    AddLine(path, { { 3.4, 8 }, { 13, 8 } });
}

void DrawForward(QPainterPath& path)
{
    AddLine(path, { { 8, 3 }, { 13, 8 }, { 8, 13 } });
    AddLine(path, { { 3, 8 }, { 12.6, 8 } });
}

void DrawUp(QPainterPath& path)
{
    AddLine(path, { { 3, 8 }, { 8, 3 }, { 13, 8 } });
    AddLine(path, { { 8, 3.4 }, { 8, 13 } });
}

void DrawHome(QPainterPath& path)
{
    AddLine(path, { { 2, 8.2 }, { 8, 2.6 }, { 14, 8.2 } });
    AddLine(path, { { 4, 7 }, { 4, 13.2 }, { 6.6, 13.2 }, { 6.6, 9.6 }, { 9.4, 9.6 }, { 9.4, 13.2 }, { 12, 13.2 }, { 12, 7 } });
}

void DrawSearch(QPainterPath& path)
{
    path.addEllipse(QPointF(6.8, 6.8), 4.3, 4.3);
    AddLine(path, { { 10, 10 }, { 13.6, 13.6 } });
}

void DrawRefresh(QPainterPath& path)
{
    constexpr double start = 40;
    constexpr double length = 285;
    path.arcMoveTo(QRectF(3, 3, 10, 10), start);
    path.arcTo(QRectF(3, 3, 10, 10), start, length);
    AddLine(path, { { 12.6, 1.9 }, { 12.4, 5.2 }, { 9.2, 4.9 } });
}

void DrawMenu(QPainterPath& path)
{
    AddLine(path, { { 3, 4 }, { 13, 4 } });
    AddLine(path, { { 3, 8 }, { 13, 8 } });
    AddLine(path, { { 3, 12 }, { 13, 12 } });
}

void DrawSmallest(QPainterPath& path)
{
    for (double y : { 4.5, 9.5 })
        for (double x : { 4.5, 9.5 })
            path.addRect(x, y, 2, 2);
}

void DrawLargest(QPainterPath& path)
{
    path.addRoundedRect(QRectF(3, 3, 10, 10), 1, 1);
}

constexpr Sign signs[] = {
    { VX3_ICON_BACK, DrawBack }, { VX3_ICON_FORWARD, DrawForward },        { VX3_ICON_UP, DrawUp },
    { VX3_ICON_HOME, DrawHome }, { VX3_ICON_SEARCH, DrawSearch },          { VX3_ICON_REFRESH, DrawRefresh },
    { VX3_ICON_MENU, DrawMenu }, { VX3_ICON_ZOOM_SMALLEST, DrawSmallest }, { VX3_ICON_ZOOM_LARGEST, DrawLargest },
};

QImage DrawSign(const Sign& sign)
{
    constexpr double strokeWidth = 1.5;
    QImage image(signSide, signSide, QImage::Format_RGBA8888_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(signSide / 16.0, signSide / 16.0);
    painter.setPen(QPen(Qt::black, strokeWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    QPainterPath strokes;
    sign.draw(strokes);
    painter.drawPath(strokes);
    painter.end();
    return image.convertToFormat(QImage::Format_RGBA8888);
}

void RegisterImage(int32_t number, const QImage& image)
{
    const VX3BitmapServices& bitmaps = *core::BitmapServices();
    VX3Bitmap* bitmap = bitmaps.create(image.width(), image.height(), 24);
    if (!bitmap)
        return;
    bitmaps.addAlpha(bitmap);
    for (int y = 0; y < image.height(); ++y)
        bitmaps.writePixels(bitmap, 0, y, image.width(), image.constScanLine(y));
    core::RegistryServices()->registerIcon(number, bitmap);
    bitmaps.free(bitmap);
}

} // namespace

void RegisterHostIcons()
{
    for (const Sign& sign : signs)
        RegisterImage(sign.number, DrawSign(sign));
}

QIcon IconOfBitmap(const VX3Bitmap& bitmap)
{
    constexpr int largest = 4; // times the usual size, for fine screens
    Pictures pictures;
    const QColor ink = QGuiApplication::palette().color(QPalette::ButtonText);
    QIcon icon;
    for (int scale = 1; scale <= largest; ++scale)
        icon.addPixmap(QPixmap::fromImage(pictures.GetIcon(bitmap, QSize(iconSide, iconSide) * scale, ink)));
    return icon;
}

QIcon IconOfCommand(const core::RegisteredCommand& command)
{
    const VX3Bitmap* bitmap = command.icon ? core::FindIcon(command.icon) : nullptr;
    return bitmap ? IconOfBitmap(*bitmap) : QIcon();
}

} // namespace vx3::desktop
