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
    // As the functions of these names; no where the table cannot be read.
    bool AnswersAtOnce(const std::string& path);
    bool IsOnThisMachine(const std::string& path);

private:
    bool Refresh(); // under lock; false where there is no table

    std::mutex lock;
    Descriptor file;           // under lock, as the rest
    std::vector<Mount> mounts; // empty: not read yet
};

MountWatch& TheMounts(); // the one of this process

} // namespace vx3::core
