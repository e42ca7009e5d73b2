// Where gadgets stand, for layouts written as text. A gadget has the width of 7 times the
// number of its text and the height 13; spacing 4, margin 3, borders 5, bars 10, titles 20,
// tabs 25.

#include "gui/layout.h"

#include <gtest/gtest.h>

#include <cmath>

#include "gui/tracks.h"
#include "plaintoolkit.h"

using namespace vx3::gui;

namespace {

Gadget* Find(Gadget& gadget, int32_t id)
{
    if (gadget.shape.id == id)
        return &gadget;
    for (const auto& child : gadget.children)
        if (Gadget* found = Find(*child, id))
            return found;
    return nullptr;
}

struct Window {
    explicit Window(const std::string& layout, Size size = { 200, 100 })
    {
        LayoutNode node;
        std::string error;
        EXPECT_TRUE(ParseLayout("dialog 1000 dir=v {" + layout + "}", 1000, node, error)) << error << "\n" << layout;
        dialog.root = MakeGadgets(dialog, node);
        dialog.size = size;
    }
    Gadget& Get(int32_t id) { return *Find(*dialog.root, id); }
    Window& Run()
    {
        LayOut(toolkit, dialog);
        return *this;
    }

    PlainToolkit toolkit;
    Dialog dialog;
};

std::string Text(const Place& place)
{
    return std::to_string(place.x) + "," + std::to_string(place.y) + " " + std::to_string(place.width) + "x" + std::to_string(place.height);
}

// The numbered gadgets of a window, below 100, with their places.
std::string Places(Window& window)
{
    std::string text;
    for (int32_t id = 1; id < 100; ++id)
        if (Gadget* gadget = Find(*window.dialog.root, id))
            text += (text.empty() ? "" : "  ") + std::to_string(id) + ": " + Text(gadget->place);
    return text;
}

TEST(Layout, GroupsAreGrids)
{
    const struct {
        const char* layout;
        const char* places;
    } cases[] = {
        // Least size in the middle of the cell, at a side, and filling it.
        { "group 1 fit=h dir=h { text 2 text=2; text 3 text=3; }", "1: 0,0 200x13  2: 0,0 14x13  3: 18,0 21x13" },
        { "group dir=v { text 1 text=1; text 2 text=5; text 3 text=1 left; text 4 text=1 right; text 5 text=1 fit=h; }",
          "1: 14,0 7x13  2: 0,17 35x13  3: 0,34 7x13  4: 28,51 7x13  5: 0,68 35x13" },
        // Columns that scale share what is left; the odd pixel goes to the first.
        { "group fit=h dir=h { edit 1 text=1 fit=h scale=h; text 2 text=2; edit 3 text=1 fit=h scale=h; }",
          "1: 0,0 89x13  2: 93,0 14x13  3: 111,0 89x13" },
        { "group fit=hv scale=hv dir=h { text 1 fit=hv scale=hv; text 2 fit=h scale=h; text 3 fit=h scale=h; }",
          "1: 0,0 64x100  2: 68,43 64x13  3: 136,43 64x13" },
        // Rows of a grid: one column as wide as its widest, scaling if one of it does.
        { "group fit=h columns=2 { text 1 text=2 left; edit 2 fit=h scale=h; text 3 text=4 left; edit 4 text=1; }",
          "1: 0,0 14x13  2: 32,0 168x13  3: 0,17 28x13  4: 112,17 7x13" },
        // A hidden one keeps its cell, a row of hidden ones is gone with its spacing.
        { "group left columns=2 { text 1 text=1; text 2 text=1 hidden; text 3 hidden; text 4 hidden; text 5 text=1; text 6 text=1; }",
          "1: 0,0 7x13  2: 0,0 0x0  3: 0,0 0x0  4: 0,0 0x0  5: 0,17 7x13  6: 11,17 7x13" },
        // A title takes its height and a margin on all sides.
        { "group 1 fit=h text=9 { text 2 text=2 left; }", "1: 0,0 200x39  2: 3,23 14x13" },
        // The least size of a shape is more than that of a button and less than that of a text.
        { "group left { text 1 text=5 minwidth=10 left; button 2 text=5 minwidth=10 left; button 3 text=5 minwidth=50 minheight=20 left; }",
          "1: 0,0 10x13  2: 0,17 35x13  3: 0,34 50x20" },
        // A separator lies across a grid and stands in a row.
        { "group left columns=2 { text 1 text=2; text 2 text=2; text 3 text=2; separator 4; text 5 text=2; }",
          "1: 0,0 14x13  2: 18,0 14x13  3: 0,17 14x13  4: 0,34 32x13  5: 0,51 14x13" },
        { "group left dir=h { text 1 text=2; separator 2; text 3 text=2; }", "1: 0,0 14x13  2: 18,0 0x13  3: 22,0 14x13" },
        // Too little room: what scales gives way, down to nothing.
        { "group fit=h dir=h { edit 1 text=20 fit=h scale=h; text 2 text=10; edit 3 text=2 fit=h scale=h; }",
          "1: 0,0 108x13  2: 112,0 70x13  3: 186,0 14x13" },
        { "group fit=h dir=h { edit 1 text=20 fit=h scale=h; text 2 text=28; }", "1: 0,0 0x13  2: 4,0 196x13" },
        { "group 1 fit=h dir=h { }", "1: 0,0 200x0" },
    };
    for (const auto& row : cases) {
        Window window(row.layout);
        EXPECT_EQ(Places(window.Run()), row.places) << row.layout;
    }
}

TEST(Layout, SplittersDivideByWeights)
{
    const struct {
        const char* layout;
        const char* places;
    } cases[] = {
        { "splitter fit=hv scale=hv weights=60:40 { text 1; text 2; }", "1: 0,0 117x100  2: 122,0 78x100" },
        { "splitter fit=hv scale=hv dir=v weights=1:1 { text 1; text 2; }", "1: 0,0 200x48  2: 0,53 200x47" },
        { "splitter fit=hv scale=hv { text 1; text 2; text 3; }", "1: 0,0 64x100  2: 69,0 63x100  3: 137,0 63x100" },
        // No less than the least, and the others divide the rest.
        { "splitter fit=hv scale=hv weights=1:1:98 { text 1 minwidth=50; text 2 minwidth=20; text 3; }",
          "1: 0,0 50x100  2: 55,0 20x100  3: 80,0 120x100" },
        { "splitter fit=hv scale=hv weights=1:99 { text 1 hidden; text 2; }", "1: 0,0 0x0  2: 0,0 200x100" },
        // Too little for all: the last ones give way.
        { "splitter fit=hv scale=hv { text 1 minwidth=150; text 2 minwidth=150; text 3 minwidth=9; }",
          "1: 0,0 150x100  2: 155,0 40x100  3: 200,0 0x100" },
    };
    for (const auto& row : cases) {
        Window window(row.layout);
        EXPECT_EQ(Places(window.Run()), row.places) << row.layout;
    }
}

TEST(Layout, ABorderMovesAsFarAsTheLeastSizesAllow)
{
    const struct {
        size_t border;
        int position;
        bool isMoved;
        const char* places;
    } cases[] = {
        { 0, 100, true, "1: 0,0 100x100  2: 105,0 32x100  3: 142,0 58x100" },
        { 0, 5, true, "1: 0,0 30x100  2: 35,0 102x100  3: 142,0 58x100" },
        { 0, 500, true, "1: 0,0 122x100  2: 127,0 10x100  3: 142,0 58x100" },
        { 1, -7, true, "1: 0,0 74x100  2: 79,0 10x100  3: 94,0 106x100" },
        { 0, 74, false, "1: 0,0 74x100  2: 79,0 58x100  3: 142,0 58x100" },
        { 2, 100, false, "1: 0,0 74x100  2: 79,0 58x100  3: 142,0 58x100" }, // none behind the last
    };
    for (const auto& row : cases) {
        Window window("splitter 50 fit=hv scale=hv weights=74:58:58 { text 1 minwidth=30; text 2 minwidth=10; text 3; }");
        window.Run();
        EXPECT_EQ(MoveBorder(window.Get(50), row.border, row.position), row.isMoved) << row.border << " " << row.position;
        window.Run();
        const std::string text = Places(window);
        EXPECT_EQ(text.substr(0, text.find("  50:")), row.places) << row.border << " " << row.position;
        double sum = 0;
        for (double weight : window.Get(50).weights)
            sum += weight;
        EXPECT_NEAR(sum, 190, 1e-9) << "weights compare with those of before";
    }
}

TEST(Layout, WeightsOfPixelsGiveThePixelsAgain)
{
    for (int length = 1; length < 400; length += 7)
        for (int first = 0; first <= length; ++first) {
            std::vector<Part> parts = { { 0, 100.0 * first / length, 0, 0 }, { 1, 100.0 * (length - first) / length, 0, 0 } };
            DivideByWeights(parts, length);
            ASSERT_EQ(parts[0].length, first) << length;
        }
    std::vector<Part> odd = { { 0, NAN, 0, 0 }, { 1, -5, 0, 0 }, { 2, INFINITY, 3, 0 } };
    DivideByWeights(odd, 10);
    EXPECT_EQ(odd[0].length + odd[1].length + odd[2].length, 10);
}

TEST(Layout, PagesShareOnePlaceAndOneIsSeen)
{
    Window window("tabs 1 fit=hv scale=hv { group 2 text=4 { text 3 text=2; } group 4 text=4 { text 5 text=9; } }");
    window.Get(1).value = 1;
    EXPECT_EQ(Places(window.Run()), "1: 0,0 200x100  2: 3,28 194x69  3: 3,28 14x13  4: 3,28 194x69  5: 3,28 63x13");
    EXPECT_EQ(window.Get(1).need, (Size{ 69, 44 }));
    EXPECT_FALSE(window.toolkit.visible.at(&window.Get(3)));
    EXPECT_TRUE(window.toolkit.visible.at(&window.Get(5)));
}

// An area that needs a number of cells, as many in a row as its width allows.
struct CellsArea {
    void Attach(Gadget& gadget)
    {
        area.object = this;
        area.table = &table;
        area.gadget = &gadget;
        gadget.area = &area;
    }
    static void LeastSize(void* object, int32_t* width, int32_t* height)
    {
        auto* cells = static_cast<CellsArea*>(object);
        const int columns = std::max(1, cells->area.gadget->place.width / cells->cell.width);
        *width = cells->cell.width;
        *height = (cells->count + columns - 1) / columns * cells->cell.height;
        ++cells->asked;
    }

    Size cell = { 30, 20 };
    int count = 0;
    int asked = 0;
    VX3AreaTable table = { LeastSize, nullptr, nullptr, nullptr };
    Area area;
};

TEST(Layout, AScrollGroupDecidesOnItsBarsByTheHeightWithoutThem)
{
    const struct {
        Size size;
        int count;
        Size view, content;
    } cases[] = {
        { { 100, 100 }, 15, { 100, 100 }, { 100, 100 } }, // 3 columns, 5 rows: fits exactly
        { { 100, 100 }, 16, { 90, 100 }, { 90, 120 } },
        { { 95, 100 }, 15, { 95, 100 }, { 95, 100 } },
        { { 95, 100 }, 16, { 85, 100 }, { 85, 160 } },   // the bar takes a column
        { { 20, 100 }, 2, { 20, 90 }, { 30, 90 } },      // too narrow: a bar below
        { { 20, 100 }, 5, { 10, 90 }, { 30, 100 } },     // which takes the height that was just enough
        { { 5, 5 }, 3, { 0, 0 }, { 30, 60 } },           // smaller than its bars
        { { 100, 100 }, 0, { 100, 100 }, { 100, 100 } }, // never smaller than the view
    };
    for (const auto& row : cases) {
        Window window("scroll 1 fit=hv scale=hv { group { area 3 fit=hv scale=hv; } }", row.size);
        CellsArea cells;
        cells.count = row.count;
        cells.Attach(window.Get(3));
        for (int run = 0; run < 2; ++run) {
            window.Get(1).scrolled = { 9999, 9999 };
            window.Run();
            EXPECT_EQ(window.Get(1).view, row.view) << row.size.width << " " << row.count;
            EXPECT_EQ(window.Get(1).content, row.content) << row.size.width << " " << row.count;
            EXPECT_EQ(window.Get(3).place.Extent(), row.content) << row.size.width << " " << row.count;
            EXPECT_EQ(window.Get(1).scrolled, (Point{ row.content.width - row.view.width, row.content.height - row.view.height }));
        }
        EXPECT_LE(cells.asked, 8) << "two attempts of two questions in each of two runs";
    }
}

TEST(Layout, AnAreaIsAskedForItsHeightInTheWidthThatItGets)
{
    Window window("group fit=hv dir=h { text 1 text=10; area 2 fit=h scale=h; }", { 164, 100 });
    CellsArea cells;
    cells.count = 6; // 3 in a row beside the text
    cells.Attach(window.Get(2));
    window.Run();
    EXPECT_EQ(window.Get(2).need, (Size{ 30, 40 }));
    EXPECT_EQ(NeedOfWindow(window.toolkit, window.dialog, 0), (Size{ 104, 120 }));
    EXPECT_EQ(NeedOfWindow(window.toolkit, window.dialog, 254), (Size{ 104, 20 }));
}

TEST(Layout, DialogsInsideAreLaidOutWithTheirWindow)
{
    Window window("text 1 text=1; group dir=h fit=hv scale=hv { text 2 text=2; subdialog 3 fit=hv scale=hv; }");
    Window inner("scroll 4 fit=hv scale=hv { group 5 { text 6 minwidth=300; } }");
    window.Get(3).inner = &inner.dialog;
    inner.dialog.holder = &window.Get(3);
    inner.dialog.parent = &window.dialog;
    window.Run();
    EXPECT_EQ(Text(inner.dialog.root->place), "18,17 182x83");
    Gadget& scroll = inner.Get(4);
    EXPECT_EQ(Text(inner.Get(6).place), "18,17 300x13") << "as if nothing were scrolled";
    scroll.scrolled = { 20, 0 };
    EXPECT_EQ(Text(PlaceInWindow(inner.Get(6))), "-2,17 300x13");
    EXPECT_TRUE(window.toolkit.visible.at(&inner.Get(6)));
    window.Get(3).shape.flags |= VX3_FLAG_HIDDEN;
    window.Run();
    EXPECT_FALSE(window.toolkit.visible.at(&inner.Get(6)));
}

} // namespace
