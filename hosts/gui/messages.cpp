#include "gui/messages.h"

#include "core/message.h"
#include "core/values.h"
#include "gui/dialoglife.h"
#include "gui/guarded.h"

namespace vx3::gui {

namespace {

const VX3ContainerServices& Containers()
{
    return *core::ContainerServices();
}

// What a message says is read when it is sent: it may have waited.
void FillIn(const Dialog& dialog, Message& message)
{
    if (message.Code() != VX3_GUI_WINDOW_SIZE)
        return;
    message.SetInt(VX3_KEY_WINDOW_WIDTH, dialog.size.width);
    message.SetInt(VX3_KEY_WINDOW_HEIGHT, dialog.size.height);
}

void SendLetter(DeskState& desk, const Letter& letter)
{
    Message message(letter.code);
    if (letter.recipient == Recipient::Area) {
        if (Area* area = FindArea(desk, letter.handle); area && area->gadget)
            Send(desk, *area, message);
    } else if (Dialog* dialog = FindDialog(desk, letter.handle)) {
        FillIn(*dialog, message);
        Send(desk, *dialog, message);
    }
}

// The dialog that a letter arrives in; none: nobody is there any more.
const Dialog* AddressOf(DeskState& desk, const Letter& letter)
{
    if (letter.recipient == Recipient::Dialog)
        return FindDialog(desk, letter.handle);
    const Area* area = FindArea(desk, letter.handle);
    return area && area->gadget ? area->gadget->dialog : nullptr;
}

// Its values are there, and those of what is around it.
bool CanHear(const Dialog& dialog)
{
    return dialog.life.isFilled && (!dialog.parent || CanHear(*dialog.parent));
}

} // namespace

Message::Message(int32_t ownCode)
    : code(ownCode)
{
    Containers().setId(container.Get(), code);
}

void Message::SetInt(int32_t key, int32_t value)
{
    Containers().setInt32(container.Get(), key, value);
}

void Message::SetLong(int32_t key, int64_t value)
{
    Containers().setInt64(container.Get(), key, value);
}

void Message::SetNumber(int32_t key, double value)
{
    Containers().setFloat(container.Get(), key, value);
}

void Message::SetBool(int32_t key, bool value)
{
    Containers().setBool(container.Get(), key, value);
}

void Message::SetPointer(int32_t key, void* value)
{
    Containers().setPointer(container.Get(), key, value);
}

void Message::SetText(int32_t key, std::u16string_view value)
{
    Containers().setText(container.Get(), key, core::Text(value).Get());
}

void Message::SetContainer(int32_t key, const VX3Container* value)
{
    Containers().setContainer(container.Get(), key, value);
}

bool Send(DeskState& desk, Dialog& dialog, const Message& message, VX3Container* result)
{
    if (!dialog.table->message)
        return false;
    ContainerValue unread;
    const Callback callback(desk, dialog, "message", message.Code());
    return dialog.table->message(dialog.object, message.Code(), message.Get(), result ? result : unread.Get());
}

bool Send(DeskState& desk, Area& area, const Message& message)
{
    if (!area.gadget || !area.table->message)
        return false;
    const Callback callback(desk, *area.gadget->dialog, "area message", message.Code());
    return area.table->message(area.object, message.Code(), message.Get());
}

void Tell(DeskState& desk, const Letter& letter)
{
    const Dialog* address = AddressOf(desk, letter);
    if (!address || address->state == Dialog::State::Closed || IsLeaving(*address))
        return;
    if (desk.quiet > 0 || !CanHear(*address))
        desk.posted.Put(letter);
    else
        SendLetter(desk, letter);
}

// Not those that come meanwhile, so that it ends. A nested loop in the middle goes on with
// the rest.
void DeliverPosted(DeskState& desk)
{
    for (size_t left = desk.posted.Count(); left > 0; --left) {
        const std::optional<Letter> letter = desk.posted.TakeFirst();
        if (!letter)
            return;
        const Dialog* address = AddressOf(desk, *letter);
        if (!address || address->state == Dialog::State::Closed || IsLeaving(*address))
            continue;
        if (IsLive(*address))
            SendLetter(desk, *letter);
        else
            desk.posted.PutBack(*letter); // it is still being opened
    }
}

Interaction::Interaction(DeskState& ownDesk, Dialog& dialog)
    : desk(ownDesk)
    , handle(dialog.handle)
{
    Tell(desk, { Recipient::Dialog, handle, VX3_GUI_INTERACTION });
}

Interaction::~Interaction()
{
    Safely([&] { Tell(desk, { Recipient::Dialog, handle, VX3_GUI_INTERACTION_END }); });
}

} // namespace vx3::gui
