#include "gui/textwidths.h"

namespace vx3::gui {

namespace {

// More than a folder of a hundred thousand names; beyond it all begin anew.
constexpr size_t mostWidths = 250000;
constexpr size_t mostUnits = 8 << 20; // of all texts together
// Longer texts are measured each time: nobody shows many of them.
constexpr size_t longestKept = 256;

} // namespace

int TextWidths::Of(Toolkit& toolkit, std::u16string_view text)
{
    if (text.size() > longestKept)
        return toolkit.TextWidth(text);
    if (auto found = widths.find(text); found != widths.end())
        return found->second;
    if (widths.size() >= mostWidths || units + text.size() > mostUnits)
        Forget();
    units += text.size();
    return widths.emplace(text, toolkit.TextWidth(text)).first->second;
}

} // namespace vx3::gui
