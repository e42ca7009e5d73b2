#include "gui/units.h"

#include "core/services.h"

namespace vx3::gui {

std::u16string UnitsOf(const VX3String* text)
{
    if (!text)
        return {};
    int32_t length = 0;
    const VX3Unit* units = core::TextServices()->view(text, &length);
    return std::u16string(units, units + length);
}

VX3Bool SetUnits(VX3String* text, std::u16string_view units)
{
    return core::TextServices()->setUnits(text, reinterpret_cast<const VX3Unit*>(units.data()), static_cast<int32_t>(units.size()));
}

} // namespace vx3::gui
