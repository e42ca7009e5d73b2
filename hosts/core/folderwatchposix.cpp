// The kernel tells of changes through one queue. It numbers folders and not requests, so
// that several watches on one folder share a number.
#include <algorithm>
#include <cerrno>
#include <new>
#include <unordered_map>
#include <vector>

#include <sys/inotify.h>

#include "descriptor.h"
#include "folderwatch.h"
#include "localpath.h"

namespace vx3::core {

namespace {

// A file that is written is told of when it is closed, and not at each block. The kernel
// takes a date of writing that changes alone for such a block.
constexpr uint32_t toldChanges = IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO | IN_CLOSE_WRITE | IN_ATTRIB | IN_DELETE_SELF
    | IN_MOVE_SELF | IN_ONLYDIR | IN_DONT_FOLLOW | IN_EXCL_UNLINK;

struct KernelWatches {
    Descriptor queue;
    std::unordered_map<int, std::vector<VX3FolderWatch*>> folders; // by the kernel's number
};

KernelWatches& TheKernel()
{
    static KernelWatches kernel;
    return kernel;
}

bool OpenQueue()
{
    KernelWatches& kernel = TheKernel();
    if (!kernel.queue.IsOpen())
        kernel.queue = Descriptor(inotify_init1(IN_NONBLOCK | IN_CLOEXEC));
    return kernel.queue.IsOpen();
}

void Mark(const std::vector<VX3FolderWatch*>& watches)
{
    for (VX3FolderWatch* watch : watches)
        watch->hasChanged = true;
}

void Heed(const struct inotify_event& event)
{
    auto& folders = TheKernel().folders;
    if (event.mask & IN_Q_OVERFLOW) { // something was lost, and nobody knows where
        for (const auto& [number, watches] : folders)
            Mark(watches);
        return;
    }
    auto folder = folders.find(event.wd);
    if (folder == folders.end())
        return; // given up since
    Mark(folder->second);
    if (event.mask & IN_IGNORED) // the folder is gone, and its number with it
        folders.erase(folder);
}

// The next changes of the queue; false if there are none.
bool ReadSome()
{
    constexpr size_t bufferSize = 16 * 1024;
    alignas(struct inotify_event) char buffer[bufferSize];
    ssize_t got;
    do
        got = read(TheKernel().queue.Get(), buffer, sizeof(buffer));
    while (got < 0 && errno == EINTR);
    for (ssize_t at = 0; at < got;) {
        const auto& event = *reinterpret_cast<const struct inotify_event*>(buffer + at);
        at += static_cast<ssize_t>(sizeof(event) + event.len);
        Heed(event);
    }
    return got > 0;
}

} // namespace

bool WatchFolder(const std::string& folder, VX3FolderWatch& watch)
{
    const std::string place = FindLocalPath(folder);
    if (place.empty() || !OpenQueue())
        return false;
    auto& [queue, folders] = TheKernel();
    const int number = inotify_add_watch(queue.Get(), place.c_str(), toldChanges);
    if (number < 0)
        return false;
    const bool isNew = !folders.contains(number);
    try {
        folders[number].push_back(&watch);
    } catch (const std::bad_alloc&) {
        if (isNew) {
            folders.erase(number);
            inotify_rm_watch(queue.Get(), number);
        }
        throw;
    }
    return true;
}

void GiveUpFolder(const VX3FolderWatch& watch)
{
    auto& [queue, folders] = TheKernel();
    for (auto folder = folders.begin(); folder != folders.end(); ++folder) {
        if (std::erase(folder->second, &watch) == 0)
            continue;
        if (folder->second.empty()) {
            inotify_rm_watch(queue.Get(), folder->first);
            folders.erase(folder);
        }
        return;
    }
}

void ReadFolderChanges()
{
    constexpr int mostReads = 64; // a storm of changes must not keep the main thread here
    for (int i = 0; TheKernel().queue.IsOpen() && i < mostReads && ReadSome(); ++i) { }
}

void GiveUpAllFolders()
{
    TheKernel() = {};
}

int FolderChangeDescriptor()
{
    return OpenQueue() ? TheKernel().queue.Get() : -1;
}

} // namespace vx3::core
