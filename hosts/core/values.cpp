#include "values.h"

#include <algorithm>
#include <utility>

#include "pathplatform.h"
#include "pathvalue.h"
#include "textvalue.h"
#include "vx3/text.h"

namespace vx3::core {

Text::Text(std::string_view utf8)
{
    SetTextBytes(value, utf8.data(), utf8.size(), VX3_ENCODING_UTF8);
}

Text::Text(std::u16string_view units)
{
    const auto length = static_cast<int32_t>(units.size());
    if (VX3Unit* out = length > 0 ? PrepareText(value, length) : nullptr)
        std::copy(units.begin(), units.end(), out);
}

Text::Text(const Text& other)
{
    value.opaque = ShareBuffer(other.value);
}

Text::Text(Text&& other) noexcept
    : value(std::exchange(other.value, {}))
{
}

Text& Text::operator=(Text other) noexcept
{
    std::swap(value, other.value);
    return *this;
}

Text::~Text()
{
    ReplaceBuffer(value, nullptr);
}

std::string Text::Utf8() const
{
    return ToUtf8(value);
}

std::u16string Text::Units() const
{
    const UnitSpan span = SpanOf(value);
    return std::u16string(span.units, span.units + span.length);
}

Path::Path(std::string_view nativeBytes)
{
    SetNativePath(value, nativeBytes);
}

Path::Path(const Path& other)
{
    CopyPath(value, other.value);
}

Path::Path(Path&& other) noexcept
    : value(std::exchange(other.value, {}))
{
}

Path& Path::operator=(Path other) noexcept
{
    std::swap(value, other.value);
    return *this;
}

Path::~Path()
{
    DestructPath(value);
}

std::string Path::Native() const
{
    return NativeBytes(value);
}

std::string ToUtf8(const VX3String& text)
{
    std::string utf8(static_cast<size_t>(TextToUtf8(&text, nullptr, 0)), '\0');
    // The zero behind the text goes where a std::string has its own.
    TextToUtf8(&text, utf8.data(), static_cast<int32_t>(utf8.size()) + 1);
    return utf8;
}

std::string NativeBytes(const VX3Path& path)
{
    if (MemoryOf(path))
        return {};
    const UnitSpan directory = SpanOf(DirectoryOf(path));
    const UnitSpan last = SpanOf(LastOf(path));
    std::string bytes = BytesOfUnits(directory);
    if (directory.length > 0 && last.length > 0 && !IsSeparator(directory.units[directory.length - 1]))
        bytes += static_cast<char>(pathSeparator);
    bytes += BytesOfUnits(last);
    // The operating system would stop at a zero and take another file.
    return bytes.find('\0') == std::string::npos ? bytes : std::string();
}

std::string NativeNameBytes(const VX3String& name)
{
    return BytesOfUnits(SpanOf(name));
}

bool SetNativeName(VX3String& name, std::string_view bytes)
{
    if (bytes.size() > maximalTextLength)
        return false;
    if (bytes.empty())
        return AssignUnits(name, nullptr, 0);
    VX3Unit* units = PrepareText(name, static_cast<int32_t>(bytes.size()));
    if (!units)
        return false;
    BufferOf(name)->length = UnitsOfBytes(bytes, units);
    return true;
}

bool SetNativePath(VX3Path& path, std::string_view bytes)
{
    VX3String text = {};
    const bool done = SetNativeName(text, bytes) && SetPathUnits(path, SpanOf(text));
    ReplaceBuffer(text, nullptr);
    return done;
}

} // namespace vx3::core
