#include "gui/scriptparse.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <sstream>

#include "core/services.h"
#include "core/values.h"
#include "gui/scriptverbs.h"

namespace vx3::gui {

namespace {

struct NamedNumber {
    std::string_view name;
    int32_t number;
};

constexpr NamedNumber keyNames[] = {
    { "left", VX3_KEY_LEFT },      { "right", VX3_KEY_RIGHT },
    { "up", VX3_KEY_UP },          { "down", VX3_KEY_DOWN },
    { "home", VX3_KEY_HOME },      { "end", VX3_KEY_END },
    { "pageup", VX3_KEY_PAGE_UP }, { "pagedown", VX3_KEY_PAGE_DOWN },
    { "enter", VX3_KEY_ENTER },    { "esc", VX3_KEY_ESCAPE },
    { "tab", VX3_KEY_TAB },        { "space", VX3_KEY_SPACE },
    { "delete", VX3_KEY_DELETE },  { "backspace", VX3_KEY_BACKSPACE },
    { "f1", VX3_KEY_F1 },          { "f2", VX3_KEY_F1 + 1 },
    { "f3", VX3_KEY_F1 + 2 },      { "f4", VX3_KEY_F1 + 3 },
    { "f5", VX3_KEY_F1 + 4 },      { "f6", VX3_KEY_F1 + 5 },
    { "f7", VX3_KEY_F1 + 6 },      { "f8", VX3_KEY_F1 + 7 },
    { "f9", VX3_KEY_F1 + 8 },      { "f10", VX3_KEY_F1 + 9 },
    { "f11", VX3_KEY_F1 + 10 },    { "f12", VX3_KEY_F1 + 11 },
};

constexpr NamedNumber qualifierNames[] = { { "shift", VX3_QUALIFIER_SHIFT }, { "ctrl", VX3_QUALIFIER_CTRL }, { "alt", VX3_QUALIFIER_ALT } };

constexpr NamedNumber channelNames[] = {
    { "left", VX3_CHANNEL_LEFT }, { "right", VX3_CHANNEL_RIGHT },     { "middle", VX3_CHANNEL_MIDDLE },
    { "back", VX3_CHANNEL_BACK }, { "forward", VX3_CHANNEL_FORWARD },
};

template <size_t count>
int32_t NumberOf(const NamedNumber (&rows)[count], std::string_view name)
{
    const auto found = std::find_if(std::begin(rows), std::end(rows), [&](const NamedNumber& row) { return row.name == name; });
    return found == std::end(rows) ? 0 : found->number;
}

std::string Quoted(const std::string& word)
{
    return "'" + word + "'";
}

// --- Lines ---

// One word, whose quotes and escapes are taken off.
std::string TakeWord(const std::string& line, size_t& at)
{
    std::string word;
    if (line[at] != '"') {
        while (at < line.size() && !std::isspace(static_cast<unsigned char>(line[at])))
            word += line[at++];
        return word;
    }
    for (++at; at < line.size() && line[at] != '"'; ++at) {
        const bool isEscape =
            line[at] == '\\' && at + 1 < line.size() && std::string_view("\"\\n").find(line[at + 1]) != std::string_view::npos;
        if (isEscape)
            ++at;
        word += isEscape && line[at] == 'n' ? '\n' : line[at];
    }
    if (at == line.size())
        throw ScriptError{ "a quote is never closed" };
    ++at;
    if (at < line.size() && !std::isspace(static_cast<unsigned char>(line[at])))
        throw ScriptError{ "a blank is missing behind a quote" };
    return word;
}

std::vector<std::string> SplitLine(const std::string& line)
{
    std::vector<std::string> words;
    for (size_t at = 0;;) {
        while (at < line.size() && std::isspace(static_cast<unsigned char>(line[at])))
            ++at;
        if (at == line.size() || line[at] == '#')
            return words;
        words.push_back(TakeWord(line, at));
    }
}

void ParseLine(ScriptLine line, std::deque<ScriptLine>& lines)
{
    const ScriptVerb* verb = FindVerb(line.words[0]);
    if (!verb)
        throw ScriptError{ Quoted(line.words[0]) + " is no verb" };
    try {
        CheckArguments(line, verb->pattern);
    } catch (const ScriptError& error) {
        throw ScriptError{ error.message + "; " + std::string(verb->usage) };
    }
    if (!verb->expand)
        return lines.push_back(std::move(line));
    for (ScriptLine& part : verb->expand(line))
        lines.push_back(std::move(part));
}

// --- What verbs take ---

bool IsQualifier(const std::string& word)
{
    return QualifierOf(word) != 0;
}

void CheckWord(char kind, const std::string& word)
{
    switch (kind) {
    case 'g':
    case 'i': WholeWord(word); return;
    case 'c': CoordinateWord(word); return;
    case 'f': DecimalWord(word); return;
    case 'k': ParseKey(word); return;
    case 'd':
        if (!CanDump(word))
            throw ScriptError{ Quoted(word) + " cannot be dumped" };
        return;
    case '=':
        if (word != "to")
            throw ScriptError{ "'to' is expected, not " + Quoted(word) };
        return;
    default: return;
    }
}

bool IsOneOfRest(char kind, const std::string& word)
{
    switch (kind) {
    case 'Q': return IsQualifier(word);
    case 'B': return IsQualifier(word) || ChannelOf(word) != 0 || word == "double";
    case 'N': return IsQualifier(word) || word == "no-drop";
    case 'F': return DecimalWord(word), true;
    default: return true;
    }
}

// The last letter of a pattern, if it stands for a number of words.
bool IsRest(char kind)
{
    return std::string_view("?*+FQBN").find(kind) != std::string_view::npos;
}

void CheckRest(char kind, const ScriptLine& line, size_t from)
{
    if (kind == '+' && from == line.words.size())
        throw ScriptError{ "something is missing" };
    if (kind == '?' && line.words.size() > from + 1)
        throw ScriptError{ Quoted(line.words[from + 1]) + " is too much" };
    for (size_t i = from; i < line.words.size(); ++i)
        if (!IsOneOfRest(kind, line.words[i]))
            throw ScriptError{ Quoted(line.words[i]) + " is not understood" };
}

template <typename Number>
bool ReadWhole(std::string_view text, Number& number, int base = 10)
{
    const auto [end, failure] = std::from_chars(text.data(), text.data() + text.size(), number, base);
    return failure == std::errc() && end == text.data() + text.size();
}

// The key that writes a letter, for those of Latin-1.
char16_t UpperOf(char16_t unit)
{
    constexpr char16_t division = 0xF7; // stands among the letters
    const bool isLower = (unit >= u'a' && unit <= u'z') || (unit >= 0xE0 && unit <= 0xFE && unit != division);
    return isLower ? static_cast<char16_t>(unit - 0x20) : unit;
}

} // namespace

std::deque<ScriptLine> ParseScript(const std::string& text)
{
    std::deque<ScriptLine> lines;
    std::istringstream stream(text);
    int number = 0;
    for (std::string line; std::getline(stream, line);) {
        ++number;
        try {
            ScriptLine split = { number, SplitLine(line) };
            if (!split.words.empty())
                ParseLine(std::move(split), lines);
        } catch (const ScriptError& error) {
            throw ScriptError{ "line " + std::to_string(number) + ": " + error.message };
        }
    }
    return lines;
}

void CheckArguments(const ScriptLine& line, std::string_view pattern)
{
    size_t next = 1;
    for (char kind : pattern) {
        if (IsRest(kind))
            return CheckRest(kind, line, next);
        if (next == line.words.size())
            throw ScriptError{ "something is missing" };
        CheckWord(kind, line.words[next++]);
    }
    if (next < line.words.size())
        throw ScriptError{ Quoted(line.words[next]) + " is too much" };
}

int32_t WholeWord(const std::string& word)
{
    int32_t number = 0;
    const bool isHex = word.starts_with("0x");
    if (!ReadWhole(std::string_view(word).substr(isHex ? 2 : 0), number, isHex ? 16 : 10))
        throw ScriptError{ Quoted(word) + " is not a whole number" };
    return number;
}

double DecimalWord(const std::string& word)
{
    double number = 0;
    const auto [end, failure] = std::from_chars(word.data(), word.data() + word.size(), number);
    if (failure != std::errc() || end != word.data() + word.size() || !std::isfinite(number))
        throw ScriptError{ Quoted(word) + " is not a number" };
    return number;
}

Coordinate CoordinateWord(const std::string& word)
{
    Coordinate coordinate;
    coordinate.isPercent = word.ends_with('%');
    const std::string_view digits = std::string_view(word).substr(0, word.size() - (coordinate.isPercent ? 1 : 0));
    if (!ReadWhole(digits, coordinate.value))
        throw ScriptError{ Quoted(word) + " is not a coordinate" };
    return coordinate;
}

KeyWord KeyOfUnits(std::u16string text)
{
    const char16_t unit = text.empty() ? u'\0' : text.front();
    const int32_t code = unit == u' ' ? static_cast<int32_t>(VX3_KEY_SPACE) : UpperOf(unit);
    return { code, std::move(text) };
}

KeyWord ParseKey(const std::string& word)
{
    if (const int32_t code = NumberOf(keyNames, word))
        return { code, code == VX3_KEY_SPACE ? u" " : u"" };
    const std::u16string units = core::Text(std::string_view(word)).Units();
    constexpr char16_t firstOfPair = 0xD800;
    constexpr char16_t behindFirstOfPair = 0xDC00;
    const bool isPair = units.size() == 2 && units[0] >= firstOfPair && units[0] < behindFirstOfPair;
    if (units.size() == 1 || isPair)
        return KeyOfUnits(units);
    int32_t code = 0;
    const bool isHex = word.starts_with("0x");
    if (!ReadWhole(std::string_view(word).substr(isHex ? 2 : 0), code, isHex ? 16 : 10) || code <= 0)
        throw ScriptError{ Quoted(word) + " is no key" };
    return { code, {} };
}

uint32_t QualifierOf(const std::string& word)
{
    return static_cast<uint32_t>(NumberOf(qualifierNames, word));
}

int32_t ChannelOf(const std::string& word)
{
    return NumberOf(channelNames, word);
}

} // namespace vx3::gui
