// The section of the file system: paths of the boundary become native bytes here, and
// nothing that fails inside leaves as an exception.
#include <exception>

#include "fileoperations.h"
#include "filestatus.h"
#include "folderwalk.h"
#include "folderwatch.h"
#include "hoststate.h"
#include "livecounts.h"
#include "services.h"
#include "sync.h"
#include "values.h"
#include "volumes.h"

struct VX3FolderWalk {
    std::unique_ptr<vx3::core::FolderWalk> walk;
};

namespace vx3::core {

struct VolumeValues {
    Path path;
    Text name;
    Text label;
    uint32_t attributes = 0;
};

} // namespace vx3::core

struct VX3VolumeWalk {
    std::vector<vx3::core::VolumeValues> volumes;
    size_t next = 0;
};

namespace vx3::core {

namespace {

// What runs here may run out of memory, which the caller hears as a failure.
template <class Body>
auto Guarded(Body body) -> decltype(body())
{
    try {
        return body();
    } catch (const std::exception&) {
        return {};
    }
}

VX3Bool Exists(const VX3Path* path)
{
    return Guarded([&] { return VX3Bool(FileExists(NativeBytes(*path))); });
}

VX3Bool Inspect(const VX3Path* path, VX3FolderEntry* entry)
{
    return Guarded([&] { return VX3Bool(InspectFile(NativeBytes(*path), *entry)); });
}

VX3Bool Date(const VX3Path* path, int32_t kind, VX3FileDate* date)
{
    *date = {};
    return Guarded([&] { return VX3Bool(DateOfFile(NativeBytes(*path), kind, *date)); });
}

VX3Bool CreateFolder(const VX3Path* path)
{
    return Guarded([&] { return VX3Bool(MakeFolder(NativeBytes(*path))); });
}

VX3Bool Rename(const VX3Path* from, const VX3Path* to)
{
    return Guarded([&] {
        const std::string source = NativeBytes(*from);
        const std::string target = NativeBytes(*to);
        if (!RenameWithoutReplacing(source, target))
            return VX3Bool(0);
        SyncFoldersOf(source, target);
        return VX3Bool(1);
    });
}

// Does not wait for the disk: who moves has many files to move, and nothing that depends on the order.
VX3Bool Move(const VX3Path* from, const VX3Path* to)
{
    return Guarded([&] { return VX3Bool(RenameWithoutReplacing(NativeBytes(*from), NativeBytes(*to))); });
}

// Calls the operation and tells the caller whether it was the progress that ended it.
template <class Operation>
VX3Bool RunWithProgress(VX3ProgressFunction function, void* user, VX3Bool* cancelled, Operation operation)
{
    OperationProgress progress(function, user);
    bool isDone = Guarded([&] { return bool(operation(progress)); });
    if (cancelled)
        *cancelled = progress.IsCancelled();
    return isDone;
}

VX3Bool Copy(const VX3Path* from, const VX3Path* to, uint32_t, int64_t, VX3ProgressFunction function, void* user, VX3Bool* cancelled)
{
    return RunWithProgress(function, user, cancelled,
                           [&](OperationProgress& progress) { return CopyTree(NativeBytes(*from), NativeBytes(*to), progress); });
}

VX3Bool Remove(const VX3Path* path, uint32_t bits, int64_t size, VX3ProgressFunction function, void* user, VX3Bool* cancelled)
{
    return RunWithProgress(function, user, cancelled, [&](OperationProgress& progress) {
        std::string native = NativeBytes(*path);
        if (native.empty() || IsMountPoint(native))
            return false;
        bool intoTrash = CurrentSettings().deleteIntoTrash && !(bits & VX3_REMOVE_FOR_GOOD);
        return intoTrash ? MoveToTrash(native, size, progress) : RemoveTree(native, progress);
    });
}

VX3Bool SameVolume(const VX3Path* a, const VX3Path* b)
{
    return Guarded([&] { return VX3Bool(AreOnOneVolume(NativeBytes(*a), NativeBytes(*b))); });
}

VX3Bool ProbeVolume(const VX3Path* path)
{
    return Guarded([&] { return VX3Bool(VolumeAnswers(NativeBytes(*path))); });
}

VX3FolderWalk* StartWalk(const VX3Path* folder, uint32_t options)
{
    return Guarded([&]() -> VX3FolderWalk* {
        auto walk = FolderWalk::Start(NativeBytes(*folder), options);
        if (!walk)
            return nullptr;
        auto* handle = new VX3FolderWalk{ std::move(walk) };
        liveCounters.walks.Add();
        return handle;
    });
}

VX3Bool NextEntry(VX3FolderWalk* walk, VX3FolderEntry* entry)
{
    try {
        return walk->walk->Next(*entry);
    } catch (const std::exception&) {
        walk->walk->Spoil(); // else the caller would take this for the end
        return 0;
    }
}

VX3Bool WalkIsSound(VX3FolderWalk* walk)
{
    return walk->walk->IsSound();
}

void EndWalk(VX3FolderWalk* walk)
{
    if (!walk)
        return;
    delete walk;
    liveCounters.walks.Subtract();
}

bool MakeValues(const VolumeFacts& facts, VolumeValues& values)
{
    values.attributes = facts.attributes;
    return SetNativePath(*values.path.Get(), facts.path) && PathServices()->getText(values.path.Get(), values.name.Get())
        && SetNativeName(*values.label.Get(), facts.label);
}

// All values are made here: a walk that ended early would look like a machine with fewer volumes.
VX3VolumeWalk* StartVolumes()
{
    return Guarded([]() -> VX3VolumeWalk* {
        auto walk = std::make_unique<VX3VolumeWalk>();
        for (const VolumeFacts& facts : ListVolumes())
            if (!MakeValues(facts, walk->volumes.emplace_back()))
                return nullptr;
        liveCounters.walks.Add();
        return walk.release();
    });
}

VX3Bool NextVolume(VX3VolumeWalk* walk, VX3Volume* volume)
{
    if (walk->next >= walk->volumes.size())
        return 0;
    VolumeValues& values = walk->volumes[walk->next++];
    std::swap(volume->path, *values.path.Get()); // what the caller had goes with the walk
    std::swap(volume->name, *values.name.Get());
    std::swap(volume->label, *values.label.Get());
    volume->attributes = values.attributes;
    volume->reserved = 0;
    return 1;
}

void EndVolumes(VX3VolumeWalk* walk)
{
    if (!walk)
        return;
    delete walk;
    liveCounters.walks.Subtract();
}

VX3FolderWatch* Watch(const VX3Path* folder, void (*changed)(void* user), void* user)
{
    return Guarded([&]() -> VX3FolderWatch* {
        std::unique_ptr<VX3FolderWatch, decltype(&FreeWatch)> watch(MakeWatch(changed, user), FreeWatch);
        return WatchFolder(NativeBytes(*folder), *watch) ? watch.release() : nullptr;
    });
}

void Unwatch(VX3FolderWatch* watch)
{
    if (watch)
        GiveUpFolder(*watch);
    FreeWatch(watch);
}

} // namespace

const VX3FolderServices* FolderServices()
{
    static constexpr VX3FolderServices services = { Exists,       Inspect,    Date,        CreateFolder, Rename,    Move,        Copy,
                                                    Remove,       SameVolume, ProbeVolume, StartWalk,    NextEntry, WalkIsSound, EndWalk,
                                                    StartVolumes, NextVolume, EndVolumes,  Watch,        Unwatch };
    return &services;
}

} // namespace vx3::core
