// The words of the boundary and those of Qt: texts, places, keys, buttons, cursors.
#pragma once

#include <string>
#include <string_view>

#include <QPoint>
#include <QRect>
#include <QString>

#include "gui/desk.h"

class QKeyEvent;

namespace vx3::desktop {

using gui::Colour;
using gui::Dialog;
using gui::Gadget;
using gui::Place;
using gui::Point;
using gui::Size;

// Units as they are: a lone surrogate, which stands for a byte of a name, is kept.
QString ToQt(std::u16string_view text);
std::u16string ToUnits(const QString& text);
std::string ToUtf8(const QString& text);

inline QRect ToQt(const Place& place)
{
    return { place.x, place.y, place.width, place.height };
}
inline QPoint ToQt(Point point)
{
    return { point.x, point.y };
}
inline QSize ToQt(Size size)
{
    return { size.width, size.height };
}
inline Place ToPlace(const QRect& rect)
{
    return { rect.x(), rect.y(), rect.width(), rect.height() };
}
inline Point ToPoint(QPoint point)
{
    return { point.x(), point.y() };
}
inline Size ToSize(QSize size)
{
    return { size.width(), size.height() };
}

// A tip that shows these letters, also if they look like marks of a rich text.
QString PlainTip(const QString& text);

uint32_t QualifiersOf(Qt::KeyboardModifiers modifiers);
Qt::KeyboardModifiers ModifiersOf(uint32_t qualifiers);
int32_t ChannelOf(Qt::MouseButton button); // 0: a button that modules do not know
Qt::MouseButton ButtonOf(int32_t channel);
uint32_t ChannelBits(Qt::MouseButtons buttons); // a bit for each channel, from bit 1
Qt::CursorShape ShapeOf(int32_t cursor);

// A VX3_KEY value, or the unit of a key in upper case; 0 for one that modules do not know,
// such as a modifier alone.
int32_t CodeOf(int key, const QString& text);
int KeyOf(int32_t code); // a Qt::Key

gui::Input InputOf(const QKeyEvent& event);

} // namespace vx3::desktop
