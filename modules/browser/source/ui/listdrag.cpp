#include "ui/listdrag.h"

#include "ui/foldercontentdialog.h"

namespace browser {

bool DragBlock::Holds(const RTreeNode* node) const
{
    return std::any_of(nodes, nodes + count, [node](const NodeRef& dragged) { return dragged.Get() == node; });
}

// Kept: a drop on a file is one into the folder that is shown.
int32_t ContentListView::ChooseDropTarget(const EntrySelection& entries, int32_t hit, const DragBlock& dragged, ContentRef& target) const
{
    int32_t index = hit;
    target = ToContent(entries.GetNode(hit));
    if (!target || !target->CanHoldChildren()) {
        target = dialog->GetNode();
        index = EntrySelection::dropPane;
    }
    if (dragged.Holds(target.Get())) {
        target = ContentRef();
        index = EntrySelection::dropPane;
    }
    return index;
}

DropTarget ContentListView::DropTargetAt(Point at, HitTest test, const DragBlock& dragged)
{
    DropTarget found;
    int32_t hit;
    {
        const ContentViewEntryList::Writer entries(*list);
        hit = FindEntry(*entries, at, test);
        const int32_t index = ChooseDropTarget(*entries, hit, dragged, found.node);
        if (!entries->SetDropIndex(index, dragged.source, found.isChanged))
            found.node = ContentRef();
    }
    if (hit != noEntry)
        RevealDropTarget(hit);
    return found;
}

// The drag scrolls the list, as far as the pointer can reach an entry at its edge.
void ContentListView::RevealDropTarget(int32_t index)
{
    const Rectangle wanted = RevealArea(index), part = SeenPart();
    if (wanted.x1 >= part.x1 && wanted.y1 >= part.y1 && wanted.x2 <= part.x2 && wanted.y2 <= part.y2)
        return;
    SetDrawing(false);
    ScrollIntoView(wanted);
    SetDrawing(true);
}

bool ContentListView::ClearDropTarget()
{
    bool isChanged = false;
    (void)ContentViewEntryList::Writer(*list)->SetDropIndex(EntrySelection::dropNothing, nullptr, isChanged);
    return isChanged;
}

} // namespace browser
