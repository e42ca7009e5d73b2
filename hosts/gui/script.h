// Scripts: what a user would do, as lines of text, played in a host with or without a
// screen. The same script gives the same dumps in both.
//
//     open pictures
//     click 10122 20 20 ctrl             # left, in the area 10122
//     key down shift
//     answer 900021
//     rclick 10122 50% 50%
//     settle
//     dump list
//
// The verbs stand in the table of scriptverbs.cpp, from which ScriptHelp makes a text. A line is
// words between blanks; one with blanks stands in double quotes, in which \", \\ and \n are
// escapes. A word that begins with `#` begins a comment.
//
// Points are in the contents of a gadget, as its module counts them, or in percent of what is
// seen of it. A gesture is run as what it is made of, a press and a release: when a press
// begins something nested, the lines that follow run inside it.
#pragma once

#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "gui/desk.h"

namespace vx3::gui {

// How a host lets a user act. Every call is one gesture; the host carries it out through
// its own event queue, if it has one, before the call returns, or enters something nested.
class Driver
{
public:
    virtual ~Driver() = default;

    virtual void Mouse(Gadget& gadget, Point at, int32_t channel, uint32_t qualifiers, bool isPressed, bool isDouble) = 0;
    virtual void MoveMouse(Gadget& gadget, Point at, uint32_t qualifiers) = 0;
    virtual void Wheel(Gadget& gadget, Point at, int32_t value, uint32_t qualifiers) = 0;
    virtual void Key(Dialog& window, int32_t code, uint32_t qualifiers, const std::u16string& text) = 0;
    virtual void Push(Gadget& gadget) = 0; // a button, by mouse
    virtual void SetValue(Gadget& gadget, double value) = 0;
    virtual void SetText(Gadget& gadget, const std::u16string& text) = 0;
    virtual void ChooseMenu(Dialog& window, int32_t id) = 0;
    virtual void Close(Dialog& window) = 0;
    virtual void Answer(const std::string& answer) = 0; // queues it
    virtual void Advance(int milliseconds) = 0;
    virtual void Settle() = 0;
    virtual bool Shot(Dialog& window, const std::string& file) = 0;
    virtual std::string DumpDisplayList(Dialog& window) = 0; // empty: this host keeps none
    virtual std::string DumpMenu() = 0;                      // the last popup menu, a row a line
    // True if the last gesture was one that a user could not make. It is no failure then.
    virtual bool TakeRefusal() { return false; }
};

// What a script asks of the program around it.
struct ScriptProgram {
    std::function<bool(const std::string& place)> open; // a new window; empty: the usual place
    std::function<bool(const std::string& place)> goTo; // in the window in front
    std::function<bool(int32_t id)> command;
    std::function<std::string(const std::string& what)> dump; // list, history, tree, preview, state of the browser's window
    std::string folder;                                       // of the scenario, for file, folder, remove, rename
};

// A line that was understood: its verb and the words behind it.
struct ScriptLine {
    int number = 0;
    std::vector<std::string> words;
};

struct ScriptState {
    Desk& desk;
    Driver& driver;
    ScriptProgram program;
    std::deque<ScriptLine> lines; // that are still to run
    int line = 0;                 // the number of the last one that began
    std::string failure;
    std::function<void(const std::string&)> output;
    VX3Dialog window = 0; // the one that is meant; the last that was opened if it is none
};

class Script
{
public:
    Script(Desk& desk, Driver& driver, ScriptProgram program)
        : state{ desk, driver, std::move(program), {}, 0, {}, {}, 0 }
    {
    }

    // False, with a line that says where and what, if it cannot be understood.
    bool Parse(const std::string& text, std::string& error);
    // Runs the next line, if there is one. Nested operations of a host call it to go on. A line
    // that fails is the last one.
    bool Step();
    bool IsDone() const { return state.lines.empty(); }
    bool HasFailed() const { return !state.failure.empty(); }
    const std::string& Failure() const { return state.failure; } // with the number of its line
    int Line() const { return state.line; }                      // of the gesture that runs or ran last; 0: none
    void SetOutput(std::function<void(const std::string& line)> listener) { state.output = std::move(listener); }

private:
    ScriptState state;
};

// What can be written in a script, a verb a line.
std::string ScriptHelp();

} // namespace vx3::gui
