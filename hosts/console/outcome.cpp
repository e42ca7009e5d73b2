#include "outcome.h"

#include <algorithm>
#include <cstdio>
#include <iterator>

namespace vx3::console {

namespace {

// From harmless to bad, for runs in which items fail in different ways.
constexpr Exit severity[] = { Exit::Done, Exit::NotFound, Exit::Conflict, Exit::Refused, Exit::Damaged, Exit::Cancelled };

size_t SeverityOf(Exit exit)
{
    return static_cast<size_t>(std::find(std::begin(severity), std::end(severity), exit) - std::begin(severity));
}

// The length of the well-formed character at the start of `bytes`, or 0.
size_t CharacterLength(std::string_view bytes)
{
    auto byte = [&](size_t index) { return index < bytes.size() ? static_cast<unsigned char>(bytes[index]) : 0u; };
    unsigned first = byte(0);
    if (first < 0x80)
        return 1;
    size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    if (first < 0xC2 || first > 0xF4)
        return 0;
    for (size_t index = 1; index < length; ++index)
        if ((byte(index) & 0xC0) != 0x80)
            return 0;
    bool overlong = (first == 0xE0 && byte(1) < 0xA0) || (first == 0xF0 && byte(1) < 0x90);
    bool outside = (first == 0xED && byte(1) > 0x9F) || (first == 0xF4 && byte(1) > 0x8F);
    return overlong || outside ? 0 : length;
}

bool IsControl(std::string_view character)
{
    unsigned char first = static_cast<unsigned char>(character[0]);
    bool isUpperControl = character.size() == 2 && first == 0xC2 && static_cast<unsigned char>(character[1]) < 0xA0;
    return first < 0x20 || first == 0x7F || isUpperControl;
}

} // namespace

void Say(std::string_view sentence)
{
    std::fflush(stdout);
    std::fprintf(stderr, "vx3: %.*s\n", static_cast<int>(sentence.size()), sentence.data());
}

std::string HexText(uint32_t number)
{
    char text[16];
    std::snprintf(text, sizeof text, "0x%08x", number);
    return text;
}

std::string Shown(std::string_view bytes)
{
    std::string shown;
    for (size_t index = 0; index < bytes.size();) {
        size_t length = CharacterLength(bytes.substr(index));
        std::string_view character = bytes.substr(index, length ? length : 1);
        if (!length)
            shown += "\xEF\xBF\xBD";
        else if (IsControl(character))
            shown += '?';
        else
            shown += character;
        index += character.size();
    }
    return shown;
}

std::string Quoted(std::string_view bytes)
{
    return "'" + Shown(bytes) + "'";
}

void Outcome::Fail(const Failure& failure)
{
    Say(failure.sentence);
    if (SeverityOf(failure.exit) > SeverityOf(worst))
        worst = failure.exit;
}

int Outcome::Code() const
{
    bool someWorked = doneCount > 0 && worst != Exit::Done && worst != Exit::Cancelled;
    return static_cast<int>(someWorked ? Exit::SomeFailed : worst);
}

} // namespace vx3::console
