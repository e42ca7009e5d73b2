#include "gui/browserscript.h"

#include <cstddef>
#include <string_view>

#include "core/registry.h"
#include "core/values.h"

namespace vx3::gui {

namespace {

constexpr int32_t windowInFront = -1;
constexpr int32_t windowCount = 16;

// The tools for scripts came last; a browser that was made before them has none.
const VX3ToolFunctions* ScriptTools(const VX3Browser& browser)
{
    constexpr size_t needed = offsetof(VX3ToolFunctions, isWorking) + sizeof(VX3ToolFunctions::isWorking);
    const bool hasThem = browser.tools && browser.tools->size >= static_cast<int64_t>(needed);
    return hasThem && browser.tools->openWindow ? browser.tools : nullptr;
}

bool ExecuteCommand(int32_t id)
{
    const core::RegisteredCommand* command = core::FindCommand(id);
    return command && (command->State() & VX3_COMMAND_ENABLED) && command->Execute();
}

// A name that is no address is a place in the folder of the scenario.
std::string PlaceOf(const std::string& place, const std::string& folder)
{
    const bool isAddress = place.empty() || place[0] == '/' || place.find(":/") != std::string::npos;
    if (isAddress)
        return place;
    return place == "." ? folder : folder + "/" + place;
}

std::string WithoutFolder(std::string text, const std::string& folder)
{
    constexpr std::string_view shown = "/FOLDER";
    for (size_t at = text.find(folder); !folder.empty() && at != text.npos; at = text.find(folder, at + shown.size()))
        text.replace(at, folder.size(), shown);
    return text;
}

} // namespace

ScriptProgram ProgramOf(const VX3Browser& browser, std::string folder)
{
    ScriptProgram program;
    program.folder = folder;
    program.command = ExecuteCommand;
    const VX3ToolFunctions* tools = ScriptTools(browser);
    if (!tools)
        return program;
    program.open = [tools, folder](const std::string& place) { return tools->openWindow(core::Text(PlaceOf(place, folder)).Get()) != 0; };
    program.goTo = [tools, folder](const std::string& place) {
        return tools->goTo(windowInFront, core::Text(PlaceOf(place, folder)).Get()) != 0;
    };
    program.dump = [tools, folder](const std::string& what) {
        core::Text text;
        tools->describeWindow(windowInFront, what.c_str(), text.Get());
        return WithoutFolder(text.Utf8(), folder);
    };
    return program;
}

bool IsBrowserWorking(const VX3Browser& browser)
{
    const VX3ToolFunctions* tools = ScriptTools(browser);
    for (int32_t window = 0; tools && window < windowCount; ++window)
        if (tools->isWorking(window))
            return true;
    return false;
}

} // namespace vx3::gui
