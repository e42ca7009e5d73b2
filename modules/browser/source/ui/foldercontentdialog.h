// The pane of a window that shows the children of one node.
//
// Binds a node to a list of entries and a view, filters and sorts, and keeps the scroll
// position of each folder. Owned by one window; its views call back into it for every
// action on a node. Main thread only.
//
// The window is closed and opened again any number of times. While it is closed the pane
// holds no nodes, unless one is set for the next opening.
#pragma once

#include "services/gedialog.h"
#include "ui/busybutton.h"
#include "ui/contententrylist.h"
#include "ui/folderfilter.h"
#include "ui/iconlistview.h"
#include "ui/zoomcontrols.h"

namespace browser {

struct DragInfo;

enum class ViewMode : int32_t {
    Unchanged = 0,
    Icons = 2,
};

class FolderContentDialog : public SubDialog
{
public:
    FolderContentDialog();
    ~FolderContentDialog() override;

    void Init(PaneWindow* ownWindow, ViewMode mode);

    // What is shown: the children of a node, or without one all roots. With `force`
    // although it is the same node; `select` stands selected then.
    void SetNode(ContentRef newNode, bool force, ContentRef select, ViewMode mode);
    void Refresh() { SetNode(node, true, ContentRef(), ViewMode::Unchanged); }
    ContentRef GetNode() const { return node; }
    ContentViewEntryList& GetList() { return list; }
    void DropNode(); // gives it back, as when the window closes

    // How it is shown.
    SortMode GetSortKey() const { return sortKey; }
    void SetSortKey(SortMode key);
    const FolderFilter& GetFilter() const { return filter; }
    void SetFilter(const FolderFilter& wanted);
    ViewMode GetViewMode() const { return ViewMode::Icons; }
    ScrollPlace GetPlace() const { return activeView->GetPlace(); } // what is at the top of the visible part
    void ShowStatus();                                              // how many there are, and how many are selected
    double GetZoom() const { return zoom; }
    void SetZoom(double wanted); // 0 to 1

    // The selection.
    bool HasSelection() const { return list.GetState().HasSelection(); }
    void SelectAll();
    void SelectNone();
    void InvertSelection();

    // Actions.
    void Open(ContentRef item, bool newDocument); // applies a leaf, goes to a container
    void ApplySelection(bool newDocument);
    void GoUp();
    void ShowContextMenu();
    bool HasFocus() const { return hasFocus; }
    bool ActivateView(); // gives it the focus
    IconListView& View() { return iconView; }
    PaneWindow& Window() const { return *window; }

protected:
    bool CreateLayout() override;
    bool InitValues() override;
    bool Command(int32_t id, const BaseContainer& event) override;
    void Timer() override;
    bool Message(int32_t code, const BaseContainer& message, BaseContainer& result) override;
    void DestroyWindow() override;

private:
    // Steps of SetNode.
    void ShowNode(bool isNewPlace, const ContentRef& select);
    void Synchronize();
    NodeRef FirstChild() const;
    void StorePosition(ContentRef folder) const;
    ScrollPlace StoredPlace() const;
    void LayOut(const ScrollPlace& place);

    void ReadViewSettings();
    void ChangeZoom(double wanted);
    bool TakeFocus();
    bool TakeDrag(const DragInfo& drag);
    void ShowDropTarget(const DragInfo& drag);
    void ShowNewSelection();

    ContentRef node;
    PaneWindow* window = nullptr;
    ContentViewEntryList list;
    IconListView iconView;
    ContentListView* const activeView = &iconView;

    double zoom;
    SortMode sortKey;
    FolderFilter filter;
    bool hasFocus = false;
    bool isShown = false; // what the list has is on the screen, at a position of its own

    ZoomControls zoomControls;
    BusyButton busyButton;
};

} // namespace browser
