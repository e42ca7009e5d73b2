#include "headless/areapainter.h"

#include "headless/natives.h"
#include "headless/seen.h"

namespace vx3::headless {

namespace {

// The smallest place around both.
gui::Place Joined(const gui::Place& a, const gui::Place& b)
{
    if (a.IsEmpty() || b.IsEmpty())
        return a.IsEmpty() ? b : a;
    const int left = std::min(a.x, b.x);
    const int top = std::min(a.y, b.y);
    return { left, top, std::max(a.x + a.width, b.x + b.width) - left, std::max(a.y + a.height, b.y + b.height) - top };
}

bool HasSpan(int from, int length, int innerFrom, int innerLength)
{
    return from <= innerFrom && innerFrom + innerLength <= from + length;
}

// What of `now` was not in `before`; a strip if it moved in one direction, else all of it.
gui::Place Uncovered(const gui::Place& now, const gui::Place& before)
{
    const gui::Place kept = now.Cut(before);
    if (kept == now)
        return {};
    if (kept.IsEmpty())
        return now;
    if (HasSpan(before.x, before.width, now.x, now.width)) {
        if (kept.y == now.y)
            return { now.x, kept.y + kept.height, now.width, now.height - kept.height };
        if (kept.y + kept.height == now.y + now.height)
            return { now.x, now.y, now.width, now.height - kept.height };
    }
    if (HasSpan(before.y, before.height, now.y, now.height)) {
        if (kept.x == now.x)
            return { kept.x + kept.width, now.y, now.width - kept.width, now.height };
        if (kept.x + kept.width == now.x + now.width)
            return { now.x, now.y, now.width - kept.width, now.height };
    }
    return now;
}

void Paint(gui::Desk& desk, gui::Gadget& gadget)
{
    GadgetNative& native = NativeOf(gadget);
    const gui::Place seen = SeenPart(gadget);
    const gui::Place uncovered = native.size == gadget.place.Extent() ? Uncovered(seen, native.painted) : seen;
    const gui::Place dirty = Joined(native.dirty.Cut(seen), uncovered);
    native.dirty = {};
    native.painted = seen;
    native.size = gadget.place.Extent();
    if (dirty.IsEmpty())
        return;
    native.drawn = {};
    ++native.drawings;
    desk.Paint(gadget, native.drawn, dirty);
}

std::string Heading(const gui::Gadget& gadget)
{
    return std::string(gadget.shape.kind == VX3_GADGET_TREE ? "tree " : "area ") + std::to_string(gadget.shape.id) + " "
        + std::to_string(gadget.place.width) + "x" + std::to_string(gadget.place.height) + " drawing "
        + std::to_string(NativeOf(gadget).drawings) + "\n";
}

} // namespace

void MarkDirty(gui::Gadget& gadget, const gui::Place& part)
{
    GadgetNative& native = NativeOf(gadget);
    native.dirty = Joined(native.dirty, part);
}

void PaintDirty(gui::Desk& desk, const gui::Dialog& window)
{
    std::vector<gui::Gadget*> painted;
    ForEachVisible(window, [&painted](gui::Gadget& gadget) {
        if (DrawsItself(gadget))
            painted.push_back(&gadget);
    });
    for (gui::Gadget* gadget : painted)
        if (!gadget->isGone)
            Paint(desk, *gadget);
}

std::string DescribeDrawings(const gui::Dialog& window)
{
    std::string text;
    ForEachVisible(window, [&text](gui::Gadget& gadget) {
        if (!DrawsItself(gadget))
            return;
        text += Heading(gadget);
        for (const std::string& line : NativeOf(gadget).drawn.Lines())
            text += "  " + line + "\n";
    });
    return text;
}

} // namespace vx3::headless
