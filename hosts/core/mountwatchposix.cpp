#include "mountwatch.h"

namespace vx3::core {

bool MountWatch::AnswersAtOnce(const std::string& path)
{
    std::lock_guard guard(lock);
    return Refresh() && core::AnswersAtOnce(mounts, path);
}

bool MountWatch::IsOnThisMachine(const std::string& path)
{
    std::lock_guard guard(lock);
    return Refresh() && core::IsOnThisMachine(mounts, path);
}

bool MountWatch::Refresh()
{
    if (!file.IsOpen())
        file = OpenMountFile();
    if (!file.IsOpen())
        return false;
    // Asked for before the reading, so that a change meanwhile is seen the next time.
    if (HaveMountsChanged(file) || mounts.empty()) {
        mounts.clear();
        mounts = ReadMounts(ReadMountFile(file));
    }
    return true;
}

MountWatch& TheMounts()
{
    static MountWatch watch;
    return watch;
}

} // namespace vx3::core
