#include "headless/gadgetpicture.h"

#include <algorithm>
#include <cstdio>

#include "core/services.h"
#include "core/values.h"
#include "gui/gadgettree.h"
#include "gui/toolkit.h"
#include "headless/gadgetneeds.h"
#include "headless/natives.h"
#include "headless/palette.h"

namespace vx3::headless {

namespace {

constexpr int tabPadding = 10;
constexpr int knobWidth = 8;

int TabWidth(const gui::Gadget& page)
{
    return page.IsShown() ? WidthOfText(page.text) + 2 * tabPadding : 0;
}

// One gadget on its way into a picture.
class GadgetPainter
{
public:
    GadgetPainter(Raster& ownRaster, FixedFont& ownFont, const gui::Gadget& ownGadget, const gui::Place& ownPlace,
                  const gui::Place& ownClip)
        : raster(ownRaster)
        , font(ownFont)
        , gadget(ownGadget)
        , place(ownPlace)
        , clip(ownClip)
    {
    }

    void Paint();

private:
    void PaintGroup();
    void PaintTabs();
    void PaintBars();
    void PaintText();
    void PaintField(std::u16string_view text);
    void PaintCheck();
    void PaintButton();
    void PaintBitmapButton();
    void PaintCombo();
    void PaintSlider();
    void PaintProgress();
    void PaintSeparator();
    std::u16string ValueText() const;
    std::u16string DateText() const;

    void Fill(const gui::Place& part, gui::Colour colour) { raster.Fill(part.Cut(clip), colour); }
    void Frame(const gui::Place& part, gui::Colour colour);
    void Write(std::u16string_view text, gui::Point corner) { font.Draw(raster, clip, text, corner, TextColour()); }
    void WriteLeft(std::u16string_view text, int from) { Write(text, { place.x + from, place.y + (place.height - cellHeight) / 2 }); }
    void WriteInMiddle(std::u16string_view text) { WriteLeft(text, (place.width - WidthOfText(text)) / 2); }
    void Box(gui::Colour inside);
    void Fade(const gui::Place& part);
    void PaintSelection();
    bool HasFocus() const { return gadget.dialog->Window().focus == &gadget; }
    gui::Colour TextColour() const { return gui::CanBeUsed(gadget) ? style::text : style::disabledText; }
    double Share() const;

    Raster& raster;
    FixedFont& font;
    const gui::Gadget& gadget;
    gui::Place place;
    gui::Place clip;
};

void GadgetPainter::Paint()
{
    switch (gadget.shape.kind) {
    case VX3_GADGET_GROUP: return PaintGroup();
    case VX3_GADGET_TABS: return PaintTabs();
    case VX3_GADGET_SCROLL:
    case VX3_GADGET_TREE: return PaintBars();
    case VX3_GADGET_TEXT: return PaintText();
    case VX3_GADGET_EDIT:
    case VX3_GADGET_MULTILINE: return PaintField(gadget.text);
    case VX3_GADGET_NUMBER: return PaintField(ValueText());
    case VX3_GADGET_DATE: return PaintField(DateText());
    case VX3_GADGET_CHECK: return PaintCheck();
    case VX3_GADGET_BUTTON: return PaintButton();
    case VX3_GADGET_BITMAP_BUTTON: return PaintBitmapButton();
    case VX3_GADGET_COMBO: return PaintCombo();
    case VX3_GADGET_SLIDER: return PaintSlider();
    case VX3_GADGET_PROGRESS: return PaintProgress();
    case VX3_GADGET_SEPARATOR: return PaintSeparator();
    default: return;
    }
}

void GadgetPainter::Frame(const gui::Place& part, gui::Colour colour)
{
    Fill({ part.x, part.y, part.width, 1 }, colour);
    Fill({ part.x, part.y + part.height - 1, part.width, 1 }, colour);
    Fill({ part.x, part.y, 1, part.height }, colour);
    Fill({ part.x + part.width - 1, part.y, 1, part.height }, colour);
}

void GadgetPainter::Box(gui::Colour inside)
{
    Fill(place, inside);
    Frame(place, HasFocus() ? style::accent : style::frame);
}

double GadgetPainter::Share() const
{
    const double length = gadget.most - gadget.least;
    return length > 0 ? std::clamp((gadget.value - gadget.least) / length, 0.0, 1.0) : 0;
}

void GadgetPainter::PaintGroup()
{
    const bool isPage = gadget.parent && gadget.parent->shape.kind == VX3_GADGET_TABS;
    if (gadget.text.empty() || isPage)
        return;
    const int title = gui::Metrics().groupTitle;
    Write(gadget.text, { place.x, place.y + (title - cellHeight) / 2 });
    Frame({ place.x, place.y + title, place.width, place.height - title }, style::frame);
}

void GadgetPainter::PaintTabs()
{
    const int bar = gui::Metrics().tabBar;
    Frame({ place.x, place.y + bar - 1, place.width, place.height - bar + 1 }, style::frame);
    gui::Place tab = { place.x, place.y, 0, bar };
    for (size_t page = 0; page < gadget.children.size(); ++page) {
        tab.width = TabWidth(*gadget.children[page]);
        const bool isShown = static_cast<size_t>(gadget.value) == page;
        Fill(tab, isShown ? style::button : style::shade);
        Frame({ tab.x, tab.y, tab.width, bar }, style::frame);
        if (isShown)
            Fill({ tab.x + 1, tab.y + bar - 1, tab.width - 2, 1 }, style::button);
        Write(gadget.children[page]->text, { tab.x + tabPadding, tab.y + (bar - cellHeight) / 2 });
        tab.x += tab.width;
    }
}

// The bars of what can be scrolled, each where the view leaves room for it.
void GadgetPainter::PaintBars()
{
    const gui::Size view = gadget.view;
    if (view.width < place.width && gadget.content.height > 0) {
        const gui::Place bar = { place.x + view.width, place.y, place.width - view.width, view.height };
        Fill(bar, style::shade);
        const int length = std::min(bar.height, std::max(bar.width, bar.height * view.height / gadget.content.height));
        const int way = std::max(1, gadget.content.height - view.height);
        Fill({ bar.x + 3, bar.y + (bar.height - length) * gadget.scrolled.y / way, bar.width - 6, length }, style::frame);
    }
    if (view.height < place.height && gadget.content.width > 0) {
        const gui::Place bar = { place.x, place.y + view.height, view.width, place.height - view.height };
        Fill(bar, style::shade);
        const int length = std::min(bar.width, std::max(bar.height, bar.width * view.width / gadget.content.width));
        const int way = std::max(1, gadget.content.width - view.width);
        Fill({ bar.x + (bar.width - length) * gadget.scrolled.x / way, bar.y + 3, length, bar.height - 6 }, style::frame);
    }
}

void GadgetPainter::PaintText()
{
    int y = place.y + (gadget.text.find(u'\n') == gadget.text.npos ? (place.height - cellHeight) / 2 : 0);
    std::u16string_view rest = gadget.text;
    for (bool isLast = false; !isLast; y += cellHeight) {
        const size_t end = rest.find(u'\n');
        isLast = end == rest.npos;
        Write(rest.substr(0, end), { place.x, y });
        rest.remove_prefix(isLast ? 0 : end + 1);
    }
}

void GadgetPainter::PaintField(std::u16string_view text)
{
    Box(gadget.Has(VX3_FLAG_READ_ONLY) ? style::window : style::field);
    clip = clip.Cut({ place.x + 1, place.y + 1, place.width - 2, place.height - 2 });
    if (gadget.shape.kind == VX3_GADGET_EDIT && HasFocus())
        PaintSelection();
    for (int y = place.y + textMargin;; y += cellHeight) {
        const size_t end = text.find(u'\n');
        Write(text.substr(0, end), { place.x + textMargin, y });
        if (end == text.npos)
            return;
        text.remove_prefix(end + 1);
    }
}

// What is selected, or the caret.
void GadgetPainter::PaintSelection()
{
    const LineEditor& editor = NativeOf(gadget).editor;
    const int from = static_cast<int>(std::min(editor.caret, editor.anchor)) * cellWidth;
    const int length = static_cast<int>(std::max(editor.caret, editor.anchor)) * cellWidth - from;
    Fill({ place.x + textMargin + from, place.y + textMargin, std::max(1, length), cellHeight },
         length > 0 ? PaletteColour(VX3_COLOUR_SELECTION) : style::text);
}

void GadgetPainter::PaintCheck()
{
    const gui::Place box = { place.x, place.y + (place.height - checkSize) / 2, checkSize, checkSize };
    Fill(box, style::field);
    Frame(box, HasFocus() ? style::accent : style::frame);
    if (gadget.value != 0)
        Fill({ box.x + 3, box.y + 3, box.width - 6, box.height - 6 }, style::accent);
    WriteLeft(gadget.text, checkSize + textMargin);
}

void GadgetPainter::PaintButton()
{
    Box(style::button);
    WriteInMiddle(gadget.text);
}

void GadgetPainter::PaintBitmapButton()
{
    const bool isOn = gadget.Has(VX3_FLAG_TOGGLE) && gadget.value != 0;
    if (isOn)
        Box(style::shade);
    const VX3Bitmap* picture = gadget.normal.Get();
    if (!picture && !gui::CanBeUsed(gadget))
        return; // a place for what is shown at times
    if (!picture)
        return Frame({ place.x + 3, place.y + 3, place.width - 6, place.height - 6 }, style::frame);
    const gui::Size size = { core::BitmapServices()->width(picture), core::BitmapServices()->height(picture) };
    const gui::Place target = { place.x + (place.width - size.width) / 2, place.y + (place.height - size.height) / 2, size.width,
                                size.height };
    raster.Draw(picture, target, { 0, 0, size.width, size.height }, clip, true);
    if (!gui::CanBeUsed(gadget))
        Fade(target);
}

// Every other pixel of what cannot be used becomes background.
void GadgetPainter::Fade(const gui::Place& part)
{
    for (int y = 0; y < part.height; ++y)
        for (int x = y % 2; x < part.width; x += 2)
            Fill({ part.x + x, part.y + y, 1, 1 }, style::window);
}

void GadgetPainter::PaintCombo()
{
    Box(style::button);
    std::u16string shown = gadget.text;
    for (const gui::ComboRow& row : gadget.rows)
        if (!row.text.empty() && !gadget.Has(VX3_FLAG_EDIT) && row.value == static_cast<int32_t>(gadget.value))
            shown = row.text;
    const gui::Point arrow = { place.x + place.width - arrowWidth + 3, place.y + place.height / 2 - 2 };
    for (int row = 0; row < 4; ++row)
        Fill({ arrow.x + row, arrow.y + row, 8 - 2 * row, 1 }, TextColour());
    clip = clip.Cut({ place.x, place.y, place.width - arrowWidth, place.height });
    WriteLeft(shown, textMargin);
}

void GadgetPainter::PaintSlider()
{
    const int middle = place.y + place.height / 2;
    const int knob = place.x + static_cast<int>(Share() * (place.width - knobWidth));
    Fill({ place.x, middle - 1, place.width, 3 }, style::shade);
    Fill({ place.x, middle - 1, knob - place.x, 3 }, style::accent);
    const gui::Place handle = { knob, place.y + 2, knobWidth, place.height - 4 };
    Fill(handle, style::button);
    Frame(handle, HasFocus() ? style::accent : style::frame);
}

void GadgetPainter::PaintProgress()
{
    Box(style::field);
    const double share = std::clamp(gadget.value, 0.0, 1.0);
    Fill({ place.x + 1, place.y + 1, static_cast<int>(share * (place.width - 2)), place.height - 2 }, style::accent);
}

void GadgetPainter::PaintSeparator()
{
    if (place.height > place.width)
        Fill({ place.x + place.width / 2, place.y, 1, place.height }, style::frame);
    else
        Fill({ place.x, place.y + place.height / 2, place.width, 1 }, style::frame);
}

std::u16string GadgetPainter::ValueText() const
{
    char text[32];
    std::snprintf(text, sizeof text, "%g%s", gadget.value, gadget.Has(VX3_FLAG_PERCENT) ? " %" : "");
    return core::Text(std::string_view(text)).Units();
}

std::u16string GadgetPainter::DateText() const
{
    char text[32];
    std::snprintf(text, sizeof text, "%04u-%02u-%02u", gadget.date.year, gadget.date.month, gadget.date.day);
    return core::Text(std::string_view(text)).Units();
}

} // namespace

std::optional<size_t> TabAt(const gui::Gadget& tabs, gui::Point at)
{
    gui::Place tab = { 0, 0, 0, gui::Metrics().tabBar };
    for (size_t page = 0; page < tabs.children.size(); ++page) {
        tab.width = TabWidth(*tabs.children[page]);
        if (tab.Has(at))
            return page;
        tab.x += tab.width;
    }
    return std::nullopt;
}

void DrawGadget(Raster& raster, FixedFont& font, const gui::Gadget& gadget, const gui::Place& place, const gui::Place& clip)
{
    GadgetPainter(raster, font, gadget, place, clip).Paint();
}

} // namespace vx3::headless
