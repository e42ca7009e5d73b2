#include "gui/sizes.h"

#include <algorithm>

#include "gui/dialoglife.h"
#include "gui/gadgettree.h"
#include "gui/guarded.h"
#include "gui/layout.h"
#include "gui/messages.h"

namespace vx3::gui {

namespace {

// Modules that change sizes whenever they hear of one are not followed for ever.
constexpr int mostRounds = 8;

// Areas first, as they are met, then the dialogs around them, each once.
class Audience
{
public:
    void AddArea(const Gadget& gadget)
    {
        areas.push_back(gadget.area->handle);
        AddDialog(*gadget.dialog);
    }
    void AddDialog(const Dialog& dialog)
    {
        if (!HasDialog(dialog))
            dialogs.push_back(dialog.handle);
    }
    bool HasArea(const Area& area) const { return std::find(areas.begin(), areas.end(), area.handle) != areas.end(); }
    bool HasDialog(const Dialog& dialog) const { return std::find(dialogs.begin(), dialogs.end(), dialog.handle) != dialogs.end(); }
    bool IsEmpty() const { return areas.empty() && dialogs.empty(); }
    void Hear(DeskState& desk, int32_t code) const
    {
        for (VX3Area area : areas)
            Tell(desk, { Recipient::Area, area, code });
        for (VX3Dialog dialog : dialogs)
            Tell(desk, { Recipient::Dialog, dialog, code });
    }

private:
    std::vector<VX3Area> areas;
    std::vector<VX3Dialog> dialogs;
};

Audience TakeResized(Dialog& window)
{
    Audience resized;
    ForEachGadget(*window.root, [&](Gadget& gadget) {
        if (!gadget.area || gadget.area->toldSize == gadget.place.Extent())
            return;
        gadget.area->toldSize = gadget.place.Extent();
        resized.AddArea(gadget);
    });
    return resized;
}

// Adds what is seen through a scroll group, without what is inside a further one.
void AddScrolled(const Gadget& scroll, const Audience& resized, Audience& scrolled)
{
    ForEachGadget(const_cast<Gadget&>(scroll), [&](Gadget& gadget) {
        if (gadget.area && !resized.HasArea(*gadget.area) && !scrolled.HasArea(*gadget.area))
            scrolled.AddArea(gadget);
    });
    if (!resized.HasDialog(*scroll.dialog))
        scrolled.AddDialog(*scroll.dialog);
}

// A part that is seen for the first time is no change.
Audience TakeScrolled(Dialog& window, const Audience& resized)
{
    Audience scrolled;
    ForEachGadget(*window.root, [&](Gadget& gadget) {
        if (gadget.shape.kind != VX3_GADGET_SCROLL || gadget.toldPart == VisiblePart(gadget))
            return;
        if (!gadget.toldPart.IsEmpty())
            AddScrolled(gadget, resized, scrolled);
        gadget.toldPart = VisiblePart(gadget);
    });
    return scrolled;
}

// True if somebody was told. Afterwards the window may be closed.
bool TellOnce(DeskState& desk, Dialog& window)
{
    const Audience resized = TakeResized(window);
    const Audience scrolled = TakeScrolled(window, resized);
    resized.Hear(desk, VX3_GUI_RESIZED);
    scrolled.Hear(desk, VX3_GUI_SCROLLED);
    return !resized.IsEmpty() || !scrolled.IsEmpty();
}

// A layout that a module asks for while it hears of sizes is made at once and told afterwards.
void TellSizes(DeskState& desk, Dialog& window)
{
    if (window.life.isTellingSizes)
        return;
    window.life.isTellingSizes = true;
    Safely([&] {
        for (int round = 0; round < mostRounds && window.root && !window.life.isLeaving && TellOnce(desk, window); ++round) { }
    });
    window.life.isTellingSizes = false;
}

// Dialogs inside that come into view or go out of it.
void TellHidden(DeskState& desk, Dialog& window)
{
    std::vector<VX3Dialog> hidden;
    ForEachGadget(*window.root, [&](Gadget& gadget) {
        Dialog* inner = gadget.inner;
        if (!inner || !inner->root || inner->life.isShown == IsSeen(*inner->root))
            return;
        inner->life.isShown = !inner->life.isShown;
        if (!inner->life.isShown)
            hidden.push_back(inner->handle);
    });
    for (VX3Dialog dialog : hidden)
        Tell(desk, { Recipient::Dialog, dialog, VX3_GUI_HIDING });
}

} // namespace

void Relayout(DeskState& desk, Dialog& window)
{
    const Busy busy(desk);
    const EventWatch::Event event(desk.watch, { "layout", 0, window.opened.id });
    if (!window.root || !window.life.isMade)
        return;
    if (IsLive(window))
        TellHidden(desk, window);
    if (!window.root || !window.life.isMade)
        return;
    LayOut(desk.toolkit, window);
    if (IsLive(window))
        TellSizes(desk, window);
}

void TellFirstSizes(DeskState& desk, Dialog& window)
{
    LayOut(desk.toolkit, window);
    ForEachGadget(*window.root, [](Gadget& gadget) {
        if (gadget.inner && gadget.inner->root)
            gadget.inner->life.isShown = IsSeen(*gadget.inner->root);
    });
    TellSizes(desk, window);
}

Size OpeningSize(DeskState& desk, Dialog& window)
{
    const VX3WindowPlace& place = window.opened;
    Size size = { place.width, place.height };
    if (size.width <= 0 || size.height <= 0) {
        const Size need = NeedOfWindow(desk.toolkit, window, std::max(0, size.width));
        size = { size.width > 0 ? size.width : need.width, size.height > 0 ? size.height : need.height };
    }
    size = size.Widened(window.leastSize);
    return { std::min(size.width, mostWindowLength), std::min(size.height, mostWindowLength) };
}

bool ScrollTo(DeskState& desk, Gadget& scroll, Point scrolled)
{
    const Point before = scroll.scrolled;
    scroll.scrolled = scrolled;
    ClampScrolled(scroll);
    if (scroll.scrolled == before)
        return false;
    Show(desk, scroll, Change::Scrolled);
    Dialog& window = scroll.dialog->Window();
    if (IsLive(window))
        TellSizes(desk, window);
    return true;
}

Place VisiblePart(const Gadget& scroll)
{
    return { scroll.scrolled.x, scroll.scrolled.y, scroll.view.width, scroll.view.height };
}

} // namespace vx3::gui
