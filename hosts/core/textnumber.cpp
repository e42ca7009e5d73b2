#include <algorithm>
#include <charconv>
#include <cmath>

#include "textvalue.h"
#include "unicode.h"

namespace vx3::core {
namespace {

constexpr int32_t maximalDecimals = 1100; // no number has more places than 1074
constexpr int32_t maximalNumberLength = 2 * maximalDecimals;
constexpr int32_t maximalIntegerDigits = 20;

// Zeros go between the sign and the digits.
bool AssignPadded(VX3String& text, const char* digits, int32_t count, bool negative, int32_t wanted)
{
    const int32_t sign = negative ? 1 : 0;
    const int32_t zeros = std::max(wanted - count, 0);
    if (zeros > maximalTextLength - count - sign)
        return false;
    VX3Unit* units = PrepareText(text, sign + zeros + count);
    if (!units)
        return false;
    if (negative)
        *units++ = '-';
    units = std::fill_n(units, zeros, VX3Unit('0'));
    std::copy_n(digits, count, units);
    return true;
}

// The text as ASCII without a plus in front; -1 if it cannot be a number.
int32_t ReadAscii(const VX3String& text, char* ascii)
{
    const UnitSpan span = SpanOf(text);
    const int32_t start = span.length > 1 && span.units[0] == '+' && span.units[1] != '-' ? 1 : 0;
    const int32_t length = span.length - start;
    if (length <= 0 || length > maximalNumberLength)
        return -1;
    for (int32_t i = 0; i < length; ++i) {
        const VX3Unit unit = span.units[start + i];
        if (unit >= 0x80)
            return -1;
        ascii[i] = static_cast<char>(unit);
    }
    return length;
}

template <class Number>
VX3Bool ReadNumber(const VX3String& text, Number* number)
{
    char ascii[maximalNumberLength];
    const int32_t length = ReadAscii(text, ascii);
    if (length < 0)
        return 0;
    Number value = 0;
    const auto [end, error] = std::from_chars(ascii, ascii + length, value);
    if (error != std::errc() || end != ascii + length)
        return 0;
    *number = value;
    return 1;
}

} // namespace

VX3Bool SetTextInteger(VX3String* text, int64_t number, int32_t digits)
{
    char decimal[maximalIntegerDigits];
    const bool negative = number < 0;
    const uint64_t magnitude = negative ? 0 - static_cast<uint64_t>(number) : static_cast<uint64_t>(number);
    const char* end = std::to_chars(decimal, decimal + sizeof(decimal), magnitude).ptr;
    return AssignPadded(*text, decimal, static_cast<int32_t>(end - decimal), negative, digits);
}

VX3Bool SetTextFloat(VX3String* text, double number, int32_t decimals)
{
    char decimal[maximalNumberLength];
    char* last = decimal + sizeof(decimal);
    const auto written = decimals < 0 ? std::to_chars(decimal, last, number)
                                      : std::to_chars(decimal, last, number, std::chars_format::fixed, std::min(decimals, maximalDecimals));
    if (written.ec != std::errc())
        return 0;
    const auto length = static_cast<int32_t>(written.ptr - decimal);
    VX3Unit* units = PrepareText(*text, length);
    if (!units)
        return 0;
    std::copy_n(decimal, length, units);
    return 1;
}

VX3Bool TextToInteger(const VX3String* text, int64_t* number)
{
    return ReadNumber(*text, number);
}

VX3Bool TextToFloat(const VX3String* text, double* number)
{
    return ReadNumber(*text, number);
}

} // namespace vx3::core
