// The verbs of scripts as one table.
#pragma once

#include "gui/scriptparse.h"

namespace vx3::gui {

class ScriptRun;

struct ScriptVerb {
    std::string_view name;
    std::string_view pattern; // of its arguments: see CheckArguments
    std::string_view usage;   // empty: made of another verb, and not to be written
    std::string_view help;
    std::vector<ScriptLine> (*expand)(const ScriptLine& line); // into lines that run one by one; none: `run` is called
    void (*run)(ScriptRun& run);
};

const ScriptVerb* FindVerb(std::string_view name); // none for one that does not exist or is not to be written
void RunLine(ScriptState& state, const ScriptLine& line);

bool CanDump(std::string_view what);

} // namespace vx3::gui
