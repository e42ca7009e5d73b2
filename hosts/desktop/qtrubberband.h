// A frame that the user draws in an area with the mouse.
#pragma once

#include <QPointer>
#include <QRubberBand>

#include "qtpointer.h"

namespace vx3::desktop {

class QtToolkit;

// One time from press to release. Both ends are kept in the area's coordinates, so that
// the frame stays on what it was drawn round when its scroll group moves.
class RubberBand
{
public:
    RubberBand(QtToolkit& ownToolkit, Gadget& ownArea, Point ownStart);
    ~RubberBand();
    gui::Band Run(); // nested
    void Cancel();

private:
    Point InArea(QPoint screen) const;
    void Follow(QPoint screen);
    void ScrollAtEdge();
    void ShowFrame();

    QtToolkit& toolkit;
    Gadget* area; // none: it is gone
    QPointer<QWidget> surface;
    QPointer<QRubberBand> frame;
    PointerChase chase;
    Point start;
    Point end;
};

} // namespace vx3::desktop
