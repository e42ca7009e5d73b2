// What a key does in the icon grid. Values only: the view carries out the answer.
#pragma once

#include "ui/gridlayout.h"
#include "vx3/guitypes.h"

namespace browser {

// The host's codes.
enum class ListKey : int32_t {
    Backspace = VX3_KEY_BACKSPACE,
    Tab = VX3_KEY_TAB,
    Enter = VX3_KEY_ENTER,
    Up = VX3_KEY_UP,
    Down = VX3_KEY_DOWN,
    Left = VX3_KEY_LEFT,
    Right = VX3_KEY_RIGHT,
    PageUp = VX3_KEY_PAGE_UP,
    PageDown = VX3_KEY_PAGE_DOWN,
    Home = VX3_KEY_HOME,
    End = VX3_KEY_END,
};

namespace Qualifier {
constexpr uint32_t none = 0;
constexpr uint32_t shift = VX3_QUALIFIER_SHIFT;
constexpr uint32_t ctrl = VX3_QUALIFIER_CTRL;
constexpr uint32_t all = ~uint32_t(0);
} // namespace Qualifier

// What the list had selected when the key came; all noEntry if nothing.
struct ListSelection {
    int32_t first = noEntry;
    int32_t last = noEntry;
    int32_t anchor = noEntry;

    bool IsEmpty() const { return first == noEntry; }
};

// The part of the area that is to be seen; bottom lies behind the last pixel.
struct VerticalSpan {
    int32_t top = 0;
    int32_t bottom = 0;

    int32_t Height() const { return bottom - top; }
    bool operator==(const VerticalSpan&) const = default;
};

enum class KeyAction {
    NotConsumed,
    Nothing, // consumed all the same
    GoUp,
    OpenFirst, // of the selected entries
    FocusTree,
    Scroll,
    Select,
};

// The fields stand in the order in which the view carries them out.
struct KeyAnswer {
    KeyAction action = KeyAction::NotConsumed;
    // The one entry that is selected first, all others cleared; it becomes the anchor.
    int32_t alone = noEntry;
    bool scrolls = false; // to `seen`
    VerticalSpan seen;
    // With KeyAction::Select: clear if `clears`, then SetSelectedBlock with these, then
    // scroll until `reveal` is in view, if there is a target.
    bool clears = false;
    int32_t first = noEntry;
    int32_t last = noEntry;
    int32_t stride = 1;
    int32_t width = 0;
    int32_t target = noEntry;
    VerticalSpan reveal;
};

KeyAnswer AnswerListKey(int32_t key, uint32_t qualifiers, const GridLayout& grid, int32_t count, const ListSelection& selection,
                        VerticalSpan seen);

} // namespace browser
