// The pane of a window that shows the children of one node.
//
// Binds a node to a list of entries and a view, filters and sorts, and keeps the scroll
// position of each folder. Owned by one BrowserDialog; its views call back into it for
// every action on a node. Main thread only.
#pragma once

#include "services/gedialog.h"
#include "ui/contententrylist.h"
#include "ui/folderfilter.h"
#include "ui/iconlistview.h"

namespace browser {

class BrowserDialog;

enum class ViewMode : int32_t {
    Unchanged = 0,
    Icons = 2,
};

class FolderContentDialog : public SubDialog
{
public:
    FolderContentDialog();
    ~FolderContentDialog() override;

    void Init(BrowserDialog* ownWindow, ViewMode mode);

    // What is shown. With `force` although it is the same node; `select` stands selected then.
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
    void ActivateView();
};

} // namespace browser
