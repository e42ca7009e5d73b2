#include "readpattern.h"

#include <algorithm>

namespace vx3::core {

namespace {

constexpr int64_t growth = 4;                  // of the window of who reads on
constexpr int64_t hopWindow = 512;             // a header and often the record behind it
constexpr int64_t farWindow = 12 << 10;        // a header and often all that it tells of, such as a preview
constexpr int64_t longestHop = 128 * 1024;     // farther away a disk is no slower for a place of its own
constexpr int32_t hopsToTrust = 8;             // fewer may be a picture's head, or one item of a library
constexpr int64_t aheadBytes = 4 << 20;        // what a fast disk brings while it answers one question
constexpr int64_t announcedAtOnce = 512 << 10; // so that few hops announce anything

} // namespace

int64_t ReadPattern::WindowFor(int64_t offset, int64_t wanted)
{
    if (offset == lastEnd) {
        window = std::min(window * growth, largestWindow);
    } else {
        NoteHop(offset, offset - lastEnd);
        window = hops > 0 ? hopWindow : farWindow;
    }
    return std::max(window, wanted);
}

void ReadPattern::NoteHop(int64_t offset, int64_t distance)
{
    hopOffset = offset;
    hops = distance > 0 && distance <= longestHop ? std::min(hops + 1, hopsToTrust) : 0;
}

ByteRange ReadPattern::TakeAnnouncement()
{
    if (hops < hopsToTrust)
        return {};
    // Behind the place there is nothing to announce, nor far in front of it.
    if (announced < hopOffset || announced > hopOffset + aheadBytes)
        announced = hopOffset;
    const ByteRange range = { announced, hopOffset + aheadBytes - announced };
    if (range.length < announcedAtOnce)
        return {};
    announced += range.length;
    return range;
}

} // namespace vx3::core
