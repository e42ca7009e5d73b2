// Trees of a host over a small tree of nodes: which rows are shown, what mouse, keys and drags
// ask of the module, and that nothing goes wrong when it changes meanwhile. Rows are 20 high.

#include <gtest/gtest.h>

#include <functional>

#include "core/values.h"
#include "gui/canvasscope.h"
#include "gui/containervalue.h"
#include "gui/treeinput.h"
#include "gui/treepaint.h"
#include "plaintoolkit.h"

using namespace vx3;
using namespace vx3::gui;

namespace {

struct Node {
    std::string name;
    std::vector<std::unique_ptr<Node>> children;
    Node* parent = nullptr;
    bool isOpen = false;
    int64_t id = 0;

    Node* Add(const std::string& child)
    {
        static int64_t lastId = 0;
        children.push_back(std::make_unique<Node>());
        children.back()->name = child;
        children.back()->parent = this;
        children.back()->id = ++lastId;
        return children.back().get();
    }
};

// The module's side: a tree of nodes and what was asked of it.
class NodeTree
{
public:
    NodeTree()
    {
        for (const char* name : { "alpha", "beta", "gamma" })
            for (const char* child : { "one", "two", "three" })
                (root.children.empty() || root.children.back()->name != name ? root.Add(name) : root.children.back().get())->Add(child);
    }

    Node* At(size_t index) { return root.children[index].get(); }
    static VX3TreeTable Table();

    Node root;
    Node* selected = nullptr;
    std::vector<std::string> calls; // of what changes something, in order
    std::function<void()> onSelect = [] {};
    int asked = 0; // rows asked for their height: how often the rows were asked for
    uint32_t acceptAnswer = VX3_DROP_ON_ROW;
    bool removesHostRows = false;

private:
    static NodeTree& Of(void* object) { return *static_cast<NodeTree*>(object); }
    static Node& Row(void* row) { return *static_cast<Node*>(row); }
    static void* Neighbour(void* row, int distance);
};

void* NodeTree::Neighbour(void* row, int distance)
{
    const auto& siblings = Row(row).parent->children;
    for (size_t i = 0; i < siblings.size(); ++i)
        if (siblings[i].get() == row)
            return i + static_cast<size_t>(distance) < siblings.size() ? siblings[i + static_cast<size_t>(distance)].get() : nullptr;
    return nullptr;
}

VX3TreeTable NodeTree::Table()
{
    VX3TreeTable table = {};
    table.firstRoot = [](void* object) -> void* { return Of(object).root.children.empty() ? nullptr : Of(object).At(0); };
    table.firstChild = [](void*, void* row) -> void* { return Row(row).children.empty() ? nullptr : Row(row).children[0].get(); };
    table.next = [](void*, void* row) { return Neighbour(row, 1); };
    table.columnWidth = [](void*, void* row, int32_t) { return static_cast<int32_t>(10 * Row(row).name.size()); };
    table.rowHeight = [](void* object, void*) {
        ++Of(object).asked;
        return int32_t(20);
    };
    table.isSelected = [](void* object, void* row) { return VX3Bool(Of(object).selected == row); };
    table.isOpen = [](void*, void* row) { return VX3Bool(Row(row).isOpen); };
    table.name = [](void*, void* row, VX3String* text) {
        core::TextServices()->copy(text, core::Text(std::string_view(Row(row).name)).Get());
    };
    table.id = [](void*, void* row) { return Row(row).id; };
    table.dragType = [](void*, void* row) { return Row(row).name == "three" ? 0 : int32_t(VX3_DRAG_BROWSER); };
    table.open = [](void* object, void* row, VX3Bool open) {
        Row(row).isOpen = open;
        Of(object).calls.push_back((open ? "open " : "close ") + Row(row).name);
    };
    table.select = [](void* object, void* row, int32_t mode) {
        Of(object).selected = mode == VX3_SELECT_REMOVE ? nullptr : &Row(row);
        Of(object).calls.push_back("select " + Row(row).name + (mode ? " " + std::to_string(mode) : ""));
        Of(object).onSelect();
    };
    table.acceptDrag = [](void* object, void*, const VX3Container*) { return Of(object).acceptAnswer; };
    table.drop = [](void* object, void* row, const VX3Container*) { Of(object).calls.push_back("drop " + Row(row).name); };
    table.contextMenu = [](void* object, void*, VX3Container* menu) {
        if (Of(object).removesHostRows) {
            core::ContainerServices()->remove(menu, VX3_TREE_MENU_OPEN_ALL);
            core::ContainerServices()->remove(menu, VX3_TREE_MENU_CLOSE_ALL);
        }
    };
    table.menuCommand = [](void* object, void* row, int32_t command) {
        Of(object).calls.push_back("menu " + Row(row).name + " " + std::to_string(command));
        return VX3Bool(command < VX3_TREE_MENU_OPEN_ALL);
    };
    table.makeDrag = [](void* object, void*) -> void* { return &Of(object).asked; };
    table.freeDrag = [](void* object, void* row, void* data) {
        Of(object).calls.push_back(std::string("free") + (row ? "" : " without row") + (data == &Of(object).asked ? "" : " wrong data"));
    };
    table.doubleClick = [](void*, void* row) { return VX3Bool(Row(row).name == "two"); };
    table.deleteKey = [](void* object) {
        Of(object).calls.push_back("delete");
        return VX3Bool(1);
    };
    return table;
}

class Host : public TreeHost
{
public:
    Toolkit& GetToolkit() override { return toolkit; }
    void SettleLater(Gadget&) override { ++waits; }
    bool Drag(Gadget&, int32_t type, void*) override
    {
        ++drags;
        EXPECT_EQ(type, VX3_DRAG_BROWSER);
        duringDrag();
        return isDragged;
    }
    int32_t Popup(Gadget&, const VX3Container& menu, int32_t x, int32_t) override
    {
        EXPECT_EQ(x, -1) << "at the pointer";
        menuRows = core::ContainerServices()->count(&menu);
        return choice;
    }

    PlainToolkit toolkit;
    int waits = 0;
    int drags = 0;
    int menuRows = 0;
    bool isDragged = false;
    int32_t choice = 0;
    std::function<void()> duringDrag = [] {};
};

class TreeTest : public testing::Test
{
protected:
    TreeTest()
    {
        gadget.place = { 0, 0, 200, 100 };
        gadget.dialog = &dialog;
        AttachTree(gadget, host, &nodes, &table);
        SettleTree(gadget);
    }

    // Rows from the top, indented by points; an open one with a minus, a closed one with a plus.
    std::string Rows()
    {
        std::string text;
        for (const TreeRow& row : RowsOf(*gadget.tree))
            text += std::string(static_cast<size_t>(row.depth), '.') + (row.hasExpander ? row.isOpen ? "-" : "+" : "")
                + static_cast<Node*>(row.row)->name + " ";
        return text;
    }
    std::string TakeCalls()
    {
        std::string text;
        for (const std::string& call : std::exchange(nodes.calls, {}))
            text += (text.empty() ? "" : ", ") + call;
        return text;
    }
    bool Press(int x, int y, int32_t channel = VX3_CHANNEL_LEFT, uint32_t qualifiers = 0, bool isDouble = false)
    {
        Input input;
        input.at = { x, y };
        input.channel = channel;
        input.qualifiers = qualifiers;
        input.isDouble = isDouble;
        return FeedTree(gadget, input);
    }
    bool Key(int32_t key, const std::u16string& text = u"")
    {
        Input input;
        input.device = Device::Keyboard;
        input.channel = key;
        input.text = text;
        return FeedTree(gadget, input);
    }
    void OpenRow(Node* node)
    {
        node->isOpen = true;
        RefreshTree(gadget);
        SettleTree(gadget);
    }

    Host host;
    NodeTree nodes;
    VX3TreeTable table = NodeTree::Table();
    Dialog dialog;
    Gadget gadget = { dialog, VX3GadgetShape{ VX3_GADGET_TREE, 1, 0, 0, 0, 0 } };
    static constexpr int inRow = 60; // right of all expanders
};

TEST_F(TreeTest, RowsAreAskedForOnceUntilARefresh)
{
    EXPECT_EQ(Rows(), "+alpha +beta +gamma ");
    const int asked = nodes.asked;
    Rows();
    LayOutTree(host.toolkit, gadget);
    EXPECT_EQ(nodes.asked, asked);
    nodes.At(1)->isOpen = true;
    nodes.At(1)->children[2]->Add("deep");
    nodes.At(1)->children[2]->isOpen = true;
    RefreshTree(gadget);
    RefreshTree(gadget);
    EXPECT_EQ(nodes.asked, asked) << "later, not at once";
    EXPECT_EQ(Rows(), "+alpha -beta .one .two .-three ..deep +gamma ");
    nodes.root.children.clear();
    RefreshTree(gadget);
    EXPECT_EQ(Rows(), "");
    EXPECT_TRUE(Press(10, 10) && Key(VX3_KEY_DOWN) && Key(VX3_KEY_LEFT) && Key(VX3_KEY_END) && Key(VX3_KEY_PAGE_DOWN));
}

TEST_F(TreeTest, ATreeWithoutAnEndIsCut)
{
    table.next = [](void*, void* row) { return row; };
    RefreshTree(gadget);
    EXPECT_EQ(RowsOf(*gadget.tree).size(), size_t(1) << 20);
}

TEST_F(TreeTest, ContentAndBarsFollowTheRows)
{
    EXPECT_EQ(gadget.content, (Size{ 200, 100 }));
    EXPECT_EQ(gadget.view, (Size{ 200, 100 }));
    host.toolkit.scrollChanges = 0;
    OpenRow(nodes.At(0));
    EXPECT_EQ(gadget.view, (Size{ 190, 100 })) << "six rows and a bar";
    EXPECT_EQ(gadget.content, (Size{ 190, 120 }));
    EXPECT_EQ(host.toolkit.scrollChanges, 1);
    nodes.At(0)->children[0]->name = std::string(30, 'w');
    RefreshTree(gadget);
    SettleTree(gadget);
    EXPECT_EQ(gadget.content, (Size{ 2 * treeIndent + 300, 120 }));
    EXPECT_EQ(gadget.view, (Size{ 190, 90 }));
}

TEST_F(TreeTest, MouseOpensSelectsAndActivates)
{
    OpenRow(nodes.At(0)); // -alpha .one .two .three +beta +gamma
    const struct {
        const char* what;
        int x, y;
        uint32_t qualifiers;
        bool isDouble;
        const char* calls;
    } cases[] = {
        { "expander closes", 5, 10, 0, false, "close alpha" },
        { "expander opens", 5, 10, 0, true, "open alpha" },
        { "no expander on a row without children", 20, 30, 0, false, "select one, free" },
        { "indent in front of an expander", 3, 30, 0, false, "free, select one" },
        { "row", inRow, 90, 0, false, "select beta, free" },
        { "selected row: when it is let go", inRow, 90, 0, false, "free, select beta" },
        { "cannot be dragged", inRow, 70, 0, false, "select three" },
        { "ctrl adds", inRow, 30, VX3_QUALIFIER_CTRL, false, "select one 1, free" },
        { "ctrl removes", inRow, 30, VX3_QUALIFIER_CTRL, false, "select one 2" },
        { "shift from the focus, down", inRow, 70, VX3_QUALIFIER_SHIFT, false, "select one, select two 1, select three 1" },
        { "shift from there, up", inRow, 10, VX3_QUALIFIER_SHIFT, false, "select three, select two 1, select one 1, select alpha 1" },
        { "double click done by the module", inRow, 50, 0, true, "" },
        { "double click opens otherwise", inRow, 90, 0, true, "open beta" },
    };
    for (const auto& row : cases) {
        EXPECT_TRUE(Press(row.x, row.y, VX3_CHANNEL_LEFT, row.qualifiers, row.isDouble)) << row.what;
        EXPECT_EQ(TakeCalls(), row.calls) << row.what;
        EXPECT_EQ(host.toolkit.focused, &gadget);
    }
    EXPECT_FALSE(Press(inRow, 10, VX3_CHANNEL_BACK)) << "for the window";
}

TEST_F(TreeTest, EmptySpaceAndScrolledRows)
{
    EXPECT_TRUE(Press(inRow, 70));
    EXPECT_FALSE(Press(inRow, 70, VX3_CHANNEL_RIGHT));
    EXPECT_EQ(TakeCalls(), "");
    OpenRow(nodes.At(0));
    OpenRow(nodes.At(1));
    Input wheel;
    wheel.channel = VX3_CHANNEL_WHEEL;
    wheel.value = -120;
    EXPECT_TRUE(FeedTree(gadget, wheel));
    EXPECT_EQ(gadget.scrolled, (Point{ 0, 60 })) << "three rows";
    Press(inRow, 10);
    EXPECT_EQ(TakeCalls(), "select three");
    FeedTree(gadget, wheel);
    EXPECT_EQ(gadget.scrolled, (Point{ 0, 80 })) << "as far as there is something";
    wheel.value = 1200;
    FeedTree(gadget, wheel);
    EXPECT_EQ(gadget.scrolled, (Point{ 0, 0 }));
}

TEST_F(TreeTest, ADragLeavesTheSelectionAndItsDataIsFreedOnce)
{
    Press(inRow, 10);
    TakeCalls();
    host.isDragged = true;
    Press(inRow, 10);
    EXPECT_EQ(TakeCalls(), "free") << "the press on what is selected does not select when something was dragged";
    host.duringDrag = [&] {
        nodes.root.children.erase(nodes.root.children.begin());
        nodes.selected = nullptr;
        RefreshTree(gadget);
    };
    Press(inRow, 10);
    EXPECT_EQ(TakeCalls(), "free without row");
}

TEST_F(TreeTest, ATreeThatGoesInTheMiddleIsNotTouchedAgain)
{
    nodes.onSelect = [&] { gadget.tree = nullptr; };
    EXPECT_TRUE(Press(inRow, 10));
    EXPECT_EQ(TakeCalls(), "select alpha") << "no drag and no redraw of what has gone";
    EXPECT_EQ(host.drags, 0);
    EXPECT_FALSE(Press(inRow, 10)) << "nothing is attached";
    AttachTree(gadget, host, &nodes, &table);
    nodes.onSelect = [&] { AttachTree(gadget, host, &nodes, &table); };
    EXPECT_TRUE(Key(VX3_KEY_END));
    EXPECT_EQ(TakeCalls(), "select gamma");
}

TEST_F(TreeTest, KeysMoveOpenAndClose)
{
    const struct {
        int32_t key;
        const char* calls;
    } cases[] = {
        { VX3_KEY_DOWN, "select alpha" }, // nothing was current
        { VX3_KEY_UP, "select alpha" },
        { VX3_KEY_DOWN, "select beta" },
        { VX3_KEY_RIGHT, "open beta" },
        { VX3_KEY_RIGHT, "select one" },
        { VX3_KEY_RIGHT, "" }, // has no children
        { VX3_KEY_LEFT, "select beta" },
        { VX3_KEY_LEFT, "close beta" },
        { VX3_KEY_LEFT, "" }, // a root
        { VX3_KEY_END, "select gamma" },
        { VX3_KEY_DOWN, "select gamma" },
        { VX3_KEY_ENTER, "open gamma" },
        { VX3_KEY_END, "select three" },
        { VX3_KEY_HOME, "select alpha" },
        { VX3_KEY_PAGE_DOWN, "select two" }, // the last row that is seen with the first: 5 in the view
        { VX3_KEY_PAGE_DOWN, "select three" },
        { VX3_KEY_PAGE_UP, "select beta" },
        { VX3_KEY_DELETE, "delete" },
    };
    for (const auto& row : cases) {
        EXPECT_TRUE(Key(row.key)) << row.calls;
        EXPECT_EQ(TakeCalls(), row.calls);
    }
    EXPECT_FALSE(Key(VX3_KEY_BACKSPACE)) << "for the window";
    EXPECT_FALSE(Key(VX3_KEY_F1));
    nodes.selected = nodes.At(2); // by the module, elsewhere
    Key(VX3_KEY_UP);
    EXPECT_EQ(TakeCalls(), "select beta") << "keys start from what is selected, not from the old focus";
}

TEST_F(TreeTest, KeysShowTheRowThatTheyReach)
{
    OpenRow(nodes.At(0));
    OpenRow(nodes.At(1));
    Key(VX3_KEY_END);
    EXPECT_EQ(gadget.scrolled, (Point{ 0, 80 }));
    Key(VX3_KEY_UP);
    EXPECT_EQ(gadget.scrolled, (Point{ 0, 80 })) << "is seen already";
    Key(VX3_KEY_HOME);
    EXPECT_EQ(gadget.scrolled, (Point{ 0, 0 }));
    EXPECT_EQ(PlaceOfRow(gadget, gadget.tree->rows[2]), (Place{ 0, 40, 190, 20 }));
}

TEST_F(TreeTest, TypingFindsNames)
{
    OpenRow(nodes.At(0)); // alpha one two three beta gamma
    const struct {
        int64_t pause;
        const char16_t* text;
        bool isConsumed;
        const char* calls;
    } cases[] = {
        { 2000, u"T", true, "select two" },
        { 2000, u"t", true, "select three" },
        { 100, u"t", true, "select two" }, // one letter goes through them
        { 2000, u"t", true, "select three" },
        { 100, u"w", true, "select two" },
        { 100, u"x", true, "" },
        { 2000, u" ", false, "" },
        { 2000, u"\x1b", false, "" },
        { 2000, u"g", true, "select gamma" },
    };
    for (const auto& row : cases) {
        host.toolkit.now += row.pause;
        EXPECT_EQ(Key(row.text[0], row.text), row.isConsumed);
        EXPECT_EQ(TakeCalls(), row.calls);
    }
}

TEST_F(TreeTest, TheMenuHasTheHostsRowsUnlessTheModuleTakesThemOut)
{
    nodes.At(0)->children[1]->Add("deep");
    RefreshTree(gadget);
    host.choice = VX3_TREE_MENU_OPEN_ALL;
    EXPECT_TRUE(Press(inRow, 10, VX3_CHANNEL_RIGHT));
    EXPECT_EQ(host.menuRows, 2);
    EXPECT_EQ(TakeCalls(), "select alpha, menu alpha 900000, open alpha, open two");
    host.choice = VX3_TREE_MENU_CLOSE_ALL;
    Press(inRow, 10, VX3_CHANNEL_RIGHT);
    EXPECT_EQ(TakeCalls(), "menu alpha 900001, close two, close alpha");
    host.choice = 5;
    Press(inRow, 10, VX3_CHANNEL_RIGHT);
    EXPECT_EQ(TakeCalls(), "menu alpha 5");
    nodes.removesHostRows = true;
    host.menuRows = 99;
    Press(inRow, 10, VX3_CHANNEL_RIGHT);
    EXPECT_EQ(host.menuRows, 99) << "a menu without rows does not open";
}

TEST_F(TreeTest, DragsOverRows)
{
    OpenRow(nodes.At(0));
    OpenRow(nodes.At(1)); // alpha one two three beta | one two three gamma
    const ContainerValue message;
    const auto moveTo = [&](int y) {
        host.toolkit.now += 60;
        return MoveDragOverTree(gadget, { inRow, y }, *message.Get());
    };
    EXPECT_EQ(moveTo(50), VX3_CURSOR_ACCEPT);
    EXPECT_EQ(gadget.tree->dropTarget, nodes.At(0)->children[1]->id);
    nodes.acceptAnswer = VX3_DROP_ON_ROW | VX3_DROP_COPY;
    EXPECT_EQ(moveTo(30), VX3_CURSOR_COPY);
    nodes.acceptAnswer = VX3_DROP_REFUSED;
    EXPECT_EQ(moveTo(30), VX3_CURSOR_REFUSED);
    EXPECT_FALSE(gadget.tree->dropTarget);
    EXPECT_FALSE(DropOnTree(gadget, { inRow, 30 }, *message.Get()));
    nodes.acceptAnswer = VX3_DROP_ON_ROW;
    moveTo(95);
    EXPECT_EQ(gadget.scrolled, (Point{ 0, 20 })) << "near the lower edge";
    MoveDragOverTree(gadget, { inRow, 95 }, *message.Get());
    EXPECT_EQ(gadget.scrolled, (Point{ 0, 20 })) << "not with each move";
    moveTo(3);
    EXPECT_EQ(gadget.scrolled, (Point{ 0, 0 }));
    EXPECT_EQ(TakeCalls(), "");
    EXPECT_TRUE(DropOnTree(gadget, { inRow, 90 }, *message.Get()));
    EXPECT_EQ(TakeCalls(), "drop beta");
    moveTo(50);
    LeaveTreeDrag(gadget);
    EXPECT_FALSE(gadget.tree->dropTarget);
}

// Notes what is drawn as text; coordinates of cells only.
class NotingCanvas : public Canvas
{
public:
    void SetClip(const Place&) override { }
    void ClearClip() override { }
    void SetPen(Colour) override { }
    void SetTextColour(Colour) override { }
    void Fill(const Place&) override { }
    void Line(Point, Point) override { ++lines; }
    void DrawBitmap(const VX3Bitmap*, const Place&, const Place&, bool) override { }
    void DrawText(std::u16string_view text, Point corner) override
    {
        note += core::Text(text).Utf8() + " " + std::to_string(corner.x) + "," + std::to_string(corner.y) + "  ";
    }

    std::string note;
    int lines = 0;
};

TEST_F(TreeTest, OnlyRowsInTheDirtyPartAreDrawn)
{
    OpenRow(nodes.At(0));
    NotingCanvas canvas;
    PaintTree(gadget, canvas, { 0, 10, 200, 25 });
    EXPECT_EQ(canvas.note, "alpha 21,3  one 39,23  ");
    EXPECT_EQ(canvas.lines, 5) << "one expander";
    static VX3Canvas kept;
    table.drawCell = [](void* object, void* row, int32_t column, VX3Canvas drawn, const VX3Rectangle* cell) {
        EXPECT_EQ(column, VX3_COLUMN_ICON);
        EXPECT_NE(CanvasScope::Find(drawn), nullptr);
        static_cast<NodeTree*>(object)->calls.push_back(static_cast<Node*>(row)->name + " " + std::to_string(cell->x1) + ","
                                                        + std::to_string(cell->y1) + "-" + std::to_string(cell->y2));
        kept = drawn;
    };
    ScrollTree(gadget, { 0, 20 });
    PaintTree(gadget, canvas, { 0, 80, 200, 20 });
    EXPECT_EQ(TakeCalls(), "gamma 18,80-99");
    EXPECT_EQ(CanvasScope::Find(kept), nullptr) << "a canvas that was kept draws nowhere";
}

} // namespace
