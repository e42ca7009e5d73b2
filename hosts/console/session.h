// The life of the host and the module in one run of the program.
//
// Main thread only. Everything that holds texts, paths, URLs or nodes must be gone
// before the session closes: the services behind them end with it.
#pragma once

#include <memory>
#include <string>

#include "core/corehost.h"
#include "core/moduleloader.h"
#include "headless/headlesshost.h"
#include "options.h"
#include "outcome.h"
#include "vx3/browser.h"

namespace vx3::console {

class Session
{
public:
    Session() = default;
    ~Session(); // as Close
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    // Starts the host with the command's settings, loads the module and finds its table.
    Failure Open(const Command& command);
    // The same with windows that nobody sees, for a user whose home folder is `home`.
    Failure OpenWithWindows(const Command& command, const std::string& home);
    // Ends the module, then the host. Answers what the module still held of the host.
    core::LiveObjects Close();

    core::CoreHost& Core() const { return windowed ? windowed->Core() : *host; }
    const VX3Host& Host() const { return windowed ? *windowed->Table() : *host->Table(); }
    headless::HeadlessGui& Gui() const { return windowed->Gui(); } // only with windows
    const VX3Browser& Browser() const { return *browser; }
    const std::string& ModuleFile() const { return moduleFile; }

private:
    Failure Start();

    std::unique_ptr<core::CoreHost> host; // one of these two
    std::unique_ptr<headless::HeadlessHost> windowed;
    core::ModuleLoader loader;
    const VX3Browser* browser = nullptr;
    std::string moduleFile;
};

// An argument as an absolute path: against the folder in which the user believes to
// be, with `.` and `..` taken out of the text and links left alone.
std::string AbsolutePath(const std::string& argument);

} // namespace vx3::console
