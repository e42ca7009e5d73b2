#include "headless/headlesshost.h"

#include <utility>

#include "core/hoststate.h"
#include "core/values.h"
#include "headless/hosticons.h"

namespace vx3::headless {

HeadlessGui::HeadlessGui()
    : desk(toolkit)
    , driver(desk, toolkit)
{
    toolkit.SetDesk(&desk);
    RegisterHostIcons();
}

HeadlessGui::~HeadlessGui()
{
    toolkit.SetStep({});
}

const VX3Host* HeadlessGui::Over(const VX3Host* base)
{
    table = *base;
    table.gui = gui::Desk::Services();
    return &table;
}

// The state of a program ends with the pointer's shape, if that is not the usual one.
void HeadlessGui::AddCursor(gui::ScriptProgram& program)
{
    if (!program.dump)
        return;
    program.dump = [this, dump = std::move(program.dump)](const std::string& what) {
        return dump(what) + (what == "state" ? toolkit.DescribeCursor() : std::string());
    };
}

std::string HeadlessGui::RunScript(const std::string& text, gui::ScriptProgram program, std::function<void(const std::string& line)> output)
{
    ScriptedUser& user = toolkit.User();
    user = {};
    toolkit.SetFolder(program.folder);
    AddCursor(program);
    gui::Script script(desk, driver, std::move(program));
    std::string error;
    if (!script.Parse(text, error))
        return error;
    script.SetOutput(std::move(output));
    const auto step = [this, &user, &script] {
        if (isStopped && isStopped())
            user.Fail("interrupted");
        return user.Failures().empty() && script.Step();
    };
    toolkit.SetStep(step);
    while (step())
        toolkit.Turn();
    toolkit.SetStep({});
    if (script.HasFailed())
        return script.Failure();
    if (user.Failures().empty() && user.HasAnswers())
        user.Fail("an answer is left that nobody asked for");
    return user.Failures().empty() ? std::string() : "line " + std::to_string(script.Line()) + ": " + user.Failures().front();
}

HeadlessHost::HeadlessHost(core::HostSettings settings)
    : core(WithBoxes(std::move(settings)))
    , table(gui.Over(core.Table()))
{
}

core::HostSettings HeadlessHost::WithBoxes(core::HostSettings settings)
{
    settings.runMode = runModeWithWindows;
    settings.onText = [this](const std::string& utf8) {
        if (core.Table()->thread->isMainThread())
            gui.GetToolkit().ShowBox(VX3_BOX_INFORMATION, core::Text(utf8).Units());
        else
            core::WriteConsoleLine(utf8);
    };
    return settings;
}

} // namespace vx3::headless
