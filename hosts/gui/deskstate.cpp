#include "gui/deskstate.h"

#include "gui/dialoglife.h"
#include "gui/gadgettree.h"

namespace vx3::gui {

uint64_t NewHandle()
{
    static uint64_t last = 0; // of the process: a module may keep a handle longer than a desk lives
    return ++last;
}

Dialog* FindDialog(DeskState& desk, VX3Dialog handle)
{
    auto found = desk.dialogs.find(handle);
    return found == desk.dialogs.end() ? nullptr : found->second.get();
}

Area* FindArea(DeskState& desk, VX3Area handle)
{
    auto found = desk.areas.find(handle);
    return found == desk.areas.end() ? nullptr : found->second.get();
}

Inside::Inside(DeskState& ownDesk, Dialog& dialog)
    : desk(ownDesk)
    , busy(ownDesk)
{
    for (Dialog* around = &dialog; around; around = around->parent)
        chain.push_back(around);
    for (Dialog* around : chain)
        ++around->calls;
}

Inside::~Inside()
{
    for (Dialog* dialog : chain)
        --dialog->calls;
    // The window first: the dialogs inside go with it.
    for (auto dialog = chain.rbegin(); dialog != chain.rend(); ++dialog)
        if ((*dialog)->calls == 0 && (*dialog)->life.wantsClose && !IsLeaving(**dialog))
            CloseSafely(desk, **dialog);
}

NestedRun::NestedRun(DeskState& ownDesk, Dialog& dialog)
    : desk(ownDesk)
    , inside(ownDesk, dialog)
    , wait(ownDesk.watch)
{
    desk.cancellable.push_back(&dialog);
}

NestedRun::~NestedRun()
{
    desk.cancellable.pop_back();
}

ServiceCall::ServiceCall(Calls ownKind)
    : desk(CurrentDesk())
    , kind(ownKind)
{
    if (desk && kind == Calls::Nested && AskScope::IsAsking())
        desk = nullptr;
    if (!desk)
        return;
    ++desk->depth;
    if (kind == Calls::Silent)
        ++desk->quiet;
}

ServiceCall::~ServiceCall()
{
    if (!desk)
        return;
    --desk->depth;
    if (kind == Calls::Silent)
        --desk->quiet;
}

DialogCall::DialogCall(VX3Dialog handle, Calls ownKind)
    : ServiceCall(ownKind)
    , dialog(desk ? FindDialog(*desk, handle) : nullptr)
{
}

GadgetCall::GadgetCall(VX3Dialog handle, int32_t id, int32_t wanted, Calls calls)
    : DialogCall(handle, calls)
{
    Gadget* found = HasGadgets() ? FindGadgetOf(*dialog, id) : nullptr;
    if (found && (wanted == 0 || found->shape.kind == wanted))
        gadget = found;
}

AreaCall::AreaCall(VX3Area handle, Calls ownKind)
    : ServiceCall(ownKind)
    , area(desk ? FindArea(*desk, handle) : nullptr)
{
}

} // namespace vx3::gui
