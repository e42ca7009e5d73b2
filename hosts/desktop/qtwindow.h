// What stands for one window on the screen: a frame with the menu bar of the module and
// the inside that the gadgets lie in.
//
// The frame is a window of its own, or stands in a window of the program around it, which
// takes it by its widget (QtToolkit::SetWindowListener). It is shown when the main loop
// goes on. Main thread only.
#pragma once

#include <QMenuBar>
#include <QPointer>
#include <QWidget>

#include "qtcodes.h"

namespace vx3::desktop {

class QtToolkit;

// Keys that no gadget wanted, and files that are dragged in from other programs, end here.
class WindowInside final : public QWidget
{
public:
    WindowInside(QWidget* parent, QtToolkit& ownToolkit, Dialog& ownWindow);
    void Forget() { dialog = nullptr; }

protected:
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool focusNextPrevChild(bool isNext) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void MoveDrag(QDropEvent& event);
    int32_t CursorOfDrag(); // what a drop would do
    void EndDrag();         // without a drop

    QtToolkit& toolkit;
    Dialog* dialog;                   // none: it is closed
    std::vector<std::string> dragged; // paths of files
    uint32_t dragQualifiers = 0;
    Point draggedTo;
    bool isWelcome = false; // where it is at this moment
};

class WindowFrame final : public QWidget
{
public:
    WindowFrame(QtToolkit& ownToolkit, Dialog& ownWindow);
    void Forget();
    bool HasWindow() const { return dialog != nullptr; }
    WindowInside* Inside() { return inside; }
    QMenuBar* Menu() { return menu; }
    void ShowMenu();   // of the window, from its rows
    void UpdateMenu(); // texts and states of the rows
    void ResizeInside(QSize size);

protected:
    void resizeEvent(QResizeEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    int MenuHeight() const;
    void PlaceParts();

    QtToolkit& toolkit;
    Dialog* dialog; // none: it is closed, and the widget waits for its end
    QMenuBar* menu;
    WindowInside* inside;
};

class QtWindow final : public gui::Native
{
public:
    QtWindow(QtToolkit& ownToolkit, Dialog& ownWindow);
    ~QtWindow() override;

    WindowFrame* Frame() { return frame; }
    QWidget* Inside() { return frame->Inside(); }
    void ShowSoon();
    void Raise();
    void Resize(Size inside);
    void ShowTitle();
    void ShowLeastSize();

private:
    Dialog& window;
    QPointer<WindowFrame> frame;
};

QtWindow* WindowOf(Dialog& window);

} // namespace vx3::desktop
