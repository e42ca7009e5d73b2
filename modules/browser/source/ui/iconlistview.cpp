#include "ui/iconlistview.h"

#include "ui/browsergadgets.h"
#include "ui/foldercontentdialog.h"
#include "ui/iconpainter.h"

namespace browser {

// --- Layout ---

Size IconListView::GetMinSize()
{
    const GridLayout before = grid;
    const ScrollPlace place = GetWish();
    const Size needed = Measure();
    if (!grid.HasCellsOf(before))
        KeepPlace(place);
    return needed;
}

Size IconListView::Measure()
{
    const Size given = GetAreaSize();
    const ContentViewEntryList::Reader entries(List());
    return grid.Measure(given, LargestEntry(*entries), entries->Count());
}

// All entries are as large as one with a node. Without their nodes are all or none.
Size IconListView::LargestEntry(const EntrySelection& entries) const
{
    if (entries.Count() == 0)
        return {};
    const bool hasNode =
        std::any_of(entries.All().begin(), entries.All().end(), [](const ContentViewEntry& entry) { return !!entry.node; });
    return IconMetrics(Dialog().GetZoom()).EntrySize(hasNode, Canvas().FontHeight());
}

void IconListView::UpdateVisibleRange()
{
    const Rectangle part = SeenPart();
    const IndexRange range = grid.RowsBetween(part.y1, part.y2 - 1);
    List().SetVisibleRange(range.first, range.last);
}

Rectangle IconListView::RevealArea(int32_t index) const
{
    GridCell cell;
    return grid.GetCell(index, cell) ? grid.RevealArea(cell) : Rectangle();
}

// --- Drawing ---

// Kept: cells are drawn whole, however little of them is asked for.
void IconListView::Draw(const Canvas& canvas, const Rectangle& dirty)
{
    if (!IsDrawing())
        return;
    canvas.ClearClip();
    canvas.SetPen(VX3_COLOUR_BACKGROUND);
    canvas.Fill(dirty);
    const ContentViewEntryList::Reader entries(List());
    DrawEntries(canvas, *entries, dirty);
    if (entries->IsDropActive() && entries->DropOwner() != &Dialog())
        DrawDropFrame(canvas);
}

void IconListView::DrawEntries(const Canvas& canvas, const EntrySelection& entries, const Rectangle& dirty) const
{
    const IconPainter painter(Dialog().GetZoom());
    const bool hasFocus = HasFocus();
    const IndexRange range = grid.RowsBetween(dirty.y1, dirty.y2).Within(entries.Count());
    GridCell cell;
    for (int32_t i = range.first; i <= range.last; i++)
        if (grid.GetCell(i, cell))
            painter.Draw(canvas, *entries.EntryAt(i), cell, hasFocus);
}

void IconListView::DrawDropFrame(const Canvas& canvas) const
{
    constexpr int32_t colours[] = { VX3_COLOUR_SELECTION, VX3_COLOUR_SELECTION, VX3_COLOUR_SELECTION_UNFOCUSED };
    const Rectangle part = SeenPart();
    Rectangle frame = { part.x1, part.y1, part.x2 - 1, part.y2 - 1 };
    canvas.SetClip(frame);
    for (int32_t colour : colours) {
        canvas.SetPen(colour);
        canvas.Frame(frame);
        frame = { frame.x1 + 1, frame.y1 + 1, frame.x2 - 1, frame.y2 - 1 };
    }
}

// --- Entries ---

int32_t IconListView::FindEntry(const EntrySelection& entries, Point at, HitTest test) const
{
    const int32_t index = grid.IndexAt(at, entries.Count());
    GridCell cell;
    if (!grid.GetCell(index, cell))
        return noEntry;
    const bool isHit = test == HitTest::Cell ? MeetsCell(entries, index, Rectangle::Of(at))
                                             : IconPainter(Dialog().GetZoom()).IsHit(*entries.EntryAt(index), cell, Rectangle::Of(at));
    return isHit ? index : noEntry;
}

bool IconListView::MeetsCell(const EntrySelection& entries, int32_t index, const Rectangle& touched) const
{
    GridCell cell;
    return entries.EntryAt(index)->node && grid.GetCell(index, cell) && cell.Area().Meets(touched);
}

// --- Keys ---

bool IconListView::PressKey(const InputEvent& event)
{
    if (!CarryOut(AnswerKey(event)))
        return false;
    Window().UpdateSelectionPanes(false);
    return true;
}

KeyAnswer IconListView::AnswerKey(const InputEvent& event) const
{
    const SelectionState state = List().GetState();
    const Rectangle part = SeenPart();
    return AnswerListKey(event.channel, event.qualifiers, grid, state.count, { state.first, state.last, state.anchor },
                         { part.y1, part.y2 });
}

bool IconListView::CarryOut(const KeyAnswer& answer)
{
    switch (answer.action) {
    case KeyAction::NotConsumed: return false;
    case KeyAction::FocusTree: return Window().ActivateGadget(Gadget::tree); // Without one the host knows where to go.
    case KeyAction::GoUp: Dialog().GoUp(); break;
    case KeyAction::OpenFirst: Dialog().Open(ToContent(List().GetNode(List().GetState().first)), false); break;
    case KeyAction::Scroll: ScrollTo({ SeenPart().x1, answer.seen.top }); break;
    case KeyAction::Select: SelectBlock(answer); break;
    case KeyAction::Nothing: break;
    }
    return true;
}

void IconListView::SelectBlock(const KeyAnswer& answer)
{
    {
        const ContentViewEntryList::Writer entries(List());
        if (answer.alone != noEntry) {
            entries->Clear();
            entries->SetSelected(answer.alone, true);
        }
        if (answer.clears)
            entries->Clear();
        entries->SetSelectedBlock(answer.first, answer.last, answer.stride, answer.width);
    }
    if (answer.scrolls)
        ScrollTo({ SeenPart().x1, answer.seen.top });
    if (answer.target != noEntry)
        ScrollIntoView({ SeenPart().x1, answer.reveal.top, SeenPart().x1, answer.reveal.bottom });
    (void)Redraw();
}

} // namespace browser
