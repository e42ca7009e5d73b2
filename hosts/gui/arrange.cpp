#include <algorithm>

#include "gui/layoutpass.h"
#include "gui/treestate.h"

namespace vx3::gui {

Gadget* ScrolledChild(const Gadget& scroll)
{
    return !scroll.children.empty() && scroll.children.front()->IsShown() ? scroll.children.front().get() : nullptr;
}

void LayoutPass::LayOutIn(Gadget& gadget, const Place& place)
{
    const Size outer = room;
    room = place.Extent();
    Measure(gadget, Axis::Horizontal);
    Arrange(gadget, Axis::Horizontal, place.x, place.width);
    Measure(gadget, Axis::Vertical);
    Arrange(gadget, Axis::Vertical, place.y, place.height);
    room = outer;
}

void LayoutPass::Arrange(Gadget& gadget, Axis axis, int from, int length)
{
    StartOf(gadget.place, axis) = from;
    LengthOf(gadget.place, axis) = std::max(0, length);
    switch (gadget.shape.kind) {
    case VX3_GADGET_GROUP: ArrangeGrid(gadget, axis); break;
    case VX3_GADGET_SPLITTER: ArrangeSplitter(gadget, axis); break;
    case VX3_GADGET_TABS: ArrangePages(gadget, axis); break;
    case VX3_GADGET_SCROLL:
        if (axis == Axis::Vertical) // both are known now
            ArrangeScroll(gadget);
        break;
    case VX3_GADGET_TREE:
        if (axis == Axis::Vertical)
            LayOutTree(toolkit, gadget);
        break;
    case VX3_GADGET_SUBDIALOG:
        if (gadget.inner && gadget.inner->root)
            Arrange(*gadget.inner->root, axis, from, length);
        break;
    default: break;
    }
}

void LayoutPass::ArrangeGrid(Gadget& group, Axis axis)
{
    const Insets insets = InsetsOf(group, axis);
    const int from = StartOf(group.place, axis) + insets.before;
    const int length = std::max(0, LengthOf(group.place, axis) - insets.Both());
    std::vector<Track> tracks = TracksOf(group, axis);
    SpreadTracks(tracks, from, length, metrics.spacing);
    CellWalk cell(group);
    for (const auto& child : group.children) {
        cell.Next(*child);
        if (!child->IsShown())
            continue;
        const Track& track = tracks[axis == Axis::Horizontal ? cell.Column() : cell.Row()];
        if (axis == Axis::Horizontal && cell.Spans())
            Arrange(*child, axis, from, length);
        else
            ArrangeInCell(*child, axis, track.from, track.length);
    }
}

void LayoutPass::ArrangeInCell(Gadget& child, Axis axis, int from, int length)
{
    const bool isHorizontal = axis == Axis::Horizontal;
    const int taken = std::min(length, LengthOf(child.need, axis));
    if (child.Has(isHorizontal ? VX3_FLAG_FIT_H : VX3_FLAG_FIT_V) || child.shape.kind == VX3_GADGET_SEPARATOR)
        Arrange(child, axis, from, length);
    else if (isHorizontal && child.Has(VX3_FLAG_LEFT))
        Arrange(child, axis, from, taken);
    else if (isHorizontal && child.Has(VX3_FLAG_RIGHT))
        Arrange(child, axis, from + length - taken, taken);
    else
        Arrange(child, axis, from + (length - taken) / 2, taken);
}

void LayoutPass::ArrangeSplitter(Gadget& splitter, Axis axis)
{
    const int from = StartOf(splitter.place, axis);
    const int length = LengthOf(splitter.place, axis);
    if (IsColumn(splitter) != (axis == Axis::Vertical)) {
        for (const auto& child : splitter.children)
            if (child->IsShown())
                Arrange(*child, axis, from, length);
        return;
    }
    std::vector<Part> parts = PartsOf(splitter);
    const int borders = std::max(0, static_cast<int>(parts.size()) - 1) * metrics.splitterWidth;
    DivideByWeights(parts, length - borders);
    int start = from;
    for (const Part& part : parts) {
        Arrange(*splitter.children[part.index], axis, start, part.length);
        start += part.length + metrics.splitterWidth;
    }
}

void LayoutPass::ArrangePages(Gadget& tabs, Axis axis)
{
    const Insets insets = InsetsOf(tabs, axis);
    for (const auto& page : tabs.children)
        if (page->IsShown())
            Arrange(*page, axis, StartOf(tabs.place, axis) + insets.before, LengthOf(tabs.place, axis) - insets.Both());
}

void LayoutPass::ArrangeScroll(Gadget& scroll)
{
    scroll.view = scroll.place.Extent();
    scroll.content = {};
    if (Gadget* child = ScrolledChild(scroll))
        ArrangeScrolled(scroll, *child);
    ClampScrolled(scroll);
}

// The bar at the right is decided on by the height that is needed without it, and stays even if
// less height would do beside it. So there are two attempts at the most.
void LayoutPass::ArrangeScrolled(Gadget& scroll, Gadget& child)
{
    Size& view = scroll.view;
    Size need = FitIn(child, scroll.place.x, view);
    const int bottomBar = need.width > view.width ? metrics.scrollBar : 0;
    if (need.height > view.height - bottomBar) {
        view.width = std::max(0, view.width - metrics.scrollBar);
        need = FitIn(child, scroll.place.x, view);
    }
    if (need.width > view.width)
        view.height = std::max(0, view.height - metrics.scrollBar);
    scroll.content = need.Widened(view);
    Arrange(child, Axis::Vertical, scroll.place.y, scroll.content.height);
}

Size LayoutPass::FitIn(Gadget& gadget, int left, Size view)
{
    const Size outer = room;
    room = view;
    Measure(gadget, Axis::Horizontal);
    Arrange(gadget, Axis::Horizontal, left, std::max(view.width, gadget.need.width));
    Measure(gadget, Axis::Vertical);
    room = outer;
    return gadget.need;
}

} // namespace vx3::gui
