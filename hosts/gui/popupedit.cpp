#include "gui/popupedit.h"

#include <algorithm>
#include <utility>

#include "core/message.h"
#include "core/values.h"
#include "gui/deskstate.h"

namespace vx3::gui {

namespace {

// By value: the field may be another one when the function returns.
void Tell(DeskState& desk, PopupEdit edit, int32_t reason)
{
    Dialog* dialog = FindDialog(desk, edit.dialog);
    if (!dialog)
        return;
    const Callback callback(desk, *dialog, "popup edit", reason);
    const core::Text shown{ std::u16string_view(edit.text) };
    edit.function(edit.user, reason, shown.Get());
}

} // namespace

void PopupEdits::Open(PopupEdit edit)
{
    if (IsOpen())
        End(VX3_EDIT_CLOSED);
    current = std::move(edit);
}

void PopupEdits::End(int32_t reason)
{
    current.reason = reason;
    ended.push_back(std::move(current));
    current = {};
}

std::optional<PopupEdit> PopupEdits::TakeEnded()
{
    return ended.empty() ? std::nullopt : TakeEndedOf(ended.front().dialog);
}

std::optional<PopupEdit> PopupEdits::TakeEndedOf(VX3Dialog dialog)
{
    auto first = std::find_if(ended.begin(), ended.end(), [&](const PopupEdit& edit) { return edit.dialog == dialog; });
    if (first == ended.end())
        return std::nullopt;
    PopupEdit taken = std::move(*first);
    ended.erase(first);
    return taken;
}

void ChangePopupEdit(DeskState& desk, const std::u16string& text)
{
    desk.popupEdits.SetText(text);
    Tell(desk, desk.popupEdits.Current(), VX3_EDIT_CHANGED);
}

void FinishPopupEdit(DeskState& desk, int32_t reason)
{
    const VX3Dialog dialog = desk.popupEdits.Current().dialog;
    desk.popupEdits.End(reason);
    if (desk.quiet > 0 || AskScope::IsAsking())
        core::RequestDelivery(); // its module hears of it then
    else
        TellEndedPopupEditsOf(desk, dialog);
}

void TellEndedPopupEdits(DeskState& desk)
{
    while (const std::optional<PopupEdit> edit = desk.popupEdits.TakeEnded())
        Tell(desk, *edit, edit->reason);
}

void TellEndedPopupEditsOf(DeskState& desk, VX3Dialog dialog)
{
    while (const std::optional<PopupEdit> edit = desk.popupEdits.TakeEndedOf(dialog))
        Tell(desk, *edit, edit->reason);
}

} // namespace vx3::gui
