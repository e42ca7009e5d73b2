#include "folderwatch.h"

#include <algorithm>
#include <memory>
#include <vector>

#include "livecounts.h"
#include "message.h"

namespace vx3::core {

namespace {

std::vector<VX3FolderWatch*> watches; // in the order of their making
std::vector<VX3FolderWatch*> untold;  // those of `watches` whose turn is still to come; has room for all

// Room is made here, so that nothing can fail when changes are told.
void Keep(VX3FolderWatch* watch)
{
    watches.reserve(watches.size() + 1);
    untold.reserve(watches.capacity());
    watches.push_back(watch);
}

bool Waits(const VX3FolderWatch* watch)
{
    return std::find(untold.begin(), untold.end(), watch) != untold.end();
}

void CollectChanged()
{
    for (VX3FolderWatch* watch : watches)
        if (watch->hasChanged.exchange(false) && !Waits(watch))
            untold.push_back(watch);
}

} // namespace

VX3FolderWatch* MakeWatch(void (*changed)(void* user), void* user)
{
    std::unique_ptr<VX3FolderWatch> watch(new VX3FolderWatch{ changed, user });
    Keep(watch.get());
    liveCounters.watches.Add();
    return watch.release();
}

void FreeWatch(VX3FolderWatch* watch)
{
    if (!watch)
        return;
    std::erase(watches, watch);
    std::erase(untold, watch);
    liveCounters.watches.Subtract();
    delete watch;
}

void MarkChanged(VX3FolderWatch& watch)
{
    watch.hasChanged = true;
    RequestDelivery();
}

void DeliverFolderChanges()
{
    ReadFolderChanges();
    CollectChanged();
    for (size_t left = untold.size(); left > 0 && !untold.empty(); --left) {
        const VX3FolderWatch* watch = untold.front();
        untold.erase(untold.begin());
        watch->changed(watch->user);
    }
}

void DropWatches()
{
    GiveUpAllFolders();
    while (!watches.empty())
        FreeWatch(watches.back());
}

} // namespace vx3::core
