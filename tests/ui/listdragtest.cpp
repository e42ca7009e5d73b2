// A drag over a list: what it would be dropped on, what is shown of that, and how far the
// list scrolls to meet it. Four columns of 66 by 79 in a part of 160.

#include "panefixture.h"

using namespace browser;
using namespace vx3::tests;

namespace {

class ListDrag : public PaneTest
{
protected:
    void OpenLetters(int32_t count)
    {
        Add("0", Attribute::folder);
        Add("1", Attribute::folder);
        AddLetters(count);
        Open();
    }
    DropTarget TargetAt(int32_t x, int32_t y, const DragBlock& dragged = {})
    {
        return pane->View().DropTargetAt({ x, y }, HitTest::Cell, dragged);
    }
    std::string NameOf(const ContentRef& node) { return node ? Utf8(node->GetNameRef()) : "none"; }
};

TEST_F(ListDrag, AFolderIsATargetAndAFileIsItsFolder)
{
    OpenLetters(3);
    const NodeRef dragged[] = { At(1), At(3) };
    const DragBlock block = { 2, dragged, &*pane };
    const struct {
        const char* what;
        int32_t x;
        const char* target;
        bool isChanged;
        const char* entries;
    } rows[] = {
        { "a folder", 30, "0", true, "[0] 1 a b c" },
        { "still there", 40, "0", false, "[0] 1 a b c" },
        { "a corner of its cell", 0, "0", false, "[0] 1 a b c" },
        { "one that is dragged itself", 70, "none", true, "0 1 a b c" },
        { "Kept: a file, so the folder that is shown", 140, "f", false, "0 1 a b c" },
        { "a file that is dragged itself", 200, "f", false, "0 1 a b c" },
        { "beside all", 268, "f", false, "0 1 a b c" },
    };
    for (const auto& row : rows) {
        const DropTarget target = TargetAt(row.x, 60, block);
        EXPECT_EQ(NameOf(target.node), row.target) << row.what;
        EXPECT_EQ(target.isChanged, row.isChanged) << row.what;
        EXPECT_EQ(Entries(), row.entries) << row.what;
    }
    const NodeRef shown[] = { folder };
    EXPECT_EQ(NameOf(TargetAt(268, 60, { 1, shown, nullptr }).node), "none") << "a folder into itself";
    EXPECT_TRUE(pane->View().ClearDropTarget());
    EXPECT_FALSE(pane->View().ClearDropTarget());
}

// Kept: one mark serves both, so what the user had selected is not any more.
TEST_F(ListDrag, ATargetLosesItsOwnSelection)
{
    OpenLetters(1);
    Select({ 0, 2 });
    (void)TargetAt(30, 30);
    EXPECT_EQ(Entries(), "[0] 1 [a]");
    (void)TargetAt(96, 30);
    EXPECT_EQ(Entries(), "0 [1] [a]");
    EXPECT_TRUE(pane->View().ClearDropTarget());
    EXPECT_EQ(Entries(), "0 1 [a]");
}

TEST_F(ListDrag, TheListScrollsToTheEntryUnderThePointer)
{
    OpenLetters(20);
    const struct {
        int32_t from, y, to;
    } rows[] = {
        { 0, 30, 0 },                  // seen with its margin
        { 0, 100, 8 },                 // its lower margin is not: 79 + 79 + 10 is seen then
        { 8, 159, 87 },                // a sliver of the third row
        { 300, 310, 227 },             // upwards, with the margin
        { 20, 30, 0 },                 // not above the top
        { 474 - 160, 470, 474 - 160 }, // nor below the end
    };
    for (const auto& row : rows) {
        gui.Scroll(row.from);
        (void)gui.Calls();
        (void)TargetAt(30, row.y);
        EXPECT_EQ(gui.scrolled, row.to) << row.from << " " << row.y;
        EXPECT_EQ(gui.Calls(), row.from == row.to ? "" : "redraw");
        EXPECT_TRUE(pane->View().IsDrawing());
    }
}

TEST_F(ListDrag, ThePaneRefusesAndSaysSo)
{
    OpenLetters(3);
    const NodeRef dragged[] = { At(2) };
    DragBlock block = { 1, dragged, &*pane };
    EXPECT_TRUE(gui.TellDrag(VX3_DRAG_BROWSER, &block, 30, 30));
    EXPECT_EQ(gui.dragResult, VX3_CURSOR_REFUSED);
    EXPECT_EQ(Entries(), "[0] 1 a b c");
    EXPECT_EQ(gui.Calls(), "redraw");
    FilePath file = PathOf("/x/y.png");
    EXPECT_TRUE(gui.TellDrag(VX3_DRAG_FILE, file.Value(), 96, 30));
    EXPECT_EQ(Entries(), "0 [1] a b c");
    EXPECT_EQ(gui.dragResult, VX3_CURSOR_REFUSED);
    const struct {
        int32_t type;
        void* data;
        int32_t phase, gadget;
        const char* what;
        bool isConsumed;
    } ends[] = {
        { VX3_DRAG_BROWSER, &block, VX3_DRAG_KEY_DROP, 10122, "dropped", true },
        { VX3_DRAG_BROWSER, &block, VX3_DRAG_KEY_END, 0, "over", false },
        { VX3_DRAG_BROWSER, &block, 0, 10127, "beside the list", false },
        { VX3_DRAG_BROWSER, nullptr, 0, 10122, "nothing in it", true },
    };
    for (const auto& end : ends) {
        (void)gui.TellDrag(VX3_DRAG_BROWSER, &block, 30, 30);
        EXPECT_EQ(Entries(), "[0] 1 a b c");
        EXPECT_EQ(gui.TellDrag(end.type, end.data, 30, 30, end.phase, end.gadget), end.isConsumed) << end.what;
        EXPECT_EQ(gui.dragResult, end.isConsumed ? int32_t{ VX3_CURSOR_REFUSED } : 0) << end.what;
        EXPECT_EQ(Entries(), "0 1 a b c") << end.what;
    }
    EXPECT_TRUE(gui.TellDrag(VX3_DRAG_OBJECTS, &block, 30, 30));
    EXPECT_EQ(Entries(), "0 1 a b c") << "of a type that nothing here takes";
}

} // namespace
