// The file section: the core host's buffer over entries of the tree.
#include <concepts>
#include <cstring>

#include "core/filebuffer.h"
#include "core/hoststate.h"
#include "core/services.h"
#include "core/values.h"
#include "memorystate.h"

namespace vx3::testing {

namespace {

class TreeFile : public core::RawFile
{
public:
    TreeFile(EntryRef openEntry, bool mayWrite)
        : entry(std::move(openEntry))
        , isWritable(mayWrite)
    {
        entry->hasWriter = entry->hasWriter || isWritable; // under the lock of whoever opens
    }
    TreeFile(const TreeFile&) = delete;
    TreeFile& operator=(const TreeFile&) = delete;
    ~TreeFile() override { Close(); }

    int64_t ReadAt(int64_t offset, void* bytes, int64_t count) override
    {
        std::lock_guard guard(TheMemory().lock);
        const auto length = static_cast<int64_t>(entry->bytes.size());
        const int64_t got = std::max<int64_t>(0, std::min(count, length - offset));
        if (got > 0)
            std::memcpy(bytes, entry->bytes.data() + offset, static_cast<std::size_t>(got));
        return got;
    }

    bool WriteAt(int64_t offset, const void* bytes, int64_t count) override
    {
        std::lock_guard guard(TheMemory().lock);
        const auto length = static_cast<int64_t>(entry->bytes.size());
        const int64_t fitting = TakeRoom(std::max<int64_t>(0, offset + count - length), count);
        if (offset + fitting > length)
            entry->bytes.resize(static_cast<std::size_t>(offset + fitting));
        std::memcpy(entry->bytes.data() + offset, bytes, static_cast<std::size_t>(fitting));
        entry->modified = TheMemory().Now();
        return fitting == count;
    }

    int64_t Length() override
    {
        std::lock_guard guard(TheMemory().lock);
        return static_cast<int64_t>(entry->bytes.size());
    }

    bool Sync() override { return true; }
    bool Close() override
    {
        std::lock_guard guard(TheMemory().lock);
        if (isWritable) {
            entry->hasWriter = false;
            TheMemory().TellChange(entry->parent);
        }
        isWritable = false;
        return true;
    }

private:
    // How many of the bytes fit; as on a disk, the first ones are written then.
    static int64_t TakeRoom(int64_t growth, int64_t count)
    {
        MemoryState& memory = TheMemory();
        if (memory.UseBytes(growth))
            return count;
        const int64_t fitting = std::max<int64_t>(0, count - (growth - memory.freeBytes));
        if (fitting > 0)
            memory.freeBytes = 0;
        return fitting;
    }

    EntryRef entry;
    bool isWritable; // and not closed
};

struct OpenFile {
    core::FileBuffer buffer;
    bool isBigEndian = true;
};

OpenFile* Of(VX3BinaryFile* file)
{
    return reinterpret_cast<OpenFile*>(file);
}

VX3BinaryFile* Create()
{
    return reinterpret_cast<VX3BinaryFile*>(new OpenFile);
}

void Free(VX3BinaryFile* file)
{
    if (file)
        Of(file)->buffer.Close();
    delete Of(file);
}

EntryRef CreateEntry(const std::string& native, std::string& reason)
{
    MemoryState& memory = TheMemory();
    std::string last;
    const EntryRef folder = memory.tree.FolderFor(native, last);
    if (!folder || last.empty() || folder->isReadOnly) {
        reason = folder ? "the folder cannot be written" : "there is no such folder";
        return nullptr;
    }
    auto entry = std::make_shared<TreeEntry>();
    entry->name = last;
    entry->created = entry->modified = memory.Now();
    memory.tree.Insert(folder, entry);
    memory.Touch(*folder);
    return entry;
}

std::unique_ptr<core::RawFile> OpenEntry(const std::string& native, int32_t mode, std::string& reason)
{
    MemoryState& memory = TheMemory();
    std::lock_guard guard(memory.lock);
    const bool writes = mode != VX3_OPEN_READ;
    EntryRef entry = memory.tree.Find(native, LastLink::Follow);
    if (!entry && writes && !memory.tree.Find(native, LastLink::Keep))
        entry = CreateEntry(native, reason);
    else if (!entry)
        reason = "there is no such file";
    if (!entry)
        return nullptr;
    if (entry->kind != EntryKind::File || entry->isUnreadable || (writes && entry->isReadOnly)) {
        reason = entry->kind == EntryKind::File ? "access is refused" : "not a regular file";
        return nullptr;
    }
    if (writes && entry->hasWriter) {
        reason = "it is open for writing already";
        return nullptr;
    }
    if (mode == VX3_OPEN_CREATE && !entry->bytes.empty()) {
        memory.UseBytes(-static_cast<int64_t>(entry->bytes.size()));
        entry->bytes.clear();
        entry->modified = memory.Now();
    }
    return std::make_unique<TreeFile>(entry, writes);
}

VX3Bool Open(VX3BinaryFile* file, const VX3Path* path, int32_t mode, VX3Bool showErrors, int32_t byteOrder, uint32_t, uint32_t)
{
    OpenFile& open = *Of(file);
    TheMemory().Note(Asked::Open);
    if (open.buffer.IsOpen())
        return 0;
    std::string reason;
    auto raw = core::BlockOf(*path) ? core::OpenMemoryFile(*path, mode, reason) : OpenEntry(core::NativeBytes(*path), mode, reason);
    open.isBigEndian = byteOrder == VX3_ORDER_BIG;
    if (raw)
        open.buffer.Attach(std::move(raw), mode != VX3_OPEN_READ);
    else if (showErrors)
        core::WriteConsoleLine("The file could not be opened: " + core::NativeBytes(*path) + " (" + reason + ")");
    return open.buffer.IsOpen();
}

VX3Bool Close(VX3BinaryFile* file)
{
    return Of(file)->buffer.Close();
}

int64_t Read(VX3BinaryFile* file, void* bytes, int64_t length)
{
    return Of(file)->buffer.Read(bytes, length);
}

VX3Bool Write(VX3BinaryFile* file, const void* bytes, int64_t length)
{
    return Of(file)->buffer.Write(bytes, length);
}

template <std::unsigned_integral Integer>
VX3Bool ReadInteger(VX3BinaryFile* file, Integer* value)
{
    constexpr int byteBits = 8;
    uint8_t bytes[sizeof(Integer)];
    if (!Of(file)->buffer.ReadExactly(bytes, sizeof(bytes)))
        return 0;
    uint64_t number = 0;
    for (std::size_t i = 0; i < sizeof(bytes); ++i)
        number = number << byteBits | bytes[Of(file)->isBigEndian ? i : sizeof(bytes) - 1 - i];
    *value = static_cast<Integer>(number);
    return 1;
}

template <std::unsigned_integral Integer>
VX3Bool WriteInteger(VX3BinaryFile* file, Integer value)
{
    constexpr int byteBits = 8;
    uint8_t bytes[sizeof(Integer)];
    uint64_t rest = value;
    for (std::size_t i = 0; i < sizeof(bytes); ++i, rest >>= byteBits)
        bytes[Of(file)->isBigEndian ? sizeof(bytes) - 1 - i : i] = static_cast<uint8_t>(rest);
    return Of(file)->buffer.Write(bytes, sizeof(bytes));
}

VX3Bool Seek(VX3BinaryFile* file, int64_t offset, int32_t origin)
{
    core::FileBuffer& buffer = Of(file)->buffer;
    return origin == VX3_SEEK_RELATIVE ? buffer.SeekBy(offset) : buffer.SeekTo(offset);
}

int64_t Position(VX3BinaryFile* file)
{
    return Of(file)->buffer.Position();
}

int64_t Length(VX3BinaryFile* file)
{
    return Of(file)->buffer.Length();
}

VX3Bool Sync(VX3BinaryFile* file)
{
    return Of(file)->buffer.Sync();
}

} // namespace

const VX3FileServices memoryFileServices = { Create,
                                             Free,
                                             Open,
                                             Close,
                                             Read,
                                             Write,
                                             ReadInteger<uint16_t>,
                                             ReadInteger<uint32_t>,
                                             ReadInteger<uint64_t>,
                                             WriteInteger<uint16_t>,
                                             WriteInteger<uint32_t>,
                                             WriteInteger<uint64_t>,
                                             Seek,
                                             Position,
                                             Length,
                                             Sync };

} // namespace vx3::testing
