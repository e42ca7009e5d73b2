// What the sections share of the one CoreHost of the process.
#pragma once

#include <string>
#include <thread>

#include "corehost.h"
#include "preferences.h"

namespace vx3::core {

// Constant while a host lives, so threads read it without a lock.
struct HostState {
    HostSettings settings;
    std::thread::id mainThread;
    PreferenceStore preferences; // main thread
};

HostState* CurrentHost(); // none outside the life of a CoreHost

// The settings of the host, or the defaults if none lives.
const HostSettings& CurrentSettings();

// One whole line to the console of the host. Any thread.
void WriteConsoleLine(const std::string& utf8);

// The message box of the host, or its console. Any thread.
void ShowHostText(const std::string& utf8);

} // namespace vx3::core
