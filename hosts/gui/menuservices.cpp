// The table of guimenu.h.
#include "core/message.h"
#include "gui/dialoglife.h"
#include "gui/gadgettree.h"
#include "gui/guarded.h"
#include "gui/menus.h"
#include "gui/units.h"

namespace vx3::gui {

namespace {

// A window whose menu bar is being built or changed.
bool CanBuild(const DialogCall& call)
{
    return call.HasGadgets() && !call.dialog->parent && !IsLeaving(*call.dialog);
}

bool IsBuilding(const DialogCall& call)
{
    return CanBuild(call) && !call.dialog->menuPath.empty();
}

std::vector<MenuItem>& CurrentMenu(const DialogCall& call)
{
    return *call.dialog->menuPath.back();
}

VX3Bool Flush(VX3Dialog dialog)
{
    const DialogCall call(dialog);
    if (!CanBuild(call))
        return 0;
    call.dialog->menu.clear();
    call.dialog->menuPath = { &call.dialog->menu };
    return 1;
}

// The menu around it gets no rows before this one has ended, so that addresses hold.
VX3Bool BeginMenu(VX3Dialog dialog, const VX3String* text)
{
    const DialogCall call(dialog);
    if (!IsBuilding(call))
        return 0;
    MenuItem& item = CurrentMenu(call).emplace_back();
    item.kind = MenuItem::Kind::Menu;
    item.text = UnitsOf(text);
    call.dialog->menuPath.push_back(&item.children);
    return 1;
}

VX3Bool EndMenu(VX3Dialog dialog)
{
    const DialogCall call(dialog);
    if (!IsBuilding(call) || call.dialog->menuPath.size() < 2)
        return 0;
    call.dialog->menuPath.pop_back();
    return 1;
}

VX3Bool AddItem(VX3Dialog dialog, int32_t id, const VX3String* text, uint32_t bits)
{
    const DialogCall call(dialog);
    if (!IsBuilding(call))
        return 0;
    MenuItem& item = CurrentMenu(call).emplace_back();
    item.kind = id == 0 ? MenuItem::Kind::Separator : MenuItem::Kind::Item;
    item.id = id;
    item.text = UnitsOf(text);
    item.bits = bits;
    return 1;
}

VX3Bool AddCommand(VX3Dialog dialog, int32_t command)
{
    const DialogCall call(dialog);
    if (!IsBuilding(call))
        return 0;
    MenuItem& item = CurrentMenu(call).emplace_back();
    item.kind = MenuItem::Kind::Command;
    item.id = command;
    FillInCommand(item);
    return 1;
}

VX3Bool Finish(VX3Dialog dialog)
{
    const DialogCall call(dialog);
    if (!IsBuilding(call))
        return 0;
    call.dialog->menuPath.clear();
    if (call.dialog->life.isMade)
        call.desk->toolkit.ShowMenu(*call.dialog);
    return 1;
}

VX3Bool SetItem(VX3Dialog dialog, int32_t id, uint32_t bits)
{
    const DialogCall call(dialog);
    MenuItem* item = CanBuild(call) ? FindItem(call.dialog->menu, id) : nullptr;
    if (!item || item->kind != MenuItem::Kind::Item)
        return 0;
    item->bits = bits;
    if (call.dialog->life.isMade && call.dialog->menuPath.empty())
        call.desk->toolkit.ShowMenu(*call.dialog);
    return 1;
}

// Where the pointer is, unless a place was given.
Point PopupCorner(DeskState& desk, int32_t x, int32_t y)
{
    Point corner = { Bounded(x), Bounded(y) };
    if (x == -1 && y == -1)
        desk.toolkit.PointerState(corner);
    return corner;
}

int32_t RunPopup(DeskState& desk, Dialog& dialog, const VX3Container& menu, int32_t x, int32_t y)
{
    if (!IsLive(dialog))
        return 0;
    std::vector<MenuItem> rows = PopupRows(menu);
    int32_t chosen = 0;
    {
        const NestedRun run(desk, dialog);
        chosen = desk.toolkit.RunPopup(dialog.Window(), rows, PopupCorner(desk, x, y));
    }
    const MenuItem* item = chosen != 0 ? FindItem(rows, chosen) : nullptr;
    return item && CanBeChosen(*item) && !WantsToLeave(dialog) ? chosen : 0;
}

int32_t Popup(VX3Dialog dialog, const VX3Container* menu, int32_t x, int32_t y)
{
    const DialogCall call(dialog, Calls::Nested);
    return call && menu ? RunPopup(*call.desk, *call.dialog, *menu, x, y) : 0;
}

VX3Bool OpenPopupEdit(VX3Dialog dialog, const VX3Rectangle* place, const VX3String* text, VX3PopupEditFunction function, void* user)
{
    const DialogCall call(dialog);
    if (!call || !IsLive(*call.dialog) || WantsToLeave(*call.dialog) || !place || !function)
        return 0;
    DeskState& desk = *call.desk;
    if (desk.popupEdits.IsOpen()) {
        desk.toolkit.ClosePopupEdit();
        core::RequestDelivery(); // its module hears of it then
    }
    desk.popupEdits.Open({ dialog, function, user, UnitsOf(text) });
    desk.toolkit.OpenPopupEdit(call.dialog->Window(), PlaceOf(*place), UnitsOf(text));
    return 1;
}

void EndPopupEdit(VX3Bool cancel)
{
    const ServiceCall call(Calls::Nested);
    if (!call.desk || !call.desk->popupEdits.IsOpen())
        return;
    call.desk->toolkit.ClosePopupEdit();
    FinishPopupEdit(*call.desk, cancel ? VX3_EDIT_CANCELLED : VX3_EDIT_CLOSED);
}

VX3Bool Drag(VX3Area handle, int32_t type, void* data)
{
    const AreaCall call(handle, Calls::Nested);
    return call.IsPlaced() && RunDragOf(*call.desk, *call.area->gadget, type, data);
}

void SetDragResult(int32_t cursor)
{
    const ServiceCall call;
    if (call.desk && call.desk->asked)
        call.desk->asked->cursor = cursor;
}

void SetCursor(int32_t cursor)
{
    const ServiceCall call;
    if (call.desk)
        call.desk->toolkit.SetCursor(cursor);
}

uint32_t Qualifiers()
{
    const ServiceCall call;
    return call.desk ? call.desk->toolkit.Qualifiers() : 0;
}

uint32_t Pointer(int32_t* x, int32_t* y)
{
    const ServiceCall call;
    if (!call.desk)
        return 0;
    Point screen;
    const uint32_t held = call.desk->toolkit.PointerState(screen);
    if (x)
        *x = screen.x;
    if (y)
        *y = screen.y;
    return held;
}

} // namespace

int32_t DeskState::Popup(Gadget& tree, const VX3Container& menu, int32_t x, int32_t y)
{
    return RunPopup(*this, *tree.dialog, menu, x, y);
}

bool DeskState::Drag(Gadget& tree, int32_t type, void* data)
{
    return RunDragOf(*this, tree, type, data);
}

const VX3MenuServices* MenuServices()
{
    static constexpr VX3MenuServices services = { guarded<Flush>,         guarded<BeginMenu>,    guarded<EndMenu>, guarded<AddItem>,
                                                  guarded<AddCommand>,    guarded<Finish>,       guarded<SetItem>, guarded<Popup>,
                                                  guarded<OpenPopupEdit>, guarded<EndPopupEdit>, guarded<Drag>,    guarded<SetDragResult>,
                                                  guarded<SetCursor>,     guarded<Qualifiers>,   guarded<Pointer> };
    return &services;
}

} // namespace vx3::gui
