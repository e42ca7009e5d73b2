// Volumes that come and go while a host runs.
//
// The host is asked for nothing but to deliver (CoreHost::DeliverMessages): it does so when
// something wakes it, and from a timer, since nothing wakes it for a volume. A look costs one
// short call of the system as long as the table of mounts stays as it is. Main thread.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "mounttable.h"

namespace vx3::core {

struct VolumeChange {
    std::string path; // native bytes
    bool isRemoved = false;
};

// Who hears of volumes: a host hands each change on to its modules (ModuleLoader::Tell). Told
// is what changes from now on. An empty function takes the listener away. Throws if the
// table of mounts cannot be read.
void SetVolumeListener(std::function<void(const VolumeChange&)> listener);

void DeliverVolumeChanges();

// What went, the innermost first, then what came. A volume that stands where another one
// was has come.
std::vector<VolumeChange> CompareMounts(const std::vector<Mount>& before, const std::vector<Mount>& now);

} // namespace vx3::core
