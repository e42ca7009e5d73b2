// Scripts: what a user would do, as lines of text, played in a host with or without a
// screen. The same script gives the same dumps in both.
//
//     open [PATH|URL]                    goto PATH|URL                 close
//     window N                           the N-th open window is the one that is meant from here on
//     click|dclick|rclick GADGET X Y [quals]        quals: any of shift ctrl alt
//     press|move|release GADGET X Y [quals] [left|right|middle|back|forward]
//     drag GADGET X Y to GADGET X Y [quals] [no-drop]
//     wheel GADGET X Y NOTCHES [quals]   drag-splitter GADGET W1 W2 …
//     key CODE|NAME [quals]              type TEXT      enter      esc
//     push GADGET    set GADGET VALUE    text GADGET TEXT     menu ID     command ID
//     answer N|TEXT                      of the next menu or box, queued before it opens
//     size W H                           area GADGET W H              of the inside; of one gadget
//     advance MS                         the clock of timers moves
//     settle                             until no thread works and nothing waits
//     dump list|tree|history|menu|preview|displaylist|gadgets|focus|state
//     shot FILE                          a picture of the window
//     file|folder NAME…   remove NAME…   rename A B        below the folder of the scenario
//     say TEXT                           echoes into the output
//
// `#` begins a comment. A place X Y may also be written in percent of the gadget.
// A verb may stop in the middle of something nested: then the next lines run inside it.
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
};

// What a script asks of the program around it.
struct ScriptProgram {
    std::function<bool(const std::string& place)> open; // a new window; empty: the usual place
    std::function<bool(const std::string& place)> goTo; // in the window in front
    std::function<bool(int32_t id)> command;
    std::function<std::string(const std::string& what)> dump; // list, history, tree, preview, state of the browser's window
    std::string folder;                                       // of the scenario, for file, folder, remove, rename
};

class Script
{
public:
    Script(Desk& ownDesk, Driver& ownDriver, ScriptProgram ownProgram);

    // False, with a line that says where and what, if it cannot be understood.
    bool Parse(const std::string& text, std::string& error);
    // Runs the next line, if there is one. Nested operations of a host call it to go on.
    bool Step();
    bool IsDone() const { return lines.empty(); }
    bool HasFailed() const { return !failure.empty(); }
    const std::string& Failure() const { return failure; } // with the number of its line
    void SetOutput(std::function<void(const std::string& line)> listener) { output = std::move(listener); }

private:
    struct Line {
        int number = 0;
        std::vector<std::string> words;
    };
    void Run(const Line& line);

    Desk& desk;
    Driver& driver;
    ScriptProgram program;
    std::deque<Line> lines;
    std::string failure;
    std::function<void(const std::string&)> output;
    size_t window = 0;
};

} // namespace vx3::gui
