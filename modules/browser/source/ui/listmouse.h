// What a press of a mouse button does in a list.
//
// Made for one event. It may drag, draw a rubber band or show a menu, all of which run
// timers: the list may change meanwhile, so the entry that was pressed is remembered by
// its node and looked up again.
#pragma once

#include "ui/contentlistview.h"

namespace browser {

class ListMouse
{
public:
    ListMouse(ContentListView& pressedView, const InputEvent& pressedEvent);

    bool Press(); // true: consumed

private:
    void FindEntry();
    void FindAgain();
    bool IsExtending() const { return event.HasShift() || event.HasCtrl(); }
    void ToggleEntry();
    void SelectAlone();
    bool DragSelection();
    void ToggleBand(Rectangle band);
    void ExtendRange();
    void ApplySingle();

    void PressRight();
    void PressLeft();
    void PressDouble();
    void PressItem();
    void PressSpace();
    void Finish();
    void ShowSelection();

    ContentListView& view;
    FolderContentDialog& dialog;
    ContentViewEntryList& list;
    const InputEvent& event;

    // The entry under the pointer.
    int32_t index = noEntry;
    NodeRef node;
    bool wasSelected = false;
    bool overItem = false; // and not beside what is drawn of it
};

} // namespace browser
