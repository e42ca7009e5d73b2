// The widget of an area or a tree: what its module draws is painted here, and what the user
// does in it is handed to the desk.
//
// In a scroll group the widget is as large as what is seen, however large the area is, and
// `origin` is the point of the area in its corner. Scrolling copies what stays and paints
// what comes into view. The outermost pixel of one that takes the focus belongs to a frame
// that shows it.
#pragma once

#include "qtgadget.h"

namespace vx3::desktop {

class Surface final : public QWidget
{
public:
    Surface(QWidget* parent, QtToolkit& ownToolkit, Gadget& ownGadget);
    void Forget() { gadget = nullptr; }

    // Shows another part in the same or in another place.
    void PlaceAt(const QRect& place, Point newOrigin);
    void ScrollBy(Point by); // what is seen moves against it
    void Redraw(const Place& part);
    Point Origin() const { return origin; }
    bool TakesFocus() const;

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;
    QVariant inputMethodQuery(Qt::InputMethodQuery query) const override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    bool HasContents() const { return gadget && (gadget->area || gadget->tree); }
    bool Feed(const gui::Input& input);
    void FeedPress(QMouseEvent& event, bool isDouble);
    bool FeedKey(const QKeyEvent& event);
    bool FeedMenuKey();
    int WholeNotches(int angle, uint32_t qualifiers);
    QRect InsideFrame() const;

    QtToolkit& toolkit;
    Gadget* gadget; // none: it is gone, and the widget waits for its end
    Point origin;

    // Modules are told of whole notches. What a fine wheel turns of one is gathered here, and
    // goes meanwhile where the last whole one went.
    int gatheredAngle = 0;
    uint32_t wheelQualifiers = 0;
    bool isWheelTaken = false;
};

} // namespace vx3::desktop
