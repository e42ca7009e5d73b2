// The surface of a folder pane: shows the entries of a list, which it shares with the
// other views of the pane, and answers mouse, keys and drags.
//
// Belongs to a FolderContentDialog, stands in its scroll group, and asks it for the zoom,
// the folder and every action on a node. It loads nothing: it draws what a node has at
// hand, and tells the list which entries are seen. Main thread only.
//
// The list may be another one behind everything that runs timers: a drag, a rubber band, a
// menu, an action. So no lock is held over those, and places are looked up again.
#pragma once

#include "services/geuserarea.h"
#include "ui/contententrylist.h"
#include "ui/gridlayout.h"
#include "ui/listdrag.h"
#include "ui/panewindow.h"

namespace browser {

class FolderContentDialog;

enum class HitTest {
    Cell,
    VisibleParts // what is drawn of the entry
};

class ContentListView : public GeUserArea
{
public:
    void Init(PaneWindow& ownWindow, FolderContentDialog& ownDialog, ContentViewEntryList& ownList);
    PaneWindow& Window() const { return *window; }
    FolderContentDialog& Dialog() const { return *dialog; }
    ContentViewEntryList& List() const { return *list; }

    // Entries; the caller holds the list.
    virtual int32_t FindEntry(const EntrySelection& entries, Point at, HitTest test) const = 0; // or noEntry
    virtual bool MeetsCell(const EntrySelection& entries, int32_t index, const Rectangle& touched) const = 0;
    virtual bool GetEntryCell(int32_t index, GridCell& cell) const = 0; // false, and `cell` as it was, if there is none

    // What is seen of the area; x2 and y2 lie behind the last pixel.
    Rectangle SeenPart() const;
    bool IsSeen() const; // false before the dialog has been laid out
    void ScrollTo(Point corner);
    void ScrollIntoView(const Rectangle& wanted);
    virtual void UpdateVisibleRange() = 0;

    // The scroll position as one that survives a change of zoom, width or view.
    ScrollPlace GetPlace() const;
    void SetPlace(const ScrollPlace& place);
    // As long as the user does not scroll: what was set, also where there is not enough to scroll that
    // far. A zoom or a width that leaves more to scroll goes back there.
    ScrollPlace GetWish() const;
    void DropWish(); // Other entries are shown: where this has led is the place from now on.

    // While it is off, the view can be laid out and scrolled without a flicker.
    bool IsDrawing() const { return drawEnabled; }
    void SetDrawing(bool enabled);

    // What a drag over a point would be dropped on: shows it, and scrolls to it.
    DropTarget DropTargetAt(Point at, HitTest test, const DragBlock& dragged);
    bool ClearDropTarget(); // true: draw again

protected:
    bool Input(const InputEvent& event) override;
    bool Message(int32_t code, const BaseContainer& message) override;

    virtual ScrollPlace ScrollToEntry(int32_t y) const = 0;
    virtual int32_t EntryToScroll(const ScrollPlace& place) const = 0;
    virtual Rectangle RevealArea(int32_t index) const = 0; // an entry and a margin, to scroll to
    virtual bool PressKey(const InputEvent& event) = 0;    // true: consumed

    // The layout is about to change: what stands at `place` shall stay in sight.
    void KeepPlace(const ScrollPlace& place);

private:
    void SettleLayout();
    void RevealDropTarget(int32_t index);
    int32_t ChooseDropTarget(const EntrySelection& entries, int32_t hit, const DragBlock& dragged, ContentRef& target) const;

    PaneWindow* window = nullptr;
    FolderContentDialog* dialog = nullptr;
    ContentViewEntryList* list = nullptr;
    bool drawEnabled = true;

    ScrollPlace wish; // the last place that was set, and where that led
    int32_t wishTop = 0;
    bool isPending = false; // it has not been scrolled to: the layout is about to change
};

} // namespace browser
