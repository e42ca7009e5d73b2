// Check boxes and buttons, with a text or with a picture.
#include <algorithm>

#include <QCheckBox>
#include <QPushButton>
#include <QSignalBlocker>
#include <QStyle>
#include <QStyleOptionToolButton>
#include <QStylePainter>
#include <QTimer>
#include <QToolButton>

#include "qtgadget.h"
#include "qttoolkit.h"

namespace vx3::desktop {

namespace {

using gui::Change;

class QtCheck final : public QtGadget
{
public:
    QtCheck(QtToolkit& ownToolkit, Gadget& ownGadget)
        : QtGadget(ownToolkit, ownGadget)
        , box(new QCheckBox(Around()))
    {
        Own(box);
        QObject::connect(box, &QCheckBox::clicked, box, [this](bool isOn) { toolkit.GetDesk().UserSetValue(gadget, isOn ? 1 : 0); });
    }
    void Show(Change change) override
    {
        QtGadget::Show(change);
        box->setText(Text());
        box->setChecked(gadget.value != 0);
    }

private:
    QCheckBox* box;
};

class QtPush final : public QtGadget
{
public:
    QtPush(QtToolkit& ownToolkit, Gadget& ownGadget)
        : QtGadget(ownToolkit, ownGadget)
        , button(new QPushButton(Around()))
    {
        button->setAutoDefault(false);
        Own(button);
        QObject::connect(button, &QPushButton::clicked, button, [this] { toolkit.GetDesk().UserPressed(gadget); });
    }
    void Show(Change change) override
    {
        QtGadget::Show(change);
        button->setText(Text());
    }

private:
    QPushButton* button;
};

// A tool button whose picture is drawn dot by dot, in the colours of the moment.
class PictureButton final : public QToolButton
{
public:
    PictureButton(QWidget* parent, QtToolkit& ownToolkit)
        : QToolButton(parent)
        , toolkit(ownToolkit)
    {
        setAutoRaise(true);
    }
    void SetPicture(const gui::Picture& wanted)
    {
        picture = wanted;
        update();
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QStylePainter painter(this);
        QStyleOptionToolButton option;
        initStyleOption(&option);
        option.icon = {};
        option.text.clear();
        painter.drawComplexControl(QStyle::CC_ToolButton, option);
        if (picture)
            DrawPicture(painter);
        if (hasFocus()) // many styles show nothing on a raised button
            toolkit.DrawFocus(painter, rect());
    }

private:
    void DrawPicture(QPainter& painter)
    {
        constexpr int frame = 3;
        const double scale = devicePixelRatioF();
        const QSize room = (QSizeF(rect().adjusted(frame, frame, -frame, -frame).size()) * scale).toSize();
        const QSize wanted = (QSizeF(toolkit.SizeOfPicture(picture)) * scale).toSize();
        const QPalette::ColorGroup group = isEnabled() ? QPalette::Active : QPalette::Disabled;
        QImage image = toolkit.GetPictures().GetIcon(*picture.Get(), wanted.boundedTo(room), palette().color(group, QPalette::ButtonText));
        image.setDevicePixelRatio(scale);
        const QSizeF size = image.deviceIndependentSize();
        const auto inDots = [scale](double position) { return std::round(position * scale) / scale; };
        painter.setOpacity(isEnabled() ? 1.0 : 0.4);
        painter.drawImage(QPointF(inDots((width() - size.width()) / 2), inDots((height() - size.height()) / 2)), image);
    }

    QtToolkit& toolkit;
    gui::Picture picture;
};

// With a second picture a toggle shows it while it is on; any other button shows both in
// turn, so that the user sees that something is going on.
class QtPictureButton final : public QtGadget
{
public:
    QtPictureButton(QtToolkit& ownToolkit, Gadget& ownGadget)
        : QtGadget(ownToolkit, ownGadget)
        , button(new PictureButton(Around(), ownToolkit))
        , turn(new QTimer(button))
    {
        button->setCheckable(gadget.Has(VX3_FLAG_TOGGLE));
        turn->setInterval(turnTime);
        QObject::connect(turn, &QTimer::timeout, button, [this] {
            showsSecond = !showsSecond;
            ShowPicture();
        });
        Own(button);
        if (gadget.Has(VX3_FLAG_MENU))
            button->setContextMenuPolicy(Qt::CustomContextMenu);
        QObject::connect(button, &QWidget::customContextMenuRequested, button, [this] { toolkit.GetDesk().UserAskedForMenu(gadget); });
        QObject::connect(button, &QToolButton::clicked, button, [this](bool isOn) {
            if (!gadget.Has(VX3_FLAG_TOGGLE))
                return toolkit.GetDesk().UserPressed(gadget);
            toolkit.GetDesk().UserSetValue(gadget, isOn ? 1 : 0);
        });
    }
    Size Need() const override
    {
        constexpr int frame = 5;
        const QSize size = gadget.normal ? toolkit.SizeOfPicture(gadget.normal) : QSize(16, 16);
        return { size.width() + 2 * frame, size.height() + 2 * frame };
    }
    void Show(Change change) override
    {
        QtGadget::Show(change);
        button->setChecked(gadget.value != 0);
        const bool takesTurns = gadget.second && !gadget.Has(VX3_FLAG_TOGGLE);
        if (takesTurns && !turn->isActive())
            turn->start();
        else if (!takesTurns)
            turn->stop();
        ShowPicture();
    }

private:
    static constexpr int turnTime = 400; // ms

    void ShowPicture()
    {
        const bool isSecond = gadget.Has(VX3_FLAG_TOGGLE) ? gadget.value != 0 : turn->isActive() && showsSecond;
        button->SetPicture(isSecond && gadget.second ? gadget.second : gadget.normal);
    }

    PictureButton* button;
    QTimer* turn;
    bool showsSecond = false;
};

} // namespace

std::unique_ptr<QtGadget> MakeButton(QtToolkit& toolkit, Gadget& gadget)
{
    switch (gadget.shape.kind) {
    case VX3_GADGET_CHECK: return std::make_unique<QtCheck>(toolkit, gadget);
    case VX3_GADGET_BUTTON: return std::make_unique<QtPush>(toolkit, gadget);
    default: return std::make_unique<QtPictureButton>(toolkit, gadget);
    }
}

} // namespace vx3::desktop
