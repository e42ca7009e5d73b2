// The order in which dialogs open and close, whatever happens in the middle.

#include "deskfixture.h"

using namespace vx3;
using namespace vx3::gui;

namespace {

enum : int32_t { FirstPlace = 11, SecondPlace = 12, InnerPlace = 13, AreaPlace = 21, Button = 31 };

// A window with two dialogs in it, of which the first has one inside and an area.
class Nest : public DeskTest
{
protected:
    Nest()
    {
        window.on["createLayout"] = [this] {
            Add(window, ShapeOf(VX3_GADGET_SUBDIALOG, FirstPlace, fills));
            Add(window, ShapeOf(VX3_GADGET_SUBDIALOG, SecondPlace, fills));
            Add(window, ShapeOf(VX3_GADGET_BUTTON, Button), "Go");
            Dialogs().attach(first.handle, window.handle, FirstPlace);
            Dialogs().attach(second.handle, window.handle, SecondPlace);
        };
        first.on["createLayout"] = [this] {
            Add(first, ShapeOf(VX3_GADGET_SUBDIALOG, InnerPlace, fills));
            Add(first, ShapeOf(VX3_GADGET_AREA, AreaPlace, fills));
            Areas().attach(area.handle, first.handle, AreaPlace);
            Dialogs().attach(inner.handle, first.handle, InnerPlace);
        };
    }

    ModuleDialog window{ log, "W" };
    ModuleDialog first{ log, "A" };
    ModuleDialog second{ log, "B" };
    ModuleDialog inner{ log, "I" };
    ModuleArea area{ log, "area" };

    void LiveThrough();

    const std::vector<ModuleDialog*> dialogs = { &window, &first, &second, &inner };
    static constexpr const char* opening = "W createLayout, A createLayout, I createLayout, B createLayout, "
                                           "I initValues, A initValues, B initValues, W initValues, area bISI, A bISI";
    static constexpr const char* closing = "B visF, I visF, A visF, W visF, "
                                           "B destroyWindow, I destroyWindow, A destroyWindow, W destroyWindow";
};

TEST_F(Nest, OpensAndClosesInThePromisedOrder)
{
    window.on["initValues"] = [this] { Dialogs().setTimer(window.handle, 100); };
    ASSERT_TRUE(window.Open());
    EXPECT_EQ(log.Take(), opening);
    EXPECT_TRUE(inner.IsOpen());
    EXPECT_FALSE(window.Open()) << "it is open";
    Advance(100);
    EXPECT_EQ(log.Take(), "W timer");

    desk.UserClosed(WindowOf());
    EXPECT_EQ(log.Take(), std::string("W askClose, ") + closing);
    EXPECT_FALSE(first.IsOpen());
    EXPECT_TRUE(toolkit.made.empty());
    EXPECT_EQ(toolkit.closedWindows, 1);
    Advance(1000);
    EXPECT_EQ(log.Take(), "") << "a timer ends with its dialog";

    window.on["initValues"] = [] {};
    ASSERT_TRUE(window.Open()) << "opened again with the same handles";
    EXPECT_EQ(log.Take(), opening);
    Advance(1000);
    EXPECT_EQ(log.Take(), "") << "and does not come back with it";
}

TEST_F(Nest, NothingComesBeforeTheValuesAreThereOrAfterTheEnd)
{
    auto interrupt = [this] {
        Post(5);
        toolkit.now += 1000;
        desk.Deliver();
        desk.RunTimers();
    };
    first.on["initValues"] = [&] { Dialogs().setTimer(first.handle, 1); };
    second.on["initValues"] = [&] {
        Dialogs().setTimer(second.handle, 1);
        Dialogs().post(second.handle, 99);
        interrupt(); // as a box would
    };
    window.on["initValues"] = interrupt;
    window.on["destroyWindow"] = interrupt;
    first.on["visF"] = interrupt;
    ASSERT_TRUE(window.Open());
    EXPECT_EQ(log.Take(), opening);
    desk.RunTimers();
    desk.Deliver();
    EXPECT_EQ(log.Take(), "A timer, B timer, B 99") << "what waited comes when the window is open";
    EXPECT_TRUE(Dialogs().close(window.handle, 0));
    EXPECT_EQ(log.Take(), closing);
}

TEST_F(Nest, AskCloseMayKeepItOpenAndIsNotAskedTwiceAtOnce)
{
    ASSERT_TRUE(window.Open());
    log.Take();
    window.answers["askClose"] = 1;
    window.on["askClose"] = [this] { desk.UserClosed(WindowOf()); };
    EXPECT_FALSE(desk.AskAndClose(WindowOf()));
    EXPECT_EQ(log.Take(), "W askClose");
    EXPECT_TRUE(window.IsOpen());

    window.on["askClose"] = [this] { Dialogs().close(window.handle, 0); };
    EXPECT_TRUE(desk.AskAndClose(WindowOf())) << "it closed itself meanwhile";
    EXPECT_EQ(log.Take(), std::string("W askClose, ") + closing);
}

TEST_F(Nest, AClosingInsideACallbackWaitsForItsEnd)
{
    window.on["command 31"] = [this] {
        EXPECT_TRUE(Dialogs().close(window.handle, 0));
        EXPECT_FALSE(Dialogs().close(window.handle, 0)) << "it goes already";
        EXPECT_TRUE(window.IsOpen());
        log.Add("still there");
    };
    ASSERT_TRUE(window.Open());
    log.Take();
    desk.UserPressed(Find(Button));
    EXPECT_EQ(log.Take(), std::string("W inta, W command 31, still there, ") + closing);

    ASSERT_TRUE(window.Open());
    log.Take();
    area.on["input"] = [this] {
        Dialogs().close(window.handle, 0); // the window around the area
        log.Add("still there");
    };
    desk.Feed(Find(AreaPlace), {});
    EXPECT_EQ(log.Take(), std::string("A inta, area input, still there, ") + closing);
}

TEST_F(Nest, AWindowThatClosesTakesADialogInsideAlong)
{
    area.on["input"] = [this] {
        EXPECT_TRUE(Dialogs().close(first.handle, 0));
        EXPECT_TRUE(Dialogs().close(window.handle, 0));
    };
    ASSERT_TRUE(window.Open());
    log.Take();
    desk.Feed(Find(AreaPlace), {});
    EXPECT_EQ(log.Take(), std::string("A inta, area input, ") + closing);

    area.on["input"] = [this] { EXPECT_TRUE(Dialogs().close(first.handle, 0)); };
    ASSERT_TRUE(window.Open());
    log.Take();
    desk.Feed(Find(AreaPlace), {});
    EXPECT_EQ(log.Take(), "A inta, area input, I visF, A visF, I destroyWindow, A destroyWindow");
    EXPECT_TRUE(window.IsOpen());
}

TEST_F(Nest, FreedInItsFirstAndInItsLastCallbackItIsDestroyedOnce)
{
    first.on["destroyWindow"] = [this] { first.Free(); };
    ASSERT_TRUE(window.Open());
    log.Take();
    Dialogs().close(window.handle, 0);
    EXPECT_EQ(log.Take(), closing);

    second.on["initValues"] = [this] { second.Free(); };
    window.on["createLayout"] = [this] {
        Add(window, ShapeOf(VX3_GADGET_SUBDIALOG, SecondPlace, fills));
        Dialogs().attach(second.handle, window.handle, SecondPlace);
    };
    ASSERT_TRUE(window.Open());
    EXPECT_EQ(log.Take(), "W createLayout, B createLayout, B initValues, B destroyWindow, W initValues") << "it was never to be seen";
}

// Opens the window and lets everything happen that runs callbacks, as far as it is still there.
void Nest::LiveThrough()
{
    window.Open();
    for (ModuleDialog* dialog : dialogs) {
        Dialogs().setTimer(dialog->handle, 10);
        Dialogs().post(dialog->handle, 33);
    }
    Post(5);
    desk.Deliver();
    Advance(10);
    if (Gadget* button = desk.Windows().empty() ? nullptr : desk.FindGadget(WindowOf(), Button))
        desk.UserPressed(*button);
    if (!desk.Windows().empty())
        desk.UserClosed(WindowOf());
    Dialogs().close(window.handle, 0);
    desk.Deliver();
}

// Whatever a callback frees, no callback of that object comes afterwards, and nothing is left.
TEST_F(Nest, AnythingMayBeFreedInAnyCallback)
{
    const std::vector<std::string> callbacks = { "createLayout", "initValues", "bISI", "timer", "core 5",        "command 31",
                                                 "33",           "inta",       "inte", "visF",  "destroyWindow", "askClose" };
    int freed = 0;
    for (ModuleDialog* victim : dialogs)
        for (ModuleDialog* actor : dialogs)
            for (const std::string& callback : callbacks) {
                SCOPED_TRACE(victim->name + " in " + actor->name + " " + callback);
                const std::function<void()> before = actor->on[callback];
                actor->on[callback] = [&] {
                    if (before)
                        before();
                    freed += victim->handle != 0;
                    victim->Free();
                    desk.Deliver(); // as in a box: what was freed is still on the stack
                    log.Take();
                    log.Add("freed");
                };
                LiveThrough();
                actor->on[callback] = before;
                EXPECT_TRUE(desk.Windows().empty());
                EXPECT_TRUE(toolkit.made.empty());
                const std::string calls = log.Take();
                if (!victim->handle) {
                    EXPECT_EQ(calls.find(victim->name + " "), std::string::npos) << calls;
                    victim->Create();
                }
            }
    EXPECT_GT(freed, 100) << "the callbacks came";
}

TEST_F(Nest, ADialogThatDoesNotWantToOpenLeavesNothing)
{
    const struct {
        ModuleDialog* dialog;
        const char* callback;
        bool opens;
        const char* log;
    } cases[] = {
        { &window, "createLayout", false,
          "W createLayout, A createLayout, I createLayout, B createLayout, B destroyWindow, I destroyWindow, A destroyWindow" },
        { &window, "initValues", false,
          "W createLayout, A createLayout, I createLayout, B createLayout, I initValues, A initValues, B initValues, W initValues, "
          "B destroyWindow, I destroyWindow, A destroyWindow, W destroyWindow" },
        { &first, "createLayout", true,
          "W createLayout, A createLayout, I createLayout, I destroyWindow, B createLayout, B initValues, W initValues" },
        { &first, "initValues", true,
          "W createLayout, A createLayout, I createLayout, B createLayout, I initValues, A initValues, I destroyWindow, "
          "A destroyWindow, B initValues, W initValues" },
    };
    for (const auto& row : cases) {
        row.dialog->answers[row.callback] = 0;
        EXPECT_EQ(window.Open(), row.opens);
        EXPECT_EQ(log.Take(), row.log);
        EXPECT_EQ(first.IsOpen(), false);
        row.dialog->answers.clear();
        Dialogs().close(window.handle, 0);
        EXPECT_TRUE(toolkit.made.empty());
        log.Take();
    }
}

TEST_F(Nest, AModalWindowGivesTheResultOfItsClosing)
{
    const VX3WindowPlace place = { 8, 0, -1, -1, 100, 100 };
    ModuleDialog modal(log, "M");
    modal.on["command 31"] = [&] { Dialogs().close(modal.handle, 42); };
    modal.on["createLayout"] = [&] { Add(modal, ShapeOf(VX3_GADGET_BUTTON, Button), "OK"); };
    toolkit.onModal = [&](Dialog&) { desk.UserPressed(Find(Button)); };
    EXPECT_EQ(Dialogs().openModal(modal.handle, &place), 42);
    EXPECT_TRUE(toolkit.modalEnded);

    toolkit.onModal = [&](Dialog& shown) { desk.UserClosed(shown); };
    EXPECT_EQ(Dialogs().openModal(modal.handle, &place), 0);

    modal.on["initValues"] = [&] { Dialogs().close(modal.handle, 7); };
    toolkit.onModal = [](Dialog&) { ADD_FAILURE() << "it has closed before it was shown"; };
    EXPECT_EQ(Dialogs().openModal(modal.handle, &place), 7);
    EXPECT_TRUE(toolkit.windows.empty());
}

// The window that held it up closes only when its callback has returned.
TEST_F(Nest, AWindowWaitsForTheModalOneThatItsCallbackOpened)
{
    const VX3WindowPlace place = { 8, 0, -1, -1, 100, 100 };
    ModuleDialog modal(log, "M");
    window.on["command 31"] = [&] { Dialogs().openModal(modal.handle, &place); };
    toolkit.onModal = [&](Dialog& shown) {
        log.Take();
        EXPECT_TRUE(Dialogs().close(window.handle, 0));
        EXPECT_EQ(log.Take(), "");
        Dialogs().setTimer(window.handle, 5);
        Advance(5);
        EXPECT_EQ(log.Take(), "W timer");
        desk.UserClosed(shown);
    };
    ASSERT_TRUE(window.Open());
    desk.UserPressed(Find(Button));
    EXPECT_EQ(log.Take(), std::string("M askClose, M visF, M destroyWindow, ") + closing);
}

TEST_F(Nest, DialogsComeAndGoInAnOpenWindow)
{
    ASSERT_TRUE(window.Open());
    log.Take();
    EXPECT_FALSE(Dialogs().attach(first.handle, window.handle, SecondPlace)) << "it is open";
    EXPECT_TRUE(Dialogs().detach(first.handle));
    EXPECT_EQ(log.Take(), "I visF, A visF, I destroyWindow, A destroyWindow");
    EXPECT_FALSE(Dialogs().detach(first.handle));
    EXPECT_FALSE(Dialogs().attach(first.handle, window.handle, Button)) << "not a place for one";

    EXPECT_TRUE(Dialogs().attach(first.handle, window.handle, SecondPlace));
    EXPECT_EQ(log.Take(), "B visF, B destroyWindow, A createLayout, I createLayout, I initValues, A initValues")
        << "the one that was there leaves";
    EXPECT_TRUE(Gadgets().update(window.handle, 0));
    EXPECT_EQ(log.Take(), "area bISI, A bISI");

    ModuleDialog late(log, "L");
    first.on["destroyWindow"] = [&] { late.Free(); };
    const VX3Dialog handle = late.handle;
    EXPECT_FALSE(Dialogs().attach(handle, window.handle, SecondPlace)) << "it was freed while the place was made";
    EXPECT_FALSE(Find(SecondPlace).inner);
    first.on["destroyWindow"] = [] {};
}

// A window rebuilds itself while a callback of a dialog inside it runs, and puts the same
// dialog into the new place.
TEST_F(Nest, FlushingEndsWhatStandsInTheGroupAtOnce)
{
    enum : int32_t { Group = 40 };
    window.on["createLayout"] = [this] {
        Begin(window, ShapeOf(VX3_GADGET_GROUP, Group, fills));
        Add(window, ShapeOf(VX3_GADGET_SUBDIALOG, FirstPlace, fills));
        Gadgets().end(window.handle);
        Dialogs().attach(first.handle, window.handle, FirstPlace);
    };
    area.on["input"] = [this] {
        EXPECT_TRUE(Gadgets().flush(window.handle, Group));
        EXPECT_FALSE(first.IsOpen());
        EXPECT_FALSE(Gadgets().exists(window.handle, FirstPlace));
        EXPECT_TRUE(Add(window, ShapeOf(VX3_GADGET_SUBDIALOG, SecondPlace, fills)));
        EXPECT_TRUE(Dialogs().attach(first.handle, window.handle, SecondPlace));
        EXPECT_TRUE(Gadgets().update(window.handle, Group));
    };
    ASSERT_TRUE(window.Open());
    log.Take();
    Gadget& place = Find(AreaPlace);
    desk.Feed(place, {});
    EXPECT_EQ(log.Take(),
              "A inta, area input, I visF, A visF, I destroyWindow, A destroyWindow, A createLayout, I createLayout, "
              "I initValues, A initValues, area bISI, A bISI, A inte");
    EXPECT_TRUE(place.isGone);
    EXPECT_FALSE(desk.Feed(place, {})) << "a gadget that has left hears nothing";
    EXPECT_EQ(log.Take(), "");
}

TEST(DeskEnd, ClosesTheNewestWindowFirstAndAnswersNobodyAfterwards)
{
    core::CoreHost host{ core::HostSettings() };
    Log log;
    FakeToolkit toolkit{ log };
    auto desk = std::make_unique<Desk>(toolkit);
    toolkit.desk = desk.get();
    ModuleDialog older(log, "O");
    ModuleDialog newer(log, "N");
    ModuleArea area(log, "area");
    ASSERT_TRUE(older.Open() && newer.Open());
    log.Take();
    desk.reset();
    EXPECT_EQ(log.Take(), "N visF, N destroyWindow, O visF, O destroyWindow");
    EXPECT_FALSE(older.Open());
    EXPECT_EQ(Desk::Services()->dialog->create(&older, nullptr), 0u);
}

TEST_F(DeskTest, HandlesAreNeverUsedTwiceAndOldOnesDoNothing)
{
    ModuleDialog dialog(log, "D");
    dialog.on["createLayout"] = [&] {
        Add(dialog, ShapeOf(VX3_GADGET_NUMBER, 1));
        Add(dialog, ShapeOf(VX3_GADGET_AREA, 2));
    };
    ModuleArea area(log, "area");
    const VX3Dialog oldDialog = dialog.handle;
    const VX3Area oldArea = area.handle;
    ASSERT_TRUE(dialog.Open());
    EXPECT_TRUE(Gadgets().setValue(oldDialog, 1, 5));
    dialog.Free();
    area.Free();
    desk.Deliver();

    double value = 3;
    const VX3WindowPlace place = {};
    EXPECT_FALSE(Dialogs().open(oldDialog, &place));
    EXPECT_FALSE(Dialogs().close(oldDialog, 0));
    EXPECT_FALSE(Dialogs().post(oldDialog, 1));
    EXPECT_FALSE(Gadgets().setValue(oldDialog, 1, 5));
    EXPECT_FALSE(Gadgets().getValue(oldDialog, 1, &value));
    EXPECT_EQ(value, 3) << "an out argument stays as it was";
    EXPECT_FALSE(Areas().redraw(oldArea, nullptr));
    EXPECT_FALSE(Areas().activate(oldArea));
    for (int i = 0; i < 100; ++i) {
        ModuleDialog fresh(log, "F");
        ModuleArea freshArea(log, "G");
        EXPECT_GT(fresh.handle, std::max(oldDialog, oldArea));
        EXPECT_NE(freshArea.handle, fresh.handle);
    }
}

} // namespace
