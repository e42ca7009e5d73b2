#include "host/browsercommands.h"

#include "host/librarystore.h"
#include "host/prefspage.h"
#include "services/guitools.h"
#include "services/preferences.h"
#include "services/resources.h"
#include "storage/librarytable.h"
#include "ui/browserdialog.h"
#include "ui/browsergadgets.h"
#include "ui/windowregistry.h"

namespace browser {

namespace {

constexpr uint32_t commandFlags = 0x10000000; // the host's mark of a command for its menus

// One command. What it needs of a window, it gets; without a window it is disabled.
struct CommandRow {
    int32_t id;
    int32_t place; // in the order of registration, from 1; its help is told by it
    int32_t name;  // 0 for an id that the host knows
    void (*executeIn)(BrowserDialog& window);
    bool (*execute)() = nullptr; // of those that need no window; executeIn is none then
    bool (*isEnabled)(BrowserDialog& window) = nullptr;
    bool (*isChecked)(BrowserDialog& window) = nullptr;
};

// --- What they do ---

// What was loaded since the start, and not whole, is told with the window that shows it.
bool OpenMainWindow()
{
    BrowserURL url;
    GetStartUrl(url);
    TellOfDamagedLibraries(true);
    return OpenBrowserWindow(url);
}

// Another window on what the one in front shows.
bool OpenNextWindow()
{
    BrowserDialog* window = ActiveDialog();
    return window ? OpenBrowserWindow(window->GetNode()) : OpenMainWindow();
}

bool OpenPreferences()
{
    return OpenPreferencePage(browserPreferencesId);
}

bool CleanLibraries()
{
    const BusyCursor busy;
    if (!CompactAll())
        WriteConsole("a library could not be written anew");
    return true;
}

template <const char* const& Url>
void GoToUrl(BrowserDialog& window)
{
    BrowserURL url(Url);
    (void)window.GoToUrl(url);
}

constexpr const char* favouritesUrl = "favorite:/";
constexpr const char* searchUrl = "search:/";
constexpr const char* presetsUrl = "preset:/";
constexpr const char* catalogsUrl = "catalog:/";
constexpr const char* recentUrl = "recent:/";
constexpr const char* computerUrl = "file:/";

void GoToDesktop(BrowserDialog& window)
{
    FilePath path;
    if (!host->run->place(VX3_PLACE_DESKTOP, path.Value()))
        return;
    BrowserURL url(path);
    (void)window.GoToUrl(url);
}

void GoToStart(BrowserDialog& window)
{
    BrowserURL url;
    GetStartUrl(url);
    if (url.HasContent())
        (void)window.GoToUrl(url);
    else
        window.GoTo(ContentRef());
}

bool CanGoUp(BrowserDialog& window)
{
    return bool(window.GetNode());
}

template <bool FolderFilter::*Flag>
void ToggleFilter(BrowserDialog& window)
{
    FolderFilter filter = window.Pane().GetFilter();
    filter.*Flag = !(filter.*Flag);
    window.Pane().SetFilter(filter);
}

template <bool FolderFilter::*Flag>
bool IsFilterSet(BrowserDialog& window)
{
    return window.Pane().GetFilter().*Flag;
}

// --- The table ---

constexpr CommandRow InWindow(int32_t id, int32_t place, int32_t name, void (*run)(BrowserDialog&),
                              bool (*isEnabled)(BrowserDialog&) = nullptr)
{
    return { id, place, name, run, nullptr, isEnabled, nullptr };
}

constexpr CommandRow Anywhere(int32_t id, int32_t place, int32_t name, bool (*run)())
{
    return { id, place, name, nullptr, run, nullptr, nullptr };
}

template <bool FolderFilter::*Flag>
constexpr CommandRow Filter(int32_t id, int32_t place, int32_t name)
{
    return { id, place, name, ToggleFilter<Flag>, nullptr, nullptr, IsFilterSet<Flag> };
}

// In the order of registration. Places that are left out belong to commands that this
// module does not have yet.
constexpr CommandRow commandRows[] = {
    Anywhere(1018426, 5, Texts::NewWindow, OpenNextWindow),
    InWindow(1018431, 10, Texts::RescanFolder, [](BrowserDialog& window) { window.Rescan(); }),
    Anywhere(1018432, 11, Texts::OpenPreferences, OpenPreferences),
    Anywhere(1018433, 12, Texts::CleanCache, CleanLibraries),
    InWindow(
        1019739, 14, Texts::GoForward, [](BrowserDialog& window) { (void)window.GoForward(); },
        [](BrowserDialog& window) { return window.CanGoForward(); }),
    InWindow(
        1019740, 15, Texts::GoBack, [](BrowserDialog& window) { (void)window.GoBack(); },
        [](BrowserDialog& window) { return window.CanGoBack(); }),
    InWindow(
        1019741, 16, Texts::GoUp, [](BrowserDialog& window) { window.GoUpByUrl(); }, CanGoUp),
    Anywhere(browserCommandId, 17, Texts::OpenWindow, OpenMainWindow),
    InWindow(VX3_EDIT_SELECT_ALL, 21, 0, [](BrowserDialog& window) { window.Pane().SelectAll(); }),
    InWindow(VX3_EDIT_SELECT_NONE, 22, 0, [](BrowserDialog& window) { window.Pane().SelectNone(); }),
    InWindow(VX3_EDIT_INVERT, 23, 0, [](BrowserDialog& window) { window.Pane().InvertSelection(); }),
    InWindow(1019904, 24, Texts::GoToFavourites, GoToUrl<favouritesUrl>),
    InWindow(1019905, 25, Texts::GoToSearches, GoToUrl<searchUrl>),
    InWindow(1019906, 26, Texts::GoToPresets, GoToUrl<presetsUrl>),
    InWindow(1019907, 27, Texts::GoToCatalogs, GoToUrl<catalogsUrl>),
    InWindow(1019908, 28, Texts::GoToRecent, GoToUrl<recentUrl>),
    InWindow(1019909, 29, Texts::GoToDesktop, GoToDesktop),
    InWindow(1019910, 30, Texts::GoToComputer, GoToUrl<computerUrl>),
    InWindow(1019911, 31, Texts::GoToStartLocation, GoToStart),
    Filter<&FolderFilter::showNative>(1020075, 32, Texts::FilterNativeScenes),
    Filter<&FolderFilter::showOther3d>(1020076, 33, Texts::FilterOtherScenes),
    Filter<&FolderFilter::showImages>(1020077, 34, Texts::FilterImages),
    Filter<&FolderFilter::showMovies>(1020078, 35, Texts::FilterMovies),
    Filter<&FolderFilter::showKnown>(1020079, 36, Texts::FilterKnown),
    Filter<&FolderFilter::showUnknown>(1020080, 37, Texts::FilterUnknown),
};

constexpr int32_t menuPlace = 31; // the menu comes behind this command

// --- The host's side ---

const CommandRow& RowOf(void* object)
{
    return *static_cast<const CommandRow*>(object);
}

// A command that finds no window has done all there is to do.
VX3Bool ExecuteRow(void* object)
{
    const CommandRow& row = RowOf(object);
    if (row.execute)
        return row.execute();
    if (BrowserDialog* window = ActiveDialog())
        row.executeIn(*window);
    return 1;
}

uint32_t StateOfRow(void* object)
{
    const CommandRow& row = RowOf(object);
    if (row.execute)
        return VX3_COMMAND_ENABLED;
    BrowserDialog* window = ActiveDialog();
    if (!window)
        return 0;
    const bool isEnabled = !row.isEnabled || row.isEnabled(*window);
    const bool isChecked = row.isChecked && row.isChecked(*window);
    return (isEnabled ? uint32_t(VX3_COMMAND_ENABLED) : 0u) | (isChecked ? uint32_t(VX3_COMMAND_CHECKED) : 0u);
}

VX3Bool RestoreRow(void* object, int32_t subId)
{
    return RowOf(object).id == browserCommandId && RestoreBrowserWindow(subId);
}

constexpr VX3CommandTable commandTable = { nullptr, ExecuteRow, nullptr, RestoreRow, StateOfRow };

bool RegisterRow(const CommandRow& row)
{
    const String name = row.name ? ResourceText(row.name) : String();
    const String help = ResourceText(row.id == browserCommandId ? int32_t(Texts::OpenWindowHelp) : Texts::CommandHelpBase + row.place);
    return host->registry->registerCommand(row.id, name.Value(), commandFlags, 0, help.Value(), const_cast<CommandRow*>(&row),
                                           &commandTable);
}

bool RegisterMenu()
{
    const String name = ResourceText(Texts::ModuleName);
    return host->registry->registerMenu(browserCommandId, name.Value());
}

} // namespace

bool RegisterCommands()
{
    bool all = true;
    for (const CommandRow& row : commandRows) {
        all = RegisterRow(row) && all;
        if (row.place == menuPlace)
            all = RegisterMenu() && all;
    }
    return all;
}

} // namespace browser
