// What the user picks a value with: combo boxes and sliders.
#include <algorithm>
#include <cmath>
#include <limits>

#include <QComboBox>
#include <QLineEdit>
#include <QSignalBlocker>
#include <QSlider>
#include <QToolTip>

#include "qtgadget.h"
#include "qttoolkit.h"

namespace vx3::desktop {

namespace {

using gui::Change;

// A script chooses by value or by keys, with the list closed.
class ComboBox final : public QComboBox
{
public:
    ComboBox(QWidget* parent, const QtToolkit& ownToolkit)
        : QComboBox(parent)
        , toolkit(ownToolkit)
    {
    }
    void showPopup() override
    {
        if (!toolkit.IsScripted())
            QComboBox::showPopup();
    }

private:
    const QtToolkit& toolkit;
};

class QtCombo final : public QtGadget
{
public:
    QtCombo(QtToolkit& ownToolkit, Gadget& ownGadget)
        : QtGadget(ownToolkit, ownGadget)
        , combo(new ComboBox(Around(), ownToolkit))
    {
        combo->setEditable(gadget.Has(VX3_FLAG_EDIT));
        combo->setInsertPolicy(QComboBox::NoInsert);
        Own(combo);
        QObject::connect(combo, &QComboBox::activated, combo,
                         [this](int row) { toolkit.GetDesk().UserSetValue(gadget, combo->itemData(row).toInt()); });
        if (combo->isEditable())
            QObject::connect(combo->lineEdit(), &QLineEdit::textEdited, combo,
                             [this](const QString& text) { toolkit.GetDesk().UserSetText(gadget, ToUnits(text), false); });
    }
    void Show(Change change) override
    {
        QtGadget::Show(change);
        const QSignalBlocker blocker(combo);
        const bool hasRows = change == Change::Everything || change == Change::Rows;
        if (hasRows)
            ShowRows();
        if (hasRows || change == Change::Value)
            combo->setCurrentIndex(RowOf(gadget.value));
        if (combo->isEditable() && combo->currentText() != Text()) // the caret stays if nothing is different
            combo->setEditText(Text());
    }
    bool EnterText(const std::u16string& text) override
    {
        if (!combo->isEditable() || !combo->isEnabled())
            return false;
        combo->setEditText(ToQt(text));
        if (text != gadget.text)
            toolkit.GetDesk().UserSetText(gadget, text, false);
        return true;
    }

private:
    int RowOf(double value) const
    {
        const bool isNumber = value >= std::numeric_limits<int>::min() && value <= std::numeric_limits<int>::max();
        return isNumber ? combo->findData(static_cast<int>(value)) : -1;
    }
    void ShowRows()
    {
        combo->clear();
        for (const gui::ComboRow& row : gadget.rows) {
            if (row.text.empty())
                combo->insertSeparator(combo->count());
            else
                combo->addItem(ToQt(row.text), row.value);
        }
    }

    QComboBox* combo;
};

// Steps of the slider are counted from the least value.
class QtSliderGadget final : public QtGadget
{
public:
    QtSliderGadget(QtToolkit& ownToolkit, Gadget& ownGadget)
        : QtGadget(ownToolkit, ownGadget)
        , slider(new QSlider(Qt::Horizontal, Around()))
    {
        Own(slider);
        QObject::connect(slider, &QSlider::valueChanged, slider, [this](int position) {
            const double value = std::min(gadget.most, gadget.least + position * Step());
            if (slider->isSliderDown())
                QToolTip::showText(QCursor::pos(), ShownValue(value), slider);
            toolkit.GetDesk().UserSetValue(gadget, value, slider->isSliderDown());
        });
        QObject::connect(slider, &QSlider::sliderReleased, slider, [this] { toolkit.GetDesk().UserSetValue(gadget, gadget.value); });
    }
    Size Need() const override
    {
        constexpr int length = 84;
        return { length, slider->sizeHint().height() };
    }
    void Show(Change change) override
    {
        QtGadget::Show(change);
        if (slider->isSliderDown())
            return; // the user has it
        const QSignalBlocker blocker(slider);
        slider->setRange(0, StepsTo(gadget.most));
        slider->setValue(StepsTo(gadget.value));
        slider->setPageStep(std::max(1, slider->maximum() / 10));
    }

private:
    static constexpr double mostSteps = 1e6; // finer than any slider is long

    double Step() const { return std::max(gadget.step > 0 ? gadget.step : 1, (gadget.most - gadget.least) / mostSteps); }
    int StepsTo(double value) const
    {
        const double steps = std::round((value - gadget.least) / Step());
        return steps > 0 ? static_cast<int>(std::min(steps, mostSteps)) : 0; // 0 also for what is no number
    }
    QString ShownValue(double value) const
    {
        return QString::number(value) + (gadget.Has(VX3_FLAG_PERCENT) ? QStringLiteral(" %") : QString());
    }

    QSlider* slider;
};

} // namespace

std::unique_ptr<QtGadget> MakeChoice(QtToolkit& toolkit, Gadget& gadget)
{
    if (gadget.shape.kind == VX3_GADGET_COMBO)
        return std::make_unique<QtCombo>(toolkit, gadget);
    return std::make_unique<QtSliderGadget>(toolkit, gadget);
}

} // namespace vx3::desktop
