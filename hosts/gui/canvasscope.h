// The numbers under which modules know a canvas. A canvas has one for as long as one
// drawing lasts; the number is never used again, so that a module that keeps it draws
// nowhere. Main thread only.
#pragma once

#include "gui/canvas.h"

namespace vx3::gui {

class CanvasScope
{
public:
    explicit CanvasScope(Canvas& drawn);
    ~CanvasScope();
    CanvasScope(const CanvasScope&) = delete;
    CanvasScope& operator=(const CanvasScope&) = delete;

    VX3Canvas Handle() const { return handle; }

    static Canvas* Find(VX3Canvas handle); // none: nothing is drawn there now

private:
    Canvas& canvas;
    VX3Canvas handle;
    CanvasScope* outer; // of a drawing in the middle of which this one began
};

} // namespace vx3::gui
