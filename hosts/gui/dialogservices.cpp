// The table of guidialog.h.
#include "core/message.h"
#include "core/services.h"
#include "gui/dialoglife.h"
#include "gui/gadgettree.h"
#include "gui/guarded.h"
#include "gui/savedlayout.h"
#include "gui/units.h"

namespace vx3::gui {

namespace {

using State = Dialog::State;

constexpr VX3DialogTable noOperations = {}; // of a dialog that was freed while its callback runs

VX3Dialog Create(void* object, const VX3DialogTable* table)
{
    const ServiceCall call;
    if (!call.desk || !table)
        return 0;
    auto dialog = std::make_unique<Dialog>();
    dialog->handle = NewHandle();
    dialog->object = object;
    dialog->table = table;
    const VX3Dialog handle = dialog->handle;
    call.desk->dialogs.emplace(handle, std::move(dialog));
    return handle;
}

// Its module is not called any more.
void Silence(Dialog& dialog)
{
    dialog.object = nullptr;
    dialog.table = &noOperations;
}

void FreeNow(DeskState& desk, Dialog& dialog)
{
    const VX3Dialog handle = dialog.handle;
    CloseNow(desk, dialog);
    auto found = desk.dialogs.find(handle); // the closing may have run another `free`
    if (found == desk.dialogs.end())
        return;
    Silence(*found->second);
    desk.goneDialogs.push_back(std::move(found->second));
    desk.dialogs.erase(found);
}

// Where nothing may close, only its module is done with it at once.
void FreeAfterwards(VX3Dialog handle)
{
    const DialogCall call(handle);
    if (!call)
        return;
    call.desk->freeLater.push_back(handle);
    Silence(*call.dialog);
    core::RequestDelivery();
}

void Free(VX3Dialog handle)
{
    if (const DialogCall call(handle, Calls::Nested); call)
        FreeNow(*call.desk, *call.dialog);
    else
        FreeAfterwards(handle); // nothing to do if it is not there
}

VX3Bool Open(VX3Dialog handle, const VX3WindowPlace* place)
{
    const DialogCall call(handle, Calls::Nested);
    return call && CanOpen(*call.desk, *call.dialog) && place && OpenWindow(*call.desk, *call.dialog, *place, Opening::Window);
}

int32_t OpenModal(VX3Dialog handle, const VX3WindowPlace* place)
{
    const DialogCall call(handle, Calls::Nested);
    if (!call || !CanOpen(*call.desk, *call.dialog) || !place)
        return 0;
    Dialog& window = *call.dialog;
    if (!OpenWindow(*call.desk, window, *place, Opening::Modal))
        return window.result; // it may have closed itself while it opened
    window.life.isHoldingUp = true;
    {
        const EventWatch::Wait wait(call.desk->watch);
        Safely([&] { call.desk->toolkit.RunModal(window); });
    }
    if (window.state != State::Closed)
        CloseNow(*call.desk, window);
    return window.result;
}

VX3Bool Restore(VX3Dialog handle, int32_t id, int32_t subId)
{
    const DialogCall call(handle, Calls::Nested);
    return call && CanOpen(*call.desk, *call.dialog) && RestoreWindow(*call.desk, *call.dialog, id, subId);
}

VX3Bool Close(VX3Dialog handle, int32_t result)
{
    const DialogCall call(handle, Calls::Nested);
    return call && RequestClose(*call.desk, *call.dialog, result);
}

VX3Bool IsOpen(VX3Dialog handle)
{
    const DialogCall call(handle);
    return call && call.dialog->IsOpen();
}

VX3Bool SetTitle(VX3Dialog handle, const VX3String* title)
{
    const DialogCall call(handle);
    if (!call || call.dialog->parent)
        return 0;
    call.dialog->title = UnitsOf(title);
    if (call.dialog->life.isMade)
        call.desk->toolkit.ShowTitle(*call.dialog);
    return 1;
}

// Is there a window of this dialog at the toolkit?
bool IsWindow(const DialogCall& call)
{
    return call && !call.dialog->parent && call.dialog->life.isMade;
}

VX3Bool Raise(VX3Dialog handle)
{
    const DialogCall call(handle);
    if (!IsWindow(call))
        return 0;
    call.desk->toolkit.RaiseWindow(*call.dialog);
    return 1;
}

VX3Bool SetLeastSize(VX3Dialog handle, int32_t width, int32_t height)
{
    const DialogCall call(handle);
    if (!call || call.dialog->parent)
        return 0;
    call.dialog->leastSize = { std::clamp(width, 0, mostWindowLength), std::clamp(height, 0, mostWindowLength) };
    if (IsWindow(call))
        call.desk->toolkit.ShowLeastSize(*call.dialog);
    return 1;
}

VX3Bool GetSize(VX3Dialog handle, int32_t* width, int32_t* height)
{
    const DialogCall call(handle);
    if (!call.HasGadgets())
        return 0;
    const Size size = call.dialog->parent ? call.dialog->root->place.Extent() : call.dialog->size;
    if (width)
        *width = size.width;
    if (height)
        *height = size.height;
    return 1;
}

VX3Bool SetTimer(VX3Dialog handle, int32_t milliseconds)
{
    const DialogCall call(handle);
    if (!call.HasGadgets() || IsLeaving(*call.dialog))
        return 0;
    call.desk->timers.Set(handle, milliseconds, call.desk->toolkit.Now());
    UpdateWakeTime(*call.desk);
    return 1;
}

VX3Bool Post(VX3Dialog handle, int32_t code)
{
    const DialogCall call(handle);
    if (!call.HasGadgets() || IsLeaving(*call.dialog))
        return 0;
    call.desk->posted.Put({ Recipient::Dialog, handle, code });
    return 1;
}

VX3Bool Attach(VX3Dialog handle, VX3Dialog parent, int32_t gadget)
{
    const GadgetCall call(parent, gadget, VX3_GADGET_SUBDIALOG, Calls::Nested);
    Dialog* dialog = call ? FindDialog(*call.desk, handle) : nullptr;
    return dialog && CanOpen(*call.desk, *dialog) && AttachDialog(*call.desk, *dialog, *call.gadget);
}

VX3Bool Detach(VX3Dialog handle)
{
    const DialogCall call(handle, Calls::Nested);
    if (!call || !call.dialog->parent)
        return 0;
    CloseNow(*call.desk, *call.dialog);
    return 1;
}

} // namespace

void FreeDialogsLater(DeskState& desk)
{
    while (!desk.freeLater.empty()) {
        const VX3Dialog handle = desk.freeLater.back();
        desk.freeLater.pop_back();
        if (Dialog* dialog = FindDialog(desk, handle))
            FreeNow(desk, *dialog);
    }
}

const VX3DialogServices* DialogServices()
{
    static constexpr VX3DialogServices services = { guarded<Create>,  guarded<Free>,         guarded<Open>,    guarded<OpenModal>,
                                                    guarded<Restore>, guarded<Close>,        guarded<IsOpen>,  guarded<SetTitle>,
                                                    guarded<Raise>,   guarded<SetLeastSize>, guarded<GetSize>, guarded<SetTimer>,
                                                    guarded<Post>,    guarded<Attach>,       guarded<Detach> };
    return &services;
}

} // namespace vx3::gui
