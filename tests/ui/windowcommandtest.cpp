// The commands of the host's menus, and those of a window's own buttons and menu.

#include "windowfixture.h"

#include <algorithm>
#include <set>

#include "services/resources.h"

using namespace browser;
using namespace vx3::tests;
using vx3::core::FindCommand;
using vx3::core::RegisteredCommand;
using vx3::core::RegisteredCommands;

namespace {

// Every command that there may be, in the order of registration. Those of later panes may be absent.
struct CommandCase {
    int32_t id;
    int32_t name;     // number of its text; 0 for what the host names itself
    bool needsWindow; // without one it is disabled
};
constexpr CommandCase commandCases[] = {
    { 1018406, 10024, true },  { 1018422, 10016, true },  { 1018423, 10015, true },  { 1018424, 10023, true },  { 1018426, 10004, false },
    { 1018427, 10003, true },  { 1018428, 10005, false }, { 1018429, 10006, false }, { 1023861, 10007, false }, { 1018431, 10010, true },
    { 1018432, 10012, false }, { 1018433, 10013, false }, { 1018513, 10409, false }, { 1019739, 10042, true },  { 1019740, 10041, true },
    { 1019741, 10043, true },  { 1017163, 30023, false }, { 300001003, 0, true },    { 300001004, 0, true },    { 300001005, 0, true },
    { 300001006, 0, true },    { 300001007, 0, true },    { 300001008, 0, true },    { 1019904, 10051, true },  { 1019905, 10050, true },
    { 1019906, 10047, true },  { 1019907, 10048, true },  { 1019908, 10049, true },  { 1019909, 10045, true },  { 1019910, 10044, true },
    { 1019911, 10046, true },  { 1020075, 10021, true },  { 1020076, 10022, true },  { 1020077, 10019, true },  { 1020078, 10020, true },
    { 1020079, 10018, true },  { 1020080, 10017, true },
};
constexpr int32_t goBack = 1019740, goForward = 1019739, goUp = 1019741, openWindow = 1017163, openNext = 1018426, rescan = 1018431,
                  goHome = 1019911, openPreferences = 1018432;
constexpr uint32_t commandFlags = 0x10000000;

class WindowCommands : public WindowTest
{
protected:
    WindowCommands()
    {
        Disk().AddFile("/p/sub/a.txt", "a");
        Disk().AddFolder("/p/other");
        Disk().AddFolder("/profile/home/desktop");
        SetSetting(Preference::StartUrl, "/p/other");
    }

    static const CommandCase* FindCase(int32_t id)
    {
        const CommandCase* found = std::find_if(std::begin(commandCases), std::end(commandCases), [id](auto& row) { return row.id == id; });
        return found == std::end(commandCases) ? nullptr : found;
    }
    static bool Execute(int32_t id) { return FindCommand(id)->Execute(); }
    static uint32_t StateOf(int32_t id) { return FindCommand(id)->State(); }
};

// --- The table ---

TEST_F(WindowCommands, AreRegisteredOnceInTheirOrderWithNameAndHelp)
{
    std::ptrdiff_t last = -1;
    std::set<std::string> helps;
    for (const RegisteredCommand& command : RegisteredCommands()) {
        const CommandCase* row = FindCase(command.id);
        ASSERT_TRUE(row) << command.id;
        EXPECT_GT(row - commandCases, last) << command.id;
        last = row - commandCases;
        EXPECT_EQ(command.name, row->name ? Utf8(ResourceText(row->name)) : "") << command.id;
        EXPECT_TRUE(helps.insert(command.help).second) << command.help << " is told of two commands";
        EXPECT_FALSE(command.help.empty() || command.help[0] == '#') << command.id;
        EXPECT_EQ(command.flags, commandFlags) << command.id;
    }
    EXPECT_GT(helps.size(), 20u);
    ASSERT_EQ(vx3::core::RegisteredMenus().size(), 1u);
    const vx3::core::RegisteredMenu& menu = vx3::core::RegisteredMenus()[0];
    EXPECT_EQ(menu.id, openWindow);
    EXPECT_EQ(menu.name, Utf8(ResourceText(Texts::ModuleName)));
    EXPECT_EQ(RegisteredCommands()[menu.position - 1].id, goHome) << "the menu stands behind it";
}

TEST_F(WindowCommands, WithoutAWindowThoseThatNeedOneAreDisabledAndDoNothing)
{
    SetSetting(Preference::LastPlace, "/p");
    for (const RegisteredCommand& command : RegisteredCommands()) {
        const bool needsWindow = FindCase(command.id)->needsWindow;
        EXPECT_EQ(command.State(), needsWindow ? 0u : uint32_t(VX3_COMMAND_ENABLED)) << command.id;
        EXPECT_TRUE(!needsWindow || command.Execute()) << command.id;
    }
    EXPECT_EQ(CountOpen(), 0u);
    EXPECT_EQ(Setting(Preference::LastPlace), "/p");
}

TEST_F(WindowCommands, WithAWindowTheirStateIsWhatItCanDo)
{
    BrowserDialog& window = Open(ContentRef());
    const auto disabled = [] {
        std::string ids;
        for (const RegisteredCommand& command : RegisteredCommands())
            if (!(command.State() & VX3_COMMAND_ENABLED))
                ids += " " + std::to_string(command.id);
        return ids;
    };
    const std::string back = " 1019740", forward = " 1019739", up = " 1019741";
    EXPECT_EQ(disabled(), forward + back + up) << "the root view is where one came in";
    window.GoTo(NodeOf("/p"));
    EXPECT_EQ(disabled(), forward);
    window.GoTo(NodeOf("/p/sub"));
    EXPECT_TRUE(window.GoBack());
    EXPECT_EQ(disabled(), "");
    EXPECT_TRUE(window.GoBack());
    EXPECT_EQ(disabled(), back + up);
    EXPECT_FALSE(window.GoBack());
    Close(window);
    EXPECT_EQ(StateOf(goForward), 0u);
}

TEST_F(WindowCommands, FiltersAreSwitchesOfTheWindow)
{
    struct Row {
        int32_t id;
        bool FolderFilter::*flag;
    };
    const Row rows[] = { { 1020075, &FolderFilter::showNative }, { 1020076, &FolderFilter::showOther3d },
                         { 1020077, &FolderFilter::showImages }, { 1020078, &FolderFilter::showMovies },
                         { 1020079, &FolderFilter::showKnown },  { 1020080, &FolderFilter::showUnknown } };
    BrowserDialog &other = Open("/p/sub"), &window = Open("/p/sub");
    for (const Row& row : rows) {
        EXPECT_EQ(StateOf(row.id), uint32_t{ VX3_COMMAND_ENABLED | VX3_COMMAND_CHECKED }) << row.id;
        EXPECT_TRUE(Execute(row.id));
        EXPECT_EQ(StateOf(row.id), uint32_t{ VX3_COMMAND_ENABLED }) << row.id;
        for (const Row& each : rows)
            EXPECT_EQ(window.Pane().GetFilter().*each.flag, each.id != row.id) << row.id << " against " << each.id;
        EXPECT_TRUE(other.Pane().GetFilter().*row.flag);
        EXPECT_TRUE(Execute(row.id));
        EXPECT_TRUE(window.Pane().GetFilter().*row.flag) << row.id;
    }
    for (const RegisteredCommand& command : RegisteredCommands()) {
        const bool isFilter = command.id >= rows[0].id && command.id <= rows[5].id;
        EXPECT_EQ((command.State() & VX3_COMMAND_CHECKED) != 0, isFilter) << command.id;
    }
}

struct PlaceCase {
    int32_t id;
    const char* url;
};

TEST_F(WindowCommands, GoToTheirPlaces)
{
    const PlaceCase rows[] = { { 1019904, "favorite:/" }, { 1019905, "search:/" }, { 1019906, "preset:/" },
                               { 1019907, "catalog:/" },  { 1019908, "recent:/" }, { 1019909, "/profile/home/desktop" },
                               { 1019910, "file:/" },     { goHome, "/p/other" },  { goUp, "/p" },
                               { goBack, "/p/other" },    { goForward, "/p" } };
    BrowserDialog& window = Open("/p/sub");
    for (const PlaceCase& row : rows) {
        EXPECT_TRUE(Execute(row.id));
        EXPECT_EQ(UrlOf(window), row.url) << row.id;
    }
    EXPECT_TRUE(SetPreferenceText(Preference::StartUrl, String()));
    EXPECT_TRUE(Execute(goHome));
    EXPECT_EQ(UrlOf(window), "roots") << "of a user who has no start";
    window.GoTo(NodeOf("/p/sub"));
    SetSetting(Preference::StartUrl, "/p/gone");
    EXPECT_TRUE(Execute(goHome));
    EXPECT_EQ(UrlOf(window), "/p/sub") << "what leads nowhere changes nothing";
}

TEST_F(WindowCommands, OpenWindowsWhereTheUserIsOrStarts)
{
    EXPECT_TRUE(Execute(openNext));
    EXPECT_EQ(UrlOf(*ActiveDialog()), "/p/other") << "there is none to go by";
    ActiveDialog()->GoTo(NodeOf("/p/sub"));
    EXPECT_TRUE(Execute(openNext));
    EXPECT_EQ(UrlOf(*ActiveDialog()), "/p/sub");
    EXPECT_TRUE(Execute(openWindow));
    EXPECT_EQ(UrlOf(*ActiveDialog()), "/p/other");
    SetSetting(Preference::StartUrl, "/p/sub/gone/deeper");
    EXPECT_TRUE(Execute(openWindow));
    EXPECT_EQ(UrlOf(*ActiveDialog()), "/p/sub");
    while (CountOpen() < windowSlots)
        ASSERT_TRUE(Execute(openWindow));
    EXPECT_FALSE(Execute(openWindow));
    EXPECT_FALSE(Execute(openNext));
    EXPECT_EQ(CountOpen(), size_t{ windowSlots });
    EXPECT_EQ(gui.GetToolkit().DescribeCursor(), "");
}

TEST_F(WindowCommands, ReadAFolderAgainAndShowThePreferences)
{
    testHost.Faults().Fail(vx3::testing::FailClass::Watch, 1, vx3::testing::Failing::FromThereOn);
    BrowserDialog& window = Open("/p/sub");
    Disk().AddFile("/p/sub/b.txt", "b");
    Tick();
    EXPECT_EQ(Entries(window), "a.txt");
    EXPECT_TRUE(Execute(rescan));
    EXPECT_EQ(Entries(window), "a.txt b.txt");
    EXPECT_EQ(HistoryOf(window), "[/p/sub]");
    EXPECT_TRUE(Execute(openPreferences));
    EXPECT_EQ(gui.GetToolkit().User().Shown().rfind("preferences: ", 0), 0u) << gui.GetToolkit().User().Shown();
}

TEST_F(WindowCommands, SelectInTheWindow)
{
    Disk().AddFile("/p/sub/b.txt", "b");
    BrowserDialog& window = Open("/p/sub");
    EXPECT_TRUE(Execute(VX3_EDIT_SELECT_ALL));
    EXPECT_EQ(Entries(window), "[a.txt] [b.txt]");
    window.Pane().GetList().SetSelected(0, false);
    EXPECT_TRUE(Execute(VX3_EDIT_INVERT));
    EXPECT_EQ(Entries(window), "[a.txt] b.txt");
    EXPECT_TRUE(Execute(VX3_EDIT_SELECT_NONE));
    EXPECT_EQ(Entries(window), "a.txt b.txt");
}

// --- Those of the window ---

TEST_F(WindowCommands, ButtonsGoToTheirPlaces)
{
    const PlaceCase rows[] = { { 10064, "/profile/home/desktop" },
                               { 10065, "/profile/home" },
                               { 10066, "preset:/" },
                               { 10067, "catalog:/" },
                               { 10068, "favorite:/" },
                               { 10070, "catalog:/" },
                               { 10071, "favorite:/" } };
    BrowserDialog& window = Open("/p/sub");
    for (const PlaceCase& row : rows) {
        EXPECT_TRUE(Command(window, row.id));
        EXPECT_EQ(UrlOf(window), row.url) << row.id;
    }
    SetSetting(Preference::HomeUrl, "/p/other");
    EXPECT_TRUE(Command(window, 10065));
    EXPECT_EQ(UrlOf(window), "/p/other");
    SetSetting(Preference::HomeUrl, "/p/gone");
    window.GoTo(NodeOf("/p"));
    EXPECT_TRUE(Command(window, 10065));
    EXPECT_EQ(UrlOf(window), "/p");
    for (int32_t id : { 0, 4711, 10029, 10039 })
        EXPECT_FALSE(Command(window, id)) << id;
}

TEST_F(WindowCommands, UpGoesByTheUrlToTheRootsAndSelectsWhereOneCameFrom)
{
    BrowserDialog& window = Open("/p/sub");
    EXPECT_TRUE(Command(window, 10069));
    EXPECT_EQ(UrlOf(window), "/p");
    EXPECT_EQ(Entries(window), "other [sub]");
    window.GoTo(ContentRef(contentTree.Computer()));
    EXPECT_TRUE(Command(window, 10069));
    EXPECT_EQ(UrlOf(window), "roots");
    const std::string entries = Entries(window);
    EXPECT_EQ(std::count(entries.begin(), entries.end(), '['), 1) << entries;
    EXPECT_TRUE(Command(window, 10069));
    EXPECT_EQ(UrlOf(window), "roots") << "and there it ends";
}

TEST_F(WindowCommands, ANewWindowShowsTheSamePlaceAndApplyGoesIntoAFolder)
{
    BrowserDialog& window = Open("/p");
    window.Pane().GetList().SetSelected(1, true);
    EXPECT_TRUE(Command(window, 10073));
    EXPECT_NE(ActiveDialog(), &window);
    EXPECT_EQ(UrlOf(*ActiveDialog()), "/p");
    EXPECT_TRUE(Command(window, 10008));
    EXPECT_EQ(UrlOf(window), "/p/sub");
    EXPECT_EQ(UrlOf(*ActiveDialog()), "/p");
}

TEST_F(WindowCommands, SortItemsAreRadioButtons)
{
    struct Row {
        int32_t id;
        SortMode key;
    };
    const Row rows[] = { { 10030, SortMode::Modified }, { 10032, SortMode::Created }, { 10034, SortMode::Size },
                         { 10036, SortMode::Type },     { 10038, SortMode::None },    { 10028, SortMode::Name } };
    BrowserDialog& window = Open("/p");
    const auto checked = [&](auto&& self, const std::vector<vx3::gui::MenuItem>& menu) -> std::string {
        std::string ids;
        for (const vx3::gui::MenuItem& item : menu)
            ids += (item.bits & VX3_MENU_CHECKED ? " " + std::to_string(item.id) : std::string()) + self(self, item.children);
        return ids;
    };
    for (const Row& row : rows) {
        EXPECT_TRUE(Command(window, row.id));
        EXPECT_EQ(window.Pane().GetSortKey(), row.key) << row.id;
        EXPECT_EQ(checked(checked, Shown(window).menu), " " + std::to_string(row.id));
    }
}

// A key that no gadget wanted: only this one means something to a window.
TEST_F(WindowCommands, BackspaceAnywhereGoesToTheParent)
{
    BrowserDialog& window = Open("/p/sub");
    const auto press = [&](int32_t key) {
        vx3::gui::Input input;
        input.device = vx3::gui::Device::Keyboard;
        input.channel = key;
        return gui.GetDesk().FeedKey(Shown(window), input);
    };
    EXPECT_TRUE(press(VX3_KEY_BACKSPACE));
    EXPECT_EQ(UrlOf(window), "/p");
    EXPECT_EQ(Entries(window), "other [sub]");
    EXPECT_FALSE(press(VX3_KEY_HOME));
    EXPECT_EQ(UrlOf(window), "/p");
    window.GoTo(ContentRef());
    EXPECT_TRUE(press(VX3_KEY_BACKSPACE));
    EXPECT_EQ(UrlOf(window), "roots");
}

} // namespace
