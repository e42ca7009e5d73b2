// One line of a script at work: its words as what they name. Everything throws ScriptError
// if there is no such thing.
#pragma once

#include "gui/scriptparse.h"

namespace vx3::gui {

class ScriptRun
{
public:
    ScriptRun(ScriptState& ownState, const ScriptLine& ownLine)
        : state(ownState)
        , line(ownLine)
    {
    }

    const std::string& Word(size_t index) const { return line.words[index]; } // 0 is the verb
    size_t Count() const { return line.words.size(); }
    std::string Rest(size_t from) const; // all words from there, with a blank between them

    Dialog& Window() const;
    Gadget& GadgetAt(size_t index) const;
    Point PointIn(const Gadget& gadget, size_t index) const; // of two words
    uint32_t Qualifiers(size_t from) const;
    bool HasWord(size_t from, std::string_view word) const;

    void Tell(const std::string& text) const; // to the output, line by line

    ScriptState& state;

private:
    const ScriptLine& line;
};

// What is seen of a gadget in its window's present state, in its own coordinates. The scroll groups
// around it cut it; a tree is seen without its bars.
Place SeenPartOf(const Gadget& gadget);
// The group that an area is seen through, or itself.
Gadget& SeenThrough(Gadget& gadget);

} // namespace vx3::gui
