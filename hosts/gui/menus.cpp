#include "gui/menus.h"

#include "core/registry.h"
#include "core/services.h"
#include "core/values.h"
#include "gui/askscope.h"

namespace vx3::gui {

namespace {

constexpr int32_t titleKey = 1; // of a menu inside, in its own container

const VX3ContainerServices& Containers()
{
    return *core::ContainerServices();
}

std::u16string TextUnder(const VX3Container& menu, int32_t key)
{
    core::Text text;
    Containers().getText(&menu, key, text.Get());
    return text.Units();
}

bool TakeEnding(std::u16string& text, std::u16string_view ending)
{
    if (!text.ends_with(ending))
        return false;
    text.resize(text.size() - ending.size());
    return true;
}

uint32_t TakeBits(std::u16string& text)
{
    uint32_t bits = 0;
    for (;;) {
        if (TakeEnding(text, u"&d&"))
            bits |= VX3_MENU_DISABLED;
        else if (TakeEnding(text, u"&c&"))
            bits |= VX3_MENU_CHECKED;
        else
            return bits;
    }
}

// In a popup menu `&` is a sign like any other.
std::u16string WithoutKeys(const std::u16string& text)
{
    std::u16string plain;
    for (char16_t unit : text)
        plain.append(unit == u'&' ? 2 : 1, unit);
    return plain;
}

void TakeText(MenuItem& item, std::u16string text)
{
    item.bits = TakeBits(text);
    item.text = WithoutKeys(text);
}

void AddRow(const VX3Container& menu, int32_t key, std::vector<MenuItem>& rows)
{
    MenuItem& item = rows.emplace_back();
    std::u16string text = TextUnder(menu, key);
    if (text.empty()) {
        item.kind = MenuItem::Kind::Separator;
        return;
    }
    item.id = key;
    TakeText(item, std::move(text));
}

void AddRows(const VX3Container& menu, bool isInside, std::vector<MenuItem>& rows);

void AddMenu(const VX3Container& inside, std::vector<MenuItem>& rows)
{
    MenuItem& item = rows.emplace_back();
    item.kind = MenuItem::Kind::Menu;
    TakeText(item, TextUnder(inside, titleKey));
    AddRows(inside, true, item.children);
}

void AddRows(const VX3Container& menu, bool isInside, std::vector<MenuItem>& rows)
{
    for (int32_t place = 0; place < Containers().count(&menu); ++place) {
        int32_t key = 0;
        int32_t type = 0;
        Containers().entryAt(&menu, place, &key, &type);
        if (type == VX3_VALUE_CONTAINER)
            AddMenu(*Containers().getContainer(&menu, key), rows);
        else if (type == VX3_VALUE_TEXT && !(isInside && key == titleKey))
            AddRow(menu, key, rows);
    }
}

} // namespace

std::vector<MenuItem> PopupRows(const VX3Container& menu)
{
    std::vector<MenuItem> rows;
    AddRows(menu, false, rows);
    return rows;
}

MenuItem* FindItem(std::vector<MenuItem>& menu, int32_t id)
{
    for (MenuItem& item : menu) {
        const bool isRow = item.kind == MenuItem::Kind::Item || item.kind == MenuItem::Kind::Command;
        if (isRow && item.id == id)
            return &item;
        if (MenuItem* found = FindItem(item.children, id))
            return found;
    }
    return nullptr;
}

// A command that nobody has registered is shown by its number and cannot be chosen.
void FillInCommand(MenuItem& item)
{
    const core::RegisteredCommand* command = core::FindCommand(item.id);
    item.text = command ? core::Text(command->name).Units() : std::u16string();
    if (item.text.empty())
        item.text = core::Text("#" + std::to_string(item.id)).Units();
    const AskScope scope;
    const uint32_t state = command ? command->State() : 0;
    item.bits = (state & VX3_COMMAND_ENABLED ? 0u : static_cast<uint32_t>(VX3_MENU_DISABLED))
        | (state & VX3_COMMAND_CHECKED ? static_cast<uint32_t>(VX3_MENU_CHECKED) : 0u);
}

void FillInCommands(std::vector<MenuItem>& menu)
{
    for (MenuItem& item : menu) {
        if (item.kind == MenuItem::Kind::Command)
            FillInCommand(item);
        FillInCommands(item.children);
    }
}

} // namespace vx3::gui
