// The one field for a line of text that stands over a window, for renaming in place.
//
// Its module hears of every change, and of the end exactly once. A field that another one
// replaces, or that ends while no callback may run, ends at once for the user and later for the
// module. Main thread only.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "gui/desk.h"

namespace vx3::gui {

struct PopupEdit {
    VX3Dialog dialog = 0; // 0: none is open
    VX3PopupEditFunction function = nullptr;
    void* user = nullptr;
    std::u16string text;
    int32_t reason = VX3_EDIT_CLOSED; // of its end
};

class PopupEdits
{
public:
    void Open(PopupEdit edit); // the one before has ended, and waits to be told
    bool IsOpen() const { return current.dialog != 0; }
    bool IsOf(VX3Dialog dialog) const { return IsOpen() && current.dialog == dialog; }
    void SetText(const std::u16string& text) { current.text = text; } // by the user
    const PopupEdit& Current() const { return current; }

    void End(int32_t reason);                               // waits to be told
    std::optional<PopupEdit> TakeEnded();                   // the next one to be told
    std::optional<PopupEdit> TakeEndedOf(VX3Dialog dialog); // the same of one dialog

private:
    PopupEdit current;
    std::vector<PopupEdit> ended;
};

// Each runs the module's function, inside its dialog.
void ChangePopupEdit(Desk::State& desk, const std::u16string& text);
void FinishPopupEdit(Desk::State& desk, int32_t reason); // later if no callback may run now
void TellEndedPopupEdits(Desk::State& desk);
void TellEndedPopupEditsOf(Desk::State& desk, VX3Dialog dialog);

} // namespace vx3::gui
