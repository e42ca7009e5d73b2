// The icon grid on a screen of text: what it draws, where it can be hit, and what it keeps
// in sight. Four columns of 66 by 79, in a part that is 270 by 160.

#include "panefixture.h"

using namespace browser;
using namespace vx3::tests;

namespace {

constexpr VX3Rectangle firstRow = { 0, 0, 269, 78 };

HostBitmap Picture(int32_t width, int32_t height, bool hasAlpha = false)
{
    HostBitmap picture = HostBitmap::Create(width, height);
    EXPECT_TRUE(!hasAlpha || host->bitmap->addAlpha(picture.Get()));
    return picture;
}

class IconGrid : public PaneTest
{
protected:
    std::string Cell(int32_t x, const std::string& colours, const std::string& fill, const std::string& inside)
    {
        const std::string left = std::to_string(x), right = std::to_string(x + 66);
        return "clip " + left + " 0 " + right + " 79\ntext colours " + colours + "\npen " + fill + "\nfill " + std::to_string(x + 1) + " 1 "
            + std::to_string(x + 64) + " 77\n" + inside;
    }
    // The entry at a point, by a click beside which nothing is selected.
    std::string HitAt(int32_t x, int32_t y)
    {
        const ContentViewEntryList::Reader entries(pane->GetList());
        std::string hit;
        for (HitTest test : { HitTest::Cell, HitTest::VisibleParts })
            hit += std::to_string(view->FindEntry(*entries, { x, y }, test)) + (test == HitTest::Cell ? " " : "");
        return hit;
    }
    void Open()
    {
        PaneTest::Open();
        view = &pane->View();
    }

    const ContentListView* view = nullptr;
};

TEST_F(IconGrid, AnEntryIsDrawnByItsStateAndItsNode)
{
    const std::string begin = "no clip\npen 1000\nfill 0 0 269 78\n";
    Add("kitchen table");
    Open();
    const std::string caption = "text kitche.. at 4 63\n";
    EXPECT_EQ(gui.Draw(firstRow), begin + Cell(0, "1215 1000", "1000", caption));
    Select({ 0 });
    EXPECT_EQ(gui.Draw(firstRow), begin + Cell(0, "1218 1216", "1216", caption));
    gui.hasFocus = false;
    const std::string frame = "pen 1216\nline 1 1 64 1\nline 1 77 64 77\nline 1 1 1 77\nline 64 1 64 77\n";
    EXPECT_EQ(gui.Draw(firstRow), begin + Cell(0, "1219 1217", "1217", frame + caption));
    ContentOf(At(0))->SetFlags(VX3_NODE_BROKEN_LINK);
    EXPECT_EQ(gui.Draw(firstRow), begin + Cell(0, "1220 1217", "1217", frame + caption));
    pane->GetList().ClearSelection();
    EXPECT_EQ(gui.Draw(firstRow), begin + Cell(0, "1220 1000", "1000", caption));
}

TEST_F(IconGrid, APictureIsFittedAndAskedForOnce)
{
    const struct {
        Size size;
        uint32_t flags;
        const char* drawn;
    } rows[] = {
        { { 30, 60 }, 0, "bitmap 0 0 30 60 to 18 3 30 60 mode 256" },
        { { 400, 100 }, 0, "bitmap 0 0 400 100 to 3 25 60 15 mode 256" },
        { { 100, 100 }, Preview::drawnMixed, "bitmap 0 0 100 100 to 3 3 60 60 mode 768" },
        { { 20, 10 }, 0, "bitmap 0 0 20 10 to 3 18 60 30 mode 256" },
        { { 20, 10 }, Preview::neverEnlarged, "bitmap 0 0 20 10 to 23 28 20 10 mode 256" },
        { { 60, 10 }, Preview::neverEnlarged, "bitmap 0 0 60 10 to 3 28 60 10 mode 256" },
    };
    PaneNode& node = Add("a");
    Open();
    for (const auto& row : rows) {
        node.picture = Picture(row.size.width, row.size.height);
        node.drawFlags = row.flags;
        node.asked.clear();
        const std::string drawn = gui.Draw(firstRow);
        EXPECT_NE(drawn.find(std::string(row.drawn) + "\ntext a at 28 63\n"), std::string::npos) << row.drawn << "\nin\n" << drawn;
        EXPECT_EQ(node.asked, "32768 60;");
    }
}

// Kept: whole cells of all rows that are touched, and nothing else.
TEST_F(IconGrid, RowsThatAreTouchedAreDrawnWhole)
{
    const struct {
        VX3Rectangle dirty;
        const char* captions;
    } rows[] = {
        { { 10, 0, 11, 0 }, "abcd" }, { { 200, 78, 210, 79 }, "abcdefgh" }, { { 0, 158, 9, 200 }, "ij" },
        { { 0, 237, 9, 300 }, "" },   { { 0, 0, 269, 999 }, "abcdefghij" },
    };
    AddLetters(10);
    Open();
    for (const auto& row : rows) {
        std::string captions;
        const std::string drawn = gui.Draw(row.dirty);
        for (size_t at = drawn.find("text "); at != std::string::npos; at = drawn.find("text ", at + 1))
            if (drawn[at + 6] == ' ')
                captions += drawn[at + 5];
        EXPECT_EQ(captions, row.captions) << row.dirty.y1;
    }
}

TEST_F(IconGrid, NothingIsDrawnWhileDrawingIsOff)
{
    AddLetters(1);
    Open();
    pane->View().SetDrawing(false);
    EXPECT_EQ(gui.Draw(firstRow), "");
    pane->View().SetDrawing(true);
    EXPECT_NE(gui.Draw(firstRow), "");
}

TEST_F(IconGrid, ADragFromElsewhereFramesWhatIsSeen)
{
    AddLetters(9);
    Open();
    gui.Scroll(50);
    DragBlock dragged;
    EXPECT_TRUE(pane->View().DropTargetAt({ 268, 60 }, HitTest::Cell, dragged).isChanged);
    const std::string frame = "clip 0 50 269 209\n"
                              "pen 1216\nline 0 50 269 50\nline 0 209 269 209\nline 0 50 0 209\nline 269 50 269 209\n"
                              "pen 1216\nline 1 51 268 51\nline 1 208 268 208\nline 1 51 1 208\nline 268 51 268 208\n"
                              "pen 1217\nline 2 52 267 52\nline 2 207 267 207\nline 2 52 2 207\nline 267 52 267 207\n";
    const std::string drawn = gui.Draw({ 0, 240, 9, 245 });
    EXPECT_EQ(drawn.substr(drawn.size() - std::min(drawn.size(), frame.size())), frame);
    EXPECT_TRUE(pane->View().ClearDropTarget());
    dragged.source = &*pane;
    (void)pane->View().DropTargetAt({ 268, 60 }, HitTest::Cell, dragged);
    EXPECT_EQ(gui.Draw({ 0, 240, 9, 245 }).find("line"), std::string::npos) << "its own drag";
}

// The entry by its cell, and by what is drawn of it. The first picture is as wide as its box
// and half as high, its left half transparent; the second entry has none.
TEST_F(IconGrid, OnlyDrawnPixelsBelongToAnEntry)
{
    const struct {
        Point at;
        const char* hits;
        const char* why;
    } rows[] = {
        { { 0, 0 }, "0 -1", "corner of the cell" },
        { { 40, 10 }, "0 -1", "in the box, above the picture" },
        { { 40, 18 }, "0 0", "first row of the picture" },
        { { 40, 17 }, "0 -1", "a pixel above it" },
        { { 40, 47 }, "0 0", "last row of the picture" },
        { { 40, 48 }, "0 -1", "a pixel below it" },
        { { 32, 30 }, "0 -1", "transparent" },
        { { 33, 30 }, "0 0", "opaque" },
        { { 62, 30 }, "0 0", "last column" },
        { { 40, 62 }, "0 -1", "Kept: in the box the caption is out of reach" },
        { { 1, 60 }, "0 0", "the band of the caption begins beside the box" },
        { { 30, 73 }, "0 0", "last row of the band" },
        { { 30, 74 }, "0 -1", "below it" },
        { { 60, 70 }, "0 0", "last column of the band" },
        { { 61, 70 }, "0 -1", "right of it" },
        { { 66 + 3, 3 }, "1 1", "without a picture the whole box" },
        { { 66 + 63, 3 }, "1 -1", "but no more" },
        { { 133, 10 }, "-1 -1", "behind the last entry" },
        { { 265, 10 }, "-1 -1", "the strip at the right" },
        { { 10, 79 }, "-1 -1", "below the last row" },
        { { -1, 10 }, "-1 -1", "outside" },
    };
    PaneNode& node = Add("a");
    Add("b");
    node.picture = Picture(120, 60, true);
    for (int32_t y = 0; y < 60; y++) {
        const uint8_t clear[60 * 4] = {};
        ASSERT_TRUE(host->bitmap->writePixels(node.picture.Get(), 0, y, 60, clear));
    }
    Open();
    for (const auto& row : rows)
        EXPECT_EQ(HitAt(row.at.x, row.at.y), row.hits) << row.why;
}

TEST_F(IconGrid, WithoutAlphaOrWithoutANodeNoPixelIsRead)
{
    PaneNode& node = Add("a");
    node.picture = Picture(60, 60);
    Open();
    EXPECT_EQ(HitAt(5, 5), "0 0");
    pane->GetList().Park();
    EXPECT_EQ(HitAt(5, 5), "-1 -1");
    EXPECT_EQ(gui.Draw(firstRow), "no clip\npen 1000\nfill 0 0 269 78\n");
}

TEST_F(IconGrid, TheGridIsMeasured)
{
    const struct {
        int32_t count, width;
        double zoom;
        Size item;
        int32_t columns, height;
    } rows[] = {
        { 0, 270, 0.25, { 2, 2 }, 135, 0 }, { 10, 270, 0.25, { 66, 79 }, 4, 237 }, { 10, 40, 0.25, { 66, 79 }, 1, 790 },
        { 10, 270, 0, { 34, 47 }, 7, 94 },  { 10, 270, 1, { 258, 271 }, 1, 2710 }, { 10, 270, 0.3, { 78, 91 }, 3, 364 },
    };
    AddLetters(10);
    Open();
    const ContentRef empty = AddFolder("empty");
    for (const auto& row : rows) {
        Show(row.count ? folder : empty);
        pane->SetZoom(row.zoom);
        gui.Resize(row.width, 10);
        const GridLayout& grid = pane->View().Grid();
        EXPECT_EQ((Size{ grid.itemWidth, grid.itemHeight }), row.item) << row.zoom;
        EXPECT_EQ(grid.columns, row.columns) << row.zoom << " " << row.width;
        EXPECT_EQ(gui.contentHeight, std::max(row.height, 10));
    }
}

TEST_F(IconGrid, WhatIsSeenIsTold)
{
    AddLetters(20);
    Open();
    const auto visible = [this] {
        const EntrySnapshot taken = pane->GetList().TakeSnapshot();
        return std::to_string(taken.firstVisible) + " " + std::to_string(taken.lastVisible);
    };
    EXPECT_EQ(visible(), "0 11");
    gui.Scroll(79);
    EXPECT_EQ(visible(), "4 15");
    gui.Scroll(156); // four pixels of the second row, and all of the third and fourth
    EXPECT_EQ(visible(), "4 15") << "a row that begins where the part ends is not seen";
    gui.Scroll(157); // and one pixel of the fifth
    EXPECT_EQ(visible(), "4 19");
    gui.Resize(270, 100);
    EXPECT_EQ(visible(), "4 15");
    pane->View().SetDrawing(false);
    gui.scrolled = 0;
    (void)gui.Tell(VX3_GUI_SCROLLED);
    EXPECT_EQ(visible(), "4 15") << "while it is being laid out nothing is told";
}

// The first entry that is seen stays so, also when a slider or an edge of the window is
// dragged to and fro.
TEST_F(IconGrid, ZoomAndWidthKeepTheFirstEntryInSight)
{
    AddLetters(26);
    Open();
    gui.Scroll(3 * 79 + 10);
    const auto firstSeen = [this] { return pane->View().Grid().IndexAt({ 0, gui.scrolled }, 26); };
    EXPECT_EQ(firstSeen(), 12);
    for (double zoom : { 0.3, 0.5, 0.9, 0.13, 0.25 }) {
        EXPECT_TRUE(gui.Use(10127, 100 * zoom));
        const int32_t columns = pane->View().Grid().columns;
        EXPECT_EQ(firstSeen(), gui.scrolled + gui.height < gui.contentHeight ? 12 / columns * columns : firstSeen()) << zoom;
    }
    EXPECT_EQ(gui.scrolled, 3 * 79 + 10);
    for (int32_t width : { 250, 190, 130, 190, 270, 400, 270 })
        gui.Resize(width, 160);
    EXPECT_EQ(gui.scrolled, 3 * 79 + 10);
    gui.Scroll(79);
    gui.Resize(200, 160);
    gui.Resize(270, 160);
    EXPECT_EQ(gui.scrolled, 79) << "where the user scrolled to counts";
}

} // namespace
