#include <algorithm>

#include "pathplatform.h"
#include "pathvalue.h"
#include "textvalue.h"

namespace vx3::core {
namespace {

UnitSpan LastSpan(const VX3Path& path)
{
    return MemoryOf(path) ? UnitSpan() : SpanOf(LastOf(path));
}

// The place of the last `.`, or the length.
int32_t DotPlace(UnitSpan last)
{
    for (int32_t at = last.length - 1; at >= 0; --at) {
        if (last.units[at] == '.')
            return at;
    }
    return last.length;
}

UnitSpan SuffixOf(UnitSpan last)
{
    const int32_t start = std::min(DotPlace(last) + 1, last.length);
    return { last.units + start, last.length - start };
}

} // namespace

VX3Bool GetPathSuffix(const VX3Path* path, VX3String* suffix)
{
    const UnitSpan found = SuffixOf(LastSpan(*path));
    return AssignUnits(*suffix, found.units, found.length);
}

VX3Bool SetPathSuffix(VX3Path* path, const VX3String* suffix)
{
    const UnitSpan last = LastSpan(*path);
    const UnitSpan added = SpanOf(*suffix);
    const int32_t kept = DotPlace(last);
    // A path that has no last part, or would be left without one, names something else.
    if (last.length == 0 || (kept == 0 && added.length == 0) || std::any_of(added.units, added.units + added.length, IsSeparator))
        return 0;
    const int64_t length = static_cast<int64_t>(kept) + (added.length > 0 ? 1 : 0) + added.length;
    TextBuffer* made = length > maximalTextLength ? nullptr : TextBuffer::Make(static_cast<int32_t>(length));
    if (!made)
        return 0;
    VX3Unit* out = std::copy_n(last.units, kept, made->Units());
    if (added.length > 0) {
        *out++ = '.';
        std::copy_n(added.units, added.length, out);
    }
    ReplaceParts(*path, ShareBuffer(DirectoryOf(*path)), made);
    return 1;
}

VX3Bool PathHasSuffix(const VX3Path* path, const VX3String* suffix)
{
    return SpansEqualFolding(SuffixOf(LastSpan(*path)), SpanOf(*suffix));
}

} // namespace vx3::core
