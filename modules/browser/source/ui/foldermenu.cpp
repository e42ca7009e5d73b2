#include "ui/foldermenu.h"

#include "services/resources.h"
#include "ui/folderactions.h"
#include "ui/foldercontentdialog.h"

namespace browser {

namespace {

enum class MenuGroup { None, Open, Go, System, Options };

struct MenuRow {
    int32_t command;
    int32_t text;
    MenuGroup group;
    bool (*isShown)(const MenuFacts& facts);
    bool (*isTicked)(const MenuFacts& facts); // none: never
    void (*run)(FolderContentDialog& dialog, const MenuFacts& facts);
};

constexpr const char* tickMark = "&c&";
constexpr int32_t firstSeparator = 2; // far from all commands; 1 has a meaning of its own

bool HasSelection(const MenuFacts& facts)
{
    return facts.HasSelection();
}

bool HasContainers(const MenuFacts& facts)
{
    return facts.areContainers;
}

bool HasFiles(const MenuFacts& facts)
{
    return facts.areFiles;
}

bool ShowsNode(const MenuFacts& facts)
{
    return facts.showsNode;
}

bool Always(const MenuFacts&)
{
    return true;
}

bool IsSingleClick(const MenuFacts& facts)
{
    return facts.isSingleClick;
}

void Apply(FolderContentDialog& dialog, const MenuFacts& facts)
{
    ForEachWhileOpen(dialog, facts.selected, [&](const NodeRef& item) { dialog.Open(ToContent(item), false); });
}

void OpenWindows(FolderContentDialog& dialog, const MenuFacts& facts)
{
    ForEachWhileOpen(dialog, facts.selected, [&](const NodeRef& item) { dialog.Window().OpenInNewWindow(ToContent(item)); });
}

void GoUp(FolderContentDialog& dialog, const MenuFacts&)
{
    dialog.GoUp();
}

void ShowFiles(FolderContentDialog& dialog, const MenuFacts& facts)
{
    ForEachWhileOpen(dialog, facts.selected, ShowInFileManager);
}

void OpenFiles(FolderContentDialog& dialog, const MenuFacts& facts)
{
    ForEachWhileOpen(dialog, facts.selected, OpenInSystem);
}

void ToggleSingleClick(FolderContentDialog& dialog, const MenuFacts&)
{
    dialog.Window().ToggleSingleClick();
}

// In the order in which they are shown.
constexpr MenuRow menuRows[] = {
    { 900012, Texts::MenuOpen, MenuGroup::Open, HasSelection, nullptr, Apply },
    { 900018, Texts::MenuOpenInWindow, MenuGroup::Open, HasContainers, nullptr, OpenWindows },
    { 900011, Texts::MenuGoUp, MenuGroup::Go, ShowsNode, nullptr, GoUp },
    { 900015, Texts::MenuShowInFileManager, MenuGroup::System, HasFiles, nullptr, ShowFiles },
    { 900016, Texts::MenuOpenWithSystem, MenuGroup::System, HasFiles, nullptr, OpenFiles },
    { 900025, Texts::MenuSingleClick, MenuGroup::Options, Always, IsSingleClick, ToggleSingleClick },
};

bool AreAll(const Array<NodeRef>& nodes, bool (*is)(BrowserContentNode& node))
{
    return !nodes.IsEmpty() && std::all_of(nodes.begin(), nodes.end(), [is](const NodeRef& node) { return is(*ContentOf(node)); });
}

} // namespace

void CountMenuFacts(FolderContentDialog& dialog, MenuFacts& facts)
{
    (void)dialog.GetList().GetSelection(facts.selected);
    facts.areContainers = AreAll(facts.selected, [](BrowserContentNode& node) { return node.CanHoldChildren(); });
    facts.areFiles = AreAll(facts.selected, [](BrowserContentNode& node) { return node.GetNodeType() == NodeType::Directory; });
    facts.showsNode = !!dialog.GetNode();
    facts.isSingleClick = dialog.Window().IsSingleClick();
}

bool MakeFolderMenu(const MenuFacts& facts, BaseContainer& menu)
{
    MenuGroup group = MenuGroup::None;
    int32_t separator = firstSeparator;
    for (const MenuRow& row : menuRows) {
        if (!row.isShown(facts))
            continue;
        if (group != MenuGroup::None && group != row.group && !menu.SetText(separator++, String()))
            return false;
        group = row.group;
        String text = ResourceText(row.text);
        if (row.isTicked && row.isTicked(facts) && !text.Append(tickMark))
            return false;
        if (!menu.SetText(row.command, text))
            return false;
    }
    return true;
}

void RunFolderCommand(int32_t command, FolderContentDialog& dialog, const MenuFacts& facts)
{
    for (const MenuRow& row : menuRows)
        if (row.command == command)
            row.run(dialog, facts);
}

} // namespace browser
