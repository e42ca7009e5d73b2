#include "gui/dialoglife.h"

#include <algorithm>

#include "core/message.h"
#include "gui/focus.h"
#include "gui/gadgettree.h"
#include "gui/guarded.h"
#include "gui/layout.h"
#include "gui/messages.h"
#include "gui/sizes.h"

namespace vx3::gui {

namespace {

using State = Dialog::State;

// --- Opening ---

void Begin(DeskState& desk, Dialog& dialog)
{
    dialog.life = {};
    dialog.state = State::Creating;
    dialog.result = 0;
    MakeRoot(desk, dialog);
}

// False: it does not want to, or has closed meanwhile.
bool CreateLayout(DeskState& desk, Dialog& dialog)
{
    VX3Bool isWilling = 1;
    if (dialog.table->createLayout) {
        const Callback callback(desk, dialog, "createLayout");
        isWilling = dialog.table->createLayout(dialog.object);
        dialog.life.isCreated = isWilling && dialog.state == State::Creating;
    } else {
        dialog.life.isCreated = true;
    }
    return isWilling && dialog.state == State::Creating;
}

bool InitValues(DeskState& desk, Dialog& dialog)
{
    dialog.state = State::Filling;
    VX3Bool isWilling = 1;
    if (dialog.table->initValues) {
        const Callback callback(desk, dialog, "initValues");
        isWilling = dialog.table->initValues(dialog.object);
        dialog.life.isFilled = isWilling && dialog.state == State::Filling;
    } else {
        dialog.life.isFilled = true;
    }
    return isWilling && dialog.state == State::Filling;
}

void DestroyTree(DeskState& desk, Dialog& dialog);

// The dialogs inside first, in the order of attaching, then the dialog itself. One inside
// that does not want to open leaves its gadget empty. Those that are attached meanwhile
// have their turn too.
bool Fill(DeskState& desk, Dialog& dialog)
{
    for (size_t i = 0; i < dialog.inner.size();) {
        Dialog* inner = dialog.inner[i];
        if (inner->state == State::Creating && !Fill(desk, *inner) && inner->state != State::Closed)
            DestroyTree(desk, *inner);
        if (dialog.state != State::Creating)
            return false;
        if (i < dialog.inner.size() && dialog.inner[i] == inner)
            ++i;
    }
    if (!InitValues(desk, dialog))
        return false;
    if (dialog.parent)
        dialog.state = State::Open;
    return true;
}

// The toolkit gets the window with everything in it, laid out as far as it is known.
void MakeWindow(DeskState& desk, Dialog& window)
{
    desk.toolkit.OpenWindow(window);
    window.life.isMade = true;
    MakeNatives(desk, *window.root);
    if (!window.menu.empty())
        desk.toolkit.ShowMenu(window);
    if (window.leastSize != Size{})
        desk.toolkit.ShowLeastSize(window);
    if (Gadget* focus = window.life.wantedFocus)
        RequestFocus(desk, *focus);
    window.size = OpeningSize(desk, window);
    LayOut(desk.toolkit, window);
}

// Sizes are told before timers may come.
void Settle(DeskState& desk, Dialog& window)
{
    window.size = OpeningSize(desk, window);
    desk.toolkit.ResizeWindow(window, window.size);
    TellFirstSizes(desk, window);
    if (window.state == State::Filling && !window.life.isLeaving)
        window.state = State::Open;
}

// --- Closing ---

bool IsWithin(const Dialog* dialog, const Dialog& around)
{
    while (dialog && dialog != &around)
        dialog = dialog->parent;
    return dialog != nullptr;
}

// A rubber band, a drag or a popup menu ends when the stack is back there.
void CancelNestedIn(DeskState& desk, Dialog& dialog)
{
    auto isWithin = [&](const Dialog* running) { return IsWithin(running, dialog); };
    if (std::any_of(desk.cancellable.begin(), desk.cancellable.end(), isWithin))
        desk.toolkit.CancelNested(dialog.Window());
}

// What the user still has open in it ends first.
void EndWhatIsOpen(DeskState& desk, Dialog& dialog)
{
    CancelNestedIn(desk, dialog);
    EndDragsOf(desk, dialog, nullptr);
    if (desk.popupEdits.IsOf(dialog.handle)) {
        desk.toolkit.ClosePopupEdit();
        desk.popupEdits.End(VX3_EDIT_CANCELLED);
    }
    TellEndedPopupEditsOf(desk, dialog.handle);
    const std::vector<Dialog*> inner = dialog.inner;
    for (Dialog* each : inner)
        if (each->parent == &dialog)
            EndWhatIsOpen(desk, *each);
}

void LeaveParent(Dialog& dialog)
{
    if (dialog.holder)
        dialog.holder->inner = nullptr;
    if (dialog.parent)
        std::erase(dialog.parent->inner, &dialog);
    dialog.parent = nullptr;
    dialog.holder = nullptr;
}

void LeaveToolkit(DeskState& desk, Dialog& window)
{
    const Quiet quiet(desk);
    std::erase(desk.windows, &window);
    if (!window.life.isMade)
        return;
    if (window.life.isHoldingUp)
        desk.toolkit.EndModal(window);
    desk.toolkit.CloseWindow(window);
    window.native.reset();
}

void Finish(DeskState& desk, Dialog& dialog)
{
    desk.timers.Set(dialog.handle, 0, 0);
    desk.posted.DropAllFor(Recipient::Dialog, dialog.handle);
    DropRoot(desk, dialog);
    if (!dialog.parent)
        LeaveToolkit(desk, dialog);
    LeaveParent(dialog);
    dialog.focus = nullptr;
    dialog.menu.clear();
    dialog.menuPath.clear();
    dialog.life = {};
    dialog.state = State::Closed;
}

void DestroyWindow(DeskState& desk, Dialog& dialog)
{
    dialog.life.isDestroyed = true;
    dialog.state = State::Closing;
    if (!dialog.table->destroyWindow)
        return;
    const Callback callback(desk, dialog, "destroyWindow");
    dialog.table->destroyWindow(dialog.object);
}

// Those inside first, in reverse. A callback may free the dialog, which does the rest.
void DestroyTree(DeskState& desk, Dialog& dialog)
{
    const Busy busy(desk);
    dialog.life.isLeaving = true;
    while (!dialog.inner.empty())
        DestroyTree(desk, *dialog.inner.back());
    if (dialog.life.isCreated && !dialog.life.isDestroyed)
        DestroyWindow(desk, dialog);
    if (dialog.state != State::Closed)
        Finish(desk, dialog);
}

bool Abandon(DeskState& desk, Dialog& dialog)
{
    if (dialog.state != State::Closed && !dialog.life.isLeaving)
        DestroyTree(desk, dialog);
    UpdateWakeTime(desk);
    return false;
}

// False: it did not want to, has closed meanwhile, or there is no memory for it.
bool RunOpening(DeskState& desk, Dialog& window)
{
    desk.windows.push_back(&window);
    Begin(desk, window);
    if (!CreateLayout(desk, window))
        return false;
    MakeWindow(desk, window);
    if (!Fill(desk, window))
        return false;
    Settle(desk, window);
    return true;
}

bool RunAttaching(DeskState& desk, Dialog& dialog, const Dialog& parent)
{
    Begin(desk, dialog);
    return CreateLayout(desk, dialog) && (parent.state == State::Creating || Fill(desk, dialog));
}

} // namespace

bool CanOpen(DeskState& desk, const Dialog& dialog)
{
    return dialog.state == State::Closed && FindDialog(desk, dialog.handle) == &dialog;
}

bool OpenWindow(DeskState& desk, Dialog& window, const VX3WindowPlace& place, Opening kind)
{
    const Busy busy(desk);
    window.opened = { place.id,
                      place.subId,
                      Bounded(place.x),
                      Bounded(place.y),
                      std::min(place.width, mostWindowLength),
                      std::min(place.height, mostWindowLength) };
    window.isModal = kind == Opening::Modal;
    if (!Safely([&] { return RunOpening(desk, window); }))
        return Abandon(desk, window);
    UpdateWakeTime(desk);
    if (desk.posted.Count() > 0)
        core::RequestDelivery();
    return window.state == State::Open;
}

bool AttachDialog(DeskState& desk, Dialog& dialog, Gadget& holder)
{
    const Busy busy(desk);
    if (holder.inner)
        CloseNow(desk, *holder.inner);
    if (holder.isGone || holder.inner || IsLeaving(*holder.dialog) || !CanOpen(desk, dialog))
        return false;
    Dialog& parent = *holder.dialog;
    parent.inner.push_back(&dialog);
    dialog.parent = &parent;
    dialog.holder = &holder;
    dialog.isModal = false;
    holder.inner = &dialog;
    if (!Safely([&] { return RunAttaching(desk, dialog, parent); }))
        return Abandon(desk, dialog);
    UpdateWakeTime(desk);
    return true;
}

bool RequestClose(DeskState& desk, Dialog& dialog, int32_t result)
{
    if (dialog.state == State::Closed || dialog.life.isLeaving || dialog.life.wantsClose)
        return false;
    dialog.result = result;
    if (dialog.calls == 0) {
        CloseNow(desk, dialog);
        return true;
    }
    dialog.life.wantsClose = true;
    CancelNestedIn(desk, dialog);
    return true;
}

void CloseNow(DeskState& desk, Dialog& dialog)
{
    if (dialog.state == State::Closed)
        return;
    const Busy busy(desk);
    if (!dialog.life.isLeaving) {
        dialog.life.isLeaving = true;
        EndWhatIsOpen(desk, dialog);
        if (dialog.state != State::Closed)
            TellHiding(desk, dialog);
    }
    if (dialog.state != State::Closed)
        DestroyTree(desk, dialog);
    UpdateWakeTime(desk);
}

// What could not be done the first time may be possible when the half of it is gone.
void CloseSafely(DeskState& desk, Dialog& dialog) noexcept
{
    constexpr int attempts = 2;
    for (int attempt = 0; attempt < attempts && dialog.state != State::Closed; ++attempt)
        Safely([&] { CloseNow(desk, dialog); });
}

bool AskToClose(DeskState& desk, Dialog& window)
{
    if (window.state != State::Open || window.life.isLeaving || window.life.isAsking)
        return window.state == State::Closed || window.life.isLeaving;
    VX3Bool stays = 0;
    if (window.table->askClose) {
        const Callback callback(desk, window, "askClose");
        window.life.isAsking = true;
        stays = window.table->askClose(window.object);
        window.life.isAsking = false;
    }
    if (!stays && window.state == State::Open)
        RequestClose(desk, window, 0);
    return window.state == State::Closed || window.life.wantsClose || window.life.isLeaving;
}

void TellHiding(DeskState& desk, Dialog& dialog)
{
    const std::vector<Dialog*> inner(dialog.inner.rbegin(), dialog.inner.rend());
    for (Dialog* each : inner)
        if (each->parent == &dialog)
            TellHiding(desk, *each);
    if (dialog.life.isFilled && dialog.IsOpen())
        Send(desk, dialog, Message(VX3_GUI_HIDING));
}

bool IsLeaving(const Dialog& dialog)
{
    return dialog.life.isLeaving || (dialog.parent && IsLeaving(*dialog.parent));
}

bool WantsToLeave(const Dialog& dialog)
{
    return dialog.state == State::Closed || dialog.life.isLeaving || dialog.life.wantsClose
        || (dialog.parent && WantsToLeave(*dialog.parent));
}

bool IsLive(const Dialog& dialog)
{
    return dialog.state == State::Open && !dialog.life.isLeaving && (!dialog.parent || IsLive(*dialog.parent));
}

void UpdateWakeTime(DeskState& desk)
{
    desk.toolkit.WakeAt(desk.timers.Next([&desk](VX3Dialog handle) {
        const Dialog* dialog = FindDialog(desk, handle);
        return dialog && IsLive(*dialog);
    }));
}

} // namespace vx3::gui
