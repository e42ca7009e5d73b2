#include "ui/contentlistview.h"

#include "ui/foldercontentdialog.h"
#include "ui/listmouse.h"
#include "ui/panegadgets.h"

namespace browser {

void ContentListView::Init(PaneWindow& ownWindow, FolderContentDialog& ownDialog, ContentViewEntryList& ownList)
{
    window = &ownWindow;
    dialog = &ownDialog;
    list = &ownList;
}

// --- Scrolling ---

Rectangle ContentListView::SeenPart() const
{
    Rectangle part;
    if (dialog)
        (void)dialog->GetVisiblePart(PaneGadget::scroll, part);
    return part;
}

bool ContentListView::IsSeen() const
{
    const Rectangle part = SeenPart();
    return part.x1 < part.x2 && part.y1 < part.y2;
}

void ContentListView::ScrollTo(Point corner)
{
    const Rectangle part = SeenPart();
    if (corner == Point{ part.x1, part.y1 })
        return;
    (void)dialog->SetVisiblePart(PaneGadget::scroll, { corner.x, corner.y, corner.x + part.x2 - part.x1, corner.y + part.y2 - part.y1 });
}

namespace {

// Where a span has to begin, so that another one lies in it, or at least its beginning.
int32_t Reveal(int32_t from, int32_t to, int32_t wantedFrom, int32_t wantedTo)
{
    if (wantedTo > to)
        from += wantedTo - to;
    return std::min(from, wantedFrom);
}

} // namespace

void ContentListView::ScrollIntoView(const Rectangle& wanted)
{
    const Rectangle part = SeenPart();
    ScrollTo({ Reveal(part.x1, part.x2, wanted.x1, wanted.x2), Reveal(part.y1, part.y2, wanted.y1, wanted.y2) });
}

ScrollPlace ContentListView::GetPlace() const
{
    const int32_t top = SeenPart().y1;
    return isPending || EntryToScroll(wish) == top ? wish : ScrollToEntry(top);
}

ScrollPlace ContentListView::GetWish() const
{
    const int32_t top = SeenPart().y1;
    return isPending || top == wishTop ? wish : ScrollToEntry(top);
}

void ContentListView::DropWish()
{
    wish = GetPlace();
}

void ContentListView::SetPlace(const ScrollPlace& place)
{
    isPending = !IsSeen(); // until there is something to scroll
    wish = place;
    ScrollTo({ SeenPart().x1, EntryToScroll(place) });
    wishTop = SeenPart().y1;
}

void ContentListView::KeepPlace(const ScrollPlace& place)
{
    wish = place;
    isPending = true;
    (void)PostMessage(VX3_GUI_LAYOUT_DONE);
}

// A layout asks for sizes several times, and scrolls when it has settled.
void ContentListView::SettleLayout()
{
    if (isPending)
        SetPlace(wish);
    UpdateVisibleRange();
}

void ContentListView::SetDrawing(bool enabled)
{
    drawEnabled = enabled;
    if (enabled)
        (void)Redraw();
}

// --- Events ---

bool ContentListView::Input(const InputEvent& event)
{
    if (!dialog)
        return false;
    const WindowHold hold(*window);
    return event.IsMouse() ? ListMouse(*this, event).Press() : PressKey(event);
}

bool ContentListView::Message(int32_t code, const BaseContainer& message)
{
    if (code == VX3_GUI_RESIZED)
        (void)PostMessage(VX3_GUI_LAYOUT_DONE);
    else if (code == VX3_GUI_LAYOUT_DONE && dialog)
        SettleLayout();
    else if (code == VX3_GUI_FOCUS_GOT || code == VX3_GUI_FOCUS_LOST)
        (void)Redraw(); // What is selected looks different.
    return GeUserArea::Message(code, message);
}

} // namespace browser
