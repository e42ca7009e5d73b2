#include "services/gedialog.h"

#include "services/resources.h"

namespace browser {

namespace {

const VX3GadgetServices& Gadgets()
{
    return *host->gui->gadget;
}

} // namespace

// The way from the host's callbacks to the virtual operations, which the host's code
// cannot call by itself.
const VX3DialogTable DialogBase::table = {
    [](void* object) -> VX3Bool { return static_cast<DialogBase*>(object)->CreateLayout(); },
    [](void* object) -> VX3Bool { return static_cast<DialogBase*>(object)->InitValues(); },
    [](void* object, int32_t id, const VX3Container* event) -> VX3Bool {
        return static_cast<DialogBase*>(object)->Command(id, *BaseContainer::Of(event));
    },
    [](void* object) { static_cast<DialogBase*>(object)->Timer(); },
    [](void* object, int32_t id, const VX3Container* message) {
        static_cast<DialogBase*>(object)->CoreMessage(id, *BaseContainer::Of(message));
    },
    [](void* object, int32_t code, const VX3Container* message, VX3Container* result) -> VX3Bool {
        return static_cast<DialogBase*>(object)->Message(code, *BaseContainer::Of(message), *BaseContainer::Of(result));
    },
    [](void* object) -> VX3Bool { return static_cast<DialogBase*>(object)->AskClose(); },
    [](void* object) { static_cast<DialogBase*>(object)->DestroyWindow(); },
};

DialogBase::~DialogBase()
{
    FreeHandle();
}

void DialogBase::FreeHandle()
{
    if (handle)
        host->gui->dialog->free(handle);
    handle = 0;
}

bool DialogBase::MakeHandle()
{
    if (!handle && host->gui)
        handle = host->gui->dialog->create(this, &table);
    return handle != 0;
}

bool DialogBase::Command(int32_t, const BaseContainer&)
{
    return false;
}

void DialogBase::CoreMessage(int32_t, const BaseContainer&)
{
}

bool DialogBase::Message(int32_t, const BaseContainer&, BaseContainer&)
{
    return false;
}

bool DialogBase::IsOpen() const
{
    return handle && host->gui->dialog->isOpen(handle);
}

bool DialogBase::SetTimer(int32_t milliseconds)
{
    return handle && host->gui->dialog->setTimer(handle, milliseconds);
}

bool DialogBase::PostMessage(int32_t code)
{
    return handle && host->gui->dialog->post(handle, code);
}

// --- Layout ---

bool DialogBase::LoadLayout(int32_t number)
{
    return handle && Gadgets().loadLayout(handle, LoadedResources(), number);
}

bool DialogBase::BeginGroup(const VX3GadgetShape& shape, const String* title)
{
    return handle && Gadgets().begin(handle, &shape, title ? title->Value() : nullptr);
}

bool DialogBase::EndGroup()
{
    return handle && Gadgets().end(handle);
}

bool DialogBase::AddGadget(const VX3GadgetShape& shape, const String* text, const String* tip)
{
    return handle && Gadgets().add(handle, &shape, text ? text->Value() : nullptr, tip ? tip->Value() : nullptr);
}

bool DialogBase::FlushGroup(int32_t group)
{
    return handle && Gadgets().flush(handle, group);
}

bool DialogBase::LayoutChanged(int32_t group)
{
    return handle && Gadgets().update(handle, group);
}

bool DialogBase::AttachSubDialog(SubDialog& sub, int32_t gadget)
{
    return handle && sub.MakeHandle() && host->gui->dialog->attach(sub.Handle(), handle, gadget);
}

bool DialogBase::SetWeights(int32_t splitter, const BaseContainer& weights)
{
    return handle && Gadgets().setWeights(handle, splitter, weights.Value());
}

bool DialogBase::GetWeights(int32_t splitter, BaseContainer& weights) const
{
    return handle && Gadgets().getWeights(handle, splitter, weights.Value());
}

// --- Gadgets ---

bool DialogBase::HasGadget(int32_t id) const
{
    return handle && Gadgets().exists(handle, id);
}

bool DialogBase::Enable(int32_t id, bool enabled)
{
    return handle && Gadgets().enable(handle, id, enabled);
}

bool DialogBase::Show(int32_t id, bool shown)
{
    return handle && Gadgets().show(handle, id, shown);
}

bool DialogBase::Focus(int32_t id)
{
    return handle && Gadgets().focus(handle, id);
}

bool DialogBase::HasFocus(int32_t id) const
{
    return handle && Gadgets().hasFocus(handle, id);
}

bool DialogBase::SetText(int32_t id, const String& text)
{
    return handle && Gadgets().setText(handle, id, text.Value());
}

String DialogBase::GetText(int32_t id) const
{
    String text;
    if (handle)
        (void)Gadgets().getText(handle, id, text.Value());
    return text;
}

bool DialogBase::SetRange(int32_t id, double least, double most, double step)
{
    return handle && Gadgets().setRange(handle, id, least, most, step);
}

bool DialogBase::SetValue(int32_t id, double value)
{
    return handle && Gadgets().setValue(handle, id, value);
}

double DialogBase::GetValue(int32_t id) const
{
    double value = 0;
    if (handle)
        (void)Gadgets().getValue(handle, id, &value);
    return value;
}

bool DialogBase::SetIcon(int32_t id, int32_t normal, int32_t second)
{
    return handle && Gadgets().setIcon(handle, id, normal, second);
}

bool DialogBase::SetBitmap(int32_t id, const VX3Bitmap* normal, const VX3Bitmap* second)
{
    return handle && Gadgets().setBitmap(handle, id, normal, second);
}

bool DialogBase::AddRow(int32_t combo, int32_t value, const String& text)
{
    return handle && Gadgets().addRow(handle, combo, value, text.Value());
}

bool DialogBase::ClearRows(int32_t combo)
{
    return handle && Gadgets().clearRows(handle, combo);
}

bool DialogBase::SetDate(int32_t id, const VX3FileDate& date)
{
    return handle && Gadgets().setDate(handle, id, &date);
}

bool DialogBase::GetDate(int32_t id, VX3FileDate& date) const
{
    return handle && Gadgets().getDate(handle, id, &date);
}

bool DialogBase::GetVisiblePart(int32_t scroll, Rectangle& part) const
{
    VX3Rectangle shown = {};
    if (!handle || !Gadgets().getVisiblePart(handle, scroll, &shown))
        return false;
    part = { shown.x1, shown.y1, shown.x2, shown.y2 };
    return true;
}

bool DialogBase::SetVisiblePart(int32_t scroll, const Rectangle& part)
{
    const VX3Rectangle wanted = { part.x1, part.y1, part.x2, part.y2 };
    return handle && Gadgets().setVisiblePart(handle, scroll, &wanted);
}

// --- A window ---

bool GeDialog::Open(const VX3WindowPlace& place)
{
    return MakeHandle() && host->gui->dialog->open(Handle(), &place);
}

bool GeDialog::Restore(int32_t id, int32_t subId)
{
    return MakeHandle() && host->gui->dialog->restore(Handle(), id, subId);
}

bool GeDialog::Close()
{
    return Handle() && host->gui->dialog->close(Handle(), 0);
}

bool GeDialog::SetTitle(const String& title)
{
    return MakeHandle() && host->gui->dialog->setTitle(Handle(), title.Value());
}

bool GeDialog::Raise()
{
    return Handle() && host->gui->dialog->raise(Handle());
}

bool GeDialog::MenuFlush()
{
    return Handle() && host->gui->menu->flush(Handle());
}

bool GeDialog::MenuBegin(int32_t text)
{
    const String shown = ResourceText(text);
    return Handle() && host->gui->menu->beginMenu(Handle(), shown.Value());
}

bool GeDialog::MenuEnd()
{
    return Handle() && host->gui->menu->endMenu(Handle());
}

bool GeDialog::MenuItem(int32_t id, int32_t text, uint32_t menuBits)
{
    const String shown = ResourceText(text);
    return Handle() && host->gui->menu->addItem(Handle(), id, shown.Value(), menuBits);
}

bool GeDialog::MenuCommand(int32_t command)
{
    return Handle() && host->gui->menu->addCommand(Handle(), command);
}

bool GeDialog::MenuSeparator()
{
    const String nothing;
    return Handle() && host->gui->menu->addItem(Handle(), 0, nothing.Value(), 0);
}

bool GeDialog::MenuFinish()
{
    return Handle() && host->gui->menu->finish(Handle());
}

bool GeDialog::SetMenuItem(int32_t id, uint32_t menuBits)
{
    return Handle() && host->gui->menu->setItem(Handle(), id, menuBits);
}

int32_t GeDialog::PopupMenu(const BaseContainer& menu)
{
    return Handle() ? host->gui->menu->popup(Handle(), menu.Value(), -1, -1) : 0;
}

// --- Inside another, and modal ---

bool SubDialog::Detach()
{
    return Handle() && host->gui->dialog->detach(Handle());
}

int32_t GeModalDialog::Open(const VX3WindowPlace& place)
{
    return MakeHandle() ? host->gui->dialog->openModal(Handle(), &place) : 0;
}

bool GeModalDialog::Close(int32_t result)
{
    return Handle() && host->gui->dialog->close(Handle(), result);
}

} // namespace browser
