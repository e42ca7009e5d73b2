// Layout files of a module in a dialog, layouts of windows from one run to the next, calls
// from wrong threads, and what the desk says of its longest event.

#include "deskfixture.h"

#include <cstring>
#include <filesystem>
#include <fstream>
#include <thread>

using namespace vx3;
using namespace vx3::gui;

namespace {

const VX3ContainerServices& Containers()
{
    return *core::ContainerServices();
}

constexpr int32_t contentsId = 1017163;

class DeskLayout : public DeskTest
{
protected:
    ModuleDialog window{ log, "W" };
};

TEST_F(DeskLayout, AWindowComesBackWhereItWasWithWhatItsModuleStored)
{
    window.onMessage = [](int32_t code, const VX3Container*, VX3Container* result) {
        if (code != VX3_GUI_LAYOUT_SAVE)
            return;
        ContainerValue own;
        ContainerValue outer;
        Containers().setInt32(own.Get(), 2, 64);
        Containers().setContainer(outer.Get(), contentsId, own.Get());
        Containers().setContainer(result, VX3_GUI_LAYOUT_RESTORE, outer.Get());
    };
    ModuleDialog second(log, "S");
    ModuleDialog modal(log, "M");
    ASSERT_TRUE(window.Open({ contentsId, 0, 50, 60, 300, 200 }));
    ASSERT_TRUE(second.Open({ contentsId, 1, -1, -1, 200, 100 }));
    desk.UserMoved(WindowOf(1), { 70, 80 });
    desk.UserResized(WindowOf(1), { 210, 110 });
    ContainerValue saved;
    toolkit.onModal = [&](Dialog& shown) {
        desk.SaveLayout(*saved.Get());
        desk.UserClosed(shown);
    };
    const VX3WindowPlace place = { 9, 0, -1, -1, 10, 10 };
    Dialogs().openModal(modal.handle, &place);
    EXPECT_EQ(Containers().count(saved.Get()), 2) << "a modal window does not come back";
    Dialogs().close(window.handle, 0);
    Dialogs().close(second.handle, 0);
    log.Take();

    EXPECT_FALSE(Dialogs().restore(window.handle, contentsId, 0)) << "nothing was set";
    desk.SetSavedLayout(*saved.Get());
    EXPECT_FALSE(Dialogs().restore(window.handle, contentsId, 2));
    int32_t stored = 0;
    window.onMessage = [&](int32_t code, const VX3Container* message, VX3Container*) {
        if (code != VX3_GUI_LAYOUT_RESTORE)
            return;
        const VX3Container* outer = Containers().getContainer(message, VX3_GUI_LAYOUT_RESTORE);
        const VX3Container* own = outer ? Containers().getContainer(outer, contentsId) : nullptr;
        stored = own ? Containers().getInt32(own, 2, 0) : -1;
    };
    EXPECT_TRUE(Dialogs().restore(window.handle, contentsId, 0));
    EXPECT_EQ(log.Take(), "W cinf, W lays, W createLayout, W initValues");
    EXPECT_EQ(stored, 64);
    EXPECT_EQ(WindowOf().size, (Size{ 300, 200 }));
    EXPECT_EQ(WindowOf().opened.x, 50);
    EXPECT_TRUE(Dialogs().restore(second.handle, contentsId, 1));
    EXPECT_EQ(log.Take(), "S cinf, S createLayout, S initValues") << "its module stored nothing";
    EXPECT_EQ(WindowOf(1).size, (Size{ 210, 110 }));
    EXPECT_EQ(WindowOf(1).opened.y, 80);
    EXPECT_FALSE(Dialogs().restore(second.handle, contentsId, 1)) << "it is open";
    Dialogs().close(window.handle, 0);
    window.on["lays"] = [this] { window.Free(); };
    EXPECT_FALSE(Dialogs().restore(window.handle, contentsId, 0));
    EXPECT_EQ(desk.Windows().size(), 1u);
}

TEST_F(DeskLayout, AWindowIsAsLargeAsItsContentsNeedUnlessItIsTold)
{
    window.on["createLayout"] = [this] { Add(window, ShapeOf(VX3_GADGET_TEXT, 1, fills), "twelve signs"); };
    Dialogs().setLeastSize(window.handle, 0, 90);
    ASSERT_TRUE(window.Open({ 1, 0, -1, -1, 0, 0 }));
    EXPECT_EQ(WindowOf().size, (Size{ 12 * 7, 90 }));
    EXPECT_EQ(toolkit.resized, WindowOf().size);
    int32_t width = 0;
    int32_t height = 0;
    EXPECT_TRUE(Dialogs().getSize(window.handle, &width, &height));
    EXPECT_EQ(width, 84);
    desk.UserResized(WindowOf(), { 200, 100 });
    Gadgets().update(window.handle, 0);
    EXPECT_EQ(Find(1).place, (Place{ 0, 0, 200, 100 })) << "an update does not change the window";
    VX3Rectangle place = {};
    EXPECT_TRUE(Gadgets().getScreenPlace(window.handle, 1, &place));
    EXPECT_EQ(place.x2, 1199) << "both corners belong to it";
}

// A module's folder with one layout and its texts.
class LayoutOfModule : public DeskLayout
{
protected:
    void Write(const std::string& layout)
    {
        std::filesystem::create_directories(folder / "res" / "layouts");
        std::filesystem::create_directories(folder / "res" / "strings");
        std::ofstream(folder / "res" / "layouts" / "7.layout") << layout;
        std::ofstream(folder / "res" / "strings" / "us.txt") << "5 = Name\n6 = Tip\n";
        core::ResourceServices()->free(resources);
        resources = core::ResourceServices()->load(core::Path((folder / "module.so").native()).Get());
    }
    void TearDown() override
    {
        core::ResourceServices()->free(resources);
        std::filesystem::remove_all(folder);
    }

    const std::filesystem::path folder = std::filesystem::temp_directory_path() / ("vx3-desklayout-" + std::to_string(getpid()));
    VX3Resources* resources = nullptr;
};

TEST_F(LayoutOfModule, IsBuiltWhole)
{
    Write("dialog 7 { splitter 8 weights=3:1 { text 9 text=5; slider 10 min=2 max=8 step=2 tip=6 } }");
    window.on["createLayout"] = [this] {
        EXPECT_TRUE(Gadgets().loadLayout(window.handle, resources, 7));
        EXPECT_TRUE(Add(window, ShapeOf(VX3_GADGET_TEXT, 11))) << "beside what the file has";
    };
    ASSERT_TRUE(window.Open());
    EXPECT_EQ(Find(9).text, u"Name");
    EXPECT_EQ(Find(10).tip, u"Tip");
    EXPECT_EQ(Find(10).value, 2) << "in its range";
    EXPECT_EQ(Find(8).weights, (std::vector<double>{ 3, 1 }));
    EXPECT_EQ(Find(11).parent, WindowOf().root.get());
}

TEST_F(LayoutOfModule, ThatIsWrongBuildsNothingAndIsToldToTheConsole)
{
    Write("dialog 7 { text 9; text 10; }");
    testing::internal::CaptureStderr();
    window.on["createLayout"] = [this] {
        EXPECT_TRUE(Add(window, ShapeOf(VX3_GADGET_TEXT, 10)));
        EXPECT_FALSE(Gadgets().loadLayout(window.handle, resources, 7)) << "a number is there already";
        EXPECT_FALSE(Gadgets().exists(window.handle, 9));
        EXPECT_FALSE(Gadgets().loadLayout(window.handle, resources, 8)) << "absent";
        EXPECT_FALSE(Gadgets().loadLayout(window.handle, nullptr, 7));
        Begin(window, ShapeOf(VX3_GADGET_SCROLL, 12));
        Write("dialog 7 { text 9; }");
        EXPECT_TRUE(Gadgets().loadLayout(window.handle, resources, 7));
        Write("dialog 7 { text 14; }");
        EXPECT_FALSE(Gadgets().loadLayout(window.handle, resources, 7) || Gadgets().exists(window.handle, 14)) << "it has its child";
        Gadgets().end(window.handle);
        Write("dialog 7 { lever }");
        EXPECT_FALSE(Gadgets().loadLayout(window.handle, resources, 7));
    };
    ASSERT_TRUE(window.Open());
    const std::string console = testing::internal::GetCapturedStderr();
    EXPECT_NE(console.find("7.layout: a number in it is there already"), std::string::npos) << console;
    EXPECT_NE(console.find("8.layout: cannot be read"), std::string::npos);
    EXPECT_NE(console.find("7.layout:1:12: 'lever' is no kind of gadget"), std::string::npos);
}

TEST_F(DeskLayout, CallsFromOtherThreadsAreCountedAndDoNothing)
{
    window.on["createLayout"] = [this] { Add(window, ShapeOf(VX3_GADGET_CHECK, 1)); };
    ASSERT_TRUE(window.Open());
    ModuleArea area(log, "area");
    log.Take();
    std::thread([&] {
        const VX3WindowPlace place = {};
        ContainerValue container;
        double value = 3;
        EXPECT_EQ(Dialogs().create(this, reinterpret_cast<const VX3DialogTable*>(&place)), 0u);
        EXPECT_FALSE(Dialogs().close(window.handle, 0));
        EXPECT_FALSE(Dialogs().isOpen(window.handle));
        EXPECT_FALSE(Dialogs().post(window.handle, 1));
        Dialogs().free(window.handle);
        EXPECT_FALSE(Gadgets().setValue(window.handle, 1, 1));
        EXPECT_FALSE(Gadgets().getValue(window.handle, 1, &value));
        EXPECT_FALSE(Gadgets().getWeights(window.handle, 1, container.Get()));
        EXPECT_FALSE(Areas().attach(area.handle, window.handle, 1));
        EXPECT_FALSE(Areas().redraw(area.handle, nullptr));
        Areas().free(area.handle);
        EXPECT_EQ(Drawing().fontHeight(0), 0);
        EXPECT_FALSE(Desk::Services()->tree->refresh(window.handle, 1));
        EXPECT_EQ(Menus().popup(window.handle, container.Get(), 0, 0), 0);
        EXPECT_EQ(Menus().qualifiers(), 0u);
        EXPECT_FALSE(Desk::Services()->box->ask(core::Text("?").Get()));
        EXPECT_EQ(value, 3);
    }).join();
    EXPECT_GE(desk.ThreadViolations(), 15u);
    expectedViolations = desk.ThreadViolations();
    EXPECT_TRUE(window.IsOpen());
    EXPECT_TRUE(Areas().post(area.handle, 1) == 0) << "it still is nowhere";
    EXPECT_EQ(log.Take(), "");
}

void KeepBusy(int milliseconds)
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(milliseconds);
    while (std::chrono::steady_clock::now() < end) { }
}

TEST_F(DeskLayout, TheLongestEventIsTheModulesAndNotTheUsers)
{
    window.on["timer"] = [] { KeepBusy(30); };
    window.on["core 5"] = [] { Desk::Services()->box->show(VX3_BOX_ERROR, core::Text("!").Get()); };
    toolkit.onBox = [this] {
        KeepBusy(80); // the user reads it
        Advance(10);
    };
    ASSERT_TRUE(window.Open({ contentsId, 0, -1, -1, 100, 100 }));
    desk.ForgetLongestEvent();
    Dialogs().setTimer(window.handle, 10);
    Post(5);
    desk.Deliver();
    std::string name;
    const double longest = desk.LongestEvent(&name);
    EXPECT_EQ(name, "timer of 1017163");
    EXPECT_GE(longest, 30);
    EXPECT_LT(longest, 75);
    desk.ForgetLongestEvent();
    EXPECT_EQ(desk.LongestEvent(), 0);
}

TEST_F(DeskLayout, TheKindOfAWindowHasTheNameThatItsModuleGives)
{
    ASSERT_TRUE(window.Open());
    EXPECT_EQ(desk.KindName(WindowOf()), u"");
    window.onMessage = [](int32_t code, const VX3Container*, VX3Container* result) {
        if (code == VX3_GUI_NAME)
            Containers().setText(result, VX3_KEY_NAME, core::Text("WINDOW_OF_TESTS").Get());
    };
    EXPECT_EQ(desk.KindName(WindowOf()), u"WINDOW_OF_TESTS");
    ContainerValue saved;
    desk.SaveLayout(*saved.Get());
    desk.SetSavedLayout(*saved.Get());
    Dialogs().close(window.handle, 0);
    ModuleDialog other(log, "O"); // the same numbers mean another kind of window today
    EXPECT_FALSE(Dialogs().restore(other.handle, 7, 0));
    EXPECT_TRUE(Dialogs().restore(window.handle, 7, 0));
}

} // namespace
