#include "qtcanvas.h"

#include <algorithm>

#include <QPainter>

#include "qtcodes.h"

namespace vx3::desktop {

QtCanvas::QtCanvas(QPainter& ownPainter, Pictures& ownPictures, Texts& ownTexts)
    : painter(ownPainter)
    , pictures(ownPictures)
    , texts(ownTexts)
    , logical(ownPainter.worldTransform())
    , whole(ownPainter.deviceTransform())
    , dots(whole.inverted() * logical)
    , isScaled(whole.type() > QTransform::TxTranslate)
{
}

QRect QtCanvas::DotsOf(const Place& place) const
{
    const QRectF exact = whole.mapRect(QRectF(place.x, place.y, place.width, place.height));
    const QSize size(std::max(1, qRound(exact.width())), std::max(1, qRound(exact.height())));
    return QRect(QPoint(qRound(exact.left()), qRound(exact.top())), size);
}

void QtCanvas::DrawInDots(const auto& draw)
{
    painter.setWorldTransform(dots);
    draw();
    painter.setWorldTransform(logical);
}

void QtCanvas::SetClip(const Place& clip)
{
    painter.setClipRect(ToQt(clip));
}

void QtCanvas::ClearClip()
{
    painter.setClipping(false);
}

void QtCanvas::SetPen(Colour colour)
{
    pen.setRgb(colour.red, colour.green, colour.blue);
}

void QtCanvas::SetTextColour(Colour colour)
{
    textColour.setRgb(colour.red, colour.green, colour.blue);
}

void QtCanvas::Fill(const Place& place)
{
    if (!place.IsEmpty())
        painter.fillRect(ToQt(place), pen);
}

void QtCanvas::Line(Point from, Point to)
{
    if (from.x != to.x && from.y != to.y) {
        painter.setPen(pen);
        painterPen = pen;
        painter.drawLine(ToQt(from), ToQt(to));
        return;
    }
    const auto [left, right] = std::minmax(from.x, to.x);
    const auto [top, bottom] = std::minmax(from.y, to.y);
    const Place place = { left, top, right - left + 1, bottom - top + 1 };
    if (!isScaled)
        return Fill(place);
    QRect line = DotsOf(place);
    const int thickness = std::max(1, static_cast<int>(whole.m11()));
    if (place.width == 1)
        line.setWidth(thickness);
    if (place.height == 1)
        line.setHeight(thickness);
    DrawInDots([&] { painter.fillRect(line, pen); });
}

void QtCanvas::DrawBitmap(const VX3Bitmap* bitmap, const Place& target, const Place& source, bool usesAlpha)
{
    if (!bitmap || target.IsEmpty())
        return;
    const QSize dotCount = isScaled ? DotsOf(target).size() : ToQt(target.Extent());
    if (Pictures::IsTooLarge(dotCount))
        return DrawDirectly(*bitmap, target, source, usesAlpha);
    if (!isScaled) {
        painter.drawImage(QPoint(target.x, target.y), pictures.Get(*bitmap, source, ToQt(target.Extent()), usesAlpha));
        return;
    }
    const QRect place = DotsOf(target);
    const QImage& image = pictures.Get(*bitmap, source, place.size(), usesAlpha);
    DrawInDots([&] { painter.drawImage(place.topLeft(), image); });
}

// Only what is seen of it is scaled, each time anew.
void QtCanvas::DrawDirectly(const VX3Bitmap& bitmap, const Place& target, const Place& source, bool usesAlpha)
{
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(ToQt(target), Pictures::Look(bitmap, source, usesAlpha));
    painter.setRenderHint(QPainter::SmoothPixmapTransform, false);
}

void QtCanvas::DrawText(std::u16string_view text, Point corner)
{
    if (painterPen != textColour) {
        painter.setPen(textColour);
        painterPen = textColour;
    }
    texts.Draw(painter, QPointF(corner.x, corner.y), text);
}

} // namespace vx3::desktop
