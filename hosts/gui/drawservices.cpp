// The table of guidraw.h.
#include "gui/canvasscope.h"
#include "gui/deskstate.h"
#include "gui/guarded.h"
#include "gui/palette.h"
#include "gui/tracks.h"

namespace vx3::gui {

namespace {

// A call with a canvas that is being drawn on.
class CanvasCall : public ServiceCall
{
public:
    explicit CanvasCall(VX3Canvas handle)
        : canvas(desk ? CanvasScope::Find(handle) : nullptr)
    {
    }
    explicit operator bool() const { return canvas != nullptr; }

    Canvas* canvas;
};

std::u16string_view TextOf(const VX3Unit* units, int32_t count)
{
    static_assert(sizeof(VX3Unit) == sizeof(char16_t));
    return units && count > 0 ? std::u16string_view(reinterpret_cast<const char16_t*>(units), static_cast<size_t>(count))
                              : std::u16string_view();
}

void SetClip(VX3Canvas canvas, const VX3Rectangle* clip)
{
    if (const CanvasCall call(canvas); call && clip)
        call.canvas->SetClip(PlaceOf(*clip));
}

void ClearClip(VX3Canvas canvas)
{
    if (const CanvasCall call(canvas); call)
        call.canvas->ClearClip();
}

void SetPen(VX3Canvas canvas, int32_t colour)
{
    if (const CanvasCall call(canvas); call)
        call.canvas->SetPen(ColourOfNumber(call.desk->toolkit, colour));
}

void SetPenRgb(VX3Canvas canvas, uint8_t red, uint8_t green, uint8_t blue)
{
    if (const CanvasCall call(canvas); call)
        call.canvas->SetPen({ red, green, blue });
}

// The background tells a toolkit what stands behind the text, and none of ours needs to know.
void SetTextColours(VX3Canvas canvas, int32_t text, int32_t)
{
    if (const CanvasCall call(canvas); call)
        call.canvas->SetTextColour(ColourOfNumber(call.desk->toolkit, text));
}

void FillRectangle(VX3Canvas canvas, const VX3Rectangle* rectangle)
{
    if (const CanvasCall call(canvas); call && rectangle && !PlaceOf(*rectangle).IsEmpty())
        call.canvas->Fill(PlaceOf(*rectangle));
}

// A canvas may go along a line step by step.
Point LineEnd(int32_t x, int32_t y)
{
    return { std::clamp(x, -mostLength, mostLength), std::clamp(y, -mostLength, mostLength) };
}

void DrawLine(VX3Canvas canvas, int32_t x1, int32_t y1, int32_t x2, int32_t y2)
{
    if (const CanvasCall call(canvas); call)
        call.canvas->Line(LineEnd(x1, y1), LineEnd(x2, y2));
}

void DrawBitmap(VX3Canvas canvas, const VX3Bitmap* bitmap, int32_t x, int32_t y, int32_t width, int32_t height, int32_t sourceX,
                int32_t sourceY, int32_t sourceWidth, int32_t sourceHeight, uint32_t mode)
{
    const Place target = { Bounded(x), Bounded(y), Bounded(width), Bounded(height) };
    const Place source = { Bounded(sourceX), Bounded(sourceY), Bounded(sourceWidth), Bounded(sourceHeight) };
    if (const CanvasCall call(canvas); call && bitmap && !target.IsEmpty() && !source.IsEmpty())
        call.canvas->DrawBitmap(bitmap, target, source, mode == VX3_DRAW_ALPHA);
}

void DrawText(VX3Canvas canvas, const VX3Unit* units, int32_t count, int32_t x, int32_t y)
{
    const std::u16string_view text = TextOf(units, count);
    if (const CanvasCall call(canvas); call && !text.empty())
        call.canvas->DrawText(text, { Bounded(x), Bounded(y) });
}

int32_t TextWidth(VX3Canvas, const VX3Unit* units, int32_t count)
{
    const ServiceCall call;
    const std::u16string_view text = TextOf(units, count);
    return call.desk && !text.empty() ? call.desk->widths.Of(call.desk->toolkit, text) : 0;
}

int32_t FontHeight(VX3Canvas)
{
    const ServiceCall call;
    return call.desk ? call.desk->toolkit.FontHeight() : 0;
}

uint32_t ColourAsNumber(int32_t number)
{
    const ServiceCall call;
    const Colour colour = call.desk ? ColourOfNumber(call.desk->toolkit, number) : Colour{};
    return static_cast<uint32_t>(colour.red) << 16 | static_cast<uint32_t>(colour.green) << 8 | colour.blue;
}

int32_t Dots(VX3Canvas canvas)
{
    const CanvasCall call(canvas);
    return call ? std::max(call.canvas->Dots(), 100) : 100;
}

} // namespace

const VX3DrawServices* DrawServices()
{
    static constexpr VX3DrawServices services = { guarded<SetClip>,   guarded<ClearClip>,      guarded<SetPen>,
                                                  guarded<SetPenRgb>, guarded<SetTextColours>, guarded<FillRectangle>,
                                                  guarded<DrawLine>,  guarded<DrawBitmap>,     guarded<DrawText>,
                                                  guarded<TextWidth>, guarded<FontHeight>,     guarded<ColourAsNumber>,
                                                  guarded<Dots> };
    return &services;
}

} // namespace vx3::gui
