#include "gui/gadgetvalue.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace vx3::gui {

namespace {

// The numbers of rows are int32.
constexpr double leastRow = std::numeric_limits<int32_t>::min();
constexpr double mostRow = std::numeric_limits<int32_t>::max();

} // namespace

bool HasText(const Gadget& gadget)
{
    switch (gadget.shape.kind) {
    case VX3_GADGET_SCROLL:
    case VX3_GADGET_NUMBER:
    case VX3_GADGET_DATE:
    case VX3_GADGET_SLIDER:
    case VX3_GADGET_PROGRESS:
    case VX3_GADGET_SEPARATOR:
    case VX3_GADGET_SPACE:
    case VX3_GADGET_AREA:
    case VX3_GADGET_TREE:
    case VX3_GADGET_SUBDIALOG: return false;
    default: return true;
    }
}

bool IsWrittenInto(const Gadget& gadget)
{
    const int32_t kind = gadget.shape.kind;
    return kind == VX3_GADGET_EDIT || kind == VX3_GADGET_MULTILINE || (kind == VX3_GADGET_COMBO && gadget.Has(VX3_FLAG_EDIT));
}

bool HasValue(const Gadget& gadget)
{
    switch (gadget.shape.kind) {
    case VX3_GADGET_TABS:
    case VX3_GADGET_NUMBER:
    case VX3_GADGET_CHECK:
    case VX3_GADGET_COMBO:
    case VX3_GADGET_SLIDER:
    case VX3_GADGET_PROGRESS: return true;
    case VX3_GADGET_BITMAP_BUTTON: return gadget.Has(VX3_FLAG_TOGGLE);
    default: return false;
    }
}

bool HasRange(const Gadget& gadget)
{
    return gadget.shape.kind == VX3_GADGET_NUMBER || gadget.shape.kind == VX3_GADGET_SLIDER;
}

double ClampedValue(const Gadget& gadget, double value)
{
    switch (gadget.shape.kind) {
    case VX3_GADGET_NUMBER:
    case VX3_GADGET_SLIDER: return std::clamp(value, gadget.least, gadget.most);
    case VX3_GADGET_CHECK:
    case VX3_GADGET_BITMAP_BUTTON: return value != 0 ? 1 : 0;
    case VX3_GADGET_PROGRESS: return value < 0 ? -1 : std::min(value, 1.0);
    case VX3_GADGET_TABS: return std::clamp(std::floor(value), 0.0, std::max(0.0, static_cast<double>(gadget.children.size()) - 1));
    case VX3_GADGET_COMBO: return std::clamp(std::floor(value), leastRow, mostRow);
    default: return value;
    }
}

void TakeValue(Gadget& gadget, double value)
{
    gadget.value = ClampedValue(gadget, value);
    if (gadget.shape.kind != VX3_GADGET_COMBO || !IsWrittenInto(gadget))
        return;
    for (const ComboRow& row : gadget.rows)
        if (!row.text.empty() && row.value == static_cast<int32_t>(gadget.value))
            gadget.text = row.text;
}

} // namespace vx3::gui
