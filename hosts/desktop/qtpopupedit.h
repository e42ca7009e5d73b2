// The field for one line over a place of a window.
#pragma once

#include <QLineEdit>
#include <QPointer>

#include "qtcodes.h"

namespace vx3::desktop {

class QtToolkit;

// Enter and the loss of the focus close it, Escape cancels it; the desk hears of that
// once. Main thread only.
class PopupEdit
{
public:
    explicit PopupEdit(QtToolkit& ownToolkit);
    ~PopupEdit();
    void Open(QWidget& inside, const Place& screen, const std::u16string& text);
    void Close(); // without telling
    QLineEdit* Field() const { return field; }

private:
    class Editor;
    void End(bool isCancelled);

    QtToolkit& toolkit;
    QPointer<QLineEdit> field;
    QPointer<QWidget> before; // had the focus, and gets it back
};

} // namespace vx3::desktop
