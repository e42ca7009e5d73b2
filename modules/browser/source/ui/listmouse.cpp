#include "ui/listmouse.h"

#include "ui/foldercontentdialog.h"

namespace browser {

ListMouse::ListMouse(ContentListView& pressedView, const InputEvent& pressedEvent)
    : view(pressedView)
    , dialog(pressedView.Dialog())
    , list(pressedView.List())
    , event(pressedEvent)
{
}

bool ListMouse::Press()
{
    switch (event.channel) {
    case VX3_CHANNEL_BACK: (void)view.Window().GoBack(); return true;
    case VX3_CHANNEL_FORWARD: (void)view.Window().GoForward(); return true;
    case VX3_CHANNEL_RIGHT: PressRight(); return true;
    case VX3_CHANNEL_LEFT: PressLeft(); return true;
    default: return false;
    }
}

// --- The entry ---

// Only a press on what is not selected looks at the pixels of the picture.
void ListMouse::FindEntry()
{
    const ContentViewEntryList::Reader entries(list);
    index = view.FindEntry(*entries, event.at, HitTest::Cell);
    node = entries->GetNode(index);
    wasSelected = entries->IsSelected(index);
    overItem = wasSelected || view.FindEntry(*entries, event.at, HitTest::VisibleParts) != noEntry;
}

void ListMouse::FindAgain()
{
    if (index != noEntry && !(list.GetNode(index) == node))
        index = list.FindNode(node);
}

void ListMouse::ToggleEntry()
{
    const ContentViewEntryList::Writer entries(list);
    if (!IsExtending())
        entries->Clear();
    entries->Toggle(index);
}

void ListMouse::SelectAlone()
{
    const ContentViewEntryList::Writer entries(list);
    entries->Clear();
    entries->SetSelected(index, true);
}

// --- Buttons ---

void ListMouse::PressRight()
{
    FindEntry();
    if (!wasSelected) {
        SelectAlone();
        (void)view.Redraw();
    }
    dialog.ShowContextMenu();
    ShowSelection();
}

void ListMouse::PressLeft()
{
    FindEntry();
    if (event.isDouble)
        PressDouble();
    else if (event.HasShift() || overItem)
        PressItem();
    else
        PressSpace();
}

void ListMouse::PressDouble()
{
    SelectAlone();
    if (node)
        dialog.Open(ToContent(node), false);
    Finish();
}

// Kept: a press on an entry among several selected ones leaves them, so that all can be
// dragged; without a drag only that entry is selected when the button is let go.
void ListMouse::PressItem()
{
    if (!wasSelected) {
        ToggleEntry();
        (void)view.Redraw();
    }
    if (DragSelection()) {
        dialog.Refresh();
        return Finish();
    }
    FindAgain();
    if (wasSelected)
        ToggleEntry();
    ExtendRange();
    Finish();
}

void ListMouse::PressSpace()
{
    Rectangle band;
    switch (view.TrackRubberBand(event.at, band)) {
    case GeUserArea::BandAnswer::Cancelled: return;
    case GeUserArea::BandAnswer::Rectangle: ToggleBand(band); break;
    case GeUserArea::BandAnswer::None:
    case GeUserArea::BandAnswer::Unmoved:
        FindAgain();
        ToggleEntry();
        break;
    }
    Finish();
}

// --- What they do ---

// True if the pointer moved, whatever came of it.
bool ListMouse::DragSelection()
{
    Array<NodeRef> dragged;
    if (!list.GetSelection(dragged).HasSelection() || dragged.IsEmpty())
        return false;
    DragBlock block = { static_cast<int32_t>(dragged.Count()), dragged.begin(), &dialog };
    return view.Drag(VX3_DRAG_BROWSER, &block);
}

// Kept: what the band meets is toggled, so with ctrl it takes away what was selected. The
// whole cell counts, and no picture is looked at.
void ListMouse::ToggleBand(Rectangle band)
{
    const Rectangle area = { std::min(band.x1, band.x2), std::min(band.y1, band.y2), std::max(band.x1, band.x2),
                             std::max(band.y1, band.y2) };
    const ContentViewEntryList::Writer entries(list);
    if (!IsExtending())
        entries->Clear();
    entries->ToggleHits([&](int32_t at) { return view.MeetsCell(*entries, at, area); });
}

void ListMouse::ExtendRange()
{
    if (event.HasShift() && index != noEntry)
        ContentViewEntryList::Writer(list)->SelectFromAnchor(index);
}

// Kept: where one click applies an entry, the second press of a double click and the end of a drag do
// so as well. All presses of the left button end in the same way, so that what is selected alone has
// been applied, whatever made it so.
void ListMouse::Finish()
{
    ShowSelection();
    if (view.Window().IsSingleClick())
        ApplySingle();
}

void ListMouse::ShowSelection()
{
    (void)view.Redraw();
    view.Window().UpdateSelectionPanes(false);
}

void ListMouse::ApplySingle()
{
    Array<NodeRef> selected;
    (void)list.GetSelection(selected);
    if (selected.Count() == 1 && !ContentOf(selected[0])->CanHoldChildren())
        dialog.Open(ToContent(selected[0]), false);
}

} // namespace browser
