// The colours that modules know by number, from the palette of the user's desktop.
#pragma once

#include <QColor>

#include "gui/canvas.h"

class QPalette;

namespace vx3::desktop {

// A text is readable from here on: the contrast of large and bold text in the usual guide
// lines for readers with weak eyes.
constexpr double readableContrast = 3.0;

double ContrastOf(const QColor& a, const QColor& b); // 1 to 21

class Colours
{
public:
    Colours() = default;
    explicit Colours(const QPalette& palette);
    QColor Of(int32_t number) const; // black for one that is none

private:
    QColor background;
    QColor text;
    QColor selection;
    QColor unfocused;
    QColor selectedText;
    QColor unfocusedText;
    QColor special;
};

inline gui::Colour ToColour(const QColor& colour)
{
    return { static_cast<uint8_t>(colour.red()), static_cast<uint8_t>(colour.green()), static_cast<uint8_t>(colour.blue()) };
}

} // namespace vx3::desktop
