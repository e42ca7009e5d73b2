// Numbers that no module should give and one may give all the same: nothing overflows, and what
// there is stays where it can be added up. Meant to run under the sanitizers as well.

#include <climits>
#include <cmath>
#include <limits>

#include "deskfixture.h"
#include "gui/gadgettree.h"
#include "gui/layout.h"
#include "gui/scriptdump.h"
#include "gui/tracks.h"
#include "gui/treestate.h"

using namespace vx3;
using namespace vx3::gui;

namespace {

enum : int32_t { AreaPlace = 21, TreePlace = 25, GroupId = 30, ButtonId = 31, ComboId = 32, SliderId = 33, SplitterId = 34, ScrollId = 35 };

class DeskBounds : public DeskTest
{
protected:
    ModuleDialog window{ log, "W" };
    ModuleArea area{ log, "area" };
};

// A tree without an end, of rows as high and as wide as a number can be.
VX3TreeTable EndlessTree()
{
    VX3TreeTable table = {};
    table.firstRoot = [](void* object) { return object; };
    table.next = [](void*, void* row) -> void* { return static_cast<char*>(row) + 1; };
    table.rowHeight = [](void*, void*) { return INT32_MAX; };
    table.columnWidth = [](void*, void*, int32_t) { return INT32_MAX; };
    return table;
}

TEST_F(DeskBounds, SizesOfAModuleAreBounded)
{
    const VX3TreeTable table = EndlessTree();
    area.least = { INT_MAX, INT_MAX };
    window.on["createLayout"] = [&] {
        VX3GadgetShape grid = ShapeOf(VX3_GADGET_GROUP, GroupId, fills, INT_MIN, INT_MIN);
        grid.columns = INT_MAX;
        Begin(window, grid);
        Add(window, ShapeOf(VX3_GADGET_BUTTON, ButtonId, 0, INT_MAX, INT_MAX), "x");
        Add(window, ShapeOf(VX3_GADGET_TEXT, 0, 0, INT_MAX, INT_MAX), "x");
        Gadgets().end(window.handle);
        Begin(window, ShapeOf(VX3_GADGET_SPLITTER, SplitterId, fills));
        Add(window, ShapeOf(VX3_GADGET_TEXT, 0, 0, INT_MAX, INT_MAX), "x");
        Begin(window, ShapeOf(VX3_GADGET_SCROLL, ScrollId, fills));
        Add(window, ShapeOf(VX3_GADGET_AREA, AreaPlace));
        Gadgets().end(window.handle);
        Gadgets().end(window.handle);
        Add(window, ShapeOf(VX3_GADGET_TREE, TreePlace, fills));
        Desk::Services()->tree->attach(window.handle, TreePlace, &area, &table);
        Areas().attach(area.handle, window.handle, AreaPlace);
    };
    Dialogs().setLeastSize(window.handle, INT_MAX, INT_MIN);
    ASSERT_TRUE(window.Open({ 7, 0, INT_MAX, INT_MIN, INT_MAX, 0 }));
    EXPECT_EQ(WindowOf().size.width, mostWindowLength);
    EXPECT_LE(WindowOf().size.height, mostWindowLength);

    Gadget& tree = Find(TreePlace);
    EXPECT_GE(tree.content.height, mostLength);
    EXPECT_LT(tree.tree->rows.size(), 1000u) << "as many as can be added up";
    Input wheel;
    wheel.channel = VX3_CHANNEL_WHEEL;
    for (const int32_t value : { INT_MIN, INT_MAX, INT_MIN }) {
        wheel.value = value;
        desk.Feed(tree, wheel);
    }
    EXPECT_EQ(tree.scrolled.y, tree.content.height - tree.view.height);

    int32_t x = INT_MIN;
    int32_t y = INT_MAX;
    EXPECT_TRUE(Areas().toLocal(area.handle, &x, &y) && Areas().toScreen(area.handle, &x, &y));
    const VX3Rectangle farAway = { INT_MIN, INT_MIN, INT_MAX, INT_MAX };
    EXPECT_TRUE(Gadgets().setVisiblePart(window.handle, ScrollId, &farAway));
    EXPECT_TRUE(Areas().redraw(area.handle, &farAway));
    EXPECT_EQ(toolkit.redrawn.Extent(), Find(AreaPlace).place.Extent()) << "all of it";
}

TEST_F(DeskBounds, RectanglesAreCutWhereNothingIs)
{
    EXPECT_EQ(PlaceOf({ 3, 4, 5, 5 }), (Place{ 3, 4, 3, 2 }));
    EXPECT_EQ(PlaceOf({ 0, 0, INT_MAX, INT_MAX }), (Place{ 0, 0, farthest + 1, farthest + 1 }));
    EXPECT_TRUE(PlaceOf({ INT_MIN, INT_MIN, INT_MAX, INT_MAX }).Has({ 5, -5 }));
    EXPECT_TRUE(PlaceOf({ INT_MAX, INT_MAX, INT_MIN, INT_MIN }).IsEmpty());
}

TEST_F(DeskBounds, ValuesAreBoundedToWhatTheirKindHas)
{
    window.on["createLayout"] = [&] {
        Add(window, ShapeOf(VX3_GADGET_COMBO, ComboId));
        Add(window, ShapeOf(VX3_GADGET_SLIDER, SliderId));
        Begin(window, ShapeOf(VX3_GADGET_SPLITTER, SplitterId));
        Add(window, ShapeOf(VX3_GADGET_TEXT, 0));
        Add(window, ShapeOf(VX3_GADGET_TEXT, 0));
        Gadgets().end(window.handle);
    };
    ASSERT_TRUE(window.Open());
    const struct {
        double set;
        double value;
    } cases[] = { { 1e300, INT_MAX }, { -1e300, INT_MIN }, { 5.5, 5 }, { -1, -1 } };
    for (const auto& row : cases) {
        EXPECT_TRUE(Gadgets().setValue(window.handle, ComboId, row.set));
        EXPECT_EQ(Find(ComboId).value, row.value);
    }
    constexpr double largest = std::numeric_limits<double>::max();
    EXPECT_TRUE(Gadgets().setRange(window.handle, SliderId, -largest, largest, largest));
    EXPECT_LT(Find(SliderId).most - Find(SliderId).least, 1e16);
    ContainerValue weights;
    core::ContainerServices()->setFloat(weights.Get(), VX3_WEIGHT_COLUMN, largest);
    core::ContainerServices()->setFloat(weights.Get(), VX3_WEIGHT_COLUMN + 1, largest);
    EXPECT_TRUE(Gadgets().setWeights(window.handle, SplitterId, weights.Get()));
    EXPECT_TRUE(std::isfinite(Find(SplitterId).weights[0] + Find(SplitterId).weights[1]));
}

TEST_F(DeskBounds, WidthsAreKeptForSoManyLettersOnly)
{
    TextWidths widths;
    const int rounds = 50000;
    for (int i = 0; i < rounds; ++i)
        EXPECT_EQ(widths.Of(toolkit, std::u16string(240, static_cast<char16_t>(i))), 240 * PlainToolkit::letterWidth);
    EXPECT_LE(widths.Units(), size_t(8) << 20);
    EXPECT_GT(widths.Units(), 0u);
}

TEST_F(DeskBounds, WhatStandsInADisabledGroupIsDisabled)
{
    ModuleDialog inner{ log, "I" };
    window.on["createLayout"] = [&] {
        Begin(window, ShapeOf(VX3_GADGET_GROUP, GroupId));
        Add(window, ShapeOf(VX3_GADGET_SUBDIALOG, 1));
        Gadgets().end(window.handle);
        Dialogs().attach(inner.handle, window.handle, 1);
    };
    inner.on["createLayout"] = [&] { Add(inner, ShapeOf(VX3_GADGET_BUTTON, ButtonId), "x"); };
    ASSERT_TRUE(window.Open());
    Gadgets().enable(window.handle, GroupId, 0);
    log.Take();
    desk.UserPressed(Find(ButtonId));
    EXPECT_EQ(log.Take(), "");
    EXPECT_FALSE(Gadgets().focus(inner.handle, ButtonId));
    EXPECT_TRUE(Gadgets().isEnabled(inner.handle, ButtonId)) << "by itself it is";
    EXPECT_NE(DescribeGadgets(WindowOf()).find("button 31 \"x\" disabled"), std::string::npos);
    Gadgets().enable(window.handle, GroupId, 1);
    desk.UserPressed(Find(ButtonId));
    EXPECT_EQ(log.Take(), "I inta, I command 31, I inte");
    EXPECT_TRUE(Gadgets().focus(inner.handle, ButtonId));
}

} // namespace
