// The host's services without a screen, as one table.
//
// The functions of the table carry no context, so what they work on belongs to the
// process: at most one CoreHost lives at a time. Made, used and ended on the main
// thread. A host program makes one, loads modules (moduleloader.h) and ends them
// before it lets the CoreHost go.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "vx3/host.h"

namespace vx3::core {

// Paths are native bytes. An empty one means that the host has no such place.
struct HostSettings {
    std::string preferencesFolder;        // host folder 1
    std::string applicationLibraryFolder; // host folder 3
    std::string userLibraryFolder;        // host folder 4
    std::string configFolder;             // where the preference container is kept
    std::string startupFolder;
    std::string temporaryFolder;
    std::string homeFolder;
    std::string desktopFolder;
    std::string language = "us"; // code of the resource texts
    int32_t runMode = VX3_RUN_COMMAND_LINE;
    bool moduleExcluded = false;
    bool restricted = false;
    bool librariesFixed = false;
    bool deleteIntoTrash = false;
    bool syncFiles = true;                                  // closing a written file, `sync` and renaming wait for the disk
    std::function<void(const std::string& utf8)> onConsole; // none: a line to stderr. Any thread
    std::function<void(const std::string& utf8)> onText;    // message box; none: as onConsole
};

// Settings of the user who runs the program: XDG folders, language of the locale.
HostSettings UserSettings();

// The same with every host folder below one folder.
HostSettings SettingsBelow(const std::string& profileFolder);

// What modules hold of the host at this moment; all zero after a module has ended well.
struct LiveObjects {
    int64_t memoryBlocks = 0;
    int64_t memoryBytes = 0;
    int64_t texts = 0; // storage blocks of texts, paths, containers: an empty value has none
    int64_t paths = 0;
    int64_t containers = 0;
    int64_t files = 0;
    int64_t walks = 0;
    int64_t watches = 0;
    int64_t bitmaps = 0;
    int64_t threads = 0;
    int64_t semaphores = 0;
    int64_t resources = 0;
    int64_t compressors = 0;
};

class CoreHost
{
public:
    explicit CoreHost(HostSettings settings);
    ~CoreHost(); // stores the preferences, takes out what is still registered
    CoreHost(const CoreHost&) = delete;
    CoreHost& operator=(const CoreHost&) = delete;

    const VX3Host* Table() const;
    const HostSettings& Settings() const;
    LiveObjects CountLiveObjects() const;
    std::string MemoryReport() const; // a line for each file and line that holds blocks; empty if none does
    bool StorePreferences();          // false if the file could not be written; the old one is kept then

    // Tells on the main thread what has come together: queued core messages (message.h),
    // volumes (volumewatch.h) and watched folders, which tell their modules. A main loop
    // calls it when it is woken (SetWakeUp), when the descriptor below can be read, and
    // from a timer of a second or so.
    void DeliverMessages();
    int WaitDescriptor() const; // can be read when watched folders have changed; -1 where there is none

private:
    struct State;
    std::unique_ptr<State> state;
};

// DeliverMessages of the host that lives, for what stands on it and does not have it.
void DeliverWaiting();

} // namespace vx3::core
