// The host of a test: the core host with everything that a test wants round it.
//
// From below: core host, scripted clock, file system in memory (if asked for), write
// journal, faults, checks. A test hands out Table(), and at its end expects
// ExpectClean() to be empty. One lives at a time, on the main thread.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "checkedtable.h"
#include "core/corehost.h"
#include "faultplan.h"
#include "memoryfilesystem.h"
#include "scriptedclock.h"
#include "testmodule.h"
#include "writejournal.h"

namespace vx3::testing {

// Where the files of a test are.
enum class Files {
    OnDisk,  // below a fresh folder, which is removed at the end
    InMemory // in a MemoryFileSystem; the host's folders are below `/profile` there
};

// When the table may be called.
enum class Calling {
    Always,   // from the start, for tests that use parts of a module directly
    InModules // only while a TestModule lives through its actions
};

struct TestHostOptions {
    Files files = Files::OnDisk;
    Calling calling = Calling::Always;
    Checks checks = Checks::Full;
    bool scriptsClock = true;
    std::function<void(core::HostSettings&)> adjust = {}; // changes the settings of the core host
};

class TestHost
{
public:
    explicit TestHost(TestHostOptions wanted = {});
    ~TestHost(); // ends the window and removes the folder
    TestHost(const TestHost&) = delete;
    TestHost& operator=(const TestHost&) = delete;

    const VX3Host* Table() const { return checked->Table(); }
    core::CoreHost& Core() { return *core; }
    CheckedTable& Checked() { return *checked; }
    FaultPlan& Faults() { return *faults; }
    WriteJournal& Journal() { return *journal; }
    ScriptedClock& Clock() { return *clock; }          // only if scripted
    MemoryFileSystem& FileSystem() { return *memory; } // only with Files::InMemory
    // The table without checks and faults, for what a test does itself.
    const VX3Host* PlainTable() const { return plain; }

    const std::string& Folder() const { return folder; } // of the disk, without a slash at the end

    std::vector<std::string> CollectConsole(); // lines written since the last time
    // Every violation, every block by file and line and every object that was not given
    // back, a sentence a line; empty if all is well. Violations are forgotten then.
    std::string ExpectClean();

private:
    core::HostSettings MakeSettings(const TestHostOptions& options);
    void Stack(const TestHostOptions& options);

    std::string folder;
    std::unique_ptr<core::CoreHost> core;
    std::unique_ptr<MemoryFileSystem> memory;
    std::unique_ptr<ScriptedClock> clock;
    std::unique_ptr<WriteJournal> journal;
    std::unique_ptr<FaultPlan> faults;
    std::unique_ptr<CheckedTable> checked;
    const VX3Host* plain = nullptr;
    core::LiveObjects before;
};

// A new empty folder for temporary files; empty if there is none to be had.
std::string MakeTemporaryFolder();

} // namespace vx3::testing
