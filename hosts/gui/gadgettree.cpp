#include "gui/gadgettree.h"

#include <algorithm>

#include "gui/focus.h"
#include "gui/layout.h"
#include "gui/tracks.h"

namespace vx3::gui {

namespace {

Gadget* FindIn(Gadget& gadget, int32_t id)
{
    if (gadget.shape.id == id)
        return &gadget;
    for (const auto& child : gadget.children)
        if (Gadget* found = FindIn(*child, id))
            return found;
    return nullptr;
}

bool IsKindOf(const VX3GadgetShape& shape)
{
    return (shape.kind >= VX3_GADGET_GROUP && shape.kind <= VX3_GADGET_TABS)
        || (shape.kind >= VX3_GADGET_TEXT && shape.kind <= VX3_GADGET_SUBDIALOG);
}

size_t PageInFront(const Gadget& tabs)
{
    return tabs.value > 0 ? static_cast<size_t>(tabs.value) : 0;
}

bool IsChildSeen(const Gadget& group, size_t index)
{
    return group.children[index]->IsShown() && (group.shape.kind != VX3_GADGET_TABS || index == PageInFront(group));
}

bool IsTheChildSeen(const Gadget& group, const Gadget& child)
{
    for (size_t i = 0; i < group.children.size(); ++i)
        if (group.children[i].get() == &child)
            return IsChildSeen(group, i);
    return child.IsShown(); // the root of a dialog inside
}

// What is inside a gadget that has the point; the point is where nothing is scrolled.
Gadget* InsideAt(Gadget& gadget, Point point)
{
    if (gadget.shape.kind == VX3_GADGET_SCROLL) {
        if (!Place{ gadget.place.x, gadget.place.y, gadget.view.width, gadget.view.height }.Has(point))
            return &gadget;
        point = point + gadget.scrolled;
    }
    for (size_t i = gadget.children.size(); i-- > 0;)
        if (IsChildSeen(gadget, i) && gadget.children[i]->place.Has(point))
            return InsideAt(*gadget.children[i], point);
    if (gadget.inner && gadget.inner->root && gadget.inner->root->place.Has(point))
        return InsideAt(*gadget.inner->root, point);
    return &gadget;
}

// Whatever of the desk points at a gadget that goes.
void Forget(DeskState& desk, Gadget& gadget)
{
    Dialog& window = gadget.dialog->Window();
    if (gadget.area)
        LeaveGadget(desk, *gadget.area);
    if (window.focus == &gadget)
        SetFocus(desk, window, nullptr);
    if (window.life.wantedFocus == &gadget)
        window.life.wantedFocus = nullptr;
    std::erase(desk.unsettledTrees, &gadget);
    for (DragRun* run : { &desk.drag, &desk.foreignDrag }) {
        if (run->tree == &gadget)
            run->tree = nullptr;
        if (run->source == &gadget)
            run->source = nullptr;
    }
}

void DropGadget(DeskState& desk, Gadget& gadget)
{
    for (const auto& child : gadget.children)
        DropGadget(desk, *child);
    Forget(desk, gadget);
    if (IsMade(gadget))
        desk.toolkit.DropGadget(gadget);
    gadget.native.reset();
    gadget.tree.reset();
    gadget.isGone = true;
}

} // namespace

Gadget* FindGadgetOf(const Dialog& dialog, int32_t id)
{
    return id != 0 && dialog.root ? FindIn(*dialog.root, id) : nullptr;
}

void ForEachGadget(Gadget& gadget, const std::function<void(Gadget&)>& function)
{
    function(gadget);
    for (const auto& child : gadget.children)
        ForEachGadget(*child, function);
    if (gadget.inner && gadget.inner->root)
        ForEachGadget(*gadget.inner->root, function);
}

Gadget* AroundOf(const Gadget& gadget)
{
    return gadget.parent ? gadget.parent : gadget.dialog->holder;
}

bool IsInside(const Gadget& gadget, const Gadget& group)
{
    for (const Gadget* around = &gadget; around; around = AroundOf(*around))
        if (around == &group)
            return true;
    return false;
}

bool CanBeUsed(const Gadget& gadget)
{
    const Gadget* around = &gadget;
    while (around && around->isEnabled)
        around = AroundOf(*around);
    return !around;
}

bool IsSeen(const Gadget& gadget)
{
    const Gadget* inside = &gadget;
    for (const Gadget* around = AroundOf(gadget); around; around = AroundOf(*around)) {
        if (!IsTheChildSeen(*around, *inside))
            return false;
        inside = around;
    }
    return inside->IsShown();
}

Gadget* GadgetAt(Dialog& window, Point inside)
{
    return window.root && window.root->place.Has(inside) ? InsideAt(*window.root, inside) : nullptr;
}

void MakeRoot(DeskState& desk, Dialog& dialog)
{
    VX3GadgetShape shape = {};
    shape.kind = VX3_GADGET_GROUP;
    shape.flags = VX3_FLAG_FIT_H | VX3_FLAG_FIT_V | VX3_FLAG_SCALE_H | VX3_FLAG_SCALE_V;
    shape.columns = 1;
    dialog.root = std::make_unique<Gadget>(dialog, shape);
    dialog.current = dialog.root.get();
    MakeNative(desk, *dialog.root);
}

Gadget* AddGadget(Gadget& group, const VX3GadgetShape& shape)
{
    const bool isFull = group.shape.kind == VX3_GADGET_SCROLL && !group.children.empty();
    const bool isTaken = FindGadgetOf(*group.dialog, shape.id) != nullptr;
    if (!group.IsGroup() || isFull || isTaken || !IsKindOf(shape))
        return nullptr;
    auto gadget = std::make_unique<Gadget>(*group.dialog, shape);
    gadget->shape.columns = std::max(1, shape.columns);
    gadget->shape.minWidth = std::clamp(shape.minWidth, 0, mostLength);
    gadget->shape.minHeight = std::clamp(shape.minHeight, 0, mostLength);
    gadget->parent = &group;
    group.children.push_back(std::move(gadget));
    if (group.shape.kind == VX3_GADGET_SPLITTER)
        group.weights.resize(group.children.size(), 1);
    return group.children.back().get();
}

void MakeNative(DeskState& desk, Gadget& gadget)
{
    if (!gadget.dialog->Window().life.isMade || gadget.isMade)
        return;
    desk.toolkit.MakeGadget(gadget);
    gadget.isMade = true;
}

void MakeNatives(DeskState& desk, Gadget& gadget)
{
    ForEachGadget(gadget, [&](Gadget& made) { MakeNative(desk, made); });
}

void DropChildren(DeskState& desk, Gadget& group, size_t from)
{
    const Busy busy(desk);
    const Quiet quiet(desk); // a toolkit moves the focus meanwhile
    desk.goneGadgets.reserve(desk.goneGadgets.size() + group.children.size());
    for (size_t i = from; i < group.children.size(); ++i)
        DropGadget(desk, *group.children[i]);
    for (size_t i = from; i < group.children.size(); ++i)
        desk.goneGadgets.push_back(std::move(group.children[i]));
    group.children.resize(std::min(from, group.children.size()));
    group.weights.resize(std::min(group.weights.size(), from));
}

void DropRoot(DeskState& desk, Dialog& dialog)
{
    const Busy busy(desk);
    const Quiet quiet(desk);
    if (!dialog.root)
        return;
    desk.goneGadgets.reserve(desk.goneGadgets.size() + 1);
    DropGadget(desk, *dialog.root);
    desk.goneGadgets.push_back(std::move(dialog.root));
    dialog.current = nullptr;
}

void LeaveGadget(DeskState& desk, Area& area)
{
    desk.posted.DropAllFor(Recipient::Area, area.handle);
    if (area.gadget)
        area.gadget->area = nullptr;
    area.gadget = nullptr;
    area.toldSize = {};
}

bool IsMade(const Gadget& gadget)
{
    return gadget.isMade && !gadget.isGone;
}

void Show(DeskState& desk, Gadget& gadget, Change change)
{
    if (IsMade(gadget))
        desk.toolkit.ShowGadget(gadget, change);
}

} // namespace vx3::gui
