#include "gui/scriptrun.h"

#include <algorithm>
#include <sstream>

#include "gui/gadgettree.h"
#include "gui/layout.h"

namespace vx3::gui {

namespace {

int Resolve(Coordinate coordinate, int from, int length)
{
    constexpr int whole = 100;
    if (!coordinate.isPercent)
        return coordinate.value;
    return from + std::min(Bounded(static_cast<int64_t>(length) * coordinate.value / whole), std::max(0, length - 1));
}

} // namespace

std::string ScriptRun::Rest(size_t from) const
{
    std::string text;
    for (size_t i = from; i < Count(); ++i)
        text += (i == from ? "" : " ") + Word(i);
    return text;
}

Dialog& ScriptRun::Window() const
{
    const std::vector<Dialog*> windows = state.desk.Windows();
    if (windows.empty())
        throw ScriptError{ "no window is open" };
    const auto meant = std::find_if(windows.begin(), windows.end(), [&](const Dialog* dialog) { return dialog->handle == state.window; });
    return meant == windows.end() ? *windows.back() : **meant;
}

Gadget& ScriptRun::GadgetAt(size_t index) const
{
    Gadget* gadget = state.desk.FindGadget(Window(), WholeWord(Word(index)));
    if (!gadget)
        throw ScriptError{ "the window has no gadget " + Word(index) };
    return *gadget;
}

Point ScriptRun::PointIn(const Gadget& gadget, size_t index) const
{
    const Place seen = SeenPartOf(gadget);
    return { Bounded(Resolve(CoordinateWord(Word(index)), seen.x, seen.width)),
             Bounded(Resolve(CoordinateWord(Word(index + 1)), seen.y, seen.height)) };
}

uint32_t ScriptRun::Qualifiers(size_t from) const
{
    uint32_t qualifiers = 0;
    for (size_t i = from; i < Count(); ++i)
        qualifiers |= QualifierOf(Word(i));
    return qualifiers;
}

bool ScriptRun::HasWord(size_t from, std::string_view word) const
{
    for (size_t i = from; i < Count(); ++i)
        if (Word(i) == word)
            return true;
    return false;
}

void ScriptRun::Tell(const std::string& text) const
{
    if (!state.output)
        return;
    std::istringstream lines(text);
    for (std::string each; std::getline(lines, each);)
        state.output(each);
}

Place SeenPartOf(const Gadget& gadget)
{
    const Place whole = PlaceInWindow(gadget);
    Place seen = gadget.shape.kind == VX3_GADGET_TREE ? Place{ whole.x, whole.y, gadget.view.width, gadget.view.height } : whole;
    for (const Gadget* around = AroundOf(gadget); around; around = AroundOf(*around)) {
        const Place place = PlaceInWindow(*around);
        const bool scrolls = around->shape.kind == VX3_GADGET_SCROLL;
        seen = seen.Cut(scrolls ? Place{ place.x, place.y, around->view.width, around->view.height } : place);
    }
    return seen.Moved(Point{} - whole.Corner());
}

Gadget& SeenThrough(Gadget& gadget)
{
    for (Gadget* around = AroundOf(gadget); around; around = AroundOf(*around))
        if (around->shape.kind == VX3_GADGET_SCROLL)
            return *around;
    return gadget;
}

} // namespace vx3::gui
