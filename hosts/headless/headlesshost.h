// Windows without a screen over the table of any host, and a whole host with them.
//
// One of them lives at a time, made and ended on the main thread. Modules end before it.
#pragma once

#include <functional>
#include <string>

#include "core/corehost.h"
#include "headless/headlessdriver.h"

namespace vx3::headless {

class HeadlessGui
{
public:
    HeadlessGui();
    ~HeadlessGui(); // closes what is open, without asking
    HeadlessGui(const HeadlessGui&) = delete;
    HeadlessGui& operator=(const HeadlessGui&) = delete;

    // The table of a host with windows added; lives as long as this object.
    const VX3Host* Over(const VX3Host* base);

    gui::Desk& GetDesk() { return desk; }
    HeadlessToolkit& GetToolkit() { return toolkit; }
    HeadlessDriver& GetDriver() { return driver; }

    // Asked before each line of a script; true ends it as interrupted.
    void SetStop(std::function<bool()> function) { isStopped = std::move(function); }
    // Plays a script to its end. Answers an empty text, or what did not go as it says: then the
    // rest of it is left. An answer that nobody asked for is a failure too.
    std::string RunScript(const std::string& text, gui::ScriptProgram program, std::function<void(const std::string& line)> output);

private:
    void AddCursor(gui::ScriptProgram& program);

    VX3Host table = {};
    HeadlessToolkit toolkit;
    gui::Desk desk;
    HeadlessDriver driver;
    std::function<bool()> isStopped;
};

// Run mode of a host with windows.
constexpr int32_t runModeWithWindows = 0;

class HeadlessHost
{
public:
    // The run mode is set here; texts for the user become boxes.
    explicit HeadlessHost(core::HostSettings settings);

    const VX3Host* Table() const { return table; }
    core::CoreHost& Core() { return core; }
    HeadlessGui& Gui() { return gui; }

private:
    core::HostSettings WithBoxes(core::HostSettings settings);

    core::CoreHost core;
    HeadlessGui gui;
    const VX3Host* table;
};

} // namespace vx3::headless
