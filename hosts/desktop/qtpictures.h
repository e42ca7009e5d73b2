// Bitmaps of modules as Qt draws them fastest: scaled to the dots of the screen, with the
// alpha multiplied in. Scaling is done once; a frame copies what is kept.
//
// The mark of a bitmap (core/bitmappixels.h) says when it has changed, so nobody has to
// tell. Bounded in bytes. Main thread only.
#pragma once

#include <QColor>
#include <QImage>

#include "core/bitmappixels.h"
#include "gui/geometry.h"
#include "qtcache.h"

namespace vx3::desktop {

class Pictures
{
public:
    Pictures();

    // A part of a bitmap in a size in dots. Null without memory, for a part outside, or in a size
    // that is too large. It stays up to the next call.
    const QImage& Get(const VX3Bitmap& bitmap, const gui::Place& part, QSize dots, bool usesAlpha);
    // Is a picture of this size in dots too large to be kept? It is drawn by Look then.
    static bool IsTooLarge(QSize dots);
    // A part as it is, over the bytes of the bitmap. Null for a part outside.
    static QImage Look(const VX3Bitmap& bitmap, const gui::Place& part, bool usesAlpha);
    // The whole of a picture in a size in dots, fitted in without a change of its shape. One that
    // is black where it is anything is a sign, which is drawn in the colour of texts.
    QImage GetIcon(const VX3Bitmap& bitmap, QSize dots, const QColor& ink);

    size_t Bytes() const { return kept.Cost(); }
    size_t Count() const { return kept.Count(); }
    size_t MadeCount() const { return madeCount; } // how often something was scaled

private:
    struct Key {
        core::BitmapMark mark;
        gui::Place part;
        gui::Size dots;
        bool usesAlpha;

        bool operator==(const Key&) const = default;
    };
    struct KeyHash {
        size_t operator()(const Key& key) const;
    };

    AgingCache<Key, QImage, KeyHash> kept;
    size_t madeCount = 0;
};

bool IsSign(const core::BitmapView& view);

} // namespace vx3::desktop
