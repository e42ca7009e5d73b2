// How much to ask of the disk at once, told by where a file has been read so far.
//
// Who reads on gets more each time, up to a whole buffer. Who hops from one small header
// to the next gets little: what lies in between would be copied for nothing. But a disk
// is quickest when it is told early, so behind some short hops the bytes ahead are
// announced; a system without a hint would fetch them page by page.
#pragma once

#include <cstdint>

namespace vx3::core {

struct ByteRange {
    int64_t offset = 0;
    int64_t length = 0;
};

class ReadPattern
{
public:
    static constexpr int64_t largestWindow = 64 * 1024;

    // How many bytes to take for a read at an offset, at least the wanted ones.
    int64_t WindowFor(int64_t offset, int64_t wanted);
    // That has come from the disk.
    void Note(int64_t end) { lastEnd = end; }
    // What to announce now; mostly nothing.
    ByteRange TakeAnnouncement();

private:
    void NoteHop(int64_t offset, int64_t distance);

    int64_t lastEnd = 0; // of what came last
    int64_t window = 1024;
    int32_t hops = 0;      // short ones without a long one in between
    int64_t hopOffset = 0; // where the last one led to
    int64_t announced = 0; // up to here
};

} // namespace vx3::core
