#include "headless/windowpicture.h"

#include <algorithm>

#include "gui/layout.h"
#include "gui/menutext.h"
#include "headless/gadgetpicture.h"
#include "headless/natives.h"
#include "headless/palette.h"
#include "headless/rastercanvas.h"
#include "headless/seen.h"

namespace vx3::headless {

namespace {

constexpr int menuPadding = 8;
constexpr gui::Point titleText = { 9, 6 };
constexpr int closeSize = 9;

// Of one window into one raster; points of the window begin at its frame.
class WindowPainter
{
public:
    WindowPainter(gui::Desk& ownDesk, HeadlessToolkit& ownToolkit, const gui::Dialog& ownWindow, Raster& ownRaster)
        : desk(ownDesk)
        , toolkit(ownToolkit)
        , window(ownWindow)
        , raster(ownRaster)
        , frame(FrameOf(ownWindow).Corner())
        , inside(InsideCornerOf(ownWindow) - frame)
    {
    }

    void Paint();

private:
    void PaintFrame();
    void PaintMenuBar();
    void PaintGadget(gui::Gadget& gadget);
    void PaintPopupEdit();
    void Write(std::u16string_view text, gui::Point corner, const gui::Place& clip, gui::Colour colour)
    {
        toolkit.Font().Draw(raster, clip, text, corner, colour);
    }

    gui::Desk& desk;
    HeadlessToolkit& toolkit;
    const gui::Dialog& window;
    Raster& raster;
    gui::Point frame;
    gui::Point inside;
};

void WindowPainter::Paint()
{
    PaintFrame();
    PaintMenuBar();
    ForEachVisible(window, [this](gui::Gadget& gadget) { PaintGadget(gadget); });
    if (toolkit.Popup().window == &window)
        PaintPopupEdit();
}

void WindowPainter::PaintFrame()
{
    const gui::Place whole = raster.Bounds();
    const gui::Place bar = { 0, 0, whole.width, titleHeight };
    raster.Fill(whole, style::window);
    raster.Fill(bar, style::titleBar);
    raster.Frame(whole, style::frame);
    Write(window.title, titleText, { bar.x, bar.y, bar.width - 2 * closeSize, bar.height }, style::text);
    const gui::Point corner = { whole.width - 2 * closeSize, (titleHeight - closeSize) / 2 };
    raster.Line(corner, corner + gui::Point{ closeSize - 1, closeSize - 1 }, whole, style::text);
    raster.Line(corner + gui::Point{ closeSize - 1, 0 }, corner + gui::Point{ 0, closeSize - 1 }, whole, style::text);
}

void WindowPainter::PaintMenuBar()
{
    int x = frameWidth + menuPadding;
    for (const gui::MenuItem& item : window.menu) {
        const std::u16string label = gui::WithoutMnemonic(item.text);
        Write(label, { x, titleHeight + (menuBarHeight - cellHeight) / 2 }, raster.Bounds(), style::text);
        x += WidthOfText(label) + 2 * menuPadding;
    }
}

void WindowPainter::PaintGadget(gui::Gadget& gadget)
{
    const gui::Place part = SeenPart(gadget);
    const gui::Place place = gui::PlaceInWindow(gadget).Moved(inside);
    if (part.IsEmpty())
        return;
    // The bars of a tree stand beside what is seen of it.
    const gui::Place bars = gadget.shape.kind == VX3_GADGET_TREE ? gui::Place{ 0, 0, place.width, place.height } : part;
    const gui::Place clip = bars.Moved(place.Corner());
    DrawGadget(raster, toolkit.Font(), gadget, place, clip);
    if (!DrawsItself(gadget))
        return;
    RasterCanvas canvas(raster, toolkit.Font(), place.Corner(), part.Moved(place.Corner()));
    desk.Paint(gadget, canvas, part);
}

void WindowPainter::PaintPopupEdit()
{
    const PopupEdit& edit = toolkit.Popup();
    const gui::Place place = edit.screen.Moved(gui::Point{} - frame);
    raster.Fill(place, style::field);
    raster.Frame(place, style::accent);
    const gui::Point corner = place.Corner() + gui::Point{ 2, (place.height - cellHeight) / 2 };
    const int from = static_cast<int>(std::min(edit.editor.caret, edit.editor.anchor)) * cellWidth;
    const int length = static_cast<int>(std::max(edit.editor.caret, edit.editor.anchor)) * cellWidth - from;
    raster.Fill(gui::Place{ corner.x + from, corner.y, length, cellHeight }.Cut(place), PaletteColour(VX3_COLOUR_SELECTION));
    Write(edit.text, corner, place, style::text);
}

} // namespace

bool SaveWindowPicture(gui::Desk& desk, HeadlessToolkit& toolkit, const gui::Dialog& window, const std::string& file)
{
    Raster raster(FrameOf(window).Extent());
    WindowPainter(desk, toolkit, window, raster).Paint();
    return raster.Save(file);
}

} // namespace vx3::headless
