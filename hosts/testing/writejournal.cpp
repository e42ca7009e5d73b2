#include "writejournal.h"

#include <algorithm>
#include <bit>
#include <concepts>
#include <map>
#include <mutex>

#include "core/values.h"
#include "journalreplay.h"

namespace vx3::testing {

namespace {

using Kind = JournalStep::Kind;

// A file that is open on a path below the folder.
struct Followed {
    std::string path; // below the folder
    bool isBigEndian = true;
};

struct State {
    VX3Host base = {};
    VX3Host table = {};
    VX3FileServices file = {};
    VX3FolderServices folder = {};

    std::mutex lock; // for all below
    bool isRecording = false;
    std::string root;
    std::vector<JournalStep> steps;
    std::map<VX3BinaryFile*, Followed> followed;
    int32_t lastGroup = 0;
};

State& TheState()
{
    static State state;
    return state;
}

// The part of a path below the recorded folder; false if it lies elsewhere. Under the lock.
bool IsBelow(const std::string& native, std::string& relative)
{
    const State& state = TheState();
    const std::string prefix = state.root == "/" ? "/" : state.root + "/";
    if (!state.isRecording || !native.starts_with(prefix))
        return false;
    relative = native.substr(prefix.size());
    return true;
}

void Record(Kind kind, const std::string& path, const std::string& newPath = {}, int32_t group = 0)
{
    TheState().steps.push_back({ kind, path, newPath, 0, {}, group });
}

void RecordWrite(const std::string& path, int64_t offset, std::string_view bytes, int32_t group = 0)
{
    if (!bytes.empty())
        TheState().steps.push_back({ Kind::Write, path, {}, offset, std::string(bytes), group });
}

VX3Bool Open(VX3BinaryFile* file, const VX3Path* path, int32_t mode, VX3Bool showErrors, int32_t order, uint32_t type, uint32_t creator)
{
    State& state = TheState();
    const std::string native = core::NativeBytes(*path);
    std::lock_guard guard(state.lock);
    std::string relative;
    const bool isBelow = mode != VX3_OPEN_READ && IsBelow(native, relative);
    const bool wasThere = isBelow && state.base.folder->exists(path);
    if (!state.base.file->open(file, path, mode, showErrors, order, type, creator))
        return 0;
    state.followed.erase(file);
    if (!isBelow)
        return 1;
    state.followed[file] = { relative, order == VX3_ORDER_BIG };
    if (mode == VX3_OPEN_CREATE || !wasThere)
        Record(Kind::Create, relative);
    return 1;
}

// A write that the file has taken, recorded at the position in front of it.
template <class Action>
VX3Bool WriteRecorded(VX3BinaryFile* file, std::string_view bytes, Action action)
{
    State& state = TheState();
    std::lock_guard guard(state.lock);
    const int64_t offset = state.base.file->position(file);
    if (!action())
        return 0;
    const auto found = state.followed.find(file);
    if (found != state.followed.end())
        RecordWrite(found->second.path, offset, bytes);
    return 1;
}

VX3Bool Write(VX3BinaryFile* file, const void* bytes, int64_t length)
{
    const std::string_view view(static_cast<const char*>(bytes), static_cast<std::size_t>(std::max<int64_t>(length, 0)));
    return WriteRecorded(file, view, [&] { return TheState().base.file->write(file, bytes, length); });
}

bool IsBigEndian(VX3BinaryFile* file)
{
    std::lock_guard guard(TheState().lock);
    const auto found = TheState().followed.find(file);
    return found == TheState().followed.end() || found->second.isBigEndian;
}

template <std::unsigned_integral Integer, auto Member>
VX3Bool WriteInteger(VX3BinaryFile* file, Integer value)
{
    constexpr int byteBits = 8;
    char bytes[sizeof(Integer)];
    const bool isBigEndian = IsBigEndian(file);
    for (std::size_t i = 0; i < sizeof(bytes); ++i) {
        const std::size_t place = isBigEndian ? sizeof(bytes) - 1 - i : i;
        bytes[place] = static_cast<char>(static_cast<uint64_t>(value) >> (byteBits * i));
    }
    return WriteRecorded(file, { bytes, sizeof(bytes) }, [&] { return (TheState().base.file->*Member)(file, value); });
}

void Forget(VX3BinaryFile* file)
{
    std::lock_guard guard(TheState().lock);
    TheState().followed.erase(file);
}

VX3Bool Close(VX3BinaryFile* file)
{
    Forget(file);
    return TheState().base.file->close(file);
}

void Free(VX3BinaryFile* file)
{
    Forget(file);
    TheState().base.file->free(file);
}

// Open files go with their path.
void RenameFollowed(const std::string& from, const std::string& to)
{
    for (auto& [file, open] : TheState().followed) {
        if (open.path == from || open.path.starts_with(from + "/"))
            open.path = to + open.path.substr(from.size());
    }
}

void RecordTree(const VX3Path* path, const std::string& relative, int32_t group);

void RecordFile(const VX3Path* path, const std::string& relative, int32_t group)
{
    const VX3FileServices& files = *TheState().base.file;
    Record(Kind::Create, relative, {}, group);
    VX3BinaryFile* file = files.create();
    if (file && files.open(file, path, VX3_OPEN_READ, 0, VX3_ORDER_BIG, VX3_FILE_TYPE, VX3_FILE_CREATOR)) {
        std::string bytes(static_cast<std::size_t>(std::max<int64_t>(0, files.length(file))), '\0');
        if (files.read(file, bytes.data(), static_cast<int64_t>(bytes.size())) == static_cast<int64_t>(bytes.size()))
            RecordWrite(relative, 0, bytes, group);
    }
    files.free(file);
}

void RecordFolder(const VX3Path* path, const std::string& relative, int32_t group)
{
    const VX3FolderServices& folders = *TheState().base.folder;
    Record(Kind::CreateFolder, relative, {}, group);
    VX3FolderWalk* walk = folders.startWalk(path, VX3_WALK_HIDDEN | VX3_WALK_READONLY);
    if (!walk)
        return;
    VX3FolderEntry entry = {};
    while (folders.nextEntry(walk, &entry)) {
        core::Path child;
        if (TheState().base.path->join(path, &entry.name, child.Get()))
            RecordTree(child.Get(), relative + "/" + core::NativeNameBytes(entry.name), group);
    }
    TheState().base.text->destruct(&entry.name);
    folders.endWalk(walk);
}

// What a copy has made, read back. Under the lock.
void RecordTree(const VX3Path* path, const std::string& relative, int32_t group)
{
    VX3FolderEntry entry = {};
    if (!TheState().base.folder->inspect(path, &entry))
        return;
    if (entry.flags & VX3_ENTRY_FOLDER)
        RecordFolder(path, relative, group);
    else
        RecordFile(path, relative, group);
}

// Into the folder, out of it or within it.
void RecordMove(const VX3Path* from, const VX3Path* to)
{
    State& state = TheState();
    std::string oldPath;
    std::string newPath;
    const bool wasBelow = IsBelow(core::NativeBytes(*from), oldPath);
    const bool isBelow = IsBelow(core::NativeBytes(*to), newPath);
    if (wasBelow && isBelow) {
        Record(Kind::Rename, oldPath, newPath);
        RenameFollowed(oldPath, newPath);
    } else if (wasBelow) {
        Record(Kind::Remove, oldPath);
    } else if (isBelow) {
        RecordTree(to, newPath, ++state.lastGroup);
    }
}

template <auto Member>
VX3Bool Relocate(const VX3Path* from, const VX3Path* to)
{
    State& state = TheState();
    std::lock_guard guard(state.lock);
    if (!(state.base.folder->*Member)(from, to))
        return 0;
    RecordMove(from, to);
    return 1;
}

VX3Bool CreateFolder(const VX3Path* path)
{
    State& state = TheState();
    std::lock_guard guard(state.lock);
    if (!state.base.folder->createFolder(path))
        return 0;
    std::string relative;
    if (IsBelow(core::NativeBytes(*path), relative))
        Record(Kind::CreateFolder, relative);
    return 1;
}

// The callback of a copy or a removal may use the table, so the lock is taken afterwards.
VX3Bool Copy(const VX3Path* from, const VX3Path* to, uint32_t bits, int64_t size, VX3ProgressFunction progress, void* user,
             VX3Bool* cancelled)
{
    State& state = TheState();
    if (!state.base.folder->copy(from, to, bits, size, progress, user, cancelled))
        return 0;
    std::lock_guard guard(state.lock);
    std::string relative;
    if (IsBelow(core::NativeBytes(*to), relative))
        RecordTree(to, relative, ++state.lastGroup);
    return 1;
}

VX3Bool Remove(const VX3Path* path, uint32_t bits, int64_t size, VX3ProgressFunction progress, void* user, VX3Bool* cancelled)
{
    State& state = TheState();
    if (!state.base.folder->remove(path, bits, size, progress, user, cancelled))
        return 0;
    std::lock_guard guard(state.lock);
    std::string relative;
    if (IsBelow(core::NativeBytes(*path), relative))
        Record(Kind::Remove, relative);
    return 1;
}

void ReplaceFileFunctions(VX3FileServices& file)
{
    file.open = Open;
    file.close = Close;
    file.free = Free;
    file.write = Write;
    file.writeInt16 = WriteInteger<uint16_t, &VX3FileServices::writeInt16>;
    file.writeInt32 = WriteInteger<uint32_t, &VX3FileServices::writeInt32>;
    file.writeInt64 = WriteInteger<uint64_t, &VX3FileServices::writeInt64>;
}

void ReplaceFolderFunctions(VX3FolderServices& folder)
{
    folder.createFolder = CreateFolder;
    folder.rename = Relocate<&VX3FolderServices::rename>;
    folder.move = Relocate<&VX3FolderServices::move>;
    folder.copy = Copy;
    folder.remove = Remove;
}

} // namespace

int64_t JournalStep::Units() const
{
    return kind == Kind::Write ? static_cast<int64_t>(bytes.size()) : 1;
}

WriteJournal::WriteJournal(const VX3Host* base)
{
    State& state = TheState();
    state.base = *base;
    state.table = *base;
    state.file = *base->file;
    state.folder = *base->folder;
    ReplaceFileFunctions(state.file);
    ReplaceFolderFunctions(state.folder);
    state.table.file = &state.file;
    state.table.folder = &state.folder;
    std::lock_guard guard(state.lock);
    state.isRecording = false;
    state.steps.clear();
    state.followed.clear();
}

WriteJournal::~WriteJournal()
{
    End();
}

const VX3Host* WriteJournal::Table() const
{
    return &TheState().table;
}

void WriteJournal::Begin(std::string_view folder)
{
    State& state = TheState();
    std::lock_guard guard(state.lock);
    state.root = folder;
    state.steps.clear();
    state.followed.clear();
    state.isRecording = true;
}

void WriteJournal::End()
{
    std::lock_guard guard(TheState().lock);
    TheState().isRecording = false;
    TheState().followed.clear();
}

std::vector<JournalStep> WriteJournal::Steps() const
{
    std::lock_guard guard(TheState().lock);
    return TheState().steps;
}

int64_t WriteJournal::Units() const
{
    int64_t units = 0;
    for (const JournalStep& step : Steps())
        units += step.Units();
    return units;
}

int64_t WriteJournal::StepAt(int64_t cut) const
{
    int64_t whole = 0;
    for (const JournalStep& step : Steps()) {
        cut -= step.Units();
        if (cut < 0)
            break;
        ++whole;
    }
    return whole;
}

bool WriteJournal::Replay(int64_t units, const VX3Host* table, std::string_view folder) const
{
    int32_t group = 0; // one that has begun is played to its end
    for (const JournalStep& step : Steps()) {
        const bool continues = step.group != 0 && step.group == group;
        if (units <= 0 && !continues)
            break;
        const int64_t taken = step.group != 0 ? step.Units() : std::min(units, step.Units());
        if (!ReplayStep(table, folder, step, taken))
            return false;
        units -= step.Units();
        group = step.group;
    }
    return true;
}

} // namespace vx3::testing
