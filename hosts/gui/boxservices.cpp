// The table of guibox.h.
#include "core/values.h"
#include "gui/deskstate.h"
#include "gui/guarded.h"
#include "gui/units.h"

namespace vx3::gui {

namespace {

void ShowBox(int32_t kind, const VX3String* text)
{
    const ServiceCall call(Calls::Nested);
    if (!call.desk)
        return;
    const EventWatch::Wait wait(call.desk->watch);
    call.desk->toolkit.ShowBox(kind, UnitsOf(text));
}

VX3Bool Ask(const VX3String* text)
{
    const ServiceCall call(Calls::Nested);
    if (!call.desk)
        return 0;
    const EventWatch::Wait wait(call.desk->watch);
    return call.desk->toolkit.Ask(UnitsOf(text));
}

VX3Bool Choose(int32_t mode, const VX3String* title, const VX3String* filter, const VX3Path* start, VX3Path* chosen)
{
    const ServiceCall call(Calls::Nested);
    if (!call.desk || !chosen)
        return 0;
    const ChooseRequest request = { mode, UnitsOf(title), UnitsOf(filter), start ? core::NativeBytes(*start) : std::string() };
    std::string native;
    const EventWatch::Wait wait(call.desk->watch);
    return call.desk->toolkit.Choose(request, native) && core::SetNativePath(*chosen, native);
}

VX3Bool Reveal(const VX3Path* path)
{
    const ServiceCall call;
    const std::string native = call.desk && path ? core::NativeBytes(*path) : std::string();
    return !native.empty() && call.desk->toolkit.Reveal(native);
}

VX3Bool OpenWithSystem(const VX3Path* path)
{
    const ServiceCall call;
    const std::string native = call.desk && path ? core::NativeBytes(*path) : std::string();
    return !native.empty() && call.desk->toolkit.OpenWithSystem(native);
}

VX3Bool OpenPreferences(int32_t page)
{
    const ServiceCall call(Calls::Nested);
    if (!call.desk)
        return 0;
    const EventWatch::Wait wait(call.desk->watch);
    return call.desk->toolkit.OpenPreferences(page);
}

} // namespace

const VX3BoxServices* BoxServices()
{
    static constexpr VX3BoxServices services = { guarded<ShowBox>,        guarded<Ask>,
                                                 guarded<Choose>,         guarded<Reveal>,
                                                 guarded<OpenWithSystem>, guarded<OpenPreferences> };
    return &services;
}

} // namespace vx3::gui
