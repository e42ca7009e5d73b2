// The block of memory behind a memory path, for files and codecs that work on one.
//
// Counted: every copy of the path and every file open on it holds one reference. A
// block is either borrowed from the caller and only read, or its own and grows. The
// calls lock the block, so several files may be open on one; `data` may be looked at
// without a call only while nobody writes.
#pragma once

#include <atomic>
#include <cstdint>
#include <mutex>

namespace vx3::core {

struct MemoryBlock {
    uint8_t* data = nullptr; // borrowed, or a block of the memory section
    int64_t length = 0;      // bytes that are there
    int64_t capacity = 0;    // bytes that fit without growing; 0 for a borrowed block
    bool writable = false;   // constant

    static MemoryBlock* Borrow(const void* bytes, int64_t length); // none without memory
    static MemoryBlock* Make();                                    // an empty one to write into; none without memory
    void Retain();
    void Release(); // the last one frees

    // Copies what stands from `offset` and returns how many bytes there were.
    int64_t Read(int64_t offset, void* bytes, int64_t count);
    // Writes all; a gap behind the old end is zeroed. False if it is not writable or without memory.
    bool Write(int64_t offset, const void* bytes, int64_t count);
    // Cuts, or fills up with zeros.
    bool Resize(int64_t newLength);
    int64_t Length();
    // Hands the bytes to a caller, who frees them with the memory section, and leaves an
    // empty block. False if it is borrowed or nothing was written.
    bool Take(void*& bytes, int64_t& count);

private:
    bool Reserve(int64_t needed);
    bool ResizeLocked(int64_t newLength);

    std::atomic<uint32_t> references{ 1 };
    std::mutex guard;
};

} // namespace vx3::core
