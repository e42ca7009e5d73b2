#include <algorithm>

#include "textvalue.h"

namespace vx3::core {
namespace {

UnitSpan SpanAt(UnitSpan span, int32_t position, int32_t length)
{
    return { span.units + position, length };
}

// Tested first, since most places fail here.
bool MatchesAt(UnitSpan span, int32_t position, UnitSpan what)
{
    return span.units[position] == what.units[0] && SpansEqual(SpanAt(span, position, what.length), what);
}

} // namespace

VX3Bool TextMatchesAt(const VX3String* text, int32_t position, const VX3String* other, VX3Bool fold)
{
    const UnitSpan span = SpanOf(*text);
    const UnitSpan what = SpanOf(*other);
    const int32_t start = std::clamp(position, 0, span.length);
    if (what.length > span.length - start)
        return 0;
    const UnitSpan there = SpanAt(span, start, what.length);
    return fold ? SpansEqualFolding(there, what) : SpansEqual(there, what);
}

int32_t FindText(const VX3String* text, const VX3String* what, int32_t from)
{
    const UnitSpan span = SpanOf(*text);
    const UnitSpan wanted = SpanOf(*what);
    if (wanted.length == 0)
        return -1;
    for (int32_t at = std::max(from, 0); at <= span.length - wanted.length; ++at) {
        if (MatchesAt(span, at, wanted))
            return at;
    }
    return -1;
}

int32_t FindTextBackward(const VX3String* text, const VX3String* what, int32_t from)
{
    const UnitSpan span = SpanOf(*text);
    const UnitSpan wanted = SpanOf(*what);
    if (wanted.length == 0)
        return -1;
    const int32_t last = span.length - wanted.length;
    for (int32_t at = from == -1 ? last : std::min(std::max(from, 0), last); at >= 0; --at) {
        if (MatchesAt(span, at, wanted))
            return at;
    }
    return -1;
}

} // namespace vx3::core
