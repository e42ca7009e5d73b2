// What the user types into: one line, several lines, numbers, dates.
#include <cmath>

#include <QDateEdit>
#include <QDoubleSpinBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QSignalBlocker>
#include <QTextCursor>

#include "headless/fixedfont.h"
#include "headless/gadgetneeds.h"
#include "qtgadget.h"
#include "qttoolkit.h"

namespace vx3::desktop {

namespace {

using gui::Change;

// Enter is the field's; letters that a field cannot take are for the window.
class Line final : public QLineEdit
{
public:
    Line(QWidget* parent, const QtToolkit& ownToolkit)
        : QLineEdit(parent)
        , toolkit(ownToolkit)
    {
    }

protected:
    void keyPressEvent(QKeyEvent* event) override
    {
        QLineEdit::keyPressEvent(event);
        const bool isLetter = !event->text().isEmpty() && event->text()[0].isPrint();
        if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
            event->accept();
        else if (isReadOnly() && isLetter && !(event->modifiers() & Qt::ControlModifier))
            event->ignore();
    }
    // For a script letters are as wide as in a host without a screen.
    void mousePressEvent(QMouseEvent* event) override
    {
        QLineEdit::mousePressEvent(event);
        const int inText = qRound(event->position().x()) - headless::textMargin + headless::cellWidth / 2;
        if (toolkit.IsScripted())
            setCursorPosition(std::max(0, inText) / headless::cellWidth);
    }

private:
    const QtToolkit& toolkit;
};

class QtEdit final : public QtGadget
{
public:
    QtEdit(QtToolkit& ownToolkit, Gadget& ownGadget)
        : QtGadget(ownToolkit, ownGadget)
        , edit(new Line(Around(), ownToolkit))
    {
        edit->setReadOnly(gadget.Has(VX3_FLAG_READ_ONLY));
        Own(edit);
        QObject::connect(edit, &QLineEdit::textEdited, edit,
                         [this](const QString& text) { toolkit.GetDesk().UserSetText(gadget, ToUnits(text), false); });
        QObject::connect(edit, &QLineEdit::returnPressed, edit,
                         [this] { toolkit.GetDesk().UserSetText(gadget, ToUnits(edit->text()), true); });
    }
    void Show(Change change) override
    {
        QtGadget::Show(change);
        if (edit->text() == Text())
            return;
        const QSignalBlocker blocker(edit);
        const int cursor = edit->cursorPosition(); // it stays where the user has it
        edit->setText(Text());
        edit->setCursorPosition(std::min(cursor, static_cast<int>(Text().size())));
    }
    void SelectText(int from, int count) override
    {
        const int length = static_cast<int>(gadget.text.size());
        edit->setSelection(from, count < 0 ? length - from : count);
    }
    bool EnterText(const std::u16string& text) override
    {
        if (edit->isReadOnly() || !edit->isEnabled())
            return false;
        edit->setText(ToQt(text)); // a user's editing, which textEdited would tell, in one go
        if (text != gadget.text)
            toolkit.GetDesk().UserSetText(gadget, text, false);
        return true;
    }

private:
    QLineEdit* edit;
};

class QtMultiline final : public QtGadget
{
public:
    QtMultiline(QtToolkit& ownToolkit, Gadget& ownGadget)
        : QtGadget(ownToolkit, ownGadget)
        , edit(new QPlainTextEdit(Around()))
    {
        edit->setReadOnly(gadget.Has(VX3_FLAG_READ_ONLY));
        edit->setTabChangesFocus(true);
        Own(edit);
        QObject::connect(edit, &QPlainTextEdit::textChanged, edit,
                         [this] { toolkit.GetDesk().UserSetText(gadget, ToUnits(edit->toPlainText()), false); });
    }
    Size Need() const override
    {
        constexpr int lines = 3;
        constexpr int letters = 16;
        return { toolkit.TextWidth(u"m") * letters, toolkit.FontHeight() * lines + 2 * edit->frameWidth() };
    }
    void Show(Change change) override
    {
        QtGadget::Show(change);
        if (edit->toPlainText() == Text())
            return;
        const QSignalBlocker blocker(edit);
        const int position = edit->textCursor().position();
        edit->setPlainText(Text());
        SelectText(std::min(position, static_cast<int>(Text().size())), 0);
    }
    void SelectText(int from, int count) override
    {
        const int length = static_cast<int>(gadget.text.size());
        QTextCursor cursor = edit->textCursor();
        cursor.setPosition(std::clamp(from, 0, length));
        cursor.setPosition(count < 0 ? length : std::clamp(from + count, 0, length), QTextCursor::KeepAnchor);
        edit->setTextCursor(cursor);
    }
    bool EnterText(const std::u16string& text) override
    {
        if (edit->isReadOnly() || !edit->isEnabled())
            return false;
        if (text != gadget.text)
            edit->setPlainText(ToQt(text));
        return true;
    }

private:
    QPlainTextEdit* edit;
};

int DecimalsOf(double step)
{
    constexpr int most = 6;
    int decimals = 0;
    while (decimals < most && std::abs(step - std::round(step)) > 1e-9) {
        step *= 10;
        ++decimals;
    }
    return decimals;
}

class QtNumber final : public QtGadget
{
public:
    QtNumber(QtToolkit& ownToolkit, Gadget& ownGadget)
        : QtGadget(ownToolkit, ownGadget)
        , spin(new QDoubleSpinBox(Around()))
    {
        if (gadget.Has(VX3_FLAG_PERCENT))
            spin->setSuffix(QStringLiteral(" %"));
        Own(spin);
        QObject::connect(spin, &QDoubleSpinBox::valueChanged, spin,
                         [this](double value) { toolkit.GetDesk().UserSetValue(gadget, value); });
    }
    void Show(Change change) override
    {
        QtGadget::Show(change);
        const QSignalBlocker blocker(spin);
        spin->setDecimals(DecimalsOf(gadget.step));
        spin->setRange(gadget.least, gadget.most);
        spin->setSingleStep(gadget.step > 0 ? gadget.step : 1);
        if (spin->value() != gadget.value)
            spin->setValue(gadget.value);
    }

private:
    QDoubleSpinBox* spin;
};

class QtDate final : public QtGadget
{
public:
    QtDate(QtToolkit& ownToolkit, Gadget& ownGadget)
        : QtGadget(ownToolkit, ownGadget)
        , edit(new QDateEdit(Around()))
    {
        edit->setCalendarPopup(true);
        Own(edit);
        QObject::connect(edit, &QDateEdit::dateChanged, edit, [this](QDate date) {
            VX3FileDate changed = gadget.date;
            changed.year = static_cast<uint16_t>(date.year());
            changed.month = static_cast<uint16_t>(date.month());
            changed.day = static_cast<uint16_t>(date.day());
            toolkit.GetDesk().UserSetDate(gadget, changed);
        });
    }
    void Show(Change change) override
    {
        QtGadget::Show(change);
        const QSignalBlocker blocker(edit);
        const QDate date(gadget.date.year, gadget.date.month, gadget.date.day);
        edit->setDate(date.isValid() ? date : edit->minimumDate());
        edit->setSpecialValueText(date.isValid() ? QString() : QStringLiteral("–"));
    }
    bool EnterText(const std::u16string& text) override
    {
        const QDate date = QDate::fromString(ToQt(text), Qt::ISODate);
        if (!date.isValid() || !edit->isEnabled())
            return false;
        edit->setDate(date);
        return true;
    }

private:
    QDateEdit* edit;
};

} // namespace

std::unique_ptr<QtGadget> MakeField(QtToolkit& toolkit, Gadget& gadget)
{
    switch (gadget.shape.kind) {
    case VX3_GADGET_EDIT: return std::make_unique<QtEdit>(toolkit, gadget);
    case VX3_GADGET_MULTILINE: return std::make_unique<QtMultiline>(toolkit, gadget);
    case VX3_GADGET_NUMBER: return std::make_unique<QtNumber>(toolkit, gadget);
    default: return std::make_unique<QtDate>(toolkit, gadget);
    }
}

} // namespace vx3::desktop
