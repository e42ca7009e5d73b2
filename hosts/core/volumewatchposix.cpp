#include <algorithm>
#include <deque>
#include <exception>
#include <utility>

#include "volumes.h"
#include "volumewatch.h"

namespace vx3::core {

namespace {

struct VolumeWatch {
    std::function<void(const VolumeChange&)> listener;
    Descriptor file;                 // the table of mounts
    std::vector<Mount> mounts;       // as it was read last
    bool isStale = false;            // a change was seen and could not be read
    std::deque<VolumeChange> untold; // a listener may deliver again, and order counts
};

VolumeWatch watch;

const Mount* MountAt(const std::vector<Mount>& mounts, const std::string& point)
{
    auto found = std::find_if(mounts.begin(), mounts.end(), [&](const Mount& mount) { return mount.point == point; });
    return found == mounts.end() ? nullptr : &*found;
}

bool IsSameVolume(const Mount& a, const Mount& b)
{
    return a.device == b.device && a.source == b.source;
}

bool HasChanged()
{
    watch.isStale = watch.isStale || (watch.file.IsOpen() && HaveMountsChanged(watch.file));
    return watch.isStale;
}

std::vector<Mount> ReadNow()
{
    return ReadShownMounts(ReadMountFile(watch.file));
}

// A table that cannot be read now is read at the next look.
void CollectChanges()
try {
    std::vector<Mount> now = ReadNow();
    for (VolumeChange& change : CompareMounts(watch.mounts, now))
        watch.untold.push_back(std::move(change));
    watch.mounts = std::move(now);
    watch.isStale = false;
} catch (const std::exception&) {
}

} // namespace

std::vector<VolumeChange> CompareMounts(const std::vector<Mount>& before, const std::vector<Mount>& now)
{
    std::vector<VolumeChange> changes;
    for (const Mount& mount : before)
        if (!MountAt(now, mount.point))
            changes.push_back({ mount.point, true });
    auto isDeeper = [](const VolumeChange& a, const VolumeChange& b) { return a.path.size() > b.path.size(); };
    std::stable_sort(changes.begin(), changes.end(), isDeeper);
    for (const Mount& mount : now)
        if (const Mount* old = MountAt(before, mount.point); !old || !IsSameVolume(*old, mount))
            changes.push_back({ mount.point, false });
    return changes;
}

void SetVolumeListener(std::function<void(const VolumeChange&)> listener)
{
    watch = {};
    if (!listener)
        return;
    watch.file = OpenMountFile();
    if (watch.file.IsOpen())
        watch.mounts = ReadNow();
    watch.listener = std::move(listener);
}

void DeliverVolumeChanges()
{
    if (HasChanged())
        CollectChanges();
    while (!watch.untold.empty()) {
        const VolumeChange change = watch.untold.front();
        watch.untold.pop_front();
        const auto listener = watch.listener; // a copy: the listener may replace itself
        listener(change);
    }
}

} // namespace vx3::core
