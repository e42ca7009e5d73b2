#include "studiodocks.h"

#include <algorithm>

#include <QCloseEvent>

#include "qtapplication.h"
#include "qttoolkit.h"
#include "qtwindow.h"

namespace vx3::desktop {

namespace {

// The same in each run, since its place is kept under it.
QString NameOf(const Dialog& window)
{
    return QStringLiteral("window%1.%2").arg(window.opened.id).arg(window.opened.subId);
}

} // namespace

// A docked window: closing it asks the module first.
class StudioDocks::Dock final : public QDockWidget
{
public:
    Dock(QMainWindow& main, QtToolkit& ownToolkit, Dialog& ownWindow)
        : QDockWidget(&main)
        , toolkit(ownToolkit)
        , dialog(&ownWindow)
    {
    }
    void Forget() { dialog = nullptr; }

protected:
    void closeEvent(QCloseEvent* event) override
    {
        event->ignore();
        if (dialog)
            toolkit.GetDesk().UserClosed(*dialog);
    }

private:
    QtToolkit& toolkit;
    Dialog* dialog;
};

StudioDocks::StudioDocks(QMainWindow& ownMain, QtToolkit& ownToolkit)
    : main(ownMain)
    , toolkit(ownToolkit)
{
}

// What is docked outlives the main window.
StudioDocks::~StudioDocks()
{
    for (Standing& standing : standings)
        if (standing.dock)
            TakeOutOfDock(standing);
}

StudioDocks::Standing* StudioDocks::Find(const Dialog& window)
{
    auto found = std::find_if(standings.begin(), standings.end(), [&](const Standing& one) { return one.window == &window; });
    return found == standings.end() ? nullptr : &*found;
}

QStringList StudioDocks::DockedNames() const
{
    QStringList names;
    for (const Standing& one : standings)
        if (one.dock)
            names.append(NameOf(*one.window));
    return names;
}

void StudioDocks::BeginRestore(QStringList namesBefore)
{
    restored = std::move(namesBefore);
}

bool StudioDocks::WantsDock(const Dialog& window) const
{
    return restored ? restored->contains(NameOf(window)) : docksFirst && !HasDocked();
}

void StudioDocks::WindowOpened(Dialog& window, QWidget& frame)
{
    if (window.isModal)
        return;
    const bool isDocked = WantsDock(window);
    standings.push_back({ &window, &frame, nullptr });
    if (isDocked)
        PutIntoDock(standings.back());
    Changed();
}

void StudioDocks::WindowClosing(Dialog& window, QWidget&)
{
    Standing* standing = Find(window);
    if (!standing)
        return;
    if (standing->dock)
        TakeOutOfDock(*standing);
    std::erase_if(standings, [&](const Standing& one) { return one.window == &window; });
    Changed();
}

void StudioDocks::SetDocked(Dialog& window, bool wanted)
{
    Standing* standing = Find(window);
    if (!standing || !standing->frame || wanted == IsDocked(window))
        return;
    const QPointer<QWidget> focus = standing->frame->focusWidget();
    if (wanted) {
        PutIntoDock(*standing);
    } else {
        const QRect place(standing->frame->mapToGlobal(QPoint()), standing->frame->size());
        TakeOutOfDock(*standing);
        standing->frame->setGeometry(place);
        standing->frame->show();
    }
    if (focus)
        focus->setFocus();
    docksFirst = HasDocked();
    Changed();
}

bool StudioDocks::IsDocked(const Dialog& window) const
{
    return std::any_of(standings.begin(), standings.end(), [&](const Standing& one) { return one.window == &window && one.dock; });
}

bool StudioDocks::HasDocked() const
{
    return std::any_of(standings.begin(), standings.end(), [](const Standing& one) { return one.dock != nullptr; });
}

const std::vector<Dialog*> StudioDocks::Windows() const
{
    std::vector<Dialog*> windows;
    for (const Standing& one : standings)
        windows.push_back(one.window);
    return windows;
}

Dialog* StudioDocks::FindWindow(VX3Dialog handle) const
{
    for (const Standing& one : standings)
        if (one.window->handle == handle)
            return one.window;
    return nullptr;
}

void StudioDocks::PutIntoDock(Standing& standing)
{
    auto* dock = new Dock(main, toolkit, *standing.window);
    dock->setObjectName(NameOf(*standing.window));
    dock->setWindowTitle(standing.frame->windowTitle());
    QObject::connect(standing.frame, &QWidget::windowTitleChanged, dock, &QWidget::setWindowTitle);
    const bool wasShown = standing.frame->isVisible();
    dock->setWidget(standing.frame);
    standing.frame->setVisible(wasShown);
    if (!main.restoreDockWidget(dock))
        main.addDockWidget(Qt::TopDockWidgetArea, dock);
    dock->show();
    standing.dock = dock;
}

void StudioDocks::TakeOutOfDock(Standing& standing)
{
    auto* dock = static_cast<Dock*>(standing.dock.data());
    standing.dock = nullptr;
    dock->Forget();
    if (standing.frame) {
        QObject::disconnect(standing.frame, &QWidget::windowTitleChanged, dock, nullptr);
        if (QWidget* focused = main.focusWidget(); focused && standing.frame->isAncestorOf(focused))
            focused->clearFocus(); // or the main window would remember it
        standing.frame->setParent(nullptr, Qt::Window);
    }
    main.removeDockWidget(dock);
    DeleteAfterEvents(*dock);
}

void StudioDocks::Changed()
{
    if (changed)
        changed();
}

} // namespace vx3::desktop
