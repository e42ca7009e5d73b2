#include "headless/gadgetuse.h"

#include <algorithm>
#include <cstdio>
#include <optional>

#include "core/values.h"
#include "gui/gadgettree.h"
#include "headless/fixedfont.h"
#include "headless/gadgetneeds.h"
#include "headless/gadgetpicture.h"
#include "headless/natives.h"
#include "headless/seen.h"

namespace vx3::headless {

namespace {

constexpr int32_t spaceUnit = ' ';

bool HasText(const gui::Gadget& gadget)
{
    return gadget.shape.kind == VX3_GADGET_EDIT || gadget.shape.kind == VX3_GADGET_MULTILINE
        || (gadget.shape.kind == VX3_GADGET_COMBO && gadget.Has(VX3_FLAG_EDIT));
}

bool IsSwitch(const gui::Gadget& gadget)
{
    return gadget.shape.kind == VX3_GADGET_CHECK || (gadget.shape.kind == VX3_GADGET_BITMAP_BUTTON && gadget.Has(VX3_FLAG_TOGGLE));
}

bool IsButton(const gui::Gadget& gadget)
{
    return gadget.shape.kind == VX3_GADGET_BUTTON || gadget.shape.kind == VX3_GADGET_BITMAP_BUTTON;
}

bool HasRange(const gui::Gadget& gadget)
{
    return gadget.shape.kind == VX3_GADGET_NUMBER || gadget.shape.kind == VX3_GADGET_SLIDER;
}

// A bitmap button that switches is turned over by the desk.
void Activate(gui::Desk& desk, gui::Gadget& gadget)
{
    if (gadget.shape.kind == VX3_GADGET_CHECK)
        desk.UserSetValue(gadget, gadget.value == 0 ? 1 : 0);
    else
        desk.UserPressed(gadget);
}

bool TypeKey(gui::Desk& desk, gui::Gadget& gadget, const gui::Input& input)
{
    std::u16string text = gadget.text;
    const bool hasLines = gadget.shape.kind == VX3_GADGET_MULTILINE;
    switch (NativeOf(gadget).editor.Key(text, input.channel, input.qualifiers, input.text, hasLines, gadget.Has(VX3_FLAG_READ_ONLY))) {
    case LineEditor::Result::Moved: return true;
    case LineEditor::Result::Changed: desk.UserSetText(gadget, text, false); return true;
    case LineEditor::Result::Entered: desk.UserSetText(gadget, text, true); return true;
    default: return false;
    }
}

// The row before or behind the one that is chosen, past separators.
std::optional<int32_t> NeighbourRow(const gui::Gadget& gadget, bool goesDown)
{
    std::optional<int32_t> before;
    bool isBehind = false;
    for (const gui::ComboRow& row : gadget.rows) {
        if (row.text.empty())
            continue;
        if (isBehind)
            return row.value;
        if (row.value == static_cast<int32_t>(gadget.value)) {
            if (!goesDown)
                return before;
            isBehind = true;
        }
        before = row.value;
    }
    return std::nullopt;
}

int DirectionOf(int32_t key)
{
    if (key == VX3_KEY_UP || key == VX3_KEY_RIGHT)
        return 1;
    return key == VX3_KEY_DOWN || key == VX3_KEY_LEFT ? -1 : 0;
}

bool StepValue(gui::Desk& desk, gui::Gadget& gadget, int direction)
{
    if (gadget.shape.kind == VX3_GADGET_COMBO) {
        if (const std::optional<int32_t> row = NeighbourRow(gadget, direction < 0))
            desk.UserSetValue(gadget, *row);
        return true;
    }
    const double value = std::clamp(gadget.value + direction * gadget.step, gadget.least, gadget.most);
    if (value != gadget.value)
        desk.UserSetValue(gadget, value);
    return true;
}

bool IsRow(const gui::Gadget& gadget, double value)
{
    return std::any_of(gadget.rows.begin(), gadget.rows.end(),
                       [value](const gui::ComboRow& row) { return !row.text.empty() && row.value == value; });
}

bool ChooseDate(gui::Desk& desk, gui::Gadget& gadget, const std::u16string& text)
{
    unsigned year = 0;
    unsigned month = 0;
    unsigned day = 0;
    char rest = 0;
    if (std::sscanf(core::Text(text).Utf8().c_str(), "%4u-%2u-%2u%c", &year, &month, &day, &rest) != 3 || month < 1 || month > 12 || day < 1
        || day > 31)
        return false;
    VX3FileDate date = gadget.date;
    date.year = static_cast<uint16_t>(year);
    date.month = static_cast<uint16_t>(month);
    date.day = static_cast<uint16_t>(day);
    desk.UserSetDate(gadget, date);
    return true;
}

} // namespace

bool TakesFocusByMouse(const gui::Gadget& gadget)
{
    return TakesFocusByTab(gadget) && gadget.shape.kind != VX3_GADGET_BITMAP_BUTTON && gadget.shape.kind != VX3_GADGET_TABS;
}

bool TakesFocusByTab(const gui::Gadget& gadget)
{
    return gui::CanBeUsed(gadget)
        && (DrawsItself(gadget) || HasText(gadget) || IsSwitch(gadget) || IsButton(gadget) || HasRange(gadget)
            || gadget.shape.kind == VX3_GADGET_DATE || gadget.shape.kind == VX3_GADGET_COMBO || gadget.shape.kind == VX3_GADGET_TABS);
}

void PlaceCaret(gui::Gadget& gadget, gui::Point at)
{
    if (!HasText(gadget))
        return;
    size_t begin = 0;
    const int line = gadget.shape.kind == VX3_GADGET_MULTILINE ? (at.y - textMargin) / cellHeight : 0;
    for (int above = 0; above < line && gadget.text.find(u'\n', begin) != gadget.text.npos; ++above)
        begin = gadget.text.find(u'\n', begin) + 1;
    const size_t length = std::min(gadget.text.find(u'\n', begin), gadget.text.size()) - begin;
    const int column = std::max(0, at.x - textMargin + cellWidth / 2) / cellWidth;
    NativeOf(gadget).editor.Select(gadget.text, static_cast<int>(begin + std::min(static_cast<size_t>(column), length)), 0);
}

void EnterByTab(gui::Gadget& gadget)
{
    if (HasText(gadget) && gadget.shape.kind != VX3_GADGET_MULTILINE)
        NativeOf(gadget).editor.SelectAll(gadget.text);
}

void Click(gui::Desk& desk, gui::Gadget& gadget, gui::Point at)
{
    if (IsSwitch(gadget) || IsButton(gadget))
        return Activate(desk, gadget);
    if (gadget.shape.kind != VX3_GADGET_TABS)
        return;
    if (const std::optional<size_t> page = TabAt(gadget, at); page && static_cast<double>(*page) != gadget.value)
        desk.UserSetValue(gadget, static_cast<double>(*page));
}

bool PressKey(gui::Desk& desk, gui::Gadget& gadget, const gui::Input& input)
{
    if (DrawsItself(gadget))
        return desk.Feed(gadget, input);
    if (HasText(gadget) && TypeKey(desk, gadget, input))
        return true;
    if (gadget.shape.kind == VX3_GADGET_MULTILINE || gadget.shape.kind == VX3_GADGET_EDIT)
        return false;
    const bool isSpace = input.channel == VX3_KEY_SPACE || input.channel == spaceUnit;
    if (isSpace && (IsSwitch(gadget) || IsButton(gadget))) {
        Activate(desk, gadget);
        return true;
    }
    const int direction = DirectionOf(input.channel);
    return direction != 0 && (HasRange(gadget) || gadget.shape.kind == VX3_GADGET_COMBO) && StepValue(desk, gadget, direction);
}

bool ChooseValue(gui::Desk& desk, gui::Gadget& gadget, double value)
{
    const bool isPage = gadget.shape.kind == VX3_GADGET_TABS && value >= 0 && value < static_cast<double>(gadget.children.size());
    const bool isRow = gadget.shape.kind == VX3_GADGET_COMBO && IsRow(gadget, value);
    const bool isSwitched = IsSwitch(gadget) && (value == 0 || value == 1);
    const bool isInRange = HasRange(gadget) && value >= gadget.least && value <= gadget.most;
    if (!gui::CanBeUsed(gadget) || !(isPage || isRow || isSwitched || isInRange))
        return false;
    if (value != gadget.value)
        desk.UserSetValue(gadget, value);
    return true;
}

bool EnterText(gui::Desk& desk, gui::Gadget& gadget, const std::u16string& text)
{
    if (!gui::CanBeUsed(gadget) || gadget.Has(VX3_FLAG_READ_ONLY))
        return false;
    if (gadget.shape.kind == VX3_GADGET_DATE)
        return ChooseDate(desk, gadget, text);
    if (!HasText(gadget))
        return false;
    NativeOf(gadget).editor.Select(text, static_cast<int>(text.size()), 0);
    if (text != gadget.text)
        desk.UserSetText(gadget, text, false);
    return true;
}

} // namespace vx3::headless
