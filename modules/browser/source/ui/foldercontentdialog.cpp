#include "ui/foldercontentdialog.h"

#include "model/contenttree.h"
#include "services/guitools.h"
#include "services/preferences.h"
#include "services/resources.h"
#include "ui/folderactions.h"
#include "ui/foldermenu.h"
#include "ui/folderposition.h"
#include "ui/panegadgets.h"

namespace browser {

namespace {

constexpr int32_t atPointer = -1; // where a menu opens

// Stored one lower.
SortMode SortKeyFrom(Preference key)
{
    return SortModeOf(GetPreferenceNumber(key) + 1);
}

} // namespace

FolderContentDialog::FolderContentDialog()
    : zoom(GetPreferenceFloat(Preference::Zoom))
    , sortKey(SortKeyFrom(Preference::SortKey))
    , filter(FolderFilter::FromPreferences())
    , zoomControls(*this)
    , busyButton(*this)
{
}

FolderContentDialog::~FolderContentDialog()
{
    FreeHandle();
}

void FolderContentDialog::Init(PaneWindow* ownWindow, ViewMode)
{
    window = ownWindow;
    iconView.Init(*ownWindow, *this, list);
}

// --- What is shown ---

void FolderContentDialog::SetNode(ContentRef newNode, bool force, ContentRef select, ViewMode)
{
    const ContentRef previous = std::exchange(node, std::move(newNode));
    const bool isOther = !(previous == node);
    if (!isOther && !force && !select)
        return;
    if (IsOpen()) {
        if (isOther || force)
            StorePosition(previous);
        ShowNode(isOther || force, select);
    } else if (select) {
        window->SelectLater(select);
    }
    if (isOther || select)
        window->UpdateSelectionPanes(false);
}

void FolderContentDialog::ShowNode(bool isNewPlace, const ContentRef& select)
{
    const ScrollPlace place = isNewPlace ? StoredPlace() : activeView->GetPlace();
    if (select)
        list.ClearSelection();
    Synchronize();
    if (select)
        (void)list.SetNodeSelected(select, true);
    LayOut(place);
    activeView->DropWish();
    isShown = true;
    ShowStatus();
}

void FolderContentDialog::Synchronize()
{
    list.Synchronize(FirstChild(), sortKey, filter.ToEntryFilter());
}

NodeRef FolderContentDialog::FirstChild() const
{
    NodeRef first;
    if (node)
        node->GetFirstChild(first);
    else if (contentTree.tree)
        contentTree.tree->GetFirstChild(first);
    return first;
}

void FolderContentDialog::LayOut(const ScrollPlace& place)
{
    activeView->SetDrawing(false);
    (void)LayoutChanged(PaneGadget::viewGroup);
    activeView->SetPlace(place);
    activeView->SetDrawing(true);
    activeView->UpdateVisibleRange();
}

// --- Positions ---

namespace {

// The roots have an empty one.
BrowserURL AddressOf(const ContentRef& folder)
{
    BrowserURL address;
    if (folder)
        (void)folder->GetUrl(address, 0);
    return address;
}

} // namespace

void FolderContentDialog::StorePosition(ContentRef folder) const
{
    if (!isShown || !activeView->IsSeen() || (folder && folder->IsRemoved()))
        return;
    const Rectangle part = activeView->SeenPart();
    const ScrollPlace place = activeView->GetPlace();
    BrowserURL address = AddressOf(folder);
    StoreFolderPosition(address, { place.index, place.offset, part.x2 - part.x1, part.y2 - part.y1 });
}

// The beginning, if none is stored.
ScrollPlace FolderContentDialog::StoredPlace() const
{
    FolderPosition position;
    BrowserURL address = AddressOf(node);
    (void)FindFolderPosition(address, position);
    return { position.index, 0, position.rest };
}

// --- How it is shown ---

// Kept: zoom, order and view at the first opening are read and never written; a zoom is
// written for folders and for the roots, an order for the roots alone.
void FolderContentDialog::ReadViewSettings()
{
    zoom = GetPreferenceFloat(node ? Preference::FolderZoom : Preference::HitsZoom);
    sortKey = SortKeyFrom(node ? Preference::FolderSortKey : Preference::HitsSortKey);
}

void FolderContentDialog::SetZoom(double wanted)
{
    zoomControls.Show(wanted);
    ChangeZoom(wanted);
}

void FolderContentDialog::ChangeZoom(double wanted)
{
    if (wanted == zoom)
        return;
    const ScrollPlace place = activeView->GetWish();
    zoom = wanted;
    if (IsOpen())
        LayOut(place);
    (void)SetPreferenceFloat(node ? Preference::FolderZoom : Preference::HitsZoom, zoom);
}

void FolderContentDialog::SetSortKey(SortMode key)
{
    if (key == sortKey)
        return;
    sortKey = key;
    if (!node)
        (void)SetPreferenceNumber(Preference::HitsSortKey, static_cast<int32_t>(key) - 1);
    Refresh();
}

void FolderContentDialog::SetFilter(const FolderFilter& wanted)
{
    if (wanted == filter)
        return;
    filter = wanted;
    Refresh();
}

// --- Selection ---

void FolderContentDialog::SelectAll()
{
    list.SetRange(true, 0, EntrySelection::toEnd);
    ShowNewSelection();
}

void FolderContentDialog::SelectNone()
{
    list.ClearSelection();
    ShowNewSelection();
}

void FolderContentDialog::InvertSelection()
{
    ContentViewEntryList::Writer(list)->ToggleHits([](int32_t) { return true; });
    ShowNewSelection();
}

void FolderContentDialog::ShowNewSelection()
{
    window->UpdateSelectionPanes(false);
    (void)activeView->Redraw();
}

void FolderContentDialog::ShowStatus()
{
    const SelectionState state = list.GetState();
    String numbers[2];
    (void)numbers[0].SetInteger(state.HasSelection() ? state.selectedCount : state.count);
    (void)numbers[1].SetInteger(state.count);
    if (state.HasSelection())
        (void)SetText(PaneGadget::statusText, ResourceText(Texts::SelectedCount, numbers));
    else if (state.count > 1)
        (void)SetText(PaneGadget::statusText, ResourceText(Texts::EntryCount, numbers));
    else
        (void)SetText(PaneGadget::statusText, ResourceText(state.count == 1 ? Texts::OneEntry : Texts::EmptyFolder));
}

// --- Actions ---

void FolderContentDialog::Open(ContentRef item, bool newDocument)
{
    OpenEntry(*window, std::move(item), newDocument);
}

// Kept: of several containers the last one is where the window ends up.
void FolderContentDialog::ApplySelection(bool newDocument)
{
    Array<NodeRef> selected;
    (void)list.GetSelection(selected);
    ForEachWhileOpen(*this, selected, [&](const NodeRef& item) { Open(ToContent(item), newDocument); });
}

void FolderContentDialog::GoUp()
{
    NodeRef parent;
    if (node)
        node->GetParent(parent);
    if (parent)
        window->ShowNode(ToContent(parent), node);
}

void FolderContentDialog::ShowContextMenu()
{
    MenuFacts facts;
    BaseContainer menu;
    CountMenuFacts(*this, facts);
    if (IsOpen() && MakeFolderMenu(facts, menu))
        RunFolderCommand(host->gui->menu->popup(Handle(), menu.Value(), atPointer, atPointer), *this, facts);
}

bool FolderContentDialog::ActivateView()
{
    return activeView->Activate();
}

// --- The life of the dialog ---

bool FolderContentDialog::CreateLayout()
{
    ReadViewSettings();
    if (!LoadLayout(paneLayout) || !iconView.AttachTo(*this, PaneGadget::view))
        return false;
    list.Unpark(FirstChild());
    Synchronize();
    return true;
}

bool FolderContentDialog::InitValues()
{
    zoomControls.Fill(zoom);
    busyButton.Reset();
    LayOut(StoredPlace());
    isShown = true;
    ShowStatus();
    return SetTimer(BusyButton::tickMilliseconds);
}

void FolderContentDialog::DestroyWindow()
{
    StorePosition(node);
    isShown = hasFocus = false;
    DropNode();
}

void FolderContentDialog::DropNode()
{
    node = ContentRef();
    list.Park();
}

// --- Events ---

bool FolderContentDialog::Command(int32_t id, const BaseContainer&)
{
    const WindowHold hold(*window);
    double wanted;
    if (zoomControls.Command(id, wanted))
        ChangeZoom(wanted);
    else if (id == PaneGadget::busy)
        busyButton.Press(window->GetWork());
    else
        return false;
    return true;
}

void FolderContentDialog::Timer()
{
    busyButton.Tick(window->GetWork());
}

bool FolderContentDialog::Message(int32_t code, const BaseContainer& message, BaseContainer&)
{
    switch (code) {
    case VX3_GUI_SCROLLED:
    case VX3_GUI_RESIZED:
        if (activeView->IsDrawing())
            activeView->UpdateVisibleRange();
        return false;
    case VX3_GUI_HIDING: StorePosition(node); return false;
    case VX3_GUI_FOCUS_GOT: return TakeFocus();
    case VX3_GUI_FOCUS_LOST: hasFocus = false; return false;
    case VX3_GUI_DRAG: return TakeDrag(DragInfo(message));
    default: return false;
    }
}

// Kept: a pane that gets the focus hands it to its view, and consumes the message. Only the controls
// below the view keep a focus that the user has brought to them.
bool FolderContentDialog::TakeFocus()
{
    hasFocus = true;
    if (!SubDialog::HasFocus(PaneGadget::status))
        (void)ActivateView();
    return true;
}

// --- Drags ---

// Nothing can be moved or copied here yet, and the pointer says so.
bool FolderContentDialog::TakeDrag(const DragInfo& drag)
{
    const bool isOverView = drag.gadget == PaneGadget::view;
    if (isOverView && drag.data && !drag.isDrop && !drag.isEnd)
        ShowDropTarget(drag);
    else if (activeView->ClearDropTarget())
        (void)activeView->Redraw();
    if (isOverView)
        SetDragResult(VX3_CURSOR_REFUSED);
    return isOverView;
}

void FolderContentDialog::ShowDropTarget(const DragInfo& drag)
{
    const DragBlock stranger;
    const DragBlock* dragged = drag.type == VX3_DRAG_BROWSER ? static_cast<const DragBlock*>(drag.data) : nullptr;
    Point at = drag.screen;
    if ((dragged || drag.type == VX3_DRAG_FILE) && activeView->ToLocal(at)
        && activeView->DropTargetAt(at, HitTest::Cell, dragged ? *dragged : stranger).isChanged)
        (void)activeView->Redraw();
}

} // namespace browser
