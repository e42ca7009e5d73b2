// A drag over the windows: who is under the pointer and is told so.
//
// The dialog under the pointer gets a message for each move. One that the pointer leaves
// gets the end at once, the last one at the end, unless something was dropped on it: then the
// drop is its end. A tree with rows answers for its dialog. Main thread only.
#pragma once

#include "gui/desk.h"

namespace vx3::gui {

struct DragRun {
    bool isRunning = false;
    bool hasMoved = false;
    int32_t type = 0;
    void* data = nullptr;
    VX3Dialog origin = 0;     // whose closing ends it; none for one from outside
    Gadget* source = nullptr; // the gadget there
    VX3Dialog target = 0;     // who got the last message
    Gadget* tree = nullptr;   // the tree of the target that answered
    int32_t cursor = VX3_CURSOR_REFUSED;
};

struct DragPoint {
    Point screen;
    uint32_t qualifiers = 0;
};

// Both call modules. The cursor of the run says afterwards what a drop would do.
void MoveDragTo(Desk::State& desk, DragRun& run, DragPoint point);
void FinishDrag(Desk::State& desk, DragRun& run, DragPoint point, bool isDropped);

// The drag of an area or a tree, as VX3MenuServices::drag.
// Ends a drag out of a gadget in `group`, or out of the dialog itself if it is none, and has its data freed.
void EndDragsOf(Desk::State& desk, Dialog& dialog, Gadget* group);

bool RunDragOf(Desk::State& desk, Gadget& gadget, int32_t type, void* data);

} // namespace vx3::gui
