// The bars of a scroll group or a tree, and the view beside them, which clips.
//
// The layout says how much is seen and whether there are bars (Gadget::view); where it is
// scrolled to stands in the gadget. The wheel moves by as little as a fine wheel tells.
#pragma once

#include <QScrollBar>
#include <QWidget>

#include "qtgadget.h"

namespace vx3::desktop {

class ScrollFrame final : public QWidget
{
public:
    ScrollFrame(QWidget* parent, QtToolkit& ownToolkit, Gadget& ownScroll);
    void Forget() { scroll = nullptr; }
    QWidget* View() const { return view; }

    void ShowRanges(); // places view and bars, from view, content and scrolled of the gadget
    void ShowPosition();

protected:
    void wheelEvent(QWheelEvent* event) override;

private:
    void ShowBar(QScrollBar& bar, int content, int seen, int position);
    void UserMoved();
    bool TurnBar(QScrollBar& bar, int angle, int& rest);

    QtToolkit& toolkit;
    Gadget* scroll;
    QWidget* view;
    QScrollBar* across;
    QScrollBar* down;
    QPoint restOfTurns; // angles that were too small for a pixel
};

} // namespace vx3::desktop
