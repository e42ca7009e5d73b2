#include "headless/gadgetneeds.h"

#include <algorithm>

#include "core/services.h"
#include "headless/fixedfont.h"

namespace vx3::headless {

namespace {

constexpr int fieldHeight = cellHeight + 2 * textMargin;
constexpr int buttonMargin = 12;
constexpr int leastButton = 60;
constexpr int pictureMargin = 4;
constexpr int iconSize = 16; // of a button without a picture
constexpr int separatorSize = 5;

// Of fields whose text is not known beforehand, in cells.
constexpr int fieldCells = 20;
constexpr int multilineCells = 30;
constexpr int multilineRows = 4;
constexpr int numberCells = 8;
constexpr int dateCells = 10;
constexpr gui::Size sliderSize = { 100, 18 };
constexpr gui::Size progressSize = { 100, 14 };

gui::Size FieldOf(int cells)
{
    return { cells * cellWidth + 2 * textMargin, fieldHeight };
}

gui::Size NeedOfText(std::u16string_view text)
{
    gui::Size need = { 0, cellHeight };
    for (size_t end = text.find(u'\n'); end != text.npos; end = text.find(u'\n')) {
        need = { std::max(need.width, WidthOfText(text.substr(0, end))), need.height + cellHeight };
        text.remove_prefix(end + 1);
    }
    return need.Widened({ WidthOfText(text), 0 });
}

gui::Size NeedOfButton(const gui::Gadget& gadget)
{
    return { std::max(leastButton, WidthOfText(gadget.text) + 2 * buttonMargin), fieldHeight };
}

// A sign that a host draws as large as this is meant for fine screens, and takes the room of an icon.
constexpr int sideOfFineSigns = 128;

gui::Size SizeOfPicture(const gui::Picture& picture)
{
    if (!picture)
        return {};
    const gui::Size size = { core::BitmapServices()->width(picture.Get()), core::BitmapServices()->height(picture.Get()) };
    return size.width < sideOfFineSigns ? size : gui::Size{ iconSize, iconSize };
}

gui::Size NeedOfBitmapButton(const gui::Gadget& gadget)
{
    const gui::Size size = gui::Size{ iconSize, iconSize }.Widened(SizeOfPicture(gadget.normal)).Widened(SizeOfPicture(gadget.second));
    return { size.width + 2 * pictureMargin, size.height + 2 * pictureMargin };
}

gui::Size NeedOfCombo(const gui::Gadget& gadget)
{
    int width = 0;
    for (const gui::ComboRow& row : gadget.rows)
        width = std::max(width, WidthOfText(row.text));
    return { std::max(leastButton, width + 2 * textMargin + arrowWidth), fieldHeight };
}

} // namespace

gui::Size NeedOfContents(const gui::Gadget& gadget)
{
    switch (gadget.shape.kind) {
    case VX3_GADGET_TEXT: return NeedOfText(gadget.text);
    case VX3_GADGET_EDIT: return FieldOf(fieldCells);
    case VX3_GADGET_MULTILINE: return { FieldOf(multilineCells).width, multilineRows * cellHeight + 2 * textMargin };
    case VX3_GADGET_NUMBER: return FieldOf(numberCells);
    case VX3_GADGET_DATE: return FieldOf(dateCells);
    case VX3_GADGET_CHECK: return { checkSize + textMargin + WidthOfText(gadget.text), fieldHeight };
    case VX3_GADGET_BUTTON: return NeedOfButton(gadget);
    case VX3_GADGET_BITMAP_BUTTON: return NeedOfBitmapButton(gadget);
    case VX3_GADGET_COMBO: return NeedOfCombo(gadget);
    case VX3_GADGET_SLIDER: return sliderSize;
    case VX3_GADGET_PROGRESS: return progressSize;
    case VX3_GADGET_SEPARATOR: return { separatorSize, separatorSize };
    default: return {};
    }
}

} // namespace vx3::headless
