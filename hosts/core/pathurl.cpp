#include <algorithm>
#include <cstring>

#include "pathplatform.h"
#include "pathvalue.h"

namespace vx3::core {
namespace {

bool IsLetter(VX3Unit unit)
{
    return (unit >= 'a' && unit <= 'z') || (unit >= 'A' && unit <= 'Z');
}

bool BeginsWithDrive(UnitSpan tail)
{
    return tail.length >= 2 && IsLetter(tail.units[0]) && tail.units[1] == ':';
}

// The units of the text that the tail leaves out: the root, unless the rest would be read
// as a drive.
int32_t LeadingUnits(UnitSpan text)
{
    if (hasDrives || text.length == 0 || !IsSeparator(text.units[0]))
        return 0;
    return BeginsWithDrive({ text.units + 1, text.length - 1 }) ? 0 : 1;
}

bool SetRootedUnits(VX3Path& path, UnitSpan tail)
{
    if (tail.length >= maximalTextLength)
        return false;
    TextBuffer* text = TextBuffer::Make(tail.length + 1);
    if (!text)
        return false;
    text->Units()[0] = '/';
    std::copy_n(tail.units, tail.length, text->Units() + 1);
    const bool done = SetPathUnits(path, SpanOf(text));
    text->Release();
    return done;
}

} // namespace

VX3Bool SetPathUrlTail(VX3Path* path, const VX3String* tail)
{
    const UnitSpan units = SpanOf(*tail);
    if (hasDrives || BeginsWithDrive(units))
        return SetPathUnits(*path, units);
    return SetRootedUnits(*path, units);
}

VX3Bool GetPathUrlTail(const VX3Path* path, VX3String* tail)
{
    VX3String text = {};
    if (!PathText(*path, text))
        return 0;
    const int32_t leading = LeadingUnits(SpanOf(text));
    const bool done = leading == 0 || SpliceUnits(text, 0, leading, {});
    if (done) {
        const UnitSpan units = SpanOf(text);
        for (int32_t i = 0; i < units.length; ++i) {
            if (IsSeparator(units.units[i]))
                BufferOf(text)->Units()[i] = '/';
        }
        ReplaceBuffer(*tail, ShareBuffer(text));
    }
    ReplaceBuffer(text, nullptr);
    return done;
}

} // namespace vx3::core
