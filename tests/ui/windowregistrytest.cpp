// Which windows there are: slots, the one in front, and openings that fail.

#include "windowfixture.h"

using namespace browser;
using namespace vx3::tests;
using vx3::gui::Desk;

namespace {

class WindowSlots : public WindowTest
{
protected:
    WindowSlots() { Disk().AddFile("/p/sub/a.txt", "a"); }

    // "0 2": the slots with an open window.
    static std::string OpenSlots()
    {
        std::string text;
        for (int32_t slot = 0; slot < windowSlots; slot++)
            if (FindBrowserWindow(slot))
                text += (text.empty() ? "" : " ") + std::to_string(slot);
        return text;
    }
    static int32_t SlotOf(const BrowserDialog& window)
    {
        int32_t slot = 0;
        while (slot < windowSlots && FindBrowserWindow(slot) != &window)
            slot++;
        return slot;
    }
    void Raise(BrowserDialog& window)
    {
        EXPECT_TRUE(window.Raise());
        gui.GetToolkit().Turn();
    }
    static bool OpenAt(const std::string& url)
    {
        BrowserURL start(TextOf(url));
        return OpenBrowserWindow(start);
    }
};

TEST_F(WindowSlots, ThereAreSixteen)
{
    for (int32_t slot = 0; slot < windowSlots; slot++) {
        EXPECT_EQ(SlotOf(Open("/p")), slot);
        EXPECT_EQ(Shown(*ActiveDialog()).opened.subId, slot);
    }
    BrowserDialog* active = ActiveDialog();
    EXPECT_FALSE(OpenBrowserWindow(NodeOf("/p/sub")));
    EXPECT_FALSE(OpenAt("file://localhost/p/sub"));
    EXPECT_EQ(gui.GetToolkit().DescribeCursor(), "");
    EXPECT_EQ(CountOpen(), size_t{ windowSlots });
    EXPECT_EQ(ActiveDialog(), active);
    EXPECT_EQ(Watches(), 1);
}

TEST_F(WindowSlots, AreUsedAgainBeforeEmptyOnes)
{
    BrowserDialog &first = Open("/p"), &second = Open("/p"), &third = Open("/p");
    Close(second);
    Close(first);
    EXPECT_EQ(OpenSlots(), "2");
    EXPECT_EQ(SlotOf(Open("/p/sub")), 0);
    EXPECT_EQ(SlotOf(Open("/p/sub")), 1);
    EXPECT_EQ(SlotOf(Open("/p/sub")), 3);
    EXPECT_EQ(HistoryOf(*FindBrowserWindow(0)), "[/p/sub]") << "nothing is left of the one before";
    EXPECT_EQ(UrlOf(third), "/p");
    EXPECT_EQ(FindBrowserWindow(-2), nullptr);
    EXPECT_EQ(FindBrowserWindow(windowSlots), nullptr);
}

// It comes back into its own code, though the host has closed it.
TEST_F(WindowSlots, AWindowIsNotDeletedWhileItsCallbackRuns)
{
    BrowserDialog& window = Open("/p");
    {
        const WindowHold hold(window);
        Close(window);
        EXPECT_EQ(SlotOf(Open("/p")), 1);
        EXPECT_FALSE(window.IsOpen());
        window.GoUp();
        EXPECT_FALSE(window.GetNode());
    }
    EXPECT_EQ(SlotOf(Open("/p")), 0);
}

TEST_F(WindowSlots, ALeafIsShownSelectedInItsFolder)
{
    BrowserDialog& window = Open("/p/sub/a.txt");
    EXPECT_EQ(UrlOf(window), "/p/sub");
    Tick();
    EXPECT_EQ(Entries(window), "[a.txt]");
    const ContentRef top(Make<TestPlace>()("leaf", "test:/leaf", 0u));
    top->InsertLast(contentTree.tree);
    BrowserDialog& roots = Open(top);
    EXPECT_EQ(UrlOf(roots), "roots");
    Tick();
    EXPECT_NE(Entries(roots).find("[leaf]"), std::string::npos) << Entries(roots);
    top->Remove();
}

TEST_F(WindowSlots, WhatIsLeftOfAUrlIsShown)
{
    struct Row {
        const char* url;
        const char* shown;
    };
    const Row rows[] = { { "file://localhost/p/sub", "/p/sub" },     { "file://localhost/p/sub/gone/deeper", "/p/sub" },
                         { "file://localhost/p/subordinate", "/p" }, { "file://localhost/gone", "/" },
                         { "nothing:/of/the/kind", "file:/" },       { "", "roots" } };
    for (const Row& row : rows) {
        ASSERT_TRUE(OpenAt(row.url)) << row.url;
        EXPECT_EQ(UrlOf(*ActiveDialog()), row.shown) << row.url;
        EXPECT_EQ(gui.GetToolkit().DescribeCursor(), "");
        Close(*ActiveDialog());
    }
}

TEST_F(WindowSlots, TheActiveOneIsTheLastThatGotTheFocusUntilItCloses)
{
    EXPECT_EQ(ActiveDialog(), nullptr);
    BrowserDialog &first = Open("/p"), &second = Open("/p"), &third = Open("/p");
    EXPECT_EQ(ActiveDialog(), &third);
    EXPECT_EQ(FindBrowserWindow(-1), &third);
    Raise(first);
    EXPECT_EQ(ActiveDialog(), &first);
    Close(second);
    EXPECT_EQ(ActiveDialog(), &first) << "another one closed";
    SetActiveDialog(&third);
    Close(third);
    EXPECT_NE(ActiveDialog(), &third);
    Raise(first);
    Close(first);
    EXPECT_EQ(ActiveDialog(), nullptr);
    EXPECT_EQ(FindBrowserWindow(-1), nullptr);
}

// --- Openings that fail ---

class WindowRefusal : public WindowSlots
{
protected:
    WindowRefusal()
        : patched(*host)
        , services(*host->gui)
        , dialog(*services.dialog)
        , gadget(*services.gadget)
    {
        services.dialog = &dialog;
        services.gadget = &gadget;
        patched.gui = &services;
        before = std::exchange(browser::host, &patched);
    }
    ~WindowRefusal() override { browser::host = before; }

    void Mend()
    {
        dialog = *Desk::Services()->dialog;
        gadget = *Desk::Services()->gadget;
    }

    VX3Host patched;
    VX3GuiServices services;
    VX3DialogServices dialog;
    VX3GadgetServices gadget;

private:
    const VX3Host* before;
};

TEST_F(WindowRefusal, LeavesNothing)
{
    struct Row {
        const char* name;
        std::function<void()> refuse;
    };
    const Row rows[] = {
        { "create", [this] { dialog.create = [](void*, const VX3DialogTable*) -> VX3Dialog { return 0; }; } },
        { "open", [this] { dialog.open = [](VX3Dialog, const VX3WindowPlace*) -> VX3Bool { return 0; }; } },
        { "the pane", [this] { dialog.attach = [](VX3Dialog, VX3Dialog, int32_t) -> VX3Bool { return 0; }; } },
        { "the layout", [this] { gadget.loadLayout = [](VX3Dialog, VX3Resources*, int32_t) -> VX3Bool { return 0; }; } },
        { "gadgets",
          [this] { gadget.add = [](VX3Dialog, const VX3GadgetShape*, const VX3String*, const VX3String*) -> VX3Bool { return 0; }; } },
    };
    const std::function<bool()> ways[] = { [] { return OpenBrowserWindow(NodeOf("/p/sub")); },
                                           [] { return OpenAt("file://localhost/p/sub"); }, [] { return RestoreBrowserWindow(1); } };
    BrowserDialog& other = Open("/p");
    for (const Row& row : rows)
        for (const auto& opens : ways) {
            row.refuse();
            EXPECT_FALSE(opens()) << row.name;
            Mend();
            gui.GetToolkit().Turn();
            EXPECT_EQ(OpenSlots(), "0") << row.name;
            EXPECT_EQ(CountOpen(), 1u) << row.name;
            EXPECT_EQ(ActiveDialog(), &other) << row.name;
            EXPECT_EQ(Watches(), 1) << row.name;
            EXPECT_EQ(gui.GetToolkit().DescribeCursor(), "") << row.name;
        }
    EXPECT_EQ(SlotOf(Open("/p/sub")), 1);
}

TEST_F(WindowRefusal, AHostWithoutWindowsOpensNone)
{
    patched.gui = nullptr;
    EXPECT_FALSE(OpenBrowserWindow(NodeOf("/p")));
    EXPECT_FALSE(OpenAt("file://localhost/p"));
    EXPECT_FALSE(RestoreBrowserWindow(0));
    EXPECT_EQ(ActiveDialog(), nullptr);
    EXPECT_EQ(Watches(), 0);
}

} // namespace
