#include <algorithm>

#include "textvalue.h"
#include "unicode.h"

namespace vx3::core {
namespace {

int32_t CompareSpans(UnitSpan a, UnitSpan b)
{
    const int32_t shared = std::min(a.length, b.length);
    for (int32_t i = 0; i < shared; ++i) {
        if (a.units[i] != b.units[i])
            return static_cast<int32_t>(a.units[i]) - b.units[i];
    }
    return a.length - b.length;
}

int32_t CompareSpansFolding(UnitSpan a, UnitSpan b)
{
    const int32_t shared = std::min(a.length, b.length);
    for (int32_t i = 0; i < shared; ++i) {
        if (a.units[i] == b.units[i])
            continue;
        const int32_t difference = static_cast<int32_t>(LowerUnit(a.units[i])) - LowerUnit(b.units[i]);
        if (difference != 0)
            return difference;
    }
    return a.length - b.length;
}

} // namespace

VX3Bool LowerText(const VX3String* text, VX3String* lower)
{
    const UnitSpan span = SpanOf(*text);
    if (span.length == 0)
        return AssignUnits(*lower, nullptr, 0);
    TextBuffer* source = BufferOf(*text);
    if (lower == text && source->IsUnique()) {
        source->DropJoined();
        LowerUnits(span.units, source->Units(), static_cast<size_t>(span.length));
        return 1;
    }
    source->Retain(); // `lower` may hold it, too
    VX3Unit* units = PrepareText(*lower, span.length);
    if (units)
        LowerUnits(span.units, units, static_cast<size_t>(span.length));
    source->Release();
    return units != nullptr;
}

void LowerTextUnits(const VX3Unit* in, VX3Unit* out, int32_t count)
{
    if (count > 0)
        LowerUnits(in, out, static_cast<size_t>(count));
}

int32_t CompareTexts(const VX3String* a, const VX3String* b)
{
    return CompareSpans(SpanOf(*a), SpanOf(*b));
}

int32_t CompareTextsFolding(const VX3String* a, const VX3String* b)
{
    return CompareSpansFolding(SpanOf(*a), SpanOf(*b));
}

int32_t OrderTexts(const VX3String* a, const VX3String* b)
{
    const UnitSpan spanA = SpanOf(*a);
    const UnitSpan spanB = SpanOf(*b);
    const int32_t folded = CompareSpansFolding(spanA, spanB);
    return folded != 0 ? folded : CompareSpans(spanA, spanB);
}

int32_t MakeOrderKey(const VX3String* text, VX3Unit* units, int32_t capacity)
{
    const UnitSpan span = SpanOf(*text);
    const int32_t written = std::min(span.length, capacity);
    if (written > 0)
        LowerUnits(span.units, units, static_cast<size_t>(written));
    return span.length;
}

bool SpansEqual(UnitSpan a, UnitSpan b)
{
    return a.length == b.length && std::equal(a.units, a.units + a.length, b.units);
}

bool SpansEqualFolding(UnitSpan a, UnitSpan b)
{
    return a.length == b.length && CompareSpansFolding(a, b) == 0;
}

} // namespace vx3::core
