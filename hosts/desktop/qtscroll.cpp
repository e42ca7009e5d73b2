#include "qtscroll.h"

#include <QApplication>
#include <QSignalBlocker>
#include <QWheelEvent>

#include "gui/treestate.h"
#include "qttoolkit.h"

namespace vx3::desktop {

namespace {

constexpr int lineStep = 20;    // pixels of one step of a bar
constexpr int notchAngle = 120; // of a usual wheel, in eighths of a degree

class QtScroll final : public QtGadget
{
public:
    QtScroll(QtToolkit& ownToolkit, Gadget& ownGadget)
        : QtGadget(ownToolkit, ownGadget)
        , frame(new ScrollFrame(Around(), ownToolkit, ownGadget))
    {
        Own(frame);
    }
    ~QtScroll() override { frame->Forget(); }
    QWidget* Inside() override { return frame->View(); }
    void Show(gui::Change change) override
    {
        QtGadget::Show(change);
        if (change != gui::Change::Scrolled)
            return;
        frame->ShowPosition();
        for (const auto& child : gadget.children)
            VisitGadgets(*child, [](Gadget& inside) {
                if (inside.native)
                    NativeOf(inside)->PlaceWidgetAgain();
            });
    }

protected:
    void PlaceAt(const QRect& place) override
    {
        QtGadget::PlaceAt(place);
        frame->ShowRanges();
    }

private:
    ScrollFrame* frame;
};

} // namespace

ScrollFrame::ScrollFrame(QWidget* parent, QtToolkit& ownToolkit, Gadget& ownScroll)
    : QWidget(parent)
    , toolkit(ownToolkit)
    , scroll(&ownScroll)
    , view(new QWidget(this))
    , across(new QScrollBar(Qt::Horizontal, this))
    , down(new QScrollBar(Qt::Vertical, this))
{
    for (QScrollBar* bar : { across, down }) {
        bar->setSingleStep(lineStep);
        QObject::connect(bar, &QScrollBar::valueChanged, this, [this] { UserMoved(); });
    }
}

void ScrollFrame::ShowRanges()
{
    if (!scroll)
        return;
    const QSize seen = ToQt(scroll->view);
    view->setGeometry(QRect(QPoint(), seen));
    across->setGeometry(0, seen.height(), seen.width(), height() - seen.height());
    down->setGeometry(seen.width(), 0, width() - seen.width(), seen.height());
    across->setVisible(seen.height() < height());
    down->setVisible(seen.width() < width());
    ShowPosition();
}

void ScrollFrame::ShowPosition()
{
    if (!scroll)
        return;
    ShowBar(*across, scroll->content.width, scroll->view.width, scroll->scrolled.x);
    ShowBar(*down, scroll->content.height, scroll->view.height, scroll->scrolled.y);
}

void ScrollFrame::ShowBar(QScrollBar& bar, int content, int seen, int position)
{
    const QSignalBlocker blocker(bar);
    bar.setRange(0, std::max(0, content - seen));
    bar.setPageStep(std::max(1, seen));
    bar.setValue(position);
}

void ScrollFrame::UserMoved()
{
    if (!scroll)
        return;
    const Point wanted = { across->value(), down->value() };
    if (scroll->tree)
        gui::ScrollTree(*scroll, wanted - scroll->scrolled);
    else
        toolkit.GetDesk().UserScrolled(*scroll, wanted);
}

// The remainder is kept for the next turn, so that fine wheels add up.
bool ScrollFrame::TurnBar(QScrollBar& bar, int angle, int& rest)
{
    if (angle == 0 || bar.maximum() == 0)
        return false;
    if ((angle > 0) != (rest > 0))
        rest = 0;
    const int turned = rest + angle * QApplication::wheelScrollLines() * bar.singleStep();
    rest = turned % notchAngle;
    bar.setValue(bar.value() - turned / notchAngle);
    return true;
}

void ScrollFrame::wheelEvent(QWheelEvent* event)
{
    QPoint angle = event->angleDelta();
    const bool isTurned = event->modifiers() & Qt::ShiftModifier || down->maximum() == 0;
    if (isTurned && angle.x() == 0)
        angle = angle.transposed();
    const bool isAcross = TurnBar(*across, angle.x(), restOfTurns.rx());
    const bool isDown = TurnBar(*down, angle.y(), restOfTurns.ry());
    event->setAccepted(isAcross || isDown);
}

std::unique_ptr<QtGadget> MakeScroll(QtToolkit& toolkit, Gadget& gadget)
{
    return std::make_unique<QtScroll>(toolkit, gadget);
}

} // namespace vx3::desktop
