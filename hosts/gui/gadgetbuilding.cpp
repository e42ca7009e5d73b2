#include "gui/gadgetbuilding.h"

#include "core/hoststate.h"
#include "core/registry.h"
#include "core/resources.h"
#include "core/services.h"
#include "core/values.h"
#include "gui/dialoglife.h"
#include "gui/gadgettree.h"
#include "gui/layoutfile.h"
#include "gui/sizes.h"
#include "gui/units.h"

namespace vx3::gui {

namespace {

bool CanBuild(const DialogCall& call)
{
    return call.HasGadgets() && !IsLeaving(*call.dialog);
}

std::u16string ResourceText(VX3Resources* resources, int32_t number)
{
    core::Text text;
    if (number != 0)
        core::ResourceServices()->text(resources, number, text.Get());
    return text.Units();
}

// A number may stand only once in a dialog, so a file that has one again builds nothing.
bool HasNewNumbers(const Dialog& dialog, const LayoutNode& node)
{
    if (FindGadgetOf(dialog, node.shape.id))
        return false;
    for (const LayoutNode& child : node.children)
        if (!HasNewNumbers(dialog, child))
            return false;
    return true;
}

void Build(DeskState& desk, Gadget& group, const LayoutNode& node, VX3Resources* resources)
{
    Gadget* gadget = AddGadget(group, node.shape);
    if (!gadget)
        return; // the file was looked through before
    gadget->text = ResourceText(resources, node.text);
    gadget->tip = ResourceText(resources, node.tip);
    if (node.shape.kind == VX3_GADGET_NUMBER || node.shape.kind == VX3_GADGET_SLIDER) {
        gadget->least = node.least;
        gadget->most = node.most;
        gadget->step = node.step;
        gadget->value = node.least;
    }
    if (node.icon != 0)
        gadget->normal = Picture(core::FindIcon(node.icon));
    MakeNative(desk, *gadget);
    for (const LayoutNode& child : node.children)
        Build(desk, *gadget, child, resources);
    if (!node.weights.empty())
        gadget->weights = node.weights;
}

// Whatever was added to the group goes again if there is no memory for all of it.
template <typename Function>
VX3Bool BuildWhole(DeskState& desk, Gadget& group, const Function& build)
{
    const size_t before = group.children.size();
    try {
        build();
        return 1;
    } catch (const std::exception&) {
        DropChildren(desk, group, before);
        return 0;
    }
}

VX3Bool Refuse(const std::string& error)
{
    core::WriteConsoleLine(error);
    return 0;
}

// Dialogs inside close at once, also if one of their callbacks runs: the module means to
// put others there before it returns.
void CloseInside(DeskState& desk, Gadget& group)
{
    std::vector<VX3Dialog> inside;
    ForEachGadget(group, [&](Gadget& gadget) {
        if (gadget.inner && gadget.dialog == group.dialog)
            inside.push_back(gadget.inner->handle);
    });
    for (VX3Dialog handle : inside)
        if (Dialog* dialog = FindDialog(desk, handle))
            CloseNow(desk, *dialog);
}

} // namespace

VX3Bool LoadLayout(VX3Dialog handle, VX3Resources* resources, int32_t number)
{
    const DialogCall call(handle);
    if (!CanBuild(call) || !resources)
        return 0;
    const std::string file = core::ResourceFolder(resources) + "/layouts/" + std::to_string(number) + ".layout";
    LayoutNode root;
    std::string error;
    if (!LoadLayoutFile(file, number, root, error))
        return Refuse(error);
    if (!HasNewNumbers(*call.dialog, root))
        return Refuse(file + ": a number in it is there already");
    Gadget& group = *call.dialog->current;
    if (group.shape.kind == VX3_GADGET_SCROLL && !group.children.empty())
        return Refuse(file + ": the scroll group has its child already");
    return BuildWhole(*call.desk, group, [&] { Build(*call.desk, group, root, resources); });
}

VX3Bool BeginGroup(VX3Dialog handle, const VX3GadgetShape* shape, const VX3String* title)
{
    const DialogCall call(handle);
    if (!CanBuild(call) || !shape || shape->kind >= VX3_GADGET_TEXT)
        return 0;
    Gadget* group = nullptr;
    const VX3Bool isBuilt = BuildWhole(*call.desk, *call.dialog->current, [&] {
        group = AddGadget(*call.dialog->current, *shape);
        if (!group)
            return;
        group->text = UnitsOf(title);
        MakeNative(*call.desk, *group);
    });
    if (!isBuilt || !group)
        return 0;
    call.dialog->current = group;
    return 1;
}

VX3Bool EndGroup(VX3Dialog handle)
{
    const DialogCall call(handle);
    if (!CanBuild(call) || !call.dialog->current->parent)
        return 0;
    call.dialog->current = call.dialog->current->parent;
    return 1;
}

VX3Bool AddSingle(VX3Dialog handle, const VX3GadgetShape* shape, const VX3String* text, const VX3String* tip)
{
    const DialogCall call(handle);
    if (!CanBuild(call) || !shape || shape->kind < VX3_GADGET_TEXT)
        return 0;
    Gadget* gadget = nullptr;
    const VX3Bool isBuilt = BuildWhole(*call.desk, *call.dialog->current, [&] {
        gadget = AddGadget(*call.dialog->current, *shape);
        if (!gadget)
            return;
        gadget->text = UnitsOf(text);
        gadget->tip = UnitsOf(tip);
        MakeNative(*call.desk, *gadget);
    });
    return isBuilt && gadget;
}

VX3Bool FlushGroup(VX3Dialog handle, int32_t id)
{
    const GadgetCall call(handle, id, 0, Calls::Nested);
    if (!call || !call.gadget->IsGroup() || !CanBuild(call))
        return 0;
    EndDragsOf(*call.desk, *call.dialog, call.gadget);
    if (!call.gadget->isGone)
        CloseInside(*call.desk, *call.gadget);
    if (call.gadget->isGone || !CanBuild(call))
        return 0;
    DropChildren(*call.desk, *call.gadget);
    call.dialog->current = call.gadget;
    return 1;
}

VX3Bool UpdateGroup(VX3Dialog handle, int32_t id)
{
    const GadgetCall call(handle, id, 0, Calls::Nested);
    if (!call.HasGadgets() || (id != 0 && !call))
        return 0;
    Relayout(*call.desk, call.dialog->Window());
    return 1;
}

} // namespace vx3::gui
