#include "qtpictures.h"

#include <QPainter>

#include "qtcodes.h"

namespace vx3::desktop {

namespace {

constexpr size_t pictureBudget = size_t(192) << 20; // bytes
constexpr int64_t mostDots = int64_t(8) << 20;      // of one picture: a sixth of the budget
constexpr size_t pictureCost = 256;                 // of what is kept beside the pixels

// Looks into the bitmap, whose bytes must stay.
QImage ImageOver(const core::BitmapView& view, const Place& part, bool usesAlpha)
{
    const uint8_t* first = view.bytes + view.rowBytes * static_cast<size_t>(part.y) + static_cast<size_t>(part.x) * core::bytesPerPixel;
    const QImage::Format format = usesAlpha && view.hasAlpha ? QImage::Format_RGBA8888 : QImage::Format_RGBX8888;
    return QImage(first, part.width, part.height, static_cast<qsizetype>(view.rowBytes), format);
}

QImage Scaled(const QImage& image, QSize dots)
{
    const bool hasAlpha = image.hasAlphaChannel();
    QImage::Format format = hasAlpha ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32;
    if (image.size() == dots)
        return image.convertToFormat(format);
    return image.convertToFormat(format).scaled(dots, Qt::IgnoreAspectRatio, Qt::SmoothTransformation).convertToFormat(format);
}

Place WholeOf(const core::BitmapView& view)
{
    return { 0, 0, view.width, view.height };
}

} // namespace

size_t Pictures::KeyHash::operator()(const Key& key) const
{
    size_t hash = 0;
    const auto mix = [&hash](uint64_t value) { hash = (hash ^ value) * 0x9E3779B97F4A7C15u; };
    mix(key.mark.serial);
    mix(key.mark.revision * 2 + (key.usesAlpha ? 1 : 0));
    mix(static_cast<uint64_t>(key.part.x) << 32 | static_cast<uint32_t>(key.part.y));
    mix(static_cast<uint64_t>(key.part.width) << 32 | static_cast<uint32_t>(key.part.height));
    mix(static_cast<uint64_t>(key.dots.width) << 32 | static_cast<uint32_t>(key.dots.height));
    return hash ^ (hash >> 32);
}

Pictures::Pictures()
    : kept(pictureBudget)
{
}

const QImage& Pictures::Get(const VX3Bitmap& bitmap, const Place& part, QSize dots, bool usesAlpha)
{
    static const QImage none;
    const core::BitmapView view = core::ViewOf(bitmap);
    const Place inside = part.Cut(WholeOf(view));
    if (inside.IsEmpty() || inside != part || dots.isEmpty() || IsTooLarge(dots))
        return none;
    const Key key = { core::MarkOf(bitmap), part, ToSize(dots), usesAlpha };
    if (const QImage* found = kept.Find(key))
        return *found;
    QImage made = Scaled(ImageOver(view, part, usesAlpha), dots);
    if (made.isNull())
        return none;
    ++madeCount;
    return kept.Put(key, made, static_cast<size_t>(made.sizeInBytes()) + pictureCost);
}

bool Pictures::IsTooLarge(QSize dots)
{
    return int64_t(dots.width()) * dots.height() > mostDots;
}

QImage Pictures::Look(const VX3Bitmap& bitmap, const Place& part, bool usesAlpha)
{
    const core::BitmapView view = core::ViewOf(bitmap);
    const Place inside = part.Cut(WholeOf(view));
    return inside.IsEmpty() || inside != part ? QImage() : ImageOver(view, part, usesAlpha);
}

QImage Pictures::GetIcon(const VX3Bitmap& bitmap, QSize dots, const QColor& ink)
{
    const core::BitmapView view = core::ViewOf(bitmap);
    const QSize fitted = QSize(view.width, view.height).scaled(dots, Qt::KeepAspectRatio).expandedTo(QSize(1, 1));
    QImage image = Get(bitmap, WholeOf(view), fitted, true);
    if (image.isNull() || !IsSign(view))
        return image;
    QPainter painter(&image); // on a copy
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), ink);
    return image;
}

bool IsSign(const core::BitmapView& view)
{
    if (!view.hasAlpha)
        return false;
    bool isSeen = false;
    for (int32_t y = 0; y < view.height; ++y) {
        const uint8_t* pixel = view.bytes + view.rowBytes * static_cast<size_t>(y);
        for (int32_t x = 0; x < view.width; ++x, pixel += core::bytesPerPixel) {
            if (pixel[3] == 0)
                continue;
            isSeen = true;
            if (pixel[0] || pixel[1] || pixel[2])
                return false;
        }
    }
    return isSeen;
}

} // namespace vx3::desktop
