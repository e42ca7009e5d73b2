// The table of guigadget.h.
#include <cmath>

#include "core/registry.h"
#include "core/services.h"
#include "gui/dialoglife.h"
#include "gui/focus.h"
#include "gui/gadgetbuilding.h"
#include "gui/gadgettree.h"
#include "gui/gadgetvalue.h"
#include "gui/guarded.h"
#include "gui/layout.h"
#include "gui/sizes.h"
#include "gui/units.h"

namespace vx3::gui {

namespace {

constexpr double mostValue = 1e15; // of a range and of a weight: differences and sums stay exact enough

const VX3ContainerServices& Containers()
{
    return *core::ContainerServices();
}

VX3Bool Exists(VX3Dialog dialog, int32_t id)
{
    return static_cast<bool>(GadgetCall(dialog, id));
}

VX3Bool Enable(VX3Dialog dialog, int32_t id, VX3Bool enabled)
{
    const GadgetCall call(dialog, id);
    if (!call)
        return 0;
    if (call.gadget->isEnabled != static_cast<bool>(enabled)) {
        call.gadget->isEnabled = enabled;
        Show(*call.desk, *call.gadget, Change::Enabled);
    }
    return 1;
}

VX3Bool IsEnabled(VX3Dialog dialog, int32_t id)
{
    const GadgetCall call(dialog, id);
    return call && call.gadget->isEnabled;
}

VX3Bool ShowOrHide(VX3Dialog dialog, int32_t id, VX3Bool shown)
{
    const GadgetCall call(dialog, id);
    if (!call)
        return 0;
    uint32_t& flags = call.gadget->shape.flags;
    flags = shown ? flags & ~static_cast<uint32_t>(VX3_FLAG_HIDDEN) : flags | VX3_FLAG_HIDDEN;
    return 1;
}

VX3Bool Focus(VX3Dialog dialog, int32_t id)
{
    const GadgetCall call(dialog, id);
    return call && RequestFocus(*call.desk, *call.gadget);
}

VX3Bool HasTheFocus(VX3Dialog dialog, int32_t id)
{
    const GadgetCall call(dialog, id);
    return call && HasFocus(*call.gadget);
}

VX3Bool SetText(VX3Dialog dialog, int32_t id, const VX3String* text)
{
    const GadgetCall call(dialog, id);
    if (!call || !HasText(*call.gadget))
        return 0;
    std::u16string units = UnitsOf(text);
    if (call.gadget->text != units) {
        call.gadget->text = std::move(units);
        Show(*call.desk, *call.gadget, Change::Text);
    }
    return 1;
}

VX3Bool GetText(VX3Dialog dialog, int32_t id, VX3String* text)
{
    const GadgetCall call(dialog, id);
    return call && HasText(*call.gadget) && SetUnits(text, call.gadget->text);
}

VX3Bool SetTip(VX3Dialog dialog, int32_t id, const VX3String* tip)
{
    const GadgetCall call(dialog, id);
    if (!call)
        return 0;
    call.gadget->tip = UnitsOf(tip);
    Show(*call.desk, *call.gadget, Change::Tip);
    return 1;
}

VX3Bool SelectText(VX3Dialog dialog, int32_t id, int32_t from, int32_t count)
{
    const GadgetCall call(dialog, id);
    if (!call || !IsWrittenInto(*call.gadget))
        return 0;
    const int32_t length = static_cast<int32_t>(call.gadget->text.size());
    from = std::clamp(from, 0, length);
    if (IsMade(*call.gadget))
        call.desk->toolkit.SelectText(*call.gadget, from, count < 0 ? length - from : std::min(count, length - from));
    return 1;
}

VX3Bool SetRange(VX3Dialog dialog, int32_t id, double least, double most, double step)
{
    const GadgetCall call(dialog, id);
    const bool isRange = std::isfinite(least) && std::isfinite(most) && std::isfinite(step) && least <= most;
    if (!call || !HasRange(*call.gadget) || !isRange)
        return 0;
    call.gadget->least = std::clamp(least, -mostValue, mostValue);
    call.gadget->most = std::clamp(most, -mostValue, mostValue);
    call.gadget->step = std::clamp(step, -mostValue, mostValue);
    call.gadget->value = ClampedValue(*call.gadget, call.gadget->value);
    Show(*call.desk, *call.gadget, Change::Range);
    return 1;
}

// Another page is laid out at once; what it changes is told later.
VX3Bool SetValue(VX3Dialog dialog, int32_t id, double value)
{
    const GadgetCall call(dialog, id);
    if (!call || !HasValue(*call.gadget) || !std::isfinite(value))
        return 0;
    if (call.gadget->shape.kind == VX3_GADGET_TABS && AskScope::IsAsking())
        return 0;
    if (call.gadget->value == ClampedValue(*call.gadget, value) && !IsWrittenInto(*call.gadget))
        return 1;
    TakeValue(*call.gadget, value);
    Show(*call.desk, *call.gadget, Change::Value);
    if (call.gadget->shape.kind == VX3_GADGET_TABS)
        Relayout(*call.desk, call.dialog->Window());
    return 1;
}

VX3Bool GetValue(VX3Dialog dialog, int32_t id, double* value)
{
    const GadgetCall call(dialog, id);
    if (!call || !HasValue(*call.gadget))
        return 0;
    *value = call.gadget->value;
    return 1;
}

VX3Bool SetDate(VX3Dialog dialog, int32_t id, const VX3FileDate* date)
{
    const GadgetCall call(dialog, id, VX3_GADGET_DATE);
    if (!call || !date)
        return 0;
    call.gadget->date = { date->year, date->month, date->day, 0, 0, 0 };
    Show(*call.desk, *call.gadget, Change::Value);
    return 1;
}

VX3Bool GetDate(VX3Dialog dialog, int32_t id, VX3FileDate* date)
{
    const GadgetCall call(dialog, id, VX3_GADGET_DATE);
    if (!call)
        return 0;
    *date = call.gadget->date;
    return 1;
}

VX3Bool AddRow(VX3Dialog dialog, int32_t id, int32_t value, const VX3String* text)
{
    const GadgetCall call(dialog, id, VX3_GADGET_COMBO);
    if (!call)
        return 0;
    call.gadget->rows.push_back({ value, UnitsOf(text) });
    Show(*call.desk, *call.gadget, Change::Rows);
    return 1;
}

VX3Bool ClearRows(VX3Dialog dialog, int32_t id)
{
    const GadgetCall call(dialog, id, VX3_GADGET_COMBO);
    if (!call)
        return 0;
    call.gadget->rows.clear();
    Show(*call.desk, *call.gadget, Change::Rows);
    return 1;
}

VX3Bool SetBitmap(VX3Dialog dialog, int32_t id, const VX3Bitmap* normal, const VX3Bitmap* second)
{
    const GadgetCall call(dialog, id, VX3_GADGET_BITMAP_BUTTON);
    if (!call)
        return 0;
    call.gadget->normal = Picture(normal);
    call.gadget->second = Picture(second);
    Show(*call.desk, *call.gadget, Change::Picture);
    return 1;
}

VX3Bool SetIcon(VX3Dialog dialog, int32_t id, int32_t normal, int32_t second)
{
    return SetBitmap(dialog, id, core::FindIcon(normal), core::FindIcon(second));
}

int32_t KeyOfWeight(const Gadget& splitter, size_t part)
{
    return (IsColumn(splitter) ? VX3_WEIGHT_ROW : VX3_WEIGHT_COLUMN) + static_cast<int32_t>(part);
}

VX3Bool SetWeights(VX3Dialog dialog, int32_t id, const VX3Container* weights)
{
    const GadgetCall call(dialog, id, VX3_GADGET_SPLITTER);
    if (!call || !weights)
        return 0;
    std::vector<double>& own = call.gadget->weights;
    for (size_t i = 0; i < own.size(); ++i) {
        const double weight = Containers().getFloat(weights, KeyOfWeight(*call.gadget, i), own[i]);
        own[i] = std::isfinite(weight) && weight >= 0 ? std::min(weight, mostValue) : own[i];
    }
    return 1;
}

VX3Bool GetWeights(VX3Dialog dialog, int32_t id, VX3Container* weights)
{
    const GadgetCall call(dialog, id, VX3_GADGET_SPLITTER);
    if (!call)
        return 0;
    for (size_t i = 0; i < call.gadget->weights.size(); ++i)
        if (!Containers().setFloat(weights, KeyOfWeight(*call.gadget, i), call.gadget->weights[i]))
            return 0;
    return 1;
}

VX3Bool GetVisiblePart(VX3Dialog dialog, int32_t id, VX3Rectangle* part)
{
    const GadgetCall call(dialog, id, VX3_GADGET_SCROLL);
    if (!call)
        return 0;
    const Place seen = VisiblePart(*call.gadget);
    *part = { seen.x, seen.y, seen.x + seen.width, seen.y + seen.height };
    return 1;
}

VX3Bool SetVisiblePart(VX3Dialog dialog, int32_t id, const VX3Rectangle* part)
{
    const GadgetCall call(dialog, id, VX3_GADGET_SCROLL);
    if (!call || !part)
        return 0;
    ScrollTo(*call.desk, *call.gadget, { part->x1, part->y1 });
    return 1;
}

VX3Bool GetScreenPlace(VX3Dialog dialog, int32_t id, VX3Rectangle* place)
{
    const GadgetCall call(dialog, id);
    if (!call || !IsMade(*call.gadget))
        return 0;
    *place = RectangleOf(PlaceInWindow(*call.gadget).Moved(call.desk->toolkit.InsideCorner(call.dialog->Window())));
    return 1;
}

} // namespace

const VX3GadgetServices* GadgetServices()
{
    static constexpr VX3GadgetServices services = {
        guarded<LoadLayout>,  guarded<BeginGroup>,  guarded<EndGroup>,       guarded<AddSingle>,      guarded<FlushGroup>,
        guarded<UpdateGroup>, guarded<Exists>,      guarded<Enable>,         guarded<IsEnabled>,      guarded<ShowOrHide>,
        guarded<Focus>,       guarded<HasTheFocus>, guarded<SetText>,        guarded<GetText>,        guarded<SetTip>,
        guarded<SelectText>,  guarded<SetRange>,    guarded<SetValue>,       guarded<GetValue>,       guarded<SetDate>,
        guarded<GetDate>,     guarded<AddRow>,      guarded<ClearRows>,      guarded<SetBitmap>,      guarded<SetIcon>,
        guarded<SetWeights>,  guarded<GetWeights>,  guarded<GetVisiblePart>, guarded<SetVisiblePart>, guarded<GetScreenPlace>
    };
    return &services;
}

} // namespace vx3::gui
