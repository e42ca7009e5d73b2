// What reaches dialogs and areas from the main loop, from other threads and from new
// layouts: timers, core messages, posted messages, sizes, the focus.

#include "deskfixture.h"

#include <thread>

#include "support/watchdog.h"

using namespace vx3;
using namespace vx3::gui;

namespace {

enum : int32_t { Place1 = 11, AreaPlace = 21, Scroll = 22, Field = 31, Slider = 32, Tabs = 41, Page1 = 42, Page2 = 43 };

const VX3ContainerServices& Containers()
{
    return *core::ContainerServices();
}

class DeskMessages : public DeskTest
{
protected:
    // A window with a field, and a dialog in it whose area is seen through a scroll group.
    void OpenPane()
    {
        window.on["createLayout"] = [this] {
            Add(window, ShapeOf(VX3_GADGET_EDIT, Field));
            Add(window, ShapeOf(VX3_GADGET_SUBDIALOG, Place1, fills));
            Dialogs().attach(pane.handle, window.handle, Place1);
        };
        pane.on["createLayout"] = [this] {
            Begin(pane, ShapeOf(VX3_GADGET_SCROLL, Scroll, fills));
            Add(pane, ShapeOf(VX3_GADGET_AREA, AreaPlace, fills));
            Gadgets().end(pane.handle);
            Add(pane, ShapeOf(VX3_GADGET_SLIDER, Slider));
            Areas().attach(area.handle, pane.handle, AreaPlace);
        };
        ASSERT_TRUE(window.Open());
        log.Take();
    }

    ModuleDialog window{ log, "W" };
    ModuleDialog pane{ log, "P" };
    ModuleArea area{ log, "area" };
};

TEST_F(DeskMessages, TimersKeepTheirPaceAndNeverEnterThemselves)
{
    ModuleDialog other(log, "O");
    int depth = 0;
    window.on["timer"] = [&] {
        EXPECT_EQ(++depth, 1);
        EXPECT_EQ(toolkit.wakeAt, 160) << "a loop in the middle is woken for the others";
        Advance(250); // a box in the middle of it
        --depth;
    };
    ASSERT_TRUE(window.Open() && other.Open());
    EXPECT_EQ(toolkit.wakeAt, -1);
    Dialogs().setTimer(window.handle, 100);
    Dialogs().setTimer(other.handle, 80);
    EXPECT_EQ(toolkit.wakeAt, 80);
    log.Take();
    Advance(99);
    EXPECT_EQ(log.Take(), "O timer");
    Advance(1);
    EXPECT_EQ(log.Take(), "W timer, O timer") << "inside the first one only others run";
    EXPECT_EQ(toolkit.wakeAt, 400) << "neither makes up for what it missed";
    window.on["timer"] = [&] { Dialogs().setTimer(window.handle, 0); };
    Dialogs().setTimer(other.handle, 0);
    Advance(100);
    Advance(1000);
    EXPECT_EQ(log.Take(), "W timer");
    EXPECT_EQ(toolkit.wakeAt, -1);
}

TEST_F(DeskMessages, ATimerThatIsSetAnewInItselfBeginsAnew)
{
    ASSERT_TRUE(window.Open());
    Dialogs().setTimer(window.handle, 100);
    window.on["timer"] = [&] {
        Dialogs().setTimer(window.handle, 0);
        Dialogs().setTimer(window.handle, 10);
        Advance(20); // not inside itself
    };
    log.Take();
    Advance(100);
    EXPECT_EQ(log.Take(), "W timer");
    window.on.clear();
    Advance(10);
    EXPECT_EQ(log.Take(), "W timer");
}

TEST_F(DeskMessages, CoreMessagesReachAllDialogsInTheOrderOfOpening)
{
    OpenPane();
    ModuleDialog later(log, "L");
    ModuleDialog closed(log, "C");
    ASSERT_TRUE(later.Open());
    log.Take();
    window.on["core 5"] = [this] { Post(6); };
    ContainerValue data;
    Containers().setInt32(data.Get(), 3, 33);
    Post(5, -1, int64_t(1) << 40, data.Get());
    EXPECT_EQ(log.Take(), "") << "never inside the call";
    EXPECT_TRUE(desk.HasPosted());
    EXPECT_GT(toolkit.wakeUps, 0);
    desk.Deliver();
    EXPECT_EQ(log.Take(), "W core 5, P core 5, L core 5");
    desk.Deliver();
    EXPECT_EQ(log.Take(), "W core 6, P core 6, L core 6") << "what is posted meanwhile comes with the next turn";
    EXPECT_FALSE(desk.HasPosted());

    window.on["core 5"] = [this] { Dialogs().detach(pane.handle); };
    Post(5);
    desk.Deliver();
    EXPECT_EQ(log.Take(), "W core 5, P visF, P destroyWindow, L core 5") << "who closes meanwhile gets nothing";
}

TEST_F(DeskMessages, ACoreMessageHasItsValuesAndARisingNumber)
{
    VX3DialogTable table = {};
    table.coreMessage = [](void* object, int32_t, const VX3Container* message) {
        auto& received = *static_cast<std::vector<int64_t>*>(object);
        received.push_back(Containers().getId(message));
        received.push_back(Containers().getInt64(message, VX3_CORE_FIRST, 0));
        received.push_back(Containers().getInt64(message, VX3_CORE_SECOND, 0));
        received.push_back(Containers().getContainer(message, VX3_CORE_CONTAINER) ? 1 : 0);
        received.push_back(Containers().getInt32(message, VX3_CORE_UNIQUE, 0));
    };
    std::vector<int64_t> values[2];
    const VX3WindowPlace place = { 1, 0, -1, -1, 10, 10 };
    for (auto& each : values)
        ASSERT_TRUE(Dialogs().open(Dialogs().create(&each, &table), &place));
    ContainerValue data;
    Post(5, -1, int64_t(1) << 40, data.Get());
    Post(6);
    desk.Deliver();
    ASSERT_EQ(values[0].size(), 10u);
    const int64_t first = values[0][4];
    EXPECT_EQ(values[0], (std::vector<int64_t>{ 5, -1, int64_t(1) << 40, 1, first, 6, 0, 0, 0, values[0][9] }));
    EXPECT_GT(first, 0);
    EXPECT_GT(values[0][9], first);
    EXPECT_EQ(values[0], values[1]) << "the same in every dialog";
    while (!desk.Windows().empty())
        desk.UserClosed(WindowOf());
}

TEST_F(DeskMessages, PostedMessagesComeLaterAndAreForgottenWithTheirDialog)
{
    OpenPane();
    EXPECT_TRUE(Areas().post(area.handle, 8));
    EXPECT_TRUE(Areas().post(area.handle, 8)) << "it waits already";
    EXPECT_TRUE(Areas().post(area.handle, 9));
    EXPECT_TRUE(Dialogs().post(pane.handle, 7));
    EXPECT_TRUE(Dialogs().post(pane.handle, 7));
    EXPECT_EQ(log.Take(), "");
    area.on["8"] = [this] { Areas().post(area.handle, 8); };
    desk.Deliver();
    EXPECT_EQ(log.Take(), "area 8, area 9, P 7, P 7");
    EXPECT_TRUE(desk.HasPosted());
    area.on.clear();
    Dialogs().post(pane.handle, 7);
    Dialogs().detach(pane.handle);
    Dialogs().attach(pane.handle, window.handle, Place1);
    log.Take();
    desk.Deliver();
    EXPECT_EQ(log.Take(), "") << "what was meant for the closed dialog does not reach the new one";
    Areas().free(area.handle);
    EXPECT_FALSE(Areas().post(area.handle, 8));
    area.handle = 0;
}

TEST_F(DeskMessages, AreasAndTheirDialogsHearOfSizesThatSettled)
{
    OpenPane();
    desk.UserResized(WindowOf(), { 400, 300 });
    EXPECT_EQ(log.Take(), "area bISI, P bISI, W fADJ");
    desk.UserResized(WindowOf(), { 400, 300 });
    EXPECT_TRUE(Gadgets().update(window.handle, 0));
    EXPECT_EQ(log.Take(), "") << "nothing has changed";

    area.least = { 50, 1000 };
    EXPECT_TRUE(Gadgets().update(pane.handle, Scroll));
    EXPECT_EQ(log.Take(), "area bISI, P bISI");
    int32_t width = 0;
    int32_t height = 0;
    EXPECT_TRUE(Areas().getSize(area.handle, &width, &height));
    EXPECT_EQ(height, 1000);
    desk.UserResized(WindowOf(), { 400, 280 });
    EXPECT_EQ(log.Take(), "area scrs, P scrs, W fADJ") << "the area has its size, and less of it is seen";
}

TEST_F(DeskMessages, ALayoutInsideAMessageOfSizesIsMadeAtOnceAndToldAfterwards)
{
    OpenPane();
    bool isFirst = true;
    area.on["bISI"] = [&] {
        if (!std::exchange(isFirst, false))
            return;
        area.least.height = 900;
        Gadgets().update(pane.handle, 0);
        int32_t height = 0;
        Areas().getSize(area.handle, nullptr, &height);
        EXPECT_EQ(height, 900);
    };
    desk.UserResized(WindowOf(), { 350, 300 });
    EXPECT_EQ(log.Take(), "area bISI, P bISI, area bISI, P bISI, W fADJ");

    int round = 0;
    area.on["bISI"] = [&] {
        area.least.height = 1000 + ++round;
        Gadgets().update(pane.handle, 0);
    };
    desk.UserResized(WindowOf(), { 360, 300 });
    EXPECT_GT(round, 1);
    EXPECT_LT(round, 20) << "a module that never comes to rest is not followed for ever";
}

TEST_F(DeskMessages, AScrollGroupShowsOnlyWhatIsThere)
{
    area.least = { 100, 1000 };
    OpenPane();
    VX3Rectangle part = {};
    ASSERT_TRUE(Gadgets().getVisiblePart(pane.handle, Scroll, &part));
    EXPECT_EQ(part.y1, 0);
    EXPECT_EQ(part.x2, Find(Scroll).view.width) << "behind the last pixel";
    const int32_t seen = part.y2;
    const struct {
        int32_t wanted, top;
    } cases[] = { { 300, 300 }, { 999, 1000 - seen }, { INT32_MAX, 1000 - seen }, { -5, 0 }, { INT32_MIN, 0 } };
    for (const auto& row : cases) {
        part = { 0, row.wanted, -1, -1 };
        EXPECT_TRUE(Gadgets().setVisiblePart(pane.handle, Scroll, &part));
        EXPECT_EQ(log.Take(), "") << "the call runs no callback";
        desk.Deliver();
        log.Take();
        ASSERT_TRUE(Gadgets().getVisiblePart(pane.handle, Scroll, &part));
        EXPECT_EQ(part.y1, row.top);
        EXPECT_EQ(part.y2, row.top + seen);
    }
    desk.UserScrolled(Find(Scroll), { 0, 500 });
    EXPECT_EQ(log.Take(), "area scrs, P scrs");
    desk.UserScrolled(Find(Scroll), { 0, 500 });
    EXPECT_EQ(log.Take(), "");
    int32_t x = 0;
    int32_t y = 0;
    ASSERT_TRUE(Areas().toScreen(area.handle, &x, &y));
    EXPECT_EQ(y, 500 + Find(AreaPlace).place.y - 500);
    ASSERT_TRUE(Areas().toLocal(area.handle, &x, &y));
    EXPECT_EQ(x, 0);
    EXPECT_EQ(y, 0);
    area.least.height = 300;
    Gadgets().update(pane.handle, 0);
    ASSERT_TRUE(Gadgets().getVisiblePart(pane.handle, Scroll, &part));
    EXPECT_EQ(part.y2, 300) << "what is scrolled too far comes back";
}

TEST_F(DeskMessages, TheFocusIsToldToWhatItEntersAndLeaves)
{
    OpenPane();
    window.hearsFocus = pane.hearsFocus = true;
    EXPECT_TRUE(Gadgets().focus(window.handle, Field));
    EXPECT_EQ(log.Take(), "") << "the call runs no callback";
    EXPECT_TRUE(Gadgets().hasFocus(window.handle, Field));
    desk.Deliver();
    EXPECT_EQ(log.Take(), "W bGFC");
    desk.FocusMoved(WindowOf(), &Find(AreaPlace));
    EXPECT_EQ(log.Take(), "area bGFC, P bGFC");
    EXPECT_TRUE(Areas().hasFocus(area.handle));
    EXPECT_TRUE(Gadgets().hasFocus(window.handle, Place1)) << "also for what is inside it";
    desk.FocusMoved(WindowOf(), &Find(Slider));
    EXPECT_EQ(log.Take(), "area bLFC") << "it stays in the pane";
    EXPECT_TRUE(Areas().activate(area.handle));
    desk.Deliver();
    EXPECT_EQ(log.Take(), "area bGFC");
    desk.FocusMoved(WindowOf(), nullptr);
    EXPECT_EQ(log.Take(), "area bLFC, P bLFC, W bLFC");

    desk.FocusMoved(WindowOf(), &Find(AreaPlace));
    log.Take();
    Dialogs().detach(pane.handle);
    EXPECT_EQ(log.Take(), "P visF, P destroyWindow");
    desk.Deliver();
    EXPECT_EQ(log.Take(), "W bLFC") << "the focus went with the pane";
}

TEST_F(DeskMessages, NothingIsToldAndDrawnBeforeTheValuesAreThere)
{
    window.hearsFocus = true;
    bool isDrawn = false;
    area.onDraw = [&](VX3Canvas, const VX3Rectangle&) { isDrawn = true; };
    pane.on["initValues"] = [&] { // in the middle of a box
        Dialog& opening = *toolkit.windows.at(0);
        desk.FocusMoved(opening, desk.FindGadget(opening, Field));
        NoCanvas canvas;
        desk.Paint(*desk.FindGadget(opening, AreaPlace), canvas, { 0, 0, 9, 9 });
    };
    OpenPane();
    EXPECT_FALSE(isDrawn);
    desk.Deliver();
    EXPECT_EQ(log.Take(), "W bGFC");
    NoCanvas canvas;
    desk.Paint(Find(AreaPlace), canvas, { 0, 0, 9, 9 });
    EXPECT_TRUE(isDrawn);
}

// Without an area in it nobody has heard of a size.
TEST_F(DeskMessages, WhatAScrollGroupShowsAtFirstIsNoChange)
{
    window.on["createLayout"] = [this] {
        Begin(window, ShapeOf(VX3_GADGET_SCROLL, Scroll, fills));
        Add(window, ShapeOf(VX3_GADGET_BUTTON, Field, 0, 10, 1000));
    };
    ASSERT_TRUE(window.Open());
    EXPECT_EQ(log.Take(), "W createLayout, W initValues");
    desk.UserScrolled(Find(Scroll), { 0, 10 });
    EXPECT_EQ(log.Take(), "W scrs");
}

// A pane that takes the focus in its own message, as its module may.
TEST_F(DeskMessages, AMessageOfTheFocusMayMoveIt)
{
    OpenPane();
    pane.hearsFocus = true;
    pane.on["bGFC"] = [this] { Areas().activate(area.handle); };
    desk.FocusMoved(WindowOf(), &Find(Slider));
    desk.Deliver();
    EXPECT_EQ(log.Take(), "P bGFC, area bGFC");
    EXPECT_TRUE(Areas().hasFocus(area.handle));
}

TEST_F(DeskMessages, PagesThatAreHiddenTellTheirDialogs)
{
    window.on["createLayout"] = [this] {
        Begin(window, ShapeOf(VX3_GADGET_TABS, Tabs, fills));
        for (int32_t page : { Page1, Page2 }) {
            Begin(window, ShapeOf(VX3_GADGET_GROUP, page, fills));
            Add(window, ShapeOf(VX3_GADGET_SUBDIALOG, page + 100, fills));
            Gadgets().end(window.handle);
        }
        Gadgets().end(window.handle);
        Dialogs().attach(pane.handle, window.handle, Page1 + 100);
    };
    ASSERT_TRUE(window.Open());
    log.Take();
    desk.UserSetValue(Find(Tabs), 1);
    EXPECT_EQ(log.Take(), "P visF, W inta, W command 41, W inte");
    EXPECT_FALSE(toolkit.visible[&Find(Page1)]);
    EXPECT_TRUE(toolkit.visible[&Find(Page2)]);
    EXPECT_TRUE(Gadgets().setValue(window.handle, Tabs, 0));
    EXPECT_TRUE(toolkit.visible[&Find(Page1)]) << "at once";
    EXPECT_TRUE(Gadgets().show(window.handle, Page1, 0));
    EXPECT_EQ(log.Take(), "");
    EXPECT_TRUE(Gadgets().update(window.handle, 0));
    EXPECT_EQ(log.Take(), "P visF");
    double value = -1;
    EXPECT_TRUE(Gadgets().setValue(window.handle, Tabs, 99));
    EXPECT_TRUE(Gadgets().getValue(window.handle, Tabs, &value));
    EXPECT_EQ(value, 1);
}

// Threads post while the main loop delivers and windows come and go: each message reaches the
// window that is open all the time once, those of one thread in their order.
TEST_F(DeskMessages, ThreadsMayPostAtAnyTime)
{
    const tests::Watchdog watchdog(std::chrono::seconds(120));
    constexpr int threadCount = 4;
    constexpr int messageCount = 500;
    struct Received {
        std::vector<int64_t> last = std::vector<int64_t>(threadCount, -1);
        int count = 0;
        int disorder = 0;
    } received;
    VX3DialogTable table = {};
    table.coreMessage = [](void* object, int32_t id, const VX3Container* message) {
        auto& self = *static_cast<Received*>(object);
        const int64_t value = Containers().getInt64(message, VX3_CORE_FIRST, -1);
        self.disorder += value != self.last[static_cast<size_t>(id)] + 1;
        self.last[static_cast<size_t>(id)] = value;
        ++self.count;
    };
    const VX3WindowPlace place = { 1, 0, -1, -1, 10, 10 };
    const VX3Dialog listener = Dialogs().create(&received, &table);
    ASSERT_TRUE(Dialogs().open(listener, &place));
    std::vector<std::thread> threads;
    for (int thread = 0; thread < threadCount; ++thread)
        threads.emplace_back([thread] {
            for (int i = 0; i < messageCount; ++i)
                Post(thread, i);
        });
    while (received.count < threadCount * messageCount) {
        window.Open();
        desk.Deliver();
        Dialogs().close(window.handle, 0);
        log.Take();
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(received.disorder, 0);
    EXPECT_GT(toolkit.wakeUps, 0);
    Dialogs().free(listener);
}

} // namespace
