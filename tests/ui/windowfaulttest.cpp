// A window from its opening to its closing with one call after the other failing: no crash,
// nothing left behind, and the next window is as if nothing had been.

#include "windowfixture.h"

using namespace browser;
using namespace vx3::tests;
using vx3::testing::FailClass;
using vx3::testing::FailEachInTurn;
using vx3::testing::Failing;

namespace {

struct FaultCase {
    const char* name;
    FailClass kind;
    int64_t leastRuns;
};

class WindowFaults : public WindowTest
{
protected:
    WindowFaults()
    {
        Disk().AddFile("/p/sub/a.txt", "a");
        Disk().AddFile("/p/sub/b.png", "b");
        Disk().AddFile("/p/c.txt", "c");
        SetSetting(Preference::StartUrl, "/p");
        KeepACompactWindow();
        Use(); // what is made once and kept, such as icons and the nodes, is there from now on
    }
    ~WindowFaults() override { gui.GetDesk().SetSavedLayout({}); }

    void KeepACompactWindow()
    {
        VX3Container layout = {};
        BrowserDialog& window = Open("/p");
        Going going;
        going.compact = true;
        window.GoTo(NodeOf("/p/sub"), going);
        gui.GetDesk().SaveLayout(layout);
        gui.GetDesk().SetSavedLayout(layout);
        host->container->destruct(&layout);
        Close(window);
    }

    // One window that the user opens, and one from the saved layout. How many of them opened.
    int Use()
    {
        const vx3::core::RegisteredCommand* command = vx3::core::FindCommand(browserCommandId);
        const bool opened = command->Execute();
        if (opened)
            UseWindow(*ActiveDialog());
        const bool restored = command->table->restore(command->object, 0);
        if (restored) {
            Tick();
            (void)gui.GetDesk().AskAndClose(Shown(*ActiveDialog()));
        }
        gui.GetToolkit().Turn();
        gui.GetToolkit().User() = {}; // the module may have said that something failed
        return opened + restored;
    }
    void UseWindow(BrowserDialog& window)
    {
        Tick();
        window.GoTo(NodeOf("/p/sub"));
        Tick();
        Select(window);
        window.Pane().SetZoom(window.Pane().GetZoom() > 0.5 ? 0.3 : 0.6);
        (void)Command(window, window.Pane().GetSortKey() == SortMode::Name ? 10034 : 10028);
        (void)window.GoBack();
        (void)window.GoForward();
        window.GoUp();
        window.GoUpByUrl();
        AskForTheHistory(window);
        Save(window);
        (void)gui.GetDesk().AskAndClose(Shown(window));
    }
    void Select(BrowserDialog& window)
    {
        const ContentRef child = NodeOf("/p/sub/a.txt"), folder = window.GetNode();
        window.Pane().GetList().SetSelected(1, true);
        window.NodeChangedWithChild(child, folder.Get());
        NotifyChanged(folder);
        Tick();
    }
    void AskForTheHistory(BrowserDialog& window)
    {
        gui.GetToolkit().User().Queue("900012");
        window.ShowHistoryMenu(BrowserHistory::Direction::Back);
        gui.GetToolkit().Turn();
    }
    void Save(BrowserDialog& window)
    {
        VX3Container layout = {};
        String text;
        gui.GetDesk().SaveLayout(layout);
        host->container->destruct(&layout);
        for (const char* what : { "list", "history", "state" })
            (void)window.Describe(what, text);
    }
    void ExpectNothingOpen()
    {
        EXPECT_EQ(CountOpen(), 0u);
        EXPECT_EQ(ActiveDialog(), nullptr);
        EXPECT_EQ(Watches(), 0);
        EXPECT_EQ(gui.GetToolkit().DescribeCursor(), "");
        for (const std::string& violation : testHost.Checked().TakeViolations())
            ADD_FAILURE() << violation;
    }
    // The next one is whole.
    void ExpectAWindow()
    {
        BrowserDialog& window = Open("/p/sub");
        Tick();
        EXPECT_EQ(UrlOf(window), "/p/sub");
        EXPECT_EQ(Entries(window), "a.txt b.png");
        window.GoUp();
        EXPECT_EQ(Entries(window), "[sub] c.txt");
        EXPECT_EQ(HistoryOf(window), "/p/sub [/p]");
        EXPECT_EQ(Watches(), 1);
        Close(window);
    }
};

TEST_F(WindowFaults, LeaveNothingBehind)
{
    const FaultCase rows[] = { { "Memory", FailClass::Memory, 500 },
                               { "Watch", FailClass::Watch, 2 },
                               { "StartWalk", FailClass::StartWalk, 2 },
                               { "NextEntry", FailClass::NextEntry, 4 },
                               { "Inspect", FailClass::Inspect, 1 } };
    for (const FaultCase& row : rows)
        for (Failing failing : { Failing::Once, Failing::FromThereOn }) {
            const std::string name = std::string(row.name) + (failing == Failing::Once ? "Once" : "FromThereOn");
            int opened = 0;
            const int64_t runs = FailEachInTurn(testHost.Faults(), row.kind, failing, [&](int64_t nth) {
                SCOPED_TRACE(name + " " + std::to_string(nth));
                opened = Use();
                ExpectNothingOpen();
            });
            EXPECT_EQ(opened, 2) << "in the run that had no failure";
            EXPECT_GE(runs, row.leastRuns) << name;
            RecordProperty(name, std::to_string(runs));
            ExpectAWindow();
        }
}

} // namespace
