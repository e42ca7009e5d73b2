// Scripts: what is understood, which gestures come of it, and how lines run inside others.

#include "gui/script.h"

#include <filesystem>

#include "deskfixture.h"

using namespace vx3;
using namespace vx3::gui;

namespace {

// Writes every gesture down; what it begins is a function of the test.
class NotingDriver : public Driver
{
public:
    NotingDriver(Log& ownLog, Desk& ownDesk, FakeToolkit& ownToolkit)
        : log(ownLog)
        , desk(ownDesk)
        , toolkit(ownToolkit)
    {
    }

    void Mouse(Gadget& gadget, Point at, int32_t channel, uint32_t qualifiers, bool isPressed, bool isDouble) override
    {
        log.Add((isPressed ? isDouble ? "double " : "press " : "release ") + Place(gadget, at) + " " + std::to_string(channel)
                + Keys(qualifiers));
        if (isPressed)
            onPress();
    }
    void MoveMouse(Gadget& gadget, Point at, uint32_t qualifiers) override { log.Add("move " + Place(gadget, at) + Keys(qualifiers)); }
    void Wheel(Gadget& gadget, Point at, int32_t value, uint32_t qualifiers) override
    {
        log.Add("wheel " + Place(gadget, at) + " " + std::to_string(value) + Keys(qualifiers));
    }
    void Key(Dialog&, int32_t code, uint32_t qualifiers, const std::u16string& text) override
    {
        std::string key = code < 0x80 ? std::string(1, static_cast<char>(code)) : std::to_string(code);
        log.Add("key " + key + Keys(qualifiers) + (text.empty() ? "" : " '" + core::Text(std::u16string_view(text)).Utf8() + "'"));
    }
    void Push(Gadget& gadget) override { log.Add("push " + std::to_string(gadget.shape.id)); }
    void SetValue(Gadget& gadget, double value) override
    {
        log.Add("set " + std::to_string(gadget.shape.id) + " " + std::to_string(value));
    }
    void SetText(Gadget& gadget, const std::u16string& text) override
    {
        log.Add("text " + std::to_string(gadget.shape.id) + " " + core::Text(std::u16string_view(text)).Utf8());
    }
    void ChooseMenu(Dialog&, int32_t id) override { log.Add("menu " + std::to_string(id)); }
    void Close(Dialog& window) override { desk.UserClosed(window); }
    void Answer(const std::string& answer) override { log.Add("answer '" + answer + "'"); }
    void Advance(int milliseconds) override
    {
        if (milliseconds == 0 && toolkit.resized != Size())
            desk.UserResized(*desk.Windows().back(), std::exchange(toolkit.resized, {}));
        else
            log.Add("advance " + std::to_string(milliseconds));
    }
    void Settle() override { log.Add("settle"); }
    bool Shot(Dialog&, const std::string& file) override
    {
        log.Add("shot " + file);
        return file != "bad.png";
    }
    std::string DumpDisplayList(Dialog&) override { return "fill\nline\n"; }
    std::string DumpMenu() override { return ""; }

    std::function<void()> onPress = [] {};

private:
    static std::string Place(const Gadget& gadget, Point at)
    {
        return std::to_string(gadget.shape.id) + ":" + std::to_string(at.x) + "," + std::to_string(at.y);
    }
    static std::string Keys(uint32_t qualifiers) { return qualifiers ? "+" + std::to_string(qualifiers) : ""; }

    Log& log;
    Desk& desk;
    FakeToolkit& toolkit;
};

class ScriptTest : public DeskTest
{
protected:
    ScriptTest()
    {
        window.on["createLayout"] = [this] {
            Begin(window, ShapeOf(VX3_GADGET_SCROLL, 5, fills));
            Begin(window, ShapeOf(VX3_GADGET_GROUP, 0, fills));
            Add(window, ShapeOf(VX3_GADGET_AREA, 6, fills));
            Areas().attach(area.handle, window.handle, 6);
            Gadgets().end(window.handle);
            Gadgets().end(window.handle);
            Add(window, ShapeOf(VX3_GADGET_CHECK, 7), "Fine");
            Add(window, ShapeOf(VX3_GADGET_EDIT, 8, VX3_FLAG_HIDDEN));
        };
        area.least = { 100, 1000 };
        window.Open();
        Take();
    }

    // What the lines did; a failure at the end.
    std::string Play(const std::string& text)
    {
        std::string error;
        if (!script.Parse(text, error))
            return error;
        script.SetOutput([this](const std::string& line) { log.Add("> " + line); });
        while (script.Step()) { }
        return Take() + (script.HasFailed() ? "! " + script.Failure() : "");
    }
    std::string Take() { return log.Take(); }

    ModuleArea area{ log, "area" };
    ModuleDialog window{ log, "W" };
    NotingDriver driver{ log, desk, toolkit };
    Script script{ desk, driver, {} };
};

TEST_F(ScriptTest, TellsWhatItDoesNotUnderstand)
{
    const struct {
        const char* text;
        const char* error;
    } cases[] = {
        { "settle\n\n  # fine\nclik 6 1 1", "line 4: 'clik' is no verb" },
        { "typed a", "line 1: 'typed' is no verb" },
        { "push", "line 1: something is missing; push GADGET" },
        { "push 6 7", "line 1: '7' is too much; push GADGET" },
        { "push six", "line 1: 'six' is not a whole number; push GADGET" },
        { "click 6 1", "line 1: something is missing; click GADGET X Y [shift] [ctrl] [alt]" },
        { "click 6 1 1x", "line 1: '1x' is not a coordinate; click GADGET X Y [shift] [ctrl] [alt]" },
        { "click 6 % 1", "line 1: '%' is not a coordinate; click GADGET X Y [shift] [ctrl] [alt]" },
        { "click 6 1 1 left", "line 1: 'left' is not understood; click GADGET X Y [shift] [ctrl] [alt]" },
        { "drag 6 1 1 on 6 2 2", "line 1: 'to' is expected, not 'on'; drag GADGET X Y to GADGET X Y [shift] [ctrl] [alt] [no-drop]" },
        { "key hyper", "line 1: 'hyper' is no key; key KEY [shift] [ctrl] [alt]" },
        { "set 7 nan", "line 1: 'nan' is not a number; set GADGET VALUE" },
        { "dump everything", "line 1: 'everything' cannot be dumped; dump WHAT" },
        { "drag-splitter 6 1", "line 1: something is missing; drag-splitter GADGET W1 W2 ..." },
        { "open a b", "line 1: 'b' is too much; open [PLACE]" },
        { "type", "line 1: something is missing; type TEXT" },
        { "say \"open", "line 1: a quote is never closed" },
        { "say \"a\"b", "line 1: a blank is missing behind a quote" },
    };
    for (const auto& row : cases) {
        EXPECT_EQ(Play(row.text), row.error);
        EXPECT_TRUE(script.IsDone()) << "nothing of it runs";
    }
}

TEST_F(ScriptTest, LinesBecomeGestures)
{
    const struct {
        const char* line;
        const char* gestures;
    } cases[] = {
        { "click 6 10 20 ctrl shift", "press 6:10,20 1+3, release 6:10,20 1+3" },
        { "dclick 6 1 2", "press 6:1,2 1, release 6:1,2 1, double 6:1,2 1, release 6:1,2 1" },
        { "rclick 6 1 2 alt", "press 6:1,2 2+4, release 6:1,2 2+4" },
        { "press 6 1 2 forward", "press 6:1,2 6" },
        { "move 6 -1 2", "move 6:-1,2" },
        { "drag 6 1 2 to 7 3 4 ctrl", "press 6:1,2 1+2, move 7:3,4+2, move 7:3,4+2, release 7:3,4 1+2" },
        { "drag 6 1 2 to 7 3 4 no-drop", "press 6:1,2 1, move 7:3,4, move 7:3,4, key 61723, release 7:3,4 1" },
        { "wheel 6 1 2 -0.5", "wheel 6:1,2 -60" },
        { "key pageup shift", "key 61828+1" },
        { "key a", "key A 'a'" },
        { "key a ctrl", "key A+2" },
        { "key 5", "key 5 '5'" },
        { "key 0xF108", "key 61704" },
        { "type \"a b\" ü", "key A 'a', key 61728 ' ', key B 'b', key 61728 ' ', key 220 'ü'" },
        { "enter", "key 61709" },
        { "set 7 0.5", "set 7 0.500000" },
        { "text 7 two  words", "text 7 two words" },
        { "text 7 \"two  words\" # no more", "text 7 two  words" },
        { "text 7", "text 7 " },
        { "answer 900021", "answer '900021'" },
        { "answer", "answer ''" },
        { "advance 250", "advance 250" },
        { "say \"a \\\"b\\\" \\\\ \\nc\" d#e", "> a \"b\" \\ , > c d#e" },
        { "dump displaylist", "> fill, > line" },
        { "dump focus", "> focus nowhere" },
        { "push 7\r", "push 7" },
    };
    for (const auto& row : cases)
        EXPECT_EQ(Play(row.line), row.gestures) << row.line;
}

TEST_F(ScriptTest, APressThatBeginsSomethingRunsTheLinesBehindIt)
{
    driver.onPress = [this] {
        log.Add("(");
        script.Step();
        script.Step();
        log.Add(")");
    };
    EXPECT_EQ(Play("click 6 1 1\nsay inside\nsay outside"), "press 6:1,1 1, (, release 6:1,1 1, > inside, ), > outside");
    EXPECT_EQ(Play("press 6 1 1\npush 9\nsay never"), "press 6:1,1 1, (, )! line 2: the window has no gadget 9");
    EXPECT_FALSE(script.Step());
    EXPECT_EQ(script.Line(), 2);
}

TEST_F(ScriptTest, PercentAreOfWhatIsSeen)
{
    Gadgets().update(window.handle, 0);
    const VX3Rectangle down = { 0, 300, 0, 0 };
    Gadgets().setVisiblePart(window.handle, 5, &down);
    const Size view = Find(5).view;
    Take();
    EXPECT_EQ(Play("press 6 0% 0%"), "press 6:0,300 1");
    EXPECT_EQ(Play("press 6 100% 100%"), "press 6:" + std::to_string(view.width - 1) + "," + std::to_string(300 + view.height - 1) + " 1");
    EXPECT_EQ(Play("press 6 50% 7"), "press 6:" + std::to_string(view.width / 2) + ",7 1");
}

TEST_F(ScriptTest, AnAreaGetsASizeWithItsBars)
{
    EXPECT_EQ(Play("area 6 150 90").find('!'), std::string::npos) << script.Failure();
    EXPECT_EQ(Find(5).view, (Size{ 150, 90 }));
    area.least = { 100, 60 }; // the bar goes
    Gadgets().update(window.handle, 0);
    EXPECT_EQ(Play("area 6 120 90").find('!'), std::string::npos);
    EXPECT_EQ(Find(5).view, (Size{ 120, 90 }));
    EXPECT_EQ(Find(5).place.Extent(), (Size{ 120, 90 }));
}

TEST_F(ScriptTest, WindowsAreCountedAndTheLastIsMeantAtFirst)
{
    ModuleDialog second{ log, "S" };
    second.on["createLayout"] = [&] { Add(second, ShapeOf(VX3_GADGET_BUTTON, 70), "Go"); };
    second.Open();
    Take();
    EXPECT_EQ(Play("push 70\nwindow 1\npush 7\nwindow 2\npush 7"), "push 70, push 7! line 5: the window has no gadget 7");
    Script other{ desk, driver, {} };
    std::string error;
    ASSERT_TRUE(other.Parse("close\npush 7\nclose\npush 7", error));
    while (other.Step()) { }
    EXPECT_EQ(other.Failure(), "line 4: no window is open");
}

TEST_F(ScriptTest, AsksTheProgramAroundIt)
{
    ScriptProgram program;
    program.open = [](const std::string& place) { return place != "bad"; };
    program.goTo = [](const std::string& place) { return place == "good place"; };
    program.command = [](int32_t id) { return id == 5; };
    program.dump = [](const std::string& what) { return "a " + what + "\nand more\n"; };
    const struct {
        const char* text;
        const char* failure;
    } cases[] = {
        { "open\nopen x\ngoto \"good place\"\ncommand 5\ndump history", "" },
        { "open bad", "line 1: no window was opened" },
        { "goto x", "line 1: 'x' is no place to go to" },
        { "command 6", "line 1: the command 6 is not there, disabled, or failed" },
        { "shot bad.png", "line 1: the picture 'bad.png' could not be written" },
        { "file x", "line 1: the scenario has no folder" },
        { "window 2", "line 1: there are 1 windows" },
    };
    for (const auto& row : cases) {
        Script own{ desk, driver, program };
        std::string output, error;
        own.SetOutput([&](const std::string& line) { output += line + "|"; });
        ASSERT_TRUE(own.Parse(row.text, error)) << error;
        while (own.Step()) { }
        EXPECT_EQ(own.Failure(), row.failure);
        EXPECT_EQ(output, own.HasFailed() ? "" : "a history|and more|");
    }
    Take();
    EXPECT_EQ(Play("open"), "! line 1: no window was opened") << "without a program";
}

TEST_F(ScriptTest, FilesStayBelowTheFolder)
{
    namespace files = std::filesystem;
    const files::path folder = files::temp_directory_path() / "vx3-scripttest";
    files::remove_all(folder);
    ScriptProgram program;
    program.folder = folder;
    const auto failureOf = [&](const std::string& text) {
        Script own{ desk, driver, program };
        std::string error;
        EXPECT_TRUE(own.Parse(text, error)) << error;
        while (own.Step()) { }
        return own.Failure();
    };
    EXPECT_EQ(failureOf("file a.txt deep/b.txt\nfolder c d\nremove a.txt c\nrename deep moved"), "");
    EXPECT_EQ(files::file_size(folder / "moved/b.txt"), 11u);
    EXPECT_FALSE(files::exists(folder / "a.txt") || files::exists(folder / "c"));
    EXPECT_EQ(failureOf("rename moved d"), "line 1: 'd' exists already");
    EXPECT_EQ(failureOf("remove a.txt"), "line 1: 'a.txt' is not there");
    for (const char* name : { "../x", "/tmp/x", "a/../../x", "\"\"" })
        EXPECT_NE(failureOf(std::string("file ") + name).find("is no name below the folder"), std::string::npos) << name;
    files::remove_all(folder);
}

TEST_F(ScriptTest, GadgetsAreDescribedWithoutPlaces)
{
    Gadgets().setValue(window.handle, 7, 1);
    Gadgets().enable(window.handle, 7, 0);
    Take();
    EXPECT_EQ(Play("dump gadgets"),
              "> group, >   scroll 5, >     group, >       area 6, >   check 7 1 \"Fine\" disabled, >   edit 8 hidden");
}

TEST_F(ScriptTest, TheHelpShowsVerbsThatAreThere)
{
    std::istringstream help(ScriptHelp());
    int verbs = 0;
    for (std::string line; std::getline(help, line);) {
        if (line.front() == ' ')
            continue;
        ++verbs;
        std::string error;
        const std::string verb = line.substr(0, line.find(' '));
        script.Parse(verb, error);
        EXPECT_EQ(error.find("is no verb"), std::string::npos) << verb;
    }
    EXPECT_GT(verbs, 30);
}

} // namespace
