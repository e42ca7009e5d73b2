#include "testhost.h"

#include <filesystem>
#include <mutex>

#include <stdlib.h>

namespace vx3::testing {

namespace {

// The host writes its lines here from any thread, also while a TestHost ends.
struct ConsoleLines {
    std::mutex lock;
    std::vector<std::string> lines; // under lock
};

ConsoleLines& TheConsole()
{
    static ConsoleLines console;
    return console;
}

void KeepLine(const std::string& line)
{
    std::lock_guard guard(TheConsole().lock);
    TheConsole().lines.push_back(line);
}

std::vector<std::string> TakeLines()
{
    std::lock_guard guard(TheConsole().lock);
    std::vector<std::string> lines;
    lines.swap(TheConsole().lines);
    return lines;
}

// The folders that modules ask for, in the tree of memory; what the host itself keeps
// stays on the disk.
void MoveFoldersIntoMemory(core::HostSettings& settings)
{
    settings.preferencesFolder = "/profile/prefs";
    settings.applicationLibraryFolder = "/profile/application";
    settings.userLibraryFolder = "/profile/library";
    settings.startupFolder = "/profile/startup";
    settings.temporaryFolder = "/profile/temporary";
    settings.homeFolder = "/profile/home";
    settings.desktopFolder = "/profile/home/desktop";
}

void AddFolders(MemoryFileSystem& memory, const core::HostSettings& settings)
{
    for (const std::string* path : { &settings.preferencesFolder, &settings.applicationLibraryFolder, &settings.userLibraryFolder,
                                     &settings.startupFolder, &settings.temporaryFolder, &settings.homeFolder, &settings.desktopFolder }) {
        if (!path->empty())
            memory.AddFolder(*path);
    }
}

// The kinds of live objects that have no place in a source file to be told.
std::string DescribeGrowth(const core::LiveObjects& before, const core::LiveObjects& now)
{
    struct Row {
        const char* name;
        int64_t core::LiveObjects::*count;
    };
    static constexpr Row counted[] = { { "texts", &core::LiveObjects::texts },
                                       { "paths", &core::LiveObjects::paths },
                                       { "containers", &core::LiveObjects::containers } };
    std::string report;
    for (const Row& row : counted) {
        const int64_t grown = now.*row.count - before.*row.count;
        if (grown > 0)
            report += std::to_string(grown) + " " + row.name + " not destructed\n";
        if (grown < 0)
            report += std::to_string(-grown) + " " + row.name + " destructed too often\n";
    }
    return report;
}

} // namespace

std::string MakeTemporaryFolder()
{
    std::string pattern = (std::filesystem::temp_directory_path() / "vx3testXXXXXX").string();
    return mkdtemp(pattern.data()) ? pattern : std::string();
}

TestHost::TestHost(TestHostOptions wanted)
    : folder(MakeTemporaryFolder())
{
    TakeLines();
    core = std::make_unique<core::CoreHost>(MakeSettings(wanted));
    Stack(wanted);
    if (memory)
        AddFolders(*memory, core->Settings());
    before = core->CountLiveObjects();
    if (wanted.calling == Calling::Always)
        checked->OpenWindow();
}

core::HostSettings TestHost::MakeSettings(const TestHostOptions& options)
{
    core::HostSettings settings = core::SettingsBelow(folder);
    settings.onConsole = KeepLine;
    settings.onText = KeepLine;
    settings.syncFiles = false; // a test is not stopped by a power cut
    if (options.files == Files::InMemory)
        MoveFoldersIntoMemory(settings);
    if (options.adjust)
        options.adjust(settings);
    return settings;
}

void TestHost::Stack(const TestHostOptions& options)
{
    const VX3Host* top = core->Table();
    if (options.scriptsClock) { // below the files, which are dated by it
        clock = std::make_unique<ScriptedClock>(top);
        top = clock->Table();
    }
    if (options.files == Files::InMemory) {
        memory = std::make_unique<MemoryFileSystem>(top);
        top = memory->Table();
    }
    plain = top;
    journal = std::make_unique<WriteJournal>(top);
    faults = std::make_unique<FaultPlan>(journal->Table());
    checked = std::make_unique<CheckedTable>(faults->Table(), options.checks);
}

TestHost::~TestHost()
{
    checked.reset();
    faults.reset();
    journal.reset();
    memory.reset();
    clock.reset();
    core.reset();
    std::error_code ignored;
    if (!folder.empty())
        std::filesystem::remove_all(folder, ignored);
}

std::vector<std::string> TestHost::CollectConsole()
{
    return TakeLines();
}

std::string TestHost::ExpectClean()
{
    std::string report;
    for (const std::string& violation : checked->TakeViolations())
        report += violation + "\n";
    report += checked->LeakReport();
    return report + DescribeGrowth(before, core->CountLiveObjects());
}

} // namespace vx3::testing
