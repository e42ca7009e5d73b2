#include "studiowindow.h"

#include <QApplication>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>
#include <QVBoxLayout>

#include "qtwindow.h"
#include "studioconsole.h"
#include "studiopreferences.h"
#include "studiotexts.h"

namespace vx3::desktop {

namespace {

constexpr QSize firstSize(1120, 720);

QString RowsOfShortcuts()
{
    QString table = QStringLiteral("<table cellspacing=\"6\">");
    for (const QString& line : Say(Word::ShortcutsText).split(QLatin1Char('\n'))) {
        const QStringList parts = line.split(QLatin1Char('\t'));
        table += QStringLiteral("<tr><td><b>%1</b></td><td>%2</td></tr>").arg(parts.first().toHtmlEscaped(), parts.last().toHtmlEscaped());
    }
    return table + QStringLiteral("</table>");
}

} // namespace

StudioWindow::StudioWindow(StudioSession& ownSession)
    : session(ownSession)
    , memory(ownSession.Core().Settings().configFolder)
    , docks(*this, ownSession.Toolkit())
    , console(new StudioConsole(this))
    , hint(new QWidget(this))
{
    setWindowTitle(QApplication::applicationDisplayName());
    resize(firstSize);
    setDockNestingEnabled(true);
    MakeHint();
    addDockWidget(Qt::BottomDockWidgetArea, console);
    console->hide();
    MakeMenus();
    Listen();
}

StudioWindow::~StudioWindow()
{
    session.Console().SetListener({});
    session.Toolkit().SetListener({});
}

void StudioWindow::Listen()
{
    WindowListener listener;
    listener.opened = [this](Dialog& window, QWidget& frame) { docks.WindowOpened(window, frame); };
    listener.closing = [this](Dialog& window, QWidget& frame) { docks.WindowClosing(window, frame); };
    listener.openPreferences = [this](int32_t page) { return OpenPreferences(page); };
    listener.offerKey = [this](const QKeyEvent& key) { return menus->OfferKey(key); };
    session.Toolkit().SetListener(std::move(listener));
    session.Console().SetListener([this](const std::string& line) { console->Add(line); });
    docks.SetListener([this] { ShowHint(); });
}

// --- The middle ---

void StudioWindow::MakeHint()
{
    auto* text = new QLabel(Say(Word::NothingOpen), hint);
    auto* button = new QPushButton(Say(Word::NewBrowser), hint);
    connect(button, &QPushButton::clicked, this, [this] { OpenBrowser(); });
    auto* down = new QVBoxLayout(hint);
    down->addStretch(1);
    down->addWidget(text, 0, Qt::AlignHCenter);
    down->addWidget(button, 0, Qt::AlignHCenter);
    down->addStretch(1);
    setCentralWidget(hint);
}

void StudioWindow::ShowHint()
{
    hint->setVisible(!docks.HasDocked());
}

// --- The menu ---

void StudioWindow::MakeMenus()
{
    StudioMenus::Deeds deeds;
    deeds.newBrowser = [this] { OpenBrowser(); };
    deeds.quit = [this] { close(); };
    deeds.preferences = [this] { OpenPreferences(0); };
    deeds.nextPane = [this] { FocusNextPane(); };
    deeds.shortcuts = [this] { ShowShortcuts(); };
    deeds.about = [this] { ShowAbout(); };
    deeds.fillWindowMenu = [this](QMenu& menu) { FillWindowMenu(menu); };
    menus = std::make_unique<StudioMenus>(*menuBar(), std::move(deeds));
}

void StudioWindow::FillWindowMenu(QMenu& menu)
{
    const QList<QAction*> rows = menu.actions();
    for (QAction* row : rows.mid(1)) { // all but the first are of the moment
        menu.removeAction(row);
        if (row->menu())
            row->menu()->deleteLater(); // takes its row with it
        else if (row != console->toggleViewAction())
            row->deleteLater();
    }
    QAction* toggle = console->toggleViewAction();
    toggle->setText(Say(Word::Console));
    menu.addAction(toggle);
    menu.addSeparator();
    int number = 0;
    for (Dialog* window : docks.Windows()) {
        const QString title = ToQt(window->title).replace(QLatin1Char('&'), QStringLiteral("&&"));
        QMenu* inner = menu.addMenu(QStringLiteral("&%1  %2").arg(++number).arg(title));
        inner->addAction(Say(Word::ShowWindow), this, [this, handle = window->handle] {
            if (Dialog* shown = docks.FindWindow(handle)) // it may have closed while the menu was open
                WindowOf(*shown)->Raise();
        });
        QAction* docked = inner->addAction(Say(Word::Docked), this, [this, handle = window->handle](bool isDocked) {
            if (Dialog* moved = docks.FindWindow(handle))
                docks.SetDocked(*moved, isDocked);
        });
        docked->setCheckable(true);
        docked->setChecked(docks.IsDocked(*window));
    }
}

void StudioWindow::FocusNextPane()
{
    QList<QWidget*> panes;
    for (QDockWidget* dock : findChildren<QDockWidget*>(QString(), Qt::FindDirectChildrenOnly))
        if (dock->isVisible() && dock->widget())
            panes.append(dock->widget());
    if (panes.isEmpty())
        return;
    const QWidget* focused = QApplication::focusWidget();
    const auto hasFocus = [focused](const QWidget* pane) { return pane == focused || pane->isAncestorOf(focused); };
    const auto at = std::find_if(panes.begin(), panes.end(), hasFocus);
    QWidget* next = at == panes.end() || at + 1 == panes.end() ? panes.first() : *(at + 1);
    next->window()->activateWindow();
    (next->focusWidget() ? next->focusWidget() : next)->setFocus(Qt::OtherFocusReason);
}

void StudioWindow::OpenBrowser()
{
    if (Failure failure = session.OpenPlace({}))
        session.Console().Add(failure.sentence);
}

bool StudioWindow::OpenPreferences(int32_t page)
{
    if (page != 0 && !StudioPreferences::HasPage(page))
        return false;
    if (!preferences)
        preferences = new StudioPreferences(this, session.ModuleFile());
    preferences->ShowPage(page);
    preferences->show();
    preferences->raise();
    preferences->activateWindow();
    return true;
}

void StudioWindow::ShowShortcuts()
{
    QMessageBox box(QMessageBox::NoIcon, Say(Word::Shortcuts).remove(QLatin1Char('&')), RowsOfShortcuts(), QMessageBox::Ok, this);
    box.exec();
}

void StudioWindow::ShowAbout()
{
    const QString text = Say(Word::AboutText).arg(QApplication::applicationVersion(), QString::fromLatin1(qVersion()));
    QMessageBox::about(this, Say(Word::About).remove(QLatin1Char('&')), text);
}

// --- From one run to the next ---

void StudioWindow::Restore()
{
    docks.SetDocksFirst(memory.DocksFirst());
    memory.Restore(*this);
    ShowHint();
}

Failure StudioWindow::OpenWindows(const std::string& place)
{
    bool isAny = false;
    docks.BeginRestore(memory.DockedNames());
    for (const StudioMemory::SavedWindow& saved : memory.RestoreWindows(session.GetDesk()))
        isAny = session.RestoreWindow(saved.id, saved.subId) || isAny;
    docks.EndRestore();
    if (!isAny)
        return session.OpenPlace(place);
    return place.empty() ? Failure() : session.GoTo(place);
}

void StudioWindow::Keep()
{
    memory.Keep(*this, docks);
    if (!memory.KeepWindows(session.GetDesk()))
        session.Console().Add("the windows of this run could not be kept");
}

bool StudioWindow::CloseAll()
{
    const std::vector<Dialog*> windows = session.GetDesk().Windows();
    for (Dialog* window : windows) {
        const std::vector<Dialog*> open = session.GetDesk().Windows(); // closing one may close others
        const bool isOpen = std::find(open.begin(), open.end(), window) != open.end();
        if (isOpen && !session.GetDesk().AskAndClose(*window))
            return false;
    }
    return true;
}

void StudioWindow::closeEvent(QCloseEvent* event)
{
    if (QApplication::activeModalWidget() && QApplication::activeModalWidget() != this)
        return event->ignore();
    Keep();
    const bool docksFirst = docks.DocksFirst();
    if (!CloseAll())
        return event->ignore();
    docks.SetDocksFirst(docksFirst);
    event->accept();
    QApplication::quit();
}

} // namespace vx3::desktop
