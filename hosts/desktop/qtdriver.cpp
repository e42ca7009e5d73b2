#include "qtdriver.h"

#include <chrono>
#include <filesystem>
#include <thread>

#include <QAction>
#include <QApplication>
#include <QLineEdit>
#include <QMenu>
#include <QMouseEvent>
#include <QPixmap>
#include <QWheelEvent>
#include <QWindow>

#include "core/livecounts.h"
#include "gui/menutext.h"
#include "headless/gadgetuse.h"
#include "headless/threadstate.h"
#include "qtgadget.h"
#include "qtmenus.h"
#include "qtsurface.h"
#include "qtwindow.h"

// What Qt's own test library sends events with: into the queue of the window system, so that
// grabs, focus, double clicks and shortcuts come about as with a real mouse and keyboard.
QT_BEGIN_NAMESPACE
Q_GUI_EXPORT void qt_handleMouseEvent(QWindow* window, const QPointF& local, const QPointF& global, Qt::MouseButtons state,
                                      Qt::MouseButton button, QEvent::Type type, Qt::KeyboardModifiers modifiers, int timestamp);
Q_GUI_EXPORT void qt_handleKeyEvent(QWindow* window, QEvent::Type type, int key, Qt::KeyboardModifiers modifiers, const QString& text,
                                    bool isRepeated, ushort count);
QT_END_NAMESPACE

namespace vx3::desktop {

namespace {

constexpr int readingTime = 300; // ms that a user looks at a menu or a box: timers run in it

// Settling: the clock goes on in steps, for a time in which every timer of a window runs, and
// again as long as something works.
constexpr int settleStep = 50;
constexpr int settleTime = 1000;
constexpr int settleRounds = 30;
constexpr int quietLooks = 4;
constexpr int mostTurns = 100;                      // of the main loop, until a window is in front
constexpr auto patience = std::chrono::seconds(20); // of real time, for one round

std::string NameOf(const Gadget& gadget)
{
    return "gadget " + std::to_string(gadget.shape.id);
}

} // namespace

QtDriver::QtDriver(gui::Desk& ownDesk, QtToolkit& ownToolkit)
    : desk(ownDesk)
    , toolkit(ownToolkit)
{
}

std::string QtDriver::RunScript(const std::string& text, gui::ScriptProgram program, std::function<void(const std::string& line)> output)
{
    folder = program.folder;
    gui::Script script(desk, *this, std::move(program));
    std::string error;
    if (!script.Parse(text, error))
        return error;
    script.SetOutput(std::move(output));
    user = {};
    step = [this, &script] { return user.Failures().empty() && script.Step(); };
    toolkit.BeginScript(*this);
    while (step())
        Turn();
    toolkit.EndScript();
    step = {};
    if (script.HasFailed())
        return script.Failure();
    if (user.Failures().empty() && user.HasAnswers())
        user.Fail("an answer is left that nobody asked for");
    return user.Failures().empty() ? std::string() : "line " + std::to_string(script.Line()) + ": " + user.Failures().front();
}

// --- The main loop ---

void QtDriver::Turn()
{
    desk.Deliver();
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

bool QtDriver::Step(const char* nested)
{
    Turn();
    if (step && step())
        return true;
    user.Fail(std::string("the script has ended while ") + nested + " is going on");
    return false;
}

bool QtDriver::Ask(const std::string& question, std::string& answer)
{
    user.Show(question);
    const bool isAnswered = user.Take(question, answer);
    Advance(readingTime);
    return isAnswered;
}

int32_t QtDriver::ChooseFrom(QMenu& menu, const std::vector<gui::MenuItem>& rows)
{
    QPointer<QMenu> shown = &menu;
    std::string answer;
    int32_t id = 0;
    if (!Ask(gui::DescribeMenu(rows), answer) || !shown)
        return 0;
    if (!gui::ChooseFromMenu(rows, answer, id))
        user.Fail("the menu has no row to choose for '" + answer + "'");
    if (QAction* action = id ? FindRow(*shown, id) : nullptr)
        action->trigger();
    return id;
}

void QtDriver::Advance(int milliseconds)
{
    Turn();
    toolkit.Clock().Advance(milliseconds, [this] { Turn(); });
    Turn();
}

// --- The mouse ---

QtDriver::Spot QtDriver::SpotOf(Gadget& gadget, Point at) const
{
    QtGadget* native = gadget.native ? NativeOf(gadget) : nullptr;
    QWidget* widget = native ? native->FocusWidget() : nullptr;
    if (!widget)
        return {};
    QPoint inside = ToQt(at);
    if (const auto* surface = dynamic_cast<const Surface*>(widget))
        inside -= ToQt(surface->Origin());
    Spot spot = { nullptr, widget->mapToGlobal(inside) };
    QWidget* frame = WindowOf(gadget.dialog->Window())->Frame();
    QWidget* found = frame->childAt(frame->mapFromGlobal(spot.screen));
    if (widget->isVisible() && (found == widget || widget->isAncestorOf(found)))
        spot.widget = found;
    return spot;
}

bool QtDriver::CanUse(Gadget& gadget)
{
    QWidget* widget = !gadget.isGone && gadget.native ? NativeOf(gadget)->FocusWidget() : nullptr;
    if (widget && widget->isVisible())
        return true;
    user.Refuse(NameOf(gadget) + " is not to be seen");
    return false;
}

void QtDriver::Activate(Dialog& window)
{
    QWidget* top = WindowOf(window)->Frame()->QWidget::window();
    if (QApplication::activeModalWidget() && QApplication::activeModalWidget() != top)
        return user.Refuse("a modal window holds up the window");
    if (QApplication::activeWindow() == top)
        return;
    top->activateWindow();
    for (int turn = 0; turn < mostTurns && QApplication::activeWindow() != top; ++turn) {
        Turn();
        std::this_thread::sleep_for(std::chrono::milliseconds(turn > 2 ? 5 : 0)); // for a window manager
    }
}

void QtDriver::SendMouse(QEvent::Type type, QPoint screen, Qt::MouseButton button, uint32_t qualifiers)
{
    if (pointed && type == QEvent::MouseMove && screen == pointer) // no move for the window system, but one for a script
        QCoreApplication::postEvent(pointed,
                                    new QMouseEvent(type, pointed->mapFromGlobal(screen), screen, button, held, ModifiersOf(qualifiers)));
    else if (pointed)
        qt_handleMouseEvent(pointed, pointed->mapFromGlobal(screen), screen, held, button, type, ModifiersOf(qualifiers), time);
    pointer = screen;
    QCoreApplication::processEvents();
    Turn();
}

void QtDriver::Press(Gadget& gadget, Point at, Qt::MouseButton button, uint32_t qualifiers, bool isDouble)
{
    constexpr int longAgo = 10000; // ms: no double click with the press before
    if (!CanUse(gadget))
        return;
    Activate(gadget.dialog->Window());
    const Spot spot = SpotOf(gadget, at);
    if (!spot.widget)
        return user.Refuse("the point " + std::to_string(at.x) + " " + std::to_string(at.y) + " of " + NameOf(gadget)
                           + " is not to be seen");
    pointed = spot.widget->window()->windowHandle();
    time += isDouble ? 1 : longAgo;
    held.setFlag(button, true);
    SendMouse(QEvent::MouseButtonPress, spot.screen, button, qualifiers);
}

void QtDriver::Mouse(Gadget& gadget, Point at, int32_t channel, uint32_t qualifiers, bool isPressed, bool isDouble)
{
    const Qt::MouseButton button = ButtonOf(channel);
    if (isPressed && held == Qt::NoButton)
        return Press(gadget, at, button, qualifiers, isDouble);
    held.setFlag(button, isPressed);
    SendMouse(isPressed ? QEvent::MouseButtonPress : QEvent::MouseButtonRelease, SpotOf(gadget, at).screen, button, qualifiers);
}

void QtDriver::MoveMouse(Gadget& gadget, Point at, uint32_t qualifiers)
{
    if (held == Qt::NoButton)
        pointed = WindowOf(gadget.dialog->Window())->Frame()->QWidget::window()->windowHandle();
    SendMouse(QEvent::MouseMove, SpotOf(gadget, at).screen, Qt::NoButton, qualifiers);
}

void QtDriver::Wheel(Gadget& gadget, Point at, int32_t value, uint32_t qualifiers)
{
    const Spot spot = SpotOf(gadget, at);
    if (!spot.widget)
        return user.Refuse(NameOf(gadget) + " is not to be seen");
    // Only wheels of the window system go on to the widgets around one that does not want it.
    QPointer<QWidget> widget = spot.widget;
    for (bool isWanted = false; widget && !isWanted; widget = widget && !widget->isWindow() ? widget->parentWidget() : nullptr) {
        QWheelEvent event(widget->mapFromGlobal(QPointF(spot.screen)), spot.screen, QPoint(), QPoint(0, value), held,
                          ModifiersOf(qualifiers), Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(widget, &event);
        isWanted = event.isAccepted();
    }
    Turn();
}

// --- The keyboard ---

void QtDriver::Key(Dialog& window, int32_t code, uint32_t qualifiers, const std::u16string& text)
{
    const bool isElsewhere = held != Qt::NoButton || toolkit.GetPopupEdit().Field();
    if (!isElsewhere)
        Activate(window);
    const QPointer<QWindow> target = WindowOf(window)->Frame()->QWidget::window()->windowHandle();
    const int key = code == VX3_KEY_TAB && (qualifiers & VX3_QUALIFIER_SHIFT) ? static_cast<int>(Qt::Key_Backtab) : KeyOf(code);
    for (QEvent::Type type : { QEvent::KeyPress, QEvent::KeyRelease }) {
        if (target)
            qt_handleKeyEvent(target, type, key, ModifiersOf(qualifiers), ToQt(text), false, 1);
        QCoreApplication::processEvents();
    }
    Turn();
}

// --- Gadgets and windows as a whole ---

void QtDriver::Push(Gadget& gadget)
{
    if (!CanUse(gadget))
        return;
    const QWidget* widget = NativeOf(gadget)->FocusWidget();
    if (!widget->isEnabled())
        return user.Refuse(NameOf(gadget) + " is disabled");
    const Point middle = ToPoint(widget->rect().center());
    Mouse(gadget, middle, VX3_CHANNEL_LEFT, 0, true, false);
    Mouse(gadget, middle, VX3_CHANNEL_LEFT, 0, false, false);
}

void QtDriver::SetValue(Gadget& gadget, double value)
{
    if (!CanUse(gadget))
        return;
    if (!headless::ChooseValue(desk, gadget, value))
        user.Refuse(NameOf(gadget) + " cannot be set to " + std::to_string(value));
    if (!gadget.isGone && gadget.native)
        toolkit.ShowGadget(gadget, gui::Change::Value);
    Turn();
}

void QtDriver::SetText(Gadget& gadget, const std::u16string& text)
{
    if (!CanUse(gadget))
        return;
    if (!NativeOf(gadget)->EnterText(text))
        user.Refuse(NameOf(gadget) + " does not take the text");
    Turn();
}

void QtDriver::ChooseMenu(Dialog& window, int32_t id)
{
    WindowFrame* frame = WindowOf(window)->Frame();
    frame->UpdateMenu();
    QAction* action = id ? FindRow(*frame->Menu(), id) : nullptr;
    if (action && action->isEnabled())
        action->trigger();
    else
        user.Refuse("the menu bar has no row " + std::to_string(id) + " to choose");
    Turn();
}

void QtDriver::Close(Dialog& window)
{
    if (window.native)
        WindowOf(window)->Frame()->close();
    Turn();
}

// --- Until nothing waits ---

// Threads of modules are looked at several times, since one that is about to work may sleep at
// one moment; without any there is nothing to look at.
bool QtDriver::IsQuiet() const
{
    const bool hasThreads = core::liveCounters.threads.Get() > 0;
    for (int look = 0; look < (hasThreads ? quietLooks : 1); ++look) {
        if (look > 0)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        if (desk.HasPosted() || (isWorking && isWorking()) || (hasThreads && !headless::OtherThreadsSleep()))
            return false;
    }
    return true;
}

void QtDriver::Settle()
{
    for (int round = 0; round < settleRounds; ++round) {
        const auto end = std::chrono::steady_clock::now() + patience;
        for (int passed = 0; passed < settleTime; passed += settleStep)
            Advance(settleStep);
        if (IsQuiet())
            return;
        while (!IsQuiet() && std::chrono::steady_clock::now() < end) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
            Advance(settleStep);
        }
    }
    user.Fail("the modules did not come to rest");
}

// --- What can be looked at ---

std::string QtDriver::DumpDisplayList(Dialog&)
{
    user.Fail("a host with a screen keeps no list of what is drawn; vx3 script has one");
    return {};
}

bool QtDriver::Shot(Dialog& window, const std::string& file)
{
    Turn();
    std::error_code failed;
    const std::string path = std::filesystem::absolute(file, failed).string();
    return !failed && window.native && WindowOf(window)->Frame()->grab().save(QString::fromStdString(path), "PNG");
}

} // namespace vx3::desktop
