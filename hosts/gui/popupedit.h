// The one field for a line of text that stands over a window, for renaming in place.
//
// Its module hears of every change, and of the end exactly once. A field that another one
// replaces ends at once for the user and later for the module, since whoever asked for
// the new one expects no callback. Main thread only.
#pragma once

#include <string>
#include <vector>

#include "vx3/gui.h"

namespace vx3::gui {

struct PopupEdit {
    VX3Dialog dialog = 0; // 0: none is open
    VX3PopupEditFunction function = nullptr;
    void* user = nullptr;
    std::u16string text;

    void Tell(int32_t reason) const; // it may be gone afterwards
};

class PopupEdits
{
public:
    // The one before waits for TellEnded then.
    void Open(PopupEdit edit);
    bool IsOpen() const { return current.dialog != 0; }
    bool IsOf(VX3Dialog dialog) const { return IsOpen() && current.dialog == dialog; }
    void Change(const std::u16string& text);                          // by the user. Calls the module
    void SetText(const std::u16string& text) { current.text = text; } // without a word
    void End(int32_t reason);                                         // calls the module
    void TellEnded();                                                 // those that were replaced. Calls their modules
    void TellEndedOf(VX3Dialog dialog);                               // the same for those of one dialog

private:
    PopupEdit current;
    std::vector<PopupEdit> ended;
};

} // namespace vx3::gui
