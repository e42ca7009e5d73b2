// One loaded module and its life through the entry function.
#pragma once

#include <string>

#include "corehost.h"
#include "volumewatch.h"
#include "vx3/entry.h"

namespace vx3::core {

// Loads a shared library, walks it through the order of a life, and unloads it.
// Main thread only. `table` must live as long as this object. What the module registers
// has this object as its Registrant.
class ModuleLoader
{
public:
    ModuleLoader() = default;
    ~ModuleLoader(); // as End and Unload

    bool Load(const std::string& binary); // false: see Error()
    // Action 1, message 1, action 2, message 1001084. False if one is refused.
    bool Begin(const VX3Host* table);
    // Message 1000, if Begin went well. A host of several modules begins them all first,
    // since it says that all of them are up.
    void AllLoaded();
    bool Start(const VX3Host* table);      // both, for a host of one module
    void Tell(const VolumeChange& change); // message 1001190, if started
    void End();                            // message 200000272 and action 3, if started
    void Unload();                         // dlclose

    int32_t Call(int32_t action, void* arg1 = nullptr, void* arg2 = nullptr, void* arg3 = nullptr);
    int32_t Send(intptr_t message, void* data = nullptr);
    const std::string& Error() const { return error; }
    const std::string& Binary() const { return path; } // beside which the module's resources lie

private:
    void* library = nullptr;
    VX3EntryFunction entry = nullptr;
    std::string path;
    std::string error;
    bool loaded = false;  // action 1 was called and not ended
    bool started = false; // action 2 gave 1
};

} // namespace vx3::core
