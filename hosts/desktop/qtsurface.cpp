#include "qtsurface.h"

#include <cmath>
#include <cstdlib>

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QWheelEvent>

#include "qtcanvas.h"
#include "qtscroll.h"
#include "qttoolkit.h"

namespace vx3::desktop {

namespace {

constexpr int notchAngle = 120;
constexpr int frameWidth = 1;
constexpr int mostParts = 4; // of what is painted at once, each with a call of the module

class QtArea final : public QtGadget
{
public:
    QtArea(QtToolkit& ownToolkit, Gadget& ownGadget)
        : QtGadget(ownToolkit, ownGadget)
        , surface(new Surface(Around(), ownToolkit, ownGadget))
    {
        Own(surface);
    }
    ~QtArea() override { surface->Forget(); }
    void Redraw(const Place& part) override { surface->Redraw(part); }

protected:
    void PlaceAt(const QRect& place) override
    {
        const Gadget* scroll = ScrollGroupOf(gadget);
        const QRect seen = scroll ? place.intersected(QRect(QPoint(), ToQt(scroll->view))) : place;
        surface->PlaceAt(seen, ToPoint(seen.topLeft() - place.topLeft()));
        ShowWidget(*surface, isVisible && !seen.isEmpty());
    }

private:
    Surface* surface;
};

// A tree draws in the coordinates of its view, so its surface is the view of its frame.
class QtTree final : public QtGadget
{
public:
    QtTree(QtToolkit& ownToolkit, Gadget& ownGadget)
        : QtGadget(ownToolkit, ownGadget)
        , frame(new ScrollFrame(Around(), ownToolkit, ownGadget))
        , surface(new Surface(frame->View(), ownToolkit, ownGadget))
    {
        Own(frame);
        toolkit.Remember(*surface, gadget);
    }
    ~QtTree() override
    {
        toolkit.Forget(*surface);
        surface->Forget();
        frame->Forget();
    }
    void Redraw(const Place& part) override { surface->Redraw(part); }
    QWidget* FocusWidget() override { return surface; }
    void Show(gui::Change change) override
    {
        QtGadget::Show(change);
        if (change == gui::Change::Everything || change == gui::Change::Range)
            PlaceView();
        if (change != gui::Change::Scrolled)
            return;
        frame->ShowPosition();
        surface->ScrollBy(gadget.scrolled - shown);
        shown = gadget.scrolled;
    }

protected:
    void PlaceAt(const QRect& place) override
    {
        QtGadget::PlaceAt(place);
        PlaceView();
    }

private:
    void PlaceView()
    {
        frame->ShowRanges();
        surface->PlaceAt(QRect(QPoint(), ToQt(gadget.view)), {});
        if (shown != gadget.scrolled)
            surface->update();
        shown = gadget.scrolled;
    }

    ScrollFrame* frame;
    Surface* surface;
    Point shown; // where what is on the screen is scrolled to
};

bool WantsShortcut(const QKeyEvent& event)
{
    // With Alt a letter opens a menu.
    return !(event.modifiers() & Qt::AltModifier) && CodeOf(event.key(), event.text()) != 0;
}

} // namespace

Surface::Surface(QWidget* parent, QtToolkit& ownToolkit, Gadget& ownGadget)
    : QWidget(parent)
    , toolkit(ownToolkit)
    , gadget(&ownGadget)
{
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAttribute(Qt::WA_InputMethodEnabled);
    setFocusPolicy(Qt::StrongFocus);
}

bool Surface::TakesFocus() const
{
    return gadget && (gadget->tree || (gadget->area && gadget->area->table->input));
}

QRect Surface::InsideFrame() const
{
    return TakesFocus() ? rect().adjusted(frameWidth, frameWidth, -frameWidth, -frameWidth) : rect();
}

void Surface::PlaceAt(const QRect& place, Point newOrigin)
{
    setFocusPolicy(TakesFocus() ? Qt::StrongFocus : Qt::NoFocus);
    if (place == geometry()) {
        const Point by = newOrigin - origin;
        origin = newOrigin;
        return ScrollBy(by);
    }
    origin = newOrigin;
    setGeometry(place);
    update();
}

void Surface::ScrollBy(Point by)
{
    const QRect inside = InsideFrame();
    if (by == Point())
        return;
    const bool isFar = std::abs(by.x) >= inside.width() || std::abs(by.y) >= inside.height();
    const double scale = devicePixelRatioF();
    const auto isWhole = [scale](int length) { return length * scale == std::floor(length * scale); };
    if (isFar || !isWhole(by.x) || !isWhole(by.y)) // nothing that could be copied dot by dot
        update();
    else
        scroll(-by.x, -by.y, inside);
}

void Surface::Redraw(const Place& part)
{
    update(ToQt(part.Moved(Point() - origin)));
}

void Surface::paintEvent(QPaintEvent* event)
{
    QPainter painter(this);
    if (!HasContents() || !gadget->dialog->IsOpen())
        return painter.fillRect(event->rect(), palette().window());
    const QRegion& region = event->region();
    const QRegion parts = region.rectCount() <= mostParts ? region : QRegion(region.boundingRect());
    painter.translate(-origin.x, -origin.y);
    for (const QRect& part : parts) {
        painter.setClipping(false);
        QtCanvas canvas(painter, toolkit.GetPictures(), toolkit.GetTexts());
        toolkit.GetDesk().Paint(*gadget, canvas, ToPlace(part).Moved(origin));
    }
    painter.setClipping(false);
    painter.resetTransform();
    if (TakesFocus())
        toolkit.DrawFrame(painter, rect(), hasFocus());
}

bool Surface::Feed(const gui::Input& input)
{
    return HasContents() && toolkit.GetDesk().Feed(*gadget, input);
}

void Surface::FeedPress(QMouseEvent& event, bool isDouble)
{
    gui::Input input;
    input.channel = ChannelOf(event.button());
    input.at = ToPoint(event.position().toPoint()) + origin;
    input.qualifiers = QualifiersOf(event.modifiers());
    input.isDouble = isDouble;
    event.setAccepted(input.channel != 0 && Feed(input));
}

void Surface::mousePressEvent(QMouseEvent* event)
{
    FeedPress(*event, false);
}

void Surface::mouseDoubleClickEvent(QMouseEvent* event)
{
    FeedPress(*event, true);
}

int Surface::WholeNotches(int angle, uint32_t qualifiers)
{
    if (qualifiers != wheelQualifiers || (angle > 0) != (gatheredAngle > 0)) {
        gatheredAngle = 0;
        wheelQualifiers = qualifiers;
        isWheelTaken = qualifiers != 0; // most likely a zoom: nothing moves before it is known
    }
    gatheredAngle += angle;
    const int notches = gatheredAngle / notchAngle;
    gatheredAngle %= notchAngle;
    return notches;
}

void Surface::wheelEvent(QWheelEvent* event)
{
    const int angle = event->angleDelta().y() ? event->angleDelta().y() : event->angleDelta().x(); // Alt turns it
    const uint32_t qualifiers = QualifiersOf(event->modifiers());
    const int notches = WholeNotches(angle, qualifiers);
    if (notches != 0) {
        gui::Input input;
        input.channel = VX3_CHANNEL_WHEEL;
        input.value = notches * notchAngle;
        input.at = ToPoint(event->position().toPoint()) + origin;
        input.qualifiers = qualifiers;
        const QPointer<Surface> alive = this;
        const bool isTaken = Feed(input);
        if (!alive)
            return event->setAccepted(isTaken);
        isWheelTaken = isTaken;
    }
    event->setAccepted(isWheelTaken);
}

// Tab is offered to the module first; so are keys that a menu has as well.
bool Surface::event(QEvent* event)
{
    if (event->type() == QEvent::KeyPress) {
        const auto& key = static_cast<QKeyEvent&>(*event);
        const bool isTab = key.key() == Qt::Key_Tab || key.key() == Qt::Key_Backtab;
        if (isTab && FeedKey(key))
            return true;
    }
    if (event->type() == QEvent::ShortcutOverride && WantsShortcut(static_cast<QKeyEvent&>(*event))) {
        event->accept();
        return true;
    }
    return QWidget::event(event);
}

bool Surface::FeedKey(const QKeyEvent& event)
{
    const gui::Input input = InputOf(event);
    return (input.channel != 0 || !input.text.empty()) && Feed(input);
}

void Surface::keyPressEvent(QKeyEvent* event)
{
    const bool isMenuKey = event->key() == Qt::Key_F10 && event->modifiers() == Qt::ShiftModifier;
    event->setAccepted(isMenuKey ? FeedMenuKey() : FeedKey(*event));
}

// By the mouse the press has been fed already; the window system tells of the menu key in this way.
void Surface::contextMenuEvent(QContextMenuEvent* event)
{
    if (event->reason() == QContextMenuEvent::Keyboard)
        event->setAccepted(FeedMenuKey());
}

// A press of the right button where the pointer is, or in the middle of what is seen.
bool Surface::FeedMenuKey()
{
    const QPoint pointer = mapFromGlobal(toolkit.Pointer().Position());
    gui::Input input;
    input.channel = VX3_CHANNEL_RIGHT;
    input.at = ToPoint(rect().contains(pointer) ? pointer : rect().center()) + origin;
    return Feed(input);
}

void Surface::inputMethodEvent(QInputMethodEvent* event)
{
    if (event->commitString().isEmpty())
        return;
    gui::Input input;
    input.device = gui::Device::Keyboard;
    input.text = ToUnits(event->commitString());
    input.channel = ToUnits(event->commitString().toUpper())[0];
    event->setAccepted(Feed(input));
}

QVariant Surface::inputMethodQuery(Qt::InputMethodQuery query) const
{
    if (query == Qt::ImEnabled)
        return TakesFocus();
    if (query == Qt::ImHints)
        return static_cast<int>(Qt::ImhNoPredictiveText);
    return QWidget::inputMethodQuery(query);
}

void Surface::focusInEvent(QFocusEvent*)
{
    update();
}

void Surface::focusOutEvent(QFocusEvent*)
{
    update();
}

std::unique_ptr<QtGadget> MakeSurface(QtToolkit& toolkit, Gadget& gadget)
{
    if (gadget.shape.kind == VX3_GADGET_TREE)
        return std::make_unique<QtTree>(toolkit, gadget);
    return std::make_unique<QtArea>(toolkit, gadget);
}

} // namespace vx3::desktop
