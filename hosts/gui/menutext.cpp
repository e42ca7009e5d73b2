#include "gui/menutext.h"

#include "core/values.h"

namespace vx3::gui {

namespace {

constexpr size_t indent = 2;

std::string Label(const MenuItem& item)
{
    return core::Text(WithoutMnemonic(item.text)).Utf8();
}

std::string MarkOf(uint32_t bits)
{
    if (!(bits & VX3_MENU_CHECKED))
        return {};
    return bits & VX3_MENU_RADIO ? "(o) " : "[x] ";
}

std::string RowOf(const MenuItem& item)
{
    switch (item.kind) {
    case MenuItem::Kind::Separator: return "-";
    case MenuItem::Kind::Menu: return Label(item) + " >";
    default: break;
    }
    const std::string label = item.bits & VX3_MENU_DISABLED ? "(" + Label(item) + ")" : Label(item);
    return std::to_string(item.id) + " " + MarkOf(item.bits) + label;
}

void AddRows(const std::vector<MenuItem>& menu, size_t depth, std::string& text)
{
    for (const MenuItem& item : menu) {
        text += std::string(depth * indent, ' ') + RowOf(item) + "\n";
        AddRows(item.children, depth + 1, text);
    }
}

const MenuItem* FindRow(const std::vector<MenuItem>& menu, const std::string& answer)
{
    for (const MenuItem& item : menu) {
        const bool isRow = item.kind == MenuItem::Kind::Item || item.kind == MenuItem::Kind::Command;
        if (isRow && !(item.bits & VX3_MENU_DISABLED) && (std::to_string(item.id) == answer || Label(item) == answer))
            return &item;
        if (const MenuItem* found = FindRow(item.children, answer))
            return found;
    }
    return nullptr;
}

} // namespace

std::u16string WithoutMnemonic(const std::u16string& text)
{
    std::u16string plain;
    for (size_t index = 0; index < text.size(); ++index) {
        if (text[index] == u'&' && index + 1 < text.size())
            ++index; // a doubled sign is one
        plain += text[index];
    }
    return plain;
}

std::string DescribeMenu(const std::vector<MenuItem>& menu)
{
    std::string text;
    AddRows(menu, 0, text);
    return text;
}

bool ChooseFromMenu(const std::vector<MenuItem>& menu, const std::string& answer, int32_t& id)
{
    id = 0;
    if (answer.empty() || answer == "0")
        return true;
    const MenuItem* row = FindRow(menu, answer);
    if (row)
        id = row->id;
    return row != nullptr;
}

} // namespace vx3::gui
