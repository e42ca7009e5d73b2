// Trees whose modules do things in the middle: what is dragged goes with its window, rows change
// while they are asked for, and nobody runs what could call others while answering.

#include "deskfixture.h"
#include "gui/treestate.h"

using namespace vx3;
using namespace vx3::gui;

namespace {

enum : int32_t { TreePlace = 3, AreaPlace = 4, GroupId = 5, TabsId = 6 };

constexpr int rowHeight = 20;
constexpr int dragType = 77;

// Rows are numbers from 1 on. Notes what would be a call into nowhere.
struct LivingTree {
    static VX3TreeTable Table()
    {
        VX3TreeTable table = {};
        table.firstRoot = [](void* object) {
            LivingTree& tree = Of(object);
            if (tree.onAsk)
                std::exchange(tree.onAsk, nullptr)();
            return Row(tree.count > 0 ? 1 : 0);
        };
        table.next = [](void* object, void* row) { return Row(NumberOf(row) < Of(object).count ? NumberOf(row) + 1 : 0); };
        table.rowHeight = [](void* object, void*) { return Of(object).height; };
        table.columnWidth = [](void* object, void*, int32_t) { return Of(object).width; };
        table.dragType = [](void*, void*) { return int32_t(dragType); };
        table.makeDrag = [](void* object, void*) -> void* { return &Of(object).out; };
        table.freeDrag = [](void* object, void* row, void* data) {
            LivingTree& tree = Of(object);
            EXPECT_EQ(data, &tree.out);
            tree.freed += "freed " + std::to_string(NumberOf(row)) + (tree.log ? " " + tree.log->Take() : "");
        };
        table.select = [](void* object, void* row, int32_t) {
            ++Of(object).selects;
            Of(object).selected = row;
        };
        table.isSelected = [](void* object, void* row) -> VX3Bool { return Of(object).selected == row; };
        return table;
    }
    static LivingTree& Of(void* object)
    {
        EXPECT_TRUE(static_cast<LivingTree*>(object)->isAlive) << "its module has freed it";
        return *static_cast<LivingTree*>(object);
    }
    static intptr_t NumberOf(void* row) { return reinterpret_cast<intptr_t>(row); }
    static void* Row(intptr_t number) { return reinterpret_cast<void*>(number); }

    intptr_t count = 5;
    int32_t height = rowHeight;
    int32_t width = 50;
    int out = 0;
    int selects = 0;
    void* selected = nullptr;
    bool isAlive = true;
    std::string freed;
    Log* log = nullptr;
    std::function<void()> onAsk;
};

class TreeLife : public DeskTest
{
protected:
    TreeLife()
    {
        window.on["createLayout"] = [this] {
            Begin(window, ShapeOf(VX3_GADGET_GROUP, GroupId, fills));
            Add(window, ShapeOf(VX3_GADGET_TREE, TreePlace, fills));
            Gadgets().end(window.handle);
            Begin(window, ShapeOf(VX3_GADGET_TABS, TabsId));
            Add(window, ShapeOf(VX3_GADGET_SPACE, 0));
            Add(window, ShapeOf(VX3_GADGET_SPACE, 0));
            Gadgets().end(window.handle);
            EXPECT_TRUE(Trees().attach(window.handle, TreePlace, &rows, &table));
        };
        window.Open();
        desk.Deliver();
    }
    static const VX3TreeServices& Trees() { return *Desk::Services()->tree; }
    bool Press(int row, uint32_t qualifiers = 0)
    {
        Input input;
        input.at = { 40, row * rowHeight - rowHeight / 2 };
        input.qualifiers = qualifiers;
        return desk.Feed(Find(TreePlace), input);
    }

    LivingTree rows;
    VX3TreeTable table = LivingTree::Table();
    ModuleDialog window{ log, "W" };
};

TEST_F(TreeLife, WhatIsDraggedIsFreedBeforeItsTreeGoes)
{
    toolkit.onDrag = [&](Gadget&) {
        Trees().refresh(window.handle, TreePlace); // the rows would have to be asked for
        log.Take();
        rows.log = &log;
        window.Free();
        rows.isAlive = false;
    };
    Press(2);
    EXPECT_EQ(rows.freed, "freed 2 ") << "while everything is still there";
    EXPECT_EQ(log.Take(), "W visF, W destroyWindow") << "and before the window hears that it goes";
}

TEST_F(TreeLife, WhatIsDraggedIsFreedBeforeItsGadgetIsFlushedAway)
{
    toolkit.onDrag = [&](Gadget&) {
        EXPECT_FALSE(Trees().attach(window.handle, TreePlace, &rows, &table)) << "something of the other one is out";
        EXPECT_TRUE(Gadgets().flush(window.handle, GroupId));
        EXPECT_EQ(rows.freed, "freed 3");
        rows.isAlive = false;
        EXPECT_FALSE(desk.MoveDrag({ 1050, 530 }, 0)) << "nothing is dragged any more";
    };
    Press(3);
    EXPECT_EQ(rows.freed, "freed 3");
}

TEST_F(TreeLife, RowsThatChangeWhileTheyAreAskedForAreAskedForAgain)
{
    rows.onAsk = [&] {
        rows.count = 9;
        EXPECT_TRUE(Trees().refresh(window.handle, TreePlace));
        VX3Rectangle place;
        int32_t indent;
        EXPECT_FALSE(Trees().showRow(window.handle, TreePlace, LivingTree::Row(1))) << "in the middle of the question";
        EXPECT_FALSE(Trees().getRowPlace(window.handle, TreePlace, LivingTree::Row(1), &place, &indent));
        EXPECT_FALSE(Trees().setFocusRow(window.handle, TreePlace, LivingTree::Row(1)));
        EXPECT_FALSE(Trees().attach(window.handle, TreePlace, &rows, &table));
        rows.count = 3; // what this question still sees
    };
    Trees().refresh(window.handle, TreePlace);
    EXPECT_EQ(RowsOf(*Find(TreePlace).tree).size(), 3u);
    rows.count = 9;
    desk.Deliver();
    EXPECT_EQ(Find(TreePlace).tree->rows.size(), 9u);
}

TEST_F(TreeLife, NothingThatCallsOthersRunsWhileAModuleAnswers)
{
    ModuleDialog other{ log, "O" };
    ModuleDialog freed{ log, "F" };
    freed.Open();
    log.Take();
    rows.onAsk = [&] {
        EXPECT_FALSE(Gadgets().update(window.handle, 0) || Gadgets().flush(window.handle, GroupId));
        EXPECT_FALSE(Gadgets().setValue(window.handle, TabsId, 1)) << "it would make a layout";
        EXPECT_FALSE(other.Open());
        EXPECT_FALSE(Dialogs().close(window.handle, 0));
        EXPECT_FALSE(Desk::Services()->box->ask(nullptr));
        freed.Free();
        EXPECT_EQ(log.Take(), "");
        EXPECT_FALSE(rows.onAsk) << "it was not asked again in between";
    };
    Trees().refresh(window.handle, TreePlace);
    desk.Deliver();
    EXPECT_EQ(desk.Windows().size(), 2u);
    desk.Deliver();
    EXPECT_EQ(desk.Windows().size(), 1u) << "what is freed goes afterwards";
    EXPECT_EQ(log.Take(), "") << "and its module is not called any more";
    EXPECT_TRUE(Gadgets().update(window.handle, 0) && Gadgets().setValue(window.handle, TabsId, 1));
}

TEST_F(TreeLife, ALayoutThatIsAskedForWhileAnAreaIsMeasuredOrDrawnIsRefused)
{
    struct Eager {
        VX3Dialog dialog;
        int measured = 0;
        int drawn = 0;
        int refused = 0;
        static void Note(Eager& eager) { eager.refused += !Desk::Services()->gadget->update(eager.dialog, 0); }
    } eager = { window.handle };
    static const VX3AreaTable operations = { [](void* object, int32_t* width, int32_t* height) {
                                                auto& self = *static_cast<Eager*>(object);
                                                *width = *height = 10 + ++self.measured;
                                                Eager::Note(self);
                                            },
                                             [](void* object, VX3Canvas, const VX3Rectangle*) {
                                                 auto& self = *static_cast<Eager*>(object);
                                                 ++self.drawn;
                                                 Eager::Note(self);
                                             },
                                             nullptr, nullptr };
    Gadgets().flush(window.handle, GroupId);
    Add(window, ShapeOf(VX3_GADGET_AREA, AreaPlace, fills));
    const VX3Area area = Areas().create(&eager, &operations);
    Areas().attach(area, window.handle, AreaPlace);
    EXPECT_TRUE(Gadgets().update(window.handle, 0));
    EXPECT_GT(eager.measured, 0);
    EXPECT_LT(eager.measured, 10);
    NoCanvas canvas;
    desk.Paint(Find(AreaPlace), canvas, { 0, 0, 10, 10 });
    EXPECT_EQ(eager.drawn, 1);
    EXPECT_EQ(eager.refused, eager.measured + eager.drawn);
    Areas().free(area);
}

} // namespace
