// What the mouse does in the icon grid: each sequence as a user makes it, and what is
// selected, opened and told of it afterwards. Four columns of 66 by 79, two rows.

#include "panefixture.h"

using namespace browser;
using namespace vx3::tests;

namespace {

constexpr uint32_t plain = 0, shift = VX3_QUALIFIER_SHIFT, ctrl = VX3_QUALIFIER_CTRL;
constexpr int32_t beside = 267, below = 200; // the strip at the right, and below the last row

class ListMouse : public PaneTest
{
protected:
    void OpenLetters(int32_t count)
    {
        AddLetters(count);
        gui.height = 300;
        Open();
    }
    void Click(int32_t index, uint32_t qualifiers = plain)
    {
        EXPECT_TRUE(gui.Press(VX3_CHANNEL_LEFT, 66 * (index % 4) + 30, 79 * (index / 4) + 30, qualifiers));
    }
    void ClickSpace(uint32_t qualifiers = plain) { EXPECT_TRUE(gui.Press(VX3_CHANNEL_LEFT, beside, below, qualifiers)); }
    // Both corners belong to it.
    void Band(VX3Rectangle drawn, uint32_t qualifiers = plain, int32_t answer = VX3_BAND_RECTANGLE)
    {
        gui.onBand = [drawn, answer](VX3Rectangle& band) {
            band = drawn;
            return answer;
        };
        ClickSpace(qualifiers);
        gui.onBand = {};
    }
    int32_t Anchor() { return pane->GetList().GetState().anchor; }
};

TEST_F(ListMouse, ClicksSelect)
{
    const struct {
        const char* what;
        int32_t index; // -1: beside all entries
        uint32_t qualifiers;
        const char* end;
    } rows[] = {
        { "one", 1, plain, "a [b] c d e f" },
        { "another", 2, plain, "a b [c] d e f" },
        { "one more", 4, ctrl, "a b [c] d [e] f" },
        { "one less", 2, ctrl, "a b c d [e] f" },
        { "from the anchor, which stays where it was", 5, shift, "a b [c] [d] [e] [f]" },
        { "a shorter run: the entry goes and the run comes", 3, shift, "a b [c] [d] e f" },
        { "to the other side", 0, shift, "[a] [b] [c] d e f" },
        { "one of several: that alone, when the button is let go", 1, plain, "a [b] c d e f" },
        { "the only one again", 1, plain, "a [b] c d e f" },
        { "beside all, with ctrl: nothing changes", -1, ctrl, "a [b] c d e f" },
        { "beside all, with shift: nothing changes", -1, shift, "a [b] c d e f" },
        { "the only one, with shift", 1, shift, "a b c d e f" },
        { "the first one, with shift", 3, shift, "a b c [d] e f" },
        { "beside all", -1, plain, "a b c d e f" },
    };
    OpenLetters(6);
    for (const auto& row : rows) {
        row.index < 0 ? ClickSpace(row.qualifiers) : Click(row.index, row.qualifiers);
        EXPECT_EQ(Entries(), row.end) << row.what;
        EXPECT_EQ(window->Did(), " update") << row.what;
    }
}

// The cell is the entry's, but only what is drawn of it can be dragged.
TEST_F(ListMouse, BesideAPictureABandBegins)
{
    PaneNode& node = Add("a");
    Add("b");
    node.picture = HostBitmap::Create(60, 10);
    Open();
    EXPECT_TRUE(gui.Press(VX3_CHANNEL_LEFT, 30, 5));
    EXPECT_EQ(gui.Calls(), "band; redraw");
    EXPECT_EQ(Entries(), "[a] b") << "let go where it was pressed";
    EXPECT_TRUE(gui.Press(VX3_CHANNEL_LEFT, 30, 5));
    EXPECT_EQ(gui.Calls(), "redraw") << "what is selected is dragged at any pixel of it";
    Select({});
    EXPECT_TRUE(gui.Press(VX3_CHANNEL_LEFT, 30, 32));
    EXPECT_EQ(gui.Calls(), "redraw; redraw");
}

// Kept: a band toggles, from the last entry to the first, and takes whole cells.
TEST_F(ListMouse, ABandTogglesWhatItMeets)
{
    OpenLetters(8);
    Band({ 65, 78, 66, 79 });
    EXPECT_EQ(Entries(), "[a] [b] c d [e] [f] g h");
    EXPECT_EQ(Anchor(), 5) << "the highest hit";
    Band({ 100, 10, 150, 20 }, ctrl);
    EXPECT_EQ(Entries(), "[a] b [c] d [e] [f] g h");
    Band({ 150, 20, 100, 10 });
    EXPECT_EQ(Entries(), "a [b] [c] d e f g h") << "drawn upwards";
    Click(7, shift);
    EXPECT_EQ(Entries(), "a b [c] [d] [e] [f] [g] [h]") << "from the highest hit of the band";
    Band({ 0, 0, 10, 10 }, plain, VX3_BAND_CANCELLED);
    EXPECT_EQ(Entries(), "a b [c] [d] [e] [f] [g] [h]");
    Band({ 265, 0, 269, 150 });
    EXPECT_EQ(Entries(), "a b c d e f g h") << "only the strip at the right";
    Click(1);
    Band({}, plain, VX3_BAND_NONE);
    EXPECT_EQ(Entries(), "a b c d e f g h") << "where no band can be shown it is a click";
}

TEST_F(ListMouse, ADragCarriesTheSelectionAndLeavesIt)
{
    OpenLetters(6);
    Click(1), Click(3, ctrl);
    (void)window->Did();
    std::string carried;
    const std::string wanted = "2 b d ";
    gui.onDrag = [&](int32_t type, void* data) {
        const auto& block = *static_cast<const DragBlock*>(data);
        carried = std::to_string(block.count) + " ";
        for (int32_t i = 0; i < block.count; i++)
            carried += Utf8(ContentOf(block.nodes[i])->GetNameRef()) + " ";
        EXPECT_EQ(block.source, &*pane);
        return type == VX3_DRAG_BROWSER;
    };
    Click(3);
    EXPECT_EQ(carried, wanted);
    EXPECT_EQ(Entries(), "a [b] c [d] e f");
    Click(4);
    EXPECT_EQ(carried, "1 e ") << "what was not selected is so before it is dragged";
    Click(5, shift);
    EXPECT_EQ(carried, "2 e f ");
    EXPECT_EQ(Entries(), "a b c d [e] [f]") << "a drag makes no run";
}

// Whatever is open over the list, it may change meanwhile.
TEST_F(ListMouse, WhatHappensMeanwhileIsHeeded)
{
    OpenLetters(4);
    Click(2);
    Click(3, ctrl);
    const auto insert = [this] {
        Add("aa");
        pane->Refresh();
    };
    gui.onDrag = [&](int32_t, void*) {
        insert();
        return false;
    };
    Click(2);
    EXPECT_EQ(Entries(), "a aa b [c] d") << "the entry that was pressed, not the one at its place";
    gui.onDrag = [&](int32_t, void*) {
        ContentOf(At(3))->Remove();
        pane->Refresh();
        return false;
    };
    Click(3);
    EXPECT_EQ(Entries(), "a aa b d") << "it is gone";
    gui.onDrag = {};
    gui.onBand = [&](VX3Rectangle& band) {
        Add("0");
        pane->Refresh();
        band = { 0, 0, 80, 10 };
        return VX3_BAND_RECTANGLE;
    };
    ClickSpace();
    EXPECT_EQ(Entries(), "[0] [a] aa b d") << "what lies under the band at its end";
    gui.onMenu = [&] {
        EXPECT_GT(window->handling, 0);
        EXPECT_TRUE(window->Close());
        return 0;
    };
    EXPECT_TRUE(gui.Press(VX3_CHANNEL_RIGHT, 30, 30));
    EXPECT_EQ(Entries(), "[.] [.] . . .") << "the window was closed behind the menu";
}

TEST_F(ListMouse, TheRightButtonSelectsAndShowsTheMenu)
{
    OpenLetters(4);
    Click(0), Click(1, ctrl);
    const auto rightClick = [this](int32_t x, int32_t y) {
        (void)window->Did();
        gui.menuRows.clear();
        EXPECT_TRUE(gui.Press(VX3_CHANNEL_RIGHT, x, y));
        EXPECT_NE(gui.menuRows, "");
        EXPECT_EQ(window->Did(), " update");
        return Entries();
    };
    EXPECT_EQ(rightClick(30, 30), "[a] [b] c d");
    EXPECT_EQ(rightClick(66 * 2 + 30, 30), "a b [c] d");
    EXPECT_EQ(rightClick(beside, below), "a b c d");
}

TEST_F(ListMouse, ADoubleClickOpens)
{
    PanePlugin plugin(1);
    Add("sub", Attribute::folder);
    Add("x").plugin = &plugin;
    Open();
    const auto doubleClick = [this](int32_t x) {
        EXPECT_TRUE(gui.Press(VX3_CHANNEL_LEFT, x, 30, plain, true));
        return window->Did();
    };
    EXPECT_EQ(doubleClick(30), " show sub update");
    EXPECT_EQ(Entries(), "[sub] x");
    EXPECT_EQ(doubleClick(96), " update");
    EXPECT_EQ(plugin.opened, " x");
    EXPECT_EQ(Entries(), "sub [x]");
    EXPECT_EQ(doubleClick(beside), " update");
    EXPECT_EQ(Entries(), "sub x");
    EXPECT_EQ(plugin.opened, " x");
}

// Kept: every press of the left button ends in the same way, also the second one of a double click, which
// has opened the entry, and one that dragged it.
TEST_F(ListMouse, OneClickAppliesWhereTheWindowWantsThat)
{
    PanePlugin plugin(1);
    Add("sub", Attribute::folder);
    Add("x").plugin = &plugin;
    Add("y").plugin = &plugin;
    Open();
    window->singleClick = true;
    Click(0);
    EXPECT_EQ(window->Did(), " update") << "a folder is not gone to";
    Click(1);
    EXPECT_EQ(plugin.opened, " x");
    Click(2, ctrl);
    EXPECT_EQ(plugin.opened, " x") << "two are selected";
    Click(2);
    EXPECT_EQ(plugin.opened, " x y");
    plugin.opened.clear();
    EXPECT_TRUE(gui.Press(VX3_CHANNEL_LEFT, 66 * 2 + 30, 30, plain, true));
    EXPECT_EQ(plugin.opened, " y y");
    gui.onDrag = [](int32_t, void*) { return true; };
    plugin.opened.clear();
    Click(1);
    EXPECT_EQ(plugin.opened, " x");
    Click(2, ctrl);
    EXPECT_TRUE(gui.Press(VX3_CHANNEL_RIGHT, 66 + 30, 30));
    Click(0);
    EXPECT_EQ(plugin.opened, " x") << "two, a menu, and a folder";
}

TEST_F(ListMouse, OtherButtons)
{
    OpenLetters(1);
    EXPECT_TRUE(gui.Press(VX3_CHANNEL_BACK, 30, 30));
    EXPECT_TRUE(gui.Press(VX3_CHANNEL_FORWARD, 30, 30));
    EXPECT_EQ(window->Did(), " back forward");
    EXPECT_FALSE(gui.Press(VX3_CHANNEL_MIDDLE, 30, 30));
    EXPECT_FALSE(gui.Press(VX3_CHANNEL_WHEEL, 30, 30));
    EXPECT_EQ(window->Did() + Entries(), "a");
}

} // namespace
