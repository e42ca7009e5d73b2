// One drawing of an area or a tree, with a painter of Qt that stands at its coordinates.
//
// Lengths of modules are logical pixels; where a dot of the screen is smaller, edges fall on
// whole dots, pictures are taken in the size in dots, and lines are whole dots thick. So
// everything is sharp at 1.25 or 1.5 as well.
#pragma once

#include <QColor>
#include <QTransform>

#include "gui/canvas.h"
#include "qtpictures.h"
#include "qttexts.h"

class QPainter;

namespace vx3::desktop {

class QtCanvas final : public gui::Canvas
{
public:
    QtCanvas(QPainter& ownPainter, Pictures& ownPictures, Texts& ownTexts);

    void SetClip(const gui::Place& clip) override;
    void ClearClip() override;
    void SetPen(gui::Colour colour) override;
    void SetTextColour(gui::Colour colour) override;
    void Fill(const gui::Place& place) override;
    void Line(gui::Point from, gui::Point to) override;
    void DrawBitmap(const VX3Bitmap* bitmap, const gui::Place& target, const gui::Place& source, bool usesAlpha) override;
    void DrawText(std::u16string_view text, gui::Point corner) override;
    int Dots() const override { return qRound(whole.m11() * 100); }

private:
    QRect DotsOf(const gui::Place& place) const;
    void DrawInDots(const auto& draw);
    void DrawDirectly(const VX3Bitmap& bitmap, const gui::Place& target, const gui::Place& source, bool usesAlpha);

    QPainter& painter;
    Pictures& pictures;
    Texts& texts;
    QTransform logical; // the painter's own, from logical pixels
    QTransform whole;   // from logical pixels to dots
    QTransform dots;    // the painter's own, with which it works in dots
    bool isScaled;
    QColor pen;
    QColor textColour;
    QColor painterPen; // what the painter has at the moment
};

} // namespace vx3::desktop
