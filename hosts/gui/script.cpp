#include "gui/script.h"

#include "gui/scriptverbs.h"

namespace vx3::gui {

bool Script::Parse(const std::string& text, std::string& error)
{
    try {
        state.lines = ParseScript(text);
        state.failure.clear();
        state.line = 0;
        return true;
    } catch (const ScriptError& failed) {
        error = failed.message;
        return false;
    }
}

// The line is taken out before it runs, since the next ones may run inside it.
bool Script::Step()
{
    if (state.lines.empty())
        return false;
    const ScriptLine line = std::move(state.lines.front());
    state.lines.pop_front();
    state.line = line.number;
    try {
        RunLine(state, line);
    } catch (const ScriptError& failed) {
        if (state.failure.empty())
            state.failure = "line " + std::to_string(line.number) + ": " + failed.message;
        state.lines.clear();
    }
    return true;
}

} // namespace vx3::gui
