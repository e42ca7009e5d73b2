// The table of guitree.h.
#include "gui/gadgettree.h"
#include "gui/guarded.h"
#include "gui/layout.h"

namespace vx3::gui {

namespace {

// A call for a gadget that shows a tree, whose rows are not being asked for if the call needs them.
enum class Needs { Tree, Rows };

class AttachedCall : public GadgetCall
{
public:
    AttachedCall(VX3Dialog handle, int32_t id, Needs needs)
        : GadgetCall(handle, id, VX3_GADGET_TREE)
    {
        if (gadget && (!gadget->tree || (needs == Needs::Rows && gadget->tree->isAsking)))
            gadget = nullptr;
    }
};

VX3Bool Attach(VX3Dialog dialog, int32_t id, void* object, const VX3TreeTable* table)
{
    const GadgetCall call(dialog, id, VX3_GADGET_TREE);
    return call && table && AttachTree(*call.gadget, *call.desk, object, table);
}

VX3Bool Refresh(VX3Dialog dialog, int32_t id)
{
    const AttachedCall call(dialog, id, Needs::Tree);
    if (!call)
        return 0;
    RefreshTree(*call.gadget);
    return 1;
}

VX3Bool Redraw(VX3Dialog dialog, int32_t id)
{
    const AttachedCall call(dialog, id, Needs::Tree);
    if (!call)
        return 0;
    RedrawTree(*call.gadget);
    return 1;
}

VX3Bool ShowRow(VX3Dialog dialog, int32_t id, void* row)
{
    const AttachedCall call(dialog, id, Needs::Rows);
    const auto index = call ? FindRow(*call.gadget->tree, row) : std::nullopt;
    if (!index)
        return 0;
    ShowTreeRow(*call.gadget, call.gadget->tree->rows[*index].id);
    return 1;
}

VX3Bool GetRowPlace(VX3Dialog dialog, int32_t id, void* row, VX3Rectangle* rectangle, int32_t* indent)
{
    const AttachedCall call(dialog, id, Needs::Rows);
    const auto index = call ? FindRow(*call.gadget->tree, row) : std::nullopt;
    if (!index)
        return 0;
    const TreeRow& found = call.gadget->tree->rows[*index];
    const Place place = PlaceOfRow(*call.gadget, found);
    if (!IsSeen(*call.gadget) || place.Cut({ 0, 0, call.gadget->view.width, call.gadget->view.height }).IsEmpty())
        return 0;
    const Point corner = call.desk->toolkit.InsideCorner(call.dialog->Window()) + PlaceInWindow(*call.gadget).Corner();
    *rectangle = RectangleOf(place.Moved(corner));
    *indent = (found.depth + 1) * treeIndent - call.gadget->scrolled.x;
    return 1;
}

VX3Bool SetFocusRow(VX3Dialog dialog, int32_t id, void* row)
{
    const AttachedCall call(dialog, id, Needs::Rows);
    if (!call)
        return 0;
    SetTreeFocus(*call.gadget, row);
    return 1;
}

} // namespace

const VX3TreeServices* TreeServices()
{
    static constexpr VX3TreeServices services = { guarded<Attach>,  guarded<Refresh>,     guarded<Redraw>,
                                                  guarded<ShowRow>, guarded<GetRowPlace>, guarded<SetFocusRow> };
    return &services;
}

} // namespace vx3::gui
