#include "qtrubberband.h"

#include <cstdlib>

#include <QTimer>

#include "qtsurface.h"
#include "qttoolkit.h"

namespace vx3::desktop {

namespace {

constexpr int edgeInterval = 30; // ms between two steps of scrolling
constexpr int mostSpeed = 40;    // pixels of one step

// How far to go for a pointer that is beyond one of the ends of a view.
int StepBeyond(int position, int length)
{
    const int beyond = position < 0 ? position : std::max(0, position - length + 1);
    return std::clamp(beyond, -mostSpeed, mostSpeed);
}

} // namespace

RubberBand::RubberBand(QtToolkit& ownToolkit, Gadget& ownArea, Point ownStart)
    : toolkit(ownToolkit)
    , area(&ownArea)
    , surface(ownArea.native ? NativeOf(ownArea)->Widget() : nullptr)
    , chase(ownToolkit)
    , start(ownStart)
    , end(ownStart)
{
    if (!surface)
        return;
    frame = new QRubberBand(QRubberBand::Rectangle, surface);
    QObject::connect(surface, &QObject::destroyed, &chase, [this] { Cancel(); });
}

RubberBand::~RubberBand()
{
    delete frame;
}

void RubberBand::Cancel()
{
    area = nullptr;
    chase.Cancel();
}

gui::Band RubberBand::Run()
{
    if (!surface)
        return {};
    QTimer edge;
    QObject::connect(&edge, &QTimer::timeout, &chase, [this] { ScrollAtEdge(); });
    if (!toolkit.IsScripted())
        edge.start(edgeInterval);
    const PointerChase::End how = chase.Run("a rubber band", [this](QPoint screen, uint32_t) { Follow(screen); });
    if (how == PointerChase::End::Cancelled || !area)
        return { VX3_BAND_CANCELLED, {} };
    end = InArea(chase.Position());
    if (end == start)
        return { VX3_BAND_UNMOVED, {} };
    const auto [left, right] = std::minmax(start.x, end.x);
    const auto [top, bottom] = std::minmax(start.y, end.y);
    return { VX3_BAND_RECTANGLE, { left, top, right, bottom } };
}

Point RubberBand::InArea(QPoint screen) const
{
    if (!surface)
        return end;
    return ToPoint(surface->mapFromGlobal(screen)) + static_cast<Surface&>(*surface).Origin();
}

void RubberBand::Follow(QPoint screen)
{
    if (!area)
        return;
    end = InArea(screen);
    ShowFrame();
}

void RubberBand::ShowFrame()
{
    if (!surface || !frame)
        return;
    const Point origin = static_cast<Surface&>(*surface).Origin();
    const QRect shown = QRect(ToQt(start - origin), ToQt(end - origin)).normalized();
    frame->setGeometry(shown);
    frame->show();
}

void RubberBand::ScrollAtEdge()
{
    Gadget* scroll = area ? ScrollGroupOf(*area) : nullptr;
    QtGadget* native = scroll ? NativeOf(*scroll) : nullptr;
    if (!native || !native->Inside() || end == start)
        return;
    const QPoint at = native->Inside()->mapFromGlobal(chase.Position());
    const Point step = { StepBeyond(at.x(), scroll->view.width), StepBeyond(at.y(), scroll->view.height) };
    if (step == Point())
        return;
    const Point most = { std::max(0, scroll->content.width - scroll->view.width),
                         std::max(0, scroll->content.height - scroll->view.height) };
    const Point wanted = scroll->scrolled + step;
    toolkit.GetDesk().UserScrolled(*scroll, { std::clamp(wanted.x, 0, most.x), std::clamp(wanted.y, 0, most.y) });
    Follow(chase.Position());
}

} // namespace vx3::desktop
