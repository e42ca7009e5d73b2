// The table of guiarea.h.
#include "core/services.h"
#include "gui/dialoglife.h"
#include "gui/focus.h"
#include "gui/gadgettree.h"
#include "gui/guarded.h"
#include "gui/layout.h"

namespace vx3::gui {

namespace {

constexpr VX3AreaTable noOperations = {}; // of an area that was freed while its callback runs

VX3Area Create(void* object, const VX3AreaTable* table)
{
    const ServiceCall call;
    if (!call.desk || !table)
        return 0;
    auto area = std::make_unique<Area>();
    area->handle = NewHandle();
    area->object = object;
    area->table = table;
    const VX3Area handle = area->handle;
    call.desk->areas.emplace(handle, std::move(area));
    return handle;
}

// Takes it out of its gadget, which is empty then.
void Leave(DeskState& desk, Area& area)
{
    Gadget* gadget = area.gadget;
    LeaveGadget(desk, area);
    if (gadget)
        Show(desk, *gadget, Change::Everything);
}

void Free(VX3Area handle)
{
    const AreaCall call(handle);
    if (!call)
        return;
    Leave(*call.desk, *call.area);
    call.area->object = nullptr;
    call.area->table = &noOperations;
    auto found = call.desk->areas.find(handle);
    call.desk->goneAreas.push_back(std::move(found->second));
    call.desk->areas.erase(found);
}

VX3Bool Attach(VX3Area handle, VX3Dialog dialog, int32_t id)
{
    const GadgetCall place(dialog, id, VX3_GADGET_AREA);
    const AreaCall call(handle);
    if (!call || !place || IsLeaving(*place.dialog))
        return 0;
    if (place.gadget->area == call.area)
        return 1;
    if (place.gadget->area)
        LeaveGadget(*call.desk, *place.gadget->area);
    Leave(*call.desk, *call.area);
    place.gadget->area = call.area;
    call.area->gadget = place.gadget;
    Show(*call.desk, *place.gadget, Change::Everything);
    return 1;
}

VX3Bool GetSize(VX3Area handle, int32_t* width, int32_t* height)
{
    const AreaCall call(handle);
    if (!call.IsPlaced())
        return 0;
    if (width)
        *width = call.area->gadget->place.width;
    if (height)
        *height = call.area->gadget->place.height;
    return 1;
}

VX3Bool Redraw(VX3Area handle, const VX3Rectangle* part)
{
    const AreaCall call(handle);
    if (!call.IsPlaced())
        return 0;
    const Gadget& gadget = *call.area->gadget;
    const Place whole = { 0, 0, gadget.place.width, gadget.place.height };
    const Place wanted = part ? PlaceOf(*part).Cut(whole) : whole;
    if (IsMade(gadget) && !wanted.IsEmpty())
        call.desk->toolkit.Redraw(*call.area->gadget, wanted);
    return 1;
}

VX3Bool Activate(VX3Area handle)
{
    const AreaCall call(handle);
    return call.IsPlaced() && RequestFocus(*call.desk, *call.area->gadget);
}

VX3Bool HasTheFocus(VX3Area handle)
{
    const AreaCall call(handle);
    return call.IsPlaced() && HasFocus(*call.area->gadget);
}

// Where the area's corner stands on the screen. False if it is not shown by a toolkit.
bool FindCorner(const AreaCall& call, Point& corner)
{
    if (!call.IsPlaced() || !IsMade(*call.area->gadget))
        return false;
    const Gadget& gadget = *call.area->gadget;
    corner = PlaceInWindow(gadget).Corner() + call.desk->toolkit.InsideCorner(gadget.dialog->Window());
    return true;
}

VX3Bool ToLocal(VX3Area handle, int32_t* x, int32_t* y)
{
    const AreaCall call(handle);
    Point corner;
    if (!FindCorner(call, corner))
        return 0;
    *x = Bounded(int64_t(*x) - corner.x);
    *y = Bounded(int64_t(*y) - corner.y);
    return 1;
}

VX3Bool ToScreen(VX3Area handle, int32_t* x, int32_t* y)
{
    const AreaCall call(handle);
    Point corner;
    if (!FindCorner(call, corner))
        return 0;
    *x = Bounded(int64_t(*x) + corner.x);
    *y = Bounded(int64_t(*y) + corner.y);
    return 1;
}

VX3Bool Post(VX3Area handle, int32_t code)
{
    const AreaCall call(handle);
    if (!call.IsPlaced())
        return 0;
    const Letter letter = { Recipient::Area, handle, code };
    if (!call.desk->posted.Has(letter))
        call.desk->posted.Put(letter);
    return 1;
}

// A rubber band runs.
class BandRun
{
public:
    explicit BandRun(DeskState& ownDesk)
        : desk(ownDesk)
    {
        desk.hasBand = true;
    }
    ~BandRun() { desk.hasBand = false; }
    BandRun(const BandRun&) = delete;
    BandRun& operator=(const BandRun&) = delete;

private:
    DeskState& desk;
};

int32_t TrackRubberBand(VX3Area handle, int32_t x, int32_t y, uint32_t mode, VX3Rectangle* rectangle)
{
    const AreaCall call(handle, Calls::Nested);
    if (!call.IsPlaced() || mode != VX3_BAND_FRAME || !IsLive(*call.area->gadget->dialog) || IsPointerTaken(*call.desk))
        return VX3_BAND_NONE;
    Gadget& gadget = *call.area->gadget;
    Band band;
    {
        const NestedRun run(*call.desk, *gadget.dialog);
        const BandRun bandRun(*call.desk);
        band = call.desk->toolkit.TrackRubberBand(gadget, { Bounded(x), Bounded(y) });
    }
    if (gadget.isGone || gadget.area != call.area || WantsToLeave(*gadget.dialog))
        return VX3_BAND_CANCELLED;
    if (rectangle && band.answer == VX3_BAND_RECTANGLE)
        *rectangle = band.rectangle;
    return band.answer;
}

} // namespace

const VX3AreaServices* AreaServices()
{
    static constexpr VX3AreaServices services = { guarded<Create>,   guarded<Free>,     guarded<Attach>,         guarded<GetSize>,
                                                  guarded<Redraw>,   guarded<Activate>, guarded<HasTheFocus>,    guarded<ToLocal>,
                                                  guarded<ToScreen>, guarded<Post>,     guarded<TrackRubberBand> };
    return &services;
}

} // namespace vx3::gui
