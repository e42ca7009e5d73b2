#include "qtpointer.h"

#include <QCoreApplication>
#include <QCursor>
#include <QEventLoop>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>

#include "qttoolkit.h"

namespace vx3::desktop {

PointerWatch::PointerWatch()
{
    QCoreApplication::instance()->installEventFilter(this);
}

bool PointerWatch::eventFilter(QObject* object, QEvent* event)
{
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseMove: {
        const auto& mouse = static_cast<const QMouseEvent&>(*event);
        if (!object->isWidgetType())
            break; // the same event on its way to a widget
        position = mouse.globalPosition().toPoint();
        buttons = mouse.buttons();
        modifiers = mouse.modifiers();
        break;
    }
    case QEvent::KeyPress:
    case QEvent::KeyRelease: modifiers = static_cast<const QKeyEvent&>(*event).modifiers(); break;
    default: break;
    }
    return false;
}

uint32_t PointerWatch::Qualifiers() const
{
    return QualifiersOf(isScripted ? modifiers : QGuiApplication::queryKeyboardModifiers());
}

Qt::MouseButtons PointerWatch::Buttons() const
{
    return isScripted ? buttons : QGuiApplication::mouseButtons();
}

QPoint PointerWatch::Position() const
{
    return isScripted ? position : QCursor::pos();
}

PointerChase::PointerChase(QtToolkit& ownToolkit)
    : toolkit(ownToolkit)
    , position(ownToolkit.Pointer().Position())
    , qualifiers(ownToolkit.Pointer().Qualifiers())
{
}

PointerChase::End PointerChase::Run(const char* what, const Moved& moved)
{
    listener = moved;
    QEventLoop nested;
    loop = &nested;
    QCoreApplication::instance()->installEventFilter(this);
    if (!toolkit.WaitIn(nested, isOver, what))
        end = End::Cancelled;
    QCoreApplication::instance()->removeEventFilter(this);
    loop = nullptr;
    return end;
}

void PointerChase::Finish(End wanted)
{
    if (isOver)
        return;
    isOver = true;
    end = wanted;
    if (loop)
        loop->quit();
}

void PointerChase::Tell()
{
    if (!isOver)
        listener(position, qualifiers);
}

bool PointerChase::eventFilter(QObject* object, QEvent* event)
{
    if (!object->isWidgetType() || isOver)
        return false;
    switch (event->type()) {
    case QEvent::MouseMove:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseButtonRelease: return TakeMouse(static_cast<const QMouseEvent&>(*event));
    case QEvent::KeyPress:
    case QEvent::KeyRelease: {
        const auto& key = static_cast<const QKeyEvent&>(*event);
        return TakeKey(key.key(), event->type() == QEvent::KeyPress, key.modifiers());
    }
    default: return false;
    }
}

bool PointerChase::TakeMouse(const QMouseEvent& event)
{
    position = event.globalPosition().toPoint();
    qualifiers = QualifiersOf(event.modifiers());
    if (event.type() == QEvent::MouseMove) {
        if (event.buttons() & Qt::LeftButton)
            Tell();
        else
            Finish(End::Cancelled);
    } else if (event.type() == QEvent::MouseButtonRelease) {
        if (event.button() == Qt::LeftButton)
            Finish(End::Released);
    } else {
        Finish(End::Cancelled);
    }
    return true;
}

bool PointerChase::TakeKey(int key, bool isPressed, Qt::KeyboardModifiers modifiers)
{
    if (key == Qt::Key_Escape && isPressed)
        Finish(End::Cancelled);
    const uint32_t now = QualifiersOf(modifiers); // of a modifier itself some systems tell the state before
    if (now != qualifiers) {
        qualifiers = now;
        Tell();
    }
    return true;
}

} // namespace vx3::desktop
