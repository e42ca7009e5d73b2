#include "gui/focus.h"

#include <algorithm>

#include "gui/dialoglife.h"
#include "gui/gadgettree.h"
#include "gui/messages.h"

namespace vx3::gui {

namespace {

// Who has the focus with a gadget, from the inside out.
std::vector<Letter> OwnersOf(const Gadget* focus)
{
    std::vector<Letter> owners;
    if (!focus)
        return owners;
    if (focus->area)
        owners.push_back({ Recipient::Area, focus->area->handle, 0 });
    owners.push_back({ Recipient::Dialog, focus->dialog->handle, 0 });
    if (const Dialog& window = focus->dialog->Window(); &window != focus->dialog)
        owners.push_back({ Recipient::Dialog, window.handle, 0 });
    return owners;
}

bool Has(const std::vector<Letter>& owners, const Letter& owner)
{
    return std::find(owners.begin(), owners.end(), owner) != owners.end();
}

bool CanHaveFocus(const Gadget& gadget)
{
    switch (gadget.shape.kind) {
    case VX3_GADGET_EDIT:
    case VX3_GADGET_MULTILINE:
    case VX3_GADGET_NUMBER:
    case VX3_GADGET_DATE:
    case VX3_GADGET_CHECK:
    case VX3_GADGET_BUTTON:
    case VX3_GADGET_BITMAP_BUTTON:
    case VX3_GADGET_COMBO:
    case VX3_GADGET_SLIDER:
    case VX3_GADGET_AREA:
    case VX3_GADGET_TREE: return true;
    default: return false;
    }
}

Gadget* FirstWithFocus(Gadget& gadget)
{
    Gadget* first = nullptr;
    ForEachGadget(gadget, [&](Gadget& inside) {
        if (!first && CanHaveFocus(inside) && CanBeUsed(inside) && IsSeen(inside))
            first = &inside;
    });
    return first;
}

} // namespace

void SetFocus(DeskState& desk, Dialog& window, Gadget* focus)
{
    if (window.focus == focus)
        return;
    const std::vector<Letter> losing = OwnersOf(window.focus);
    const std::vector<Letter> getting = OwnersOf(focus);
    window.focus = focus;
    for (Letter owner : losing)
        if (!Has(getting, owner)) {
            owner.code = VX3_GUI_FOCUS_LOST;
            Tell(desk, owner);
        }
    for (Letter owner : getting)
        if (!Has(losing, owner)) {
            owner.code = VX3_GUI_FOCUS_GOT;
            Tell(desk, owner);
        }
}

bool RequestFocus(DeskState& desk, Gadget& gadget)
{
    Gadget* target = FirstWithFocus(gadget);
    if (!target)
        return false;
    if (IsMade(*target))
        desk.toolkit.FocusGadget(*target);
    else
        target->dialog->Window().life.wantedFocus = target;
    return true;
}

bool HasFocus(const Gadget& gadget)
{
    const Gadget* focus = gadget.dialog->Window().focus;
    return focus && IsInside(*focus, gadget);
}

} // namespace vx3::gui
