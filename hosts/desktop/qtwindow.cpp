#include "qtwindow.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDockWidget>
#include <QGuiApplication>
#include <QScreen>
#include <QTimer>
#include <QWindow>

#include "qtapplication.h"
#include "qtmenus.h"
#include "qttoolkit.h"

namespace vx3::desktop {

namespace {

// A place that is remembered may lie on a screen that is not there any more.
QPoint OnSomeScreen(QPoint corner, QSize size)
{
    constexpr int least = 64; // pixels that must be seen to grab it
    QScreen* screen = QGuiApplication::screenAt(corner + QPoint(least, least / 2));
    if (screen)
        return corner;
    const QRect free = QGuiApplication::primaryScreen()->availableGeometry();
    const QPoint most(std::max(free.left(), free.right() - size.width()), std::max(free.top(), free.bottom() - size.height()));
    return { std::clamp(corner.x(), free.left(), most.x()), std::clamp(corner.y(), free.top(), most.y()) };
}

// Without being its child, with which it would go.
void StandOver(QWidget& modal, QWidget* active)
{
    modal.winId(); // makes its handle
    if (active && active->windowHandle() && modal.windowHandle())
        modal.windowHandle()->setTransientParent(active->windowHandle());
}

} // namespace

QtWindow* WindowOf(Dialog& window)
{
    return static_cast<QtWindow*>(window.native.get());
}

WindowFrame::WindowFrame(QtToolkit& ownToolkit, Dialog& ownWindow)
    : toolkit(ownToolkit)
    , dialog(&ownWindow)
    , menu(new QMenuBar(this))
    , inside(new WindowInside(this, ownToolkit, ownWindow))
{
    menu->setNativeMenuBar(false);
    menu->hide();
}

void WindowFrame::Forget()
{
    dialog = nullptr;
    inside->Forget();
    menu->clear();
}

void WindowFrame::ShowMenu()
{
    if (!dialog)
        return;
    const auto chosen = [this](int32_t id) {
        if (dialog)
            toolkit.GetDesk().UserChoseMenu(*dialog, id);
    };
    FillMenuBar(*menu, dialog->menu, chosen, [this] { UpdateMenu(); });
    menu->setVisible(!dialog->menu.empty());
    PlaceParts();
}

void WindowFrame::UpdateMenu()
{
    if (!dialog)
        return;
    toolkit.GetDesk().UpdateMenu(*dialog);
    if (dialog)
        UpdateRows(*menu, dialog->menu);
}

int WindowFrame::MenuHeight() const
{
    return menu->isHidden() ? 0 : std::max(menu->heightForWidth(width()), menu->sizeHint().height());
}

void WindowFrame::ResizeInside(QSize size)
{
    resize(size.width(), size.height() + MenuHeight());
    PlaceParts();
}

void WindowFrame::PlaceParts()
{
    const int top = MenuHeight();
    menu->setGeometry(0, 0, width(), top);
    inside->setGeometry(0, top, width(), height() - top);
}

void WindowFrame::resizeEvent(QResizeEvent*)
{
    PlaceParts();
}

void WindowFrame::moveEvent(QMoveEvent*)
{
    if (dialog && isWindow() && isVisible())
        toolkit.GetDesk().UserMoved(*dialog, ToPoint(frameGeometry().topLeft()));
}

void WindowFrame::closeEvent(QCloseEvent* event)
{
    event->ignore(); // the desk closes it, if the module agrees
    if (dialog)
        toolkit.GetDesk().UserClosed(*dialog);
}

QtWindow::QtWindow(QtToolkit& ownToolkit, Dialog& ownWindow)
    : window(ownWindow)
    , frame(new WindowFrame(ownToolkit, ownWindow))
{
    if (window.isModal) {
        frame->setWindowFlags(Qt::Dialog);
        frame->setWindowModality(Qt::ApplicationModal);
    }
    ShowTitle();
}

QtWindow::~QtWindow()
{
    if (!frame)
        return;
    frame->Forget();
    frame->hide();
    DeleteAfterEvents(*frame);
}

void QtWindow::ShowSoon()
{
    const Point corner = { window.opened.x, window.opened.y };
    QTimer::singleShot(0, frame, [shown = frame.data(), corner] {
        if (!shown->HasWindow())
            return;
        if (shown->isModal())
            StandOver(*shown, QApplication::activeWindow());
        if (corner.x != -1 || corner.y != -1)
            shown->move(OnSomeScreen(ToQt(corner), shown->size()));
        shown->show();
    });
}

void QtWindow::Raise()
{
    for (QWidget* around = frame; around; around = around->parentWidget())
        if (auto* dock = dynamic_cast<QDockWidget*>(around)) {
            dock->show();
            dock->raise();
        }
    QWidget* top = frame->window();
    top->setWindowState(top->windowState() & ~Qt::WindowMinimized);
    top->raise();
    top->activateWindow();
}

void QtWindow::Resize(Size inside)
{
    if (frame->isWindow())
        frame->ResizeInside(ToQt(inside));
}

void QtWindow::ShowTitle()
{
    frame->setWindowTitle(ToQt(window.title));
}

void QtWindow::ShowLeastSize()
{
    frame->setMinimumSize(ToQt(window.leastSize));
}

} // namespace vx3::desktop
