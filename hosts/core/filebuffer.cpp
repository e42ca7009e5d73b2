#include "filebuffer.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <utility>

namespace vx3::core {

void FileBuffer::Attach(std::unique_ptr<RawFile> openFile, bool mayWrite)
{
    file = std::move(openFile);
    content = Content::Nothing;
    pattern = {};
    start = 0;
    count = 0;
    position = 0;
    isWritable = mayWrite;
    isUsable = true;
    hasLost = false;
}

bool FileBuffer::Close()
{
    if (!file)
        return true;
    FlushPending(); // also after another failure: what was accepted is written if it can be
    if (!file->Close())
        hasLost = true;
    file.reset();
    isUsable = false;
    return !hasLost;
}

bool FileBuffer::Fail()
{
    isUsable = false;
    return false;
}

bool FileBuffer::FlushPending()
{
    if (content != Content::Pending)
        return true;
    content = Content::Nothing;
    if (file->WriteAt(start, storage.get(), count))
        return true;
    hasLost = true;
    return false;
}

bool FileBuffer::Flush()
{
    return FlushPending() || Fail();
}

bool FileBuffer::HasStorage()
{
    if (!storage)
        storage.reset(new (std::nothrow) uint8_t[capacity]);
    return storage != nullptr;
}

// Gives what the read-ahead has at the position.
int64_t FileBuffer::TakeBuffered(uint8_t* bytes, int64_t length)
{
    if (content != Content::ReadAhead || position < start || position >= start + count)
        return 0;
    int64_t taken = std::min(length, start + count - position);
    std::memcpy(bytes, storage.get() + (position - start), static_cast<size_t>(taken));
    position += taken;
    return taken;
}

void FileBuffer::Announce()
{
    const ByteRange range = pattern.TakeAnnouncement();
    if (range.length > 0)
        file->Announce(range.offset, range.length);
}

// Brings at least the wanted bytes, of which there are fewer than the storage has room for.
bool FileBuffer::Refill(int64_t wanted)
{
    content = Content::Nothing;
    if (!HasStorage())
        return Fail();
    const int64_t window = pattern.WindowFor(position, wanted);
    Announce();
    int64_t got = file->ReadAt(position, storage.get(), window);
    if (got < 0)
        return Fail();
    start = position;
    count = got;
    content = Content::ReadAhead;
    pattern.Note(start + count);
    return true;
}

int64_t FileBuffer::ReadDirectly(uint8_t* bytes, int64_t length)
{
    (void)pattern.WindowFor(position, length);
    int64_t got = file->ReadAt(position, bytes, length);
    if (got < 0) {
        Fail();
        return -1;
    }
    position += got;
    pattern.Note(position);
    return got;
}

int64_t FileBuffer::Read(void* bytes, int64_t length)
{
    if (!isUsable || length < 0 || !Flush()) {
        Fail();
        return -1;
    }
    auto* out = static_cast<uint8_t*>(bytes);
    int64_t done = TakeBuffered(out, length);
    if (length - done >= capacity) {
        int64_t got = ReadDirectly(out + done, length - done);
        return got < 0 ? -1 : done + got;
    }
    if (done < length) {
        if (!Refill(length - done))
            return -1;
        done += TakeBuffered(out + done, length - done);
    }
    return done;
}

bool FileBuffer::ReadExactly(void* bytes, int64_t length)
{
    return Read(bytes, length) == length || Fail();
}

// Puts them among the pending bytes or right behind, if there is room.
bool FileBuffer::Keep(const void* bytes, int64_t length)
{
    const int64_t place = position - start;
    if (content != Content::Pending || place < 0 || place > count || place + length > capacity)
        return false;
    std::memcpy(storage.get() + place, bytes, static_cast<size_t>(length));
    count = std::max(count, place + length);
    position += length;
    return true;
}

bool FileBuffer::Write(const void* bytes, int64_t length)
{
    if (!isUsable || !isWritable || length < 0)
        return Fail();
    if (length == 0 || Keep(bytes, length))
        return true;
    if (!Flush() || !HasStorage())
        return Fail();
    if (length < capacity) {
        content = Content::Pending;
        start = position;
        count = 0;
        return Keep(bytes, length);
    }
    content = Content::Nothing; // what was read ahead may be stale now
    if (!file->WriteAt(position, bytes, length)) {
        hasLost = true;
        return Fail();
    }
    position += length;
    return true;
}

bool FileBuffer::SeekTo(int64_t offset)
{
    if (!isUsable || offset < 0)
        return Fail();
    position = offset;
    return true;
}

bool FileBuffer::SeekBy(int64_t distance)
{
    int64_t target = 0;
    if (__builtin_add_overflow(position, distance, &target))
        return Fail();
    return SeekTo(target);
}

int64_t FileBuffer::Length()
{
    int64_t length = isUsable ? file->Length() : -1;
    if (length < 0) {
        Fail();
        return -1;
    }
    return content == Content::Pending ? std::max(length, start + count) : length;
}

bool FileBuffer::Sync()
{
    if (!isUsable || !Flush())
        return Fail();
    hasLost = !file->Sync() || hasLost; // a disk tells it once
    return !hasLost || Fail();
}

} // namespace vx3::core
