// Buffered reading and writing over a RawFile. One thread at a time.
//
// The buffer holds either bytes that were read ahead or bytes that wait to be
// written, never both: what is written is gone to the file before the next read.
#pragma once

#include <cstdint>
#include <memory>

#include "rawfile.h"
#include "readpattern.h"

namespace vx3::core {

// Every call but Close fails after the first failure.
class FileBuffer
{
public:
    void Attach(std::unique_ptr<RawFile> openFile, bool mayWrite);
    bool IsOpen() const { return file != nullptr; }
    bool Close(); // false if anything written was lost; nothing to do is fine

    int64_t Read(void* bytes, int64_t length); // -1 on failure
    bool ReadExactly(void* bytes, int64_t length);
    bool Write(const void* bytes, int64_t length);
    bool SeekTo(int64_t offset);
    bool SeekBy(int64_t distance);
    int64_t Position() const { return isUsable ? position : -1; }
    int64_t Length();
    bool Sync();

private:
    enum class Content { Nothing, ReadAhead, Pending };
    static constexpr int64_t capacity = ReadPattern::largestWindow;

    bool Fail();
    bool Flush();
    bool FlushPending();
    bool HasStorage();
    int64_t TakeBuffered(uint8_t* bytes, int64_t length);
    bool Refill(int64_t wanted);
    int64_t ReadDirectly(uint8_t* bytes, int64_t length);
    void Announce();
    bool Keep(const void* bytes, int64_t length);

    std::unique_ptr<RawFile> file;
    std::unique_ptr<uint8_t[]> storage;
    ReadPattern pattern;
    Content content = Content::Nothing;
    int64_t start = 0; // offset in the file of what the storage holds
    int64_t count = 0; // bytes there
    int64_t position = 0;
    bool isWritable = false;
    bool isUsable = false; // open and without a failure so far
    bool hasLost = false;
};

} // namespace vx3::core
