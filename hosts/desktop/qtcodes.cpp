#include "qtcodes.h"

#include <QKeyEvent>
#include <QTextDocument>

namespace vx3::desktop {

namespace {

struct KeyRow {
    int32_t code;
    int key;
};

constexpr KeyRow keys[] = {
    { VX3_KEY_BACKSPACE, Qt::Key_Backspace },
    { VX3_KEY_TAB, Qt::Key_Tab },
    { VX3_KEY_TAB, Qt::Key_Backtab },
    { VX3_KEY_ENTER, Qt::Key_Return },
    { VX3_KEY_ENTER, Qt::Key_Enter },
    { VX3_KEY_ESCAPE, Qt::Key_Escape },
    { VX3_KEY_SPACE, Qt::Key_Space },
    { VX3_KEY_DELETE, Qt::Key_Delete },
    { VX3_KEY_UP, Qt::Key_Up },
    { VX3_KEY_DOWN, Qt::Key_Down },
    { VX3_KEY_LEFT, Qt::Key_Left },
    { VX3_KEY_RIGHT, Qt::Key_Right },
    { VX3_KEY_PAGE_UP, Qt::Key_PageUp },
    { VX3_KEY_PAGE_DOWN, Qt::Key_PageDown },
    { VX3_KEY_HOME, Qt::Key_Home },
    { VX3_KEY_END, Qt::Key_End },
};
constexpr int functionKeys = 12;

struct ButtonRow {
    int32_t channel;
    Qt::MouseButton button;
};

constexpr ButtonRow buttons[] = {
    { VX3_CHANNEL_LEFT, Qt::LeftButton }, { VX3_CHANNEL_RIGHT, Qt::RightButton },     { VX3_CHANNEL_MIDDLE, Qt::MiddleButton },
    { VX3_CHANNEL_BACK, Qt::BackButton }, { VX3_CHANNEL_FORWARD, Qt::ForwardButton },
};

bool WritesSomething(const QString& text)
{
    return !text.isEmpty() && text[0].isPrint();
}

} // namespace

QString ToQt(std::u16string_view text)
{
    return QString(reinterpret_cast<const QChar*>(text.data()), static_cast<qsizetype>(text.size()));
}

std::u16string ToUnits(const QString& text)
{
    return { reinterpret_cast<const char16_t*>(text.constData()), static_cast<size_t>(text.size()) };
}

std::string ToUtf8(const QString& text)
{
    const QByteArray bytes = text.toUtf8();
    return { bytes.constData(), static_cast<size_t>(bytes.size()) };
}

QString PlainTip(const QString& text)
{
    return Qt::mightBeRichText(text) ? QStringLiteral("<span>%1</span>").arg(text.toHtmlEscaped()) : text;
}

uint32_t QualifiersOf(Qt::KeyboardModifiers modifiers)
{
    uint32_t qualifiers = 0;
    if (modifiers & Qt::ShiftModifier)
        qualifiers |= VX3_QUALIFIER_SHIFT;
    if (modifiers & Qt::ControlModifier)
        qualifiers |= VX3_QUALIFIER_CTRL;
    if (modifiers & Qt::AltModifier)
        qualifiers |= VX3_QUALIFIER_ALT;
    return qualifiers;
}

Qt::KeyboardModifiers ModifiersOf(uint32_t qualifiers)
{
    Qt::KeyboardModifiers modifiers = Qt::NoModifier;
    modifiers.setFlag(Qt::ShiftModifier, qualifiers & VX3_QUALIFIER_SHIFT);
    modifiers.setFlag(Qt::ControlModifier, qualifiers & VX3_QUALIFIER_CTRL);
    modifiers.setFlag(Qt::AltModifier, qualifiers & VX3_QUALIFIER_ALT);
    return modifiers;
}

int32_t ChannelOf(Qt::MouseButton button)
{
    for (const ButtonRow& row : buttons)
        if (row.button == button)
            return row.channel;
    return 0;
}

Qt::MouseButton ButtonOf(int32_t channel)
{
    for (const ButtonRow& row : buttons)
        if (row.channel == channel)
            return row.button;
    return Qt::NoButton;
}

uint32_t ChannelBits(Qt::MouseButtons held)
{
    uint32_t bits = 0;
    for (const ButtonRow& row : buttons)
        if (held & row.button)
            bits |= 1u << row.channel;
    return bits;
}

Qt::CursorShape ShapeOf(int32_t cursor)
{
    switch (cursor) {
    case VX3_CURSOR_BUSY: return Qt::BusyCursor;
    case VX3_CURSOR_REFUSED: return Qt::ForbiddenCursor;
    case VX3_CURSOR_COPY: return Qt::DragCopyCursor;
    case VX3_CURSOR_ACCEPT: return Qt::DragMoveCursor;
    default: return Qt::ArrowCursor;
    }
}

int32_t CodeOf(int key, const QString& text)
{
    for (const KeyRow& row : keys)
        if (row.key == key)
            return row.code;
    if (key >= Qt::Key_F1 && key < Qt::Key_F1 + functionKeys)
        return VX3_KEY_F1 + (key - Qt::Key_F1);
    if (key > 0 && key < Qt::Key_Escape && key < 0x10000) // a letter, in upper case also with ctrl held
        return key;
    return WritesSomething(text) ? text.toUpper()[0].unicode() : 0;
}

int KeyOf(int32_t code)
{
    for (const KeyRow& row : keys)
        if (row.code == code)
            return row.key;
    if (code >= VX3_KEY_F1 && code < VX3_KEY_F1 + functionKeys)
        return Qt::Key_F1 + (code - VX3_KEY_F1);
    return code;
}

gui::Input InputOf(const QKeyEvent& event)
{
    gui::Input input;
    input.device = gui::Device::Keyboard;
    input.channel = CodeOf(event.key(), event.text());
    input.qualifiers = QualifiersOf(event.modifiers());
    if (event.key() == Qt::Key_Backtab)
        input.qualifiers |= VX3_QUALIFIER_SHIFT;
    if (WritesSomething(event.text()))
        input.text = ToUnits(event.text());
    return input;
}

} // namespace vx3::desktop
