#include <algorithm>

#include "gui/askscope.h"
#include "gui/layoutpass.h"

namespace vx3::gui {

namespace {

// The least size of a scroll group or a tree that has none of its own, in bars.
constexpr int leastInBars = 4;

// What can be cut and still be used may be made smaller than its contents.
bool CanBeCut(const Gadget& gadget)
{
    switch (gadget.shape.kind) {
    case VX3_GADGET_TEXT:
    case VX3_GADGET_EDIT:
    case VX3_GADGET_MULTILINE:
    case VX3_GADGET_COMBO:
    case VX3_GADGET_SLIDER:
    case VX3_GADGET_PROGRESS:
    case VX3_GADGET_SCROLL:
    case VX3_GADGET_TREE: return true;
    default: return false;
    }
}

bool IsPage(const Gadget& gadget)
{
    return gadget.parent && gadget.parent->shape.kind == VX3_GADGET_TABS;
}

} // namespace

CellWalk::CellWalk(const Gadget& group)
    : columns(std::min(static_cast<size_t>(std::max(1, group.shape.columns)), std::max<size_t>(1, group.children.size())))
{
}

void CellWalk::Next(const Gadget& child)
{
    const bool isUpright = columns >= child.parent->children.size() && columns > 1;
    spans = child.shape.kind == VX3_GADGET_SEPARATOR && !isUpright;
    if (next == columns || (spans && next > 0)) {
        ++row;
        next = 0;
    }
    column = next;
    next = spans ? columns : next + 1;
}

LayoutPass::LayoutPass(Toolkit& ownToolkit)
    : toolkit(ownToolkit)
    , metrics(ownToolkit.GetMetrics())
{
}

int LayoutPass::Measure(Gadget& gadget, Axis axis)
{
    const int contents = std::clamp(MeasureContents(gadget, axis), 0, mostLength);
    const int wanted = axis == Axis::Horizontal ? gadget.shape.minWidth : gadget.shape.minHeight;
    int& need = LengthOf(gadget.need, axis);
    need = wanted > 0 && CanBeCut(gadget) ? wanted : std::max(contents, wanted);
    return need;
}

int LayoutPass::MeasureContents(Gadget& gadget, Axis axis)
{
    switch (gadget.shape.kind) {
    case VX3_GADGET_GROUP: return MeasureGrid(gadget, axis);
    case VX3_GADGET_SPLITTER: return MeasureSplitter(gadget, axis);
    case VX3_GADGET_SCROLL: return MeasureScroll(gadget, axis);
    case VX3_GADGET_TABS: return MeasurePages(gadget, axis);
    case VX3_GADGET_AREA: return MeasureArea(gadget, axis);
    case VX3_GADGET_TREE: return leastInBars * metrics.scrollBar;
    case VX3_GADGET_SUBDIALOG: return gadget.inner && gadget.inner->root ? Measure(*gadget.inner->root, axis) : 0;
    default: {
        Size need = toolkit.NeedOf(gadget);
        return LengthOf(need, axis);
    }
    }
}

// Measures the children as well.
int LayoutPass::MeasureGrid(Gadget& group, Axis axis)
{
    for (const auto& child : group.children)
        if (child->IsShown())
            Measure(*child, axis);
    return NeedOfTracks(TracksOf(group, axis), metrics.spacing) + InsetsOf(group, axis).Both();
}

std::vector<Track> LayoutPass::TracksOf(Gadget& group, Axis axis) const
{
    std::vector<Track> tracks;
    tracks.reserve(group.children.size());
    CellWalk cell(group);
    for (const auto& child : group.children) {
        cell.Next(*child);
        const size_t index = axis == Axis::Horizontal ? cell.Column() : cell.Row();
        if (tracks.size() <= index)
            tracks.resize(index + 1);
        if (!child->IsShown() || (axis == Axis::Horizontal && cell.Spans()))
            continue;
        Track& track = tracks[index];
        track.isUsed = true;
        track.need = std::max(track.need, LengthOf(child->need, axis));
        track.scales |= child->Has(axis == Axis::Horizontal ? VX3_FLAG_SCALE_H : VX3_FLAG_SCALE_V);
        track.fits |= child->Has(axis == Axis::Horizontal ? VX3_FLAG_FIT_H : VX3_FLAG_FIT_V);
    }
    return tracks;
}

int LayoutPass::MeasureSplitter(Gadget& splitter, Axis axis)
{
    const bool isAlong = IsColumn(splitter) == (axis == Axis::Vertical);
    bool isFirst = true;
    int along = 0;
    int across = 0;
    for (const auto& child : splitter.children) {
        if (!child->IsShown())
            continue;
        const int need = Measure(*child, axis);
        along = std::min(mostLength, along + need + (isFirst ? 0 : metrics.splitterWidth));
        isFirst = false;
        across = std::max(across, need);
    }
    return isAlong ? along : across;
}

int LayoutPass::MeasurePages(Gadget& tabs, Axis axis)
{
    int need = 0;
    for (const auto& page : tabs.children)
        if (page->IsShown())
            need = std::max(need, Measure(*page, axis));
    return need + InsetsOf(tabs, axis).Both();
}

// What is in it is measured when there is a place to see it in.
int LayoutPass::MeasureScroll(Gadget&, Axis)
{
    return leastInBars * metrics.scrollBar;
}

int LayoutPass::MeasureArea(Gadget& gadget, Axis axis)
{
    if (!gadget.area || !gadget.area->table->minSize)
        return 0;
    if (axis == Axis::Horizontal)
        gadget.place.width = room.width;
    gadget.place.height = room.height;
    int32_t width = 0;
    int32_t height = 0;
    const AskScope scope;
    gadget.area->table->minSize(gadget.area->object, &width, &height);
    return axis == Axis::Horizontal ? width : height;
}

LayoutPass::Insets LayoutPass::InsetsOf(const Gadget& group, Axis axis) const
{
    if (group.shape.kind == VX3_GADGET_TABS)
        return { axis == Axis::Horizontal ? metrics.margin : metrics.tabBar + metrics.margin, metrics.margin };
    if (group.text.empty() || IsPage(group))
        return {};
    return { axis == Axis::Horizontal ? metrics.margin : metrics.groupTitle + metrics.margin, metrics.margin };
}

} // namespace vx3::gui
