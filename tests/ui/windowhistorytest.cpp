// The menus of a window's history: what their rows are called, and where a choice leads.

#include "windowfixture.h"

#include "services/resources.h"

using namespace browser;
using namespace vx3::tests;

namespace {

class HistoryMenu : public WindowTest
{
protected:
    HistoryMenu()
    {
        Disk().AddFile("/p/sub/a.txt", "a");
        Disk().AddFolder("/p/other");
    }

    using Direction = BrowserHistory::Direction;

    // The rows; `answer` is chosen.
    std::string Ask(BrowserDialog& window, Direction direction, const std::string& answer)
    {
        gui.GetToolkit().User().Queue(answer);
        window.ShowHistoryMenu(direction);
        gui.GetToolkit().Turn();
        return gui.GetToolkit().User().Shown();
    }
};

TEST_F(HistoryMenu, NamesWhatIsThereAndWhatIsGone)
{
    Disk().AddFolder("/p/gone");
    const Ref<TestPlace> place = AddPlace("vanished");
    BrowserDialog& window = Open("/p");
    window.GoTo(NodeOf("/p/gone"));
    window.GoTo(place);
    window.GoTo(ContentRef());
    window.GoTo(NodeOf("/p/sub"));
    Disk().Remove("/p/gone");
    NodeOf("/p")->MarkDirty();
    place->Remove();
    const std::string unknown = Utf8(ResourceText(Texts::UnknownPlace));
    EXPECT_EQ(Ask(window, Direction::Back, "0"), "900011 " + unknown + "\n900012 " + unknown + "\n900013 gone\n900014 p\n");
    EXPECT_EQ(UrlOf(window), "/p/sub") << "nothing was chosen";
    EXPECT_EQ(HistoryOf(window), "/p /p/gone test:/vanished - [/p/sub]");
}

TEST_F(HistoryMenu, AChoiceGoesSoManySteps)
{
    BrowserDialog& window = Open("/p");
    for (const char* path : { "/p/sub", "/p/other", "/" })
        window.GoTo(NodeOf(path));
    (void)Ask(window, Direction::Back, "900012");
    EXPECT_EQ(HistoryOf(window), "/p [/p/sub] /p/other /");
    EXPECT_EQ(UrlOf(window), "/p/sub");
    EXPECT_EQ(Ask(window, Direction::Forward, "900012").find("900011 other\n900012 "), 0u);
    EXPECT_EQ(HistoryOf(window), "/p /p/sub /p/other [/]");
    EXPECT_EQ(UrlOf(window), "/");
    (void)Ask(window, Direction::Back, "900013");
    EXPECT_EQ(UrlOf(window), "/p");
    (void)Ask(window, Direction::Forward, "900011");
    EXPECT_EQ(HistoryOf(window), "/p [/p/sub] /p/other /");
}

// Kept: what is gone shows the roots, and that becomes an entry.
TEST_F(HistoryMenu, AChoiceThatIsGoneShowsTheRoots)
{
    BrowserDialog& window = Open("/p/sub");
    window.GoTo(NodeOf("/p/other"));
    window.GoTo(NodeOf("/p"));
    Disk().Remove("/p/sub");
    Tick();
    (void)Ask(window, Direction::Back, "900012");
    EXPECT_EQ(UrlOf(window), "roots");
    EXPECT_EQ(HistoryOf(window), "/p/sub [-]");
    EXPECT_EQ(Ask(window, Direction::Back, "0"), "900011 sub\n");
}

// The user may close the window while its menu is open.
TEST_F(HistoryMenu, OfAWindowThatClosesMeanwhileDoesNothing)
{
    BrowserDialog& window = Open("/p");
    window.GoTo(NodeOf("/p/sub"));
    VX3MenuServices menu = *host->gui->menu;
    VX3GuiServices services = *host->gui;
    VX3Host patched = *host;
    services.menu = &menu;
    patched.gui = &services;
    static BrowserDialog* closed;
    closed = &window;
    menu.popup = [](VX3Dialog, const VX3Container*, int32_t, int32_t) -> int32_t {
        (void)closed->Close();
        return BrowserHistory::menuBase + 1;
    };
    const VX3Host* before = std::exchange(browser::host, &patched);
    window.ShowHistoryMenu(Direction::Back);
    browser::host = before;
    EXPECT_EQ(CountOpen(), 0u);
    EXPECT_FALSE(window.GetNode());
    EXPECT_EQ(Watches(), 0);
    EXPECT_EQ(Setting(Preference::LastPlace), "/p/sub");
}

} // namespace
