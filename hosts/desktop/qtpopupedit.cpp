#include "qtpopupedit.h"

#include <functional>

#include <QApplication>
#include <QFocusEvent>
#include <QKeyEvent>

#include "qtapplication.h"
#include "qttoolkit.h"

namespace vx3::desktop {

class PopupEdit::Editor final : public QLineEdit
{
public:
    Editor(QWidget* parent, std::function<void(bool isCancelled)> ownEnded)
        : QLineEdit(parent)
        , ended(std::move(ownEnded))
    {
    }

protected:
    void keyPressEvent(QKeyEvent* event) override
    {
        if (event->key() == Qt::Key_Escape)
            return ended(true);
        if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter || event->key() == Qt::Key_Tab)
            return ended(false);
        QLineEdit::keyPressEvent(event);
        event->accept(); // nothing of what is typed here is for the window
    }
    void focusOutEvent(QFocusEvent* event) override
    {
        QLineEdit::focusOutEvent(event);
        if (event->reason() != Qt::PopupFocusReason) // its own menu
            ended(false);
    }

private:
    std::function<void(bool isCancelled)> ended;
};

PopupEdit::PopupEdit(QtToolkit& ownToolkit)
    : toolkit(ownToolkit)
{
}

PopupEdit::~PopupEdit()
{
    Close();
}

void PopupEdit::Open(QWidget& inside, const Place& screen, const std::u16string& text)
{
    Close();
    before = QApplication::focusWidget();
    auto* editor = new Editor(&inside, [this](bool isCancelled) { End(isCancelled); });
    field = editor;
    field->setText(ToQt(text));
    field->setFont(toolkit.TextFont());
    QObject::connect(editor, &QLineEdit::textEdited, editor,
                     [this](const QString& edited) { toolkit.GetDesk().PopupEditChanged(ToUnits(edited)); });
    QRect place = ToQt(screen);
    const int growth = std::max(0, field->sizeHint().height() - place.height());
    place.adjust(0, -(growth / 2), 0, growth - growth / 2);
    field->setGeometry(QRect(inside.mapFromGlobal(place.topLeft()), place.size()));
    field->selectAll();
    field->show();
    field->raise();
    field->setFocus(Qt::OtherFocusReason);
}

void PopupEdit::Close()
{
    if (!field)
        return;
    QLineEdit* closed = field;
    const bool hadFocus = closed->hasFocus();
    field = nullptr; // the loss of the focus that follows is no end of its own
    if (hadFocus && before)
        before->setFocus();
    closed->hide();
    DeleteAfterEvents(*closed);
}

void PopupEdit::End(bool isCancelled)
{
    if (!field)
        return;
    const std::u16string text = ToUnits(field->text());
    Close();
    toolkit.GetDesk().PopupEditEnded(text, isCancelled);
}

} // namespace vx3::desktop
