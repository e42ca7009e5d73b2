// What only shows something: texts, progress bars, separators.
#include <QFrame>
#include <QLabel>
#include <QPainter>
#include <QProgressBar>
#include <QStyle>

#include "qtgadget.h"
#include "qttoolkit.h"

namespace vx3::desktop {

namespace {

using gui::Change;

constexpr int textInset = 4; // texts may stand at the edge of a window

// A text that is cut with dots where its place is too small; then the tip has all of it.
class Label final : public QLabel
{
public:
    using QLabel::QLabel;

    void SetTip(const QString& wanted)
    {
        tip = wanted;
        UpdateTip();
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        const QString shown = IsCut() ? fontMetrics().elidedText(text(), Qt::ElideRight, width() - 2 * textInset) : text();
        const QRect place = rect().adjusted(textInset, 0, -textInset, 0);
        style()->drawItemText(&painter, place, static_cast<int>(alignment()), palette(), isEnabled(), shown, foregroundRole());
    }
    void resizeEvent(QResizeEvent* event) override
    {
        QLabel::resizeEvent(event);
        UpdateTip();
    }

private:
    bool IsCut() const { return fontMetrics().horizontalAdvance(text()) > width() - 2 * textInset; }
    void UpdateTip() { setToolTip(PlainTip(tip.isEmpty() && IsCut() ? text() : tip)); }

    QString tip;
};

class QtText final : public QtGadget
{
public:
    QtText(QtToolkit& ownToolkit, Gadget& ownGadget)
        : QtGadget(ownToolkit, ownGadget)
        , label(new Label(Around()))
    {
        label->setTextFormat(Qt::PlainText);
        label->setAlignment((gadget.Has(VX3_FLAG_RIGHT) ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
        Own(label);
    }
    Size Need() const override { return { toolkit.TextWidth(gadget.text) + 2 * textInset, toolkit.FontHeight() }; }
    void Show(Change change) override
    {
        QtGadget::Show(change);
        label->setText(Text());
        label->SetTip(ToQt(gadget.tip));
    }

private:
    Label* label;
};

class QtProgress final : public QtGadget
{
public:
    QtProgress(QtToolkit& ownToolkit, Gadget& ownGadget)
        : QtGadget(ownToolkit, ownGadget)
        , bar(new QProgressBar(Around()))
    {
        bar->setTextVisible(false);
        Own(bar);
    }
    void Show(Change change) override
    {
        QtGadget::Show(change);
        const bool isKnown = gadget.value >= 0;
        bar->setRange(0, isKnown ? steps : 0);
        bar->setValue(isKnown ? static_cast<int>(gadget.value * steps) : 0);
    }

private:
    static constexpr int steps = 1000;
    QProgressBar* bar;
};

class QtSeparator final : public QtGadget
{
public:
    QtSeparator(QtToolkit& ownToolkit, Gadget& ownGadget)
        : QtGadget(ownToolkit, ownGadget)
        , line(new QFrame(Around()))
    {
        line->setFrameShadow(QFrame::Sunken);
        Own(line);
    }
    Size Need() const override { return { thickness, thickness }; }

protected:
    void PlaceAt(const QRect& place) override
    {
        line->setFrameShape(place.width() > place.height() ? QFrame::HLine : QFrame::VLine);
        QtGadget::PlaceAt(place);
    }

private:
    static constexpr int thickness = 3;
    QFrame* line;
};

} // namespace

std::unique_ptr<QtGadget> MakeLabel(QtToolkit& toolkit, Gadget& gadget)
{
    switch (gadget.shape.kind) {
    case VX3_GADGET_TEXT: return std::make_unique<QtText>(toolkit, gadget);
    case VX3_GADGET_PROGRESS: return std::make_unique<QtProgress>(toolkit, gadget);
    default: return std::make_unique<QtSeparator>(toolkit, gadget);
    }
}

} // namespace vx3::desktop
