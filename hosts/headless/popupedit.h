// The field for one line that stands over a window, while it is open.
#pragma once

#include <string>

#include "gui/gadget.h"
#include "headless/lineeditor.h"

namespace vx3::headless {

struct PopupEdit {
    gui::Dialog* window = nullptr; // none: it is not open
    gui::Place screen;
    std::u16string text;
    LineEditor editor;
};

} // namespace vx3::headless
