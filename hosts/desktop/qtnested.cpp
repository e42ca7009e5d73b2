#include "qtnested.h"

#include <optional>

#include <QAction>
#include <QApplication>
#include <QDrag>
#include <QEventLoop>
#include <QMenu>
#include <QMimeData>
#include <QStyle>

#include "qtfilenames.h"
#include "qtmenus.h"
#include "qtrubberband.h"
#include "qttoolkit.h"
#include "qtwindow.h"

namespace vx3::desktop {

Nested::Scope::Scope(Nested& ownNested, Kind kind, const Dialog& window, std::function<void()> cancel)
    : nested(ownNested)
{
    nested.running.push_back({ &window, kind, std::move(cancel) });
}

Nested::Scope::~Scope()
{
    nested.running.pop_back();
}

Nested::Nested(QtToolkit& ownToolkit)
    : toolkit(ownToolkit)
{
}

void Nested::RunModal(Dialog& window)
{
    QEventLoop loop;
    bool isOver = false;
    Scope scope(*this, Kind::Modal, window, [&] {
        isOver = true;
        loop.quit();
    });
    toolkit.WaitIn(loop, isOver, "a modal window");
}

void Nested::EndModal(const Dialog& window)
{
    for (const Running& one : running)
        if (one.window == &window && one.kind == Kind::Modal)
            one.cancel();
}

gui::Band Nested::TrackRubberBand(Gadget& area, Point start)
{
    RubberBand band(toolkit, area, start);
    Scope scope(*this, Kind::Other, area.dialog->Window(), [&band] { band.Cancel(); });
    return band.Run();
}

// A drag that carries files is handed to the window system when the pointer leaves all windows
// of modules, so that it can be dropped on other programs. It may come back.
void Nested::RunDrag(Gadget& area)
{
    gui::Desk& desk = toolkit.GetDesk();
    PointerChase chase(toolkit);
    Scope scope(*this, Kind::Other, area.dialog->Window(), [&] {
        chase.Cancel();
        if (isOutside)
            QDrag::cancel();
    });
    const QPoint from = chase.Position();
    bool isMoving = false;
    std::optional<std::vector<std::string>> files; // asked for when the pointer leaves
    const auto moved = [&](QPoint screen, uint32_t qualifiers) {
        const bool isFar = (screen - from).manhattanLength() >= toolkit.DragDistance();
        if (!isMoving && isFar) {
            isMoving = true;
            QGuiApplication::setOverrideCursor(Qt::ForbiddenCursor); // until someone takes it
        }
        if (isMoving && !desk.MoveDrag(ToPoint(screen), qualifiers))
            return chase.Cancel();
        if (!isMoving || files || toolkit.IsScripted() || toolkit.WindowAt(ToPoint(screen)))
            return;
        files = desk.DraggedFiles();
        if (!files->empty())
            chase.Cancel();
    };
    const PointerChase::End end = chase.Run("a drag", moved);
    if (isMoving)
        QGuiApplication::restoreOverrideCursor();
    if (files && !files->empty() && end == PointerChase::End::Cancelled)
        DragOutside(*files);
    desk.EndDrag(ToPoint(chase.Position()), chase.Qualifiers(), isMoving && end == PointerChase::End::Released);
}

// What happens over windows of modules goes through them (qtinside.cpp); a drop there has ended
// the desk's drag by the time that this returns.
void Nested::DragOutside(const std::vector<std::string>& files)
{
    auto* drag = new QDrag(QCoreApplication::instance()); // Qt deletes it; a window might go before it
    drag->setMimeData(MimeOf(files).release());
    drag->setPixmap(QApplication::style()->standardIcon(QStyle::SP_FileIcon).pixmap(toolkit.OwnMetrics().tabBar));
    isOutside = true;
    drag->exec(Qt::CopyAction);
    isOutside = false;
}

int32_t Nested::RunPopup(Dialog& window, const std::vector<gui::MenuItem>& rows, Point screen)
{
    int32_t chosen = 0;
    auto* menu = new QMenu(WindowOf(window)->Frame());
    QPointer<QMenu> alive = menu; // the window may go, and the menu with it
    FillMenu(*menu, rows, [&chosen](int32_t id) { chosen = id; });
    bool isCancelled = false;
    QEventLoop loop;
    QObject::connect(menu, &QMenu::aboutToHide, &loop, &QEventLoop::quit);
    QObject::connect(menu, &QObject::destroyed, &loop, &QEventLoop::quit);
    Scope scope(*this, Kind::Other, window, [&] {
        isCancelled = true;
        if (alive)
            alive->close();
        loop.quit();
    });
    menu->popup(screen == Point{ -1, -1 } ? toolkit.Pointer().Position() : ToQt(screen));
    if (ScriptHost* script = toolkit.GetScript())
        chosen = script->ChooseFrom(*menu, rows);
    else if (!isCancelled && menu->isVisible())
        loop.exec();
    if (alive) {
        alive->disconnect(&loop);
        alive->close();
        alive->deleteLater();
    }
    return isCancelled ? 0 : chosen;
}

void Nested::Cancel(const Dialog& window)
{
    const std::vector<Running> all = running; // ending one may end others
    for (const Running& one : all)
        if (one.window == &window && one.kind == Kind::Other)
            one.cancel();
}

} // namespace vx3::desktop
