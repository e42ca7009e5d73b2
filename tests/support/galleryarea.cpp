#include "support/galleryarea.h"

#include <array>

namespace vx3::tests {

namespace {

constexpr int32_t squares = 4;
constexpr int32_t squareStep = itemSize + 10;
constexpr int32_t pictureSize = 16;

VX3Rectangle SquareAt(int32_t index)
{
    const int32_t x = 10 + index % 2 * squareStep;
    const int32_t y = 10 + index / 2 * squareStep;
    return { x, y, x + itemSize - 1, y + itemSize - 1 };
}

bool HasPoint(const VX3Rectangle& place, int32_t x, int32_t y)
{
    return x >= place.x1 && x <= place.x2 && y >= place.y1 && y <= place.y2;
}

int32_t SquareUnder(int32_t x, int32_t y)
{
    for (int32_t index = 0; index < squares; ++index)
        if (HasPoint(SquareAt(index), x, y))
            return index;
    return -1;
}

// A disc with a soft rim, so that alpha shows.
VX3Bitmap* MakePicture(const VX3BitmapServices& bitmaps)
{
    VX3Bitmap* bitmap = bitmaps.create(pictureSize, pictureSize, 24);
    if (!bitmap || !bitmaps.addAlpha(bitmap))
        return bitmap;
    for (int32_t y = 0; y < pictureSize; ++y) {
        std::array<uint8_t, 4 * pictureSize> row = {};
        for (int32_t x = 0; x < pictureSize; ++x) {
            const int32_t distance = (2 * x - 15) * (2 * x - 15) + (2 * y - 15) * (2 * y - 15);
            const uint8_t alpha = distance < 150 ? 255 : distance < 225 ? 120 : 0;
            const std::array<uint8_t, 4> pixel = { 220, 90, 40, alpha };
            std::copy(pixel.begin(), pixel.end(), row.begin() + 4 * x);
        }
        bitmaps.writePixels(bitmap, 0, y, pictureSize, row.data());
    }
    return bitmap;
}

std::string Words(const VX3Rectangle& place)
{
    return std::to_string(place.x1) + " " + std::to_string(place.y1) + " " + std::to_string(place.x2) + " " + std::to_string(place.y2);
}

const char* BandText(int32_t answer)
{
    switch (answer) {
    case VX3_BAND_UNMOVED: return "unmoved";
    case VX3_BAND_RECTANGLE: return "rectangle";
    case VX3_BAND_CANCELLED: return "cancelled";
    default: return "none";
    }
}

} // namespace

GalleryArea::GalleryArea(const VX3Host& ownHost, GalleryLog& ownLog, Kind ownKind)
    : host(ownHost)
    , log(ownLog)
    , kind(ownKind)
    , handle(ownHost.gui->area->create(this, &table))
    , picture(MakePicture(*ownHost.bitmap))
{
}

GalleryArea::~GalleryArea()
{
    host.gui->area->free(handle);
    host.bitmap->free(picture);
}

std::string GalleryArea::LocalText(int32_t x, int32_t y) const
{
    host.gui->area->toLocal(handle, &x, &y);
    return std::to_string(x) + " " + std::to_string(y);
}

void GalleryArea::MinSize(void* object, int32_t* width, int32_t* height)
{
    const bool isBand = static_cast<GalleryArea*>(object)->kind == Kind::Band;
    *width = isBand ? bandAreaWidth : dropAreaWidth;
    *height = isBand ? bandAreaHeight : dropAreaHeight;
}

void GalleryArea::Draw(void* object, VX3Canvas canvas, const VX3Rectangle* dirty)
{
    auto& area = *static_cast<GalleryArea*>(object);
    const VX3DrawServices& draw = *area.host.gui->draw;
    draw.setPen(canvas, VX3_COLOUR_BACKGROUND);
    draw.fillRectangle(canvas, dirty);
    if (area.kind == Kind::Band)
        return area.DrawSquares(canvas);
    draw.setPen(canvas, area.host.gui->area->hasFocus(area.handle) ? VX3_COLOUR_SELECTION : VX3_COLOUR_SELECTION_UNFOCUSED);
    draw.drawLine(canvas, 0, 0, dropAreaWidth - 1, dropAreaHeight - 1);
    draw.drawLine(canvas, 0, dropAreaHeight - 1, dropAreaWidth - 1, 0);
}

void GalleryArea::DrawSquares(VX3Canvas canvas) const
{
    const VX3DrawServices& draw = *host.gui->draw;
    for (int32_t index = 0; index < squares; ++index) {
        const VX3Rectangle place = SquareAt(index);
        draw.setPenRgb(canvas, 0xD0, 0xD0, 0xFF);
        draw.fillRectangle(canvas, &place);
        draw.drawBitmap(canvas, picture, place.x1 + 14, place.y1 + 4, 32, 32, 0, 0, pictureSize, pictureSize,
                        index % 2 ? VX3_DRAW_OPAQUE : VX3_DRAW_ALPHA);
        // Longer than the square: the clip cuts it.
        HostText name(host, "square \xC3\xA4 \"" + std::to_string(index) + "\"");
        int32_t length = 0;
        const VX3Unit* units = host.text->view(name.Get(), &length);
        draw.setClip(canvas, &place);
        draw.setTextColours(canvas, VX3_COLOUR_SPECIAL_TEXT, VX3_COLOUR_BACKGROUND);
        draw.drawText(canvas, units, length, place.x1 + 2, place.y1 + 42);
        draw.clearClip(canvas);
    }
}

VX3Bool GalleryArea::Input(void* object, const VX3Container* event)
{
    auto& area = *static_cast<GalleryArea*>(object);
    const auto get = [&](int32_t key) { return area.host.container->getInt32(event, key, 0); };
    const int32_t channel = get(VX3_INPUT_CHANNEL);
    const auto qualifiers = static_cast<uint32_t>(get(VX3_INPUT_QUALIFIERS));
    if (get(VX3_INPUT_DEVICE) == VX3_DEVICE_KEYBOARD)
        return area.Key(channel, qualifiers);
    const int32_t x = get(VX3_INPUT_X);
    const int32_t y = get(VX3_INPUT_Y);
    area.log.Add(area.Name() + ": channel " + std::to_string(channel) + " value " + std::to_string(get(VX3_INPUT_VALUE)) + " at "
                 + std::to_string(x) + " " + std::to_string(y) + " qualifiers " + std::to_string(qualifiers)
                 + (get(VX3_INPUT_DOUBLE) ? " double" : ""));
    return area.Press(channel, x, y, get(VX3_INPUT_DOUBLE) != 0);
}

VX3Bool GalleryArea::Press(int32_t channel, int32_t x, int32_t y, bool isDouble)
{
    if (channel == VX3_CHANNEL_WHEEL)
        return 0; // the group around it scrolls
    if (channel == VX3_CHANNEL_RIGHT && showMenu)
        showMenu(x, y);
    if (channel != VX3_CHANNEL_LEFT || kind != Kind::Band || isDouble)
        return 1;
    if (SquareUnder(x, y) < 0) {
        Band(x, y);
        return 1;
    }
    const VX3Bool tookPlace = host.gui->menu->drag(handle, VX3_DRAG_BROWSER, this);
    log.Add(std::string("drag: ") + (tookPlace ? "took place" : "the pointer stayed"));
    return 1;
}

void GalleryArea::Band(int32_t x, int32_t y)
{
    VX3Rectangle band = {};
    const int32_t answer = host.gui->area->trackRubberBand(handle, x, y, VX3_BAND_FRAME, &band);
    log.Add(std::string("rubber band: ") + BandText(answer) + (answer == VX3_BAND_RECTANGLE ? " " + Words(band) : ""));
}

VX3Bool GalleryArea::Key(int32_t code, uint32_t qualifiers)
{
    char text[64];
    std::snprintf(text, sizeof text, ": key 0x%X qualifiers %u", static_cast<unsigned>(code), qualifiers);
    log.Add(Name() + text);
    return code == VX3_KEY_DOWN || code == VX3_KEY_UP;
}

VX3Bool GalleryArea::Message(void* object, int32_t code, const VX3Container*)
{
    auto& area = *static_cast<GalleryArea*>(object);
    if (code == VX3_GUI_RESIZED || code == VX3_GUI_SCROLLED)
        return 0; // how often depends on the measures of a host
    area.log.Add(area.Name() + ": message " + CodeText(code));
    if (code == VX3_GUI_FOCUS_GOT || code == VX3_GUI_FOCUS_LOST)
        area.host.gui->area->redraw(area.handle, nullptr);
    return 1;
}

} // namespace vx3::tests
