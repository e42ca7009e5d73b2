#include "headless/seen.h"

#include "gui/gadgettree.h"
#include "gui/scriptrun.h"
#include "headless/natives.h"

namespace vx3::headless {

void ForEachVisible(const gui::Dialog& window, const std::function<void(gui::Gadget&)>& visit)
{
    if (!window.root)
        return;
    gui::ForEachGadget(*window.root, [&visit](gui::Gadget& gadget) {
        if (gadget.native && NativeOf(gadget).isVisible)
            visit(gadget);
    });
}

gui::Place SeenPart(const gui::Gadget& gadget)
{
    const bool isVisible = !gadget.isGone && gadget.native && NativeOf(gadget).isVisible;
    const gui::Place part = isVisible ? gui::SeenPartOf(gadget) : gui::Place{};
    return part.IsEmpty() ? gui::Place{} : part;
}

} // namespace vx3::headless
