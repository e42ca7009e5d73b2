// The mounted volumes of this machine, and whether one answers.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "mounttable.h"

namespace vx3::core {

struct VolumeFacts {
    std::string path; // native bytes
    std::string label;
    uint32_t attributes = 0; // VX3_VOLUME bits
};

// The mounts that `table`, text in the form of /proc/self/mountinfo, tells of. The root
// is always there and comes first; what is mounted over is not told.
std::vector<VolumeFacts> ReadMountTable(const std::string& table);

// The mounts of it that are to be shown: what VX3_VOLUME_LEAVE_OUT marks is not there.
std::vector<Mount> ReadShownMounts(const std::string& table);

// The mounts of this machine, with labels.
std::vector<VolumeFacts> ListVolumes();

// Asks the file system behind a path and gives up on a server that does not answer
// within a few seconds. May be called from several threads at once.
bool VolumeAnswers(const std::string& path);

} // namespace vx3::core
