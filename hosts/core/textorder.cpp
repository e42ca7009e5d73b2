#include <algorithm>

#include "textvalue.h"
#include "unicode.h"

namespace vx3::core {
namespace {

constexpr VX3Unit firstDigit = '0';
constexpr VX3Unit lastDigit = '9';
constexpr VX3Unit digitMark = firstDigit; // where every number stands among the characters
constexpr int32_t longCount = 0xFFFF;     // a count of digits goes on in the next unit

bool IsDigit(VX3Unit unit)
{
    return unit >= firstDigit && unit <= lastDigit;
}

// A number in a text: zeros in front are skipped.
struct DigitRun {
    const VX3Unit* digits = nullptr;
    int32_t count = 0;
};

// Reads the run at `at`, which is a digit, and moves behind it.
DigitRun ReadRun(UnitSpan span, int32_t& at)
{
    while (at < span.length && span.units[at] == firstDigit)
        ++at;
    const int32_t start = at;
    while (at < span.length && IsDigit(span.units[at]))
        ++at;
    return { span.units + start, at - start };
}

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

int32_t CompareRuns(DigitRun a, DigitRun b)
{
    return a.count != b.count ? a.count - b.count : CompareSpans({ a.digits, a.count }, { b.digits, b.count });
}

// The units that both begin with, without a number that may go on behind them.
int32_t SharedStart(UnitSpan a, UnitSpan b)
{
    const int32_t shared = std::min(a.length, b.length);
    int32_t at = 0;
    while (at < shared && a.units[at] == b.units[at])
        ++at;
    while (at > 0 && IsDigit(a.units[at - 1]))
        --at;
    return at;
}

// Folded units, numbers by their value; 0 if only spelling is left.
int32_t CompareNatural(UnitSpan a, UnitSpan b)
{
    int32_t atA = SharedStart(a, b);
    int32_t atB = atA;
    while (atA < a.length && atB < b.length) {
        const VX3Unit unitA = a.units[atA];
        const VX3Unit unitB = b.units[atB];
        const bool digitA = IsDigit(unitA);
        const bool digitB = IsDigit(unitB);
        int32_t difference = 0;
        if (digitA && digitB) {
            const DigitRun runA = ReadRun(a, atA);
            difference = CompareRuns(runA, ReadRun(b, atB));
        } else {
            if (unitA != unitB)
                difference = static_cast<int32_t>(digitA ? digitMark : LowerUnit(unitA)) - (digitB ? digitMark : LowerUnit(unitB));
            ++atA;
            ++atB;
        }
        if (difference != 0)
            return difference;
    }
    return static_cast<int32_t>(atA < a.length) - static_cast<int32_t>(atB < b.length);
}

// Writes what fits and counts all.
struct KeyWriter {
    VX3Unit* units;
    int32_t capacity;
    int32_t length = 0;

    void Put(VX3Unit unit)
    {
        if (length < capacity)
            units[length] = unit;
        ++length;
    }

    // The mark, the number of digits, the digits. A number with more digits is the
    // larger one, so the count may be compared like a character.
    void PutRun(DigitRun run)
    {
        Put(digitMark);
        int32_t count = run.count;
        for (; count >= longCount; count -= longCount)
            Put(static_cast<VX3Unit>(longCount));
        Put(static_cast<VX3Unit>(count));
        for (int32_t i = 0; i < run.count; ++i)
            Put(run.digits[i]);
    }
};

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
    const int32_t natural = CompareNatural(spanA, spanB);
    return natural != 0 ? natural : CompareSpans(spanA, spanB);
}

int32_t MakeOrderKey(const VX3String* text, VX3Unit* units, int32_t capacity)
{
    const UnitSpan span = SpanOf(*text);
    KeyWriter key = { units, capacity };
    for (int32_t at = 0; at < span.length;) {
        if (IsDigit(span.units[at]))
            key.PutRun(ReadRun(span, at));
        else
            key.Put(LowerUnit(span.units[at++]));
    }
    return key.length;
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
