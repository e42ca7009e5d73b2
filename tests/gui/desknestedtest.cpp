// What stays open while the main loop goes on: rubber bands, popup menus, fields over a window,
// drags; and what becomes of it when the window closes in the middle.

#include "deskfixture.h"

using namespace vx3;
using namespace vx3::gui;

namespace {

enum : int32_t { AreaPlace = 21, Splitter = 22, Left = 23, Right = 24 };

const VX3ContainerServices& Containers()
{
    return *core::ContainerServices();
}

class DeskNested : public DeskTest
{
protected:
    void OpenArea()
    {
        window.on["createLayout"] = [this] {
            Add(window, ShapeOf(VX3_GADGET_AREA, AreaPlace, fills));
            Areas().attach(area.handle, window.handle, AreaPlace);
        };
        ASSERT_TRUE(window.Open());
        log.Take();
    }

    ModuleDialog window{ log, "W" };
    ModuleArea area{ log, "area" };
};

TEST_F(DeskNested, AWindowThatClosesEndsARubberBandFirst)
{
    OpenArea();
    VX3Rectangle band = {};
    int32_t answer = -1;
    area.on["input"] = [&] { answer = Areas().trackRubberBand(area.handle, 3, 4, VX3_BAND_FRAME, &band); };
    toolkit.onBand = [](Gadget&) { return Band{ VX3_BAND_RECTANGLE, { 1, 2, 3, 4 } }; };
    desk.Feed(Find(AreaPlace), {});
    EXPECT_EQ(answer, VX3_BAND_RECTANGLE);
    EXPECT_EQ(band.y2, 4);
    EXPECT_EQ(Areas().trackRubberBand(area.handle, 3, 4, 1, &band), VX3_BAND_NONE);
    log.Take();

    toolkit.onBand = [this](Gadget&) {
        desk.UserClosed(WindowOf());
        EXPECT_EQ(toolkit.cancels, 1);
        EXPECT_TRUE(window.IsOpen());
        log.Add("band ends");
        return Band{ VX3_BAND_RECTANGLE, {} };
    };
    desk.Feed(Find(AreaPlace), {});
    EXPECT_EQ(answer, VX3_BAND_CANCELLED);
    EXPECT_EQ(log.Take(), "W inta, area input, W askClose, band ends, W visF, W destroyWindow");
}

TEST_F(DeskNested, APopupMenuIsReadFromItsContainer)
{
    OpenArea();
    ContainerValue menu;
    ContainerValue inside;
    auto set = [](ContainerValue& container, int32_t key, const char* text) {
        Containers().setText(container.Get(), key, core::Text(text).Get());
    };
    set(menu, 900, "Open&&c&");
    set(menu, 1, "R&D&d&");
    set(menu, 2, "");
    set(inside, 1, "More");
    set(inside, 77, "Inside&c&&d&");
    Containers().setContainer(menu.Get(), 3, inside.Get());
    std::vector<MenuItem> shown;
    int32_t choice = 900;
    toolkit.onPopup = [&](const std::vector<MenuItem>& rows) {
        shown = rows;
        return choice;
    };
    EXPECT_EQ(Menus().popup(window.handle, menu.Get(), -1, -1), 900);
    EXPECT_EQ(toolkit.popupCorner, (Point{ 1011, 522 })) << "at the pointer";
    ASSERT_EQ(shown.size(), 4u);
    EXPECT_EQ(shown[0].text, u"Open&&");
    EXPECT_EQ(shown[0].bits, uint32_t(VX3_MENU_CHECKED));
    EXPECT_EQ(shown[1].text, u"R&&D");
    EXPECT_EQ(shown[1].bits, uint32_t(VX3_MENU_DISABLED));
    EXPECT_EQ(shown[2].kind, MenuItem::Kind::Separator);
    EXPECT_EQ(shown[3].text, u"More");
    ASSERT_EQ(shown[3].children.size(), 1u) << "its title is no row";
    EXPECT_EQ(shown[3].children[0].bits, uint32_t(VX3_MENU_CHECKED | VX3_MENU_DISABLED));
    for (int32_t none : { 1, 77, 5, 0 }) {
        choice = none;
        EXPECT_EQ(Menus().popup(window.handle, menu.Get(), 5, 6), 0) << none;
    }
    EXPECT_EQ(toolkit.popupCorner, (Point{ 5, 6 }));
    log.Take();
    toolkit.onPopup = [&](const std::vector<MenuItem>&) {
        Dialogs().close(window.handle, 0);
        log.Add("menu ends");
        return 900;
    };
    EXPECT_EQ(Menus().popup(window.handle, menu.Get(), 5, 6), 0);
    EXPECT_EQ(log.Take(), "menu ends, W visF, W destroyWindow");
    EXPECT_EQ(Menus().popup(window.handle, menu.Get(), 5, 6), 0) << "it is closed";
}

// One field over the window at a time, each with one end.
class DeskPopupEdit : public DeskNested
{
protected:
    struct Edit {
        Log* log;
        std::string name;
        std::function<void(int32_t)> on = [](int32_t) {};
    };
    bool OpenEdit(Edit& edit, const char* text)
    {
        const VX3Rectangle place = { 10, 10, 100, 30 };
        const VX3PopupEditFunction function = [](void* user, int32_t reason, const VX3String* edited) {
            auto& self = *static_cast<Edit*>(user);
            const char* reasons[] = { "", " changed ", " closed ", " cancelled " };
            self.log->Add(self.name + reasons[reason] + core::ToUtf8(*edited));
            self.on(reason);
        };
        return Menus().popupEdit(window.handle, &place, core::Text(text).Get(), function, &edit);
    }
    Edit first{ &log, "first" };
    Edit second{ &log, "second" };
};

TEST_F(DeskPopupEdit, TellsEveryChangeAndItsEndOnce)
{
    EXPECT_FALSE(OpenEdit(first, "old")) << "the window is closed";
    OpenArea();
    ASSERT_TRUE(OpenEdit(first, "old"));
    EXPECT_EQ(toolkit.edited, u"old");
    desk.PopupEditChanged(u"new");
    desk.PopupEditEnded(u"new one", false);
    desk.PopupEditEnded(u"again", false);
    desk.PopupEditChanged(u"again");
    Menus().endPopupEdit(1);
    EXPECT_EQ(log.Take(), "first changed new, first closed new one");

    first.on = [](int32_t reason) {
        if (reason == VX3_EDIT_CHANGED)
            Menus().endPopupEdit(1);
    };
    ASSERT_TRUE(OpenEdit(first, "old"));
    desk.PopupEditChanged(u"bad");
    EXPECT_EQ(log.Take(), "first changed bad, first cancelled bad");
    EXPECT_EQ(toolkit.edited, u"");
}

TEST_F(DeskPopupEdit, ItsFunctionRunsInsideItsDialog)
{
    OpenArea();
    first.on = [&](int32_t reason) {
        if (reason == VX3_EDIT_CHANGED)
            Dialogs().close(window.handle, 0);
        log.Add("returns");
    };
    ASSERT_TRUE(OpenEdit(first, "old"));
    desk.PopupEditChanged(u"new");
    EXPECT_EQ(log.Take(), "first changed new, returns, first cancelled new, returns, W visF, W destroyWindow")
        << "the window closes when the function has returned";
}

TEST_F(DeskPopupEdit, AFieldThatLosesTheFocusByACallEndsLater)
{
    OpenArea();
    ASSERT_TRUE(OpenEdit(first, "old"));
    toolkit.onShow = [&] { desk.PopupEditEnded(u"as it stood", false); }; // as a toolkit does when the focus goes
    Gadgets().enable(window.handle, AreaPlace, 0);
    EXPECT_EQ(log.Take(), "") << "the call runs no callback";
    toolkit.onShow = [] {};
    desk.Deliver();
    EXPECT_EQ(log.Take(), "first closed as it stood");
}

TEST_F(DeskPopupEdit, ANewFieldEndsTheOneBeforeLater)
{
    OpenArea();
    ASSERT_TRUE(OpenEdit(first, "one"));
    desk.PopupEditChanged(u"one and a half");
    log.Take();
    ASSERT_TRUE(OpenEdit(second, "two"));
    EXPECT_EQ(log.Take(), "") << "the call runs no callback";
    EXPECT_EQ(toolkit.edited, u"two");
    desk.Deliver();
    EXPECT_EQ(log.Take(), "first closed one and a half");
    second.on = [&](int32_t) { OpenEdit(first, "three"); }; // the next file is renamed at once
    desk.PopupEditEnded(u"two", false);
    EXPECT_EQ(toolkit.edited, u"three");
    first.on = [](int32_t) {};
    second.on = [](int32_t) {};
    ASSERT_TRUE(OpenEdit(second, "four"));
    log.Take();
    Dialogs().close(window.handle, 0);
    EXPECT_EQ(log.Take(), "first closed three, second cancelled four, W visF, W destroyWindow");
    desk.Deliver();
    EXPECT_EQ(log.Take(), "");
}

// Two dialogs beside each other, both of which notice drags.
class DeskDrag : public DeskNested
{
protected:
    void SetUp() override
    {
        window.on["createLayout"] = [this] {
            Begin(window, ShapeOf(VX3_GADGET_SPLITTER, Splitter, fills));
            Add(window, ShapeOf(VX3_GADGET_SUBDIALOG, Left, fills));
            Add(window, ShapeOf(VX3_GADGET_TEXT, Right, fills));
            Gadgets().end(window.handle);
            Dialogs().attach(pane.handle, window.handle, Left);
        };
        pane.on["createLayout"] = [this] {
            Add(pane, ShapeOf(VX3_GADGET_AREA, AreaPlace, fills));
            Areas().attach(area.handle, pane.handle, AreaPlace);
        };
        for (ModuleDialog* dialog : { &window, &pane })
            dialog->onMessage = [this, dialog](int32_t code, const VX3Container* message, VX3Container*) {
                if (code == VX3_GUI_DRAG)
                    Note(dialog->name, message);
            };
        area.on["input"] = [this] { hasMoved = Menus().drag(area.handle, VX3_DRAG_BROWSER, &data); };
        ASSERT_TRUE(window.Open({ 7, 0, -1, -1, 300, 200 }));
        Find(Splitter).shape.columns = 2; // side by side
        Gadgets().update(window.handle, 0);
        log.Take();
    }
    void Note(const std::string& name, const VX3Container* message)
    {
        EXPECT_EQ(Containers().getInt32(message, VX3_DRAG_KEY_TYPE, 0), type);
        EXPECT_EQ(Containers().getPointer(message, VX3_DRAG_KEY_DATA, nullptr), &data);
        std::string line = name;
        line += Containers().getBool(message, VX3_DRAG_KEY_DROP, 0) ? " drop" : "";
        line += Containers().getBool(message, VX3_DRAG_KEY_END, 0) ? " end" : "";
        line += " on " + std::to_string(Containers().getInt32(message, VX3_DRAG_KEY_GADGET, 0));
        log.Add(line);
        if (name == "P")
            Menus().setDragResult(VX3_CURSOR_COPY);
    }
    std::string RunDrag(const std::function<void()>& gesture)
    {
        toolkit.onDrag = [gesture](Gadget&) { gesture(); };
        desk.Feed(Find(AreaPlace), {});
        return log.Take();
    }

    ModuleDialog pane{ log, "P" };
    int data = 0;
    int32_t type = VX3_DRAG_BROWSER;
    bool hasMoved = false;
    const Point inPane = { 1010, 510 };
    const Point inWindow = { 1290, 510 };
    const Point outside = { 5, 5 };
};

TEST_F(DeskDrag, GoesToTheDialogUnderThePointer)
{
    EXPECT_EQ(RunDrag([&] {
                  EXPECT_TRUE(desk.MoveDrag(inPane, 0));
                  EXPECT_EQ(toolkit.cursor, VX3_CURSOR_COPY);
                  EXPECT_TRUE(desk.MoveDrag(inWindow, 0));
                  EXPECT_EQ(toolkit.cursor, VX3_CURSOR_REFUSED) << "nobody said what a drop would do";
                  EXPECT_TRUE(desk.MoveDrag(outside, 0));
                  EXPECT_TRUE(desk.MoveDrag(inPane, 0));
                  desk.EndDrag(inPane, 0, true);
              }),
              "P inta, area input, P on 21, P 10003, P end on 0, P 10003, W on 24, W 10003, W end on 0, W 10003, "
              "P on 21, P 10003, P drop on 21, P 10003, P inte");
    EXPECT_TRUE(hasMoved);

    EXPECT_EQ(RunDrag([&] { desk.EndDrag(inPane, 0, true); }), "P inta, area input, P inte");
    EXPECT_FALSE(hasMoved) << "the pointer stayed where it was";

    EXPECT_EQ(RunDrag([&] {
                  desk.MoveDrag(inPane, 0);
                  desk.EndDrag(inPane, 0, false);
                  EXPECT_FALSE(desk.MoveDrag(inPane, 0));
              }),
              "P inta, area input, P on 21, P 10003, P end on 0, P 10003, P inte");
    EXPECT_TRUE(hasMoved);
}

TEST_F(DeskDrag, OtherProgramsGetFilesOfWhatCarriesSome)
{
    using Files = std::vector<std::string>;
    const auto filesOf = [this](int32_t dragged, void* carried) {
        Files files;
        area.on["input"] = [=, this] { Menus().drag(area.handle, dragged, carried); };
        RunDrag([&] { files = desk.DraggedFiles(); });
        return files;
    };
    core::Path path("/tmp/one file");
    EXPECT_EQ(filesOf(VX3_DRAG_FILE, path.Get()), Files{ "/tmp/one file" });
    EXPECT_EQ(filesOf(VX3_DRAG_BROWSER, &data), Files{}) << "nobody knows what it is";
    desk.SetFilesOfDrag([this](int32_t asked, const void* carried) {
        return asked == VX3_DRAG_BROWSER && carried == &data ? Files{ "a", "b" } : Files{};
    });
    EXPECT_EQ(filesOf(VX3_DRAG_BROWSER, &data), (Files{ "a", "b" }));
    EXPECT_EQ(filesOf(VX3_DRAG_OBJECTS, &data), Files{});
    EXPECT_EQ(desk.DraggedFiles(), Files{}) << "nothing is dragged";
}

TEST_F(DeskDrag, FindsWhatIsSeenThroughAScrollGroup)
{
    enum : int32_t { Scroll = 40, Column = 41, Upper = 42, Lower = 43 };
    ModuleDialog list(log, "L");
    list.on["createLayout"] = [&] {
        Begin(list, ShapeOf(VX3_GADGET_SCROLL, Scroll, fills));
        Begin(list, ShapeOf(VX3_GADGET_GROUP, Column, fills));
        Add(list, ShapeOf(VX3_GADGET_BUTTON, Upper, VX3_FLAG_FIT_H, 0, 200));
        Add(list, ShapeOf(VX3_GADGET_BUTTON, Lower, VX3_FLAG_FIT_H, 0, 200));
    };
    list.onMessage = [&](int32_t code, const VX3Container* message, VX3Container*) {
        if (code == VX3_GUI_DRAG)
            log.Add(std::to_string(Containers().getInt32(message, VX3_DRAG_KEY_GADGET, 0)));
    };
    ASSERT_TRUE(list.Open({ 8, 0, -1, -1, 100, 100 }));
    log.Take();
    const Point inside = { 1010, 550 };
    const Point onBar = { 1095, 550 };
    desk.MoveForeignDrag(inside, 0, VX3_DRAG_FILE, &data);
    desk.UserScrolled(Find(Scroll, 1), { 0, 300 });
    desk.MoveForeignDrag(inside, 0, VX3_DRAG_FILE, &data);
    desk.MoveForeignDrag(onBar, 0, VX3_DRAG_FILE, &data);
    EXPECT_EQ(log.Take(), "42, L 10003, L scrs, 43, L 10003, 40, L 10003");
}

TEST_F(DeskDrag, EndsBeforeItsWindowDoes)
{
    EXPECT_EQ(RunDrag([&] {
                  desk.MoveDrag(inWindow, 0);
                  Dialogs().detach(pane.handle);
                  EXPECT_GT(toolkit.cancels, 0);
                  EXPECT_FALSE(desk.MoveDrag(inWindow, 0));
              }),
              "P inta, area input, W on 24, W 10003, W end on 0, W 10003, P visF, P destroyWindow");
    EXPECT_TRUE(hasMoved);
}

TEST_F(DeskDrag, ADropMayBeginAnotherDrag)
{
    window.on["10003"] = [&] {
        window.on["10003"] = nullptr;
        toolkit.onDrag = [&](Gadget&) {
            EXPECT_TRUE(desk.MoveDrag(inPane, 0));
            desk.EndDrag(inPane, 0, false);
        };
        EXPECT_TRUE(Menus().drag(area.handle, VX3_DRAG_BROWSER, &data));
        EXPECT_FALSE(desk.MoveDrag(inPane, 0)) << "the outer one is dropped already";
    };
    EXPECT_EQ(RunDrag([&] {
                  const auto dropped = window.on["10003"];
                  window.on["10003"] = nullptr;
                  desk.MoveDrag(inWindow, 0);
                  window.on["10003"] = dropped;
                  desk.EndDrag(inWindow, 0, true);
              }),
              "P inta, area input, W on 24, W 10003, W drop on 24, W 10003, P on 21, P 10003, P end on 0, P 10003, P inte");
    EXPECT_TRUE(hasMoved);
    EXPECT_EQ(RunDrag([&] { desk.EndDrag(inPane, 0, true); }), "P inta, area input, P inte");
    EXPECT_FALSE(hasMoved) << "nothing of them is left";
}

TEST_F(DeskDrag, ThePointerDoesOneThingAtATime)
{
    VX3Rectangle band = {};
    toolkit.onBand = [&](Gadget&) {
        EXPECT_EQ(Areas().trackRubberBand(area.handle, 1, 1, VX3_BAND_FRAME, &band), VX3_BAND_NONE);
        EXPECT_FALSE(Menus().drag(area.handle, VX3_DRAG_BROWSER, &data));
        return Band{ VX3_BAND_UNMOVED, {} };
    };
    RunDrag([&] { EXPECT_EQ(Areas().trackRubberBand(area.handle, 1, 1, VX3_BAND_FRAME, &band), VX3_BAND_NONE); });
    EXPECT_EQ(Areas().trackRubberBand(area.handle, 1, 1, VX3_BAND_FRAME, &band), VX3_BAND_UNMOVED);
    EXPECT_EQ(Areas().trackRubberBand(area.handle, 1, 1, VX3_BAND_FRAME, &band), VX3_BAND_UNMOVED) << "it has ended";
}

TEST_F(DeskDrag, FilesFromOutsideAreDraggedTheSameWay)
{
    type = VX3_DRAG_FILE;
    EXPECT_EQ(desk.MoveForeignDrag(inPane, 0, type, &data), VX3_CURSOR_COPY);
    EXPECT_EQ(desk.MoveForeignDrag(outside, 0, type, &data), VX3_CURSOR_REFUSED);
    EXPECT_EQ(log.Take(), "P on 21, P 10003, P end on 0, P 10003");
    desk.EndForeignDrag(inPane, 0, type, &data, true);
    desk.EndForeignDrag(inPane, 0, type, &data, true);
    EXPECT_EQ(log.Take(), "P drop on 21, P 10003, P drop on 21, P 10003") << "one after the other";
    desk.MoveForeignDrag(inWindow, 0, type, &data);
    Dialogs().close(window.handle, 0);
    desk.Deliver();
    log.Take();
    desk.EndForeignDrag(inWindow, 0, type, &data, false);
    EXPECT_EQ(log.Take(), "");
}

TEST_F(DeskDrag, ABorderThatTheUserMovesChangesWeights)
{
    ContainerValue weights;
    Containers().setFloat(weights.Get(), VX3_WEIGHT_COLUMN, 60);
    Containers().setFloat(weights.Get(), VX3_WEIGHT_COLUMN + 1, 40);
    Containers().setFloat(weights.Get(), VX3_WEIGHT_ROW, 5);
    EXPECT_TRUE(Gadgets().setWeights(window.handle, Splitter, weights.Get()));
    Gadgets().update(window.handle, 0);
    log.Take();
    const int before = Find(Left).place.width;
    window.onMessage = [](int32_t code, const VX3Container* message, VX3Container*) {
        if (code == VX3_GUI_WEIGHTS) {
            EXPECT_EQ(Containers().getInt32(message, VX3_KEY_GADGET, 0), Splitter);
        }
    };
    desk.UserMovedSplitter(Find(Splitter), 0, Find(Left).place.x + before - 50);
    EXPECT_EQ(log.Take(), "area bISI, P bISI, W wChg");
    EXPECT_EQ(Find(Left).place.width, before - 50);
    ContainerValue read;
    EXPECT_TRUE(Gadgets().getWeights(window.handle, Splitter, read.Get()));
    EXPECT_EQ(Containers().count(read.Get()), 2);
    EXPECT_LT(Containers().getFloat(read.Get(), VX3_WEIGHT_COLUMN, 0), 60);
    EXPECT_FALSE(Gadgets().getWeights(window.handle, Right, read.Get()));
}

} // namespace
