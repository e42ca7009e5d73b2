#include "gui/scriptverbs.h"

#include <algorithm>
#include <cstdlib>

#include "core/values.h"
#include "gui/deskstate.h"
#include "gui/layout.h"
#include "gui/scriptdump.h"
#include "gui/scriptfiles.h"
#include "gui/scriptrun.h"

namespace vx3::gui {

namespace {

// --- Gestures that are made of others ---

using Words = std::vector<std::string>;

ScriptLine Part(const ScriptLine& line, Words words)
{
    return { line.number, std::move(words) };
}

// A press or a release at the point of the words from `at`, with a button and the words from `rest`.
ScriptLine MousePart(const ScriptLine& line, const char* verb, size_t at, const char* button, size_t rest)
{
    Words words = { verb, line.words[at], line.words[at + 1], line.words[at + 2], button };
    std::copy_if(line.words.begin() + static_cast<ptrdiff_t>(rest), line.words.end(), std::back_inserter(words),
                 [](const std::string& word) { return QualifierOf(word) != 0; });
    return Part(line, std::move(words));
}

std::vector<ScriptLine> ClickWith(const ScriptLine& line, const char* button)
{
    return { MousePart(line, "press", 1, button, 4), MousePart(line, "release", 1, button, 4) };
}

std::vector<ScriptLine> ExpandClick(const ScriptLine& line)
{
    return ClickWith(line, "left");
}

std::vector<ScriptLine> ExpandRightClick(const ScriptLine& line)
{
    return ClickWith(line, "right");
}

std::vector<ScriptLine> ExpandDoubleClick(const ScriptLine& line)
{
    std::vector<ScriptLine> parts = ExpandClick(line);
    const std::vector<ScriptLine> again = ExpandClick(line);
    parts.insert(parts.end(), again.begin(), again.end());
    parts[2].words.push_back("double");
    return parts;
}

// Two moves, since what is under the pointer hears of a drag only when it has begun.
std::vector<ScriptLine> ExpandDrag(const ScriptLine& line)
{
    constexpr size_t from = 1, to = 5, rest = 8;
    std::vector<ScriptLine> parts = { MousePart(line, "press", from, "left", rest), MousePart(line, "move", to, "left", rest),
                                      MousePart(line, "move", to, "left", rest) };
    if (std::find(line.words.begin() + rest, line.words.end(), "no-drop") != line.words.end())
        parts.push_back(Part(line, { "key", "esc" }));
    parts.push_back(MousePart(line, "release", to, "left", rest));
    return parts;
}

std::vector<ScriptLine> ExpandType(const ScriptLine& line)
{
    constexpr char16_t firstOfPair = 0xD800, behindFirstOfPair = 0xDC00;
    std::string joined;
    for (size_t i = 1; i < line.words.size(); ++i)
        joined += (i == 1 ? "" : " ") + line.words[i];
    const std::u16string units = core::Text(std::string_view(joined)).Units();
    std::vector<ScriptLine> parts;
    for (size_t i = 0; i < units.size(); ++i) {
        const size_t length = units[i] >= firstOfPair && units[i] < behindFirstOfPair && i + 1 < units.size() ? 2 : 1;
        parts.push_back(Part(line, { "typed", core::Text(std::u16string_view(units).substr(i, length)).Utf8() }));
        i += length - 1;
    }
    return parts;
}

std::vector<ScriptLine> ExpandEnter(const ScriptLine& line)
{
    return { Part(line, { "key", "enter" }) };
}

std::vector<ScriptLine> ExpandEscape(const ScriptLine& line)
{
    return { Part(line, { "key", "esc" }) };
}

// --- Windows ---

void Open(ScriptRun& run)
{
    if (!run.state.program.open || !run.state.program.open(run.Rest(1)))
        throw ScriptError{ "no window was opened" };
    run.state.window = 0;
}

void GoTo(ScriptRun& run)
{
    if (!run.state.program.goTo || !run.state.program.goTo(run.Word(1)))
        throw ScriptError{ "'" + run.Word(1) + "' is no place to go to" };
}

void Close(ScriptRun& run)
{
    run.state.driver.Close(run.Window());
}

Toolkit& ToolkitOfDesk()
{
    DeskState* desk = CurrentDesk();
    if (!desk)
        throw ScriptError{ "no desk is there" };
    return desk->toolkit;
}

void ChooseWindow(ScriptRun& run)
{
    const std::vector<Dialog*> windows = run.state.desk.Windows();
    const int32_t number = WholeWord(run.Word(1));
    if (number < 1 || static_cast<size_t>(number) > windows.size())
        throw ScriptError{ "there are " + std::to_string(windows.size()) + " windows" };
    run.state.window = windows[static_cast<size_t>(number) - 1]->handle;
    ToolkitOfDesk().RaiseWindow(run.Window());
}

void ResizeTo(ScriptRun& run, Size inside)
{
    ToolkitOfDesk().ResizeWindow(run.Window(), { std::min(inside.width, mostWindowLength), std::min(inside.height, mostWindowLength) });
    run.state.driver.Advance(0);
}

void ResizeWindow(ScriptRun& run)
{
    ResizeTo(run, { WholeWord(run.Word(1)), WholeWord(run.Word(2)) });
}

// Bars come and go with the size, so a few attempts may be needed.
void ResizeArea(ScriptRun& run)
{
    constexpr int attempts = 4;
    const Size wanted = { Bounded(WholeWord(run.Word(2))), Bounded(WholeWord(run.Word(3))) };
    for (int attempt = 0;; ++attempt) {
        Gadget& seen = SeenThrough(run.GadgetAt(1));
        const Size present = seen.shape.kind == VX3_GADGET_SCROLL ? seen.view : seen.place.Extent();
        if (present == wanted)
            return;
        if (attempt == attempts)
            throw ScriptError{ "the gadget cannot have this size: it has " + std::to_string(present.width) + " "
                               + std::to_string(present.height) };
        const Size window = run.Window().size;
        ResizeTo(run, { window.width + wanted.width - present.width, window.height + wanted.height - present.height });
    }
}

// --- Mouse and keys ---

int32_t ButtonOf(const ScriptRun& run)
{
    for (size_t i = 4; i < run.Count(); ++i)
        if (const int32_t channel = ChannelOf(run.Word(i)))
            return channel;
    return VX3_CHANNEL_LEFT;
}

void PressOrRelease(ScriptRun& run, bool isPressed)
{
    Gadget& gadget = run.GadgetAt(1);
    run.state.driver.Mouse(gadget, run.PointIn(gadget, 2), ButtonOf(run), run.Qualifiers(4), isPressed, run.HasWord(4, "double"));
}

void Press(ScriptRun& run)
{
    PressOrRelease(run, true);
}

void Release(ScriptRun& run)
{
    PressOrRelease(run, false);
}

void Move(ScriptRun& run)
{
    Gadget& gadget = run.GadgetAt(1);
    run.state.driver.MoveMouse(gadget, run.PointIn(gadget, 2), run.Qualifiers(4));
}

int32_t WheelWord(const std::string& word)
{
    constexpr double notch = 120;
    constexpr double mostNotches = 1000;
    return static_cast<int32_t>(notch * std::clamp(DecimalWord(word), -mostNotches, mostNotches));
}

void Wheel(ScriptRun& run)
{
    Gadget& gadget = run.GadgetAt(1);
    run.state.driver.Wheel(gadget, run.PointIn(gadget, 2), WheelWord(run.Word(4)), run.Qualifiers(5));
}

void PressKey(ScriptRun& run)
{
    KeyWord key = ParseKey(run.Word(1));
    const uint32_t qualifiers = run.Qualifiers(2);
    if (qualifiers & (VX3_QUALIFIER_CTRL | VX3_QUALIFIER_ALT))
        key.text.clear();
    run.state.driver.Key(run.Window(), key.code, qualifiers, key.text);
}

void Typed(ScriptRun& run)
{
    const KeyWord key = KeyOfUnits(core::Text(std::string_view(run.Word(1))).Units());
    run.state.driver.Key(run.Window(), key.code, 0, key.text);
}

// --- Gadgets, menus, boxes ---

void Push(ScriptRun& run)
{
    run.state.driver.Push(run.GadgetAt(1));
}

void SetValue(ScriptRun& run)
{
    run.state.driver.SetValue(run.GadgetAt(1), DecimalWord(run.Word(2)));
}

void SetText(ScriptRun& run)
{
    run.state.driver.SetText(run.GadgetAt(1), core::Text(std::string_view(run.Rest(2))).Units());
}

// Borders are moved from the last to the first and back, since each can only go as far as the next.
void DragSplitter(ScriptRun& run)
{
    std::vector<double> weights;
    for (size_t i = 2; i < run.Count(); ++i)
        weights.push_back(DecimalWord(run.Word(i)));
    const std::vector<int> positions = BorderPositions(run.GadgetAt(1), weights);
    const auto move = [&](size_t border) { run.state.desk.UserMovedSplitter(run.GadgetAt(1), border, positions[border]); };
    for (size_t i = positions.size(); i-- > 0;)
        move(i);
    for (size_t i = 1; i < positions.size(); ++i)
        move(i);
}

void ChooseMenu(ScriptRun& run)
{
    run.state.driver.ChooseMenu(run.Window(), WholeWord(run.Word(1)));
}

void RunCommand(ScriptRun& run)
{
    if (!run.state.program.command || !run.state.program.command(WholeWord(run.Word(1))))
        throw ScriptError{ "the command " + run.Word(1) + " is not there, disabled, or failed" };
}

void Answer(ScriptRun& run)
{
    run.state.driver.Answer(run.Rest(1));
}

// --- Time, and what can be looked at ---

void Advance(ScriptRun& run)
{
    run.state.driver.Advance(WholeWord(run.Word(1)));
}

void Settle(ScriptRun& run)
{
    run.state.driver.Settle();
}

std::string DumpProgram(ScriptRun& run)
{
    if (!run.state.program.dump)
        throw ScriptError{ "there is no program to ask" };
    return run.state.program.dump(run.Word(1));
}

struct DumpRow {
    std::string_view name;
    std::string (*dump)(ScriptRun& run);
};

constexpr DumpRow dumps[] = {
    { "list", DumpProgram },
    { "tree", DumpProgram },
    { "history", DumpProgram },
    { "preview", DumpProgram },
    { "state", DumpProgram },
    { "menu", [](ScriptRun& run) { return run.state.driver.DumpMenu(); } },
    { "displaylist", [](ScriptRun& run) { return run.state.driver.DumpDisplayList(run.Window()); } },
    { "gadgets", [](ScriptRun& run) { return DescribeGadgets(run.Window()); } },
    { "focus", [](ScriptRun& run) { return DescribeFocus(run.Window()); } },
};

const DumpRow* FindDump(std::string_view what)
{
    const auto found = std::find_if(std::begin(dumps), std::end(dumps), [&](const DumpRow& row) { return row.name == what; });
    return found == std::end(dumps) ? nullptr : found;
}

void Dump(ScriptRun& run)
{
    run.Tell(FindDump(run.Word(1))->dump(run));
}

void Shot(ScriptRun& run)
{
    if (!run.state.driver.Shot(run.Window(), run.Word(1)))
        throw ScriptError{ "the picture '" + run.Word(1) + "' could not be written" };
}

void Say(ScriptRun& run)
{
    run.Tell(run.Rest(1));
}

// What is tried here must fail; what it says is left to the program.
void Refused(ScriptRun& run)
{
    ScriptLine tried;
    for (size_t i = 1; i < run.Count(); ++i)
        tried.words.push_back(run.Word(i));
    const ScriptVerb* verb = FindVerb(tried.words[0]);
    if (!verb || !verb->run)
        throw ScriptError{ "'" + tried.words[0] + "' is nothing that can be refused" };
    CheckArguments(tried, verb->pattern);
    try {
        RunLine(run.state, tried);
    } catch (const ScriptError&) {
        return;
    }
    if (!run.state.driver.TakeRefusal())
        throw ScriptError{ "this was not refused" };
}

// --- Files of the scenario ---

void ForEachName(ScriptRun& run, void (*function)(const std::string& folder, const std::string& name))
{
    for (size_t i = 1; i < run.Count(); ++i)
        function(run.state.program.folder, run.Word(i));
}

void MakeFiles(ScriptRun& run)
{
    ForEachName(run, MakeScenarioFile);
}

void MakeFolders(ScriptRun& run)
{
    ForEachName(run, MakeScenarioFolder);
}

void RemoveNames(ScriptRun& run)
{
    ForEachName(run, RemoveFromScenario);
}

void Rename(ScriptRun& run)
{
    RenameInScenario(run.state.program.folder, run.Word(1), run.Word(2));
}

constexpr ScriptVerb verbs[] = {
    { "open", "?", "open [PLACE]", "opens a window on a path or URL, or on the usual place", nullptr, Open },
    { "goto", "w", "goto PLACE", "goes to a path or URL in the window in front", nullptr, GoTo },
    { "close", "", "close", "closes the window, as the user does", nullptr, Close },
    { "window", "i", "window N", "means the N-th open window from here on, and raises it", nullptr, ChooseWindow },
    { "size", "ii", "size W H", "gives the inside of the window a size", nullptr, ResizeWindow },
    { "area", "gii", "area GADGET W H", "gives the window the size in which that much of a gadget is seen", nullptr, ResizeArea },
    { "click", "gccQ", "click GADGET X Y [shift] [ctrl] [alt]", "a click with the left button", ExpandClick, nullptr },
    { "dclick", "gccQ", "dclick GADGET X Y [shift] [ctrl] [alt]", "a double click", ExpandDoubleClick, nullptr },
    { "rclick", "gccQ", "rclick GADGET X Y [shift] [ctrl] [alt]", "a click with the right button", ExpandRightClick, nullptr },
    { "press", "gccB", "press GADGET X Y [shift ctrl alt] [BUTTON] [double]", "left, right, middle, back or forward", nullptr, Press },
    { "move", "gccB", "move GADGET X Y [shift ctrl alt]", "moves the pointer", nullptr, Move },
    { "release", "gccB", "release GADGET X Y [shift ctrl alt] [BUTTON]", "lets a button go", nullptr, Release },
    { "drag", "gcc=gccN", "drag GADGET X Y to GADGET X Y [shift] [ctrl] [alt] [no-drop]", "from a press to the release, or to Escape",
      ExpandDrag, nullptr },
    { "wheel", "gccfQ", "wheel GADGET X Y NOTCHES [shift] [ctrl] [alt]", "positive away from the user", nullptr, Wheel },
    { "drag-splitter", "gffF", "drag-splitter GADGET W1 W2 ...", "moves the borders until the parts have these weights", nullptr,
      DragSplitter },
    { "key", "kQ", "key KEY [shift] [ctrl] [alt]", "a name such as pageup, a letter or a number", nullptr, PressKey },
    { "typed", "w", "", "", nullptr, Typed },
    { "type", "+", "type TEXT", "the keys of a text", ExpandType, nullptr },
    { "enter", "", "enter", "the key Enter", ExpandEnter, nullptr },
    { "esc", "", "esc", "the key Escape", ExpandEscape, nullptr },
    { "push", "g", "push GADGET", "presses a button", nullptr, Push },
    { "set", "gf", "set GADGET VALUE", "gives a gadget a value, as the user does", nullptr, SetValue },
    { "text", "g*", "text GADGET TEXT", "gives a field a text, as the user does", nullptr, SetText },
    { "menu", "i", "menu ID", "chooses a row of the menu bar", nullptr, ChooseMenu },
    { "command", "i", "command ID", "executes a registered command", nullptr, RunCommand },
    { "answer", "*", "answer [TEXT]", "answers the next menu or box with a number or a text; nothing cancels", nullptr, Answer },
    { "advance", "i", "advance MS", "lets the clock of timers go on", nullptr, Advance },
    { "refused", "+", "refused VERB ...", "what this verb would do must fail, and nothing may happen", nullptr, Refused },
    { "settle", "", "settle", "until no thread works and nothing waits", nullptr, Settle },
    { "dump", "d", "dump WHAT", "list, tree, history, preview, state, menu, displaylist, gadgets or focus", nullptr, Dump },
    { "shot", "w", "shot FILE", "writes a picture of the window", nullptr, Shot },
    { "file", "+", "file NAME ...", "makes files in the folder of the scenario, or writes them anew", nullptr, MakeFiles },
    { "folder", "+", "folder NAME ...", "makes folders there", nullptr, MakeFolders },
    { "remove", "+", "remove NAME ...", "removes files, or folders with all in them", nullptr, RemoveNames },
    { "rename", "ww", "rename NAME NAME", "renames a file or a folder there", nullptr, Rename },
    { "say", "*", "say TEXT", "writes a line of the output", nullptr, Say },
};

const ScriptVerb* FindAnyVerb(std::string_view name)
{
    const auto found = std::find_if(std::begin(verbs), std::end(verbs), [&](const ScriptVerb& verb) { return verb.name == name; });
    return found == std::end(verbs) ? nullptr : found;
}

} // namespace

const ScriptVerb* FindVerb(std::string_view name)
{
    const ScriptVerb* verb = FindAnyVerb(name);
    return verb && !verb->usage.empty() ? verb : nullptr;
}

void RunLine(ScriptState& state, const ScriptLine& line)
{
    ScriptRun run(state, line);
    FindAnyVerb(line.words[0])->run(run);
}

bool CanDump(std::string_view what)
{
    return FindDump(what) != nullptr;
}

std::string ScriptHelp()
{
    constexpr size_t column = 44;
    std::string text;
    for (const ScriptVerb& verb : verbs) {
        if (verb.usage.empty())
            continue;
        const bool isLong = verb.usage.size() + 2 > column;
        text += std::string(verb.usage) + (isLong ? "\n" + std::string(column, ' ') : std::string(column - verb.usage.size(), ' '))
            + std::string(verb.help) + "\n";
    }
    return text;
}

} // namespace vx3::gui
