// Where a window opens, and what a saved layout keeps of one.

#include "windowfixture.h"

#include "gui/savedlayout.h"
#include "services/resources.h"

using namespace browser;
using namespace vx3::tests;

namespace {

// Keys of what a layout holds of a window.
constexpr int32_t urlKey = 0, compactKey = 1, zoomKey = 2, singleClickKey = 3;

class WindowLayout : public WindowTest
{
protected:
    WindowLayout()
    {
        Disk().AddFile("/p/sub/a.txt", "a");
        Disk().AddFolder("/p/other");
        SetSetting(Preference::StartUrl, "/p");
    }
    ~WindowLayout() override { gui.GetDesk().SetSavedLayout({}); }

    void Save(BaseContainer& layout) { gui.GetDesk().SaveLayout(*layout.Value()); }
    void Keep(const BaseContainer& layout) { gui.GetDesk().SetSavedLayout(*layout.Value()); }
    // A layout of one window.
    void KeepWindowWith(const BaseContainer& contents)
    {
        using namespace vx3::gui;
        BaseContainer window, layout;
        EXPECT_TRUE(window.SetInt32(SavedId, browserCommandId) && window.SetInt32(SavedWidth, 300) && window.SetInt32(SavedHeight, 200));
        EXPECT_TRUE(window.SetContainer(SavedContents, contents) && layout.SetContainer(0, window));
        Keep(layout);
    }
    // As the host does for each window that it had open.
    static bool Restore(int32_t slot)
    {
        const vx3::core::RegisteredCommand* command = vx3::core::FindCommand(browserCommandId);
        return command->table->restore(command->object, slot);
    }
    std::string StoredSize()
    {
        return std::to_string(GetPreferenceNumber(Preference::WindowWidth)) + " "
            + std::to_string(GetPreferenceNumber(Preference::WindowHeight));
    }
    void Resize(BrowserDialog& window, int width, int height)
    {
        gui.GetDesk().UserResized(Shown(window), { width, height });
        gui.GetToolkit().Turn();
    }
};

TEST_F(WindowLayout, AWindowOpensWhereTheHostWantsAtTheSizeOfTheLastOne)
{
    BrowserDialog& first = Open("/p");
    const VX3WindowPlace& opened = Shown(first).opened;
    EXPECT_EQ(opened.id, browserCommandId);
    EXPECT_EQ(opened.subId, 0);
    EXPECT_EQ(std::to_string(opened.x) + " " + std::to_string(opened.y), "-1 -1");
    EXPECT_EQ(std::to_string(opened.width) + " " + std::to_string(opened.height), "800 750") << "of a user who never had one";
    Resize(first, 640, 480);
    EXPECT_EQ(StoredSize(), "640 480");
    const VX3WindowPlace& second = Shown(Open("/p")).opened;
    EXPECT_EQ(second.subId, 1);
    EXPECT_EQ(std::to_string(second.width) + " " + std::to_string(second.height), "640 480");
}

TEST_F(WindowLayout, ATitleIsTheModulesUntilSomebodyGivesOne)
{
    BrowserDialog& window = Open("/p");
    EXPECT_EQ(gui.GetDesk().KindName(Shown(window)), u"DIALOG_CONTENTBROWSER") << "what a layout of the host calls it";
    EXPECT_EQ(vx3::core::Text(Shown(window).title).Utf8(), Utf8(ResourceText(Texts::ModuleName)));
    const String title = TextOf("Assets"), none;
    Going going;
    going.title = &title;
    window.GoTo(NodeOf("/p/sub"), going);
    EXPECT_EQ(Shown(window).title, u"Assets");
    going.title = &none;
    window.GoTo(NodeOf("/p"), going);
    EXPECT_EQ(Shown(window).title, u"Assets");
}

struct SavedCase {
    bool compact;
    bool singleClick;
    const char* url;       // after the layout was restored
    const char* lastPlace; // then
    const char* lastAfter; // and when the user has gone elsewhere
};

// Kept, all three: a zoom is saved and not restored, only a compact window comes back to its
// place, and such a window is not remembered as the last place.
const SavedCase savedCases[] = {
    { false, false, "/p", "/p", "/p/other" },
    { false, true, "/p", "/p", "/p/other" },
    { true, false, "/p/sub", "/p/old", "/p/old" },
    { true, true, "/p/sub", "/p/old", "/p/old" },
};

TEST_F(WindowLayout, ComesBackAsItWasSaved)
{
    for (const SavedCase& row : savedCases) {
        SCOPED_TRACE(std::string(row.compact ? "compact" : "whole") + (row.singleClick ? ", single click" : ""));
        BaseContainer layout;
        BrowserDialog& saved = Open("/p/sub");
        Going going;
        going.compact = row.compact;
        saved.GoTo(NodeOf("/p/sub"), going);
        if (row.singleClick)
            saved.ToggleSingleClick();
        saved.Pane().SetZoom(0.75);
        Save(layout);
        Close(saved);
        SetSetting(Preference::LastPlace, "/p/old");
        EXPECT_TRUE(SetPreferenceFloat(Preference::FolderZoom, 0.5));

        Keep(layout);
        ASSERT_TRUE(Restore(0));
        BrowserDialog& window = *ActiveDialog();
        EXPECT_EQ(UrlOf(window), row.url);
        EXPECT_EQ(HistoryOf(window), "[" + std::string(row.url) + "]");
        EXPECT_EQ(window.IsSingleClick(), row.singleClick);
        EXPECT_EQ(window.Pane().GetZoom(), 0.5);
        EXPECT_EQ(Entries(window), row.compact ? "a.txt" : "other sub");
        EXPECT_EQ(Setting(Preference::LastPlace), row.lastPlace);
        window.GoTo(NodeOf("/p/other"));
        EXPECT_EQ(Setting(Preference::LastPlace), row.lastAfter);
        Close(window);
    }
}

TEST_F(WindowLayout, HoldsWhatTheNextOneNeeds)
{
    BaseContainer layout;
    BrowserDialog& window = Open("/p/sub");
    window.Pane().SetZoom(0.75);
    window.ToggleSingleClick();
    Save(layout);
    const BaseContainer* contents = layout.GetContainer(0)->GetContainer(vx3::gui::SavedContents);
    ASSERT_TRUE(contents && contents->GetContainer(browserCommandId));
    const BaseContainer& values = *contents->GetContainer(browserCommandId);
    EXPECT_EQ(Utf8(values.GetText(urlKey)), "file://localhost/p/sub");
    EXPECT_EQ(values.GetInt32(compactKey, -1), 0);
    EXPECT_EQ(values.GetFloat(zoomKey, -1), 0.75);
    EXPECT_EQ(values.GetInt32(singleClickKey, -1), 1);
}

TEST_F(WindowLayout, ARestoredWindowDoesNotDecideOnTheSizeOfOthers)
{
    BaseContainer layout;
    BrowserDialog& saved = Open("/p");
    Resize(saved, 640, 480);
    Save(layout);
    Close(saved);
    Keep(layout);
    ASSERT_TRUE(Restore(0));
    EXPECT_EQ(Shown(*ActiveDialog()).size, (vx3::gui::Size{ 640, 480 }));
    Resize(*ActiveDialog(), 500, 400);
    EXPECT_EQ(StoredSize(), "640 480");
    Resize(Open("/p"), 700, 300);
    EXPECT_EQ(StoredSize(), "700 300") << "but one that the user opened does";
}

// What a layout holds may be old, of another version, or of somebody else.
TEST_F(WindowLayout, WhatIsMissingInALayoutIsAsInANewWindow)
{
    BaseContainer nothing, stranger, compactOnly;
    EXPECT_TRUE(stranger.SetContainer(4711, nothing));
    {
        BaseContainer values;
        EXPECT_TRUE(values.SetInt32(compactKey, 1) && compactOnly.SetContainer(browserCommandId, values));
    }
    struct Row {
        const BaseContainer& contents;
        const char* url;
    };
    const Row rows[] = { { nothing, "/p" }, { stranger, "/p" }, { compactOnly, "roots" } };
    for (const Row& row : rows) {
        KeepWindowWith(row.contents);
        ASSERT_TRUE(Restore(0));
        EXPECT_EQ(UrlOf(*ActiveDialog()), row.url);
        Resize(*ActiveDialog(), 500, 400);
        EXPECT_EQ(StoredSize(), "800 750");
        Close(*ActiveDialog());
    }
}

TEST_F(WindowLayout, ACompactWindowWhosePlaceIsGoneAtTheNextStartShowsTheRoots)
{
    {
        BaseContainer layout;
        Going going;
        going.compact = true;
        Open("/p/sub").GoTo(NodeOf("/p/sub"), going);
        Save(layout);
        Keep(layout);
    }
    End();
    Disk().Remove("/p/sub");
    Start();
    ASSERT_TRUE(Restore(0));
    EXPECT_EQ(UrlOf(*ActiveDialog()), "roots");
    EXPECT_EQ(HistoryOf(*ActiveDialog()), "[-]");
}

TEST_F(WindowLayout, WhatCannotBeRestoredLeavesNothing)
{
    EXPECT_FALSE(Restore(0)) << "nothing was saved";
    EXPECT_EQ(FindBrowserWindow(0), nullptr);
    EXPECT_EQ(ActiveDialog(), nullptr);
    BaseContainer layout;
    BrowserDialog& window = Open("/p");
    Save(layout);
    Keep(layout);
    EXPECT_FALSE(Restore(0)) << "it is open";
    EXPECT_FALSE(Restore(1)) << "saved for slot 0 only";
    for (int32_t slot : { -1, windowSlots })
        EXPECT_FALSE(Restore(slot)) << slot;
    EXPECT_EQ(CountOpen(), 1u);
    EXPECT_EQ(ActiveDialog(), &window);
    EXPECT_EQ(Watches(), 1);
}

} // namespace
