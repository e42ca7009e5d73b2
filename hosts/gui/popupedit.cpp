#include "gui/popupedit.h"

#include <algorithm>
#include <utility>

#include "core/values.h"

namespace vx3::gui {

void PopupEdit::Tell(int32_t reason) const
{
    const core::Text shown{ std::u16string_view(text) };
    function(user, reason, shown.Get());
}

void PopupEdits::Open(PopupEdit edit)
{
    if (IsOpen())
        ended.push_back(std::move(current));
    current = std::move(edit);
}

void PopupEdits::Change(const std::u16string& text)
{
    current.text = text;
    current.Tell(VX3_EDIT_CHANGED);
}

void PopupEdits::End(int32_t reason)
{
    std::exchange(current, {}).Tell(reason);
}

void PopupEdits::TellEnded()
{
    while (!ended.empty())
        TellEndedOf(ended.front().dialog);
}

void PopupEdits::TellEndedOf(VX3Dialog dialog)
{
    for (;;) {
        auto first = std::find_if(ended.begin(), ended.end(), [&](const PopupEdit& edit) { return edit.dialog == dialog; });
        if (first == ended.end())
            return;
        const PopupEdit edit = std::move(*first);
        ended.erase(first);
        edit.Tell(VX3_EDIT_CLOSED);
    }
}

} // namespace vx3::gui
