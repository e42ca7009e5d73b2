#include <algorithm>
#include <cstring>

#include "services.h"
#include "textvalue.h"

namespace vx3::core {
namespace {

// Moves a position to the nearer end and a count to what is there.
int32_t ClampPosition(int32_t position, int32_t length)
{
    return std::clamp(position, 0, length);
}

int32_t ClampCount(int32_t count, int32_t position, int32_t length)
{
    return std::clamp(count, 0, length - position);
}

void Destruct(VX3String* text)
{
    ReplaceBuffer(*text, nullptr);
}

VX3Bool Copy(VX3String* to, const VX3String* from)
{
    ReplaceBuffer(*to, ShareBuffer(*from));
    return 1;
}

VX3Bool SetUnits(VX3String* text, const VX3Unit* units, int32_t count)
{
    return AssignUnits(*text, units, count);
}

int32_t Length(const VX3String* text)
{
    return SpanOf(*text).length;
}

const VX3Unit* View(const VX3String* text, int32_t* length)
{
    const UnitSpan span = SpanOf(*text);
    if (length)
        *length = span.length;
    return span.units;
}

int32_t Read(const VX3String* text, int32_t from, VX3Unit* units, int32_t count)
{
    const UnitSpan span = SpanOf(*text);
    const int32_t start = ClampPosition(from, span.length);
    const int32_t taken = ClampCount(count, start, span.length);
    if (taken > 0)
        std::memcpy(units, span.units + start, static_cast<size_t>(taken) * sizeof(VX3Unit));
    return taken;
}

VX3Bool Insert(VX3String* text, int32_t position, const VX3String* inserted)
{
    const UnitSpan units = SpanOf(*inserted);
    if (units.length == 0)
        return 1;
    return SpliceUnits(*text, ClampPosition(position, SpanOf(*text).length), 0, units);
}

VX3Bool Erase(VX3String* text, int32_t position, int32_t count)
{
    const int32_t length = SpanOf(*text).length;
    const int32_t start = ClampPosition(position, length);
    const int32_t removed = ClampCount(count, start, length);
    return removed == 0 || SpliceUnits(*text, start, removed, {});
}

VX3Bool Part(const VX3String* text, int32_t position, int32_t count, VX3String* part)
{
    const UnitSpan span = SpanOf(*text);
    const int32_t start = ClampPosition(position, span.length);
    const int32_t taken = count < 0 ? span.length - start : ClampCount(count, start, span.length);
    if (taken == span.length)
        return Copy(part, text);
    return AssignUnits(*part, span.units + start, taken);
}

constexpr VX3TextServices textServices = {
    Destruct,  Copy,           SetText,  SetUnits,         TextToUtf8,          Length,       View,          Read,
    Insert,    Erase,          Part,     CompareTexts,     CompareTextsFolding, OrderTexts,   MakeOrderKey,  TextMatchesAt,
    LowerText, LowerTextUnits, FindText, FindTextBackward, SetTextInteger,      SetTextFloat, TextToInteger, TextToFloat,
};

} // namespace

const VX3TextServices* TextServices()
{
    return &textServices;
}

} // namespace vx3::core
