#include "mountwatch.h"

#include <poll.h>

namespace vx3::core {

bool MountWatch::AnswersAtOnce(const std::string& path)
{
    std::lock_guard guard(lock);
    if (!file.IsOpen())
        file = OpenMountFile();
    if (!file.IsOpen())
        return false;
    // Asked for before the reading, so that a change meanwhile is seen the next time.
    if (HasChanged() || mounts.empty()) {
        mounts.clear();
        mounts = ReadMounts(ReadMountFile(file));
    }
    return core::AnswersAtOnce(mounts, path);
}

// The kernel tells each reader of the table once of a change.
bool MountWatch::HasChanged()
{
    struct pollfd question = { file.Get(), POLLPRI, 0 };
    return poll(&question, 1, 0) != 0;
}

} // namespace vx3::core
