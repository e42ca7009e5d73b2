// The folder pane: what it shows, where each folder was scrolled to, what it keeps of the
// user's settings, its controls and its menu.

#include <filesystem>

#include "panefixture.h"

#include "services/preferencesend.h"
#include "ui/foldermenu.h"
#include "ui/iconservice.h"

using namespace browser;
using namespace vx3::tests;
using vx3::testing::FailClass;
using vx3::testing::FailEachInTurn;
using vx3::testing::Failing;

namespace {

constexpr int32_t statusText = 10126, slider = 10127, smallest = 10128, largest = 10129, busy = 10130;

class FolderPane : public PaneTest
{
protected:
    FolderPane() { ReadPreferences(); }
    ~FolderPane() override
    {
        window.reset();
        pane.reset();
        EndPreferences();
    }
    std::string Status() { return gui.texts[statusText]; }
};

TEST_F(FolderPane, EachFolderIsShownWhereItWasLeft)
{
    const ContentRef other = AddFolder("g");
    for (char letter = 'a'; letter <= 'z'; letter++)
        Add(*other, std::string(1, letter));
    AddLetters(26);
    Open();
    gui.Scroll(3 * 79 + 10);
    Show(other);
    EXPECT_EQ(gui.scrolled, 0) << "never shown before";
    gui.Scroll(79);
    Show(folder);
    EXPECT_EQ(gui.scrolled, 3 * 79 + 10);
    Show(other);
    EXPECT_EQ(gui.scrolled, 79);
    pane->SetZoom(1); // one column of 271
    Show(folder);
    EXPECT_EQ(gui.scrolled, 12 * 271 + 10) << "by the entry, not by the pixel";
    pane->SetZoom(0.25);
    Show({});
    EXPECT_EQ(Entries(), "f g");
    gui.Resize(270, 40);
    gui.Scroll(30);
    Show(folder);
    Show({});
    EXPECT_EQ(gui.scrolled, 30) << "the roots have a place as well";
    folder->Remove();
    Show(folder);
    gui.Scroll(0);
    Show(other);
    Show(folder);
    EXPECT_EQ(gui.scrolled, 0) << "nothing is kept for a folder that has gone";
}

TEST_F(FolderPane, ARefreshKeepsThePlaceAndTheSelection)
{
    AddLetters(26);
    Open();
    gui.Scroll(2 * 79 + 5);
    Select({ 1, 9 });
    Add("0");
    pane->Refresh();
    EXPECT_EQ(gui.scrolled, 2 * 79 + 5);
    EXPECT_EQ(Entries().substr(0, 26), "0 a [b] c d e f g h i [j] ");
    EXPECT_EQ(Status(), "2 of 27 selected");
    ContentOf(At(2))->Remove();
    pane->Refresh();
    EXPECT_EQ(Status(), "1 of 26 selected");
}

// Scrolled to the end of a folder that loses its second half: where that leads is the place from
// then on, for what comes, for a zoom and for the next visit.
TEST_F(FolderPane, AShorterFolderIsNotScrolledBackWhenItGrows)
{
    const ContentRef other = AddFolder("g");
    const auto add = [this](int32_t from, int32_t to) {
        for (int32_t i = from; i < to; i++)
            Add(std::to_string(i));
    };
    add(10, 70);
    Open();
    gui.Scroll(15 * 79);
    EXPECT_EQ(gui.scrolled, 15 * 79 - 160);
    for (int32_t i = 59; i >= 30; i--)
        ContentOf(At(i))->Remove();
    pane->Refresh();
    const int32_t end = 8 * 79 - 160;
    const ScrollPlace place = { 20, 0, end - 5 * 79 };
    EXPECT_EQ(gui.scrolled, end);
    EXPECT_EQ(pane->GetPlace(), place) << "an entry that is there";
    pane->SetZoom(1); // one column of 271
    EXPECT_EQ(gui.scrolled, 20 * 271 + place.offset);
    pane->SetZoom(0.25);
    EXPECT_EQ(gui.scrolled, end);
    add(70, 79);
    pane->Refresh();
    EXPECT_EQ(gui.scrolled, end);
    Show(other);
    Show(folder);
    EXPECT_EQ(gui.scrolled, end);
}

// A layout that has not settled is no place: what it is to keep counts.
TEST_F(FolderPane, ARefreshInTheMiddleOfALayoutKeepsThePlace)
{
    AddLetters(26);
    Open();
    gui.Scroll(3 * 79 + 10);
    gui.BeginResize(140, 160); // two columns
    pane->Refresh();
    gui.Deliver();
    EXPECT_EQ(gui.scrolled, 6 * 79 + 10);
}

TEST_F(FolderPane, AClosedWindowComesBackAsItWas)
{
    AddLetters(26);
    Open();
    gui.Scroll(2 * 79 + 5);
    Select({ 3 });
    EXPECT_TRUE(window->Close());
    EXPECT_FALSE(pane->GetNode());
    EXPECT_EQ(Entries().substr(0, 12), ". . . [.] . ");
    Open();
    EXPECT_EQ(gui.scrolled, 2 * 79 + 5);
    EXPECT_EQ(Entries().substr(0, 10), "a b c [d] ");
    Select({ 4 });
    EXPECT_TRUE(window->Close());
    Add("0");
    pane->SetNode(folder, false, {}, ViewMode::Unchanged);
    EXPECT_TRUE(window->Open({}));
    pane->Refresh(); // as its window does before the sizes are known
    EXPECT_EQ(Entries().substr(0, 14), "0 a b c d [e] ");
    EXPECT_EQ(gui.scrolled, 2 * 79 + 5);
}

TEST_F(FolderPane, SettingANodeTellsTheWindow)
{
    PaneNode& child = Add("a");
    Add("b");
    const ContentRef other = AddFolder("g");
    Open();
    Show(folder);
    EXPECT_EQ(window->Did() + gui.Calls(), "") << "the same again";
    Select({ 1 });
    Show(folder, ContentRef(&child));
    EXPECT_EQ(Entries(), "[a] b");
    EXPECT_EQ(window->Did(), " update");
    Show(other);
    EXPECT_EQ(window->Did(), " update");
    EXPECT_EQ(Status(), "Empty folder");
    pane->Refresh();
    EXPECT_EQ(window->Did(), "");
    EXPECT_TRUE(window->Close());
    (void)window->Did();
    Show(folder, ContentRef(&child));
    EXPECT_EQ(window->Did(), " later a update") << "when it opens";
}

TEST_F(FolderPane, TheStatusCounts)
{
    Open();
    EXPECT_EQ(Status(), "Empty folder");
    Add("a");
    pane->Refresh();
    EXPECT_EQ(Status(), "1 entry");
    Add("b"), Add("c");
    pane->Refresh();
    EXPECT_EQ(Status(), "3 entries");
    EXPECT_FALSE(pane->HasSelection());
    Select({ 0, 2 });
    pane->ShowStatus();
    EXPECT_EQ(Status(), "2 of 3 selected");
    EXPECT_TRUE(pane->HasSelection());
}

TEST_F(FolderPane, WholeSelections)
{
    AddLetters(4);
    Open();
    Select({ 1, 2 });
    (void)gui.Calls();
    const struct {
        void (FolderContentDialog::*operation)();
        const char* entries;
    } rows[] = {
        { &FolderContentDialog::InvertSelection, "[a] b c [d]" },
        { &FolderContentDialog::SelectAll, "[a] [b] [c] [d]" },
        { &FolderContentDialog::SelectNone, "a b c d" },
    };
    for (const auto& row : rows) {
        ((*pane).*row.operation)();
        EXPECT_EQ(Entries(), row.entries);
        EXPECT_EQ(window->Did() + ";" + gui.Calls(), " update;redraw");
    }
}

// --- Settings ---

// Kept: the first three are read when a pane is made and never written. The order of a
// folder is read when the window opens, and forgotten when it closes.
TEST_F(FolderPane, SettingsAreReadAndWrittenWhereTheyBelong)
{
    EXPECT_TRUE(SetPreferenceFloat(Preference::Zoom, 0.5));
    EXPECT_TRUE(SetPreferenceNumber(Preference::SortKey, 2));
    FolderContentDialog made;
    EXPECT_EQ(made.GetZoom(), 0.5);
    EXPECT_EQ(made.GetSortKey(), SortMode::Created);

    EXPECT_TRUE(SetPreferenceFloat(Preference::FolderZoom, 0.75));
    EXPECT_TRUE(SetPreferenceNumber(Preference::FolderSortKey, 3));
    EXPECT_TRUE(SetPreferenceNumber(Preference::HitsSortKey, 4));
    EXPECT_TRUE(SetPreferenceNumber(Preference::ShowMovies, 0));
    Open();
    EXPECT_EQ(pane->GetZoom(), 0.75);
    EXPECT_EQ(pane->GetSortKey(), SortMode::Size);
    EXPECT_FALSE(pane->GetFilter().showMovies);
    pane->SetSortKey(SortMode::Modified);
    pane->SetZoom(1);
    EXPECT_EQ(GetPreferenceNumber(Preference::FolderSortKey), 3);
    EXPECT_EQ(GetPreferenceFloat(Preference::FolderZoom), 1);

    EXPECT_TRUE(window->Close());
    Open({});
    EXPECT_EQ(pane->GetSortKey(), SortMode::Type);
    EXPECT_EQ(pane->GetZoom(), 0.25);
    pane->SetSortKey(SortMode::Modified);
    pane->SetZoom(0.5);
    EXPECT_EQ(GetPreferenceNumber(Preference::HitsSortKey), 1) << "one lower";
    EXPECT_EQ(GetPreferenceFloat(Preference::HitsZoom), 0.5);
    EXPECT_EQ(GetPreferenceFloat(Preference::FolderZoom), 1);
    EXPECT_EQ(GetPreferenceFloat(Preference::Zoom), 0.5);
    EXPECT_EQ(GetPreferenceNumber(Preference::SortKey), 2);
}

// Kept: the slider moves in steps of 5 until a button was pressed, then in steps of 1.
TEST_F(FolderPane, ZoomControls)
{
    AddLetters(3);
    Open();
    EXPECT_EQ(gui.values[slider], 25);
    EXPECT_EQ(gui.steps[slider], 5);
    EXPECT_TRUE(gui.Use(slider, 40));
    EXPECT_EQ(pane->GetZoom(), 0.4);
    EXPECT_EQ(GetPreferenceFloat(Preference::FolderZoom), 0.4);
    EXPECT_EQ(gui.steps[slider], 5);
    EXPECT_TRUE(gui.Use(largest));
    EXPECT_EQ(pane->GetZoom(), 1);
    EXPECT_EQ(gui.values[slider], 100);
    EXPECT_EQ(gui.steps[slider], 1);
    EXPECT_TRUE(gui.Use(smallest));
    EXPECT_EQ(pane->GetZoom(), 0);
    EXPECT_EQ(gui.values[slider], 0);
    EXPECT_TRUE(gui.Use(slider, 7));
    EXPECT_EQ(gui.steps[slider], 1);
    (void)gui.Calls();
    EXPECT_TRUE(gui.Use(slider, 7));
    EXPECT_EQ(gui.Calls(), "") << "no change";
    EXPECT_FALSE(gui.Use(10120));
    pane->SetZoom(0.29);
    EXPECT_EQ(gui.values[slider], 29) << "a whole number, whatever the product is";
}

TEST_F(FolderPane, AFilterGoesByTypes)
{
    PanePlugin scene(1018023), image(1018021), movie(1018022), sound(1018114);
    PanePlugin native(1018023);
    native.typeName = ResourceText(Texts::NativeSceneType);
    scene.typeName = TextOf("Scene of others");
    Add("folder", Attribute::folder);
    Add("image").plugin = &image;
    Add("movie").plugin = &movie;
    Add("native").plugin = &native;
    Add("other").plugin = &scene;
    Add("sound").plugin = &sound;
    Add("unknown");
    Open();
    const struct {
        FolderFilter filter; // unknown, known, native, other 3D, movies, images
        const char* shown;
    } rows[] = {
        { {}, "folder image movie native other sound unknown" },
        { { false, true, true, true, true, true }, "folder image movie native other sound" },
        { { true, false, true, true, true, true }, "folder image movie native other unknown" },
        { { true, true, false, true, true, true }, "folder image movie native other sound unknown" },
        { { true, true, true, false, true, true }, "folder image movie native sound unknown" },
        { { true, true, false, false, true, true }, "folder image movie sound unknown" },
        { { true, true, true, true, false, true }, "folder image native other sound unknown" },
        { { true, true, true, true, true, false }, "folder movie native other sound unknown" },
        { { false, false, false, false, false, false }, "folder" },
    };
    for (const auto& row : rows) {
        pane->SetFilter(row.filter);
        EXPECT_EQ(Entries(), row.shown);
    }
    PaneNode& link = Add("link", Attribute::link);
    pane->Refresh();
    EXPECT_EQ(link.pluginRequest, URL_LINK_TARGET) << "of a link the type of what it points at";
}

// --- Actions ---

TEST_F(FolderPane, OpeningAppliesOrGoes)
{
    PanePlugin plugin(1);
    const ContentRef target = AddFolder("t");
    PaneNode& link = Add("link", Attribute::folder | Attribute::link);
    link.linkTarget = TextOf("test:/t");
    PaneNode& dead = Add("linkdead", Attribute::folder | Attribute::link);
    dead.linkTarget = TextOf("test:/gone");
    Add("sub", Attribute::folder);
    Add("x").plugin = &plugin;
    Add("y").plugin = &plugin;
    Open();
    EXPECT_EQ(Entries(), "link linkdead sub x y");
    const auto open = [this](int32_t index, bool newDocument) {
        pane->Open(ToContent(At(index)), newDocument);
        return window->Did();
    };
    EXPECT_EQ(open(0, false), " show t");
    EXPECT_EQ(open(1, false), " show linkdead") << "without its target it is a folder";
    EXPECT_EQ(open(2, false), " show sub");
    EXPECT_EQ(open(3, true), "");
    EXPECT_EQ(plugin.opened, " x!");
    EXPECT_EQ(open(77, false), "");
    pane->GoUp();
    EXPECT_EQ(window->Did(), "") << "a folder at the top";
    // Kept: the last container is where it ends.
    Select({ 0, 2, 3, 4 });
    pane->ApplySelection(false);
    EXPECT_EQ(window->Did(), " show t show sub");
    EXPECT_EQ(plugin.opened, " x! x y");
    Show(ContentRef(static_cast<BrowserContentNode*>(At(2).Get())));
    (void)window->Did();
    pane->GoUp();
    EXPECT_EQ(window->Did(), " show f/sub");
}

TEST_F(FolderPane, TheMenuHasWhatMakesSense)
{
    Disk().AddFolder("/d/in");
    Disk().AddFile("/d/a.txt", "", Day(1));
    Disk().AddFile("/d/b.txt", "", Day(1));
    const DirectoryRef disk = Top("/d");
    Open(disk);
    ASSERT_EQ(pane->GetList().GetState().count, 3);
    const std::string file = "900012 Open, |, 900011 Up One Level, |, 900015 Show in File Manager, 900016 Open with System, |, ";
    const std::string folderRows = "900012 Open, 900018 Open in New Window" + file.substr(11);
    const std::string plainEnd = "900025 Open with Single Click", tickedEnd = plainEnd + "&c&";
    int32_t choice = 0;
    gui.onMenu = [&choice] { return choice; };
    const auto menu = [&](std::initializer_list<int32_t> selected, int32_t chosen) {
        Select(selected);
        (void)window->Did(), (void)gui.Calls();
        choice = chosen;
        pane->ShowContextMenu();
        return gui.menuRows;
    };
    EXPECT_EQ(menu({}, 900025), "900011 Up One Level, |, " + plainEnd);
    EXPECT_EQ(menu({ 1 }, 900015), file + tickedEnd);
    EXPECT_EQ(gui.Calls(), "reveal /d/a.txt");
    EXPECT_EQ(menu({ 1, 2 }, 900016), file + tickedEnd);
    EXPECT_EQ(gui.Calls(), "open /d/a.txt; open /d/b.txt");
    EXPECT_EQ(menu({ 0 }, 900018), folderRows + tickedEnd);
    EXPECT_EQ(window->Did(), " new in");
    EXPECT_EQ(menu({ 0, 1 }, 900012), file + tickedEnd) << "not folders alone";
    EXPECT_EQ(window->Did(), " show in");
    EXPECT_EQ(menu({ 0 }, 900025), folderRows + tickedEnd);
    EXPECT_EQ(menu({ 0 }, 0), folderRows + plainEnd);
    gui.opensFiles = false;
    EXPECT_EQ(menu({ 1 }, 900015), file + plainEnd);
    EXPECT_EQ(gui.Calls(), "reveal /d/a.txt; box 1 The file manager could not be opened for “a.txt”.");
    EXPECT_EQ(menu({ 1 }, 900016), file + plainEnd);
    EXPECT_EQ(gui.Calls(), "open /d/a.txt; box 1 No program could be opened for “a.txt”.");
    Show({});
    EXPECT_EQ(menu({}, 900011), plainEnd) << "no row for what is above the roots";
}

// Behind a box the user may close the window, and then nothing more is done for it.
TEST_F(FolderPane, AClosedWindowGoesNoFurther)
{
    PanePlugin plugin(1);
    Disk().AddFolder("/d");
    Disk().AddFile("/d/a.txt", "", Day(1));
    Disk().AddFile("/d/b.txt", "", Day(1));
    const DirectoryRef disk = Top("/d");
    Add("x").plugin = &plugin;
    Add("y").plugin = &plugin;
    const auto close = [this] { EXPECT_TRUE(window->Close()); };
    plugin.onOpen = close;
    Open();
    pane->SelectAll();
    pane->ApplySelection(false);
    EXPECT_EQ(plugin.opened, " x");
    gui.onBox = close;
    gui.opensFiles = false;
    const std::pair<int32_t, const char*> rows[] = {
        { 900015, "reveal /d/a.txt; box 1 The file manager could not be opened for “a.txt”." },
        { 900016, "open /d/a.txt; box 1 No program could be opened for “a.txt”." },
    };
    for (const auto& [command, calls] : rows) {
        Open(disk);
        pane->SelectAll();
        (void)gui.Calls();
        gui.onMenu = [command] { return command; };
        pane->ShowContextMenu();
        EXPECT_EQ(gui.Calls(), calls);
    }
    Open();
    pane->SelectAll();
    plugin.opened.clear();
    gui.onMenu = [] { return 900012; };
    pane->ShowContextMenu();
    EXPECT_EQ(plugin.opened, " x");
    Open(disk);
    pane->SelectAll();
    (void)gui.Calls();
    gui.onMenu = [&close] {
        close();
        return 900016;
    };
    pane->ShowContextMenu();
    EXPECT_EQ(gui.Calls(), "") << "closed behind the menu";
}

// The user chooses from what was selected when the menu opened.
TEST_F(FolderPane, AMenuActsOnWhatItWasMadeFor)
{
    Add("one", Attribute::folder);
    Open();
    Select({ 0 });
    gui.onMenu = [this] {
        Add("new", Attribute::folder);
        pane->Refresh();
        Select({ 0 });
        return 900012;
    };
    pane->ShowContextMenu();
    EXPECT_EQ(window->Did(), " show one");
}

// --- The host's messages ---

TEST_F(FolderPane, FocusGoesToTheView)
{
    AddLetters(1);
    Open();
    gui.hasFocus = false;
    EXPECT_TRUE(gui.Tell(VX3_GUI_FOCUS_GOT));
    EXPECT_TRUE(gui.hasFocus);
    EXPECT_TRUE(pane->HasFocus());
    EXPECT_EQ(gui.Calls(), "redraw") << "what is selected looks different";
    EXPECT_FALSE(gui.Tell(VX3_GUI_FOCUS_LOST));
    EXPECT_FALSE(pane->HasFocus());
    gui.hasFocus = false;
    gui.focusInside = 10125;
    EXPECT_TRUE(gui.Tell(VX3_GUI_FOCUS_GOT));
    EXPECT_FALSE(gui.hasFocus) << "a control keeps it";
    EXPECT_TRUE(pane->HasFocus());
    EXPECT_FALSE(gui.Tell(VX3_GUI_HIDING));
}

class Work final : public BackgroundWork
{
public:
    bool IsRunning() override { return isRunning; }
    void Stop() override { isRunning = false; }
    bool isRunning = false;
};

// Pictures that are told by their widths, from the first frame on.
void WriteFrames(const std::string& folder)
{
    std::filesystem::create_directories(folder);
    for (int32_t i = 0; i <= 8; i++) {
        const FilePath path = PathOf(folder + "/" + IconFileName(static_cast<int32_t>(Icon::FirstProgressor) + i));
        EXPECT_EQ(host->bitmap->save(HostBitmap::Create(10 + i, 10).Get(), path.Value(), VX3_FORMAT_PNG, nullptr, 0), VX3_IMAGE_OK);
    }
}

class BusyFolderPane : public PaneTest
{
protected:
    BusyFolderPane()
        : PaneTest(vx3::testing::TestHostOptions())
    {
        WriteFrames(testHost.Folder() + "/res/icons");
        EXPECT_TRUE(InitIconCache(PathOf(testHost.Folder() + "/browser.so")));
    }
    ~BusyFolderPane() override { FreeIconCache(); }
};

TEST_F(BusyFolderPane, TheButtonTurnsAndStops)
{
    Work work;
    Open();
    EXPECT_FALSE(gui.enabled[busy]);
    const auto tick = [this] {
        gui.Tick();
        return gui.Calls();
    };
    EXPECT_EQ(tick(), "") << "a window without any work";
    window->work = &work;
    EXPECT_EQ(tick(), "");
    work.isRunning = true;
    EXPECT_EQ(tick(), "bitmap 10130 10 18");
    EXPECT_TRUE(gui.enabled[busy]);
    for (const char* frame : { "10 18", "11 18", "12 18", "13 18", "14 18", "15 18", "16 18", "17 18", "10 18" })
        EXPECT_EQ(tick(), std::string("bitmap 10130 ") + frame);
    EXPECT_TRUE(gui.Use(busy));
    EXPECT_FALSE(work.isRunning);
    EXPECT_FALSE(gui.enabled[busy]);
    EXPECT_EQ(slept, 1000);
    EXPECT_EQ(tick(), "bitmap 10130 0 0");
    EXPECT_EQ(tick(), "");
    work.isRunning = true;
    EXPECT_EQ(tick(), "bitmap 10130 10 18");
    EXPECT_EQ(tick(), "bitmap 10130 11 18") << "it goes on where it was";
}

// --- Without memory ---

TEST_F(FolderPane, WithoutMemoryNothingBreaks)
{
    PaneNode& node = Add("a rather long name for one icon");
    node.picture = HostBitmap::Create(40, 40);
    AddLetters(6);
    Open();
    gui.onDrag = [](int32_t, void*) { return true; };
    const auto runs = FailEachInTurn(testHost.Faults(), FailClass::Memory, Failing::Once, [&](int64_t) {
        (void)gui.Draw({ 0, 0, 269, 159 });
        (void)gui.Press(VX3_CHANNEL_LEFT, 30, 30);
        (void)gui.Press(VX3_CHANNEL_RIGHT, 96, 30);
        (void)gui.Key(VX3_KEY_RIGHT, VX3_QUALIFIER_SHIFT);
        pane->Refresh();
    });
    EXPECT_GT(runs, 20);
    pane->Refresh();
    EXPECT_EQ(pane->GetList().GetState().count, 7);
}

} // namespace
