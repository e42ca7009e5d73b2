#include "description.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <optional>

#include "rawfile.h"
#include "vx3/file.h"

namespace vx3::core {

namespace {

constexpr int64_t maximumLength = 1024 * 1024; // bytes of a file; a page of this size could not be shown

struct Type {
    std::string_view name;
    ElementKind kind;
    size_t least; // numbers behind the text
    size_t most;
};

constexpr Type types[] = {
    { "switch", ElementKind::Switch, 0, 0 },
    { "number", ElementKind::Number, 3, 3 },
    { "choice", ElementKind::Choice, 2, 1000 },
    { "url", ElementKind::Url, 0, 0 },
};

std::string_view TakeWord(std::string_view& line)
{
    constexpr std::string_view blanks = " \t\r";
    line.remove_prefix(std::min(line.find_first_not_of(blanks), line.size()));
    const std::string_view word = line.substr(0, line.find_first_of(blanks));
    line.remove_prefix(word.size());
    return word;
}

std::optional<int32_t> ToNumber(std::string_view word)
{
    int32_t number = 0;
    const char* end = word.data() + word.size();
    const auto [stop, failure] = std::from_chars(word.data(), end, number);
    return failure == std::errc() && stop == end ? std::optional(number) : std::nullopt;
}

// All numbers that are left; none if something else is there.
std::optional<std::vector<int32_t>> TakeNumbers(std::string_view line)
{
    std::vector<int32_t> numbers;
    for (std::string_view word = TakeWord(line); !word.empty(); word = TakeWord(line)) {
        const std::optional<int32_t> number = ToNumber(word);
        if (!number)
            return std::nullopt;
        numbers.push_back(*number);
    }
    return numbers;
}

const Type* FindType(std::string_view name)
{
    const Type* found = std::find_if(std::begin(types), std::end(types), [name](const Type& type) { return type.name == name; });
    return found == std::end(types) ? nullptr : found;
}

// What is wrong with the numbers behind the text, empty if nothing; else they are taken.
std::string SetRange(DescribedElement& element, const std::vector<int32_t>& numbers)
{
    switch (element.kind) {
    case ElementKind::Url: return {};
    case ElementKind::Switch: element.maximum = 1; return {};
    case ElementKind::Choice:
        element.choices = numbers;
        element.maximum = static_cast<int32_t>(numbers.size()) - 1;
        return {};
    case ElementKind::Number:
        element.minimum = numbers[0];
        element.maximum = numbers[1];
        element.step = numbers[2];
        return element.minimum < element.maximum && element.step > 0 ? "" : "the range is empty";
    }
    return {};
}

// What is wrong with a line, empty if nothing.
std::string ReadElement(std::string_view line, DescribedElement& element)
{
    const std::optional<int32_t> id = ToNumber(TakeWord(line));
    const Type* type = FindType(TakeWord(line));
    const std::optional<int32_t> text = ToNumber(TakeWord(line));
    const std::optional<std::vector<int32_t>> more = TakeNumbers(line);
    if (!id || !text || !more)
        return "not a number where one is wanted";
    if (!type)
        return "no type of this name";
    if (more->size() < type->least || more->size() > type->most)
        return "not as many numbers as the type wants";
    element.id = *id;
    element.kind = type->kind;
    element.text = *text;
    return SetRange(element, *more);
}

bool Holds(const Description& description, int32_t id)
{
    return std::any_of(description.elements.begin(), description.elements.end(),
                       [id](const DescribedElement& element) { return element.id == id; });
}

void AddLine(Description& description, std::string_view line, int number)
{
    DescribedElement element;
    std::string problem = ReadElement(line, element);
    if (problem.empty() && Holds(description, element.id))
        problem = "the element stands there already";
    if (problem.empty())
        description.elements.push_back(std::move(element));
    else
        description.problems.push_back("line " + std::to_string(number) + ": " + problem);
}

bool IsElement(std::string_view line)
{
    const std::string_view first = TakeWord(line);
    return !first.empty() && !first.starts_with('#');
}

// The bytes of a whole file, or a reason.
std::optional<std::string> ReadWhole(const std::string& path, std::string& reason)
{
    const auto file = OpenDiskFile(path, VX3_OPEN_READ, reason);
    if (!file)
        return std::nullopt;
    const int64_t length = file->Length();
    std::string bytes(static_cast<size_t>(std::clamp<int64_t>(length, 0, maximumLength)), '\0');
    if (length > maximumLength)
        reason = "it is too long";
    else if (length < 0 || file->ReadAt(0, bytes.data(), length) != length)
        reason = "it cannot be read";
    else
        return bytes;
    return std::nullopt;
}

} // namespace

Description ReadDescription(std::string_view text)
{
    Description description;
    for (int number = 1; !text.empty(); ++number) {
        const std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(line.size() + 1, text.size()));
        if (IsElement(line))
            AddLine(description, line, number);
    }
    return description;
}

Description LoadDescription(const std::string& binary, const std::string& name)
{
    const auto folder = std::filesystem::path(binary).parent_path() / "res" / "descriptions";
    const std::string path = (folder / (name + ".txt")).string();
    std::string reason = "the name is not that of a file";
    std::optional<std::string> bytes;
    if (!name.empty() && name.find('/') == std::string::npos)
        bytes = ReadWhole(path, reason);
    if (!bytes)
        return { {}, { path + ": " + reason } };
    Description description = ReadDescription(*bytes);
    for (std::string& problem : description.problems)
        problem = path + ": " + problem;
    return description;
}

} // namespace vx3::core
