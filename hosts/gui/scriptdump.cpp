#include "gui/scriptdump.h"

#include <array>
#include <charconv>
#include <cstdio>

#include "core/values.h"
#include "gui/gadgettree.h"
#include "gui/layoutfile.h"
#include "gui/treestate.h"

namespace vx3::gui {

namespace {

bool HasValue(const Gadget& gadget)
{
    switch (gadget.shape.kind) {
    case VX3_GADGET_TABS:
    case VX3_GADGET_NUMBER:
    case VX3_GADGET_CHECK:
    case VX3_GADGET_COMBO:
    case VX3_GADGET_SLIDER:
    case VX3_GADGET_PROGRESS: return true;
    case VX3_GADGET_BITMAP_BUTTON: return gadget.Has(VX3_FLAG_TOGGLE);
    default: return false;
    }
}

std::string Number(double value)
{
    constexpr int digits = 6;
    std::array<char, 32> text = {};
    const auto written = std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::general, digits);
    return std::string(text.data(), written.ptr);
}

std::string Date(const VX3FileDate& date)
{
    std::array<char, 32> text = {};
    std::snprintf(text.data(), text.size(), " %04d-%02d-%02d", date.year, date.month, date.day);
    return text.data();
}

std::string DescribeGadget(const Gadget& gadget)
{
    std::string text(WordOfKind(gadget.shape.kind));
    if (gadget.shape.id)
        text += " " + std::to_string(gadget.shape.id);
    if (HasValue(gadget))
        text += " " + Number(gadget.value);
    if (gadget.shape.kind == VX3_GADGET_DATE)
        text += Date(gadget.date);
    if (!gadget.text.empty())
        text += " \"" + core::Text(std::u16string_view(gadget.text)).Utf8() + "\"";
    for (const ComboRow& row : gadget.rows)
        text += (&row == &gadget.rows.front() ? " of " : ", ")
            + (row.text.empty() ? "-" : std::to_string(row.value) + " " + core::Text(std::u16string_view(row.text)).Utf8());
    text += CanBeUsed(gadget) ? "" : " disabled";
    text += gadget.IsShown() ? "" : " hidden";
    return text;
}

std::string DescribeRow(const TreeState& tree, const TreeRow& row)
{
    const AskScope scope;
    const bool isSelected = tree.table->isSelected && tree.table->isSelected(tree.object, row.row);
    return std::string(row.hasExpander ? row.isOpen ? "- " : "+ " : "  ") + core::Text(std::u16string_view(NameOfRow(tree, row.row))).Utf8()
        + (isSelected ? " selected" : "");
}

class Describer
{
public:
    std::string text;

    void Add(Gadget& gadget, int depth)
    {
        AddLine(DescribeGadget(gadget), depth);
        if (!gadget.IsShown())
            return;
        for (const auto& child : gadget.children)
            Add(*child, depth + 1);
        if (gadget.inner && gadget.inner->root)
            Add(*gadget.inner->root, depth + 1);
        if (gadget.tree)
            AddRows(*gadget.tree, depth + 1);
    }

private:
    void AddLine(const std::string& line, int depth) { text += std::string(static_cast<size_t>(2 * depth), ' ') + line + "\n"; }

    void AddRows(TreeState& tree, int depth)
    {
        for (const TreeRow& row : std::vector<TreeRow>(RowsOf(tree)))
            AddLine(DescribeRow(tree, row), depth + row.depth);
    }
};

} // namespace

std::string DescribeGadgets(Dialog& window)
{
    Describer describer;
    if (window.root)
        describer.Add(*window.root, 0);
    return describer.text;
}

std::string DescribeFocus(const Dialog& window)
{
    return "focus " + (window.focus ? DescribeGadget(*window.focus) : std::string("nowhere")) + "\n";
}

} // namespace vx3::gui
