// How a window is laid out, its menu, and what it hears of the host.

#include "model/urlresolver.h"
#include "nodes/directorynode.h"
#include "services/preferences.h"
#include "services/resources.h"
#include "ui/browserdialog.h"
#include "ui/browsergadgets.h"
#include "ui/watchset.h"
#include "ui/windowregistry.h"

namespace browser {

namespace {

constexpr int32_t timerInterval = 250; // milliseconds
constexpr uint32_t fills = VX3_FLAG_FIT_H | VX3_FLAG_FIT_V | VX3_FLAG_SCALE_H | VX3_FLAG_SCALE_V;
constexpr const char* resourceName = "DIALOG_CONTENTBROWSER";

// Keys of what a saved layout holds of a window.
namespace SavedKey {
constexpr int32_t url = 0;
constexpr int32_t compact = 1;
constexpr int32_t zoom = 2;
constexpr int32_t singleClick = 3;
} // namespace SavedKey

// The sort items of the menu, in the order of SortMode.
constexpr int32_t sortItems[] = { 10028, 10030, 10032, 10034, 10036, 10038 };
constexpr int32_t sortTexts[] = { Texts::SortByName, Texts::SortByModified, Texts::SortByCreated,
                                  Texts::SortBySize, Texts::SortByType,     Texts::SortByNothing };
constexpr SortMode sortKeys[] = { SortMode::Name, SortMode::Modified, SortMode::Created, SortMode::Size, SortMode::Type, SortMode::None };

// Commands of the menu; 0 is a separator. Those that this build has not registered are absent.
constexpr int32_t fileCommands[] = { 1018426, 0, 1018431, 0, 1018432 };
constexpr int32_t editCommands[] = { 300001006, 300001007, 300001008 };
constexpr int32_t viewCommands[] = { 1020075, 1020076, 1020077, 1020078, 1020079, 1020080 };
constexpr int32_t goCommands[] = {
    1019740, 1019739, 1019741, 0, 1019911, 1019909, 1019910, 0, 1019906, 1019907, 1019904, 1019908, 1019905
};

} // namespace

// --- Life ---

bool BrowserDialog::OpenWindow(int32_t slot)
{
    VX3WindowPlace place = {};
    place.id = browserCommandId;
    place.subId = slot;
    place.x = place.y = -1;
    place.width = GetPreferenceNumber(Preference::WindowWidth);
    place.height = GetPreferenceNumber(Preference::WindowHeight);
    return Open(place);
}

bool BrowserDialog::RestoreWindow(int32_t slot, const BrowserURL& start)
{
    currentUrl = start;
    restoreNode = true;
    return Restore(browserCommandId, slot);
}

bool BrowserDialog::CreateLayout()
{
    WindowHold hold(*this);
    if (restoreNode)
        GoToStored();
    if (!LoadLayout(windowLayout) || !BuildPanes())
        return false;
    BuildMenu();
    (void)SetTitle(title.IsEmpty() ? ResourceText(Texts::ModuleName) : title);
    return true;
}

bool BrowserDialog::BuildPanes()
{
    VX3GadgetShape pane = {};
    pane.kind = VX3_GADGET_SUBDIALOG;
    pane.id = Gadget::folderPane;
    pane.flags = fills;
    return FlushGroup(Gadget::panes) && AddGadget(pane) && AttachSubDialog(folderDialog, Gadget::folderPane);
}

bool BrowserDialog::InitValues()
{
    WindowHold hold(*this);
    SetActiveDialog(this);
    ShowPossibleSteps();
    (void)SetTimer(timerInterval);
    folderDialog.ActivateView();
    return true;
}

// Before the pane is laid out, which finds its entries by the node. A layout means its place
// or none; of where windows start, what is left of it is shown.
void BrowserDialog::GoToStored()
{
    restoreNode = false;
    BrowserURL url = currentUrl;
    ContentRef node;
    if (fixedUrl)
        FindNodeByUrl(url, FindPlain, ContentRef(), node);
    else if (url.HasContent())
        FindNearestNode(url, node);
    GoTo(std::move(node));
}

void BrowserDialog::DestroyWindow()
{
    ForgetActiveDialog(this);
    wasClosed = true;
    BrowserURL url = currentUrl;
    SetCurrentNode(ContentRef());
    currentUrl = url;
    events.Clear();
}

// --- Menu ---

void BrowserDialog::BuildMenu()
{
    const auto addCommands = [this](int32_t text, std::span<const int32_t> commands) {
        (void)MenuBegin(text);
        for (int32_t command : commands)
            (void)(command ? MenuCommand(command) : MenuSeparator());
    };
    (void)MenuFlush();
    addCommands(Texts::FileMenu, fileCommands);
    (void)MenuEnd();
    addCommands(Texts::EditMenu, editCommands);
    (void)MenuEnd();
    addCommands(Texts::ViewMenu, viewCommands);
    (void)MenuSeparator();
    (void)MenuBegin(Texts::SortMenu);
    for (size_t i = 0; i < std::size(sortItems); i++)
        (void)MenuItem(sortItems[i], sortTexts[i], VX3_MENU_RADIO);
    (void)MenuEnd();
    (void)MenuEnd();
    addCommands(Texts::GoMenu, goCommands);
    (void)MenuEnd();
    (void)MenuFinish();
    ShowSortItem();
}

void BrowserDialog::ShowSortItem()
{
    for (size_t i = 0; i < std::size(sortItems); i++) {
        const bool isChecked = sortKeys[i] == folderDialog.GetSortKey();
        (void)SetMenuItem(sortItems[i], VX3_MENU_RADIO | (isChecked ? uint32_t(VX3_MENU_CHECKED) : 0u));
    }
}

bool BrowserDialog::IsSortCommand(int32_t id, SortMode& key) const
{
    for (size_t i = 0; i < std::size(sortItems); i++)
        if (sortItems[i] == id) {
            key = sortKeys[i];
            return true;
        }
    return false;
}

bool BrowserDialog::Command(int32_t id, const BaseContainer& event)
{
    WindowHold hold(*this);
    if (event.GetBool(VX3_COMMAND_MENU)) {
        ShowHistoryMenu(id == Gadget::back ? BrowserHistory::Direction::Back : BrowserHistory::Direction::Forward);
        return true;
    }
    SortMode key;
    if (IsSortCommand(id, key)) {
        folderDialog.SetSortKey(key);
        ShowSortItem();
        return true;
    }
    switch (id) {
    case Gadget::apply: folderDialog.ApplySelection(false); return true;
    case Gadget::desktop: GoToPlace(VX3_PLACE_DESKTOP); return true;
    case Gadget::home: GoToHome(); return true;
    case Gadget::presets: GoToRoot(0); return true;
    case Gadget::catalogs: GoToRoot(1); return true;
    case Gadget::favourites: GoToRoot(5); return true;
    case Gadget::up: GoUpByUrl(); return true;
    case Gadget::back: (void)GoBack(); return true;
    case Gadget::forward: (void)GoForward(); return true;
    case Gadget::newWindow: (void)OpenBrowserWindow(currentNode); return true;
    default: return false;
    }
}

// --- Messages ---

void BrowserDialog::CoreMessage(int32_t id, const BaseContainer& message)
{
    WindowHold hold(*this);
    if (id == VX3_MESSAGE_BROWSER && message.GetInt64(VX3_CORE_FIRST, 0) == CoreMessage::selectionChanged)
        UpdateSelectionPanes(false);
}

bool BrowserDialog::Message(int32_t code, const BaseContainer& message, BaseContainer& result)
{
    WindowHold hold(*this);
    switch (code) {
    case VX3_GUI_NAME: (void)result.SetText(VX3_KEY_NAME, String(resourceName)); return true;
    case VX3_GUI_FOCUS_GOT: TakeFocus(); return true;
    case VX3_GUI_KEY: return TakeKey(message);
    case VX3_GUI_WINDOW_SIZE: StoreSize(message); return true;
    case VX3_GUI_LAYOUT_RESTORE: RestoreFrom(message); return true;
    case VX3_GUI_LAYOUT_SAVE: SaveInto(result); return true;
    default: return false;
    }
}

// Folders above the one that is shown are not watched: the user has come back from where he
// may have renamed one.
void BrowserDialog::TakeFocus()
{
    SetActiveDialog(this);
    if (DirectoryNode* folder = AsDirectory(currentNode.Get()))
        RemoveIfGone(*folder);
}

// Comes only when no gadget wanted the key.
bool BrowserDialog::TakeKey(const BaseContainer& message)
{
    if (message.GetInt32(VX3_INPUT_CHANNEL, 0) != VX3_KEY_BACKSPACE)
        return false;
    GoUp();
    return true;
}

void BrowserDialog::StoreSize(const BaseContainer& message)
{
    if (layoutLoaded)
        return;
    (void)SetPreferenceNumber(Preference::WindowWidth, message.GetInt32(VX3_KEY_WINDOW_WIDTH, 0));
    (void)SetPreferenceNumber(Preference::WindowHeight, message.GetInt32(VX3_KEY_WINDOW_HEIGHT, 0));
}

// Kept: only a compact window takes the URL from a layout, and none takes the zoom.
void BrowserDialog::RestoreFrom(const BaseContainer& message)
{
    layoutLoaded = true;
    const BaseContainer* saved = message.GetContainer(VX3_GUI_LAYOUT_RESTORE);
    saved = saved ? saved->GetContainer(browserCommandId) : nullptr;
    if (!saved)
        return;
    compact = saved->GetInt32(SavedKey::compact, 0) != 0;
    singleClick = saved->GetInt32(SavedKey::singleClick, 0) != 0;
    if (!compact)
        return;
    fixedUrl = true;
    currentUrl.SetText(saved->GetText(SavedKey::url));
}

void BrowserDialog::SaveInto(BaseContainer& result)
{
    BaseContainer values, layout;
    const bool isComplete = values.SetText(SavedKey::url, currentUrl.GetText()) && values.SetInt32(SavedKey::compact, compact)
        && values.SetFloat(SavedKey::zoom, folderDialog.GetZoom()) && values.SetInt32(SavedKey::singleClick, singleClick)
        && layout.SetContainer(browserCommandId, values);
    if (isComplete)
        (void)result.SetContainer(VX3_GUI_LAYOUT_RESTORE, layout);
}

} // namespace browser
