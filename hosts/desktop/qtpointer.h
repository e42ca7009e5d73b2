// Where the pointer is and what is held, and a nested loop that follows it.
#pragma once

#include <functional>

#include <QObject>
#include <QPoint>
#include <QPointer>

#include "qtcodes.h"

class QEventLoop;
class QMouseEvent;
class QWidget;

namespace vx3::desktop {

class QtToolkit;

// Remembers what the last events said. While a script runs that is all there is, since its
// pointer is not that of the screen. Main thread only.
class PointerWatch final : public QObject
{
public:
    PointerWatch();
    void SetScripted(bool wanted) { isScripted = wanted; }
    uint32_t Qualifiers() const;
    Qt::MouseButtons Buttons() const;
    QPoint Position() const; // on the screen

protected:
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    bool isScripted = false;
    QPoint position;
    Qt::MouseButtons buttons;
    Qt::KeyboardModifiers modifiers;
};

// Follows the pointer, whose left button is down, until it is let go. Escape, another
// button and Cancel end it as cancelled; so does an event that shows that the end was missed.
class PointerChase final : public QObject
{
public:
    enum class End { Released, Cancelled };
    using Moved = std::function<void(QPoint screen, uint32_t qualifiers)>;

    explicit PointerChase(QtToolkit& ownToolkit);

    End Run(const char* what, const Moved& moved); // nested
    void Cancel() { Finish(End::Cancelled); }
    QPoint Position() const { return position; }
    uint32_t Qualifiers() const { return qualifiers; }

protected:
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    bool TakeMouse(const QMouseEvent& event);
    bool TakeKey(int key, bool isPressed, Qt::KeyboardModifiers modifiers);
    void Tell();
    void Finish(End wanted);

    QtToolkit& toolkit;
    QPoint position;
    uint32_t qualifiers;
    Moved listener;
    QEventLoop* loop = nullptr;
    End end = End::Cancelled;
    bool isOver = false;
};

} // namespace vx3::desktop
