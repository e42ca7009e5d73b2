#include "services/guitools.h"

#include "services/gedialog.h"

namespace browser {

BusyCursor::BusyCursor()
{
    if (host->gui)
        host->gui->menu->setCursor(VX3_CURSOR_BUSY);
}

BusyCursor::~BusyCursor()
{
    if (host->gui)
        host->gui->menu->setCursor(VX3_CURSOR_NORMAL);
}

uint32_t PollQualifiers()
{
    return host->gui ? host->gui->menu->qualifiers() : 0;
}

Point PollPointer()
{
    Point at;
    if (host->gui)
        (void)host->gui->menu->pointer(&at.x, &at.y);
    return at;
}

DragInfo::DragInfo(const BaseContainer& message)
    : type(message.GetInt32(VX3_DRAG_KEY_TYPE, 0))
    , data(message.GetPointer(VX3_DRAG_KEY_DATA))
    , screen{ message.GetInt32(VX3_DRAG_KEY_X, 0), message.GetInt32(VX3_DRAG_KEY_Y, 0) }
    , isDrop(message.GetBool(VX3_DRAG_KEY_DROP))
    , isEnd(message.GetBool(VX3_DRAG_KEY_END))
    , qualifiers(static_cast<uint32_t>(message.GetInt32(VX3_DRAG_KEY_QUALIFIERS, 0)))
    , gadget(message.GetInt32(VX3_DRAG_KEY_GADGET, 0))
{
}

void SetDragResult(int32_t cursor)
{
    if (host->gui)
        host->gui->menu->setDragResult(cursor);
}

bool OpenPopupEdit(DialogBase& dialog, const Rectangle& screen, const String& text, VX3PopupEditFunction function, void* user)
{
    const VX3Rectangle place = { screen.x1, screen.y1, screen.x2, screen.y2 };
    return dialog.Handle() && host->gui->menu->popupEdit(dialog.Handle(), &place, text.Value(), function, user);
}

void ShowError(const String& text)
{
    if (host->gui)
        host->gui->box->show(VX3_BOX_ERROR, text.Value());
    else
        host->message->showText(text.Value());
}

bool AskQuestion(const String& text)
{
    return host->gui && host->gui->box->ask(text.Value());
}

bool ChoosePath(int32_t mode, const String& title, const String& filter, FilePath& chosen)
{
    return host->gui && host->gui->box->choose(mode, title.Value(), filter.Value(), chosen.Value(), chosen.Value());
}

bool RevealPath(const FilePath& path)
{
    return host->gui && host->gui->box->reveal(path.Value());
}

bool OpenWithSystem(const FilePath& path)
{
    return host->gui && host->gui->box->openWithSystem(path.Value());
}

bool OpenPreferencePage(int32_t page)
{
    return host->gui && host->gui->box->openPreferences(page);
}

} // namespace browser
