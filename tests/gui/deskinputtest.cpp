// What users do with gadgets, areas and the menu bar of a window, and what areas draw.

#include "deskfixture.h"

#include <cmath>

#include "core/registry.h"

using namespace vx3;
using namespace vx3::gui;

namespace {

enum : int32_t { Check = 11, Number = 12, Combo = 13, Edit = 14, Fixed = 15, Toggle = 16, Date = 17, Text = 18, Progress = 19 };
enum : int32_t { AreaPlace = 21, Button = 31, Slider = 32 };

const VX3ContainerServices& Containers()
{
    return *core::ContainerServices();
}

class DeskInput : public DeskTest
{
protected:
    DeskInput()
    {
        window.onCommand = [this](int32_t, const VX3Container* event) {
            command = Containers().getFloat(event, VX3_COMMAND_VALUE, -99);
            isDragged = Containers().getBool(event, VX3_COMMAND_DRAGGED, 0);
        };
    }
    void OpenFields()
    {
        window.on["createLayout"] = [this] {
            Add(window, ShapeOf(VX3_GADGET_CHECK, Check));
            Add(window, ShapeOf(VX3_GADGET_NUMBER, Number));
            Add(window, ShapeOf(VX3_GADGET_COMBO, Combo));
            Add(window, ShapeOf(VX3_GADGET_EDIT, Edit));
            Add(window, ShapeOf(VX3_GADGET_EDIT, Fixed, VX3_FLAG_READ_ONLY), "fixed");
            Add(window, ShapeOf(VX3_GADGET_BITMAP_BUTTON, Toggle, VX3_FLAG_TOGGLE));
            Add(window, ShapeOf(VX3_GADGET_DATE, Date));
            Add(window, ShapeOf(VX3_GADGET_TEXT, Text), "text");
            Add(window, ShapeOf(VX3_GADGET_PROGRESS, Progress));
            Add(window, ShapeOf(VX3_GADGET_BUTTON, Button));
            Add(window, ShapeOf(VX3_GADGET_SLIDER, Slider));
        };
        ASSERT_TRUE(window.Open());
        log.Take();
    }
    void OpenArea()
    {
        window.on["createLayout"] = [this] {
            Add(window, ShapeOf(VX3_GADGET_AREA, AreaPlace, fills));
            Areas().attach(area.handle, window.handle, AreaPlace);
        };
        ASSERT_TRUE(window.Open());
        log.Take();
    }
    double ValueOf(int32_t id) const
    {
        double value = -99;
        Gadgets().getValue(window.handle, id, &value);
        return value;
    }
    std::string TextOf(int32_t id) const
    {
        core::Text text("none");
        Gadgets().getText(window.handle, id, text.Get());
        return text.Utf8();
    }

    ModuleDialog window{ log, "W" };
    ModuleArea area{ log, "area" };
    double command = -99;
    bool isDragged = false;
};

TEST_F(DeskInput, ValuesOfModulesAreClampedAndCauseNoCommand)
{
    OpenFields();
    EXPECT_TRUE(Gadgets().setRange(window.handle, Number, -5, 5, 1));
    EXPECT_TRUE(Gadgets().setRange(window.handle, Slider, 20, 40, 5));
    EXPECT_EQ(ValueOf(Slider), 20) << "into the new range";
    EXPECT_FALSE(Gadgets().setRange(window.handle, Number, 5, -5, 1));
    EXPECT_FALSE(Gadgets().setRange(window.handle, Check, 0, 5, 1));
    const struct {
        int32_t id;
        double value, expected;
    } cases[] = { { Number, 99, 5 },  { Number, -99, -5 },      { Number, NAN, -5 }, { Slider, 33, 33 },
                  { Check, 7, 1 },    { Check, 0, 0 },          { Toggle, 3, 1 },    { Combo, 12, 12 },
                  { Progress, 4, 1 }, { Progress, 0.25, 0.25 }, { Progress, -9, -1 } };
    for (const auto& row : cases) {
        Gadgets().setValue(window.handle, row.id, row.value);
        EXPECT_EQ(ValueOf(row.id), row.expected) << row.id;
    }
    EXPECT_FALSE(Gadgets().setValue(window.handle, Text, 1)) << "has none";
    EXPECT_FALSE(Gadgets().setValue(window.handle, 0, 1));
    EXPECT_FALSE(Gadgets().setValue(window.handle, 99, 1));
    const core::Text other("other");
    EXPECT_TRUE(Gadgets().setText(window.handle, Fixed, other.Get()));
    EXPECT_EQ(TextOf(Fixed), "other");
    EXPECT_FALSE(Gadgets().setText(window.handle, Slider, other.Get()));
    EXPECT_EQ(TextOf(Slider), "none") << "an out argument stays as it was";
    EXPECT_EQ(log.Take(), "");
    toolkit.shown.clear();
    Gadgets().setValue(window.handle, Check, 0);
    Gadgets().setText(window.handle, Fixed, other.Get());
    EXPECT_TRUE(toolkit.shown.empty()) << "nothing has changed";
}

TEST_F(DeskInput, WhatTheUserChangesIsACommandWithinAnInteraction)
{
    OpenFields();
    desk.UserSetValue(Find(Check), 1);
    EXPECT_EQ(log.Take(), "W inta, W command 11, W inte");
    EXPECT_EQ(command, 1);
    desk.UserSetValue(Find(Slider), 55.5, true);
    EXPECT_TRUE(isDragged);
    desk.UserSetValue(Find(Slider), 500);
    EXPECT_FALSE(isDragged);
    EXPECT_EQ(command, 100);
    desk.UserSetText(Find(Edit), u"abc", false);
    EXPECT_EQ(command, 0);
    desk.UserSetText(Find(Edit), u"abcd", true);
    EXPECT_EQ(command, 1) << "entered";
    EXPECT_EQ(TextOf(Edit), "abcd");
    desk.UserPressed(Find(Toggle));
    EXPECT_EQ(ValueOf(Toggle), 1);
    const VX3FileDate date = { 2026, 3, 5, 17, 41, 9 };
    VX3FileDate read = {};
    desk.UserSetDate(Find(Date), date);
    EXPECT_TRUE(Gadgets().getDate(window.handle, Date, &read));
    EXPECT_EQ(read.day, 5);
    EXPECT_EQ(read.hour, 0) << "a day, not a moment";
    EXPECT_FALSE(Gadgets().getDate(window.handle, Text, &read));
    log.Take();

    desk.UserSetText(Find(Fixed), u"changed", false);
    EXPECT_EQ(TextOf(Fixed), "fixed");
    Gadgets().enable(window.handle, Button, 0);
    EXPECT_FALSE(Gadgets().isEnabled(window.handle, Button));
    desk.UserPressed(Find(Button));
    desk.UserSetValue(Find(Text), 1);
    desk.UserPressed(Find(Text));
    EXPECT_EQ(log.Take(), "") << "none of these is anything that a user can do";
}

TEST_F(DeskInput, GroupsTakeOnlyWhatBelongsIntoThem)
{
    window.on["createLayout"] = [this] {
        EXPECT_TRUE(Begin(window, ShapeOf(VX3_GADGET_SCROLL, 5)));
        EXPECT_TRUE(Add(window, ShapeOf(VX3_GADGET_TEXT, 6)));
        EXPECT_FALSE(Add(window, ShapeOf(VX3_GADGET_TEXT, 7))) << "a scroll group has one child";
        EXPECT_TRUE(Gadgets().end(window.handle));
        EXPECT_FALSE(Gadgets().end(window.handle)) << "there is nothing around it";
        EXPECT_FALSE(Add(window, ShapeOf(VX3_GADGET_TEXT, 6))) << "the number is there already";
        EXPECT_FALSE(Begin(window, ShapeOf(VX3_GADGET_GROUP, 6)));
        EXPECT_FALSE(Begin(window, ShapeOf(VX3_GADGET_TEXT, 8))) << "no group";
        EXPECT_FALSE(Add(window, ShapeOf(VX3_GADGET_GROUP, 8)));
        EXPECT_FALSE(Add(window, ShapeOf(999, 8)));
        EXPECT_TRUE(Add(window, ShapeOf(VX3_GADGET_TEXT, 0)));
        EXPECT_TRUE(Add(window, ShapeOf(VX3_GADGET_TEXT, 0))) << "without a number any number of times";
    };
    EXPECT_FALSE(Add(window, ShapeOf(VX3_GADGET_TEXT, 1))) << "it is not open";
    ASSERT_TRUE(window.Open());
    EXPECT_FALSE(Gadgets().flush(window.handle, 6));
    EXPECT_TRUE(Gadgets().flush(window.handle, 5));
    EXPECT_FALSE(Gadgets().exists(window.handle, 6));
    EXPECT_TRUE(Add(window, ShapeOf(VX3_GADGET_TEXT, 6)));
    EXPECT_EQ(Find(6).parent, &Find(5)) << "the flushed group is the current one";
}

TEST_F(DeskInput, AnAreaHearsOfMouseAndKeysWithTheirPlace)
{
    OpenArea();
    std::vector<int32_t> event;
    std::string text;
    area.onInput = [&](const VX3Container* input) {
        event.clear();
        for (int32_t key = VX3_INPUT_DEVICE; key <= VX3_INPUT_DOUBLE; ++key)
            event.push_back(Containers().getInt32(input, key, -1));
        core::Text written("none");
        Containers().getText(input, VX3_INPUT_TEXT, written.Get());
        text = written.Utf8();
    };
    EXPECT_TRUE(desk.Feed(Find(AreaPlace), { Device::Mouse, VX3_CHANNEL_RIGHT, 1, { 3, 4 }, VX3_QUALIFIER_CTRL, true, u"" }));
    EXPECT_EQ(event, (std::vector<int32_t>{ VX3_DEVICE_MOUSE, VX3_CHANNEL_RIGHT, 1, 3, 4, VX3_QUALIFIER_CTRL, 1 }));
    EXPECT_EQ(log.Take(), "W inta, area input, W inte");
    EXPECT_TRUE(desk.Feed(Find(AreaPlace), { Device::Keyboard, 'A', 1, {}, 0, false, u"a" }));
    EXPECT_EQ(event, (std::vector<int32_t>{ VX3_DEVICE_KEYBOARD, 'A', 1, -1, -1, 0, 0 }));
    EXPECT_EQ(text, "a");
    log.Take();
    EXPECT_TRUE(desk.Feed(Find(AreaPlace), { Device::Mouse, VX3_CHANNEL_WHEEL, -120, { 3, 4 }, 0, false, u"" }));
    EXPECT_EQ(log.Take(), "area input") << "a wheel changes nothing";
    EXPECT_FALSE(desk.Feed(Find(AreaPlace), { Device::Mouse, VX3_CHANNEL_LEFT, 0, { 3, 4 }, 0, false, u"" }));
    EXPECT_EQ(log.Take(), "W inta, W inte") << "nobody hears that a button is let go";

    window.answers["bIPN"] = 0;
    EXPECT_FALSE(desk.FeedKey(WindowOf(), { Device::Keyboard, VX3_KEY_BACKSPACE, 1, {}, 0, false, u"" }));
    EXPECT_EQ(log.Take(), "W inta, W bIPN, W inte");
    window.answers["bIPN"] = 1;
    EXPECT_TRUE(desk.FeedKey(WindowOf(), { Device::Keyboard, VX3_KEY_BACKSPACE, 1, {}, 0, false, u"" }));
}

// A canvas that counts what is drawn.
class CountingCanvas : public Canvas
{
public:
    void SetClip(const Place& place) override { clip = place; }
    void ClearClip() override { clip = {}; }
    void SetPen(Colour colour) override { pen = colour; }
    void SetTextColour(Colour colour) override { text = colour; }
    void Fill(const Place& place) override { filled.push_back(place); }
    void Line(Point, Point) override { }
    void DrawBitmap(const VX3Bitmap*, const Place&, const Place&, bool) override { }
    void DrawText(std::u16string_view, Point) override { }

    Place clip;
    Colour pen;
    Colour text;
    std::vector<Place> filled;
};

TEST_F(DeskInput, DrawingWorksOnlyWhileAnAreaDraws)
{
    OpenArea();
    CountingCanvas canvas;
    VX3Canvas kept = 0;
    area.onDraw = [&](VX3Canvas handle, const VX3Rectangle& dirty) {
        kept = handle;
        EXPECT_EQ(canvas.pen, toolkit.ColourOf(VX3_COLOUR_TEXT));
        Drawing().fillRectangle(handle, &dirty);
        Drawing().setPen(handle, VX3_COLOUR_SELECTION);
        EXPECT_EQ(canvas.pen, toolkit.ColourOf(VX3_COLOUR_SELECTION));
        Drawing().setPen(handle, 4711);
        EXPECT_EQ(canvas.pen, Colour{}) << "a number that is none is black";
        Drawing().setPenRgb(handle, 1, 2, 3);
        EXPECT_EQ(canvas.pen, (Colour{ 1, 2, 3 }));
        const VX3Rectangle inverted = { 9, 9, 3, 3 };
        Drawing().fillRectangle(handle, &inverted);
        Drawing().fillRectangle(handle + 1, &dirty);
    };
    desk.Paint(Find(AreaPlace), canvas, { 2, 3, 10, 20 });
    EXPECT_EQ(canvas.filled, (std::vector<Place>{ { 2, 3, 10, 20 } }));
    const VX3Rectangle rectangle = { 0, 0, 5, 5 };
    Drawing().fillRectangle(kept, &rectangle);
    EXPECT_EQ(canvas.filled.size(), 1u) << "the drawing is over";
    const VX3Unit units[] = { 'a', 'b', 'c' };
    EXPECT_EQ(Drawing().textWidth(0, units, 3), 21);
    EXPECT_EQ(Drawing().textWidth(kept, units, 2), 14);
    EXPECT_EQ(Drawing().textWidth(0, nullptr, 3), 0);
    EXPECT_EQ(Drawing().fontHeight(0), 13);
    EXPECT_EQ(Drawing().colour(VX3_COLOUR_BACKGROUND), 0x0003E8u);
    EXPECT_EQ(Drawing().colour(1), 0u);

    const VX3Rectangle part = { -5, 10, 20, 5000 };
    EXPECT_TRUE(Areas().redraw(area.handle, &part));
    EXPECT_EQ(toolkit.redrawn, (Place{ 0, 10, 21, 190 })) << "no more than there is";
}

// A command as a module registers it.
struct TestCommand {
    int executed = 0;
    uint32_t state = VX3_COMMAND_ENABLED | VX3_COMMAND_CHECKED;
};

TEST_F(DeskInput, AMenuBarHasRowsOfTheWindowAndRegisteredCommands)
{
    TestCommand commanded;
    VX3CommandTable table = {};
    table.execute = [](void* object) -> VX3Bool { return ++static_cast<TestCommand*>(object)->executed; };
    table.getState = [](void* object) { return static_cast<TestCommand*>(object)->state; };
    core::RegistryServices()->registerCommand(500, core::Text("Browse").Get(), 0, 0, core::Text("").Get(), &commanded, &table);
    window.on["createLayout"] = [this] {
        EXPECT_FALSE(Menus().beginMenu(window.handle, core::Text("File").Get())) << "not before it is flushed";
        EXPECT_TRUE(Menus().flush(window.handle));
        EXPECT_TRUE(Menus().beginMenu(window.handle, core::Text("&File").Get()));
        EXPECT_TRUE(Menus().addItem(window.handle, 61, core::Text("One").Get(), 0));
        EXPECT_TRUE(Menus().addItem(window.handle, 0, core::Text("").Get(), 0));
        EXPECT_TRUE(Menus().addCommand(window.handle, 500));
        EXPECT_TRUE(Menus().addCommand(window.handle, 501));
        EXPECT_TRUE(Menus().endMenu(window.handle));
        EXPECT_FALSE(Menus().endMenu(window.handle));
        EXPECT_TRUE(Menus().finish(window.handle));
    };
    ASSERT_TRUE(window.Open());
    log.Take();
    ASSERT_EQ(toolkit.menu.size(), 1u);
    const std::vector<MenuItem>& rows = toolkit.menu[0].children;
    ASSERT_EQ(rows.size(), 4u);
    EXPECT_EQ(rows[2].text, u"Browse");
    EXPECT_EQ(rows[2].bits, uint32_t(VX3_MENU_CHECKED));
    EXPECT_EQ(rows[3].bits, uint32_t(VX3_MENU_DISABLED)) << "nobody has registered it";

    desk.UserChoseMenu(WindowOf(), 61);
    EXPECT_EQ(log.Take(), "W command 61");
    desk.UserChoseMenu(WindowOf(), 500);
    desk.UserChoseMenu(WindowOf(), 501);
    EXPECT_EQ(commanded.executed, 1);
    commanded.state = 0;
    desk.UpdateMenu(WindowOf());
    EXPECT_EQ(WindowOf().menu[0].children[2].bits, uint32_t(VX3_MENU_DISABLED));
    desk.UserChoseMenu(WindowOf(), 500);
    EXPECT_EQ(commanded.executed, 1);
    EXPECT_TRUE(Menus().setItem(window.handle, 61, VX3_MENU_DISABLED));
    EXPECT_FALSE(Menus().setItem(window.handle, 500, 0)) << "its state is the command's";
    desk.UserChoseMenu(WindowOf(), 61);
    EXPECT_EQ(log.Take(), "");
    core::TakeOutEverything();
}

} // namespace
