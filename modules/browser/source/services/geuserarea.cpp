#include "services/geuserarea.h"

namespace browser {

namespace {

VX3Rectangle ToHost(const Rectangle& rectangle)
{
    return { rectangle.x1, rectangle.y1, rectangle.x2, rectangle.y2 };
}

Rectangle ToModule(const VX3Rectangle& rectangle)
{
    return { rectangle.x1, rectangle.y1, rectangle.x2, rectangle.y2 };
}

} // namespace

// --- Canvas ---

void Canvas::SetClip(const Rectangle& clip) const
{
    const VX3Rectangle wanted = ToHost(clip);
    host->gui->draw->setClip(canvas, &wanted);
}

void Canvas::ClearClip() const
{
    host->gui->draw->clearClip(canvas);
}

void Canvas::SetPen(int32_t colour) const
{
    host->gui->draw->setPen(canvas, colour);
}

void Canvas::SetTextColours(int32_t text, int32_t background) const
{
    host->gui->draw->setTextColours(canvas, text, background);
}

void Canvas::Fill(const Rectangle& rectangle) const
{
    const VX3Rectangle wanted = ToHost(rectangle);
    host->gui->draw->fillRectangle(canvas, &wanted);
}

void Canvas::Line(Point from, Point to) const
{
    host->gui->draw->drawLine(canvas, from.x, from.y, to.x, to.y);
}

void Canvas::Frame(const Rectangle& rectangle) const
{
    Line({ rectangle.x1, rectangle.y1 }, { rectangle.x2, rectangle.y1 });
    Line({ rectangle.x1, rectangle.y2 }, { rectangle.x2, rectangle.y2 });
    Line({ rectangle.x1, rectangle.y1 }, { rectangle.x1, rectangle.y2 });
    Line({ rectangle.x2, rectangle.y1 }, { rectangle.x2, rectangle.y2 });
}

void Canvas::DrawBitmap(const VX3Bitmap* bitmap, Point corner, Size size, uint32_t mode) const
{
    const int32_t width = host->bitmap->width(bitmap);
    const int32_t height = host->bitmap->height(bitmap);
    host->gui->draw->drawBitmap(canvas, bitmap, corner.x, corner.y, size.width, size.height, 0, 0, width, height, mode);
}

void Canvas::DrawText(Units text, Point corner) const
{
    host->gui->draw->drawText(canvas, text.data(), static_cast<int32_t>(text.size()), corner.x, corner.y);
}

int32_t Canvas::DotsFor(int32_t pixels) const
{
    return static_cast<int32_t>((int64_t(pixels) * host->gui->draw->dots(canvas) + 50) / 100);
}

int32_t Canvas::TextWidth(Units text) const
{
    return host->gui->draw->textWidth(canvas, text.data(), static_cast<int32_t>(text.size()));
}

int32_t Canvas::FontHeight() const
{
    return host->gui->draw->fontHeight(canvas);
}

InputEvent::InputEvent(const BaseContainer& event)
    : device(event.GetInt32(VX3_INPUT_DEVICE, 0))
    , channel(event.GetInt32(VX3_INPUT_CHANNEL, 0))
    , value(event.GetInt32(VX3_INPUT_VALUE, 0))
    , at{ event.GetInt32(VX3_INPUT_X, 0), event.GetInt32(VX3_INPUT_Y, 0) }
    , qualifiers(static_cast<uint32_t>(event.GetInt32(VX3_INPUT_QUALIFIERS, 0)))
    , isDouble(event.GetInt32(VX3_INPUT_DOUBLE, 0) != 0)
{
}

// --- Area ---

const VX3AreaTable GeUserArea::table = {
    [](void* object, int32_t* width, int32_t* height) {
        const Size needed = static_cast<GeUserArea*>(object)->GetMinSize();
        *width = needed.width;
        *height = needed.height;
    },
    [](void* object, VX3Canvas canvas, const VX3Rectangle* dirty) {
        static_cast<GeUserArea*>(object)->Draw(Canvas(canvas), ToModule(*dirty));
    },
    [](void* object, const VX3Container* event) -> VX3Bool {
        return static_cast<GeUserArea*>(object)->Input(InputEvent(*BaseContainer::Of(event)));
    },
    [](void* object, int32_t code, const VX3Container* message) -> VX3Bool {
        return static_cast<GeUserArea*>(object)->Message(code, *BaseContainer::Of(message));
    },
};

GeUserArea::~GeUserArea()
{
    if (area)
        host->gui->area->free(area);
}

bool GeUserArea::MakeHandle()
{
    if (!area && host->gui)
        area = host->gui->area->create(this, &table);
    return area != 0;
}

bool GeUserArea::Message(int32_t, const BaseContainer&)
{
    return false;
}

bool GeUserArea::AttachTo(DialogBase& dialog, int32_t gadget)
{
    return dialog.Handle() && MakeHandle() && host->gui->area->attach(area, dialog.Handle(), gadget);
}

Size GeUserArea::GetAreaSize() const
{
    Size size;
    if (area)
        (void)host->gui->area->getSize(area, &size.width, &size.height);
    return size;
}

bool GeUserArea::Redraw()
{
    return area && host->gui->area->redraw(area, nullptr);
}

bool GeUserArea::Redraw(const Rectangle& part)
{
    const VX3Rectangle wanted = ToHost(part);
    return area && host->gui->area->redraw(area, &wanted);
}

bool GeUserArea::Activate()
{
    return area && host->gui->area->activate(area);
}

bool GeUserArea::HasFocus() const
{
    return area && host->gui->area->hasFocus(area);
}

bool GeUserArea::ToLocal(Point& screen) const
{
    return area && host->gui->area->toLocal(area, &screen.x, &screen.y);
}

bool GeUserArea::ToScreen(Point& local) const
{
    return area && host->gui->area->toScreen(area, &local.x, &local.y);
}

bool GeUserArea::PostMessage(int32_t code)
{
    return area && host->gui->area->post(area, code);
}

GeUserArea::BandAnswer GeUserArea::TrackRubberBand(Point start, Rectangle& band)
{
    VX3Rectangle tracked = {};
    if (!area)
        return BandAnswer::None;
    const auto answer = static_cast<BandAnswer>(host->gui->area->trackRubberBand(area, start.x, start.y, VX3_BAND_FRAME, &tracked));
    if (answer == BandAnswer::Rectangle)
        band = ToModule(tracked);
    return answer;
}

bool GeUserArea::Drag(int32_t type, void* data)
{
    return area && host->gui->menu->drag(area, type, data);
}

} // namespace browser
