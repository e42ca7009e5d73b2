// The table of mounts, read again only when it has changed.
#pragma once

#include <mutex>

#include "mounttable.h"

namespace vx3::core {

// Any thread may ask. One cheap call of the system a question as long as nothing is
// mounted or taken away.
class MountWatch
{
public:
    bool AnswersAtOnce(const std::string& path); // as the function of this name; no where the table cannot be read

private:
    bool HasChanged();

    std::mutex lock;
    Descriptor file;           // under lock, as the rest
    std::vector<Mount> mounts; // empty: not read yet
};

} // namespace vx3::core
