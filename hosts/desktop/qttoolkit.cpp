#include "qttoolkit.h"

#include <filesystem>

#include <QApplication>
#include <QEventLoop>
#include <QPainter>
#include <QStyle>

#include "core/registry.h"
#include "core/values.h"
#include "headless/fixedfont.h"
#include "headless/gadgetneeds.h"
#include "headless/palette.h"
#include "headless/pointertrack.h"
#include "qtboxes.h"
#include "qtgadget.h"
#include "qticons.h"
#include "qtmetrics.h"
#include "qtwindow.h"

namespace vx3::desktop {

namespace {

// A user may change several things at once; what follows costs a new layout of all windows.
bool ChangesLook(QEvent::Type type)
{
    return type == QEvent::ApplicationPaletteChange || type == QEvent::ApplicationFontChange || type == QEvent::StyleChange;
}

std::string WordsOf(const gui::ChooseRequest& request)
{
    const char* const kind = request.mode == VX3_CHOOSE_FOLDER ? "folder: " : request.mode == VX3_CHOOSE_SAVE ? "save: " : "file: ";
    const std::string filter = request.filter.empty() ? "" : " (" + core::Text(request.filter).Utf8() + ")";
    return kind + core::Text(request.title).Utf8() + filter;
}

} // namespace

// Hears of a new palette, font or style of the whole application.
class QtToolkit::LookWatch final : public QObject
{
public:
    explicit LookWatch(QtToolkit& ownToolkit)
        : toolkit(ownToolkit)
    {
        QCoreApplication::instance()->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject* object, QEvent* event) override
    {
        if (object == QCoreApplication::instance() && ChangesLook(event->type()) && !isWaiting) {
            isWaiting = true;
            QTimer::singleShot(0, this, [this] {
                isWaiting = false;
                toolkit.LookChanged();
            });
        }
        return false;
    }

private:
    QtToolkit& toolkit;
    bool isWaiting = false;
};

QtToolkit::QtToolkit()
    : clock(
        [this] {
            if (desk)
                desk->RunTimers();
        },
        [this] {
            if (listener.deliver)
                listener.deliver();
            if (desk)
                desk->Deliver();
        })
    , nested(*this)
    , popupEdit(*this)
    , lookWatch(std::make_unique<LookWatch>(*this))
{
    ReadLook();
    QObject::connect(qApp, &QApplication::focusChanged, &connections, [this](QWidget* from, QWidget* to) { FocusChanged(from, to); });
}

QtToolkit::~QtToolkit() = default;

void QtToolkit::SetDesk(gui::Desk* wanted)
{
    desk = wanted;
}

void QtToolkit::BeginScript(ScriptHost& host)
{
    script = &host;
    pointer.SetScripted(true);
    clock.BeginScript();
    LookChanged();
}

void QtToolkit::EndScript()
{
    script = nullptr;
    pointer.SetScripted(false);
    clock.EndScript();
    LookChanged();
}

bool QtToolkit::WaitIn(QEventLoop& loop, const bool& isOver, const char* what)
{
    if (!script) {
        if (!isOver)
            loop.exec();
        return true;
    }
    while (!isOver)
        if (!script->Step(what))
            return isOver;
    return true;
}

// --- Looks ---

void QtToolkit::ReadLook()
{
    colours = Colours(QApplication::palette());
    metrics = script ? gui::Metrics() : MetricsOf(*QApplication::style(), QFontMetrics(QApplication::font()));
    texts.SetFont(QApplication::font());
    texts.SetCells(script ? headless::cellWidth : 0, script ? headless::cellHeight : 0);
}

void QtToolkit::LookChanged()
{
    ReadLook();
    if (desk)
        desk->PaletteChanged();
}

QFont QtToolkit::TextFont() const
{
    return QApplication::font();
}

Colour QtToolkit::ColourOf(int32_t number)
{
    return script ? headless::PaletteColour(number) : ToColour(colours.Of(number));
}

int QtToolkit::DragDistance() const
{
    return script ? headless::dragDistance : QApplication::startDragDistance();
}

QSize QtToolkit::SizeOfPicture(const gui::Picture& picture) const
{
    const core::BitmapView view = core::ViewOf(*picture.Get());
    return view.width >= signSide ? QSize(iconSide, iconSide) : QSize(view.width, view.height);
}

QColor QtToolkit::FrameColour() const
{
    const QPalette palette = QApplication::palette();
    const bool isDark = palette.color(QPalette::Window).lightness() < 128;
    return isDark ? palette.color(QPalette::Window).lighter(170) : palette.color(QPalette::Window).darker(140);
}

void QtToolkit::DrawFrame(QPainter& painter, const QRect& place, bool hasFocus) const
{
    const QColor colour = hasFocus ? QApplication::palette().color(QPalette::Active, QPalette::Highlight) : FrameColour();
    const QTransform whole = painter.deviceTransform();
    const QRectF exact = whole.mapRect(QRectF(place));
    const QRect dots(QPoint(qRound(exact.left()), qRound(exact.top())), QPoint(qRound(exact.right()) - 1, qRound(exact.bottom()) - 1));
    const int thickness = std::max(1, static_cast<int>(whole.m11()));
    painter.save();
    painter.setWorldTransform(whole.inverted() * painter.worldTransform()); // all four lines as thick as each other
    painter.fillRect(dots.left(), dots.top(), dots.width(), thickness, colour);
    painter.fillRect(dots.left(), dots.bottom() + 1 - thickness, dots.width(), thickness, colour);
    painter.fillRect(dots.left(), dots.top(), thickness, dots.height(), colour);
    painter.fillRect(dots.right() + 1 - thickness, dots.top(), thickness, dots.height(), colour);
    painter.restore();
}

void QtToolkit::DrawFocus(QPainter& painter, const QRect& place) const
{
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(QApplication::palette().color(QPalette::Active, QPalette::Highlight), 1.5));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(QRectF(place).adjusted(1, 1, -1, -1), 3, 3);
}

// --- Focus ---

void QtToolkit::Remember(QWidget& widget, Gadget& gadget)
{
    gadgets[&widget] = &gadget;
}

void QtToolkit::Forget(QWidget& widget)
{
    gadgets.erase(&widget);
}

Gadget* QtToolkit::GadgetOf(QWidget* widget) const
{
    for (; widget; widget = widget->parentWidget())
        if (auto found = gadgets.find(widget); found != gadgets.end())
            return found->second;
    return nullptr;
}

Dialog* QtToolkit::WindowOfWidget(QWidget* widget) const
{
    for (; widget; widget = widget->parentWidget())
        for (Dialog* window : windows)
            if (WindowOf(*window)->Frame() == widget)
                return window;
    return nullptr;
}

// The popup edit stands over a gadget, which keeps the focus for the module meanwhile.
void QtToolkit::FocusChanged(QWidget* from, QWidget* to)
{
    if (!desk || (to && to == popupEdit.Field()))
        return;
    if (placing > 0) { // modules hear of it when the layout is made
        QTimer::singleShot(0, &connections, [this] { FocusChanged(nullptr, QApplication::focusWidget()); });
        return;
    }
    Dialog* left = WindowOfWidget(from);
    Dialog* entered = WindowOfWidget(to);
    if (left && left != entered)
        desk->FocusMoved(*left, nullptr);
    if (entered && WindowOfWidget(to) == entered) // still
        desk->FocusMoved(*entered, GadgetOf(to));
}

// --- Windows ---

void QtToolkit::OpenWindow(Dialog& window)
{
    window.native = std::make_unique<QtWindow>(*this, window);
    windows.push_back(&window);
    if (listener.opened)
        listener.opened(window, *WindowOf(window)->Frame());
    WindowOf(window)->ShowSoon();
}

void QtToolkit::CloseWindow(Dialog& window)
{
    if (listener.closing)
        listener.closing(window, *WindowOf(window)->Frame());
    const bool wasInFront = WindowOf(window)->Frame()->isActiveWindow();
    std::erase(windows, &window);
    window.native.reset();
    if (wasInFront && !windows.empty())
        WindowOf(*windows.back())->Frame()->QWidget::window()->activateWindow();
}

void QtToolkit::ShowTitle(Dialog& window)
{
    WindowOf(window)->ShowTitle();
    if (window.root) // areas are called by it
        VisitGadgets(*window.root, [](Gadget& gadget) {
            if (gadget.native)
                NativeOf(gadget)->Show(gui::Change::Tip);
        });
}

void QtToolkit::RaiseWindow(Dialog& window)
{
    WindowOf(window)->Raise();
}

void QtToolkit::ResizeWindow(Dialog& window, Size inside)
{
    WindowOf(window)->Resize(inside);
}

void QtToolkit::ShowLeastSize(Dialog& window)
{
    WindowOf(window)->ShowLeastSize();
}

void QtToolkit::ShowMenu(Dialog& window)
{
    WindowOf(window)->Frame()->ShowMenu();
}

Point QtToolkit::InsideCorner(Dialog& window)
{
    return ToPoint(WindowOf(window)->Inside()->mapToGlobal(QPoint()));
}

Dialog* QtToolkit::WindowAt(Point screen)
{
    return WindowOfWidget(QApplication::widgetAt(ToQt(screen)));
}

void QtToolkit::RunModal(Dialog& window)
{
    nested.RunModal(window);
}

void QtToolkit::EndModal(Dialog& window)
{
    nested.EndModal(window);
}

// --- Gadgets ---

void QtToolkit::MakeGadget(Gadget& gadget)
{
    gadget.native = MakeNative(*this, gadget);
}

void QtToolkit::DropGadget(Gadget& gadget)
{
    gadget.native.reset();
}

Size QtToolkit::NeedOf(const Gadget& gadget)
{
    if (script)
        return headless::NeedOfContents(gadget);
    return gadget.native ? static_cast<const QtGadget&>(*gadget.native).Need() : Size();
}

void QtToolkit::PlaceGadget(Gadget& gadget, bool isVisible)
{
    if (!gadget.native)
        return;
    ++placing;
    NativeOf(gadget)->PlaceWidget(isVisible);
    --placing;
}

void QtToolkit::ShowGadget(Gadget& gadget, gui::Change change)
{
    if (gadget.native)
        NativeOf(gadget)->Show(change);
    if (change != gui::Change::Enabled)
        return;
    VisitGadgets(gadget, [](Gadget& inside) {
        if (inside.native)
            NativeOf(inside)->Show(gui::Change::Enabled);
    });
}

void QtToolkit::SelectText(Gadget& gadget, int from, int count)
{
    if (gadget.native)
        NativeOf(gadget)->SelectText(from, count);
}

void QtToolkit::FocusGadget(Gadget& gadget)
{
    QWidget* widget = gadget.native ? NativeOf(gadget)->FocusWidget() : nullptr;
    if (widget)
        widget->setFocus(Qt::OtherFocusReason); // it gets it with its window, if that is not in front
}

void QtToolkit::Redraw(Gadget& gadget, const Place& part)
{
    if (gadget.native)
        NativeOf(gadget)->Redraw(part);
}

// --- Nested operations ---

gui::Band QtToolkit::TrackRubberBand(Gadget& area, Point start)
{
    return nested.TrackRubberBand(area, start);
}

void QtToolkit::RunDrag(Gadget& area)
{
    nested.RunDrag(area);
}

void QtToolkit::ShowDragCursor(int32_t cursor)
{
    dragCursor = cursor;
    if (QGuiApplication::overrideCursor() && !IsDragOutside())
        QGuiApplication::changeOverrideCursor(ShapeOf(cursor));
}

int32_t QtToolkit::RunPopup(Dialog& window, const std::vector<gui::MenuItem>& menu, Point screen)
{
    return nested.RunPopup(window, menu, screen);
}

void QtToolkit::CancelNested(Dialog& window)
{
    nested.Cancel(window);
}

void QtToolkit::OpenPopupEdit(Dialog& window, const Place& screen, const std::u16string& text)
{
    popupEdit.Open(*WindowOf(window)->Inside(), screen, text);
}

void QtToolkit::ClosePopupEdit()
{
    popupEdit.Close();
}

// --- Pointer, keys, boxes ---

void QtToolkit::SetCursor(int32_t cursor)
{
    if (hasCursor)
        QGuiApplication::restoreOverrideCursor();
    hasCursor = cursor != VX3_CURSOR_NORMAL;
    if (hasCursor)
        QGuiApplication::setOverrideCursor(ShapeOf(cursor));
}

uint32_t QtToolkit::PointerState(Point& screen)
{
    screen = ToPoint(pointer.Position());
    return ChannelBits(pointer.Buttons());
}

// The words of a box are the same in every host, since scripts show them.
void QtToolkit::ShowBox(int32_t kind, const std::u16string& text)
{
    std::string answer;
    if (script)
        script->Ask((kind == VX3_BOX_ERROR ? "error: " : "information: ") + core::Text(text).Utf8(), answer);
    else
        ShowMessage(QApplication::activeWindow(), kind, ToQt(text));
}

bool QtToolkit::Ask(const std::u16string& text)
{
    std::string answer;
    if (!script)
        return AskQuestion(QApplication::activeWindow(), ToQt(text));
    if (!script->Ask("question: " + core::Text(text).Utf8(), answer))
        return false;
    const bool isYes = answer == "yes" || answer == "1";
    if (!isYes && !answer.empty() && answer != "no" && answer != "0")
        script->Fail("'" + answer + "' is neither yes nor no");
    return isYes;
}

bool QtToolkit::Choose(const gui::ChooseRequest& request, std::string& chosen)
{
    if (!script)
        return ChoosePath(QApplication::activeWindow(), request, chosen);
    std::string answer;
    if (!script->Ask(WordsOf(request), answer) || answer.empty() || answer == "0")
        return false;
    const std::string path = (std::filesystem::path(script->FolderOfScenario()) / answer).string();
    std::error_code ignored;
    const bool exists = std::filesystem::exists(path, ignored);
    if (request.mode == VX3_CHOOSE_SAVE && exists && !Ask(u"replace " + core::Text(answer).Units()))
        return false;
    if (request.mode != VX3_CHOOSE_SAVE && !exists) {
        script->Fail("'" + path + "' cannot be chosen: it does not exist");
        return false;
    }
    chosen = path;
    return true;
}

bool QtToolkit::Reveal(const std::string& path)
{
    if (!script)
        return RevealInFileManager(path);
    script->Show("show in the file manager: " + path);
    return false;
}

bool QtToolkit::OpenWithSystem(const std::string& path)
{
    if (!script)
        return desktop::OpenWithSystem(path);
    script->Show("open with the system: " + path);
    return false;
}

bool QtToolkit::OpenPreferences(int32_t page)
{
    if (!script)
        return listener.openPreferences && listener.openPreferences(page);
    for (const core::RegisteredPage& registered : core::RegisteredPages())
        if (registered.id == page) {
            script->Show("preferences: " + registered.name);
            return true;
        }
    return false;
}

} // namespace vx3::desktop
