// What the user did, as the toolkit tells it: first into the state, then to the module.
#include <cmath>

#include "core/registry.h"
#include "core/values.h"
#include "gui/canvasscope.h"
#include "gui/dialoglife.h"
#include "gui/focus.h"
#include "gui/gadgettree.h"
#include "gui/gadgetvalue.h"
#include "gui/guarded.h"
#include "gui/layout.h"
#include "gui/menus.h"
#include "gui/messages.h"
#include "gui/palette.h"
#include "gui/sizes.h"
#include "gui/treeinput.h"
#include "gui/treepaint.h"

namespace vx3::gui {

namespace {

// May the user do something with it?
bool IsUsable(const Gadget& gadget)
{
    return !gadget.isGone && CanBeUsed(gadget) && IsLive(*gadget.dialog);
}

enum class Held { No, Yes };

void SendCommand(DeskState& desk, Gadget& gadget, Message& event)
{
    Dialog& dialog = *gadget.dialog;
    if (gadget.shape.id == 0 || !dialog.table->command)
        return;
    const Interaction interaction(desk, dialog);
    if (!IsLive(dialog))
        return;
    const Callback callback(desk, dialog, "command", gadget.shape.id);
    dialog.table->command(dialog.object, gadget.shape.id, event.Get());
}

void Command(DeskState& desk, Gadget& gadget, double value, Held held = Held::No)
{
    Message event(gadget.shape.id);
    event.SetNumber(VX3_COMMAND_VALUE, value);
    event.SetBool(VX3_COMMAND_DRAGGED, held == Held::Yes);
    SendCommand(desk, gadget, event);
}

void FillIn(const Input& input, Message& event)
{
    event.SetInt(VX3_INPUT_DEVICE, input.device == Device::Mouse ? VX3_DEVICE_MOUSE : VX3_DEVICE_KEYBOARD);
    event.SetInt(VX3_INPUT_CHANNEL, input.channel);
    event.SetInt(VX3_INPUT_VALUE, input.value);
    event.SetInt(VX3_INPUT_QUALIFIERS, static_cast<int32_t>(input.qualifiers));
    event.SetInt(VX3_INPUT_DOUBLE, input.isDouble);
    if (input.device == Device::Mouse) {
        event.SetInt(VX3_INPUT_X, input.at.x);
        event.SetInt(VX3_INPUT_Y, input.at.y);
    }
    if (!input.text.empty())
        event.SetText(VX3_INPUT_TEXT, input.text);
}

bool IsWheel(const Input& input)
{
    return input.device == Device::Mouse && input.channel == VX3_CHANNEL_WHEEL;
}

// An area hears of presses; what follows one it asks for itself.
bool IsRelease(const Input& input)
{
    return input.value == 0 && !IsWheel(input);
}

bool FeedArea(DeskState& desk, Gadget& gadget, const Input& input)
{
    if (!gadget.area || !gadget.area->table->input || IsRelease(input))
        return false;
    Message event(0);
    FillIn(input, event);
    const Callback callback(desk, *gadget.dialog, "input", gadget.shape.id);
    return gadget.area->table->input(gadget.area->object, event.Get());
}

bool FeedInside(DeskState& desk, Gadget& gadget, const Input& input)
{
    if (!IsUsable(gadget))
        return false; // the message before has taken it away
    if (!gadget.tree)
        return FeedArea(desk, gadget, input);
    const Callback callback(desk, *gadget.dialog, "input", gadget.shape.id);
    return FeedTree(gadget, input);
}

void DrawArea(DeskState& desk, Gadget& gadget, Canvas& canvas, const Place& dirty)
{
    canvas.ClearClip();
    canvas.SetPen(ColourOfNumber(desk.toolkit, VX3_COLOUR_TEXT));
    canvas.SetTextColour(ColourOfNumber(desk.toolkit, VX3_COLOUR_TEXT));
    const CanvasScope scope(canvas);
    const AskScope asking;
    const VX3Rectangle part = RectangleOf(dirty);
    gadget.area->table->draw(gadget.area->object, scope.Handle(), &part);
}

void RedrawAll(DeskState& desk, Dialog& window)
{
    ForEachGadget(*window.root, [&](Gadget& gadget) {
        if (gadget.area || gadget.tree)
            desk.toolkit.Redraw(gadget, { 0, 0, gadget.place.width, gadget.place.height });
    });
}

} // namespace

void Desk::Paint(Gadget& gadget, Canvas& canvas, const Place& dirty)
{
    Safely([&] {
        if (gadget.isGone || !gadget.dialog->life.isFilled || IsLeaving(*gadget.dialog) || dirty.IsEmpty())
            return;
        const Callback callback(*state, *gadget.dialog, "draw", gadget.shape.id);
        if (gadget.tree)
            PaintTree(gadget, canvas, dirty);
        else if (gadget.area && gadget.area->table->draw)
            DrawArea(*state, gadget, canvas, dirty);
    });
}

bool Desk::Feed(Gadget& gadget, const Input& input)
{
    return Safely([&]() -> bool {
        const Busy busy(*state);
        if (!IsUsable(gadget))
            return false;
        if (IsWheel(input))
            return FeedInside(*state, gadget, input);
        const Interaction interaction(*state, *gadget.dialog);
        return FeedInside(*state, gadget, input);
    });
}

bool Desk::FeedKey(Dialog& window, const Input& input)
{
    return Safely([&]() -> bool {
        const Busy busy(*state);
        if (!IsLive(window))
            return false;
        Message event(VX3_GUI_KEY);
        FillIn(input, event);
        const Interaction interaction(*state, window);
        return IsLive(window) && Send(*state, window, event);
    });
}

void Desk::UserSetValue(Gadget& gadget, double value, bool isDragged)
{
    Safely([&] {
        const Busy busy(*state);
        if (!IsUsable(gadget) || !HasValue(gadget) || !std::isfinite(value))
            return;
        TakeValue(gadget, value);
        if (gadget.value != value || IsWrittenInto(gadget))
            Show(*state, gadget, Change::Value);
        if (gadget.shape.kind == VX3_GADGET_TABS)
            Relayout(*state, gadget.dialog->Window());
        if (IsUsable(gadget))
            Command(*state, gadget, gadget.value, isDragged ? Held::Yes : Held::No);
    });
}

void Desk::UserSetText(Gadget& gadget, std::u16string text, bool isEntered)
{
    Safely([&] {
        const Busy busy(*state);
        if (!IsUsable(gadget) || !IsWrittenInto(gadget) || gadget.Has(VX3_FLAG_READ_ONLY))
            return;
        gadget.text = std::move(text);
        Command(*state, gadget, isEntered ? 1 : 0);
    });
}

void Desk::UserSetDate(Gadget& gadget, const VX3FileDate& date)
{
    Safely([&] {
        const Busy busy(*state);
        if (!IsUsable(gadget) || gadget.shape.kind != VX3_GADGET_DATE)
            return;
        gadget.date = { date.year, date.month, date.day, 0, 0, 0 };
        Command(*state, gadget, 0);
    });
}

void Desk::UserPressed(Gadget& gadget)
{
    Safely([&] {
        const Busy busy(*state);
        if (!IsUsable(gadget) || (gadget.shape.kind != VX3_GADGET_BUTTON && gadget.shape.kind != VX3_GADGET_BITMAP_BUTTON))
            return;
        if (HasValue(gadget)) {
            gadget.value = gadget.value == 0 ? 1 : 0;
            Show(*state, gadget, Change::Value);
        }
        Command(*state, gadget, HasValue(gadget) ? gadget.value : 1);
    });
}

void Desk::UserAskedForMenu(Gadget& gadget)
{
    Safely([&] {
        const Busy busy(*state);
        if (!IsUsable(gadget) || !gadget.Has(VX3_FLAG_MENU))
            return;
        Message event(gadget.shape.id);
        event.SetBool(VX3_COMMAND_MENU, true);
        SendCommand(*state, gadget, event);
    });
}

void Desk::UserMovedSplitter(Gadget& splitter, size_t border, int position)
{
    Safely([&] {
        const Busy busy(*state);
        if (!IsUsable(splitter) || splitter.shape.kind != VX3_GADGET_SPLITTER || !MoveBorder(splitter, border, position))
            return;
        Relayout(*state, splitter.dialog->Window());
        if (!IsUsable(splitter))
            return;
        Message message(VX3_GUI_WEIGHTS);
        message.SetInt(VX3_KEY_GADGET, splitter.shape.id);
        Send(*state, *splitter.dialog, message);
    });
}

void Desk::UserScrolled(Gadget& scroll, Point scrolled)
{
    Safely([&] {
        const Busy busy(*state);
        if (scroll.isGone)
            return;
        if (scroll.tree)
            ScrollTree(scroll, scrolled - scroll.scrolled);
        else if (scroll.shape.kind == VX3_GADGET_SCROLL)
            ScrollTo(*state, scroll, scrolled);
    });
}

void Desk::UpdateMenu(Dialog& window)
{
    Safely([&] {
        const Busy busy(*state);
        FillInCommands(window.menu);
    });
}

void Desk::UserChoseMenu(Dialog& window, int32_t id)
{
    Safely([&] {
        const Busy busy(*state);
        MenuItem* item = IsLive(window) ? FindItem(window.menu, id) : nullptr;
        if (item && item->kind == MenuItem::Kind::Command)
            FillInCommand(*item);
        if (!item || !CanBeChosen(*item))
            return;
        const bool isCommand = item->kind == MenuItem::Kind::Command;
        const Callback callback(*state, window, "menu", id);
        if (const core::RegisteredCommand* command = isCommand ? core::FindCommand(id) : nullptr)
            command->Execute();
        else if (!isCommand && window.table->command)
            window.table->command(window.object, id, Message(id).Get());
    });
}

void Desk::UserMoved(Dialog& window, Point corner)
{
    window.opened.x = corner.x;
    window.opened.y = corner.y;
}

void Desk::UserResized(Dialog& window, Size inside)
{
    Safely([&] {
        const Busy busy(*state);
        if (!IsLive(window) || window.size == inside)
            return;
        window.size = inside;
        Relayout(*state, window);
        Tell(*state, { Recipient::Dialog, window.handle, VX3_GUI_WINDOW_SIZE });
    });
}

void Desk::UserClosed(Dialog& window)
{
    Safely([&] { AskAndClose(window); });
}

void Desk::FocusMoved(Dialog& window, Gadget* focus)
{
    Safely([&] {
        const Busy busy(*state);
        if (window.state != Dialog::State::Closed)
            SetFocus(*state, window, focus && !focus->isGone ? focus : nullptr);
    });
}

bool Desk::MoveDrag(Point screen, uint32_t qualifiers)
{
    return Safely([&]() -> bool {
        const Busy busy(*state);
        if (!state->drag.isRunning)
            return false;
        MoveDragTo(*state, state->drag, { screen, qualifiers });
        state->toolkit.ShowDragCursor(state->drag.cursor);
        return state->drag.isRunning;
    });
}

void Desk::EndDrag(Point screen, uint32_t qualifiers, bool isDropped)
{
    Safely([&] {
        const Busy busy(*state);
        FinishDrag(*state, state->drag, { screen, qualifiers }, isDropped);
    });
}

std::vector<std::string> Desk::DraggedFiles()
{
    return Safely([&]() -> std::vector<std::string> {
        const Busy busy(*state);
        const DragRun& run = state->drag;
        if (!run.isRunning || !run.data)
            return {};
        if (run.type == VX3_DRAG_FILE)
            return { core::NativeBytes(*static_cast<const VX3Path*>(run.data)) };
        return state->filesOfDrag ? state->filesOfDrag(run.type, run.data) : std::vector<std::string>();
    });
}

int32_t Desk::MoveForeignDrag(Point screen, uint32_t qualifiers, int32_t type, void* data)
{
    return Safely([&]() -> int32_t {
        const Busy busy(*state);
        DragRun& run = state->foreignDrag;
        run.isRunning = true;
        run.type = type;
        run.data = data;
        MoveDragTo(*state, run, { screen, qualifiers });
        return run.cursor;
    });
}

// Of several files each is dropped by a call of its own.
void Desk::EndForeignDrag(Point screen, uint32_t qualifiers, int32_t type, void* data, bool isDropped)
{
    Safely([&] {
        const Busy busy(*state);
        DragRun& run = state->foreignDrag;
        run.isRunning = true;
        run.hasMoved = true;
        run.type = type;
        run.data = data;
        FinishDrag(*state, run, { screen, qualifiers }, isDropped);
    });
}

void Desk::PopupEditChanged(const std::u16string& text)
{
    Safely([&] {
        const Busy busy(*state);
        if (!state->popupEdits.IsOpen())
            return;
        ChangePopupEdit(*state, text);
    });
}

void Desk::PopupEditEnded(const std::u16string& text, bool isCancelled)
{
    Safely([&] {
        const Busy busy(*state);
        if (!state->popupEdits.IsOpen())
            return;
        state->popupEdits.SetText(text);
        FinishPopupEdit(*state, isCancelled ? VX3_EDIT_CANCELLED : VX3_EDIT_CLOSED);
    });
}

void Desk::PaletteChanged()
{
    Safely([&] {
        const Busy busy(*state);
        state->widths.Forget();
        for (Dialog* window : Windows()) {
            if (window->state != Dialog::State::Closed)
                Relayout(*state, *window);
            if (window->root)
                RedrawAll(*state, *window);
        }
    });
}

} // namespace vx3::gui
