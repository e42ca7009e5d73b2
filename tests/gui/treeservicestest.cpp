// The section of the table over trees, with a desk: rows on the screen, refreshes that wait for
// the main loop, and drags that a tree answers for its dialog.

#include "deskfixture.h"
#include "gui/treestate.h"

using namespace vx3;
using namespace vx3::gui;

namespace {

constexpr int rowCount = 20;

// Rows are numbers from 1 on, without children, each 20 high.
struct NumberTree {
    static VX3TreeTable Table()
    {
        VX3TreeTable table = {};
        table.firstRoot = [](void* object) { return Row(static_cast<NumberTree*>(object)->count > 0 ? 1 : 0); };
        table.next = [](void* object, void* row) {
            const intptr_t number = reinterpret_cast<intptr_t>(row);
            return Row(number < static_cast<NumberTree*>(object)->count ? number + 1 : 0);
        };
        table.rowHeight = [](void*, void*) { return int32_t(20); };
        table.columnWidth = [](void*, void*, int32_t) { return int32_t(50); };
        table.acceptDrag = [](void*, void* row, const VX3Container* message) {
            const bool isOurs = core::ContainerServices()->getInt32(message, VX3_DRAG_KEY_TYPE, 0) == 77;
            return isOurs && row == Row(2) ? uint32_t(VX3_DROP_ON_ROW) : uint32_t(VX3_DROP_REFUSED);
        };
        table.drop = [](void* object, void* row, const VX3Container* message) {
            EXPECT_TRUE(core::ContainerServices()->getBool(message, VX3_DRAG_KEY_DROP, 0));
            static_cast<NumberTree*>(object)->droppedOn = row;
        };
        return table;
    }
    static void* Row(intptr_t number) { return reinterpret_cast<void*>(number); }

    intptr_t count = rowCount;
    void* droppedOn = nullptr;
};

class TreeServicesTest : public DeskTest
{
protected:
    TreeServicesTest()
    {
        window.on["createLayout"] = [this] {
            Add(window, ShapeOf(VX3_GADGET_TREE, 3, fills));
            Add(window, ShapeOf(VX3_GADGET_BUTTON, 4), "Go");
            EXPECT_TRUE(Trees().attach(window.handle, 3, &rows, &table));
            EXPECT_FALSE(Trees().attach(window.handle, 4, &rows, &table)) << "not a tree";
            EXPECT_FALSE(Trees().attach(window.handle, 3, &rows, nullptr));
        };
        window.Open({ 7, 0, -1, -1, 100, 117 }); // the tree has 100, the button 13
    }
    static const VX3TreeServices& Trees() { return *Desk::Services()->tree; }
    Place PlaceOf(intptr_t row)
    {
        VX3Rectangle rectangle = { 0, 0, -1, -1 };
        int32_t indent = 0;
        const bool isSeen = Trees().getRowPlace(window.handle, 3, NumberTree::Row(row), &rectangle, &indent);
        EXPECT_EQ(indent, isSeen ? treeIndent : 0);
        return gui::PlaceOf(rectangle);
    }

    NumberTree rows;
    VX3TreeTable table = NumberTree::Table();
    ModuleDialog window{ log, "W" };
};

TEST_F(TreeServicesTest, RowsAreFoundOnTheScreenAndScrolledTo)
{
    EXPECT_EQ(PlaceOf(1), (Place{ 1000, 500, 90, 20 }));
    EXPECT_EQ(PlaceOf(5), (Place{ 1000, 580, 90, 20 }));
    EXPECT_TRUE(PlaceOf(6).IsEmpty()) << "below what is seen";
    EXPECT_TRUE(PlaceOf(99).IsEmpty()) << "no such row";
    EXPECT_TRUE(Trees().showRow(window.handle, 3, NumberTree::Row(20)));
    EXPECT_EQ(PlaceOf(20), (Place{ 1000, 580, 90, 20 }));
    EXPECT_FALSE(Trees().showRow(window.handle, 3, NumberTree::Row(99)));
    Gadgets().show(window.handle, 3, 0);
    Gadgets().update(window.handle, 0);
    EXPECT_TRUE(PlaceOf(20).IsEmpty()) << "the tree is hidden";
    window.Free();
    EXPECT_FALSE(Trees().refresh(1, 3) || Trees().redraw(window.handle, 3) || Trees().setFocusRow(window.handle, 3, nullptr));
}

TEST_F(TreeServicesTest, ARefreshIsSettledByTheMainLoop)
{
    desk.Deliver();
    EXPECT_FALSE(desk.HasPosted());
    Trees().showRow(window.handle, 3, NumberTree::Row(20));
    rows.count = 2;
    EXPECT_TRUE(Trees().refresh(window.handle, 3));
    EXPECT_TRUE(desk.HasPosted()) << "whoever waits for rest waits for it";
    EXPECT_EQ(Find(3).content.height, rowCount * 20);
    desk.Deliver();
    EXPECT_FALSE(desk.HasPosted());
    EXPECT_EQ(Find(3).content, (Size{ 100, 100 })) << "the bar is gone";
    EXPECT_EQ(Find(3).scrolled, Point());
    Trees().refresh(window.handle, 3);
    window.Free();
    desk.Deliver();
}

TEST_F(TreeServicesTest, TheFocusOutlastsRowsThatAreAskedForAgain)
{
    EXPECT_TRUE(Trees().setFocusRow(window.handle, 3, NumberTree::Row(7)));
    Trees().refresh(window.handle, 3);
    desk.Deliver();
    TreeState& tree = *Find(3).tree;
    EXPECT_EQ(FindRowById(tree, tree.focus), std::optional<size_t>(6));
}

TEST_F(TreeServicesTest, ATreeAnswersADragForItsDialog)
{
    log.Take();
    EXPECT_EQ(desk.MoveForeignDrag({ 1050, 530 }, 0, 77, nullptr), VX3_CURSOR_ACCEPT);
    EXPECT_EQ(desk.MoveForeignDrag({ 1050, 550 }, 0, 77, nullptr), VX3_CURSOR_REFUSED) << "another row";
    EXPECT_EQ(desk.MoveForeignDrag({ 1050, 530 }, 0, 78, nullptr), VX3_CURSOR_REFUSED) << "another type";
    EXPECT_EQ(log.Take(), "") << "the dialog is not asked";
    desk.EndForeignDrag({ 1050, 550 }, 0, 77, nullptr, true);
    EXPECT_EQ(rows.droppedOn, nullptr) << "not on what refuses it";
    desk.MoveForeignDrag({ 1050, 530 }, 0, 77, nullptr);
    desk.EndForeignDrag({ 1050, 530 }, 0, 77, nullptr, true);
    EXPECT_EQ(rows.droppedOn, NumberTree::Row(2));
    EXPECT_FALSE(Find(3).tree->dropTarget);
}

} // namespace
