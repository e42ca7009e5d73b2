// How an entry of the icon grid looks: its picture, its caption, and which of its pixels
// belong to it.
//
// Made for one drawing or one test; the caller holds the list, since nodes are asked. A
// node is asked once for each entry, for what it has at hand.
#pragma once

#include "model/browserinterface.h"
#include "services/geuserarea.h"
#include "ui/contententry.h"
#include "ui/gridlayout.h"

namespace browser {

class IconPainter
{
public:
    explicit IconPainter(double zoom)
        : metrics(zoom)
    {
    }

    void Draw(const Canvas& canvas, const ContentViewEntry& entry, const GridCell& cell, bool hasFocus) const;
    // Whether a drawn part of the entry is touched.
    bool IsHit(const ContentViewEntry& entry, const GridCell& cell, const Rectangle& touched) const;

    const IconMetrics& Metrics() const { return metrics; }

private:
    void DrawPicture(const Canvas& canvas, BrowserContentNode& node, Point cell) const;
    void DrawCaption(const Canvas& canvas, BrowserContentNode& node, Point cell) const;
    bool IsPictureHit(BrowserContentNode& node, Point cell, const Rectangle& touched) const;

    const IconMetrics metrics;
};

} // namespace browser
