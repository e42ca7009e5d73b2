// A pointer that is followed while a button is held: a rubber band or a drag. Lives on
// the stack of the nested operation, which ends when `state` says so.
#pragma once

#include "gui/gadget.h"

namespace vx3::headless {

struct PointerTrack {
    enum class Kind { Band, Drag };
    enum class State { Held, Released, Cancelled };

    Kind kind;
    gui::Gadget& gadget;
    gui::Point start;      // of a band in the gadget, of a drag on the screen
    gui::Point last;       // of a band, in the gadget
    bool hasMoved = false; // of a drag: as far as it takes to begin one
    State state = State::Held;
};

// A drag begins when the pointer is as far from the press as this, in pixels of both directions added.
constexpr int dragDistance = 4;

} // namespace vx3::headless
