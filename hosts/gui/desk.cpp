#include "gui/desk.h"

#include <algorithm>

#include "core/corehost.h"
#include "core/message.h"
#include "core/values.h"
#include "gui/deskstate.h"
#include "gui/dialoglife.h"
#include "gui/gadgettree.h"
#include "gui/guarded.h"
#include "gui/messages.h"
#include "gui/savedlayout.h"
#include "gui/units.h"

namespace vx3::gui {

namespace {

std::atomic<DeskState*> currentDesk{ nullptr };

// A window, then the dialogs inside it, as far as they are open.
void AddLive(Dialog& dialog, std::vector<VX3Dialog>& live)
{
    if (!IsLive(dialog))
        return;
    live.push_back(dialog.handle);
    for (Dialog* inner : dialog.inner)
        AddLive(*inner, live);
}

void FillIn(DeskState& desk, const core::CoreMessage& posted, Message& message)
{
    if (++desk.lastMessage == 0)
        ++desk.lastMessage; // never 0
    message.SetLong(VX3_CORE_FIRST, posted.first);
    message.SetLong(VX3_CORE_SECOND, posted.second);
    if (posted.data)
        message.SetContainer(VX3_CORE_CONTAINER, posted.data);
    message.SetInt(VX3_CORE_UNIQUE, static_cast<int32_t>(desk.lastMessage));
}

// To every dialog that is open now and still is when it has its turn.
void HandOut(DeskState& desk, const core::CoreMessage& posted)
{
    const Busy busy(desk);
    Message message(posted.id);
    FillIn(desk, posted, message);
    std::vector<VX3Dialog> recipients;
    for (Dialog* window : desk.windows)
        AddLive(*window, recipients);
    for (VX3Dialog handle : recipients) {
        Dialog* dialog = FindDialog(desk, handle);
        if (!dialog || !IsLive(*dialog) || !dialog->table->coreMessage)
            continue;
        const Callback callback(desk, *dialog, "core message", posted.id);
        dialog->table->coreMessage(dialog->object, posted.id, message.Get());
    }
}

void CallTimer(DeskState& desk, VX3Dialog handle, int64_t now)
{
    Dialog* dialog = FindDialog(desk, handle);
    if (!dialog || !IsLive(*dialog) || !desk.timers.Begin(handle, now))
        return;
    UpdateWakeTime(desk); // the callback may run a loop, in which the others go on
    if (dialog->table->timer) {
        Safely([&] {
            const Callback callback(desk, *dialog, "timer");
            dialog->table->timer(dialog->object);
        });
    }
    desk.timers.End(handle, desk.toolkit.Now()); // it may have taken its time
}

void SettleTrees(DeskState& desk)
{
    std::vector<Gadget*> trees;
    trees.swap(desk.unsettledTrees);
    for (Gadget* tree : trees)
        SettleTree(*tree);
}

void FreeWhatIsGone(DeskState& desk)
{
    if (desk.depth > 0)
        return;
    desk.goneGadgets.clear();
    desk.goneAreas.clear();
    desk.goneDialogs.clear();
}

} // namespace

DeskState* CurrentDesk()
{
    DeskState* desk = currentDesk;
    if (!desk || std::this_thread::get_id() == desk->mainThread)
        return desk;
    ++desk->violations;
    return nullptr;
}

Desk::Desk(Toolkit& toolkit)
    : state(std::make_unique<State>(toolkit))
{
    currentDesk = state.get();
    core::SetMessageListener([this](const core::CoreMessage& message) { Safely([&] { HandOut(*state, message); }); });
    core::SetWakeUp([&toolkit] { toolkit.WakeUp(); });
}

Desk::~Desk()
{
    while (!state->windows.empty()) {
        Dialog* window = state->windows.back();
        CloseSafely(*state, *window);
        std::erase(state->windows, window);
    }
    core::SetWakeUp({});
    core::SetMessageListener({});
    currentDesk = nullptr;
}

const VX3GuiServices* Desk::Services()
{
    static const VX3GuiServices services = { DialogServices(), GadgetServices(), AreaServices(), DrawServices(),
                                             TreeServices(),   MenuServices(),   BoxServices() };
    return &services;
}

std::vector<Dialog*> Desk::Windows() const
{
    std::vector<Dialog*> open;
    std::copy_if(state->windows.begin(), state->windows.end(), std::back_inserter(open),
                 [](const Dialog* window) { return window->IsOpen(); });
    return open;
}

Gadget* Desk::FindGadget(Dialog& dialog, int32_t id) const
{
    if (Gadget* found = FindGadgetOf(dialog, id))
        return found;
    for (Dialog* inner : dialog.inner)
        if (Gadget* found = FindGadget(*inner, id))
            return found;
    return nullptr;
}

bool Desk::AskAndClose(Dialog& window)
{
    return Safely([&]() -> bool {
        const Busy busy(*state);
        return AskToClose(*state, window);
    });
}

bool Desk::SaveLayout(VX3Container& layout)
{
    return Safely([&]() -> bool {
        const Busy busy(*state);
        SaveWindows(*state, layout);
        return true;
    });
}

void Desk::SetSavedLayout(const VX3Container& layout)
{
    core::ContainerServices()->copy(state->savedLayout.Get(), &layout);
}

std::u16string Desk::KindName(Dialog& window)
{
    return Safely([&]() -> std::u16string {
        const Busy busy(*state);
        return IsLive(window) ? NameOfKind(*state, window) : std::u16string();
    });
}

void Desk::Deliver()
{
    Safely([&] {
        FreeWhatIsGone(*state);
        const Busy busy(*state);
        FreeDialogsLater(*state);
        core::DeliverWaiting();
        TellEndedPopupEdits(*state);
        DeliverPosted(*state);
        SettleTrees(*state);
    });
}

bool Desk::HasPosted() const
{
    return core::IsDeliveryRequested();
}

void Desk::RunTimers()
{
    Safely([&] {
        FreeWhatIsGone(*state);
        const Busy busy(*state);
        const int64_t now = state->toolkit.Now();
        for (VX3Dialog handle : state->timers.Due(now))
            CallTimer(*state, handle, now);
        UpdateWakeTime(*state);
    });
}

uint64_t Desk::ThreadViolations() const
{
    return state->violations;
}

double Desk::LongestEvent(std::string* what) const
{
    return state->watch.Longest(what);
}

void Desk::SetFilesOfDrag(FilesOfDrag wanted)
{
    state->filesOfDrag = std::move(wanted);
}

void Desk::ForgetLongestEvent()
{
    state->watch.Forget();
}

void DeskState::SettleLater(Gadget& tree)
{
    if (std::find(unsettledTrees.begin(), unsettledTrees.end(), &tree) != unsettledTrees.end())
        return;
    unsettledTrees.push_back(&tree);
    core::RequestDelivery();
}

} // namespace vx3::gui
